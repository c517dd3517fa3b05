"""conversion.py - everything a scene of a mesh shows, worked out before the
scene is written: the cells that can be drawn, the field on the bands'
scale, the surface with its normals, the contour lines and the camera."""
import dataclasses

import numpy as np

from . import banding, field_choice, framing, iso_lines, mesh_reading, normals, surface
from .failure import conversion_error


@dataclasses.dataclass
class common:
    """What the scenes of a series share: the range the bands divide (on
    their scale; None when each finds its own), the box around all the
    meshes, and the camera, which the first scene fixes for the others."""
    range: tuple
    low: np.ndarray
    high: np.ndarray
    view: framing.view = None


# The largest coordinate drawn: the products of two coordinates (areas,
# squared distances) stay finite.
_FARTHEST = 1e150


def points_of(mesh, used):
    """The points in three dimensions (a flat mesh lies at z = 0), checked
    where they are used."""
    try:
        points = np.asarray(mesh.points, dtype=float)
    except (TypeError, ValueError, OverflowError):
        raise conversion_error("the mesh's points are not numbers") from None
    if points.ndim != 2 or not 1 <= points.shape[1] <= 3:
        raise conversion_error("the mesh's points are not in one, two or three dimensions")
    points = np.pad(points, ((0, 0), (0, 3 - points.shape[1])))
    if not np.isfinite(points[used]).all():
        raise conversion_error("the mesh has points with NaN or infinite coordinates")
    if np.abs(points[used]).max(initial=0) > _FARTHEST:
        raise conversion_error("the mesh has points too far out to be drawn (coordinates beyond %g)" % _FARTHEST)
    return points


def drawable(mesh, name):
    """The mesh's cells sorted for drawing, the points they use, and a note
    on the cells left out; raises conversion_error when nothing can be drawn."""
    if len(mesh.points) == 0:
        raise conversion_error("%s is empty: it has no points" % name)
    parts = mesh_reading.drawable(mesh)
    left_out = ", ".join("%d of type %s" % (count, kind) for kind, count in parts.skipped.items())
    used = parts.used_points()
    if len(used) == 0:
        raise conversion_error("%s has no cells that can be drawn (surface, line, vertex or volume cells)%s"
                               % (name, "; it has " + left_out if left_out else ""))
    return parts, used, ["left out cells that cannot be drawn: %s" % left_out] if left_out else []


def box(mesh, name):
    """The lowest and highest corner of the points the mesh draws."""
    _, used, _ = drawable(mesh, name)
    points = points_of(mesh, used)[used]
    return points.min(axis=0), points.max(axis=0)


def _edge_pairs(triangles):
    """Each edge of the triangles once, as (n, 2) point indices."""
    ends = np.sort(triangles[:, [0, 1, 1, 2, 2, 0]].reshape(-1, 2), axis=1).astype(np.int64)
    span = int(ends.max(initial=0)) + 1
    first, _ = normals.grouped(ends[:, 0] * span + ends[:, 1])
    return ends[first]


class plan:
    """A mesh made ready to write: `chosen` are the options (see options.py)
    and `shared` what a series holds in common, or None."""

    def __init__(self, mesh, chosen, name, shared=None):
        self.chosen, self.name = chosen, name
        self.parts, used, self.notes = drawable(mesh, name)
        self.points = points_of(mesh, used)
        self.field = field_choice.choose_field(mesh, chosen.scalar)
        self._surface(mesh)
        if shared is None:
            low, high = self.points[used].min(axis=0), self.points[used].max(axis=0)
        else:
            low, high = shared.low, shared.high
        if shared is None or shared.view is None:
            self.view = framing.frame(low, high, chosen.view, chosen.azimuth, chosen.elevation, chosen.zoom,
                                      roll=chosen.roll, projection=chosen.projection, size=chosen.size,
                                      surface=(self.points, _edge_pairs(self.triangles)))
            if shared is not None:
                shared.view = self.view
        else:
            self.view = shared.view
        self.floor = framing.floor_corners(low, self.view) if chosen.floor else None
        self._values(used, shared)

    def _surface(self, mesh):
        """The triangles turned to agree, and the points, triangles and
        normals of the smooth surface drawn over them."""
        triangles = surface.triangulate(self.parts.faces, self.points)
        places = normals.welded(self.points)[triangles]
        flat = surface.without_area(triangles, places, self.points)
        self.faces_without_area = int(flat.sum())
        triangles, places = triangles[~flat], places[~flat]
        given = field_choice.file_normals(mesh)
        if given is not None or not len(triangles):
            self.triangles = triangles
            self.origins, self.corners = np.arange(len(self.points)), triangles
            self.normals = given if given is not None else np.zeros((len(self.points), 3))
            return
        turn = surface.turns(places, self.points)
        triangles[turn] = triangles[turn][:, ::-1]
        places[turn] = places[turn][:, ::-1]
        self.triangles = triangles
        self.origins, self.corners, self.normals = normals.split_smooth(triangles, places, self.points,
                                                                        self.chosen.feature_angle)

    def _values(self, used, shared):
        """The field on the bands' scale, its range, and the contour lines."""
        chosen = self.chosen
        self.iso_ends, self.iso_levels, self.line_levels = np.zeros((0, 2, 3)), np.zeros(0), []
        if self.field is None:
            if chosen.contour_lines:
                raise conversion_error("--contour-lines needs a field, and the mesh has none")
            self.values = None
            return
        self.values = banding.scaled(self.field.values, chosen.log)
        if shared is not None and shared.range is not None:
            self.low, self.high = shared.range
        else:
            self.low, self.high = banding.field_range(self.field, chosen.range, chosen.log)
        self.missing = int(np.isnan(self.values[used]).sum())
        if self.missing:
            why = "NaN, infinite, masked or not positive for --log" if chosen.log else "NaN, infinite or masked"
            self.notes.append("field '%s' has no value (%s) at %d of %d points; they are drawn in %s"
                              % (self.field.name, why, self.missing, len(used), chosen.nan_color))
        count = chosen.contour_lines if chosen.contour_lines is not None else (
            chosen.bands if chosen.style == "lines" else 0)
        valued = self.triangles[~np.isnan(self.values[self.triangles]).any(axis=1)]
        self.line_levels = iso_lines.line_levels(self.low, self.high, count)
        found = [(level, iso_lines.segments_at(level, valued, self.points, self.values))
                 for level in self.line_levels]
        if found:
            self.iso_ends = np.concatenate([ends for _, ends in found])
            self.iso_levels = np.concatenate([np.full(len(ends), level) for level, ends in found])

    def shown_range(self):
        """The range in the field's own values (not its logarithms)."""
        return (10 ** self.low, 10 ** self.high) if self.chosen.log else (self.low, self.high)

