"""sciray_import_program_test.py - the importer as the CMake build packs it
for the Debian package: one file that runs with the system's Python even
when another python3 comes first on the PATH, in the build tree and where
cmake --install puts it."""
import os
import subprocess
import tempfile
import unittest

import meshio
import numpy as np

BUILD = os.environ["SCIRAY_BUILD_DIR"]


def run(*command, **settings):
    return subprocess.run([str(c) for c in command], capture_output=True, text=True, timeout=120, **settings)


class program_test(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="sciray-import-program-")
        self.mesh = os.path.join(self.folder, "plate.vtu")
        points = np.array([[0, 0, 0], [1, 0, 0], [0, 1, 0], [1, 1, 0]], dtype=float)
        meshio.write(self.mesh, meshio.Mesh(points, [("triangle", np.array([[0, 1, 2], [1, 3, 2]]))],
                                            point_data={"x": points[:, 0]}))

    def convert_with(self, program, **settings):
        scene = os.path.join(self.folder, "plate.ren")
        result = run(program, self.mesh, scene, **settings)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("2 triangles", result.stdout)
        with open(scene) as f:
            self.assertEqual(f.read().count("gr_poly_fill_cont 3 {"), 2)

    def test_runs_with_the_system_python_whatever_comes_first_on_the_path(self):
        impostor = os.path.join(self.folder, "python3")
        with open(impostor, "w") as f:
            f.write("#!/bin/sh\necho 'not the system python' >&2\nexit 7\n")
        os.chmod(impostor, 0o755)
        env = dict(os.environ, PATH=self.folder + os.pathsep + os.environ.get("PATH", ""))
        program = os.path.join(BUILD, "sciray-import")
        self.convert_with(program, env=env)
        help_text = run(program, "--help", env=env)
        self.assertEqual(help_text.returncode, 0)
        self.assertIn("--colormap", help_text.stdout)

    def test_installed_form_runs(self):
        prefix = os.path.join(self.folder, "prefix")
        installed = run(os.environ["CMAKE"], "--install", BUILD, "--prefix", prefix)
        self.assertEqual(installed.returncode, 0, installed.stderr)
        self.convert_with(os.path.join(prefix, "bin", "sciray-import"))


if __name__ == "__main__":
    unittest.main()
