"""from_mesh(): a mesh with data on it as a Scene, what sciray-import writes."""
from __future__ import annotations

import os
import warnings

from .scene import Scene


def _is_vtk(mesh) -> bool:
    try:
        from vtkmodules.vtkCommonDataModel import vtkDataObject
    except ImportError:
        return False
    return isinstance(mesh, vtkDataObject)


def opened(mesh):
    """(a meshio mesh, its name) from a path, a meshio mesh, or a PyVista or VTK dataset."""
    from .mesh_import import mesh_reading

    if isinstance(mesh, (str, os.PathLike)):
        name = os.fsdecode(os.fspath(mesh))
        return mesh_reading.read_mesh(name), name
    if hasattr(mesh, "points") and hasattr(mesh, "cells") and hasattr(mesh, "point_data"):
        return mesh, "a meshio mesh"
    if _is_vtk(mesh):
        return mesh_reading.from_pyvista(mesh), "a %s dataset" % type(mesh).__name__
    raise TypeError("from_mesh takes a path, a meshio.Mesh or (with pyvista installed) a PyVista or "
                    "VTK dataset, not %s" % type(mesh).__name__)


def converted(mesh, name, chosen, shared=None):
    """(the Scene, a one-line summary of it, notes on what was left out or
    has no value) for a meshio mesh and the importer's checked options."""
    from .mesh_import import conversion, scene_building

    planned = conversion.plan(mesh, chosen, name, shared)
    return scene_building.scene_of(planned), scene_building.summary(planned), planned.notes


def from_mesh(mesh, **options) -> Scene:
    """A Scene showing a mesh with data on it, as ``sciray-import`` writes
    it, carrying the ColourKey that ``sciray.figure`` draws as its colour bar.

    Args:
        mesh: a path to any file meshio reads (and, with PyVista installed,
            any file VTK reads, legacy POLYDATA among them), a
            ``meshio.Mesh``, or a PyVista or VTK dataset.
        **options: sciray-import's options, with ``_`` for ``-``:
            the field and its colours: ``scalar`` (the field), ``units``,
            ``range=(lo, hi)``, ``log``, ``bands``, ``colormap`` (any of
            matplotlib's), ``nan_color``, ``style`` ("continuous", "bands",
            "lines"), ``contour_lines``; the camera: ``view`` ("iso", "+x",
            ..., "-z"), ``azimuth``, ``elevation``, ``roll`` (degrees),
            ``zoom``, ``projection`` ("perspective", "orthographic"),
            ``size=(width, height)``, ``floor``; and ``feature_angle``.

    Raises:
        ValueError: for a mesh or an option that cannot become a scene.

    Points without a value (NaN, masked) are drawn in ``nan_color``, with a
    warning that says how many there are.

    >>> scene = sciray.from_mesh("examples/torus.vtk", contour_lines=7, azimuth=30, size=(320, 240))  # doctest: +SKIP
    >>> sciray.figure(sciray.render(scene), title="Torus")                                           # doctest: +SKIP
    """
    from .mesh_import import options as mesh_options

    chosen = mesh_options.from_keywords(**options)
    scene, _, notes = converted(*opened(mesh), chosen)
    for note in notes:
        warnings.warn(note, stacklevel=2)
    return scene
