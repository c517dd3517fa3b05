"""test_import_damaged_files.py - files on which a mesh reader crashes (as
VTK's legacy reader does on some damaged files) or goes round in circles
(meshio's PLY reader on a header without its end) end in one line saying
so, not in a crash or a hang of the importer."""
import os
import signal
import time
import unittest
from unittest import mock

import sciray
from sciray.mesh_import import mesh_reading, reader_process

import import_test_support as support

HEADER_WITHOUT_END = "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\n"


class damaged_files_test(unittest.TestCase):
    def setUp(self):
        self.folder = support.scratch_dir(self)

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w") as f:
            f.write(text)
        return path

    def test_a_reader_that_crashes(self):
        mesh = self.write("mesh.vtk", "whatever VTK's reader crashes on\n")
        with mock.patch.object(mesh_reading, "_read", lambda path: os.kill(os.getpid(), signal.SIGSEGV)), \
                self.assertRaisesRegex(ValueError, "^cannot read %s: its reader crashed \\(SIGSEGV\\)$" % mesh):
            sciray.from_mesh(mesh)

    def test_a_reader_that_never_ends(self):
        mesh = self.write("endless.ply", HEADER_WITHOUT_END)
        started = time.monotonic()
        with mock.patch.object(reader_process, "SECONDS", 1.0), \
                self.assertRaisesRegex(ValueError, "^cannot read %s: its reader did not finish in 1 s" % mesh):
            sciray.from_mesh(mesh)
        self.assertLess(time.monotonic() - started, 5)
        # The program gives it ten seconds.
        result = support.run_import(mesh, os.path.join(self.folder, "out.ren"))
        self.assertEqual((result.returncode, result.stderr),
                         (1, "sciray-import: cannot read %s: its reader did not finish in 10 s (a damaged file?)\n"
                          % mesh))


if __name__ == "__main__":
    unittest.main()
