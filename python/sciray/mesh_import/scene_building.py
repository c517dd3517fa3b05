"""scene_building.py - a planned mesh (conversion.plan) written as a sciray
Scene: picture, camera, lights, colours and contour tables, the geometry,
and the colour key that says what the colours mean."""
import os

import numpy as np

from ..colour_key import ColourKey
from ..scene import Scene
from . import banding, colour_maps

# Radii of lines and of the balls of vertex cells, per unit of the mesh's size.
_LINE_RADIUS = 0.003
_SYMBOL_RADIUS = 0.02
# Decimals of the normals written: the renderer makes them unit vectors
# again, and a millionth of a radian is far below what shading shows.
_NORMAL_DECIMALS = 6
_PLAIN, _DARK, _FLOOR = (0.78, 0.78, 0.76), (0.06, 0.06, 0.06), (0.92, 0.92, 0.92)


def _one_line(text):
    """Text fit for a comment line of the scene, which must stay one short line."""
    return "".join(c if c.isprintable() else "?" for c in text)[:300]


def _material(scene, rgb, specular=0.25):
    # The ambient term takes the surface's own colour, so shade stays coloured.
    return scene.material(color=rgb, ambient=rgb, specular=(specular,) * 3, shininess=40, reflective=(0, 0, 0))


def summary(plan):
    """One line: what the scene holds and how it is coloured."""
    counts = [(len(plan.corners), "triangles"), (len(plan.parts.segments), "line segments"),
              (len(plan.iso_ends), "contour-line segments"), (len(plan.parts.singles), "symbols")]
    drawn = ", ".join("%d %s" % (n, what) for n, what in counts if n or what == "triangles")
    if plan.faces_without_area:
        drawn += " (%d faces of no area left out)" % plan.faces_without_area
    if plan.values is None:
        return drawn + "; no field"
    chosen = plan.chosen
    return "%s; %s from %.6g to %.6g in %d %s bands%s, %s" % (
        drawn, plan.field.description, *plan.shown_range(), chosen.bands, chosen.colormap,
        " on a log scale" if chosen.log else "", chosen.style)


def _head(plan, scene):
    """Comments, picture, camera and lights."""
    chosen, view = plan.chosen, plan.view
    scene.comment("sciray scene made by sciray-import from %s" % _one_line(os.path.basename(plan.name)))
    scene.comment(_one_line(summary(plan)))
    if chosen.log and plan.values is not None:
        scene.comment("the field's values are written as their logarithms to base 10")
    # A quiet light backdrop and clear air: the mesh is what matters.
    scene.render(width=chosen.size[0], height=chosen.size[1], zenith=(0.93, 0.94, 0.96), horizon=(1, 1, 1),
                 ground=(0.9, 0.9, 0.9), antialias=True, antialias_tol=0.04, antialias_depth=2,
                 line_radius=_LINE_RADIUS * view.size, symbol_radius=_SYMBOL_RADIUS * view.size, atmosphere_len=0)
    scene.camera(viewpoint=view.eye, lookat=view.centre, up_vector_1=view.up, roll_angle=view.roll or None,
                 extents=view.extents, projection=view.projection)
    scene.ambient((0.18, 0.18, 0.18))
    for toward, strength in ((view.key_light, 0.8), (view.fill_light, 0.35)):
        scene.light(toward, color=(strength,) * 3, ambient=(0, 0, 0))


def _key(plan, colours, missing_colour):
    """The colour key of a scene coloured by the field."""
    chosen, field = plan.chosen, plan.field

    def unscaled(values):
        values = np.asarray(values, dtype=float)
        return 10 ** values if chosen.log else values

    return ColourKey(name=field.name if field.components == 1 else "|%s|" % field.name, units=chosen.units,
                     edges=unscaled(banding.edges(plan.low, plan.high, chosen.bands)), colours=colours,
                     style=chosen.style, log=chosen.log, lines=unscaled(plan.line_levels),
                     line_colour=None if chosen.style == "lines" else _DARK, missing=plan.missing,
                     missing_colour=missing_colour)


def _surface(plan, scene, plain, missing):
    """The triangles: those whose corners all have values through the
    contour table in the chosen style, the others in the colour of points
    without a value; a plain surface when the style is lines."""
    corners, points = plan.corners, plan.points[plan.origins]
    normals = np.round(plan.normals, _NORMAL_DECIMALS)
    if plan.values is None:
        scene.add_mesh(points, corners, normals=normals, material=plain)
        return
    values = plan.values[plan.origins]
    valued = ~np.isnan(values[corners]).any(axis=1)
    if plan.chosen.style == "lines":
        scene.add_mesh(points, corners[valued], normals=normals, material=plain)
    else:
        scene.add_mesh(points, corners[valued], np.nan_to_num(values), normals, style=plan.chosen.style)
    scene.add_mesh(points, corners[~valued], normals=normals, material=missing)


def _lines_and_symbols(plan, scene, bands, plain, dark, missing):
    """Line cells, contour lines and the balls of vertex cells, coloured in
    steps by the table in force (the balls by the material of their band)."""
    segments, singles = plan.parts.segments, plan.parts.singles
    if plan.values is None:
        scene.add_lines(plan.points[segments], plain)
        scene.add_spheres(plan.points[singles], plain)
        return
    ends = plan.values[segments]
    valued = ~np.isnan(ends).any(axis=1)
    scene.add_lines(plan.points[segments[valued]], plain, ends[valued])
    scene.add_lines(plan.points[segments[~valued]], missing)
    if plan.chosen.style == "lines":
        scene.add_lines(plan.iso_ends, plain, np.repeat(plan.iso_levels[:, None], 2, axis=1))
    else:
        scene.add_lines(plan.iso_ends, dark)
    at = plan.values[singles]
    band = np.asarray(bands)[banding.band_of(np.nan_to_num(at), plan.low, plan.high, plan.chosen.bands)]
    scene.add_spheres(plan.points[singles], np.where(np.isnan(at), missing, band))


def scene_of(plan):
    """The Scene of a planned mesh, with its colour key when it has a field."""
    chosen = plan.chosen
    scene = Scene()
    _head(plan, scene)
    colours = colour_maps.band_colours(chosen.colormap, chosen.bands)
    bands = [_material(scene, c) for c in colours]
    plain, dark, floor = _material(scene, _PLAIN), _material(scene, _DARK, 0.1), _material(scene, _FLOOR, 0.0)
    missing_colour = colour_maps.colour(chosen.nan_color)
    missing = _material(scene, missing_colour)
    if plan.values is not None:
        table = (banding.blend_table(plan.low, plan.high, chosen.bands) if chosen.style == "continuous"
                 else list(enumerate(banding.step_levels(plan.low, plan.high, chosen.bands))))
        scene.contour_table([level for _, level in table], [bands[k] for k, _ in table])
    _surface(plan, scene, plain, missing)
    if plan.values is not None and chosen.style == "continuous" and len(plan.parts.segments):
        # Lines are coloured in steps: the blending table is replaced first.
        levels = banding.step_levels(plan.low, plan.high, chosen.bands)
        scene.contour_table(levels, bands)
    _lines_and_symbols(plan, scene, bands, plain, dark, missing)
    if plan.floor is not None:
        scene.add_mesh(plan.floor, [[0, 1, 2], [0, 2, 3]], material=floor)
    if plan.values is not None:
        scene.colour_key = _key(plan, colours, missing_colour)
    return scene
