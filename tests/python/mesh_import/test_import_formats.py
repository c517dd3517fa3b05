"""test_import_formats.py - meshes written by meshio in several formats
imported and rendered: the objects drawn match the cells, fields reach the
points as they should, normals face outwards, polygons and volumes are cut
into the right triangles, volume and higher-order cells are drawn by their
outer faces and their corners."""
import contextlib
import io
import os
import unittest

import meshio
import numpy as np

import import_test_support as support


def _background_share(picture):
    """Share of pixels with the colour of the top-left corner (the sky)."""
    return float((picture == picture[0, 0]).all(axis=2).mean())


class formats_test(unittest.TestCase):
    def setUp(self):
        self.folder = support.scratch_dir(self)

    def path(self, name):
        return os.path.join(self.folder, name)

    def check_objects(self, mesh, name, expected, file_format=None, *args):
        """Writes, imports and renders the mesh; the renderer's object count
        must be `expected` and the picture must show something."""
        with contextlib.redirect_stderr(io.StringIO()):  # meshio's notes on what a format lacks
            meshio.write(self.path(name), mesh, file_format=file_format)
        scene = support.imported(self, self.path(name), "--size", "64x48", *args)
        count, picture = support.render(self, scene, self.folder, name)
        self.assertEqual(count, expected, name)
        self.assertLess(_background_share(picture), 0.99, name + ": the picture is empty")
        return scene

    def test_every_format_draws_every_cell(self):
        points, triangles = support.plate(4)
        field = {"height": points[:, 0] * points[:, 1]}
        # A triangle is one object; the renderer cuts a quadrilateral into two.
        for name, file_format in [("plate.vtk", None), ("plate.vtu", None), ("plate.ply", None),
                                  ("plate.obj", None), ("plate.stl", None), ("plate.msh", "gmsh22")]:
            with self.subTest(name):
                data = field if name.endswith(("vtk", "vtu", "ply", "msh")) else {}
                self.check_objects(meshio.Mesh(points, [("triangle", triangles)], point_data=data),
                                   name, len(triangles), file_format)
        quads = np.array([[0, 1, 6, 5], [1, 2, 7, 6]])
        lines = np.array([[0, 24], [24, 20], [20, 4]])
        singles = np.array([[16], [18]])
        mixed = meshio.Mesh(points, [("triangle", triangles[:10]), ("quad", quads), ("line", lines),
                                     ("vertex", singles)], point_data=field)
        # Each line segment is one object, each vertex one ball.
        scene = self.check_objects(mixed, "mixed.vtu", 10 + 2 * 2 + 3 + 2)
        # Lines carry the field; balls take the band of their value (8 bands over 0..1).
        segments = support.records(scene, "gr_lines_cont")
        self.assertEqual([list(s["values"]) for s in segments], [[0, 1], [1, 0], [0, 0]])
        balls = {tuple(s["xyz"]): s["index"][0] for s in support.records(scene, "gr_symbol")}
        self.assertEqual(balls, {(0.25, 0.75, 0.0): 1, (0.75, 0.75, 0.0): 4})

    def test_volume_and_higher_order_cells(self):
        cube = np.array([[x, y, z] for z in (0, 1) for y in (0, 1) for x in (0, 1)], dtype=float)
        hexahedron = np.array([[0, 1, 3, 2, 4, 5, 7, 6]])
        # Two hexahedra side by side share one face, which is inside.
        pair_points = np.concatenate([cube, cube[[1, 3, 5, 7]] + [1, 0, 0]])
        pair = np.array([[0, 1, 3, 2, 4, 5, 7, 6], [1, 8, 9, 3, 5, 10, 11, 7]])
        # Two tetrahedra sharing a face, with the surface triangles given again.
        tetra_points = np.array([[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1], [1, 1, 1]], dtype=float)
        tetras = np.array([[0, 1, 2, 3], [1, 2, 3, 4]])
        outer = np.array([[0, 2, 1], [0, 1, 3], [0, 3, 2], [1, 2, 4], [2, 3, 4], [3, 1, 4]])
        # Higher-order cells are drawn by their corners, which come first.
        quadratic_points = np.concatenate([tetra_points[:4], tetra_points[:4] + 2, np.zeros((6, 3))])
        quadratic = [("tetra10", np.array([[0, 1, 2, 3, 8, 9, 10, 11, 12, 13]])),
                     ("VTK_LAGRANGE_TRIANGLE", np.array([[4, 5, 6, 8, 9, 10]]))]
        cases = [("cube.vtu", meshio.Mesh(cube, [("hexahedron", hexahedron)]), 6 * 2),
                 ("quadratic.vtu", meshio.Mesh(quadratic_points, quadratic), 4 + 1),
                 ("pair.vtu", meshio.Mesh(pair_points, [("hexahedron", pair)]), 10 * 2),
                 ("tetras.msh", meshio.Mesh(tetra_points, [("triangle", outer), ("tetra", tetras)]), 6)]
        for name, mesh, expected in cases:
            with self.subTest(name):
                self.check_objects(mesh, name, expected, "gmsh22" if name.endswith("msh") else None)

    def test_fields_become_one_value_per_point(self):
        points, triangles = support.plate(2)
        cell_values = np.arange(len(triangles), dtype=float)
        vectors = np.stack([points[:, 0], 2 * points[:, 1], np.full(len(points), 2.0)], axis=1)
        mesh = meshio.Mesh(points, [("triangle", triangles)],
                           point_data={"velocity": vectors, "tag": points[:, 0] + 10},
                           cell_data={"pressure": [cell_values], "gmsh:physical": [cell_values + 5]})
        meshio.write(self.path("fields.vtu"), mesh)

        def values_at(scene):
            at = {}
            for record in support.records(scene, "gr_poly_fill_cont"):
                for corner, value in zip(record["xyz"].reshape(3, 3), record["values"]):
                    at[tuple(corner)] = value
            return at

        # The default is the first point field; a vector gives its length.
        at = values_at(support.imported(self, self.path("fields.vtu")))
        for p, v in zip(points, vectors):
            self.assertAlmostEqual(at[tuple(p)], np.linalg.norm(v), places=6)
        # A cell field is averaged onto the points: a corner on one triangle
        # has its value, the centre has the mean of the six around it.
        at = values_at(support.imported(self, self.path("fields.vtu"), "--scalar", "pressure"))
        around_centre = [t for t in range(len(triangles)) if 4 in triangles[t]]
        self.assertEqual(len(around_centre), 6)
        self.assertAlmostEqual(at[(0.5, 0.5, 0.0)], cell_values[around_centre].mean(), places=6)
        lone = np.flatnonzero(np.bincount(triangles.ravel()) == 1)[0]
        self.assertAlmostEqual(at[tuple(points[lone])], cell_values[(triangles == lone).any(axis=1)][0], places=6)

    def test_computed_normals_face_outwards_on_a_closed_surface(self):
        points, triangles, quads = support.sphere(10, 16)
        rng = np.random.default_rng(7)
        turned_triangles, turned_quads = rng.random(len(triangles)) < 0.5, rng.random(len(quads)) < 0.5
        # About half of the faces turned the wrong way; then every face.
        for name, turn_triangles, turn_quads in [("mixed.vtu", turned_triangles, turned_quads),
                                                 ("inside_out.vtu", True, True)]:
            with self.subTest(name):
                cells = [("triangle", np.where(turn_triangles, triangles[:, ::-1].T, triangles.T).T),
                         ("quad", np.where(turn_quads, quads[:, ::-1].T, quads.T).T)]
                mesh = meshio.Mesh(points, cells, point_data={"z": points[:, 2]})
                scene = self.check_objects(mesh, name, len(triangles) + 2 * len(quads), None, "--view", "+y")
                self.check_outward(scene)

    def check_outward(self, scene):
        """Normals of a unit sphere around the origin: outwards, towards the
        camera on the side it sees, and each triangle counter-clockwise
        around its own."""
        eye = np.array([float(v) for v in scene.split("viewpoint")[1].split()[:3]])
        for record in support.records(scene, "gr_poly_fill_cont"):
            corners, normals = record["xyz"].reshape(3, 3), record["norm"].reshape(3, 3)
            for corner, normal in zip(corners, normals):
                self.assertGreater(normal @ corner / np.linalg.norm(normal), 0.95)
                if corner @ (eye - corner) > 0:
                    self.assertGreater(normal @ (eye - corner), 0)
            face = np.cross(corners[1] - corners[0], corners[2] - corners[0])
            self.assertGreater(face @ normals.sum(axis=0), 0)

    def test_normals_are_angle_weighted_split_at_sharp_edges_or_taken_from_the_file(self):
        # A small right angle facing +z and a long, thin triangle tilted 30 degrees
        # about their shared edge along x: at the origin the thin one's large area
        # counts for nothing, its small angle there for little.
        thin, tilt = np.radians(10), np.radians(30)
        far = 10 * np.array([np.cos(thin), -np.sin(thin) * np.cos(tilt), -np.sin(thin) * np.sin(tilt)])
        points = np.array([[0, 0, 0], [1, 0, 0], [0, 1, 0], far])
        meshio.write(self.path("fold.vtu"), meshio.Mesh(points, [("triangle", np.array([[0, 1, 2], [0, 3, 1]]))]))
        scene = support.imported(self, self.path("fold.vtu"))
        tilted = np.cross(far, [1, 0, 0])
        expected = np.pi / 2 * np.array([0, 0, 1]) + thin * tilted / np.linalg.norm(tilted)
        for record in support.records(scene, "gr_poly_fill"):
            np.testing.assert_allclose(record["norm"][:3], expected / np.linalg.norm(expected), atol=1e-6)

        # A cube keeps its faces flat below a feature angle of 90 degrees, and
        # is rounded off above it.
        cube = np.array([[x, y, z] for z in (0, 1) for y in (0, 1) for x in (0, 1)], dtype=float)
        quads = np.array([[0, 2, 3, 1], [4, 5, 7, 6], [0, 1, 5, 4], [2, 6, 7, 3], [0, 4, 6, 2], [1, 3, 7, 5]])
        meshio.write(self.path("cube.vtu"), meshio.Mesh(cube, [("quad", quads)]))
        for angle, rounded in (("60", False), ("89", False), ("91", True)):
            with self.subTest(feature_angle=angle):
                scene = support.imported(self, self.path("cube.vtu"), "--feature-angle", angle)
                for record in support.records(scene, "gr_poly_fill"):
                    corners, normals = record["xyz"].reshape(3, 3), record["norm"].reshape(3, 3)
                    face = np.cross(corners[1] - corners[0], corners[2] - corners[0])
                    for corner, normal in zip(corners, normals):
                        if rounded:  # the mean of the three faces at the corner
                            np.testing.assert_allclose(normal, (2 * corner - 1) / np.sqrt(3), atol=1e-6)
                        else:
                            np.testing.assert_allclose(normal, face, atol=1e-6)

        points, triangles = support.plate(2)
        tilted = np.tile([0.6, 0.0, 0.8], (len(points), 1))
        meshio.write(self.path("tilted.vtu"), meshio.Mesh(points, [("triangle", triangles)],
                                                           point_data={"Normals": tilted, "x": points[:, 0]}))
        scene = support.imported(self, self.path("tilted.vtu"))
        for record in support.records(scene, "gr_poly_fill_cont"):
            np.testing.assert_allclose(record["norm"].reshape(3, 3), tilted[:3], atol=1e-4)

    def test_polygons_are_cut_into_triangles_inside_them(self):
        # An L-shaped hexagon, which is not convex, and a 200-gon, too many
        # corners for one polygon record.
        ell = np.array([[0, 0, 0], [2, 0, 0], [2, 1, 0], [1, 1, 0], [1, 2, 0], [0, 2, 0]], dtype=float)
        turn = np.linspace(0, 2 * np.pi, 200, endpoint=False)
        disc = np.stack([5 + np.cos(turn), np.sin(turn), np.zeros(200)], axis=1)
        # The hexagon starts at a corner from which a fan would leave the shape.
        order = np.roll(np.arange(6), -1)
        mesh = meshio.Mesh(np.concatenate([ell, disc]), [("polygon", order[None]),
                                                         ("polygon", 6 + np.arange(200)[None])])
        scene = self.check_objects(mesh, "polygons.vtu", 4 + 198)
        ell_area = 0.0
        for record in support.records(scene, "gr_poly_fill"):
            corners = record["xyz"].reshape(3, 3)
            area = np.linalg.norm(np.cross(corners[1] - corners[0], corners[2] - corners[0])) / 2
            centre = corners.mean(axis=0)
            if centre[0] < 3:
                self.assertFalse(centre[0] > 1 and centre[1] > 1, "a triangle outside the L: %s" % corners)
                ell_area += area
        self.assertAlmostEqual(ell_area, 3.0, places=6)

