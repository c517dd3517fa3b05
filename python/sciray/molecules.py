"""from_molecule() and molecule_frames(): what sciray-molecule does, as library calls."""
from __future__ import annotations

import os
import sys
from typing import Iterator

from .scene import Scene


def _is(source, module: str, name: str) -> bool:
    """Whether `source` is a module's class, without importing a module the
    caller has not imported (it could not have made one)."""
    imported = sys.modules.get(module)
    return imported is not None and isinstance(source, getattr(imported, name))


def _plan(source, options: dict):
    from .molecule_import import drawing, options as molecule_options, reading

    chosen = molecule_options.from_keywords(**options)
    group = None
    if isinstance(source, (str, os.PathLike)):
        read_in = reading.read(os.fsdecode(os.fspath(source)), chosen.trajectory)
    elif _is(source, "MDAnalysis", "Universe") or _is(source, "MDAnalysis", "AtomGroup"):
        group = None if source is source.universe else source
        read_in = reading.structure(source.universe, {}, "an MDAnalysis %s" % type(source).__name__)
        if chosen.trajectory is not None:
            with reading.quiet():
                reading.load_trajectory(read_in, chosen.trajectory)
        reading.with_coordinates(read_in)
    elif _is(source, "ase", "Atoms"):
        with reading.quiet():
            read_in = reading.from_ase([source], "an ASE Atoms")
    else:
        raise TypeError("from_molecule takes a path, an MDAnalysis Universe or AtomGroup, or an ASE Atoms, not %s"
                        % type(source).__name__)
    return drawing.plan(read_in, chosen, group)


def from_molecule(source, **options) -> Scene:
    """A Scene of the atoms and bonds of a molecule or crystal, as
    ``sciray-molecule`` writes it.

    Args:
        source: a path to a structure file (PDB, PDBx/mmCIF, GRO, PSF, MOL2,
            XYZ, CIF, POSCAR, extended XYZ, LAMMPS, ...), an MDAnalysis
            Universe or AtomGroup, or an ASE Atoms.
        **options: sciray-molecule's options, with ``_`` for ``-``:
            ``style`` ("ball-and-stick", "spacefill", "licorice"),
            ``color`` ("element", "chain", "residue" or a per-atom number
            such as "tempfactors"), ``colormap``, ``bands``,
            ``range=(lo, hi)``, ``select`` (MDAnalysis's selection
            language), ``cell``, ``view``, ``azimuth``, ``elevation``,
            ``roll``, ``zoom``, ``projection``, ``size=(width, height)``,
            ``floor``, ``trajectory`` (a file of frames) and ``frames``
            (one frame number; default the first). A Scene coloured by a
            number carries its ``colour_key``, for ``sciray.figure``.

    Raises:
        ValueError: for a structure or an option that cannot become a scene.

    >>> import ase.build
    >>> scene = sciray.from_molecule(ase.build.molecule("C60"), size=(320, 240))  # doctest: +SKIP
    >>> sciray.render(scene)                                                      # doctest: +SKIP
    """
    work = _plan(source, options)
    if len(work.frames) > 1:
        raise ValueError("frames chooses %d frames: use sciray.molecule_frames for several" % len(work.frames))
    return work.scene(work.frames[0])


def molecule_frames(source, **options) -> Iterator[Scene]:
    """The Scenes of the chosen frames of a trajectory (``frames``: a slice
    or "START:STOP:STEP", default all), all seen by one camera framed on
    them all and, for a number, coloured through one contour table. The
    options are from_molecule's; each Scene is made when it is asked for.

    >>> for k, scene in enumerate(sciray.molecule_frames("top.psf", trajectory="run.dcd", frames="::10")):
    ...     scene.save("frame_%04d.ren" % k)                                      # doctest: +SKIP
    """
    work = _plan(source, {"frames": slice(None), **options})
    return (work.scene(frame) for frame in work.frames)
