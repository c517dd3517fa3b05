"""The error a scene can give."""


class SceneError(ValueError):
    """A scene that sciray cannot render.

    The message is exactly the line the ``sciray`` program prints on
    standard error for the same scene, for example
    ``Error (render_002): Unable to read width``.
    """
