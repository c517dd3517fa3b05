"""sample_offset.py - where to move the camera, by a fraction of a pixel, so
that no row, column or diagonal of the picture's sample points runs along
an edge of the mesh. The renderer's triangle test is exact; rounding can
make both triangles that share an edge miss a sample point lying exactly on
it, and the background shows through. Symmetric meshes have edges on the
lines the camera is aimed along (the centre column, the centre row), and
regular grids have edges along whole rows and columns of samples.

Sample points lie on a lattice: pixel corners and centres, and with
anti-aliasing the points of each pixel's grid, 16 to a pixel's side at the
deepest. An edge can hold lattice points only where it runs along a
lattice direction (a, b) with small a and b; its distance from the lattice
lines of that direction is what the move must keep away from zero."""
import numpy as np

# Sample points per pixel side at the greatest anti-aliasing depth.
_LATTICE = 16
# Lattice directions (a, b) an edge may run along, up to the knight's move.
_DIRECTIONS = np.array([(1, 0), (0, 1), (1, 1), (1, -1), (2, 1), (1, 2), (2, -1), (1, -2)], dtype=float)
# Moves tried, in lattice steps, along each axis; the preferred pair is
# taken when nothing is in the way.
_STEPS = (np.arange(_LATTICE) + 0.5) / _LATTICE
_PREFERRED = (13, 9)
# Residues closer than this to the lattice count as on it: rounding, not geometry.
_EXACT = 1e-9
# Edge classes weighed at most, for meshes with very many edges on lattice
# directions; and edges looked at in one go.
_MOST = 20000
_CHUNK = 1 << 20


def _screen(points, eye, right, up, projection, lattice):
    """Lattice coordinates (u, v) of points on the view window (relative to
    its centre), and the factor by which each moves when the camera does."""
    offsets = points - eye
    if projection == "perspective":
        along = -eye / np.linalg.norm(eye)
        factor = np.linalg.norm(eye) / (offsets @ along)
    else:
        factor = np.ones(len(points))
    return (offsets @ right) * factor / lattice[0], (offsets @ up) * factor / lattice[1], factor


def _distance(values):
    return np.abs(values - np.round(values))


def _edge_scores(u, v, factor, moves):
    """For each move (fx, fy) in lattice steps, the least distance of an
    edge ((n, 2) arrays of its ends) on a lattice direction from the
    lattice lines of that direction."""
    scores = np.full(len(moves), np.inf)
    du, dv = u[:, 1] - u[:, 0], v[:, 1] - v[:, 0]
    scale = _EXACT * (1 + np.abs(u).sum(axis=1) + np.abs(v).sum(axis=1))
    visible = np.abs(du) + np.abs(dv) > scale
    for a, b in _DIRECTIONS:
        change = b * du - a * dv
        along = visible & (np.abs(change) <= scale * (a + abs(b)))
        if not along.any():
            continue
        residue = (b * u[along].mean(axis=1) - a * v[along].mean(axis=1)) % 1.0
        rounded = np.round(np.stack([residue, factor[along].mean(axis=1)], axis=1), 9)
        ordered = rounded[np.lexsort(rounded.T[::-1])]
        classes = ordered[np.r_[True, (ordered[1:] != ordered[:-1]).any(axis=1)]]
        classes = classes[::max(1, len(classes) // _MOST)]
        shift = b * moves[:, 0] - a * moves[:, 1]
        moved = classes[:, 0][None, :] - shift[:, None] * classes[:, 1][None, :]
        scores = np.minimum(scores, _distance(moved).min(axis=1) / np.hypot(a, b))
    return scores


def _vertex_free(u, v, factor):
    """(len(_STEPS), len(_STEPS)) truth values: whether the move by
    (_STEPS[i], _STEPS[j]) keeps every point off the lattice's points."""
    near_u = _distance(u[:, None] - _STEPS[None, :] * factor[:, None]) < _EXACT * (1 + np.abs(u[:, None]))
    near_v = _distance(v[:, None] - _STEPS[None, :] * factor[:, None]) < _EXACT * (1 + np.abs(v[:, None]))
    suspect = near_u.any(axis=1) & near_v.any(axis=1)
    hit = (near_u[suspect][:, :, None] & near_v[suspect][:, None, :]).any(axis=0)
    return ~hit


def _moves():
    """The moves tried, in lattice steps, the preferred one first."""
    i, j = np.meshgrid(np.arange(_LATTICE), np.arange(_LATTICE), indexing="ij")
    order = np.argsort((i.ravel() != _PREFERRED[0]) | (j.ravel() != _PREFERRED[1]), kind="stable")
    return np.stack([_STEPS[i.ravel()[order]], _STEPS[j.ravel()[order]]], axis=1), order


def choose(points, pairs, eye, right, up, projection, pixel):
    """The move of the camera (a vector in the view window's plane, less
    than a sixteenth of a pixel long) that keeps the lattice of sample
    points farthest from the edges `pairs` ((n, 2) indices of `points`,
    which are relative to the window's centre) and from the points;
    `pixel` is a pixel's width and height."""
    lattice = (pixel[0] / _LATTICE, pixel[1] / _LATTICE)
    moves, order = _moves()
    best = 0
    if len(pairs):
        u, v, factor = _screen(points, eye, right, up, projection, lattice)
        scores = np.full(len(moves), np.inf)
        for start in range(0, len(pairs), _CHUNK):
            ends = pairs[start:start + _CHUNK]
            scores = np.minimum(scores, _edge_scores(u[ends], v[ends], factor[ends], moves))
        scores[~_vertex_free(u, v, factor).ravel()[order]] = -1.0
        best = int(np.argmax(scores))
    return moves[best, 0] * lattice[0] * right + moves[best, 1] * lattice[1] * up
