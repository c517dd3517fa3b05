"""test_import_series.py - sciray-import MESH... --out-dir DIR: one scene
per mesh, or per step of an XDMF time series, sharing one colour range (so
one contour table), unless each step is to have its own, and one camera
that takes in every step; a figure per step; names that would clash and
series mixed with other meshes refused in one line."""
import os
import re
import unittest

import meshio
import numpy as np
from PIL import Image

import import_test_support as support
import sciray
from conftest import picture_at


def _blocks(text, keyword):
    return re.findall(r"%s[^{]*\{[^}]*\}" % keyword, text)


class series_test(unittest.TestCase):
    def setUp(self):
        self.folder = support.scratch_dir(self)
        self.out = os.path.join(self.folder, "scenes")
        self.points, self.triangles = support.plate(4)

    def step(self, k):
        """Step k: the plate moved k along x, its field rising with k."""
        return meshio.Mesh(self.points + [k, 0, 0], [("triangle", self.triangles)],
                           point_data={"T": self.points[:, 0] + 2 * k})

    def steps_as_files(self, count=3):
        paths = []
        for k in range(count):
            paths.append(os.path.join(self.folder, "step%d.vtu" % k))
            meshio.write(paths[-1], self.step(k))
        return paths

    def scenes(self):
        names = sorted(n for n in os.listdir(self.out) if n.endswith(".ren"))
        texts = []
        for name in names:
            with open(os.path.join(self.out, name)) as f:
                texts.append(f.read())
        return names, texts

    def run_ok(self, *args):
        result = support.run_import(*args)
        self.assertEqual(result.returncode, 0, result.stderr)
        return result

    def test_steps_share_one_contour_table_and_one_camera(self):
        paths = self.steps_as_files()
        result = self.run_ok(*paths, "--out-dir", self.out, "--contour-lines", "3", "--figure", "png",
                             "--size", "160x120")
        names, texts = self.scenes()
        self.assertEqual(names, ["step0.ren", "step1.ren", "step2.ren"])
        self.assertEqual(len({tuple(_blocks(t, "contour_table_001")) for t in texts}), 1)
        self.assertEqual(len({tuple(_blocks(t, "viewing_001")) for t in texts}), 1)
        # One range, from the lowest value of the first step to the highest of the last.
        self.assertEqual(result.stdout.count("from 0 to 5 in 8"), 3)
        # A figure beside each scene, holding its picture without the corner mark.
        for name in names:
            scene = sciray.Scene.load(os.path.join(self.out, name))
            with Image.open(os.path.join(self.out, name[:-4] + ".png")) as figure:
                held = np.asarray(figure.convert("RGB"))
            for mark, found in ((False, True), (True, False)):
                self.assertEqual(picture_at(held, sciray.render(scene, mark=mark).pixels) is not None, found)
        # The camera takes in every step: each plate (what does not change with the
        # sky's colour) lies inside the picture, further right step by step.
        lefts = []
        for text in texts:
            first, second = (support.render(self, support.small(text, 96, 72) + sky, self.folder)[1]
                             for sky in ("render_002 { zenith 1 0 0 horizon 1 0 0 ground 1 0 0 }\n",
                                         "render_002 { zenith 0 0 1 horizon 0 0 1 ground 0 0 1 }\n"))
            plate = np.argwhere((first == second).all(axis=2))
            self.assertTrue((plate.min(axis=0) > 0).all() and (plate.max(axis=0) < [71, 95]).all())
            lefts.append(plate[:, 1].min())
        self.assertEqual(lefts, sorted(lefts))
        self.assertGreater(lefts[2] - lefts[0], 20)
        # Each step its own range when asked.
        self.run_ok(*paths, "--out-dir", self.out, "--per-step-range")
        _, texts = self.scenes()
        self.assertEqual(len({tuple(_blocks(t, "contour_table_001")) for t in texts}), 3)
        self.assertEqual(len({tuple(_blocks(t, "viewing_001")) for t in texts}), 1)

    def test_a_time_series_in_one_file(self):
        series = os.path.join(self.folder, "flow.xdmf")
        with meshio.xdmf.TimeSeriesWriter(series, data_format="XML") as writer:
            writer.write_points_cells(self.points, [("triangle", self.triangles)])
            for k in range(3):
                writer.write_data(0.5 * k, point_data={"T": self.points[:, 0] + 2 * k})
        self.run_ok(series, "--out-dir", self.out)
        names, texts = self.scenes()
        self.assertEqual(names, ["flow_0000.ren", "flow_0001.ren", "flow_0002.ren"])
        self.assertEqual(len({tuple(_blocks(t, "contour_table_001")) for t in texts}), 1)
        values = [max(max(r["values"]) for r in support.records(t, "gr_poly_fill_cont")) for t in texts]
        self.assertEqual(values, [1, 3, 5])

    def test_what_a_series_refuses(self):
        paths = self.steps_as_files(2)
        other = os.path.join(self.folder, "other")
        os.makedirs(other)
        twin = os.path.join(other, "step0.vtu")
        meshio.write(twin, self.step(0))
        series = os.path.join(self.folder, "flow.xdmf")
        with meshio.xdmf.TimeSeriesWriter(series, data_format="XML") as writer:
            writer.write_points_cells(self.points, [("triangle", self.triangles)])
            writer.write_data(0.0, point_data={"T": self.points[:, 0]})
        other_field = os.path.join(self.folder, "step9.vtu")
        meshio.write(other_field, meshio.Mesh(self.points, [("triangle", self.triangles)],
                                              point_data={"p": self.points[:, 0]}))
        blocker = os.path.join(self.folder, "a file")
        open(blocker, "w").close()
        for args, words in [([paths[0], twin], ["step0.ren"]), ([series, paths[0]], ["time series", "alone"]),
                            ([paths[0], "--figure", "one.png"], ["--figure takes png"]), ([paths[0]], ["cannot make"]),
                            ([paths[0], other_field], ["step9.vtu: no field 'T'"])]:
            with self.subTest(args=args):
                result = support.run_import(*args, "--out-dir", blocker if words == ["cannot make"] else self.out)
                self.assertEqual(result.returncode, 1)
                self.assertRegex(result.stderr, r"\Asciray-import: [^\n]+\n\Z")
                for word in words:
                    self.assertIn(word, result.stderr)
        self.assertFalse(os.path.exists(self.out) and os.listdir(self.out))


if __name__ == "__main__":
    unittest.main()
