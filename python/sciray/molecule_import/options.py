"""options.py - the command line of sciray-molecule, the same options as
keywords of sciray.from_molecule, and a one-line message for anything
either does not accept."""
import argparse
import re

from . import drawing
from .failure import molecule_error
from ..mesh_import import banding
from ..mesh_import.options import (CAMERA_KEYWORDS, FIGURE_KINDS, _colour_map, _count, _finite, _one_of, _range,
                                   as_values, camera_arguments, figure_arguments)

DESCRIPTION = """Writes sciray scenes (.ren) of the atoms and bonds in a structure file, read
with MDAnalysis (PDB, PDBx/mmCIF, GRO, PSF, MOL2, XYZ, ...; trajectories DCD,
XTC, TRR, NetCDF, ...) or ASE (CIF, POSCAR/CONTCAR, extended XYZ, LAMMPS
data and dumps, ...). One frame makes OUT.ren; with --out-dir, every chosen
frame makes a scene in DIR, all seen by one camera, ready for
sciray-farm --movie. Render a scene with: sciray OUT.ren picture.rgb"""


class _parser(argparse.ArgumentParser):
    def error(self, message):
        raise molecule_error("%s (see sciray-molecule --help)" % message)


def _frames(text):
    """START:STOP:STEP as a Python slice (each part may be left out, or
    negative to count from the end), or one frame number."""
    match = re.fullmatch(r"(-?\d+)?(?::(-?\d+)?(?::(-?\d+)?)?)?", text.strip())
    if not text.strip() or not match:
        raise argparse.ArgumentTypeError("not START:STOP:STEP or a frame number: '%s'" % text)
    start, stop, step = (None if g is None else int(g) for g in match.groups())
    if step == 0:
        raise argparse.ArgumentTypeError("a step of 0: '%s'" % text)
    if ":" not in text:
        return slice(start, None if start == -1 else start + 1)
    return slice(start, stop, step)


def _build():
    parser = _parser(prog="sciray-molecule", description=DESCRIPTION,
                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("structure", metavar="STRUCTURE", help="the structure (or topology) file")
    parser.add_argument("out", metavar="OUT.ren", nargs="?", help="the scene file to write (one frame)")
    parser.add_argument("--trajectory", metavar="TRAJ", help="the frames' coordinates, for the structure's atoms")
    parser.add_argument("--frames", type=_frames, default=None, metavar="START:STOP:STEP",
                        help="the frames to draw, as a Python slice or one frame number "
                             "(default: the first frame; all frames with --out-dir)")
    parser.add_argument("--out-dir", metavar="DIR", help="write one scene per frame into DIR (made if missing)")
    parser.add_argument("--select", metavar="SELECTION",
                        help="the atoms to draw, in MDAnalysis's selection language (default: all), "
                             "chosen in the first frame")
    parser.add_argument("--style", choices=drawing.STYLES, default="ball-and-stick",
                        help="ball-and-stick: balls and half-bonds in the atoms' colours; spacefill: atoms at their "
                             "van der Waals radii; licorice: atoms and bonds of one radius (default ball-and-stick)")
    parser.add_argument("--color", default="element", metavar="element|chain|residue|NUMBER",
                        help="colour atoms by element (CPK colours), chain, residue name, or a per-atom number "
                             "(tempfactors or bfactor, charges, masses, velocities, forces, an ASE array...) in "
                             "bands of a colour map (default element)")
    parser.add_argument("--colormap", type=_colour_map, default="viridis", metavar="NAME",
                        help="colours of a number's bands, low to high: any of matplotlib's colour maps, "
                             "NAME_r reversed (default viridis)")
    parser.add_argument("--bands", type=_count(2, banding.MOST_BANDS), default=16, metavar="N",
                        help="bands a number's range is divided into (default 16)")
    parser.add_argument("--range", nargs=2, type=_finite, metavar=("LO", "HI"),
                        help="the range the bands divide (default: the number's own over the chosen frames)")
    parser.add_argument("--cell", action="store_true", help="draw the unit cell as lines")
    camera_arguments(parser.add_argument_group("the camera"), "the atoms")
    figure_arguments(parser.add_argument_group("figures"))
    return parser


def _checked(options):
    if options.range is not None and not options.range[0] < options.range[1]:
        raise molecule_error("--range needs LO below HI, not %g %g" % tuple(options.range))
    if options.frames is None:
        options.frames = slice(None) if options.out_dir else slice(0, 1)
    return options


def parse(argv):
    """The options, checked; raises molecule_error on anything not accepted."""
    options = _build().parse_intermixed_args(as_values(argv))
    if (options.out is None) == (options.out_dir is None):
        raise molecule_error("give either OUT.ren or --out-dir DIR (see sciray-molecule --help)")
    if options.out_dir is not None and options.figure and options.figure.lower() not in FIGURE_KINDS:
        raise molecule_error("with --out-dir, --figure takes png, pdf or svg: a figure beside each scene")
    return _checked(options)


def _frames_keyword(value):
    return value if isinstance(value, slice) else _frames(str(value))


# The options of a library call and how each is checked, as on the command line.
_KEYWORDS = {"trajectory": str, "frames": _frames_keyword, "select": str, "style": _one_of(drawing.STYLES),
             "color": str, "colormap": _colour_map, "bands": lambda v: _count(2, banding.MOST_BANDS)(str(v)),
             "range": _range, "cell": bool, **CAMERA_KEYWORDS}


def from_keywords(**given):
    """The options of a library call (the command line's, with _ for -:
    range=(LO, HI), size=(W, H), frames="0:10" or a slice), checked as the
    command line checks them."""
    chosen = _build().parse_args(["STRUCTURE"])
    for name, value in given.items():
        if name not in _KEYWORDS:
            raise molecule_error("unknown option %r; the options are %s" % (name, ", ".join(_KEYWORDS)))
        try:
            setattr(chosen, name, None if value is None and name in ("trajectory", "frames", "select", "range")
                    else _KEYWORDS[name](value))
        except (argparse.ArgumentTypeError, TypeError, ValueError) as failure:
            raise molecule_error("%s: %s" % (name, failure)) from None
    return _checked(chosen)
