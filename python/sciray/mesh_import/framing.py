"""framing.py - the camera that shows a mesh's bounding box from one side (or
from a corner), turned, tilted, rolled and zoomed on top of that; the two
lights placed relative to that view; and the floor under the box. The
camera is worked out around the box's centre and moved there last, so that
a mesh far from the origin is framed exactly as the same mesh at the origin."""
import dataclasses

import numpy as np

from . import sample_offset

# Where the camera stands, seen from the centre of the box.
VIEWS = {"iso": (1.0, -1.0, 1.0), "+x": (1.0, 0.0, 0.0), "-x": (-1.0, 0.0, 0.0),
         "+y": (0.0, 1.0, 0.0), "-y": (0.0, -1.0, 0.0), "+z": (0.0, 0.0, 1.0), "-z": (0.0, 0.0, -1.0)}
PROJECTIONS = ("perspective", "orthographic")

# The camera stands this many bounding-sphere radii from the centre: close
# enough for depth, far enough that the perspective stays mild.
_DISTANCE = 3.0
# Room left around the box's outline in the picture.
_MARGIN = 1.08


@dataclasses.dataclass
class view:
    eye: np.ndarray
    centre: np.ndarray
    up: np.ndarray          # the up vector to write: the preset's up axis (the sky's up) where it can be
    extents: tuple          # width and height of the view window
    projection: str
    roll: float             # the roll angle to write, in degrees
    key_light: np.ndarray   # directions towards the two lights
    fill_light: np.ndarray
    size: float             # the box's diagonal
    floor_axis: int         # the axis that points up from the floor


def _unit(v):
    return np.asarray(v, dtype=float) / np.linalg.norm(v)


def _rotated(v, axis, degrees):
    """v turned about the unit `axis` by `degrees` (right-hand rule)."""
    c, s = np.cos(np.radians(degrees)), np.sin(np.radians(degrees))
    return v * c + np.cross(axis, v) * s + axis * (axis @ v) * (1 - c)


def _frame(side, azimuth, elevation, roll):
    """(back, right, up, given, axis): the unit vectors towards the camera,
    to the right and up in the picture, the up vector from which the
    renderer makes this frame (with the roll angle), and the index of the
    preset's up axis."""
    back = _unit(VIEWS[side])
    axis = 1 if side in ("+z", "-z") else 2
    world_up = np.eye(3)[axis]
    right = _unit(np.cross(-back, world_up))
    up = np.cross(right, -back)
    # Azimuth about the preset's up axis, elevation about the camera's right
    # axis, roll about the line of sight: the frame turns as one.
    back, right, up = (_rotated(v, world_up, azimuth) for v in (back, right, up))
    back, up = (_rotated(v, -right, elevation) for v in (back, up))
    # The preset's up axis (upside down when the camera has gone over the
    # top), so that the horizon of the sky stays level; the camera's own up
    # when it looks along that axis.
    given = world_up * np.sign(up @ world_up) if np.linalg.norm(np.cross(back, world_up)) > 1e-6 else up
    right, up = (_rotated(v, back, roll) for v in (right, up))
    return back, right, up, given, axis


def frame(low, high, side, azimuth=0.0, elevation=0.0, zoom=1.0, points=None, *, roll=0.0,
          projection="perspective", size=None, surface=None):
    """The view of the box from `low` to `high` from `side` (a key of VIEWS):
    +z is up in the picture, except when looking along z, where +y is. The
    camera then turns `azimuth` degrees about that up axis (to its right),
    tilts up by `elevation` degrees and turns `roll` degrees about its line
    of sight; `zoom` above 1 narrows the window, which holds the box's
    corners, or the given (n, 3) `points` in it.

    For a picture of `size` (width, height) pixels, the window takes the
    picture's shape, and the view is moved by a fraction of a pixel so that
    no row or column of samples runs along an edge of `surface` (points,
    (n, 2) point indices of its edges)."""
    low, high = np.asarray(low, dtype=float), np.asarray(high, dtype=float)
    centre = (low + high) / 2
    diagonal = float(np.linalg.norm(high - low)) or 1.0  # a single point still gets a view
    back, right, up, given, axis = _frame(side, azimuth, elevation, roll)
    eye = back * _DISTANCE * diagonal / 2

    # What must be seen (the box's corners unless given), on the window
    # through the centre; all of it relative to the centre.
    if points is None:
        points = [[x, y, z] for x in (low[0], high[0]) for y in (low[1], high[1]) for z in (low[2], high[2])]
    offsets = np.asarray(points, dtype=float) - centre - eye
    scale = np.linalg.norm(eye) / (offsets @ -back) if projection == "perspective" else 1.0
    # A box that is flat when seen from this side still gets a window.
    least = 0.05 * diagonal
    width = max(2 * _MARGIN * np.max(np.abs(offsets @ right) * scale), least) / zoom
    height = max(2 * _MARGIN * np.max(np.abs(offsets @ up) * scale), least) / zoom
    shift = np.zeros(3)
    if size is not None:
        # The window widened to the picture's shape, as the renderer would.
        aspect = size[1] / size[0]
        if height / width > aspect:
            width = height / aspect
        elif height / width < aspect:
            height = aspect * width
        mesh_points, pairs = surface if surface is not None else (np.zeros((0, 3)), np.zeros((0, 2), dtype=int))
        shift = sample_offset.choose(np.asarray(mesh_points, dtype=float) - centre,
                                     np.asarray(pairs, dtype=np.int64).reshape(-1, 2), eye, right, up, projection,
                                     (width / size[0], height / size[1]))
    return view(eye=centre + eye + shift, centre=centre + shift, up=given, extents=(width, height),
                projection=projection, roll=float(roll), key_light=_unit(-0.5 * right + 0.8 * up + 0.7 * back),
                fill_light=_unit(0.8 * right + 0.1 * up + 0.5 * back), size=diagonal, floor_axis=axis)


def floor_corners(low, seen):
    """A square under the box (whose lowest corner is `low`), across the
    preset's up axis, reaching well beyond the box on every side; counter-
    clockwise seen from above, so that its face points up."""
    axis = seen.floor_axis
    across = [a for a in range(3) if a != axis]
    reach = 5 * seen.size
    corners = []
    for s, t in ((-1, -1), (1, -1), (1, 1), (-1, 1)):
        corner = seen.centre.copy()
        corner[axis] = float(low[axis]) - 0.01 * seen.size
        corner[across[0]] += s * reach
        corner[across[1]] += t * reach
        corners.append(corner)
    return np.array(corners if np.cross(corners[1] - corners[0], corners[2] - corners[1])[axis] > 0
                    else corners[::-1])
