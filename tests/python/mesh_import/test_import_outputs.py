"""test_import_outputs.py - what sciray-import does to files: a scene that
would land on a mesh (by name, symbolic link or hard link) is refused
before anything is written, in a series before the first scene, and a signal while the scene is being written
ends the program by that signal with the older scene untouched and no
partial file left."""
import os
import resource
import shutil
import signal
import subprocess
import time
import unittest

import meshio

import import_test_support as support


class outputs_test(unittest.TestCase):
    def setUp(self):
        self.folder = support.scratch_dir(self)

    def path(self, name):
        return os.path.join(self.folder, name)

    def plate_file(self, cells_across):
        points, triangles = support.plate(cells_across)
        meshio.write(self.path("plate.vtu"), meshio.Mesh(points, [("triangle", triangles)],
                                                        point_data={"T": points[:, 0]}))
        return self.path("plate.vtu")

    def test_a_scene_that_is_the_mesh_is_refused(self):
        mesh = self.plate_file(2)
        with open(mesh, "rb") as f:
            original = f.read()
        os.symlink(mesh, self.path("link.ren"))
        os.link(mesh, self.path("hard.ren"))
        os.symlink(self.folder, self.path("folder"))
        cases = [(mesh, mesh), (mesh, self.path("link.ren")), (mesh, self.path("hard.ren")),
                 (self.path("link.ren"), mesh), (mesh, os.path.join(self.path("folder"), "plate.vtu"))]
        for given_mesh, given_scene in cases:
            with self.subTest(scene=given_scene, mesh=given_mesh):
                result = support.run_import(given_mesh, given_scene)
                self.assertEqual(result.returncode, 1)
                self.assertEqual(result.stderr, "sciray-import: output file %s is the same file as input %s\n"
                                 % (given_scene, given_mesh))
                with open(mesh, "rb") as f:
                    self.assertEqual(f.read(), original)
        self.assertEqual(sorted(os.listdir(self.folder)), ["folder", "hard.ren", "link.ren", "plate.vtu"])

        # A series: every step's scene is checked before the first is written.
        steps = self.path("steps")
        os.mkdir(steps)
        os.link(mesh, os.path.join(steps, "plate.ren"))
        shutil.copy(mesh, self.path("first.vtu"))
        result = support.run_import(self.path("first.vtu"), mesh, "--out-dir", steps)
        self.assertEqual((result.returncode, result.stderr), (1, "sciray-import: output file %s is the same file "
                                                                 "as input %s\n" % (os.path.join(steps, "plate.ren"),
                                                                                    mesh)))
        self.assertEqual(sorted(os.listdir(steps)), ["plate.ren"])

    def start_writing(self, mesh, scene, preexec_fn):
        """The importer started and caught while it writes the scene."""
        importer = subprocess.Popen([support.SCIRAY_IMPORT, mesh, scene], stdout=subprocess.DEVNULL,
                                    stderr=subprocess.PIPE, preexec_fn=preexec_fn)
        partial = "%s.%d.tmp" % (scene, importer.pid)
        deadline = time.monotonic() + 60
        while not os.path.exists(partial) and importer.poll() is None and time.monotonic() < deadline:
            time.sleep(0.002)
        self.assertTrue(os.path.exists(partial), "the scene was not being written")
        return importer

    def test_a_signal_while_writing_leaves_the_older_scene(self):
        # 180000 triangles: the scene takes about half a second to write.
        mesh = self.plate_file(300)
        scene = self.path("out.ren")
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGXCPU):
            with self.subTest(signal=number.name):
                with open(scene, "w") as f:
                    f.write("an older scene\n")
                # No core file for SIGXCPU.
                importer = self.start_writing(mesh, scene, lambda: resource.setrlimit(resource.RLIMIT_CORE, (0, 0)))
                importer.send_signal(number)
                _, errors = importer.communicate(timeout=60)
                self.assertEqual(importer.returncode, -number, errors)
                self.assertEqual(errors, b"")
                with open(scene) as f:
                    self.assertEqual(f.read(), "an older scene\n")
                self.assertEqual(sorted(os.listdir(self.folder)), ["out.ren", "plate.vtu"])

        # A signal ignored from the start (as under nohup) stays ignored.
        importer = self.start_writing(mesh, scene, lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        importer.send_signal(signal.SIGHUP)
        _, errors = importer.communicate(timeout=60)
        self.assertEqual(importer.returncode, 0, errors)
        with open(scene) as f:
            self.assertEqual(f.read().count("gr_poly_fill_cont 3 {"), 180000)


if __name__ == "__main__":
    unittest.main()
