"""test_from_mesh.py - sciray.from_mesh is sciray-import as a library call:
the same scene for a file, for the same mesh in memory, and for a PyVista
or VTK dataset (legacy POLYDATA files too, which meshio refuses); options
are checked as on the command line."""
import os
import subprocess
import sysconfig

import meshio
import numpy as np
import pytest

import sciray
from conftest import SOURCE

TORUS = os.path.join(SOURCE, "examples", "torus.vtk")
LEGACY_POLYDATA = """# vtk DataFile Version 3.0
two triangles
ASCII
DATASET POLYDATA
POINTS 4 float
0 0 0 1 0 0 0 1 0 1 1 0
POLYGONS 2 8
3 0 1 2
3 1 3 2
POINT_DATA 4
SCALARS height float 1
LOOKUP_TABLE default
0 1 2 3
"""


def body(text):
    """The scene without its first comment line, which names the source."""
    return text.split("\n", 1)[1]


def test_the_command_and_the_call_write_the_same_scene(tmp_path):
    command = os.path.join(sysconfig.get_path("scripts"), "sciray-import")
    written = tmp_path / "torus.ren"
    result = subprocess.run([command, TORUS, written, "--contour-lines", "5", "--view", "-x", "--size", "80x60",
                             "--azimuth", "-20", "--elevation", "15", "--roll", "5", "--zoom", "1.5", "--projection",
                             "orthographic", "--colormap", "cividis_r", "--log", "--units", "K", "--feature-angle", "45"],
                            capture_output=True, text=True)
    assert result.returncode == 0, result.stderr
    options = dict(contour_lines=5, view="-x", size=(80, 60), azimuth=-20, elevation=15, roll=5, zoom=1.5,
                   projection="orthographic", colormap="cividis_r", log=True, units="K", feature_angle=45)
    assert sciray.from_mesh(TORUS, **options).text() == written.read_text()
    in_memory = sciray.from_mesh(meshio.read(TORUS), **options).text()
    assert body(in_memory) == body(written.read_text())
    assert in_memory.startswith("# sciray scene made by sciray-import from a meshio mesh\n")


@pytest.mark.parametrize("options, word", [({"bands": 1}, "bands"), ({"range": (2, 1)}, "range"),
                                           ({"size": (3, 3)}, "size"), ({"shiny": True}, "shiny"),
                                           ({"scalar": "nothing"}, "nothing"), ({"zoom": 0}, "zoom"),
                                           ({"colormap": "nope"}, "colour map"), ({"projection": "fisheye"}, "projection"),
                                           ({"log": True, "range": (0, 1)}, "positive")])
def test_options_are_checked(options, word):
    with pytest.raises(ValueError, match=word):
        sciray.from_mesh(TORUS, **options)


def test_pyvista_and_vtk_datasets_and_legacy_polydata(tmp_path):
    pyvista = pytest.importorskip("pyvista")
    legacy = tmp_path / "surface.vtk"
    legacy.write_text(LEGACY_POLYDATA)
    from_file = sciray.from_mesh(legacy, size=(64, 48), bands=3)
    assert "height (point field) from 0 to 3" in from_file.text()
    assert sciray.render(from_file).objects == 2
    dataset = pyvista.read(legacy)
    assert body(sciray.from_mesh(dataset, size=(64, 48), bands=3).text()) == body(from_file.text())
    # A plain VTK object, as a VTK reader gives it.
    from vtkmodules.vtkIOLegacy import vtkPolyDataReader
    reader = vtkPolyDataReader()
    reader.SetFileName(str(legacy))
    reader.Update()
    assert body(sciray.from_mesh(reader.GetOutput(), size=(64, 48), bands=3).text()) == body(from_file.text())
    sphere = sciray.from_mesh(pyvista.Sphere(theta_resolution=12, phi_resolution=8), size=(64, 48))
    assert sciray.render(sphere).objects == len(pyvista.Sphere(theta_resolution=12, phi_resolution=8).faces) // 4
    with pytest.raises(TypeError, match="from_mesh takes"):
        sciray.from_mesh(np.zeros((3, 3)))
