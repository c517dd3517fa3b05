"""sciray_import_program_test.py - the importer as a program: it runs with the
system's Python even when another python3 comes first on the PATH, and its
installed form (a link in bin/ to the program beside its modules) works."""
import os
import unittest

import meshio

import import_test_support as support


class program_test(unittest.TestCase):
    def setUp(self):
        self.folder = support.scratch_dir(self)
        points, triangles = support.plate(2)
        self.mesh = os.path.join(self.folder, "plate.vtu")
        meshio.write(self.mesh, meshio.Mesh(points, [("triangle", triangles)], point_data={"x": points[:, 0]}))

    def convert_with(self, program, **settings):
        scene = os.path.join(self.folder, "plate.ren")
        result = support.run(program, self.mesh, scene, **settings)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("8 triangles", result.stdout)
        with open(scene) as f:
            self.assertEqual(len(support.records(f.read(), "gr_poly_fill_cont")), 8)

    def test_runs_with_the_system_python_whatever_comes_first_on_the_path(self):
        impostor = os.path.join(self.folder, "python3")
        with open(impostor, "w") as f:
            f.write("#!/bin/sh\necho 'not the system python' >&2\nexit 7\n")
        os.chmod(impostor, 0o755)
        path = self.folder + os.pathsep + os.environ.get("PATH", "")
        self.convert_with(support.SCIRAY_IMPORT, env=dict(os.environ, PATH=path))
        help_text = support.run(support.SCIRAY_IMPORT, "--help", env=dict(os.environ, PATH=path))
        self.assertEqual(help_text.returncode, 0)
        self.assertIn("--colormap", help_text.stdout)

    def test_installed_form_finds_its_modules(self):
        prefix = os.path.join(self.folder, "prefix")
        installed = support.run(os.environ["CMAKE"], "--install", os.environ["SCIRAY_BUILD_DIR"], "--prefix", prefix)
        self.assertEqual(installed.returncode, 0, installed.stderr)
        program = os.path.join(prefix, "bin", "sciray-import")
        self.assertTrue(os.path.islink(program))
        self.convert_with(program)


if __name__ == "__main__":
    unittest.main()
