"""Checks of the arrays a Scene is grown from: each bad array is one
ValueError with a one-line message, before anything is added."""
from __future__ import annotations

import numpy as np

_INT32 = np.iinfo(np.int32)


def _numbers(name: str, array, kinds: str = "iuf") -> np.ndarray:
    try:
        result = np.asarray(array)
    except Exception as failure:  # ragged lists and the like
        raise ValueError("%s is not an array of numbers: %s" % (name, failure)) from None
    if result.dtype.kind not in kinds:
        wanted = "integers" if kinds == "iu" else "numbers"
        raise ValueError("%s must hold %s, not %s" % (name, wanted, result.dtype))
    return result


def _shaped(name: str, array: np.ndarray, shape: tuple, described: str) -> np.ndarray:
    if array.ndim != len(shape) or any(want not in (None, got) for want, got in zip(shape, array.shape)):
        raise ValueError("%s must be %s, not an array of shape %s" % (name, described, array.shape))
    return array


def _finite(name: str, array: np.ndarray, what: str) -> np.ndarray:
    if array.size and not np.isfinite(array).all():
        row = int(np.argwhere(~np.isfinite(array))[0][0])
        raise ValueError("%s has NaN or infinite %s (first in row %d)" % (name, what, row))
    return array


def points(name: str, array, rows: int | None = None) -> np.ndarray:
    """An (n, 3) array of finite coordinates, as a float64 copy."""
    described = "an (n, 3) array" if rows is None else "a (%d, 3) array (one row per point)" % rows
    checked = _shaped(name, _numbers(name, array), (rows, 3), described)
    return _finite(name, np.array(checked, dtype=np.float64, order="C"), "coordinates")


def polylines(name: str, array) -> np.ndarray:
    """(m, k, 3) points of m lines of k >= 2 points; an (n, 3) array is one line."""
    checked = _numbers(name, array)
    if checked.ndim == 2:
        checked = checked[None]
    _shaped(name, checked, (None, None, 3), "an (n, 3) array (one line) or an (m, n, 3) array (m lines)")
    if checked.shape[1] < 2:
        raise ValueError("%s must give at least 2 points per line, not %d" % (name, checked.shape[1]))
    result = np.array(checked, dtype=np.float64, order="C")
    _finite(name, result.reshape(len(result), result.shape[1] * 3), "coordinates")
    return result


def values(name: str, array, shape: tuple) -> np.ndarray:
    """Finite data values of the given shape, as a float64 copy."""
    checked = _shaped(name, _numbers(name, array), shape, "an array of shape %s (one per point)" % (shape,))
    return _finite(name, np.array(checked, dtype=np.float64, order="C"), "values")


def indices(name: str, array, count: int) -> np.ndarray:
    """(m, 3) point indices, each below `count`, as an int64 copy."""
    checked = _shaped(name, _numbers(name, array, "iu"), (None, 3), "an (m, 3) array of point indices")
    result = np.array(checked, dtype=np.int64, order="C")
    if result.size and (result.min() < 0 or result.max() >= count):
        bad = int(result.min()) if result.min() < 0 else int(result.max())
        raise ValueError("%s refer to point %d, but there are %d points" % (name, bad, count))
    return result


def materials(material, count: int, defined: int | None) -> np.ndarray:
    """One colour-map index per record from an index or an (n,) array of
    them, each below `defined` (when the colour map is known), as int32."""
    checked = _numbers("material", material, "iu")
    if checked.ndim == 0:
        checked = np.full(count, checked)
    _shaped("material", checked, (count,), "an index or an array of %d indices" % count)
    if checked.size and (checked.min() < 0 or checked.max() > _INT32.max):
        raise ValueError("material %d is not an index of the colour map" % int(checked.min() if checked.min() < 0
                                                                                 else checked.max()))
    if defined is not None and checked.size and checked.max() >= defined:
        raise ValueError("material %d is not defined: the scene has %d (add them with Scene.material)"
                         % (int(checked.max()), defined))
    return np.array(checked, dtype=np.int32, order="C")
