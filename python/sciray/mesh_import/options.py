"""options.py - the command line of sciray-import: what it accepts, its help,
and a one-line message for anything it does not accept."""
import argparse
import math
import re

from . import colour_maps, framing
from .failure import conversion_error

DESCRIPTION = """Writes a sciray scene (.ren) from a mesh file that meshio reads (VTK, VTU, PLY,
OBJ, STL, Gmsh and more). Triangles and polygons become smooth-shaded
triangles coloured by a field through a table of bands; line cells become
lines and vertex cells balls in the colour of their band; volume cells show
their outer faces. Render the scene with: sciray OUT.ren picture.rgb"""


class _parser(argparse.ArgumentParser):
    def error(self, message):
        raise conversion_error("%s (see sciray-import --help)" % message)


def _size(text):
    match = re.fullmatch(r"(\d+)x(\d+)", text)
    if not match or int(match.group(1)) < 4 or int(match.group(2)) < 4:
        raise argparse.ArgumentTypeError("not WIDTHxHEIGHT of at least 4x4 pixels: '%s'" % text)
    return int(match.group(1)), int(match.group(2))


def _finite(text):
    try:
        number = float(text)
    except ValueError:
        number = math.nan
    if not math.isfinite(number):
        raise argparse.ArgumentTypeError("not a number: '%s'" % text)
    return number


def _count(low, high):
    def parse(text):
        if not re.fullmatch(r"\d+", text) or not low <= int(text) <= high:
            raise argparse.ArgumentTypeError("not a whole number from %d to %d: '%s'" % (low, high, text))
        return int(text)
    return parse


def _build():
    parser = _parser(prog="sciray-import", description=DESCRIPTION,
                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("mesh", metavar="MESH", help="the mesh file")
    parser.add_argument("out", metavar="OUT.ren", help="the scene file to write")
    parser.add_argument("--scalar", metavar="NAME",
                        help="the field to colour by (default: the first point field, else the first cell field); "
                             "a cell field is averaged onto the points, a vector field gives its magnitude")
    parser.add_argument("--range", nargs=2, type=_finite, metavar=("LO", "HI"),
                        help="the range the bands divide (default: the field's own)")
    parser.add_argument("--bands", type=_count(2, 256), default=8, metavar="N",
                        help="number of colour bands (default 8)")
    parser.add_argument("--colormap", choices=colour_maps.NAMES, default="viridis",
                        help="colours of the bands, low to high (default viridis)")
    parser.add_argument("--style", choices=("continuous", "bands", "lines"), default="continuous",
                        help="continuous: colours blend from band to band; bands: one colour per band; "
                             "lines: a plain surface with contour lines in the band colours (default continuous)")
    parser.add_argument("--contour-lines", type=_count(0, 1000), metavar="K",
                        help="K contour lines at levels spread evenly inside the range, dark on a coloured surface "
                             "(default: none; with --style lines, one per band)")
    parser.add_argument("--view", choices=tuple(framing.VIEWS), default="iso",
                        help="the side of the bounding box the camera looks from, at its centre; "
                             "+z is up in the picture, +y when looking along z (default iso)")
    parser.add_argument("--size", type=_size, default=(640, 480), metavar="WxH",
                        help="picture size in pixels (default 640x480)")
    parser.add_argument("--floor", action="store_true", help="a floor under the mesh, catching its shadow")
    return parser


def _range(value):
    low, high = (_finite(repr(float(v))) for v in value)
    return [low, high]


def _pixels(value):
    return _size(value if isinstance(value, str) else "%dx%d" % tuple(value))


def _one_of(choices):
    def check(value):
        if value not in choices:
            raise argparse.ArgumentTypeError("not one of %s: %r" % (", ".join(choices), value))
        return value
    return check


# The options of a library call and how each is checked, as on the command line.
_KEYWORDS = {"scalar": str, "range": _range, "bands": lambda v: _count(2, 256)(str(v)),
             "colormap": _one_of(colour_maps.NAMES), "style": _one_of(("continuous", "bands", "lines")),
             "contour_lines": lambda v: _count(0, 1000)(str(v)), "view": _one_of(tuple(framing.VIEWS)),
             "size": _pixels, "floor": bool}


def from_keywords(**given):
    """The options of a library call (the command line's, with _ for -:
    range=(LO, HI), size=(W, H)), checked as the command line checks them."""
    chosen = _build().parse_args(["MESH", "OUT.ren"])
    for name, value in given.items():
        if name not in _KEYWORDS:
            raise conversion_error("unknown option %r; the options are %s" % (name, ", ".join(_KEYWORDS)))
        try:
            setattr(chosen, name, None if value is None and name in ("scalar", "range", "contour_lines")
                    else _KEYWORDS[name](value))
        except (argparse.ArgumentTypeError, TypeError, ValueError) as failure:
            raise conversion_error("%s: %s" % (name, failure)) from None
    return _checked(chosen)


def _checked(options):
    if options.range is not None and not options.range[0] < options.range[1]:
        raise conversion_error("--range needs LO below HI, not %g %g" % tuple(options.range))
    return options


def parse(argv):
    """The options, checked; raises conversion_error on anything not accepted."""
    # "--view -x" would read -x as an option: join such a value to its option.
    joined = []
    for arg in argv:
        if joined and joined[-1] == "--view" and arg in framing.VIEWS:
            joined[-1] = "--view=" + arg
        else:
            joined.append(arg)
    return _checked(_build().parse_args(joined))
