"""test_import_errors.py - every way an import can fail: the mesh
cannot be read or is empty, the field does not exist or has no value at all,
nothing can be drawn, an option is wrong, the scene cannot be written. Each
must give one line on standard error that says what is wrong, status 1, and
no scene (an older one stays as it was)."""
import os
import unittest
from importlib import metadata

import meshio
import numpy as np

import import_test_support as support


def installed(package):
    try:
        metadata.version(package)
        return True
    except metadata.PackageNotFoundError:
        return False


LEGACY_POLYDATA = """# vtk DataFile Version 3.0
a surface in a form the mesh reader does not take
ASCII
DATASET POLYDATA
POINTS 3 float
0 0 0 1 0 0 0 1 0
POLYGONS 1 4
3 0 1 2
"""


class errors_test(unittest.TestCase):
    def setUp(self):
        self.folder = support.scratch_dir(self)
        self.scene = self.path("out.ren")
        with open(self.scene, "w") as f:
            f.write("an older scene\n")
        points, triangles = support.plate(2)
        self.plate = meshio.Mesh(points, [("triangle", triangles)],
                                 point_data={"T": points[:, 0], "velocity": points},
                                 cell_data={"p": [np.arange(len(triangles), dtype=float)]})
        self.good = self.write("good.vtu", self.plate)

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, mesh):
        meshio.write(self.path(name), mesh)
        return self.path(name)

    def text_file(self, name, text):
        with open(self.path(name), "w") as f:
            f.write(text)
        return self.path(name)

    def assert_fails(self, args, *words):
        """The import fails with one line holding every word, and leaves
        the older scene and nothing else behind."""
        result = support.run_import(*args)
        self.assertEqual(result.returncode, 1, result.stderr)
        self.assertEqual(result.stdout, "")
        self.assertRegex(result.stderr, r"\Asciray-import: [^\n]+\n\Z")
        for word in words:
            self.assertIn(word, result.stderr)
        with open(self.scene) as f:
            self.assertEqual(f.read(), "an older scene\n")
        self.assertEqual(sorted(n for n in os.listdir(self.folder) if n.endswith(".ren")), ["out.ren"])

    def test_unreadable_meshes(self):
        cases = [("missing.vtu", "no such file"),
                 (self.text_file("garbage.vtu", "not xml at all\n"), "cannot read"),
                 (self.text_file("garbage.ply", "\x00\x01 binary noise"), "cannot read"),
                 (self.text_file("mesh.unknown", "0 0 0\n"), "cannot read"),
                 (self.folder, "not a file")]
        if not installed("pyvista"):  # with it, such files are read
            cases.append((self.text_file("surface.vtk", LEGACY_POLYDATA), "POLYDATA"))
        for mesh, words in cases:
            with self.subTest(mesh):
                self.assert_fails([self.path(mesh), self.scene], os.path.basename(mesh), words)

    def test_fields_that_cannot_colour(self):
        # An unknown name lists the fields there are.
        self.assert_fails([self.good, self.scene, "--scalar", "pressure"], "'pressure'", "T, velocity, p")
        bare = self.write("bare.vtu", meshio.Mesh(self.plate.points, self.plate.cells))
        self.assert_fails([bare, self.scene, "--scalar", "T"], "'T'", "no fields")
        self.assert_fails([bare, self.scene, "--contour-lines", "3"], "--contour-lines", "no")
        # A field with no value at all, or none above 0 for a log scale.
        for where in ("point", "cell"):
            with self.subTest(where):
                count = len(self.plate.points) if where == "point" else len(self.plate.cells[0].data)
                data = ({"point_data": {"T": np.full(count, np.nan)}} if where == "point"
                        else {"cell_data": {"T": [np.full(count, np.inf)]}})
                empty = self.write(where + "_nan.vtu", meshio.Mesh(self.plate.points, self.plate.cells, **data))
                self.assert_fails([empty, self.scene], "'T'", "no finite value")
        self.assert_fails([self.good, self.scene, "--scalar", "p", "--log", "--range", "0", "1"], "--range", "positive")
        negative = self.write("negative.vtu", meshio.Mesh(self.plate.points, self.plate.cells,
                                                          point_data={"T": -1 - self.plate.points[:, 0]}))
        self.assert_fails([negative, self.scene, "--log"], "'T'", "no positive value")
        # A range wider than the bands' arithmetic can hold.
        huge = self.write("huge.vtu", meshio.Mesh(self.plate.points, self.plate.cells,
                                                  point_data={"T": 1.7e308 * np.cos(self.plate.points[:, 0] * 3)}))
        self.assert_fails([huge, self.scene, "--contour-lines", "3"], "too wide", "--range")

    def test_meshes_with_nothing_to_draw(self):
        # Empty files of several formats, some of which meshio cannot read.
        empty_ply = ("ply\nformat ascii 1.0\nelement vertex 0\nproperty float x\nproperty float y\nproperty float z\n"
                     "element face 0\nproperty list uchar int vertex_indices\nend_header\n")
        meshio.write(self.path("empty.vtu"), meshio.Mesh(np.zeros((0, 3)), []))
        for name in (self.text_file("empty.stl", "solid empty\nendsolid empty\n"), self.text_file("empty.ply", empty_ply),
                     self.path("empty.vtu")):
            with self.subTest(name):
                self.assert_fails([name, self.scene], os.path.basename(name), "is empty: it has no points")
        two_corners = self.write("segment.vtu", meshio.Mesh(self.plate.points, [("polygon", np.array([[0, 1]]))]))
        self.assert_fails([two_corners, self.scene], "segment.vtu", "no cells that can be drawn", "1 of type polygon")

    def test_wrong_options(self):
        cases = [(["--bands", "1"], "--bands"), (["--bands", "many"], "--bands"),
                 (["--range", "2", "1"], "--range"), (["--range", "0", "nan"], "--range"),
                 (["--size", "3x3"], "--size"), (["--size", "wide"], "--size"),
                 (["--size", "70000x100"], "65535"), (["--zoom", "0"], "--zoom"), (["--zoom", "-1e-3"], "--zoom"),
                 (["--zoom", "1e-300"], "from 0.001 to 1000"), (["--view", "sideways"], "--view"),
                 (["--colormap", "virdis"], "did you mean viridis"), (["--nan-color", "blurple"], "--nan-color"),
                 (["--nan-color", "none"], "opaque"), (["--feature-angle", "200"], "--feature-angle"),
                 (["--azimuth", "1e400"], "--azimuth"), (["--style", "dots"], "--style"),
                 (["--contour-lines", "-2"], "--contour-lines"), (["--figure", "out.jpg"], "--figure"),
                 (["--per-step-range"], "--out-dir"), (["--shiny"], "--shiny")]
        for args, word in cases:
            with self.subTest(args):
                self.assert_fails([self.good, self.scene] + args, word)
        self.assert_fails([self.good], "OUT.ren")
        self.assert_fails([self.good, self.good], "is the same file as input")

    def test_scene_that_cannot_be_written(self):
        result = support.run_import(self.good, self.path("no/such/folder/out.ren"))
        self.assertEqual(result.returncode, 1)
        self.assertRegex(result.stderr, r"\Asciray-import: cannot write [^\n]*out\.ren: [^\n]+\n\Z")

