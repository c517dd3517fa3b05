"""mesh_reading.py - reads a mesh with meshio and sorts its cells into what a
scene can draw: faces (triangles, quadrilaterals and polygons, and the outer
faces of volume cells), line segments and single points."""
import contextlib
import dataclasses
import io
import os
import re
import warnings

import meshio
import numpy as np

from . import reader_process
from .failure import conversion_error

# Corners of each kind of cell; higher-order cells (triangle6, hexahedron27,
# the Lagrange cells, ...) list their corners first and are drawn by them.
_CORNERS = {"vertex": 1, "line": 2, "triangle": 3, "quad": 4,
            "tetra": 4, "hexahedron": 8, "wedge": 6, "pyramid": 5}
_LAGRANGE = {"CURVE": "line", "TRIANGLE": "triangle", "QUADRILATERAL": "quad", "TETRAHEDRON": "tetra",
             "HEXAHEDRON": "hexahedron", "WEDGE": "wedge", "PYRAMID": "pyramid"}

# The faces of the volume cells, corners in meshio's (VTK's) node order,
# each turned to face out of its cell.
_VOLUME_FACES = {
    "tetra": [(0, 2, 1), (0, 1, 3), (1, 2, 3), (2, 0, 3)],
    "hexahedron": [(0, 3, 2, 1), (4, 5, 6, 7), (0, 1, 5, 4), (1, 2, 6, 5), (2, 3, 7, 6), (3, 0, 4, 7)],
    "wedge": [(0, 1, 2), (3, 5, 4), (0, 3, 4, 1), (1, 4, 5, 2), (2, 5, 3, 0)],
    "pyramid": [(0, 3, 2, 1), (0, 1, 4), (1, 2, 4), (2, 3, 4), (3, 0, 4)],
}


@dataclasses.dataclass
class drawable_parts:
    """The cells of a mesh as the scene draws them, as indices into its points."""
    faces: dict        # corner count -> faces, one row of point indices each
    segments: np.ndarray  # line segments, two point indices each
    singles: np.ndarray   # points drawn as symbols
    skipped: dict      # cell type -> number of cells that cannot be drawn

    def used_points(self):
        rows = [f.ravel() for f in self.faces.values()] + [self.segments.ravel(), self.singles]
        return np.unique(np.concatenate(rows))


def read_mesh(path):
    """The mesh in the file; any failure to read it is one conversion error.
    A legacy VTK file that meshio cannot read (of type POLYDATA, say) is
    read with VTK's own reader when PyVista is installed. The readers run in
    a child process (reader_process), which a damaged file can neither
    crash nor keep reading for ever."""
    if not os.path.exists(path):
        raise conversion_error("cannot read %s: no such file" % path)
    if not os.path.isfile(path):
        raise conversion_error("cannot read %s: not a file" % path)
    mesh, reason = reader_process.run(_read, path)
    if mesh is None:
        if _says_empty(path):
            raise conversion_error("%s is empty: it has no points" % path)
        raise conversion_error("cannot read %s: %s" % (path, reason))
    return mesh


def _read(path):
    """(mesh, None), or (None, why it cannot be read)."""
    chatter = io.StringIO()
    try:
        # meshio prints what went wrong, and ends the program itself when no
        # reader takes the file; both are caught and said in one line.
        with contextlib.redirect_stdout(chatter), contextlib.redirect_stderr(chatter):
            return meshio.read(path), None
    except (Exception, SystemExit) as failure:
        reason = _reason(failure, chatter.getvalue())
    mesh = _legacy_vtk(path) if path.lower().endswith(".vtk") else None
    return (mesh, None) if mesh is not None and len(mesh.cells) else (None, reason)


# How the headers of PLY and legacy VTK files say they have no points, and
# how XML VTK files give the points of each piece.
_NO_POINTS = (rb"\belement vertex 0\s", rb"\nPOINTS 0 ")
_PIECE_POINTS = rb"NumberOfPoints\s*=\s*[\"'](\d+)[\"']"


def _says_empty(path):
    """Whether the file's header says it has no points (a PLY, legacy VTK or
    XML VTK file with none, which meshio fails to read)."""
    try:
        with open(path, "rb") as f:
            head = f.read(1 << 16)
    except OSError:
        return False  # the reader's reason says why
    counts = re.findall(_PIECE_POINTS, head)
    if counts:
        return all(not c.strip(b"0") for c in counts)  # zeros only (a count may be too long for int)
    return any(re.search(pattern, head) for pattern in _NO_POINTS)


def _legacy_vtk(path):
    """The mesh in a legacy VTK file read by VTK (through PyVista), quietly;
    None without PyVista or when VTK cannot read it either."""
    try:
        import pyvista
        from vtkmodules.vtkCommonCore import vtkLogger, vtkObject
    except ImportError:
        return None
    vtkObject.GlobalWarningDisplayOff()  # in the reader's child process: no need to turn it on again
    vtkLogger.SetStderrVerbosity(vtkLogger.VERBOSITY_OFF)
    try:
        with warnings.catch_warnings():
            warnings.simplefilter("ignore")
            return from_pyvista(pyvista.read(path))
    except Exception:
        return None


def from_pyvista(dataset):
    """A PyVista or VTK dataset as a meshio mesh."""
    import pyvista
    dataset = pyvista.wrap(dataset)
    if dataset.n_cells == 0:
        # Nothing to draw; VTK's cast of a grid read without cells crashes.
        return meshio.Mesh(np.asarray(dataset.points, dtype=float).reshape(-1, 3), [])
    return pyvista.to_meshio(dataset.cast_to_unstructured_grid())


def _reason(failure, printed):
    if not isinstance(failure, SystemExit) and str(failure):
        return str(failure).strip().splitlines()[0]
    lines = [line.strip() for line in printed.splitlines() if line.strip()]
    told = [line for line in lines if not line.startswith(("Error:", "Warning:"))]
    return told[0] if told else "not a mesh file that can be read"


def _base_kind(kind):
    """'hexahedron27' and 'VTK_LAGRANGE_HEXAHEDRON' -> 'hexahedron'; 'polygon'
    and unknown kinds unchanged."""
    lagrange = re.fullmatch(r"VTK_LAGRANGE_([A-Z]+)", kind)
    if lagrange:
        return _LAGRANGE.get(lagrange.group(1), kind)
    match = re.fullmatch(r"([a-z]+?)(\d*)", kind)
    return match.group(1) if match and match.group(1) in _CORNERS else kind


def _unique_rows(rows, keep_single=False):
    """Row positions of faces with distinct corner sets: the first of each set,
    or (keep_single) only the faces whose set occurs once."""
    if len(rows) == 0:
        return np.zeros(0, dtype=int)
    keys = np.ascontiguousarray(np.sort(rows, axis=1))
    _, first, counts = np.unique(keys, axis=0, return_index=True, return_counts=True)
    return np.sort(first[counts == 1] if keep_single else first)


def _grouped(faces):
    """Faces by corner count, each group an (n, k) array."""
    groups = {}
    for face in faces:
        groups.setdefault(face.shape[1], []).append(face)
    return {k: np.concatenate(g) for k, g in sorted(groups.items())}


def _corners(data):
    """A block's cells as rows of point numbers."""
    try:
        corners = np.asarray(data, dtype=np.int64)
    except (TypeError, ValueError, OverflowError):
        corners = None
    if corners is None or corners.ndim != 2:
        raise conversion_error("the mesh has cells that are not lists of point numbers")
    return corners


def drawable(mesh):
    """Sorts the mesh's cells. Volume cells give the faces that no other
    volume cell shares, their outer surface; a face given twice is drawn once."""
    faces, volume_faces, segments, singles, skipped = [], [], [], [], {}
    for block in mesh.cells:
        data = _corners(block.data)
        if data.size and (data.min() < 0 or data.max() >= len(mesh.points)):
            raise conversion_error("the mesh has cells that name points it does not have")
        kind = _base_kind(block.type)
        if data.shape[1] < _CORNERS.get(kind, 3):  # fewer points than the kind has corners
            skipped[block.type] = skipped.get(block.type, 0) + len(data)
        elif kind in ("triangle", "quad", "polygon"):
            faces.append(data[:, :_CORNERS.get(kind, data.shape[1])])
        elif kind == "line":
            segments.append(data[:, :2])
        elif kind == "vertex":
            singles.append(data[:, 0])
        elif kind in _VOLUME_FACES:
            volume_faces += [data[:, list(corners)] for corners in _VOLUME_FACES[kind]]
        else:
            skipped[block.type] = skipped.get(block.type, 0) + len(data)
    for k, group in _grouped(volume_faces).items():
        faces.append(group[_unique_rows(group, keep_single=True)])
    grouped = {k: group[_unique_rows(group)] for k, group in _grouped(faces).items()}
    return drawable_parts(
        faces={k: g for k, g in grouped.items() if len(g)},
        segments=np.concatenate(segments) if segments else np.zeros((0, 2), dtype=np.int64),
        singles=np.concatenate(singles) if singles else np.zeros(0, dtype=np.int64),
        skipped=skipped)
