"""surface.py - the faces of a mesh as triangles, turned so that neighbours
agree and closed parts face outwards."""
import numpy as np


def _newell_normals(corners):
    """Area vectors (twice the area, along the normal) of polygons given as
    an (n, k, 3) array of corner positions."""
    return np.cross(corners, np.roll(corners, -1, axis=1)).sum(axis=1)


def _convex(corners):
    """Whether each polygon turns the same way at every corner (corners in a
    straight line allowed)."""
    turns = np.cross(corners - np.roll(corners, 1, axis=1), np.roll(corners, -1, axis=1) - corners)
    along = np.einsum("fkc,fc->fk", turns, _newell_normals(corners))
    tolerance = 1e-9 * np.linalg.norm(turns, axis=2) * np.linalg.norm(_newell_normals(corners), axis=1)[:, None]
    return (along >= -tolerance).all(axis=1)


def _ear_clip(face, points):
    """Triangles of one polygon that is not convex, cut off ear by ear in the
    polygon's plane; a polygon that crosses itself is fanned once no ear is left."""
    corners = points[face]
    normal = _newell_normals(corners[None])[0]
    axis_u = np.cross(normal, [1.0, 0.0, 0.0] if abs(normal[0]) < 0.9 * np.linalg.norm(normal) else [0.0, 1.0, 0.0])
    flat = np.stack([corners @ axis_u, corners @ np.cross(normal, axis_u)], axis=1)  # counter-clockwise

    def turn(a, b, c):
        (ax, ay), (bx, by), (cx, cy) = flat[a], flat[b], flat[c]
        return (bx - ax) * (cy - ay) - (by - ay) * (cx - ax)

    left, triangles = list(range(len(face))), []
    while len(left) > 3:
        for j in range(len(left)):
            a, b, c = left[j - 1], left[j], left[(j + 1) % len(left)]
            blocked = any(turn(a, b, p) >= 0 and turn(b, c, p) >= 0 and turn(c, a, p) >= 0
                          for p in left if p not in (a, b, c))
            if turn(a, b, c) > 0 and not blocked:
                triangles.append((a, b, c))
                del left[j]
                break
        else:
            break
    triangles += [(left[0], left[i], left[i + 1]) for i in range(1, len(left) - 1)]
    return face[np.array(triangles, dtype=np.int64).reshape(-1, 3)]


def triangulate(faces, points):
    """All faces as triangles, those of one face next to each other: convex
    faces as fans from their first corner, others by cutting off ears."""
    parts = []
    for k, group in faces.items():
        if k == 3:
            parts.append(group)
            continue
        convex = _convex(points[group])
        fans = [group[convex][:, [0, i, i + 1]] for i in range(1, k - 1)]
        parts.append(np.stack(fans, axis=1).reshape(-1, 3))
        parts += [_ear_clip(face, points) for face in group[~convex]]
    return np.concatenate(parts) if parts else np.zeros((0, 3), dtype=np.int64)


def _flatten(parent, turned):
    """Points every face straight at its part's root; `turned` follows, as
    whether a face is turned relative to the root."""
    while True:
        grand = parent[parent]
        if (grand == parent).all():
            return parent, turned
        turned = turned ^ turned[parent]
        parent = grand


def connected_parts(count, first, second, disagree):
    """Connected parts of faces joined by the pairs (first, second), and for
    each face whether it must turn, relative to the root of its part, for
    every pair to agree (where the mesh allows). Roots join roots of lower
    number, one join per root and round, until no pair joins two parts."""
    parent, turned = np.arange(count), np.zeros(count, dtype=bool)
    while True:
        parent, turned = _flatten(parent, turned)
        root1, root2 = parent[first], parent[second]
        joining = root1 != root2
        if not joining.any():
            return parent, turned
        relation = (turned[first] ^ turned[second] ^ disagree)[joining]
        higher, lower = np.maximum(root1, root2)[joining], np.minimum(root1, root2)[joining]
        _, chosen = np.unique(higher, return_index=True)
        parent[higher[chosen]] = lower[chosen]
        turned[higher[chosen]] = relation[chosen]


def without_area(triangles, places, points):
    """Which triangles have no area: two corners at one place (`places`
    numbers the corners' places), or all three in a line. Such a triangle
    is never seen, and has no normal to give its neighbours."""
    corner = points[triangles]
    flat = ~np.cross(corner[:, 1] - corner[:, 0], corner[:, 2] - corner[:, 0]).any(axis=1)
    return flat | (places[:, 0] == places[:, 1]) | (places[:, 1] == places[:, 2]) | (places[:, 2] == places[:, 0])


def edges(triangles):
    """The edges of the triangles: (ends, pairs, single). Edge j of triangle
    t is row 3t + j of `ends`, running from its corner j to corner j + 1;
    `pairs` are the (first, second) rows of edges two triangles share and
    `single` the rows of edges that belong to one triangle alone."""
    ends = triangles[:, [0, 1, 1, 2, 2, 0]].reshape(-1, 2)
    keys = ends.min(axis=1) * (int(triangles.max(initial=0)) + 1) + ends.max(axis=1)
    order = np.argsort(keys, kind="stable")
    sorted_keys = keys[order]
    starts = np.flatnonzero(np.r_[True, sorted_keys[1:] != sorted_keys[:-1]])
    sharing = np.diff(np.r_[starts, len(keys)])
    pairs = np.stack([order[starts[sharing == 2]], order[starts[sharing == 2] + 1]], axis=1)
    return ends, pairs, order[starts[sharing == 1]]


def turns(triangles, points):
    """Which triangles to turn so that two that share an edge run along it
    in opposite directions. A closed part then faces outwards; an open part
    faces the way most of its area faced in the file."""
    count = len(triangles)
    ends, pairs, single = edges(triangles)
    edge1, edge2 = pairs.T
    forward = ends[:, 0] < ends[:, 1]
    root, turned = connected_parts(count, edge1 // 3, edge2 // 3, forward[edge1] == forward[edge2])

    corner = points[triangles] - points.mean(axis=0)
    area = np.cross(corner[:, 1] - corner[:, 0], corner[:, 2] - corner[:, 0])
    sign = np.where(turned, -1.0, 1.0)
    volume = np.bincount(root, weights=sign * np.einsum("ij,ij->i", corner[:, 0], area), minlength=count)
    kept = np.bincount(root, weights=sign * np.linalg.norm(area, axis=1), minlength=count)
    is_open = np.zeros(count, dtype=bool)
    is_open[root[single // 3]] = True
    turn_part = np.where(is_open, kept < 0, volume < 0)
    return turned ^ turn_part[root]
