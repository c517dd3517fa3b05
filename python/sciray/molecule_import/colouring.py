"""colouring.py - the colour of each atom: by element (CPK), by chain or by
residue name (a qualitative matplotlib palette), or by a per-atom number
(B-factor, charge, a trajectory's velocities, ...), whose values the scene
colours in equal bands of their range through a contour table."""
import dataclasses

import numpy as np

from . import elements
from .failure import molecule_error
from ..mesh_import import banding

KINDS = ("element", "chain", "residue")
# Words users write for MDAnalysis's per-atom attributes.
_ALIASES = {"bfactor": "tempfactors", "bfactors": "tempfactors", "b-factor": "tempfactors", "beta": "tempfactors",
            "charge": "charges", "mass": "masses", "occupancy": "occupancies", "resid": "resids",
            "velocity": "velocities", "speed": "velocities", "force": "forces"}
# Per-frame vectors of an MDAnalysis trajectory, coloured by their length.
_MOTION = ("velocities", "forces")


@dataclasses.dataclass
class numbers:
    """A per-atom number: its name, and the values of the current frame."""
    name: str
    of_frame: object     # () -> (n,) values of the atoms in the frame the trajectory stands at


def _palette(name: str, count: int) -> np.ndarray:
    """`count` colours of a qualitative matplotlib colour map, in turn."""
    import matplotlib
    listed = np.asarray(matplotlib.colormaps[name].colors, dtype=float)[:, :3]
    return listed[np.arange(count) % len(listed)]


def by_key(atoms, kind: str, numbers_of_atoms: np.ndarray):
    """(colours, index of each atom's colour) for a kind of KINDS."""
    if kind == "element":
        present, where = np.unique(numbers_of_atoms, return_inverse=True)
        return elements.colours(present), where.ravel()
    keys = _chains(atoms) if kind == "chain" else _residue_names(atoms)
    present, where = np.unique(keys, return_inverse=True)
    return _palette("tab10" if kind == "chain" else "tab20", len(present)), where.ravel()


def _chains(atoms) -> np.ndarray:
    from MDAnalysis.exceptions import NoDataError
    for attribute in ("chainIDs", "segids"):
        try:
            return np.asarray(getattr(atoms, attribute), dtype=str)
        except (NoDataError, AttributeError):
            continue
    return np.full(len(atoms), "")


def _residue_names(atoms) -> np.ndarray:
    from MDAnalysis.exceptions import NoDataError
    try:
        return np.asarray(atoms.resnames, dtype=str)
    except (NoDataError, AttributeError):
        return np.full(len(atoms), "")


def _number_attributes(universe) -> list:
    return sorted(a.attrname for a in universe._topology.attrs
                  if a.per_object in ("atom", "residue", "segment") and a.dtype in (int, float, np.float64))


def per_atom(read_in, atoms, name: str) -> numbers:
    """The number `name` of each atom: a number ASE read beside the
    positions, an MDAnalysis attribute (tempfactors, charges, masses,
    resids, ...) or the length of the frame's velocities or forces."""
    from MDAnalysis.exceptions import NoDataError
    if name in read_in.extra:
        table, trajectory = read_in.extra[name], atoms.universe.trajectory
        return numbers(name, lambda: table[trajectory.ts.frame][atoms.indices])
    attribute = _ALIASES.get(name.lower(), name)
    try:
        if attribute in _MOTION:
            getattr(atoms, attribute)
            return numbers(name, lambda: np.linalg.norm(getattr(atoms, attribute), axis=1))
        values = np.asarray(getattr(atoms, attribute))
        if values.dtype.kind in "iuf" and values.shape == (len(atoms),):
            return numbers(name, lambda: values.astype(float))
    except (NoDataError, AttributeError, TypeError):
        pass
    frame = atoms.universe.trajectory.ts
    moving = [name for name, has in zip(_MOTION, (frame.has_velocities, frame.has_forces)) if has]
    known = sorted(set(_number_attributes(atoms.universe)) | set(read_in.extra) | set(moving))
    raise molecule_error("--color %s: not element, chain or residue, nor a number of each atom of %s%s" % (
        name, read_in.name, " (it has: %s)" % ", ".join(known) if known else ""))


def range_of(values: np.ndarray, fixed=None) -> tuple:
    if not np.isfinite(values).all():
        raise molecule_error("the colours' numbers have NaN or infinite values")
    return banding.range_of(values, fixed)
