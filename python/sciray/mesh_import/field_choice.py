"""field_choice.py - picks the data field that colours the scene and brings it
to one number per point; and finds the normals a file gives for its points."""
import dataclasses

import numpy as np

from .failure import conversion_error

# Point data that holds normals rather than data, as writers name it.
_NORMAL_NAMES = ("Normals", "normals", "Normal", "normal", "obj:vn")
_NORMAL_COMPONENTS = ("nx", "ny", "nz")


@dataclasses.dataclass
class field:
    """The field that colours the scene."""
    name: str            # as the mesh names it
    description: str     # name and kind, for the summary
    components: int      # 1, or the components of the vectors whose magnitude it is
    values: np.ndarray   # one per point; NaN where a point has no value
    own_range: tuple     # least and greatest finite value of the field as given, or None when it has none
    least_positive: float  # least positive value of the field as given, or None (for a log scale)
    missing: int         # entries (points or cells) of the field without a finite value


def _normal_fields(mesh):
    names = [name for name in _NORMAL_NAMES if name in mesh.point_data]
    if all(name in mesh.point_data for name in _NORMAL_COMPONENTS):
        names += _NORMAL_COMPONENTS
    return names


def file_normals(mesh):
    """One normal per point as the file gives them, or None when it gives
    none (or gives some that are not numbers)."""
    count = len(mesh.points)
    names = _normal_fields(mesh)
    try:
        if names[-3:] == list(_NORMAL_COMPONENTS):
            normals = np.stack([np.asarray(mesh.point_data[c], dtype=float).reshape(count) for c in names[-3:]],
                               axis=1)
        elif names and np.shape(mesh.point_data[names[0]]) == (count, 3):
            normals = np.asarray(mesh.point_data[names[0]], dtype=float)
        else:
            return None
    except (TypeError, ValueError, OverflowError):
        return None
    return normals if np.isfinite(normals).all() else None


def _is_data(mesh, name):
    """Normals, and meshio's own tags such as gmsh:physical or obj:group_ids,
    are not data to colour by."""
    return name not in _normal_fields(mesh) and name != "facet_normals" and ":" not in name


def _one_number_each(name, data, count, owner):
    """The field as one number per point or cell, NaN where an entry is
    masked, NaN or infinite: vectors (and tensors) give their magnitude."""
    array = np.ma.asarray(data)
    if array.dtype.kind not in "buifc":
        raise conversion_error("field '%s' is not numeric" % name)
    if array.ndim == 0 or array.shape[0] != count:
        raise conversion_error("field '%s' does not have one entry per %s" % (name, owner))
    if count == 0:
        return np.zeros(0), 1
    components = int(np.prod(array.shape[1:], dtype=int))
    masked = np.ma.getmaskarray(array).reshape(count, -1).any(axis=1)
    array = np.ma.getdata(array)
    array = (np.abs(array) if array.dtype.kind == "c" else array).reshape(count, -1).astype(float)
    values = array[:, 0] if components == 1 else np.sqrt((array * array).sum(axis=1))
    values[masked | ~np.isfinite(values)] = np.nan
    return values, components


def _cells_to_points(mesh, per_cell):
    """Each point takes the mean of the values of the cells it belongs to
    that have one; NaN when none has."""
    count = len(mesh.points)
    total, cells = np.zeros(count), np.zeros(count)
    for values, block in zip(per_cell, mesh.cells):
        nodes = np.asarray(block.data, dtype=np.int64)
        valued = np.isfinite(values)
        nodes, values = nodes[valued], values[valued]
        total += np.bincount(nodes.ravel(), weights=np.repeat(values, nodes.shape[1]), minlength=count)
        cells += np.bincount(nodes.ravel(), minlength=count)
    return np.divide(total, cells, out=np.full(count, np.nan), where=cells > 0)


def _described(name, where, components):
    if components == 1:
        return "%s (%s)" % (name, where)
    return "%s (magnitude of a %d-component %s)" % (name, components, where)


def _field(name, description, components, per_point, given):
    """The field, its own range taken over every entry given (all points, or all cells)."""
    finite = given[np.isfinite(given)]
    own = (float(finite.min()), float(finite.max())) if len(finite) else None
    positive = finite[finite > 0]
    least_positive = float(positive.min()) if len(positive) else None
    return field(name, description, components, per_point, own, least_positive, int(len(given) - len(finite)))


def choose_field(mesh, name=None):
    """The named field, or the first data field (point fields first) when no
    name is given; None when no name is given and the mesh has no data field."""
    if name is None:
        name = next((n for n in list(mesh.point_data) + list(mesh.cell_data) if _is_data(mesh, n)), None)
        if name is None:
            return None
    if name in mesh.point_data:
        values, components = _one_number_each(name, mesh.point_data[name], len(mesh.points), "point")
        return _field(name, _described(name, "point field", components), components, values, values)
    if name in mesh.cell_data:
        reduced = [_one_number_each(name, data, len(block.data), "cell")
                   for data, block in zip(mesh.cell_data[name], mesh.cells)]
        per_cell = [values for values, _ in reduced]
        where = "cell field, averaged onto the points"
        components = max([c for _, c in reduced], default=1)
        return _field(name, _described(name, where, components), components, _cells_to_points(mesh, per_cell),
                      np.concatenate(per_cell) if per_cell else np.zeros(0))
    fields = list(mesh.point_data) + [n for n in mesh.cell_data if n not in mesh.point_data]
    if not fields:
        raise conversion_error("no field '%s': the mesh has no fields" % name)
    raise conversion_error("no field '%s'; the mesh has: %s" % (name, ", ".join(fields)))
