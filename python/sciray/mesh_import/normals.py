"""normals.py - smooth normals for triangles that come without them: each
corner takes the mean of the normals of the faces around its point,
weighted by the faces' angles there, over the faces joined to its own
across edges sharper than no feature angle. A point where faces meet at a
sharp edge (a cube's corner) is split into one point per smooth side, so
that sharp edges stay sharp. Points at one place count as one point (the
pole and the seam of a latitude-longitude sphere), so that the faces of
both sides of a seam share their normals."""
import numpy as np

from . import surface

# Points closer than this share of the mesh's size are at one place: the
# seam of a surface made by a formula ends where it began but for rounding.
_SAME_PLACE = 1e-10


def _grouped(order, starts):
    """(first, group) for items sorted by `order`, where `starts` marks the
    first of each run of equal items: the item that comes first in each
    run, and each item's run number."""
    group = np.empty(len(order), dtype=np.int64)
    group[order] = np.cumsum(starts) - 1
    return order[starts], group


def grouped(keys):
    """(first, group): for integer keys, the position of the first key of
    each value (in the order of the values) and the number of each key's
    value. (numpy's unique does this too, in several times the time.)"""
    order = np.argsort(keys, kind="stable")
    ordered = keys[order]
    starts = np.ones(len(keys), dtype=bool)  # none for no keys (a mesh of lines has no edges of faces)
    starts[1:] = ordered[1:] != ordered[:-1]
    return _grouped(order, starts)


def welded(points):
    """For each point, the first point at its place (to within rounding)."""
    finite = np.isfinite(points).all(axis=1)
    where = np.where(finite[:, None], points, 0.0)
    low = where[finite].min(axis=0) if finite.any() else np.zeros(3)
    span = float(np.ptp(where[finite], axis=0).max()) if finite.any() else 0.0
    cells = np.round((where - low) / (span * _SAME_PLACE or 1.0)).astype(np.int64)
    order = np.lexsort(cells.T[::-1])
    ordered = cells[order]
    first, group = _grouped(order, np.r_[True, (ordered[1:] != ordered[:-1]).any(axis=1)])
    return first[group]


def _faces(triangles, points):
    """Unit face normals and the angle of each triangle at each corner."""
    corner = points[triangles]
    area = np.cross(corner[:, 1] - corner[:, 0], corner[:, 2] - corner[:, 0])
    twice = np.linalg.norm(area, axis=1)
    angles = np.stack([np.arctan2(twice, np.einsum("ij,ij->i", corner[:, (k + 1) % 3] - corner[:, k],
                                                    corner[:, (k + 2) % 3] - corner[:, k]))
                       for k in range(3)], axis=1)
    return area / twice[:, None], angles


def _smooth_groups(places, unit, feature_angle):
    """The group of each corner (row 3t + k for corner k of triangle t): the
    corners at one place whose faces are joined by edges with a bend of no
    more than the feature angle."""
    ends, pairs, _ = surface.edges(places)
    first, second = pairs.T
    smooth = np.einsum("ij,ij->i", unit[first // 3], unit[second // 3]) >= np.cos(np.radians(feature_angle))
    first, second = first[smooth], second[smooth]
    # Edge row 3t + j runs from corner 3t + j to corner 3t + (j + 1) % 3;
    # two triangles that agree run along their shared edge in opposite ways.
    def end(row):
        return row - row % 3 + (row + 1) % 3
    same_way = ends[first, 0] == ends[second, 0]
    joined_first = np.r_[first, end(first)]
    joined_second = np.r_[np.where(same_way, second, end(second)), np.where(same_way, end(second), second)]
    root, _ = surface.connected_parts(3 * len(places), joined_first, joined_second,
                                      np.zeros(len(joined_first), dtype=bool))
    return root


def split_smooth(triangles, places, points, feature_angle):
    """(origins, triangles, normals): the triangles (none without area) over
    points split at sharp edges, with a unit normal per new point and the
    index of the point each new point comes from. `places` are the
    triangles' corners as welded() numbers them."""
    unit, angles = _faces(triangles, points)
    group = _smooth_groups(places, unit, feature_angle)
    weighted = (angles[:, :, None] * unit[:, None, :]).reshape(-1, 3)
    sums = np.stack([np.bincount(group, weights=weighted[:, c], minlength=len(group)) for c in range(3)], axis=1)
    normals = sums[group]
    length = np.linalg.norm(normals, axis=1)
    flat = length == 0  # faces that cancel out, as the two sides of a folded sheet
    normals[flat] = np.repeat(unit, 3, axis=0)[flat]
    normals /= np.where(flat, 1.0, length)[:, None]
    # One new point per point and group.
    first, new_index = grouped(triangles.reshape(-1).astype(np.int64) * len(group) + group)
    return triangles.reshape(-1)[first], new_index.reshape(-1, 3), normals[first]
