"""test_molecule_files.py - sciray-molecule on MDAnalysis's own test files:
a protein from PDB (elements guessed from atom names, chains, B-factors),
GRO with its box and an XTC trajectory, PSF + DCD as one scene per frame
under one camera; the library call gives the command's scene; every
failure is one line, a scene that would be the structure among them."""
import filecmp
import os
import shutil

import matplotlib.pyplot
import MDAnalysis
import numpy as np
import pytest
from ase.data import atomic_numbers
from ase.data.colors import jmol_colors
from MDAnalysis.lib.mdamath import triclinic_vectors
from MDAnalysisTests.datafiles import DCD, GRO, PDB_small, PSF, TRR, XTC

import sciray
from molecule_support import drawn, matching, run_molecule


def test_a_protein_from_pdb_in_element_colours(tmp_path):
    result = run_molecule(PDB_small, tmp_path / "adk.ren", "--size", "80x60")
    assert result.returncode == 0, result.stderr
    assert result.stdout == ("sciray-molecule: wrote %s: 3341 atoms, 3365 bonds, 1 frame; ball-and-stick "
                             "coloured by element\n" % (tmp_path / "adk.ren"))
    scene = drawn((tmp_path / "adk.ren").read_text())
    protein = MDAnalysis.Universe(PDB_small).atoms
    order = matching(scene.centres, protein.positions)
    first_letter = {"N": 7, "C": 6, "O": 8, "H": 1, "S": 16}
    expected = jmol_colors[[first_letter[name[0]] for name in protein.names]]
    assert np.allclose(scene.ball_colours()[order], expected)
    # Each ball at the file's own numbers.
    with open(PDB_small) as pdb:
        written = [tuple(float(line[k:k + 8]) for k in (30, 38, 46)) for line in pdb if line.startswith("ATOM")]
    assert sorted(map(tuple, scene.centres)) == sorted(written)
    # The library call on the same file writes the same scene.
    assert sciray.from_molecule(PDB_small, size=(80, 60)).text() == scene.text


def test_colour_by_b_factor_goes_up_the_bands_with_the_number():
    protein = MDAnalysis.Universe(PDB_small).select_atoms("resid 1:40")
    scene = drawn(sciray.from_molecule(protein, color="bfactor", bands=5, colormap="viridis").text())
    order = matching(scene.centres, protein.positions)
    band = scene.ball_entries[order]
    assert [i for i, _ in scene.levels] == [0, 1, 2, 3, 4]
    levels = np.array([v for _, v in scene.levels])
    assert np.isclose(levels[-1], protein.tempfactors.max(), rtol=1e-6)
    # The band of each atom is the one the contour table gives its number,
    # and the bonds carry the numbers of their atoms into that table.
    expected = np.minimum(np.searchsorted(levels[:-1], protein.tempfactors, side="left"), 4)
    assert (band == expected).all()
    assert len(scene.line_values) and (scene.line_values[:, 0] == scene.line_values[:, 1]).all()


def test_chains_residues_and_selection():
    protein = MDAnalysis.Universe(PDB_small)
    by_residue = drawn(sciray.from_molecule(PDB_small, color="residue", select="resname GLY ALA").text())
    chosen = protein.select_atoms("resname GLY ALA")
    assert len(by_residue.centres) == len(chosen)
    order = matching(by_residue.centres, chosen.positions)
    colours = by_residue.ball_colours()[order]
    assert len({tuple(c) for c in colours}) == 2
    assert all(np.ptp(colours[chosen.resnames == name], axis=0).max() == 0 for name in ("GLY", "ALA"))
    assert len({tuple(c) for c in drawn(sciray.from_molecule(PDB_small, color="chain").text()).colours.values()
                if not np.allclose(c, 0.92)}) >= 1


def test_gro_with_its_box_and_an_xtc_trajectory(tmp_path):
    result = run_molecule(GRO, "--trajectory", XTC, "--frames", "::3", "--out-dir", tmp_path, "--select",
                          "protein", "--cell", "--style", "licorice", "--size", "64x48", "--figure", "png")
    assert result.returncode == 0, result.stderr
    scenes = sorted(name for name in os.listdir(tmp_path) if name.endswith(".ren"))
    assert scenes == ["adk_oplsaa_%04d.ren" % k for k in (0, 3, 6, 9)]
    # A figure beside each scene.
    assert sorted(set(os.listdir(tmp_path)) - set(scenes)) == ["adk_oplsaa_%04d.png" % k for k in (0, 3, 6, 9)]
    universe = MDAnalysis.Universe(GRO, XTC)
    for name, frame in zip(scenes, (0, 3, 6, 9)):
        universe.trajectory[frame]
        scene = drawn((tmp_path / name).read_text())
        protein = universe.select_atoms("protein")
        matching(scene.centres, protein.positions)
        assert set(scene.ball_radii) == {0.3}
        # The cell's twelve edges: four along each of its (triclinic) vectors, from the origin.
        edges = scene.line_ends[-12:]
        steps = np.sort((edges[:, 1] - edges[:, 0]).round(2), axis=0)
        vectors = triclinic_vectors(universe.dimensions).astype(float)
        assert np.allclose(steps, np.sort(np.repeat(vectors, 4, axis=0).round(2), axis=0))
        assert np.allclose(edges.min(axis=(0, 1)), 0)


def test_ten_frames_give_ten_scenes_with_one_camera(tmp_path):
    result = run_molecule(PSF, "--trajectory", DCD, "--frames", "0:10", "--out-dir", tmp_path, "--size", "64x48")
    assert result.returncode == 0, result.stderr
    names = sorted(os.listdir(tmp_path))
    assert names == ["adk_dims_%04d.ren" % k for k in range(10)]
    scenes = [drawn((tmp_path / n).read_text()) for n in names]
    assert len({s.camera[0] for s in scenes}) == 1
    universe = MDAnalysis.Universe(PSF, DCD)
    for frame, scene in enumerate(scenes):
        universe.trajectory[frame]
        matching(scene.centres, universe.atoms.positions)
        assert len(scene.line_ends) == 2 * len(universe.bonds)  # the file's bonds
    # The atoms move, and the one camera sees every frame's atoms whole.
    assert not np.allclose(scenes[0].centres, scenes[9].centres)
    frames = list(sciray.molecule_frames(PSF, trajectory=DCD, frames="0:10", size=(64, 48)))
    assert [f.text() for f in frames] == [s.text for s in scenes]


@pytest.mark.parametrize("args, message", [
    (["missing.pdb", "out.ren"], "cannot read missing.pdb: no such file"),
    ([PDB_small, "out.ren", "--select", "resname"], "--select 'resname': "),
    ([PDB_small, "out.ren", "--select", "resname XYZ"], "no atoms to draw (--select 'resname XYZ' chose none)"),
    ([PDB_small, "out.ren", "--frames", "1:"], "--frames 1:: selects none of the 1 frames"),
    ([PDB_small, "out.ren", "--frames", "a:b"], "not START:STOP:STEP"),
    ([PSF, "--trajectory", DCD, "out.ren", "--frames", "0:5"], "--frames chooses 5 frames: write them with --out-dir"),
    ([PSF, "--trajectory", DCD, "--out-dir", "out.ren", "--figure", "adk.png"], "with --out-dir, --figure takes png"),
    ([PDB_small], "give either OUT.ren or --out-dir DIR"),
    ([PDB_small, "out.ren", "--color", "spin"], "--color spin: not element, chain or residue, nor a number"),
    ([PDB_small, "out.ren", "--color", "bfactor", "--colormap", "rainbowish"], "unknown colour map 'rainbowish'"),
    ([PSF, "out.ren"], "has no coordinates; give them with --trajectory"),
    ([PDB_small, "out.ren", "--range", "2", "1", "--color", "bfactor"], "--range needs LO below HI"),
    ([GRO, "out.ren", "--trajectory", PDB_small], "differs from the number of atoms (47681)"),
])
def test_failures_are_one_line_and_write_nothing(tmp_path, args, message):
    result = run_molecule(*[str(tmp_path / a) if a == "out.ren" else a for a in args])
    assert result.returncode == 1
    assert result.stderr.count("\n") == 1 and result.stderr.startswith("sciray-molecule: ")
    assert message in result.stderr, result.stderr
    assert not (tmp_path / "out.ren").exists()


def test_a_scene_that_is_the_structure_is_refused(tmp_path):
    structure = tmp_path / "small.pdb"
    shutil.copy(PDB_small, structure)
    (tmp_path / "link.ren").symlink_to(structure)
    result = run_molecule(structure, tmp_path / "link.ren")
    assert (result.returncode, result.stderr) == (1, "sciray-molecule: output file %s is the same file as input %s\n"
                                                  % (tmp_path / "link.ren", structure))
    assert filecmp.cmp(structure, PDB_small, shallow=False)


def test_empty_and_cut_short_files_are_named_in_plain_words(tmp_path):
    empty = tmp_path / "empty.pdb"
    empty.write_text("")
    cut = tmp_path / "cut.gro"
    cut.write_text("title only\n")
    for path, reason in ((empty, "the file is empty"), (cut, "the file ends before its records do")):
        result = run_molecule(str(path), str(tmp_path / "out.ren"))
        assert result.returncode == 1
        assert result.stderr == "sciray-molecule: cannot read %s: %s\n" % (path, reason)
    assert not (tmp_path / "out.ren").exists()


def test_a_trajectory_property_is_coloured_through_one_table_for_all_frames():
    frames = [drawn(scene.text()) for scene in sciray.molecule_frames(
        GRO, trajectory=TRR, frames="0:3", select="protein", color="velocities", bands=8)]
    assert len({tuple(f.levels) for f in frames}) == 1
    universe = MDAnalysis.Universe(GRO, TRR)
    protein = universe.select_atoms("protein")
    speeds = [np.linalg.norm(protein.velocities, axis=1) for _ in universe.trajectory[0:3]]
    assert np.isclose(frames[0].levels[-1][1], max(s.max() for s in speeds), rtol=1e-6)
    # The same speed takes the same band in every frame: the bands follow the one table.
    levels = np.array([v for _, v in frames[0].levels])
    for scene, speed, _ in zip(frames, speeds, universe.trajectory[0:3]):
        order = matching(scene.centres, protein.positions)
        assert (scene.ball_entries[order] == np.minimum(np.searchsorted(levels[:-1], speed), 7)).all()


def test_library_calls_refuse_what_they_cannot_draw():
    with pytest.raises(TypeError, match="not int"):
        sciray.from_molecule(42)
    with pytest.raises(ValueError, match="has no coordinates"):
        sciray.from_molecule(MDAnalysis.Universe(PSF))
    with pytest.raises(ValueError, match="unknown option 'colour'"):
        sciray.from_molecule(PDB_small, colour="element")
    with pytest.raises(ValueError, match="frames chooses 3 frames: use sciray.molecule_frames"):
        sciray.from_molecule(PSF, trajectory=DCD, frames="0:3")
    with pytest.raises(ValueError, match=r"it has: .*resids, resnums, velocities\)"):
        sciray.from_molecule(GRO, trajectory=TRR, color="spin")


@pytest.mark.parametrize("name", ["1YJP.cif", "5PTI.cif.gz"])
def test_pdbx_mmcif_files_are_read_as_models_with_chains(name):
    path = os.path.join(os.path.dirname(PSF), "mmcif", name)
    model = MDAnalysis.Universe(path).atoms
    scene = drawn(sciray.from_molecule(path).text())
    order = matching(scene.centres, model.positions)
    named = model.elements != ""  # the others' elements are guessed from their names
    assert np.allclose(scene.ball_colours()[order][named],
                       jmol_colors[[atomic_numbers[e.capitalize()] for e in model.elements[named]]])
    deuterium = ~named & np.char.startswith(model.names.astype(str), "D")  # 5PTI is a neutron structure
    assert np.allclose(scene.ball_colours()[order][deuterium], 1.0)
    chains = drawn(sciray.from_molecule(path, color="chain").text())
    assert len(set(chains.ball_entries)) == len(set(model.chainIDs))


def test_a_figure_puts_the_picture_beside_the_colour_bar_of_the_number(tmp_path):
    result = run_molecule(PDB_small, tmp_path / "adk.ren", "--color", "bfactor", "--bands", "6", "--size", "96x72",
                          "--figure", tmp_path / "adk.png", "--title", "B-factors")
    assert result.returncode == 0, result.stderr
    scene = sciray.Scene.load(tmp_path / "adk.ren")
    picture = sciray.render(scene).pixels
    figure = np.round(matplotlib.pyplot.imread(tmp_path / "adk.png")[:, :, :3] * 255).astype(np.uint8)
    rows, columns = picture.shape[:2]
    corners = np.argwhere((figure[:1 - rows, :1 - columns] == picture[0, 0]).all(axis=2))
    found = [(y, x) for y, x in corners if (figure[y:y + rows, x:x + columns] == picture).all()]
    assert len(found) == 1  # the picture, every pixel as rendered
    key = sciray.from_molecule(PDB_small, color="bfactor", bands=6).colour_key
    assert key.name == "bfactor" and len(key.colours) == 6
    assert np.isclose(key.edges[-1], MDAnalysis.Universe(PDB_small).atoms.tempfactors.max(), rtol=1e-6)
    assert np.allclose(key.colours, [drawn(scene.text()).colours[i] for i in range(6)], atol=1e-9)
