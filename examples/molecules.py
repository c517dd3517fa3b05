#!/usr/bin/env python3
"""Writes the molecule pictures of the gallery with sciray-molecule's library
calls: a protein in ball-and-stick (adenylate kinase, from MDAnalysis's test
files), a rock-salt crystal with its cell (built with ASE and read back from a
CIF file), and a strip of five frames of a trajectory of the same protein
(PSF + DCD), coloured along the chain by residue number. Run it with the Python the package is installed in, with its
molecules extra and MDAnalysisTests:

    build/venv/bin/python examples/molecules.py docs/gallery

The scenes are left beside the pictures' folder, in molecule-scenes/."""
import os
import sys

import matplotlib.pyplot
import numpy as np
from ase.spacegroup import crystal
from MDAnalysisTests.datafiles import DCD, PDB_small, PSF

import sciray


def main(folder):
    scenes = os.path.join(os.path.dirname(os.path.abspath(folder)), "molecule-scenes")
    os.makedirs(scenes, exist_ok=True)

    protein = sciray.from_molecule(PDB_small, size=(640, 480))
    protein.save(os.path.join(scenes, "protein.ren"))
    sciray.render(protein).save(os.path.join(folder, "molecule_protein.png"))

    salt = crystal(["Na", "Cl"], basis=[(0, 0, 0), (0.5, 0.5, 0.5)], spacegroup=225, cellpar=[5.64] * 3 + [90] * 3)
    cif = os.path.join(scenes, "salt.cif")
    salt.repeat((2, 2, 2)).write(cif)
    cell = sciray.from_molecule(cif, cell=True, size=(640, 480), azimuth=10, floor=True)
    cell.save(os.path.join(scenes, "salt.ren"))
    sciray.render(cell).save(os.path.join(folder, "molecule_crystal.png"))

    frames = sciray.molecule_frames(PSF, trajectory=DCD, frames="0:98:24", style="licorice", color="resids",
                                    colormap="turbo", bands=32,
                                    size=(240, 240), view="-y")
    pictures = []
    for k, scene in enumerate(frames):
        scene.save(os.path.join(scenes, "adk_%d.ren" % k))
        pictures.append(sciray.render(scene).pixels)
    matplotlib.pyplot.imsave(os.path.join(folder, "molecule_frames.png"), np.concatenate(pictures, axis=1))


if __name__ == "__main__":
    main(sys.argv[1] if len(sys.argv) > 1 else "gallery")
