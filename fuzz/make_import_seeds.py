#!/usr/bin/env python3
"""Writes the seeds of the import fuzz target into corpus/import: one small
mesh (triangles, quadrilaterals, a tetrahedron, line and vertex cells, point
and cell fields) in every format meshio writes that the target reads, ASCII
and binary where both exist, each after a first line with the format and a
few of sciray-import's options.

    build/venv/bin/python fuzz/make_import_seeds.py
"""
import os
import tempfile

import meshio
import numpy as np

OUT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "corpus", "import")
OPTIONS = ["", "--style bands --floor", "--style lines --view +x", "--contour-lines 3 --scalar T",
           "--bands 2 --range 0 1 --colormap magma --size 8x6"]


def mesh(kinds):
    """The sample mesh with the cell kinds a format takes."""
    points = np.array([[0, 0, 0], [1, 0, 0], [2, 0, 0], [0, 1, 0], [1, 1, 0], [2, 1, 0], [1, 0.5, 1]], dtype=float)
    cells = {"triangle": [[0, 1, 4], [0, 4, 3]], "quad": [[1, 2, 5, 4]], "tetra": [[0, 1, 3, 6]],
             "line": [[3, 6]], "vertex": [[6]]}
    blocks = [(kind, np.array(cells[kind])) for kind in kinds]
    return meshio.Mesh(points, blocks, point_data={"T": points[:, 0] + points[:, 2]},
                       cell_data={"p": [np.arange(len(data), dtype=float) for _, data in blocks]})


# (extension, writer options, cell kinds)
FORMATS = [
    ("vtk", {"binary": False}, ["triangle", "quad", "tetra", "line", "vertex"]),
    ("vtk", {"binary": True}, ["triangle", "quad", "line"]),
    ("vtu", {"binary": False}, ["triangle", "quad", "tetra", "line", "vertex"]),
    ("ply", {"binary": False}, ["triangle", "quad"]),
    ("ply", {"binary": True}, ["triangle"]),
    ("obj", {}, ["triangle", "quad"]),
    ("stl", {"binary": False}, ["triangle"]),
    ("stl", {"binary": True}, ["triangle"]),
    ("msh", {"file_format": "gmsh22", "binary": False}, ["triangle", "quad", "tetra", "line", "vertex"]),
    ("off", {}, ["triangle"]),
    ("mesh", {}, ["triangle", "quad", "tetra"]),
    ("inp", {}, ["triangle", "quad", "tetra"]),
    ("avs", {}, ["triangle", "quad", "tetra", "line"]),
    ("dat", {}, ["triangle", "quad"]),
    ("bdf", {}, ["triangle", "quad", "tetra"]),
    ("f3grid", {}, ["tetra"]),
    ("ugrid", {}, ["triangle", "quad", "tetra"]),
    ("wkt", {}, ["triangle"]),
    ("vol", {}, ["triangle", "tetra"]),
]


def main() -> None:
    os.makedirs(OUT, exist_ok=True)
    with tempfile.TemporaryDirectory() as folder:
        for number, (extension, settings, kinds) in enumerate(FORMATS):
            path = os.path.join(folder, "mesh." + extension)
            sample = mesh(kinds)
            if extension in ("off", "wkt", "vol", "f3grid", "ugrid"):
                sample.point_data, sample.cell_data = {}, {}
            meshio.write(path, sample, **settings)
            with open(path, "rb") as f:
                contents = f.read()
            binary = "_binary" if settings.get("binary") else ""
            header = ("%s %s" % (extension, OPTIONS[number % len(OPTIONS)])).strip()
            with open(os.path.join(OUT, "%s%s.txt" % (extension, binary)), "wb") as f:
                f.write(header.encode() + b"\n" + contents)


if __name__ == "__main__":
    main()
