"""banding.py - the bands of a field's range: where they start and end, on a
linear or a logarithmic scale, the contour tables that colour surfaces and
lines with them, and the band of a value. On a log scale the scene holds
the logarithms of the values, so that the renderer's linear blending and
the contour lines follow the log scale too."""
import math

import numpy as np

from .failure import conversion_error


def usable(values, log):
    """Which values can be coloured: finite ones, and positive ones on a log scale."""
    ok = np.isfinite(values)
    if log:
        ok[ok] = values[ok] > 0
    return ok


def scaled(values, log):
    """The values on the scale the bands divide evenly; NaN where not usable."""
    values = np.asarray(values, dtype=float)
    ok = usable(values, log)
    result = np.full(values.shape, np.nan)
    result[ok] = np.log10(values[ok]) if log else values[ok]
    return result


MOST_BANDS = 256
# A range narrower than this share of its values is one value but for
# rounding: its band edges could not all differ.
_NARROWEST = 1e-12


def range_of(values, fixed=None):
    """The range the bands divide: `fixed` when given, else the values' own.
    A field of one value (to within rounding) gets a range around it, so
    that it has bands."""
    low, high = fixed if fixed is not None else (float(np.min(values)), float(np.max(values)))
    if high - low <= _NARROWEST * max(abs(low), abs(high)):
        centre = low + (high - low) / 2
        half = 0.5 * max(abs(centre), 1.0)
        low, high = centre - half, centre + half
    if not math.isfinite((float(high) - float(low)) * (MOST_BANDS + 1)):
        raise conversion_error("the range from %g to %g is too wide to divide into bands; give a narrower --range"
                               % (low, high))
    return float(low), float(high)


def field_range(chosen_field, fixed=None, log=False):
    """The range the bands divide, on their scale (see range_of): `fixed`
    when given (above 0 on a log scale, as the options check), else the
    field's own, its positive part on a log scale."""
    if fixed is None:
        return range_of(own_scaled_range(chosen_field, log))
    return range_of(None, tuple(scaled(np.asarray(fixed, dtype=float), log)))


def own_scaled_range(chosen_field, log):
    """The field's own range on the bands' scale; raises conversion_error
    for a field with no value that can be coloured."""
    if chosen_field.own_range is None:
        raise conversion_error("field '%s' has no finite value to colour by" % chosen_field.name)
    low, high = chosen_field.own_range
    if log:
        if chosen_field.least_positive is None:
            raise conversion_error("field '%s' has no positive value for --log" % chosen_field.name)
        low = chosen_field.least_positive
    return tuple(scaled(np.array([low, high]), log))


def edges(low, high, count):
    """The `count` + 1 edges of equal bands from low to high."""
    return [low + (high - low) * k / count for k in range(count + 1)]


def step_levels(low, high, count):
    """Contour-table levels for `count` equal bands shown in steps: a value
    up to level k (and above level k - 1) takes band k, one above the
    second-to-last level the last band. The last level is never compared;
    it is the range's end."""
    return edges(low, high, count)[1:]


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
