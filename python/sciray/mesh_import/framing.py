"""framing.py - the camera that shows a mesh's bounding box from one side (or
from a corner), the two lights placed relative to that view, and the floor
under the box."""
import dataclasses

import numpy as np

# Where the camera stands, seen from the centre of the box.
VIEWS = {"iso": (1.0, -1.0, 1.0), "+x": (1.0, 0.0, 0.0), "-x": (-1.0, 0.0, 0.0),
         "+y": (0.0, 1.0, 0.0), "-y": (0.0, -1.0, 0.0), "+z": (0.0, 0.0, 1.0), "-z": (0.0, 0.0, -1.0)}

# The camera stands this many bounding-sphere radii from the centre: close
# enough for depth, far enough that the perspective stays mild.
_DISTANCE = 3.0
# Room left around the box's outline in the picture.
_MARGIN = 1.08


@dataclasses.dataclass
class view:
    eye: np.ndarray
    centre: np.ndarray
    up: np.ndarray
    extents: tuple      # width and height of the view window through the centre
    key_light: np.ndarray   # directions towards the two lights
    fill_light: np.ndarray
    size: float         # the box's diagonal


def _unit(v):
    return np.asarray(v, dtype=float) / np.linalg.norm(v)


def _turned(back, up, azimuth, elevation):
    """The direction `back` turned by `azimuth` degrees about `up` (counter-
    clockwise seen from above) and raised by `elevation` degrees toward
    `up`, at most to 89 degrees above or below the horizontal."""
    height = float(back @ up)
    level = back - height * up
    rise = np.clip(np.degrees(np.arctan2(height, np.linalg.norm(level))) + elevation, -89.0, 89.0)
    turn = np.radians(azimuth)
    level = _unit(level) * np.cos(turn) + np.cross(up, _unit(level)) * np.sin(turn)
    return _unit(level * np.cos(np.radians(rise)) + up * np.sin(np.radians(rise)))


def frame(low, high, side, azimuth=0.0, elevation=0.0, zoom=1.0, points=None):
    """The view of the box from `low` to `high` from `side` (a key of VIEWS):
    +z is up in the picture, except when looking along z, where +y is. The
    camera then turns `azimuth` degrees about the up direction and rises
    `elevation` degrees toward it; `zoom` above 1 narrows the window. The
    window holds the box's corners, or the given (n, 3) `points` in it."""
    low, high = np.asarray(low, dtype=float), np.asarray(high, dtype=float)
    centre = (low + high) / 2
    size = float(np.linalg.norm(high - low)) or 1.0  # a single point still gets a view
    up = np.array([0.0, 1.0, 0.0]) if side in ("+z", "-z") else np.array([0.0, 0.0, 1.0])
    back = _unit(VIEWS[side])
    if azimuth or elevation:
        back = _turned(back, up, azimuth, elevation)
    right = _unit(np.cross(-back, up))
    true_up = np.cross(right, -back)
    eye = centre + back * _DISTANCE * size / 2

    # What must be seen (the box's corners unless given), in perspective on
    # the window through the centre.
    if points is None:
        points = [[x, y, z] for x in (low[0], high[0]) for y in (low[1], high[1]) for z in (low[2], high[2])]
    offsets = np.asarray(points, dtype=float) - eye
    scale = np.linalg.norm(centre - eye) / (offsets @ -back)
    width = 2 * _MARGIN * np.max(np.abs(offsets @ right) * scale)
    height = 2 * _MARGIN * np.max(np.abs(offsets @ true_up) * scale)
    # A box that is flat when seen from this side still gets a window.
    least = 0.05 * size
    return view(eye=eye, centre=centre, up=up, extents=(max(width, least) / zoom, max(height, least) / zoom),
                key_light=_unit(-0.5 * right + 0.8 * true_up + 0.7 * back),
                fill_light=_unit(0.8 * right + 0.1 * true_up + 0.5 * back), size=size)


def floor_corners(low, seen):
    """A square under the box (whose lowest corner is `low`), across the
    picture's up direction, reaching well beyond the box on every side."""
    axis = int(np.argmax(seen.up))
    across = [a for a in range(3) if a != axis]
    reach = 5 * seen.size
    corners = []
    for s, t in ((-1, -1), (1, -1), (1, 1), (-1, 1)):
        corner = seen.centre.copy()
        corner[axis] = float(low[axis]) - 0.01 * seen.size
        corner[across[0]] += s * reach
        corner[across[1]] += t * reach
        corners.append(corner)
    # Counter-clockwise seen from above, so the floor's face points up.
    return np.array(corners if np.cross(corners[1] - corners[0], corners[2] - corners[1])[axis] > 0
                    else corners[::-1])
