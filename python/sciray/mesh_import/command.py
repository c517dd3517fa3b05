"""command.py - the run of sciray-import: read the mesh, choose the field,
make the surface and its contour lines, frame it, and write the scene."""
import io
import os
import sys

import numpy as np

from .._program_outputs import run, same_file, written_whole
from . import banding, field_choice, framing, iso_lines, mesh_reading, options, scene_text, surface
from .failure import conversion_error

# Radii of lines and of the balls of vertex cells, per unit of the mesh's size.
_LINE_RADIUS = 0.003
_SYMBOL_RADIUS = 0.02


def _points(mesh, used):
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
    return points


def _one_line(text):
    """Text fit for a comment line of the scene, which must stay one short line."""
    return "".join(c if c.isprintable() else "?" for c in text)[:300]


class _plan:
    """Everything the scene shows, worked out before a line is written."""

    def __init__(self, chosen, mesh, name):
        self.chosen, self.name = chosen, name
        self.parts = mesh_reading.drawable(mesh)
        left_out = ", ".join("%d of type %s" % (count, kind) for kind, count in self.parts.skipped.items())
        used = self.parts.used_points()
        if len(used) == 0:
            raise conversion_error("%s has no cells that can be drawn (surface, line, vertex or volume cells)%s"
                                   % (name, "; it has " + left_out if left_out else ""))
        if left_out:
            print("sciray-import: left out cells that cannot be drawn: %s" % left_out, file=sys.stderr)
        self.points = _points(mesh, used)
        self.values, self.field = field_choice.choose_field(mesh, chosen.scalar)
        self.triangles = surface.triangulate(self.parts.faces, self.points)
        self.normals = field_choice.file_normals(mesh)
        if self.normals is None and len(self.triangles):
            self.triangles = surface.orient(self.triangles, self.points)
            self.normals = surface.point_normals(self.triangles, self.points)
        low, high = self.points[used].min(axis=0), self.points[used].max(axis=0)
        self.view = framing.frame(low, high, chosen.view)
        self.floor = framing.floor_corners(low, self.view) if chosen.floor else None
        self._contours(used)

    def _contours(self, used):
        chosen = self.chosen
        self.iso_ends, self.iso_levels = np.zeros((0, 2, 3)), np.zeros(0)
        if self.values is None:
            if chosen.contour_lines:
                raise conversion_error("--contour-lines needs a field, and the mesh has none")
            return
        self.low, self.high = banding.range_of(self.values[used], chosen.range)
        self.steps = list(enumerate(banding.step_levels(self.low, self.high, chosen.bands)))
        count = chosen.contour_lines if chosen.contour_lines is not None else (
            chosen.bands if chosen.style == "lines" else 0)
        found = [(level, iso_lines.segments_at(level, self.triangles, self.points, self.values))
                 for level in iso_lines.line_levels(self.low, self.high, count)]
        if found:
            self.iso_ends = np.concatenate([ends for _, ends in found])
            self.iso_levels = np.concatenate([np.full(len(ends), level) for level, ends in found])

    def summary(self):
        drawn = "%d triangles, %d line segments, %d symbols" % (
            len(self.triangles), len(self.parts.segments), len(self.parts.singles))
        if self.values is None:
            return drawn + "; no field"
        return "%s; %s from %.6g to %.6g in %d %s bands, %s" % (
            drawn, self.field, self.low, self.high, self.chosen.bands, self.chosen.colormap, self.chosen.style)


def _head(plan, out):
    """Comments, picture, camera, lights and colours; returns the colour-map
    indices of the plain surface, the dark lines and the floor."""
    chosen, view = plan.chosen, plan.view
    out.write("# sciray scene made by sciray-import from %s\n# %s\n"
              % (_one_line(os.path.basename(plan.name)), _one_line(plan.summary())))
    out.write(scene_text.render_block(chosen.size[0], chosen.size[1], _LINE_RADIUS * view.size,
                                      _SYMBOL_RADIUS * view.size))
    out.write(scene_text.viewing_block(view) + scene_text.lighting_block(view))
    text, indices = scene_text.colormap_block(banding.band_colours(chosen.colormap, chosen.bands))
    out.write(text)
    return indices


def _surface(plan, out, plain):
    """The triangles, after the contour table that colours them."""
    chosen = plan.chosen
    coloured = plan.values is not None and chosen.style != "lines"
    if plan.values is not None:
        blended = chosen.style == "continuous"
        out.write(scene_text.contour_block(banding.blend_table(plan.low, plan.high, chosen.bands) if blended
                                           else plan.steps))
    if not len(plan.triangles):
        return
    positions = scene_text.numbers(plan.points, scene_text.POSITION)
    normals = scene_text.numbers(plan.normals, scene_text.NORMAL)
    values = scene_text.numbers(plan.values[:, None], scene_text.VALUE) if coloured else None
    style = "gr_contour_continuous" if chosen.style == "continuous" else "gr_contour_bands"
    out.write("gr_geometry_001 {\n")
    scene_text.triangle_records(out, plan.triangles, positions, normals, values, plain, style)
    out.write("}\n")


def _lines_and_symbols(plan, out, plain, dark, floor):
    """Line cells, contour lines, the balls of vertex cells and the floor."""
    chosen, segments, singles = plan.chosen, plan.parts.segments, plan.parts.singles
    coloured = plan.values is not None
    # Lines are coloured in steps: a blending table in force is replaced first.
    if coloured and chosen.style == "continuous" and len(segments):
        out.write(scene_text.contour_block(plan.steps))
    out.write("gr_geometry_001 {\n")
    scene_text.segment_records(out, plan.points[segments], plan.values[segments] if coloured else None, plain)
    if chosen.style == "lines":
        scene_text.segment_records(out, plan.iso_ends, np.repeat(plan.iso_levels[:, None], 2, axis=1), plain)
    else:
        scene_text.segment_records(out, plan.iso_ends, None, dark)
    bands = (banding.band_of(plan.values[singles], plan.low, plan.high, chosen.bands) if coloured
             else np.full(len(singles), plain))
    scene_text.symbol_records(out, plan.points[singles], bands)
    if plan.floor is not None:
        out.write(scene_text.floor_record(plan.floor, floor))
    out.write("}\n")


def _write(plan, out):
    plain, dark, floor = _head(plan, out)
    _surface(plan, out, plain)
    _lines_and_symbols(plan, out, plain, dark, floor)


def _write_file(plan, path):
    """Writes the scene beside its final name and moves it there when
    complete, so that a failed or interrupted run leaves no half-written
    scene."""
    try:
        with written_whole(path) as partial, open(partial, "w") as out:
            _write(plan, out)
    except OSError as failure:
        raise conversion_error("cannot write %s: %s" % (path, failure.strerror)) from None


def scene_for(mesh, chosen, name):
    """The scene's text and its one-line summary, for a meshio mesh named
    `name` and the options `chosen` (see options.py); raises conversion_error."""
    plan = _plan(chosen, mesh, name)
    out = io.StringIO()
    _write(plan, out)
    return out.getvalue(), plan.summary()


def main(argv):
    try:
        chosen = options.parse(argv)
        refusal = same_file([chosen.out], [chosen.mesh])
        if refusal:
            raise conversion_error(refusal)
        plan = _plan(chosen, mesh_reading.read_mesh(chosen.mesh), chosen.mesh)
        _write_file(plan, chosen.out)
    except conversion_error as failure:
        print("sciray-import: %s" % failure, file=sys.stderr)
        return 1
    except MemoryError:
        print("sciray-import: out of memory", file=sys.stderr)
        return 1
    except Exception as failure:  # a mesh that meets a case not foreseen still ends in one line
        print("sciray-import: cannot convert: %s: %s" % (type(failure).__name__, failure), file=sys.stderr)
        return 1
    print("sciray-import: wrote %s: %s" % (chosen.out, plan.summary()))
    return 0


def entry():
    """The program: sciray-import's command line; exits with its status, or
    by the signal that stopped it."""
    run(lambda: main(sys.argv[1:]))
