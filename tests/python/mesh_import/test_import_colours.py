"""test_import_colours.py - pictures of imported meshes checked where
their colours are known: the lowest values show the first band's colour and
the highest the last band's, bands step and continuous colours blend, every
view shows the mesh the right way round, contour lines lie on their levels
and the floor lies under the mesh. The pictures are lit by white ambient
light alone, so a surface shows exactly its colour-map colour."""
import os
import unittest

import meshio
import numpy as np

import import_test_support as support

# viridis at a quarter and at three quarters, the centres of two bands, as
# published (to within 2 of 255: the table is read between its entries).
VIRIDIS_QUARTERS = (np.array([0x3b, 0x52, 0x8b]), np.array([0x5e, 0xc9, 0x62]))

# For each view: the axis (and its sense) that runs to the right in the
# picture, and the one that runs up.
VIEW_AXES = {"+x": ((1, 1), (2, 1)), "-x": ((1, -1), (2, 1)), "+y": ((0, -1), (2, 1)),
             "-y": ((0, 1), (2, 1)), "+z": ((0, 1), (1, 1)), "-z": ((0, -1), (1, 1))}


def _cube():
    points = np.array([[x, y, z] for z in (0, 1) for y in (0, 1) for x in (0, 1)], dtype=float)
    quads = np.array([[0, 2, 3, 1], [4, 5, 7, 6], [0, 1, 5, 4], [2, 6, 7, 3], [0, 4, 6, 2], [1, 3, 7, 5]])
    return points, quads


class colours_test(unittest.TestCase):
    def setUp(self):
        self.folder = support.scratch_dir(self)

    def write(self, name, points, cells, **fields):
        path = os.path.join(self.folder, name)
        meshio.write(path, meshio.Mesh(points, cells, point_data=fields))
        return path

    def picture(self, path, *args, size=(160, 120)):
        scene = support.imported(self, path, "--size", "%dx%d" % size, *args)
        count, picture = support.render(self, support.flat_lit(scene), self.folder)
        return scene, count, picture

    def test_lowest_and_highest_values_show_the_end_bands(self):
        points, triangles = support.plate(8)
        path = self.write("plate.vtu", points, [("triangle", triangles)], x=points[:, 0])
        for style in ("bands", "continuous"):
            for bands in (2, 8):
                with self.subTest(style=style, bands=bands):
                    scene, _, picture = self.picture(path, "--view", "+z", "--style", style, "--bands", str(bands))
                    row = picture[60]
                    # The plate's pixels: the light backdrop has no channel below 200.
                    plate = np.flatnonzero(row.min(axis=1) < 200)
                    left, right = plate[0], plate[-1]
                    entries = support.colour_entries(scene)
                    first, last = entries[0], entries[bands - 1]
                    # Three pixels in from either edge (of about a hundred) the field is below
                    # the first band's centre or above the last one's.
                    np.testing.assert_array_equal(row[left + 3], first)
                    np.testing.assert_array_equal(row[right - 3], last)
                    inner = row[left + 2:right - 1]
                    if style == "bands":
                        # Every band shows, in its own colour; only pixels on a
                        # border between bands mix two.
                        colours = {tuple(entries[k]) for k in range(bands)}
                        self.assertLessEqual(colours, {tuple(p) for p in inner})
                        self.assertLessEqual(sum(tuple(p) not in colours for p in inner), 2 * (bands - 1))
                    else:
                        # No jumps: about twelve pixels run from one band's colour to the next.
                        self.assertLess(np.abs(np.diff(inner, axis=0)).max(), 20)
                        if bands == 2:
                            # Half way across, half of each colour.
                            middle = row[(left + right + 1) // 2]
                            np.testing.assert_allclose(middle, (first + last) / 2, atol=2)
                    if bands == 2:
                        np.testing.assert_allclose(first, VIRIDIS_QUARTERS[0], atol=2)
                        np.testing.assert_allclose(last, VIRIDIS_QUARTERS[1], atol=2)

    def test_every_view_shows_the_mesh_the_right_way_round(self):
        points, quads = _cube()
        path = self.write("cube.vtu", points, [("quad", quads)], x=points[:, 0], y=points[:, 1], z=points[:, 2])
        names = "xyz"
        for view, ((right, right_sense), (up, up_sense)) in VIEW_AXES.items():
            for axis, sense, first_at, last_at in [(right, right_sense, (30, 22), (30, 58)),
                                                   (up, up_sense, (45, 40), (15, 40))]:
                with self.subTest(view=view, field=names[axis]):
                    scene, _, picture = self.picture(path, "--view", view, "--scalar", names[axis], "--style",
                                                     "bands", "--bands", "2", size=(80, 60))
                    entries = support.colour_entries(scene)
                    low, high = (first_at, last_at) if sense > 0 else (last_at, first_at)
                    np.testing.assert_array_equal(picture[low], entries[0])
                    np.testing.assert_array_equal(picture[high], entries[1])

    def test_contour_lines_lie_on_their_levels(self):
        points, triangles = support.plate(8)
        path = self.write("plate.vtu", points, [("triangle", triangles)], x=points[:, 0])
        for style, args, levels, kind in [
                ("bands", ["--contour-lines", "3"], [0.25, 0.5, 0.75], "gr_lines"),
                ("lines", ["--bands", "4"], [0.2, 0.4, 0.6, 0.8], "gr_lines_cont")]:
            with self.subTest(style=style):
                scene, count, _ = self.picture(path, "--style", style, *args, size=(32, 24))
                lines = support.records(scene, kind)
                self.assertEqual(count, len(triangles) + len(lines))
                length = dict.fromkeys(levels, 0.0)
                for line in lines:
                    ends = line["xyz"].reshape(2, 3)
                    level = min(levels, key=lambda v: abs(v - ends[0, 0]))
                    np.testing.assert_allclose(ends[:, 0], level, atol=1e-6)
                    length[level] += np.linalg.norm(ends[1] - ends[0])
                    if kind == "gr_lines_cont":
                        np.testing.assert_allclose(line["values"], level, atol=1e-6)
                # Each level crosses the whole plate, from y = 0 to y = 1.
                for level in levels:
                    self.assertAlmostEqual(length[level], 1.0, places=5)
                # Lines in the band colours are drawn on a plain surface.
                self.assertEqual(bool(support.records(scene, "gr_poly_fill_cont")), style != "lines")

    def test_floor_lies_under_the_mesh(self):
        points, quads = _cube()
        path = self.write("cube.vtu", points, [("quad", quads)], z=points[:, 2])
        scene, count, picture = self.picture(path, "--floor", size=(80, 60))
        self.assertEqual(count, 12 + 2)
        floor_records = support.records(scene, "gr_poly_fill")[-2:]
        floor = np.concatenate([r["xyz"].reshape(3, 3) for r in floor_records])
        self.assertTrue((floor[:, 2] < 0).all() and np.ptp(floor[:, 2]) == 0)
        self.assertTrue((floor[:, :2].min(axis=0) < -1).all() and (floor[:, :2].max(axis=0) > 2).all())
        entries = support.colour_entries(scene)
        np.testing.assert_array_equal(picture[58, 40], entries[int(floor_records[0]["index"][0])])

