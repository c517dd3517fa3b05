"""failure.py - the one error the importer reports: a single line for the user,
after which the program ends with status 1."""


class conversion_error(ValueError):
    """A mesh or an option the importer cannot turn into a scene."""
