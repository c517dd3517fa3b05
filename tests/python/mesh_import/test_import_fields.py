"""test_import_fields.py - how the importer colours a field: matplotlib's
colour maps (reversed with _r), bands of equal ratio with --log, points
without a value drawn in their own colour, the field's own range (of all
of a volume mesh's points), negative numbers in scientific notation, and a
summary that counts what was written."""
import os
import re
import unittest
import warnings

import matplotlib
import meshio
import numpy as np

import import_test_support as support
import sciray


def _hexahedra(cells_across):
    """A cube of n^3 hexahedra; its inner points are not on its surface."""
    n = cells_across
    axis = np.arange(n + 1, dtype=float)
    x, y, z = np.meshgrid(axis, axis, axis, indexing="ij")
    points = np.stack([x.ravel(), y.ravel(), z.ravel()], axis=1)
    at = np.arange((n + 1) ** 3).reshape(n + 1, n + 1, n + 1)
    c = at[:-1, :-1, :-1].ravel()
    dx, dy, dz = at[1, 0, 0], at[0, 1, 0], at[0, 0, 1]
    return points, np.stack([c, c + dx, c + dx + dy, c + dy, c + dz, c + dx + dz, c + dx + dy + dz, c + dy + dz],
                            axis=1)


class fields_test(unittest.TestCase):
    def setUp(self):
        self.folder = support.scratch_dir(self)
        self.points, self.triangles = support.plate(8)

    def write(self, name, values, cells=None, points=None):
        path = os.path.join(self.folder, name)
        points = self.points if points is None else points
        meshio.write(path, meshio.Mesh(points, cells or [("triangle", self.triangles)], point_data={"f": values}))
        return path

    def band_colours(self, scene_text, count):
        entries = support.colour_entries(scene_text)
        return [tuple(entries[k]) for k in range(count)]

    def test_any_matplotlib_colour_map_and_its_reverse(self):
        path = self.write("plate.vtu", self.points[:, 0])
        for name in ("plasma", "plasma_r", "RdBu", "twilight_r"):
            with self.subTest(name):
                text = support.imported(self, path, "--colormap", name, "--bands", "4")
                expected = matplotlib.colormaps[name]((np.arange(4) + 0.5) / 4)[:, :3]
                np.testing.assert_allclose(np.array(self.band_colours(text, 4)) / 255, expected, atol=1 / 255)
        forward, backward = (self.band_colours(support.imported(self, path, "--colormap", n), 8)
                             for n in ("magma", "magma_r"))
        # The same colours the other way round (but for a table entry's step).
        np.testing.assert_allclose(forward, backward[::-1], atol=4)

    def test_log_scale_bands_of_equal_ratio(self):
        # 10 to 10^4 across the plate: on a log scale three equal bands, each a third of it wide.
        path = self.write("plate.vtu", 10 ** (1 + 3 * self.points[:, 0]))
        text = support.imported(self, path, "--log", "--style", "bands", "--bands", "3", "--view", "+z",
                                "--size", "120x90")
        table = re.search(r"contour_table_001 3 \{([^}]*)\}", text).group(1).split()
        np.testing.assert_allclose([float(v) for v in table[1::2]], [2, 3, 4])
        _, picture = support.render(self, support.flat_lit(text), self.folder)
        row = picture[45]
        plate = np.flatnonzero(row.min(axis=1) < 200)
        entries = support.colour_entries(text)
        for k, share in enumerate((1 / 6, 1 / 2, 5 / 6)):
            np.testing.assert_array_equal(row[plate[0] + int(share * len(plate))], entries[k])
        key = sciray.from_mesh(path, log=True, bands=3).colour_key
        np.testing.assert_allclose(key.edges, [10, 100, 1000, 10000])
        self.assertTrue(key.log)

    def test_points_without_a_value_are_drawn_in_their_own_colour(self):
        values = self.points[:, 0].copy()
        corner = 40  # in the middle of the plate
        values[corner] = np.nan
        path = self.write("holed.vtu", values)
        result = support.run_import(path, os.path.join(self.folder, "holed.ren"), "--nan-color", "magenta",
                                    "--contour-lines", "3", "--view", "+z", "--size", "120x90")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertRegex(result.stderr, r"\Asciray-import: field 'f' has no value \(NaN, infinite or masked\) "
                                        r"at 1 of 81 points; they are drawn in magenta\n\Z")
        with open(os.path.join(self.folder, "holed.ren")) as f:
            text = f.read()
        plain = support.records(text, "gr_poly_fill")
        self.assertEqual(len(plain), int((self.triangles == corner).any(axis=1).sum()))
        magenta = [k for k, rgb in support.colour_entries(text).items() if tuple(rgb) == (255, 0, 255)]
        self.assertEqual({int(r["index"][0]) for r in plain}, set(magenta))
        _, picture = support.render(self, support.flat_lit(text), self.folder)
        self.assertTrue((picture == (255, 0, 255)).all(axis=2).any())
        # The contour lines keep out of the triangles without values.
        for line in support.records(text, "gr_lines"):
            ends = line["xyz"].reshape(2, 3)
            self.assertTrue((np.linalg.norm(ends[:, :2] - self.points[corner, :2], axis=1) > 0.1).any())

        # A masked array, given to from_mesh, is drawn the same way, with a warning.
        mesh = meshio.Mesh(self.points, [("triangle", self.triangles)])
        mesh.point_data["f"] = np.ma.masked_array(self.points[:, 0], mask=np.arange(len(self.points)) == corner)
        with warnings.catch_warnings(record=True) as caught:
            warnings.simplefilter("always")
            scene = sciray.from_mesh(mesh)
        self.assertIn("at 1 of 81 points", str(caught[0].message))
        self.assertEqual(scene.colour_key.missing, 1)
        self.assertEqual(len(support.records(scene.text(), "gr_poly_fill")), len(plain))

    def test_the_default_range_is_the_fields_own(self):
        points, hexahedra = _hexahedra(3)
        centre = np.linalg.norm(points - 1.5, axis=1)
        path = self.write("block.vtu", 10 - centre, [("hexahedron", hexahedra)], points)
        result = support.run_import(path, os.path.join(self.folder, "block.ren"))
        self.assertEqual(result.returncode, 0, result.stderr)
        # The highest value lies at the inner points, which the surface does not show.
        self.assertIn("from %.6g to %.6g" % ((10 - centre).min(), (10 - centre).max()), result.stdout)
        # A field of one value, but for rounding, gets a range around it.
        path = self.write("level.vtu", 5e6 + 1e-9 * self.points[:, 0])
        key = sciray.from_mesh(path, contour_lines=3).colour_key
        self.assertEqual((key.edges[0], key.edges[-1]), (2.5e6, 7.5e6))

    def test_negative_numbers_in_scientific_notation(self):
        path = self.write("plate.vtu", self.points[:, 0] * 1e-3 - 5e-4)
        result = support.run_import(path, os.path.join(self.folder, "plate.ren"), "--range", "-1e-3", "1E-3",
                                    "--azimuth", "-30", "--elevation", "-.5e1")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("from -0.001 to 0.001", result.stdout)

    def test_the_summary_counts_what_was_written(self):
        path = self.write("plate.vtu", self.points[:, 0])
        scene = os.path.join(self.folder, "plate.ren")
        result = support.run_import(path, scene, "--contour-lines", "3")
        self.assertEqual(result.returncode, 0, result.stderr)
        with open(scene) as f:
            text = f.read()
        drawn = result.stdout.split(": ", 2)[2].split(";")[0]
        counts = dict((what, int(n)) for n, what in re.findall(r"(\d+) ([a-z -]+)", drawn))
        self.assertEqual(counts, {"triangles": len(support.records(text, "gr_poly_fill_cont")),
                                  "contour-line segments": len(support.records(text, "gr_lines"))})
        self.assertEqual(counts["contour-line segments"], 3 * 8)  # three levels across eight rows of cells


if __name__ == "__main__":
    unittest.main()
