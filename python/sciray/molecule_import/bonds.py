"""bonds.py - the bonds to draw: those the file lists, and for atoms the file
gives no bond, bonds guessed from covalent radii. Guessing looks at the
positions as they are, never at periodic images, and a listed bond that
spans the cell (its atoms on opposite sides, joined only through a
periodic boundary) is left out of the frame where it does."""
import numpy as np

# Two atoms are bonded when they are farther apart than _CLOSEST (closer
# ones are the same site given twice) and closer than the sum of their
# covalent radii and _SLACK, in ångström.
_CLOSEST = 0.4
_SLACK = 0.45
# How much longer than its shortest periodic image a bond may be drawn.
_ACROSS = 1e-3


def listed(atoms) -> np.ndarray:
    """(k, 2) bonds of the file between atoms of the group, as indices into it."""
    from MDAnalysis.exceptions import NoDataError
    try:
        pairs = atoms.universe.atoms.bonds.to_indices()
    except (NoDataError, AttributeError):
        return np.zeros((0, 2), dtype=np.int64)
    local = np.full(len(atoms.universe.atoms), -1, dtype=np.int64)
    local[atoms.indices] = np.arange(len(atoms))
    pairs = local[np.asarray(pairs, dtype=np.int64).reshape(-1, 2)]
    return pairs[(pairs >= 0).all(axis=1)]


def guessed(positions: np.ndarray, radii: np.ndarray, among: np.ndarray) -> np.ndarray:
    """(k, 2) bonds between the atoms `among` (indices) whose distance is
    between _CLOSEST and the sum of their covalent `radii` and _SLACK."""
    from MDAnalysis.lib.distances import self_capped_distance
    if len(among) < 2:
        return np.zeros((0, 2), dtype=np.int64)
    reach = 2 * float(radii[among].max()) + _SLACK
    pairs, lengths = self_capped_distance(np.ascontiguousarray(positions[among], dtype=np.float32), reach)
    pairs = among[pairs]
    bonded = (lengths > _CLOSEST) & (lengths < radii[pairs[:, 0]] + radii[pairs[:, 1]] + _SLACK)
    return np.sort(pairs[bonded], axis=1)


def chosen(atoms, radii: np.ndarray) -> np.ndarray:
    """The bonds of the group: the file's, and guessed ones between atoms
    that have none in the file; sorted, each once."""
    from_file = listed(atoms)
    alone = np.setdiff1d(np.arange(len(atoms)), from_file.ravel())
    both = np.concatenate([np.sort(from_file, axis=1), guessed(atoms.positions, radii, alone)])
    return np.unique(both, axis=0) if len(both) else both


def within_cell(positions: np.ndarray, bonds: np.ndarray, dimensions) -> np.ndarray:
    """The bonds that do not span the cell in this frame: drawn no longer
    than their shortest periodic image. Without a cell, all of them."""
    from MDAnalysis.lib.distances import calc_bonds
    if dimensions is None or not len(bonds):
        return bonds
    start, end = positions[bonds[:, 0]], positions[bonds[:, 1]]
    drawn = np.linalg.norm(end - start, axis=1)
    shortest = calc_bonds(start, end, box=np.asarray(dimensions, dtype=np.float32))
    return bonds[drawn <= shortest + _ACROSS]


def half_bonds(positions: np.ndarray, bonds: np.ndarray) -> np.ndarray:
    """(2k, 2, 3) lines from each atom of each bond to the bond's middle:
    first the halves at the first atoms, then those at the second."""
    start, end = positions[bonds[:, 0]].astype(float), positions[bonds[:, 1]].astype(float)
    middle = (start + end) / 2
    return np.concatenate([np.stack([start, middle], axis=1), np.stack([end, middle], axis=1)])
