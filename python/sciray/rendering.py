"""render(): a scene file or a Scene to a Picture, in this process."""
from __future__ import annotations

import operator
import os

from . import _sciray
from .picture import Picture
from .scene import Scene


def _count(name: str, value) -> int:
    try:
        return operator.index(value)
    except TypeError:
        raise TypeError("%s must be an integer, not %s" % (name, type(value).__name__)) from None


def render(scene: str | os.PathLike | Scene, *, threads: int | None = None,
           band: tuple[int, int] | None = None, mark: bool = True) -> Picture:
    """Renders a scene file, or a Scene, with the same bytes the ``sciray``
    program writes for it.

    Args:
        scene: the path of a scene file (".ren"), or a Scene.
        threads: threads to render on, as ``-threads``; by default every
            processor this process may use. The picture does not depend on it.
        band: ``(i, n)`` renders band i of n horizontal bands, as
            ``-band i/n`` (band 1 is the bottom).
        mark: False leaves the corner mark out, as ``-nomark`` (the rendered
            pixels show where it would be); the other pixels are the same.

    Returns:
        the Picture, with the Scene's colour key. Rendering releases the
        GIL; Ctrl-C stops it within about a row and raises KeyboardInterrupt.

    Raises:
        SceneError: for every fatal condition of the scene, with the
            program's message.
        FileNotFoundError, PermissionError, ...: when the file cannot be read.

    >>> picture = sciray.render("examples/demo.ren", threads=2)   # doctest: +SKIP
    >>> top = sciray.render("examples/demo.ren", band=(2, 2))     # doctest: +SKIP
    >>> clean = sciray.render("examples/demo.ren", mark=False)    # doctest: +SKIP
    """
    count = 0 if threads is None else _count("threads", threads)
    if threads is not None and count < 1:
        raise ValueError("threads must be at least 1, not %d" % count)
    if band is not None and len(band) != 2:
        raise ValueError("band must be (i, n), not %r" % (band,))
    index, bands = (1, 1) if band is None else (_count("band", b) for b in band)
    if not 1 <= index <= bands:
        raise ValueError("band must be (i, n) with 1 <= i <= n, not %r" % (band,))
    if isinstance(scene, Scene):
        pixels, objects, progress = _sciray.render_pieces(scene._pieces(), count, index, bands, bool(mark))
        return Picture(pixels, objects, progress, mark=mark, colour_key=scene.colour_key)
    pixels, objects, progress = _sciray.render_file(os.fsdecode(os.fspath(scene)), count, index, bands, bool(mark))
    return Picture(pixels, objects, progress, mark=mark)
