"""test_molecule_structures.py - sciray.from_molecule on structures built with
ASE: element colours, bonds (C60's 90), periodic crystals whose bonds stay
inside the cell, one radius per element when space-filling, a million
atoms, a molecule far from the origin drawn as at the origin, and every
style rendered."""
import ase
import ase.build
import MDAnalysis
import numpy as np
import pytest
from ase.data import atomic_numbers, vdw_radii
from ase.data.colors import jmol_colors

import sciray
from molecule_support import drawn, matching


def copper(repeat=3):
    return ase.build.bulk("Cu", "fcc", a=3.61, cubic=True).repeat((repeat, repeat, repeat))


def test_each_atom_has_its_elements_colour():
    water = ase.build.molecule("H2O")
    scene = drawn(sciray.from_molecule(water).text())
    order = matching(scene.centres, water.positions)
    colours = scene.ball_colours()[order]
    assert np.allclose(colours, jmol_colors[water.numbers])
    assert np.allclose(colours[0], (1.0, 0.051, 0.051)) and np.allclose(colours[1:], 1.0)  # O red, H white
    # Each half-bond is in the colour of the atom it starts at.
    for entry, (start, _) in zip(scene.line_entries, scene.line_ends):
        atom = int(np.argmin(np.linalg.norm(water.positions - start, axis=1)))
        assert np.allclose(scene.colours[entry], jmol_colors[water.numbers[atom]])


def test_c60_has_60_atoms_and_90_bonds_drawn_as_halves_meeting_in_the_middle():
    c60 = ase.build.molecule("C60")
    scene = drawn(sciray.from_molecule(c60).text())
    assert len(scene.centres) == 60
    assert len(scene.line_ends) == 180
    starts, middles = scene.line_ends[:, 0], scene.line_ends[:, 1]
    # Two halves share each middle, from two different atoms the same distance away.
    shared, which, count = np.unique(middles.round(3), axis=0, return_inverse=True, return_counts=True)
    assert len(shared) == 90 and (count == 2).all()
    for k in range(90):
        first, second = starts[which.ravel() == k]
        assert np.allclose(first + second, 2 * shared[k], atol=2e-3) and not np.allclose(first, second)
    lengths = 2 * np.linalg.norm(starts - middles, axis=1)
    assert lengths.min() > 1.3 and lengths.max() < 1.5  # C60's two bond lengths, 1.40 and 1.45


def test_no_bond_crosses_a_periodic_boundary():
    crystal = copper()
    scene = drawn(sciray.from_molecule(crystal, cell=True).text())
    halves = scene.line_radii == 0.15  # the bonds (sticks); then the cell's thinner lines
    lengths = 2 * np.linalg.norm(scene.line_ends[halves, 0] - scene.line_ends[halves, 1], axis=1)
    # Only nearest neighbours in the cell itself: none reaches a periodic image.
    apart = np.linalg.norm(crystal.positions[:, None] - crystal.positions[None], axis=2)
    assert len(lengths) == np.count_nonzero(np.isclose(apart, 3.61 / np.sqrt(2), atol=1e-3))
    assert np.allclose(lengths, 3.61 / np.sqrt(2), atol=1e-3)
    # The cell: twelve edges from the origin to the corners of the 3 x 3 x 3 repeat.
    edges = scene.line_ends[~halves]
    assert len(edges) == 12
    assert sorted(np.linalg.norm(edges[:, 1] - edges[:, 0], axis=1).round(3)) == [10.83] * 12
    assert np.allclose(edges.min(axis=(0, 1)), 0) and np.allclose(edges.max(axis=(0, 1)), 10.83)


def test_a_listed_bond_that_spans_the_cell_is_left_out():
    # Two bonded pairs in a 10 A box, one of them wrapped across the x faces.
    universe = MDAnalysis.Universe.empty(4, trajectory=True)
    universe.add_TopologyAttr("names", ["C1", "C2", "C3", "C4"])
    universe.add_TopologyAttr("elements", ["C"] * 4)
    universe.atoms.positions = [[5, 5, 5], [6.5, 5, 5], [0.5, 2, 2], [9.0, 2, 2]]
    universe.dimensions = [10, 10, 10, 90, 90, 90]
    universe.add_bonds([(0, 1), (2, 3)])
    scene = drawn(sciray.from_molecule(universe).text())
    assert len(scene.line_ends) == 2
    assert np.allclose(sorted(scene.line_ends[:, 0, 0]), [5, 6.5])
    # Without a cell nothing says the bond is wrapped: it is drawn.
    universe.dimensions = None
    assert len(drawn(sciray.from_molecule(universe).text()).line_ends) == 4


def test_space_filling_uses_one_radius_per_element():
    salt = ase.build.bulk("NaCl", "rocksalt", a=5.64).repeat((2, 2, 2))
    salt += ase.Atoms("H2O", positions=[[0, 0, 9], [0.76, 0, 9.6], [-0.76, 0, 9.6]])
    scene = drawn(sciray.from_molecule(salt, style="spacefill").text())
    assert len(scene.line_ends) == 0
    order = matching(scene.centres, salt.positions)
    assert np.allclose(scene.ball_radii[order], vdw_radii[salt.numbers])
    # One render block per element present, before its balls.
    assert scene.text.count("symbol_radius") == 4
    for symbol in ("Na", "Cl", "O", "H"):
        assert np.ptp(scene.ball_radii[order][salt.numbers == atomic_numbers[symbol]]) == 0


def test_a_million_atom_crystal_becomes_one_space_filling_block_of_balls(tmp_path):
    crystal = copper(63)
    assert len(crystal) == 1000188
    scene = sciray.from_molecule(crystal, style="spacefill")
    scene.save(tmp_path / "million.ren")
    text = (tmp_path / "million.ren").read_text()
    assert text.count("gr_symbol") == len(crystal)
    assert text.count("symbol_radius") == 1 and "symbol_radius %r" % float(vdw_radii[29]) in text
    last = text.rsplit("gr_symbol", 1)[1]
    assert np.allclose([float(v) for v in last.split("xyz")[1].split()[:3]], crystal.positions[-1], atol=1e-4)


def test_a_molecule_far_from_the_origin_looks_as_at_the_origin(tmp_path):
    # PDB files of C60 at the origin and thousands of ångström away: the
    # scene writes each file's own numbers, so the two are one scene shifted.
    c60 = ase.build.molecule("C60")
    shift = np.array([3000.0, 2000.0, 5000.0])
    for name, offset in (("near.pdb", np.zeros(3)), ("far.pdb", shift)):
        moved = c60.copy()
        moved.positions += offset
        moved.write(tmp_path / name, format="proteindatabank")
    for options in ({}, {"style": "spacefill", "floor": True}, {"view": "+z", "azimuth": 30, "elevation": -20}):
        scenes = [sciray.from_molecule(tmp_path / name, size=(80, 60), **options) for name in ("near.pdb", "far.pdb")]
        near, far = (drawn(scene.text()) for scene in scenes)
        assert np.allclose(far.centres - shift, near.centres, rtol=0, atol=1e-9)
        assert np.allclose(far.line_ends - shift, near.line_ends, rtol=0, atol=1e-9)
        near_picture, far_picture = (sciray.render(scene).pixels for scene in scenes)
        assert np.array_equal(near_picture, far_picture), options


@pytest.mark.parametrize("style", ["ball-and-stick", "spacefill", "licorice"])
def test_every_style_renders(style):
    c60 = ase.build.molecule("C60")
    picture = sciray.render(sciray.from_molecule(c60, style=style, size=(64, 48)))
    sky = picture.pixels[0, 0].astype(int)
    centre = picture.pixels[16:32, 24:40].astype(int)
    # Grey carbon fills the middle of the picture (spacefill) or shows in it.
    assert (np.abs(centre - sky).sum(axis=2) > 60).mean() > (0.9 if style == "spacefill" else 0.2)
    assert picture.objects == 60 + (0 if style == "spacefill" else 180)


@pytest.mark.parametrize("name", ["salt.cif", "POSCAR", "salt.xyz"])
def test_crystal_files_read_by_ase_keep_elements_and_cell(tmp_path, name):
    salt = ase.build.bulk("NaCl", "rocksalt", a=5.64, cubic=True)
    salt.set_initial_charges([1, -1] * 4)
    salt.write(tmp_path / name, format="extxyz" if name.endswith(".xyz") else None)
    scene = drawn(sciray.from_molecule(str(tmp_path / name), cell=True).text())
    order = matching(scene.centres, salt.positions)
    assert np.allclose(scene.ball_colours()[order], jmol_colors[salt.numbers])
    assert np.allclose(scene.line_ends[-12:].max(axis=(0, 1)), 5.64)
    if name.endswith(".xyz"):  # the numbers extended XYZ carries beside the positions colour by name
        charged = drawn(sciray.from_molecule(str(tmp_path / name), color="initial_charges", bands=2).text())
        assert (charged.ball_entries[order] == (salt.get_initial_charges() > 0)).all()
