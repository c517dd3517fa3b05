"""banding.py - the bands of a field's range: their colours, the contour
tables that colour surfaces and lines with them, and the band of a value."""
import numpy as np

from . import colour_maps


def range_of(values, fixed=None):
    """The range the bands divide: `fixed` when given, else the values' own.
    A field of one value gets a range around it, so that it has bands."""
    low, high = fixed if fixed is not None else (float(values.min()), float(values.max()))
    if low == high:
        half = 0.5 * max(abs(low), 1.0)
        low, high = low - half, high + half
    return low, high


def band_colours(colour_map, count):
    """The colour of each band: the map at the band's centre."""
    return colour_maps.sample(colour_map, (np.arange(count) + 0.5) / count)


def step_levels(low, high, count):
    """Contour-table levels for `count` equal bands shown in steps: a value
    up to level k (and above level k - 1) takes band k, one above the
    second-to-last level the last band. The last level is never compared;
    it is the range's end."""
    return [low + (high - low) * (k + 1) / count for k in range(count)]


def blend_table(low, high, count):
    """Contour-table (band, level) pairs that blend the band colours: each
    band's colour sits at its centre and the colour runs linearly between
    centres. The last band comes twice, because a table blends up to its
    second-to-last level only; so the colour stays continuous up to the top."""
    centres = [(k, low + (high - low) * (k + 0.5) / count) for k in range(count)]
    return centres + [(count - 1, high)]


def band_of(values, low, high, count):
    """The band the stepped table gives each value: below the first level
    the first band, else one band higher for every further level below it."""
    levels = step_levels(low, high, count)
    return np.where(values < levels[0], 0, 1 + np.searchsorted(levels[1:count - 1], values, side="left"))
