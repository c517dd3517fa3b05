"""failure.py - the one error the molecule importer reports: a single line for
the user, after which the program ends with status 1."""


class molecule_error(ValueError):
    """A structure, a trajectory or an option that cannot become a scene."""
