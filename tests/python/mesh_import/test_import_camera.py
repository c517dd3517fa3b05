"""test_import_camera.py - the importer's camera: no background shows
through a closed or flat surface in any view (no sample row or column runs
along the mesh's edges), a mesh far from the origin looks as it does at the
origin, and turning, tilting, rolling, zooming and the orthographic
projection do what they say."""
import unittest

import meshio
import numpy as np

import import_test_support as support
import sciray

VIEWS = ("iso", "+x", "-x", "+y", "-y", "+z", "-z")
SKIES = ("render_002 { zenith 1 0 0 horizon 1 0 0 ground 1 0 0 }\n",
         "render_002 { zenith 0 0 1 horizon 0 0 1 ground 0 0 1 }\n")


def _picture(scene_text, extra=""):
    return sciray.render(sciray.Scene.from_text(scene_text + extra)).pixels.astype(int)


def _sphere_inside(origins, directions):
    """Rays that pass well inside the unit sphere around the origin."""
    along = -(origins * directions).sum(axis=2)
    closest = origins + along[:, :, None] * directions
    return (along > 0) & (np.linalg.norm(closest, axis=2) < 0.95)


def _plate_inside(origins, directions):
    """Rays that meet the unit square at z = 0 inside its edges."""
    across = directions[:, :, 2]
    t = -origins[:, :, 2] / np.where(across == 0, np.inf, across)  # rays along the plane never meet it
    hit = origins + t[:, :, None] * directions
    return (t > 0) & (np.abs(hit[:, :, :2] - 0.5) < 0.48).all(axis=2)


class camera_test(unittest.TestCase):
    def test_no_background_shows_through_a_surface_in_any_view(self):
        points, quads = support.latitude_longitude_sphere()
        sphere = meshio.Mesh(points, [("quad", quads)], point_data={"z": points[:, 2]})
        plate_points, triangles = support.plate(8)
        plate = meshio.Mesh(plate_points, [("triangle", triangles)], point_data={"x": plate_points[:, 0]})
        seen_inside = 0
        for name, mesh, inside_of in (("sphere", sphere, _sphere_inside), ("plate", plate, _plate_inside)):
            for view in VIEWS:
                for projection in ("perspective", "orthographic"):
                    with self.subTest(mesh=name, view=view, projection=projection):
                        text = sciray.from_mesh(mesh, view=view, projection=projection, size=(120, 90)).text()
                        inside = support.eroded(inside_of(*support.pixel_rays(text)))
                        first, second = (_picture(text, sky) for sky in SKIES)
                        through = (first != second).any(axis=2) & inside
                        self.assertFalse(through.any(), "the sky shows at %s" % np.argwhere(through)[:5].tolist())
                        seen_inside += int(inside.sum())
        self.assertGreater(seen_inside, 20 * 120 * 90 // 4)

    def test_a_mesh_far_from_the_origin_looks_as_at_the_origin(self):
        points, quads = support.latitude_longitude_sphere(12, 24)
        values = points[:, 0] + points[:, 2]
        for options in ({}, {"contour_lines": 5, "floor": True}, {"view": "+z"},
                        {"projection": "orthographic", "azimuth": 20, "elevation": -10}):
            with self.subTest(**options):
                pictures = [sciray.render(sciray.from_mesh(meshio.Mesh(points + shift, [("quad", quads)],
                                                                       point_data={"f": values}),
                                                           size=(120, 90), **options)).pixels.astype(int)
                            for shift in ([0, 0, 0], [1e6, 5e6, 0])]
                self.assertLessEqual(np.abs(pictures[0] - pictures[1]).max(), 2)

    def test_turning_tilting_rolling_zooming_and_projecting(self):
        points, quads = support.latitude_longitude_sphere(12, 24)
        sphere = meshio.Mesh(points, [("quad", quads)], point_data={"x": points[:, 0], "y": points[:, 1]})

        def picture(**options):
            options.setdefault("size", (90, 90))
            return sciray.render(sciray.from_mesh(sphere, style="bands", bands=2, **options)).pixels.astype(int)

        def close(a, b):
            # The same picture but for a few pixels on edges, sampled a fraction of a pixel apart.
            return (np.abs(a - b).max(axis=2) > 8).mean() < 0.01

        self.assertTrue(close(picture(view="+x", azimuth=90), picture(view="+y")))
        self.assertTrue(close(picture(view="-y", elevation=90), picture(view="+z")))
        self.assertFalse(close(picture(view="+x", azimuth=45), picture(view="+y")))
        # From +x, +y is to the right; rolling the camera by 90 degrees (as the
        # scene's roll_angle turns it) brings +y to the bottom.
        for roll, low_at, high_at in ((0, (45, 20), (45, 70)), (90, (20, 45), (70, 45))):
            text = support.flat_lit(sciray.from_mesh(sphere, scalar="y", style="bands", bands=2, view="+x",
                                                     roll=roll, size=(90, 90)).text())
            seen, entries = _picture(text), support.colour_entries(text)
            np.testing.assert_array_equal(seen[low_at], entries[0])
            np.testing.assert_array_equal(seen[high_at], entries[1])
        # Zooming by 2 doubles the sphere's width on the middle row.
        width = [np.ptp(np.flatnonzero(np.abs(np.diff(picture(view="+z", zoom=z, size=(120, 90))[45], axis=0))
                                       .max(axis=1) > 30)) for z in (0.5, 1)]
        self.assertAlmostEqual(width[1] / width[0], 2, delta=0.08)

    def test_orthographic_views_keep_sizes_at_every_depth(self):
        # Two equal squares, one far behind the other, seen from +z.
        square = np.array([[0, 0, 0], [1, 0, 0], [1, 1, 0], [0, 1, 0]], dtype=float)
        points = np.concatenate([square, square + [2, 0, -6]])
        mesh = meshio.Mesh(points, [("quad", np.array([[0, 1, 2, 3], [4, 5, 6, 7]]))])
        for projection, far_share in (("orthographic", 1.0), ("perspective", 0.75)):
            with self.subTest(projection):
                text = sciray.from_mesh(mesh, view="+z", projection=projection, size=(160, 80)).text()
                self.assertIn("projection %s" % projection, text)
                row = _picture(text)[40]
                drawn = np.flatnonzero(np.abs(row - row[1]).max(axis=1) > 10)
                halves = [drawn[drawn < 80], drawn[drawn >= 80]]
                near, far = (np.ptp(h) + 1 for h in halves)
                if far_share == 1.0:
                    self.assertLessEqual(abs(near - far), 1)
                else:
                    self.assertLess(far, far_share * near)


if __name__ == "__main__":
    unittest.main()
