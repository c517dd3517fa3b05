"""Picture: a rendered picture or band, in memory."""
from __future__ import annotations

import os

import numpy as np

from . import _sciray
from .colour_key import ColourKey


class Picture:
    """A rendered picture (or band of one), exactly as ``sciray`` writes it.

    Attributes:
        pixels: ``(height, width, 3)`` uint8 array, row 0 the top of the
            picture, corner mark included unless rendered with ``mark=False``.
        objects: the number of objects in the scene (the program's
            "Number of objects" line).
        progress: the progress lines, one per row, each with its line end,
            exactly as the program prints them.
        mark: whether the corner mark is stamped into the pixels (False for
            ``render(..., mark=False)``, the program's ``-nomark``).
        colour_key: what the colours mean (a ColourKey), taken from the
            Scene it was rendered from; None for a scene file, or a scene
            not coloured by a field.

    >>> picture = sciray.render("examples/demo.ren")          # doctest: +SKIP
    >>> picture.pixels.shape                                  # doctest: +SKIP
    (480, 640, 3)
    >>> picture.save("demo.png")                              # doctest: +SKIP
    """

    def __init__(self, pixels: np.ndarray, objects: int = 0, progress: str = "", mark: bool = True,
                 colour_key: ColourKey | None = None) -> None:
        pixels = np.asarray(pixels)
        if pixels.dtype != np.uint8 or pixels.ndim != 3 or pixels.shape[2] != 3:
            raise ValueError("pixels must be a (height, width, 3) uint8 array, not %s %s"
                             % (pixels.dtype, pixels.shape))
        self.pixels = pixels
        self.objects = int(objects)
        self.progress = str(progress)
        self.mark = bool(mark)
        self.colour_key = colour_key

    @property
    def width(self) -> int:
        return self.pixels.shape[1]

    @property
    def height(self) -> int:
        return self.pixels.shape[0]

    def __array__(self, dtype=None, copy=None):
        return self.pixels if dtype is None else self.pixels.astype(dtype)

    def __repr__(self) -> str:
        return "<sciray.Picture %dx%d, %d objects>" % (self.width, self.height, self.objects)

    def save(self, path: str | os.PathLike) -> None:
        """Writes the picture: a PNG for a name ending in ".png", the program's
        run-length-encoded SGI picture (the very bytes ``sciray`` writes) for
        ".rgb". The file is put in place only once complete; a failed save
        leaves an earlier file of that name as it was.

        >>> picture.save("out.rgb")                           # doctest: +SKIP
        """
        name = os.fsdecode(os.fspath(path))
        kind = os.path.splitext(name)[1].lower()
        if kind not in (".png", ".rgb"):
            raise ValueError("cannot tell the picture format of %r: name it .png or .rgb" % name)
        if self.height == 0 or self.width == 0:
            raise ValueError("the picture is empty (a band with no rows) and has nothing to save")
        if kind == ".rgb" and max(self.pixels.shape[:2]) > 65535:
            raise ValueError("an SGI picture holds at most 65535 rows and columns")
        pixels = np.ascontiguousarray(self.pixels)
        (_sciray.save_png if kind == ".png" else _sciray.save_rgb)(pixels, name)

    def _repr_png_(self) -> bytes | None:
        """The picture as PNG bytes, which Jupyter shows."""
        if self.height == 0 or self.width == 0:
            return None
        return _sciray.png_bytes(np.ascontiguousarray(self.pixels))
