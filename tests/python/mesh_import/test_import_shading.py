"""test_import_shading.py - the normals the importer works out, seen in
pictures: the poles of a latitude-longitude sphere (rows of points at one
place, quadrilaterals without area on one side, a seam) shade as smoothly
as the rest of it, and a cube keeps flat faces and sharp edges. The
pictures are lit without highlights, so that a face's shade follows its
normal alone."""
import unittest

import meshio
import numpy as np

import import_test_support as support
import sciray


def _matte(scene_text):
    return scene_text.replace("specular 0.25 0.25 0.25", "specular 0 0 0")


def _cube_faces(origins, directions):
    """For each ray, the face of the unit cube it meets first (0 to 5: -x,
    +x, -y, +y, -z, +z), or -1."""
    best, face = np.full(origins.shape[:2], np.inf), np.full(origins.shape[:2], -1)
    for axis in range(3):
        across = directions[:, :, axis]
        for side in (0, 1):
            t = (side - origins[:, :, axis]) / np.where(across == 0, np.inf, across)
            hit = origins + t[:, :, None] * directions
            others = [a for a in range(3) if a != axis]
            on = (t > 0) & (t < best) & ((hit[:, :, others] >= 0) & (hit[:, :, others] <= 1)).all(axis=2)
            best[on], face[on] = t[on], 2 * axis + side
    return face


class shading_test(unittest.TestCase):
    def test_the_poles_of_a_latitude_longitude_sphere_shade_smoothly(self):
        points, quads = support.latitude_longitude_sphere()
        mesh = meshio.Mesh(points, [("quad", quads)])
        scene = sciray.from_mesh(mesh, view="+z", size=(120, 120)).text()
        # Every corner's normal points straight out of the sphere.
        for record in support.records(scene, "gr_poly_fill"):
            corners, normals = record["xyz"].reshape(3, 3), record["norm"].reshape(3, 3)
            np.testing.assert_array_less(0.995, (corners * normals).sum(axis=1))
        for view in ("+z", "-z"):
            with self.subTest(view=view):
                text = _matte(sciray.from_mesh(mesh, view=view, size=(120, 120)).text())
                grey = sciray.render(sciray.Scene.from_text(text)).pixels.astype(float).mean(axis=2)
                # Around the pole, in the middle of the picture, the shade bends
                # gently: no pixel stands out from its four neighbours.
                near = grey[45:76, 45:76]
                bend = 4 * near[1:-1, 1:-1] - near[:-2, 1:-1] - near[2:, 1:-1] - near[1:-1, :-2] - near[1:-1, 2:]
                self.assertLess(np.abs(bend).max(), 6)

    def test_a_cube_has_flat_faces_and_sharp_edges(self):
        cube = np.array([[x, y, z] for z in (0, 1) for y in (0, 1) for x in (0, 1)], dtype=float)
        quads = np.array([[0, 2, 3, 1], [4, 5, 7, 6], [0, 1, 5, 4], [2, 6, 7, 3], [0, 4, 6, 2], [1, 3, 7, 5]])
        for view in ("iso", "+x"):
            with self.subTest(view=view):
                text = _matte(sciray.from_mesh(meshio.Mesh(cube, [("quad", quads)]), view=view,
                                               size=(120, 90)).text())
                picture = sciray.render(sciray.Scene.from_text(text)).pixels.astype(int)
                faces = _cube_faces(*support.pixel_rays(text))
                shades = []
                for face in range(6):
                    inside = support.eroded(faces == face)
                    if inside.sum() > 50:
                        seen = picture[inside]
                        self.assertLessEqual(np.ptp(seen, axis=0).max(), 1, "face %d is not flat" % face)
                        shades.append(seen[0])
                self.assertEqual(len(shades), 3 if view == "iso" else 1)
                # Each face its own shade: the edges between them stay sharp.
                self.assertEqual(len({tuple(s) for s in shades}), len(shades))


if __name__ == "__main__":
    unittest.main()
