"""iso_lines.py - contour lines of a point field on triangles: where the
linearly interpolated field takes a level, as straight segments across each
triangle it crosses."""
import numpy as np

_EDGES = ((0, 1), (1, 2), (2, 0))


def segments_at(level, triangles, points, values):
    """(n, 2, 3) array: the segments of the contour line at `level`. A point
    counts as above the level or not; a triangle with corners on both sides
    holds one segment between its two edges that cross. Segments of no
    length (a corner exactly on the level) are left out."""
    above = values[triangles] > level
    sides = above.sum(axis=1)
    crossed = triangles[(sides == 1) | (sides == 2)]
    ends = []
    for a, b in _EDGES:
        start, end = crossed[:, a], crossed[:, b]
        cuts = (values[start] > level) != (values[end] > level)
        # Halved, the differences of values near the greatest double do not
        # overflow; halving is exact, so their ratio is what it would be.
        span = np.where(cuts, values[end] / 2 - values[start] / 2, 1.0)
        share = np.where(cuts, (level / 2 - values[start] / 2) / span, 0.0)
        ends.append((cuts, points[start] + share[:, None] * (points[end] - points[start])))
    cuts = np.stack([c for c, _ in ends], axis=1)
    where = np.stack([p for _, p in ends], axis=1)
    # Exactly two edges of each crossed triangle cut: the first and the last that do.
    first = np.argmax(cuts, axis=1)
    second = 2 - np.argmax(cuts[:, ::-1], axis=1)
    rows = np.arange(len(crossed))
    result = np.stack([where[rows, first], where[rows, second]], axis=1)
    return result[np.linalg.norm(result[:, 1] - result[:, 0], axis=1) > 0]


def line_levels(low, high, count):
    """`count` levels spread evenly inside the range, none on its ends."""
    return [low + (high - low) * (i + 1) / (count + 1) for i in range(count)]
