"""options.py - the command line of sciray-import and the keywords of
sciray.from_mesh: what they accept, the help, and a one-line message for
anything they do not accept."""
import argparse
import math
import os
import re

from .. import _sciray
from . import banding, framing
from .failure import conversion_error

USAGE = """sciray-import [options] MESH OUT.ren
       sciray-import [options] MESH... --out-dir DIR"""
DESCRIPTION = """Writes a sciray scene (.ren) from a mesh file that meshio reads (VTK, VTU, PLY,
OBJ, STL, Gmsh, XDMF and more). Triangles and polygons become smooth-shaded
triangles coloured by a field through a table of bands; line cells become
lines and vertex cells balls in the colour of their band; volume cells show
their outer faces. Render the scene with: sciray OUT.ren picture.png
With --figure it also renders the picture and puts it beside a colour bar.
With --out-dir it writes one scene per mesh, or per step of a time series,
with one colour range and one camera for all."""
STYLES = ("continuous", "bands", "lines")
FIGURE_KINDS = ("png", "pdf", "svg")
# Zooms beyond these make a window so narrow or so wide against the mesh
# that the camera's numbers lose the view.
_ZOOMS = (1e-3, 1e3)


class _parser(argparse.ArgumentParser):
    def error(self, message):
        raise conversion_error("%s (see sciray-import --help)" % message)


def _size(text):
    least, greatest = _sciray.LEAST_PICTURE_SIDE, _sciray.GREATEST_PICTURE_SIDE
    match = re.fullmatch(r"(\d+)x(\d+)", text)
    if not match or not all(least <= int(side) <= greatest for side in match.groups()):
        raise argparse.ArgumentTypeError("not WIDTHxHEIGHT with sides from %d to %d pixels: '%s'"
                                         % (least, greatest, text))
    return int(match.group(1)), int(match.group(2))


def _finite(text):
    text = text.strip()
    try:
        number = float(text)
    except ValueError:
        number = math.nan
    if not math.isfinite(number):
        raise argparse.ArgumentTypeError("not a number: '%s'" % text)
    return number


def _between(low, high, what):
    def parse(text):
        number = _finite(text)
        if not low <= number <= high:
            raise argparse.ArgumentTypeError("not %s from %g to %g: '%s'" % (what, low, high, text.strip()))
        return number
    return parse


def _count(low, high):
    def parse(text):
        text = text.strip()
        if not re.fullmatch(r"\d+", text) or not low <= int(text) <= high:
            raise argparse.ArgumentTypeError("not a whole number from %d to %d: '%s'" % (low, high, text))
        return int(text)
    return parse


def _colour_map(name):
    from . import colour_maps
    try:
        return colour_maps.checked(name)
    except conversion_error as failure:
        raise argparse.ArgumentTypeError(str(failure)) from None


def _colour(text):
    from . import colour_maps
    try:
        colour_maps.colour(text)
    except conversion_error as failure:
        raise argparse.ArgumentTypeError(str(failure)) from None
    return text


def figure_kind(text):
    """"png", "pdf" or "svg": the kind of figure a --figure value asks for."""
    return text.lower() if text.lower() in FIGURE_KINDS else os.path.splitext(text)[1].lower()[1:]


def _figure(text):
    if figure_kind(text) not in FIGURE_KINDS:
        raise argparse.ArgumentTypeError("not a figure file (.png, .pdf or .svg) or one of png, pdf, svg: '%s'"
                                         % text)
    return text


def _field_options(parser):
    group = parser.add_argument_group("the field and its colours")
    group.add_argument("--scalar", metavar="NAME",
                       help="the field to colour by (default: the first point field, else the first cell field); "
                            "a cell field is averaged onto the points, a vector field gives its magnitude")
    group.add_argument("--units", metavar="TEXT", help="the field's units, for the colour bar")
    group.add_argument("--range", nargs=2, type=_finite, metavar=("LO", "HI"),
                       help="the range the bands divide (default: the field's own)")
    group.add_argument("--log", action="store_true",
                       help="bands of equal ratio: the range divided on a logarithmic scale")
    group.add_argument("--bands", type=_count(2, banding.MOST_BANDS), default=8, metavar="N",
                       help="number of colour bands (default 8)")
    group.add_argument("--colormap", type=_colour_map, default="viridis", metavar="NAME",
                       help="colours of the bands, low to high: any of matplotlib's colour maps, "
                            "NAME_r reversed (default viridis)")
    group.add_argument("--nan-color", type=_colour, default="grey", metavar="COLOUR",
                       help="the colour of points without a value (NaN, infinite, masked, or not positive "
                            "with --log): a name or #rrggbb (default grey)")
    group.add_argument("--style", choices=STYLES, default="continuous",
                       help="continuous: colours blend from band to band; bands: one colour per band; "
                            "lines: a plain surface with contour lines in the band colours (default continuous)")
    group.add_argument("--contour-lines", type=_count(0, 1000), metavar="K",
                       help="K contour lines at levels spread evenly inside the range, dark on a coloured surface "
                            "(default: none; with --style lines, one per band)")


def camera_arguments(group, subject):
    """The camera's options (--view to --floor), for a picture of `subject`
    ("the mesh", "the atoms")."""
    group.add_argument("--view", choices=tuple(framing.VIEWS), default="iso",
                       help="the side of the bounding box the camera looks from, at its centre; "
                            "+z is up in the picture, +y when looking along z (default iso)")
    group.add_argument("--azimuth", type=_between(-360, 360, "degrees"), default=0.0, metavar="DEG",
                       help="turn the camera about the view's up axis, to its right for positive DEG")
    group.add_argument("--elevation", type=_between(-360, 360, "degrees"), default=0.0, metavar="DEG",
                       help="tilt the camera up (down for negative DEG)")
    group.add_argument("--roll", type=_between(-360, 360, "degrees"), default=0.0, metavar="DEG",
                       help="turn the camera about its line of sight, as the scene's roll_angle does")
    group.add_argument("--zoom", type=_between(*_ZOOMS, "a factor"), default=1.0, metavar="F",
                       help="magnify by F, from 0.001 to 1000 (below 1: take in more around %s)" % subject)
    group.add_argument("--projection", choices=framing.PROJECTIONS, default="perspective",
                       help="perspective (the default) or orthographic: parallel rays, no foreshortening")
    group.add_argument("--size", type=_size, default=(640, 480), metavar="WxH",
                       help="picture size in pixels (default 640x480)")
    group.add_argument("--floor", action="store_true", help="a floor under %s, catching the shadows" % subject)


def _camera_options(parser):
    group = parser.add_argument_group("the camera and the surface")
    camera_arguments(group, "the mesh")
    group.add_argument("--feature-angle", type=_between(0, 180, "degrees"), default=60.0, metavar="DEG",
                       help="edges where faces meet at more than DEG stay sharp; the normals of computed "
                            "smooth shading are not averaged across them (default 60)")


def figure_arguments(group):
    """--figure, --title and --caption."""
    group.add_argument("--figure", type=_figure, metavar="FIG",
                       help="also render the scene (without the corner mark) and write a figure of the picture "
                            "beside a colour bar: FIG.png, FIG.pdf or FIG.svg, or png, pdf or svg for one "
                            "beside each scene")
    group.add_argument("--title", metavar="TEXT", help="a title above the figure's picture")
    group.add_argument("--caption", metavar="TEXT", help="a caption below the figure's picture")


def _output_options(parser):
    group = parser.add_argument_group("figures and series")
    figure_arguments(group)
    group.add_argument("--out-dir", metavar="DIR",
                       help="write one scene per mesh (or per step of a time series) into DIR, with one colour "
                            "range and one camera for all")
    group.add_argument("--per-step-range", action="store_true",
                       help="with --out-dir: each step's bands divide its own range")


def _build():
    parser = _parser(prog="sciray-import", usage=USAGE, description=DESCRIPTION,
                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("paths", nargs="+", metavar="MESH... OUT.ren",
                        help="the mesh file and the scene to write; with --out-dir, the meshes")
    _field_options(parser)
    _camera_options(parser)
    _output_options(parser)
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


def _real(check):
    return lambda value: check(repr(float(value)))


# The camera's options as keywords of a library call, checked as on the command line.
CAMERA_KEYWORDS = {"view": _one_of(tuple(framing.VIEWS)), "azimuth": _real(_between(-360, 360, "degrees")),
                   "elevation": _real(_between(-360, 360, "degrees")),
                   "roll": _real(_between(-360, 360, "degrees")), "zoom": _real(_between(*_ZOOMS, "a factor")),
                   "projection": _one_of(framing.PROJECTIONS), "size": _pixels, "floor": bool}
# The options of a library call and how each is checked, as on the command line.
_KEYWORDS = {"scalar": str, "units": str, "range": _range, "log": bool,
             "bands": lambda v: _count(2, banding.MOST_BANDS)(str(v)), "colormap": _colour_map, "nan_color": _colour,
             "style": _one_of(STYLES), "contour_lines": lambda v: _count(0, 1000)(str(v)), **CAMERA_KEYWORDS,
             "feature_angle": _real(_between(0, 180, "degrees"))}
_MAY_BE_NONE = ("scalar", "units", "range", "contour_lines")


def from_keywords(**given):
    """The options of a library call (the command line's, with _ for -:
    range=(LO, HI), size=(W, H)), checked as the command line checks them."""
    chosen = _build().parse_args(["MESH", "OUT.ren"])
    for name, value in given.items():
        if name not in _KEYWORDS:
            raise conversion_error("unknown option %r; the options are %s" % (name, ", ".join(_KEYWORDS)))
        try:
            setattr(chosen, name, None if value is None and name in _MAY_BE_NONE else _KEYWORDS[name](value))
        except (argparse.ArgumentTypeError, TypeError, ValueError) as failure:
            raise conversion_error("%s: %s" % (name, failure)) from None
    return _checked(chosen)


def _checked(options):
    if options.range is not None and not options.range[0] < options.range[1]:
        raise conversion_error("--range needs LO below HI, not %g %g" % tuple(options.range))
    if options.log and options.range is not None and options.range[0] <= 0:
        raise conversion_error("--range needs a positive LO with --log, not %g" % options.range[0])
    return options


def _arranged(options):
    """The paths sorted into meshes and the scene (or the folder) to write."""
    if options.out_dir is None:
        if len(options.paths) != 2:
            raise conversion_error("give one MESH and OUT.ren, or several meshes with --out-dir DIR "
                                   "(see sciray-import --help)")
        options.meshes, options.out = options.paths[:1], options.paths[1]
        if options.per_step_range:
            raise conversion_error("--per-step-range is for a series written with --out-dir")
    else:
        options.meshes, options.out = options.paths, None
        if options.figure and options.figure.lower() not in FIGURE_KINDS:
            raise conversion_error("with --out-dir, --figure takes png, pdf or svg: a figure beside each scene")
    return options


def as_values(argv):
    """The arguments with the values argparse would take for options marked
    as values: a side after --view ("-x") and negative numbers ("-1e-3")."""
    joined = []
    for arg in argv:
        if joined and joined[-1] == "--view" and arg in framing.VIEWS:
            joined[-1] = "--view=" + arg
        elif re.fullmatch(r"-(\d+\.?\d*|\.\d+)(e[-+]?\d+)?", arg, flags=re.I):
            joined.append(" " + arg)
        else:
            joined.append(arg)
    return joined


def parse(argv):
    """The options, checked; raises conversion_error on anything not accepted."""
    return _arranged(_checked(_build().parse_args(as_values(argv))))
