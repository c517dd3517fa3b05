"""reading.py - structures and trajectories into one MDAnalysis Universe.

MDAnalysis reads the biomolecular formats (PDB, PDBx/mmCIF, GRO, PSF, MOL2,
XYZ, ... with trajectories DCD, XTC, TRR, NetCDF, ...); ASE reads the
materials formats (CIF, POSCAR/CONTCAR, extended XYZ, LAMMPS dumps, ...),
whose frames are then held in memory by an MDAnalysis Universe too, so
that selection, frames and cells work the same for every source. Per-atom
numbers that ASE reads beside the positions (charges, forces, a dump's own
columns) are kept frame by frame in `extra`."""
from __future__ import annotations

import bz2
import contextlib
import dataclasses
import gzip
import os
import re
import warnings

import numpy as np

from .failure import molecule_error

# Extensions MDAnalysis reads that ASE reads as well, but with less of what
# proteins carry (residues, chains, bonds).
_MDANALYSIS_FIRST = ("pdb", "ent", "pqr", "pdbqt", "gro", "psf", "mol2", "crd", "tpr", "prmtop", "parm7", "top",
                     "data", "gsd", "mmtf", "txyz", "arc", "dms", "lammpsdump", "xpdb")


@dataclasses.dataclass
class structure:
    universe: object          # an MDAnalysis Universe with a trajectory
    extra: dict               # name -> (frames, atoms) numbers read by ASE
    name: str                 # how messages and the scene's comment name it


@contextlib.contextmanager
def quiet():
    """MDAnalysis and ASE warn about what they could not find (elements,
    masses, a box); what the importer needs it works out itself."""
    with warnings.catch_warnings():
        warnings.simplefilter("ignore")
        yield


def _extension(path: str) -> str:
    base = os.path.basename(path).lower()
    for packed in (".gz", ".bz2"):
        base = base[:-len(packed)] if base.endswith(packed) else base
    return base.rpartition(".")[2] if "." in base else ""


def _head(path: str, size: int = 65536) -> str:
    """The start of the file's text, unpacked when it is compressed."""
    opener = {"gz": gzip.open, "bz2": bz2.open}.get(path.lower().rpartition(".")[2], open)
    try:
        with opener(path, "rb") as f:
            return f.read(size).decode("latin-1")
    except (OSError, EOFError):
        return ""


def _by_ase(path: str) -> bool:
    """Whether ASE rather than MDAnalysis should read the file."""
    extension = _extension(path)
    if extension == "cif":  # a crystal's CIF names items _cell_length_a, PDBx/mmCIF _cell.length_a
        return not re.search(r"^_\w+\.\w", _head(path), re.M)
    if extension == "xyz":  # extended XYZ says so on its second line
        lines = _head(path, 4096).splitlines()
        return len(lines) > 1 and ("Lattice=" in lines[1] or "Properties=" in lines[1])
    return extension not in _MDANALYSIS_FIRST and extension.upper() not in _mdanalysis_formats()


def _mdanalysis_formats():
    import MDAnalysis
    return set(MDAnalysis._PARSERS) | set(MDAnalysis._READERS)


def _dimensions(atoms) -> np.ndarray | None:
    """The cell as MDAnalysis gives it (a, b, c, alpha, beta, gamma), or None
    for a structure without a cell of volume."""
    return atoms.cell.cellpar() if atoms.cell.rank == 3 else None


def _ase_numbers(frames, count: int) -> dict:
    """The per-atom numbers of every frame (vectors as their lengths): the
    arrays beside positions, and what a calculator stored (forces, charges)."""
    def of(atoms):
        found = {k: v for k, v in atoms.arrays.items() if k not in ("numbers", "positions")}
        if atoms.calc is not None:
            found.update(getattr(atoms.calc, "results", {}))
        numbers = {}
        for name, value in found.items():
            value = np.asarray(value)
            if value.dtype.kind in "iuf" and value.ndim in (1, 2) and len(value) == count:
                numbers[name] = value.astype(float) if value.ndim == 1 else np.linalg.norm(value, axis=1)
        return numbers
    each = [of(atoms) for atoms in frames]
    common = set(each[0]).intersection(*each[1:])
    return {name: np.stack([numbers[name] for numbers in each]) for name in sorted(common)}


def from_ase(frames, name: str) -> structure:
    """A structure from a list of ASE Atoms (the frames of one system)."""
    import MDAnalysis
    from MDAnalysis.coordinates.memory import MemoryReader

    first = frames[0]
    count = len(first)
    if count == 0:
        raise molecule_error("%s has no atoms" % name)
    if any(len(atoms) != count for atoms in frames):
        raise molecule_error("%s: the frames do not all have %d atoms" % (name, count))
    universe = MDAnalysis.Universe.empty(count, trajectory=False)
    symbols = np.array(first.get_chemical_symbols(), dtype=object)
    for attribute in ("names", "types", "elements"):
        universe.add_TopologyAttr(attribute, symbols)
    universe.add_TopologyAttr("masses", first.get_masses())
    cells = [_dimensions(atoms) for atoms in frames]
    dimensions = None if any(cell is None for cell in cells) else np.array(cells)
    universe.load_new(np.stack([atoms.positions for atoms in frames]).astype(np.float32), format=MemoryReader,
                      dimensions=dimensions)
    return structure(universe, _ase_numbers(frames, count), name)


def _ase_frames(path: str):
    import ase.io
    frames = ase.io.read(path, index=":")
    return frames if isinstance(frames, list) else [frames]


def _failure(path: str, failure: Exception) -> molecule_error:
    text = str(failure).strip().splitlines()
    if isinstance(failure, (StopIteration, EOFError)):
        # Readers meet the end of a cut-short file as the end of an iterator
        # or a stream, whose own text says nothing to the user.
        reason = "the file ends before its records do"
    else:
        reason = text[0] if text else type(failure).__name__
    return molecule_error("cannot read %s: %s" % (path, reason))


def _unreadable(name: str) -> str | None:
    """Why `name` cannot be a structure or trajectory file, or None."""
    if not os.path.exists(name):
        return "no such file"
    if not os.path.isfile(name):
        return "not a file"
    if os.path.getsize(name) == 0:
        return "the file is empty"
    return None


def read(path: str, trajectory: str | None = None) -> structure:
    """The structure in `path`, with the frames of `trajectory` when given
    (else the file's own frames)."""
    import MDAnalysis

    for name in (path, trajectory):
        reason = None if name is None else _unreadable(name)
        if reason is not None:
            raise molecule_error("cannot read %s: %s" % (name, reason))
    with quiet():
        try:
            if _by_ase(path):
                read_in = from_ase(_ase_frames(path), path)
            else:
                read_in = structure(MDAnalysis.Universe(path), {}, path)
        except molecule_error:
            raise
        except Exception as failure:  # each reader has its own errors; the user gets one line
            raise _failure(path, failure) from None
        if trajectory is not None:
            load_trajectory(read_in, trajectory)
    return with_coordinates(read_in)


def with_coordinates(read_in: structure) -> structure:
    """The structure, checked to have frames of coordinates."""
    if not hasattr(read_in.universe, "trajectory") or read_in.universe.trajectory is None:
        raise molecule_error("%s has no coordinates; give them with --trajectory" % read_in.name)
    return read_in


def load_trajectory(read_in: structure, trajectory: str) -> None:
    """Replaces the frames by the trajectory's: read by MDAnalysis, or by ASE
    for the formats only ASE knows."""
    universe = read_in.universe
    try:
        if _by_ase(trajectory):
            frames = _ase_frames(trajectory)
            if len(frames[0]) != len(universe.atoms):
                raise molecule_error("%s has %d atoms, the trajectory %s %d" % (
                    read_in.name, len(universe.atoms), trajectory, len(frames[0])))
            loaded = from_ase(frames, trajectory)
            read_in.universe.load_new(loaded.universe.trajectory.coordinate_array,
                                      format=type(loaded.universe.trajectory),
                                      dimensions=loaded.universe.trajectory.dimensions_array
                                      if loaded.universe.dimensions is not None else None)
            read_in.extra = loaded.extra
        else:
            universe.load_new(trajectory)
            read_in.extra = {}
    except molecule_error:
        raise
    except Exception as failure:
        raise _failure(trajectory, failure) from None
