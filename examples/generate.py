#!/usr/bin/env python3
"""Writes the example scenes whose geometry is computed: the contour-coloured
surfaces, the molecule and the glass still life. Run it from this folder;
the .ren files it writes are checked in beside it."""
import math

# ---------------------------------------------------------------- helpers
def fmt(v):
    return "%.5g" % v


def triple(p):
    return " ".join(fmt(c) for c in p)


def render_block(width, height, **options):
    # Without a length the atmosphere is black haze with a half-length of 2
    # units; scenes that want clear air say so.
    options.setdefault("atmosphere_len", 0.0)
    lines = ["render_002 {", "  width %d height %d" % (width, height)]
    for key, value in options.items():
        if isinstance(value, bool):
            value = "true" if value else "false"
        elif isinstance(value, (tuple, list)):
            value = triple(value)
        else:
            value = fmt(value) if isinstance(value, float) else str(value)
        lines.append("  %s %s" % (key, value))
    lines.append("}")
    return "\n".join(lines) + "\n"


def viewing_block(viewpoint, lookat, extents, up=(0, 0, 1), projection="perspective"):
    return ("viewing_001 {\n  viewpoint %s  lookat %s\n  up_vector_1 %s  up_vector_2 0 1 0\n"
            "  extents %s %s\n  projection %s\n}\n") % (triple(viewpoint), triple(lookat), triple(up),
                                                       fmt(extents[0]), fmt(extents[1]), projection)


def light(number, location, color=(1, 1, 1), local=False, radius=None, spot=None, ambient=(0, 0, 0)):
    body = ["on true", "local %s" % ("true" if local else "false"), "location " + triple(location),
            "color " + triple(color), "ambient " + triple(ambient)]
    if radius is not None:
        body.append("radius " + fmt(radius))
    if spot is not None:
        aim, outer, inner = spot
        body += ["spotlight true", "spotlight_direction " + triple(aim),
                 "spotlight_angles %s %s" % (fmt(outer), fmt(inner))]
    return "  light %d {\n    %s\n  }\n" % (number, "\n    ".join(body))


def lighting_block(ambient, lights, attenuation=None):
    head = "lighting_001 %d {\n  ambient %s\n" % (len(lights), triple(ambient))
    if attenuation is not None:
        head += "  attenuation true  attenuation_factors %s\n" % triple(attenuation)
    return head + "".join(lights) + "}\n"


def colormap_block(entries):
    out = ["colormap_002 %d {" % len(entries)]
    for i, e in enumerate(entries):
        out.append("  index %d { %s }" % (i, e))
    out.append("}")
    return "\n".join(out) + "\n"


def contour_block(bands):
    return "contour_table_001 %d {\n%s}\n" % (
        len(bands), "".join("  %d %s\n" % (i, fmt(v)) for i, v in bands))


def poly(index, points, normals=None, values=None, style=None):
    kind = "gr_poly_fill_cont" if values is not None else "gr_poly_fill"
    out = ["  %s %d {" % (kind, len(points)), "    index %d" % index]
    if style:
        out.append("    style " + style)
    out.append("    xyz " + "  ".join(triple(p) for p in points))
    if normals:
        out.append("    norm " + "  ".join(triple(n) for n in normals))
    if values is not None:
        out.append("    values " + " ".join(fmt(v) for v in values))
    out.append("  }")
    return "\n".join(out) + "\n"


def lines(index, points, values=None, style="gr_contour_lines"):
    kind = "gr_lines_cont" if values is not None else "gr_lines"
    out = ["  %s %d {" % (kind, len(points)), "    index %d" % index]
    if values is not None:
        out.append("    style " + style)
    out.append("    xyz " + "  ".join(triple(p) for p in points))
    if values is not None:
        out.append("    values " + " ".join(fmt(v) for v in values))
    out.append("  }")
    return "\n".join(out) + "\n"


def symbol(index, centre, kind="gr_disk"):
    return "  gr_symbol { index %d type %s xyz %s }\n" % (index, kind, triple(centre))


def geometry(records):
    return "gr_geometry_001 {\n" + "".join(records) + "}\n"


def floor(index, size, z, checks=1, other=None):
    out = []
    step = 2.0 * size / checks
    for i in range(checks):
        for j in range(checks):
            x0, y0 = -size + i * step, -size + j * step
            k = index if other is None or (i + j) % 2 == 0 else other
            out.append(poly(k, [(x0, y0, z), (x0 + step, y0, z), (x0 + step, y0 + step, z), (x0, y0 + step, z)]))
    return out


# ------------------------------------------------------- a data surface
def bump(x, y):
    return 0.45 * math.exp(-2.5 * ((x - 0.35) ** 2 + (y - 0.2) ** 2)) \
        - 0.3 * math.exp(-3.0 * ((x + 0.45) ** 2 + (y + 0.4) ** 2)) + 0.08 * math.sin(3 * x) * math.cos(2 * y)


def bump_normal(x, y, h=1e-4):
    fx = (bump(x + h, y) - bump(x - h, y)) / (2 * h)
    fy = (bump(x, y + h) - bump(x, y - h)) / (2 * h)
    return (-fx, -fy, 1.0)


SURFACE_COLOURS = [
    "color 0.15 0.2 0.75  specular 0.4 0.4 0.4  shininess 30  reflective 0 0 0",
    "color 0.1 0.6 0.85  specular 0.4 0.4 0.4  shininess 30  reflective 0 0 0",
    "color 0.2 0.75 0.3  specular 0.4 0.4 0.4  shininess 30  reflective 0 0 0",
    "color 0.95 0.85 0.2  specular 0.4 0.4 0.4  shininess 30  reflective 0 0 0",
    "color 0.9 0.3 0.1  specular 0.4 0.4 0.4  shininess 30  reflective 0 0 0",
]
LEVELS = [-0.2, -0.05, 0.1, 0.25, 0.4]


def surface_scene(style, with_lines, grid=20):
    records = floor(6, 2.0, -0.6, 1)
    n = grid
    for i in range(n):
        for j in range(n):
            corners = [(i, j), (i + 1, j), (i + 1, j + 1), (i, j + 1)]
            pts, nrm, val = [], [], []
            for a, b in corners:
                x, y = -1 + 2.0 * a / n, -1 + 2.0 * b / n
                z = bump(x, y)
                pts.append((x, y, z))
                nrm.append(bump_normal(x, y))
                val.append(z)
            records.append(poly(0, pts, nrm, val, style))
    if with_lines:
        for j in range(0, n + 1, 4):
            y = -1 + 2.0 * j / n
            pts = [(-1 + 2.0 * a / n, y, bump(-1 + 2.0 * a / n, y) + 0.012) for a in range(n + 1)]
            records.append(lines(5, pts, [p[2] for p in pts]))
    colours = SURFACE_COLOURS + ["color 0.1 0.1 0.1", "color 0.85 0.85 0.8  reflective 0.1 0.1 0.1"]
    return colours, records


def write(name, text):
    with open(name, "w") as f:
        f.write(text)


def surfaces():
    for name, style, with_lines, title in [
            ("surface_continuous.ren", "gr_contour_continuous", True,
             "a data surface coloured continuously, with contour lines along the grid"),
            ("surface_bands.ren", "gr_contour_bands", False, "the same surface in colour bands")]:
        colours, records = surface_scene(style, with_lines)
        write(name, "# %s\n" % title
              + render_block(320, 240, zenith=(0.35, 0.45, 0.75), horizon=(0.85, 0.85, 0.9),
                             ground=(0.3, 0.3, 0.3), antialias=True, antialias_tol=0.04, antialias_depth=2,
                             line_radius=0.012)
              + viewing_block((2.6, -3.4, 2.4), (0, 0, -0.1), (2.4, 1.8))
              + lighting_block((0.25, 0.25, 0.25), [light(0, (4, -3, 6), (0.85, 0.85, 0.8)),
                                                     light(1, (-5, -2, 3), (0.25, 0.25, 0.3))])
              + colormap_block(colours)
              + contour_block(list(zip(range(5), LEVELS)))
              + geometry(records))


# ------------------------------------------------------------ molecule
def molecule():
    # Benzene: a ring of six carbons with a hydrogen outside each.
    atoms, bonds = [], []
    for k in range(6):
        a = math.pi / 3 * k
        atoms.append(((1.0 * math.cos(a), 1.0 * math.sin(a), 0.0), 0))
        atoms.append(((1.75 * math.cos(a), 1.75 * math.sin(a), 0.0), 1))
    for k in range(6):
        bonds.append((2 * k, 2 * ((k + 1) % 6)))
        bonds.append((2 * k, 2 * k + 1))
    carbon = [symbol(0, p) for p, kind in atoms if kind == 0]
    hydrogen = [symbol(1, p) for p, kind in atoms if kind == 1]
    sticks = [lines(2, [atoms[a][0], atoms[b][0]]) for a, b in bonds]
    text = ("# ball-and-stick benzene above a mirror floor, lit by a spot light and a soft area light\n"
            + render_block(320, 240, zenith=(0.1, 0.1, 0.2), horizon=(0.3, 0.3, 0.4), ground=(0.1, 0.1, 0.1),
                           antialias=True, antialias_tol=0.05, antialias_depth=2, depth=5,
                           line_radius=0.08, symbol_radius=0.3)
            + viewing_block((0.0, -5.0, 3.2), (0, 0, -0.2), (4.2, 3.15))
            + lighting_block((0.15, 0.15, 0.15), [
                light(0, (3, -3, 6), (0.8, 0.8, 0.8), local=True, radius=0.8),
                light(1, (-2, -2, 5), (0.6, 0.6, 0.5), local=True, spot=((0.35, 0.35, -0.85), 25, 15))],
                attenuation=(1, 0, 0))
            + colormap_block(["color 0.25 0.25 0.25  specular 0.8 0.8 0.8  shininess 60",
                              "color 0.95 0.95 0.95  specular 0.8 0.8 0.8  shininess 60",
                              "color 0.7 0.7 0.7  specular 0.5 0.5 0.5  shininess 30  reflective 0 0 0",
                              "color 0.2 0.25 0.3  reflective 0.55 0.55 0.55  specular 0.3 0.3 0.3  shininess 80"])
            + geometry(carbon + hydrogen + sticks + floor(3, 4.0, -0.6, 1)))
    write("molecule.ren", text)


# -------------------------------------------------------- glass still life
def glass():
    records = floor(0, 4.0, -1.0, 8, other=1)
    records += [symbol(2, (-1.1, 0.4, -0.3)), symbol(3, (0.9, 0.6, -0.3)), symbol(4, (0.0, -1.0, -0.3))]
    # A glass prism: two triangles and three rectangles.
    top = [(-0.3, 1.6, 0.6), (0.5, 1.6, 0.6), (0.1, 2.2, 0.6)]
    bottom = [(x, y, -1.0) for x, y, _ in top]
    records.append(poly(5, top))
    records.append(poly(5, list(reversed(bottom))))
    for k in range(3):
        a, b = k, (k + 1) % 3
        records.append(poly(5, [bottom[a], bottom[b], top[b], top[a]]))
    text = ("# glass with dispersion and absorption, a rough metal ball and a prism on a checker floor\n"
            + render_block(320, 240, zenith=(0.3, 0.4, 0.8), horizon=(0.9, 0.9, 0.95), ground=(0.2, 0.2, 0.2),
                           antialias=True, antialias_tol=0.06, antialias_depth=2, depth=6, symbol_radius=0.7)
            + viewing_block((0.3, -6.0, 2.2), (0, 0.3, -0.3), (4.0, 3.0))
            + lighting_block((0.2, 0.2, 0.2), [light(0, (-3, -4, 6), (0.9, 0.9, 0.85), local=True, radius=0.6)],
                             attenuation=(1, 0, 0))
            + colormap_block([
                "color 0.9 0.9 0.85  reflective 0.1 0.1 0.1  specular 0.2 0.2 0.2  shininess 20",
                "color 0.15 0.15 0.2  reflective 0.1 0.1 0.1  specular 0.2 0.2 0.2  shininess 20",
                "color 0 0 0  diffuse 0.05 0.05 0.05  specular 1 1 1  shininess 120  reflective 0.08 0.08 0.08"
                "  refractive 0.92 0.92 0.92  index_ref 1.5  index_ref_spread 0.06  attenuation 0.9 0.95 0.9  atten_len 1",
                "color 0.8 0.55 0.3  specular 0.9 0.8 0.6  shininess 40  reflective 0.5 0.4 0.3"
                "  rough_scale 0.08 rough_amplitude 0.4 rough_depth 3",
                "color 0 0 0  diffuse 0.02 0.02 0.02  specular 1 1 1  shininess 150  reflective 0.05 0.05 0.05"
                "  refractive 0.95 0.95 0.95  index_ref 1.33  attenuation 0.4 0.7 0.95  atten_len 0.8",
                "color 0 0 0  specular 1 1 1  shininess 100  reflective 0.06 0.06 0.06"
                "  refractive 0.9 0.9 0.9  index_ref 1.6  index_ref_spread 0.12"])
            + geometry(records))
    write("glass.ren", text)


# ------------------------------------------------- haze, clouds, roughness
def weather():
    records = [poly(0, [(-400, -10, 0), (400, -10, 0), (400, 400, 0), (-400, 400, 0)])]
    text = ("# boulders with rough surfaces in hazy air under a cloudy sky, lit by a spot light\n"
            + render_block(320, 240, zenith=(0.2, 0.35, 0.75), horizon=(0.75, 0.8, 0.9), ground=(0.4, 0.35, 0.3),
                           cloud_inner=(1, 1, 1), cloud_outer=(0.8, 0.82, 0.9), cloud_inner_frac=0.25,
                           cloud_outer_frac=0.2, cloud_scale=0.35, cloud_depth=5, cloud_sharpness=0.5,
                           cloud_offset=(0.3, 0.1, 0), atmosphere=(0.75, 0.78, 0.85), atmosphere_len=18.0,
                           antialias=True, antialias_tol=0.08, antialias_depth=2)
            + viewing_block((0.0, -5.0, 1.8), (0.5, 3.0, 1.2), (5.0, 3.75))
            + lighting_block((0.25, 0.25, 0.25), [
                light(0, (6, -4, 9), (0.85, 0.8, 0.7)),
                light(1, (-3, -3, 6), (0.5, 0.5, 0.45), local=True, spot=((0.2, 0.6, -0.75), 30, 20))],
                attenuation=(1, 0, 0))
            + colormap_block([
                "color 0.45 0.5 0.3  specular 0 0 0  reflective 0 0 0",
                "color 0.55 0.5 0.45  specular 0.3 0.3 0.3  shininess 15  reflective 0 0 0"
                "  rough_scale 0.15 rough_amplitude 0.6 rough_depth 4",
                "color 0.6 0.6 0.65  specular 0.6 0.6 0.6  shininess 40  reflective 0.2 0.2 0.2"
                "  rough_scale 0.4 rough_amplitude 0.3 rough_depth 2"])
            + geometry([records[0]]))
    for k, (x, y, r) in enumerate([(-2.5, 4.0, 0.9), (1.2, 6.0, 1.2), (4.0, 11.0, 1.5), (-5.0, 14.0, 1.8)]):
        text += "render_002 { symbol_radius %s }\n" % fmt(r) + geometry([symbol(1 + k % 2, (x, y, r * 0.8))])
    write("weather.ren", text)


# ------------------------------------------------ a scatter plot, previewed
def preview():
    records = []
    for axis in [(1, 0, 0), (0, 1, 0), (0, 0, 1)]:
        records.append(lines(0, [(0, 0, 0), tuple(2.2 * a for a in axis)]))
    for k in range(60):
        t = k / 60.0
        x, y = 1.0 + 0.8 * math.cos(9 * t), 1.0 + 0.8 * math.sin(9 * t)
        z = 0.2 + 1.8 * t
        records.append(symbol(1 + k % 4, (x, y, z)))
    text = ("# a 3-D scatter plot as a fast block preview (one ray per 6 x 6 block)\n"
            + render_block(320, 240, zenith=(0.95, 0.95, 0.95), horizon=(0.95, 0.95, 0.95),
                           ground=(0.95, 0.95, 0.95), pixel_size=6, line_radius=0.02, symbol_radius=0.09)
            + viewing_block((5.5, -4.0, 3.5), (1.0, 1.0, 1.0), (3.6, 2.7), projection="orthographic")
            + lighting_block((0.3, 0.3, 0.3), [light(0, (3, -2, 5), (0.8, 0.8, 0.8))])
            + colormap_block(["color 0.2 0.2 0.2", "color 0.9 0.2 0.2", "color 0.2 0.7 0.2",
                              "color 0.2 0.3 0.9", "color 0.9 0.7 0.1"])
            + geometry(records))
    write("preview.ren", text)


# ------------------------------------------------- the demo: a bit of all
def demo():
    records = floor(3, 10.0, -0.5, 20, other=4)
    n = 10
    for i in range(n):
        for j in range(n):
            pts, nrm, val = [], [], []
            for a, b in [(i, j), (i + 1, j), (i + 1, j + 1), (i, j + 1)]:
                x, y = -1 + 2.0 * a / n, -1 + 2.0 * b / n
                z = bump(x, y)
                pts.append((x - 0.2, y + 0.5, 0.5 * z - 0.2))
                nrm.append(bump_normal(x, y))
                val.append(z)
            records.append(poly(0, pts, nrm, val, "gr_contour_continuous"))
    # A water molecule: two hydrogens on an oxygen.
    o, h1, h2 = (1.2, -1.1, 0.2), (1.75, -1.45, 0.55), (0.65, -1.45, 0.55)
    records += [lines(1, [h1, o, h2]), symbol(2, o)]
    text = ("# sciray demo: a contour-coloured data surface, a water molecule and a glass ball on a checker floor\n"
            + render_block(320, 240, zenith=(0.2, 0.3, 0.8), horizon=(0.8, 0.8, 0.9), ground=(0.6, 0.62, 0.68),
                           antialias=True, antialias_tol=0.05, antialias_depth=2, depth=4,
                           line_radius=0.06, symbol_radius=0.3)
            + viewing_block((0.8, -6.5, 2.4), (-0.1, 0.2, 0.1), (4.4, 3.3))
            + lighting_block((0.2, 0.2, 0.2), [light(0, (4, -6, 8), (0.9, 0.9, 0.85)),
                                                light(1, (-4, -2, 5), (0.3, 0.3, 0.35))])
            + colormap_block([
                "color 0.1 0.3 0.9  specular 0.4 0.4 0.4  shininess 30  reflective 0 0 0",
                "color 0.8 0.8 0.8  specular 0.6 0.6 0.6  shininess 40  reflective 0 0 0",
                "color 0.9 0.15 0.1  specular 0.8 0.8 0.8  shininess 60  reflective 0.05 0.05 0.05",
                "color 0.85 0.85 0.8  reflective 0.15 0.15 0.15",
                "color 0.25 0.25 0.3  reflective 0.15 0.15 0.15",
                "color 0.95 0.9 0.2  specular 0.4 0.4 0.4  shininess 30  reflective 0 0 0",
                "color 0.9 0.2 0.1  specular 0.4 0.4 0.4  shininess 30  reflective 0 0 0",
                "color 0 0 0  specular 1 1 1  shininess 120  reflective 0.08 0.08 0.08"
                "  refractive 0.9 0.9 0.9  index_ref 1.5  index_ref_spread 0.05  attenuation 0.7 0.9 0.8  atten_len 1"])
            + contour_block([(0, -0.2), (5, 0.15), (6, 0.4)])
            + geometry(records)
            + "render_002 { symbol_radius 0.17 }\n" + geometry([symbol(1, h1), symbol(1, h2)])
            + "render_002 { symbol_radius 0.55 }\n" + geometry([symbol(7, (-1.5, -0.2, 0.05))]))
    write("demo.ren", text)


if __name__ == "__main__":
    demo()
    surfaces()
    molecule()
    glass()
    weather()
    preview()
