"""from_mesh(): what sciray-import does, as a library call."""
from __future__ import annotations

import os

from .scene import Scene


def _is_vtk(mesh) -> bool:
    try:
        from vtkmodules.vtkCommonDataModel import vtkDataObject
    except ImportError:
        return False
    return isinstance(mesh, vtkDataObject)


def from_mesh(mesh, **options) -> Scene:
    """A Scene showing a mesh with data on it, as ``sciray-import`` writes it.

    Args:
        mesh: a path to any file meshio reads (and, with PyVista installed,
            any file VTK reads, legacy POLYDATA among them), a
            ``meshio.Mesh``, or a PyVista or VTK dataset.
        **options: sciray-import's options: ``scalar`` (the field),
            ``range=(lo, hi)``, ``bands``, ``colormap``, ``style``
            ("continuous", "bands", "lines"), ``contour_lines``, ``view``
            ("iso", "+x", ..., "-z"), ``size=(width, height)``, ``floor``.

    Raises:
        ValueError: for a mesh or an option that cannot become a scene.

    >>> scene = sciray.from_mesh("examples/torus.vtk", contour_lines=7, size=(320, 240))  # doctest: +SKIP
    >>> sciray.render(scene)                                                            # doctest: +SKIP
    """
    from .mesh_import import command, mesh_reading, options as mesh_options

    chosen = mesh_options.from_keywords(**options)
    if isinstance(mesh, (str, os.PathLike)):
        name = os.fsdecode(os.fspath(mesh))
        mesh = mesh_reading.read_mesh(name)
    elif hasattr(mesh, "points") and hasattr(mesh, "cells") and hasattr(mesh, "point_data"):
        name = "a meshio mesh"
    elif _is_vtk(mesh):
        name = "a %s dataset" % type(mesh).__name__
        mesh = mesh_reading.from_pyvista(mesh)
    else:
        raise TypeError("from_mesh takes a path, a meshio.Mesh or (with pyvista installed) a PyVista or "
                        "VTK dataset, not %s" % type(mesh).__name__)
    text, _ = command.scene_for(mesh, chosen, name)
    return Scene.from_text(text)
