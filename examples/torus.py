#!/usr/bin/python3
"""Writes the mesh of the imported example, torus.vtk, and imports it into
torus.ren with sciray-import: a torus of quadrilaterals carrying a
temperature field, a ring of line cells above it (a path through the same
field) and five vertex cells (probes). Run it from this folder after
building; SCIRAY_IMPORT names the importer if it is not ../build/sciray-import."""
import os
import subprocess

import meshio
import numpy as np

RING, TUBE = 1.0, 0.38


def temperature(points):
    """Two warm sides and two cool ones, warmer towards the top."""
    x, y, z = points.T
    return 20 + 6 * np.cos(2 * np.arctan2(y, x)) + 8 * z


def torus(around=36, across=18):
    u, v = np.meshgrid(np.linspace(0, 2 * np.pi, around, endpoint=False),
                       np.linspace(0, 2 * np.pi, across, endpoint=False), indexing="ij")
    points = np.stack([(RING + TUBE * np.cos(v)) * np.cos(u), (RING + TUBE * np.cos(v)) * np.sin(u),
                       TUBE * np.sin(v)], axis=-1).reshape(-1, 3)
    index = np.arange(around * across).reshape(around, across)
    next_u, next_v = np.roll(index, -1, axis=0), np.roll(index, -1, axis=1)
    quads = np.stack([index, next_u, np.roll(next_u, -1, axis=1), next_v], axis=-1).reshape(-1, 4)
    return points, quads


def main():
    points, quads = torus()
    turn = np.linspace(0, 2 * np.pi, 72, endpoint=False)
    path = np.stack([1.0 * np.cos(turn), 1.0 * np.sin(turn), np.full(turn.size, TUBE + 0.18)], axis=1)
    probes = np.array([[(RING + TUBE + 0.12) * np.cos(a), (RING + TUBE + 0.12) * np.sin(a), 0.0]
                       for a in np.linspace(0.3, 2 * np.pi + 0.3, 5, endpoint=False)])
    start_path, start_probes = len(points), len(points) + len(path)
    everything = np.concatenate([points, path, probes])
    ring = start_path + np.arange(len(path))
    cells = [("quad", quads), ("line", np.stack([ring, np.roll(ring, -1)], axis=1)),
             ("vertex", (start_probes + np.arange(len(probes)))[:, None])]
    meshio.write("torus.vtk", meshio.Mesh(everything, cells, point_data={"temperature": temperature(everything)}))
    importer = os.environ.get("SCIRAY_IMPORT", "../build/sciray-import")
    subprocess.run([importer, "torus.vtk", "torus.ren", "--contour-lines", "7", "--floor", "--size", "320x240"],
                   check=True)


if __name__ == "__main__":
    main()
