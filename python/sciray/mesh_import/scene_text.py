"""scene_text.py - the text of a scene: the blocks that set up picture,
camera, lights, colours and contour tables, and the geometry records.
Records are written in bulk: every number is formatted once, in one string
operation per array, and records are filled in chunks by one operation each."""
import numpy as np

# Numbers as written: positions and data to nine digits, enough for small
# features far from the origin; normals (which the renderer normalises
# again) to four.
POSITION = "%.9g"
NORMAL = "%.4g"
VALUE = "%.9g"
_CHUNK = 20000


def numbers(array, form):
    """One string per row of the array: its numbers in `form`, blank-separated.
    Records of points share these strings instead of formatting again."""
    if len(array) == 0:
        return np.zeros(0, dtype=object)
    rows = np.asarray(array, dtype=float).reshape(len(array), -1)
    line = " ".join([form] * rows.shape[1]) + "\n"
    return np.array((line * len(rows) % tuple(rows.ravel().tolist())).split("\n")[:-1], dtype=object)


def _records(out, template, columns):
    """One record per row of `columns` (strings): the template filled with the row."""
    for start in range(0, len(columns), _CHUNK):
        part = columns[start:start + _CHUNK]
        out.write((template * len(part)) % tuple(part.ravel().tolist()))


def _triple(v):
    return " ".join("%.6g" % c for c in v)


def render_block(width, height, line_radius, symbol_radius):
    # A quiet light backdrop and clear air: the mesh is what matters.
    return ("render_002 {\n  width %d height %d\n  zenith 0.93 0.94 0.96  horizon 1 1 1  ground 0.9 0.9 0.9\n"
            "  antialias true  antialias_tol 0.04  antialias_depth 2\n"
            "  line_radius %s  symbol_radius %s\n  atmosphere_len 0\n}\n"
            % (width, height, "%.6g" % line_radius, "%.6g" % symbol_radius))


def viewing_block(seen):
    return ("viewing_001 {\n  viewpoint %s  lookat %s\n  up_vector_1 %s  up_vector_2 0 1 0\n"
            "  extents %.6g %.6g\n  projection perspective\n}\n"
            % (_triple(seen.eye), _triple(seen.centre), _triple(seen.up), seen.extents[0], seen.extents[1]))


def lighting_block(seen):
    lights = [(seen.key_light, 0.8), (seen.fill_light, 0.35)]
    text = "lighting_001 2 {\n  ambient 0.18 0.18 0.18\n"
    for number, (toward, strength) in enumerate(lights):
        text += ("  light %d {\n    on true  local false\n    location %s\n    color %s\n    ambient 0 0 0\n  }\n"
                 % (number, _triple(toward), _triple([strength] * 3)))
    return text + "}\n"


def _surface(rgb, specular=0.25):
    # The ambient term takes the surface's own colour, so shade stays coloured.
    return "color %s  ambient %s  specular %s  shininess 40  reflective 0 0 0" % (
        _triple(rgb), _triple(rgb), _triple([specular] * 3))


def colormap_block(band_colours):
    """Bands first (entry k is band k), then the plain surface, the dark
    contour lines and the floor; returns the text and those three indices."""
    entries = [_surface(c) for c in band_colours]
    entries += [_surface((0.78, 0.78, 0.76)), _surface((0.06, 0.06, 0.06), 0.1), _surface((0.92, 0.92, 0.92), 0.0)]
    text = "colormap_002 %d {\n%s}\n" % (len(entries), "".join("  index %d { %s }\n" % (i, e)
                                                                 for i, e in enumerate(entries)))
    count = len(band_colours)
    return text, (count, count + 1, count + 2)


def contour_block(pairs):
    """The table of (colour-map index, level) pairs."""
    return "contour_table_001 %d {\n%s}\n" % (len(pairs), "".join("  %d %s\n" % (i, VALUE % v) for i, v in pairs))


def triangle_records(out, triangles, positions, normals, values, index, style):
    """Triangles with normals at their corners, and field values when
    `values` (strings per point, like the others) are given."""
    a, b, c = triangles.T
    columns = [positions[a], positions[b], positions[c], normals[a], normals[b], normals[c]]
    body = "    xyz %s  %s  %s\n    norm %s  %s  %s\n"
    if values is None:
        head = "  gr_poly_fill 3 {\n    index %d\n" % index
    else:
        head = "  gr_poly_fill_cont 3 {\n    index %d\n    style %s\n" % (index, style)
        columns += [values[a], values[b], values[c]]
        body += "    values %s %s %s\n"
    _records(out, head + body + "  }\n", np.stack(columns, axis=1))


def segment_records(out, ends, values, index):
    """Two-point lines from (n, 2, 3) ends; contour-coloured by the (n, 2)
    values when given."""
    where = numbers(ends.reshape(-1, 3), POSITION).reshape(-1, 2)
    if values is None:
        _records(out, "  gr_lines 2 {\n    index %d\n    xyz %%s  %%s\n  }\n" % index, where)
        return
    written = numbers(np.reshape(values, (-1, 1)), VALUE).reshape(-1, 2)
    template = ("  gr_lines_cont 2 {\n    index %d\n    style gr_contour_lines\n"
                "    xyz %%s  %%s\n    values %%s %%s\n  }\n")
    _records(out, template % index, np.concatenate([where, written], axis=1))


def symbol_records(out, centres, indices):
    """A ball at each centre, each with its own colour-map index."""
    columns = np.stack([numbers(np.reshape(indices, (-1, 1)), "%d"), numbers(centres, POSITION)], axis=1)
    _records(out, "  gr_symbol { index %s type gr_disk xyz %s }\n", columns)


def floor_record(corners, index):
    return "  gr_poly_fill 4 {\n    index %d\n    xyz %s\n  }\n" % (index, "  ".join(_triple(c) for c in corners))
