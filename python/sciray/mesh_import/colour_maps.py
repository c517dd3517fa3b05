"""colour_maps.py - the colours of the bands from matplotlib's colour maps
(any map it knows, "_r" reversed), and the colour of points without a value."""
import difflib

import numpy as np

from .failure import conversion_error


def _maps():
    import matplotlib
    return matplotlib.colormaps


def checked(name):
    """The name of a colour map matplotlib knows; raises conversion_error,
    with the nearest names, for one it does not."""
    known = list(_maps())
    if name not in known:
        near = difflib.get_close_matches(name, known, n=3)
        raise conversion_error("unknown colour map '%s'%s (any of matplotlib's, with _r for reversed)"
                               % (name, "; did you mean %s?" % " or ".join(near) if near else ""))
    return name


def band_colours(name, count):
    """The colour of each of `count` bands: the map at the band's centre."""
    return np.asarray(_maps()[checked(name)]((np.arange(count) + 0.5) / count))[:, :3]


def colour(text):
    """An opaque colour as matplotlib reads it ("grey", "#ff00ff", "0.5",
    "C1"), as (r, g, b). A see-through one ("none", "#ff00ff80") is
    refused: the renderer would draw it opaque, in other colours."""
    from matplotlib.colors import to_rgba
    try:
        *rgb, alpha = to_rgba(text)
    except ValueError:
        alpha = None
    if alpha != 1:
        raise conversion_error("not an opaque colour: '%s' (a name such as grey, or #rrggbb)" % text)
    return tuple(float(c) for c in rgb)
