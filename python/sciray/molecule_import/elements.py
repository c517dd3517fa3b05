"""elements.py - each atom's element, and the element's colour (Jmol's CPK
colours: O red, H white, C grey, N blue, ...), van der Waals radius and
covalent radius, from ASE's tables."""
import numpy as np

# An atom whose element is not known: a colour no element has, and radii of
# a middling atom.
_UNKNOWN_COLOUR = (1.0, 0.45, 0.75)
_UNKNOWN_VDW = 1.6
_UNKNOWN_COVALENT = 0.75
# Hydrogen's isotopes, as files name them.
_ISOTOPES = {"D": 1, "T": 1}


def atomic_numbers(atoms) -> np.ndarray:
    """The atomic number of each atom of an MDAnalysis AtomGroup (0 where it
    is not known): from the file's elements, else guessed from the names."""
    from ase.data import atomic_numbers as numbers_of
    from MDAnalysis.exceptions import NoDataError
    from MDAnalysis.guesser.default_guesser import DefaultGuesser

    try:
        symbols = np.char.strip(np.asarray(atoms.elements, dtype=str))
    except NoDataError:
        symbols = np.full(len(atoms), "")
    missing = symbols == ""
    if missing.any():
        names, where = np.unique(np.asarray(atoms.names, dtype=str)[missing], return_inverse=True)
        guesser = DefaultGuesser(None)
        symbols = symbols.astype(object)
        symbols[missing] = np.array([guesser.guess_atom_element(n) for n in names], dtype=object)[where]
    kinds, where = np.unique(np.asarray(symbols, dtype=str), return_inverse=True)
    known = {**numbers_of, **_ISOTOPES}
    return np.array([known.get(k.strip().capitalize(), 0) for k in kinds], dtype=np.int64)[where.ravel()]


def colours(numbers: np.ndarray) -> np.ndarray:
    """(n, 3) CPK colours of the atomic numbers."""
    from ase.data.colors import jmol_colors
    result = np.array(jmol_colors, dtype=float)[np.clip(numbers, 0, len(jmol_colors) - 1)]
    result[numbers == 0] = _UNKNOWN_COLOUR
    return result


def _radius(table, numbers: np.ndarray, unknown: float) -> np.ndarray:
    values = np.asarray(table, dtype=float)[np.clip(numbers, 0, len(table) - 1)]
    return np.where(np.isfinite(values) & (numbers > 0), values, unknown)


def vdw_radii(numbers: np.ndarray) -> np.ndarray:
    """Van der Waals radii in ångström (elements without one get a middling radius)."""
    from ase.data import vdw_radii as table
    return _radius(table, numbers, _UNKNOWN_VDW)


def covalent_radii(numbers: np.ndarray) -> np.ndarray:
    """Covalent radii in ångström."""
    from ase.data import covalent_radii as table
    return _radius(table, numbers, _UNKNOWN_COVALENT)


def symbol(number: int) -> str:
    from ase.data import chemical_symbols
    return chemical_symbols[number] if 0 < number < len(chemical_symbols) else "X"
