"""series.py - one scene per mesh of several files, or per step of one
meshio time series (XDMF): the steps and the names of their scenes, and
what their scenes share, worked out in a first pass over all steps: one
field, one colour range (unless each step is to have its own) and one box,
whose camera the first step fixes for all."""
import dataclasses
import os
import re

import numpy as np

from . import banding, conversion, field_choice, mesh_reading
from .failure import conversion_error


@dataclasses.dataclass
class step:
    name: str      # the scene's name, without .ren
    source: str    # the file, and the step of a time series, for messages
    path: str
    index: int     # the step of a time series, or None for a file of its own

    def mesh(self):
        """The step's mesh, read anew."""
        if self.index is None:
            return mesh_reading.read_mesh(self.path)
        import meshio
        try:
            with meshio.xdmf.TimeSeriesReader(self.path) as reader:
                points, cells = reader.read_points_cells()
                _, point_data, cell_data = reader.read_data(self.index)
        except Exception as failure:
            raise conversion_error("cannot read %s: %s" % (self.source, failure)) from None
        return meshio.Mesh(points, cells, point_data=point_data, cell_data=cell_data)


def is_time_series(path):
    """Whether the file is an XDMF time series (a temporal collection of grids)."""
    if not path.lower().endswith((".xdmf", ".xmf")) or not os.path.isfile(path):
        return False
    with open(path, "rb") as f:
        head = f.read(1 << 16)
    return re.search(rb"""CollectionType\s*=\s*["']Temporal["']""", head) is not None


def _time_steps(path):
    import meshio
    try:
        with meshio.xdmf.TimeSeriesReader(path) as reader:
            count = reader.num_steps
    except Exception as failure:
        raise conversion_error("cannot read %s: %s" % (path, failure)) from None
    if count == 0:
        raise conversion_error("%s is a time series without steps" % path)
    stem = os.path.splitext(os.path.basename(path))[0]
    digits = max(4, len(str(count - 1)))
    return [step("%s_%0*d" % (stem, digits, k), "%s (step %d)" % (path, k), path, k) for k in range(count)]


def steps_of(paths):
    """The steps: one per file, or each step of a single time series."""
    if len(paths) == 1 and is_time_series(paths[0]):
        return _time_steps(paths[0])
    for path in paths:
        if is_time_series(path):
            raise conversion_error("%s is a time series: give it alone, without other meshes" % path)
    steps = [step(os.path.splitext(os.path.basename(p))[0], p, p, None) for p in paths]
    seen = {}
    for s in steps:
        if s.name in seen:
            raise conversion_error("%s and %s would both be written as %s.ren" % (seen[s.name], s.path, s.name))
        seen[s.name] = s.path
    return steps


def shared_of(steps, chosen):
    """What the steps' scenes share: the box around all of them, and the
    range of the chosen field over all of them (unless --range gives it or
    each step is to have its own). Fixes the field of every step to the
    first step's, when none is named."""
    low, high, ranges = [], [], []
    for s in steps:
        mesh = s.mesh()
        box_low, box_high = conversion.box(mesh, s.source)
        low.append(box_low)
        high.append(box_high)
        try:
            chosen_field = field_choice.choose_field(mesh, chosen.scalar)
        except conversion_error as failure:  # the first step's field, say, missing from a later one
            raise conversion_error("%s: %s" % (s.source, failure)) from None
        if chosen_field is not None:
            chosen.scalar = chosen_field.name
            ranges.append(banding.own_scaled_range(chosen_field, chosen.log))
    common_range = None
    if ranges and chosen.range is None and not chosen.per_step_range:
        common_range = banding.range_of(np.array(ranges))
    return conversion.common(range=common_range, low=np.min(low, axis=0), high=np.max(high, axis=0))
