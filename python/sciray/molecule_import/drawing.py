"""drawing.py - the plan of a molecule's scenes, worked out once for all
chosen frames (atoms, radii, bonds, colours, one camera), and the scene of
each frame: the picture's settings, camera and lights, the materials, and
the atoms, bonds, cell and floor in the style asked."""
import os

import numpy as np

from . import bonds, colouring, elements
from .failure import molecule_error
from ..colour_key import ColourKey
from ..mesh_import import banding, colour_maps, framing
from ..mesh_import.scene_building import _material, _one_line
from ..scene import Scene

STYLES = ("ball-and-stick", "spacefill", "licorice")
# Radii in ångström: ball-and-stick draws balls at a quarter of the van der
# Waals radius and thin sticks, licorice atoms and bonds of one radius.
_BALL_SHARE = 0.25
_STICK = 0.15
_LICORICE = 0.3
# Cell lines, per unit of the view's size.
_CELL_LINE = 0.002
# The most decimals tried for the shortest form of a coordinate (single
# precision has at most nine significant digits).
_MOST_DECIMALS = 12
_BACKDROP = (0.95, 0.95, 0.96)
# Above this many atoms the outline is the box, not the convex hull.
_HULL_LIMIT = 200000


def shortest(values: np.ndarray) -> tuple:
    """(numbers, decimals): each single-precision value (as MDAnalysis holds
    coordinates) as the double of its decimal with the fewest decimals that
    reads back as that value, and that count of decimals. Nothing is lost,
    at any distance from the origin, and a file's "5001.400" is written
    5001.4, not 5001.39990234375. A value needing more than _MOST_DECIMALS
    decimals is kept as it is (its count is then more than _MOST_DECIMALS)."""
    exact = np.asarray(values, dtype=np.float32).reshape(-1)
    numbers = exact.astype(np.float64)
    decimals = np.full(exact.size, _MOST_DECIMALS + 1, dtype=np.int8)
    left, wide, narrow = np.arange(exact.size), numbers, exact
    for count in range(_MOST_DECIMALS + 1):
        scale = 10.0 ** count
        rounded = np.rint(wide * scale) / scale
        back = rounded.astype(np.float32) == narrow
        numbers[left[back]], decimals[left[back]] = rounded[back], count
        left, wide, narrow = left[~back], wide[~back], narrow[~back]
        if not len(left):
            break
    return numbers.reshape(np.shape(values)), decimals.reshape(np.shape(values))


def cell_edges(dimensions) -> np.ndarray:
    """(12, 2, 3) edges of the cell given as (a, b, c, alpha, beta, gamma), from the origin."""
    from MDAnalysis.lib.mdamath import triclinic_vectors
    a, b, c = triclinic_vectors(np.asarray(dimensions, dtype=float)).astype(float)
    corner = {(i, j, k): i * a + j * b + k * c for i in (0, 1) for j in (0, 1) for k in (0, 1)}
    edges = []
    for (i, j, k), start in corner.items():
        for step in ((1, 0, 0), (0, 1, 0), (0, 0, 1)):
            end = (i + step[0], j + step[1], k + step[2])
            if end in corner:
                edges.append((start, corner[end]))
    return np.array(edges)


def _outline(positions, radius):
    """Points whose view holds every ball of the given positions and largest
    radius: the balls on the convex hull, pushed out along the axes (a
    system too large for a hull in a moment is outlined by its box)."""
    from scipy.spatial import ConvexHull, QhullError
    positions = np.asarray(positions, dtype=float)
    if len(positions) > _HULL_LIMIT:
        low, high = positions.min(axis=0), positions.max(axis=0)
        positions = np.array([[x, y, z] for x in (low[0], high[0]) for y in (low[1], high[1])
                              for z in (low[2], high[2])])
    elif len(positions) > 8:
        try:
            positions = positions[ConvexHull(positions).vertices]
        except QhullError:  # flat or in a line: every point stays
            pass
    pushes = np.concatenate([np.eye(3), -np.eye(3)]) * radius
    return (positions[:, None, :] + pushes[None]).reshape(-1, 3)


class plan:
    """Everything the scenes of the chosen frames share, worked out before
    one is written."""

    def __init__(self, read_in, chosen, group=None):
        self.chosen, self.read_in = chosen, read_in
        trajectory = read_in.universe.trajectory
        self.frames = list(range(len(trajectory)))[chosen.frames]
        if not self.frames:
            written = ":".join("" if v is None else str(v) for v in (chosen.frames.start, chosen.frames.stop,
                                                                        chosen.frames.step))
            raise molecule_error("--frames %s selects none of the %d frames" % (written, len(trajectory)))
        trajectory[self.frames[0]]
        self.atoms = self._select(group if group is not None else read_in.universe.atoms, chosen.select)
        self.numbers = elements.atomic_numbers(self.atoms)
        self.radii = self._radii()
        self.bonds = (np.zeros((0, 2), dtype=np.int64) if chosen.style == "spacefill"
                      else bonds.chosen(self.atoms, elements.covalent_radii(self.numbers)))
        self._colours()
        self._last = None
        low, high, outline = self._bounds()
        self.view = framing.frame(low, high, chosen.view, chosen.azimuth, chosen.elevation, chosen.zoom, outline,
                                  roll=chosen.roll, projection=chosen.projection)
        self.floor = framing.floor_corners(low, self.view) if chosen.floor else None

    @staticmethod
    def _select(atoms, select):
        if select is None:
            chosen = atoms
        else:
            try:
                chosen = atoms.select_atoms(select)
            except Exception as failure:  # MDAnalysis's selection errors have no common class
                raise molecule_error("--select %r: %s" % (select, str(failure).strip().splitlines()[0])) from None
        if len(chosen) == 0:
            raise molecule_error("no atoms to draw%s" % (" (--select %r chose none)" % select if select else ""))
        return chosen

    def _radii(self):
        if self.chosen.style == "licorice":
            return np.full(len(self.atoms), _LICORICE)
        share = 1.0 if self.chosen.style == "spacefill" else _BALL_SHARE
        return share * elements.vdw_radii(self.numbers)

    def _colours(self):
        """Colours of the keys (elements, chains, residues) and each atom's,
        or the per-atom number and its bands over all chosen frames."""
        chosen = self.chosen
        if chosen.color in colouring.KINDS:
            self.number = None
            self.colours, self.atom_colour = colouring.by_key(self.atoms, chosen.color, self.numbers)
            return
        self.number = colouring.per_atom(self.read_in, self.atoms, chosen.color)
        self.colours = colour_maps.band_colours(chosen.colormap, chosen.bands)

    def _bounds(self):
        """The box around every chosen frame's atoms (and cell, if drawn),
        and the points of their outlines; for a number, its range over
        those frames."""
        trajectory, low, high, outline, least, most = self.read_in.universe.trajectory, [], [], [], [], []
        for frame in self.frames:
            trajectory[frame]
            positions = self._written(frame)[0]
            low.append((positions - self.radii[:, None]).min(axis=0))
            high.append((positions + self.radii[:, None]).max(axis=0))
            outline.append(_outline(positions, self.radii.max()))
            if self.chosen.cell:
                corners = self._cell(frame).reshape(-1, 3)
                low.append(corners.min(axis=0))
                high.append(corners.max(axis=0))
                outline.append(corners)
            if self.number is not None:
                values = self.number.of_frame()
                least.append(np.min(values))
                most.append(np.max(values))
        if self.number is not None:
            self.low, self.high = colouring.range_of(np.array(least + most), self.chosen.range)
        return np.min(low, axis=0), np.max(high, axis=0), np.concatenate(outline)

    def _written(self, frame):
        """(positions, decimals) of the atoms in `frame`, as the scene writes
        them; those of the frame asked last are kept."""
        if self._last is None or self._last[0] != frame:
            self.read_in.universe.trajectory[frame]
            self._last = (frame, *shortest(self.atoms.positions))
        return self._last[1:]

    def _cell(self, frame):
        dimensions = self.read_in.universe.trajectory.ts.dimensions
        if dimensions is None or not np.all(np.asarray(dimensions)[:3] > 0):
            raise molecule_error("--cell: %s has no unit cell in frame %d" % (self.read_in.name, frame))
        return cell_edges(dimensions)

    def summary(self):
        colour = ("%s from %.6g to %.6g in %d %s bands" % (self.number.name, self.low, self.high,
                                                         self.chosen.bands, self.chosen.colormap)
                  if self.number is not None else self.chosen.color)
        return "%d atoms, %d bonds, %d frame%s; %s coloured by %s" % (
            len(self.atoms), len(self.bonds), len(self.frames), "" if len(self.frames) == 1 else "s",
            self.chosen.style, colour)

    def scene(self, frame) -> Scene:
        """The scene of one frame (an index of the trajectory)."""
        chosen, seen = self.chosen, self.view
        self.read_in.universe.trajectory[frame]
        scene = Scene()
        scene.comment("sciray scene made by sciray-molecule from %s, frame %d" % (
            _one_line(os.path.basename(self.read_in.name)), frame))
        scene.comment(_one_line(self.summary()))
        # An even, light backdrop with no horizon across it, and clear air.
        scene.render(width=chosen.size[0], height=chosen.size[1], zenith=_BACKDROP, horizon=_BACKDROP,
                     ground=_BACKDROP, antialias=True, antialias_tol=0.04, antialias_depth=2, atmosphere_len=0)
        scene.camera(viewpoint=seen.eye, lookat=seen.centre, up_vector_1=seen.up, roll_angle=seen.roll or None,
                     extents=seen.extents, projection=seen.projection)
        scene.ambient((0.2, 0.2, 0.2))
        scene.light(seen.key_light, (0.8, 0.8, 0.8), ambient=(0, 0, 0))
        scene.light(seen.fill_light, (0.35, 0.35, 0.35), ambient=(0, 0, 0))
        materials = np.array([_material(scene, rgb, 0.3) for rgb in self.colours])
        plain = _material(scene, (0.25, 0.25, 0.27), 0.1)
        floor = _material(scene, (0.92, 0.92, 0.92), 0.0)
        positions, decimals = self._written(frame)
        if self.number is None:
            atom_material, values = materials[self.atom_colour], None
        else:
            values = self.number.of_frame()
            scene.contour_table(banding.step_levels(self.low, self.high, chosen.bands), materials)
            scene.colour_key = ColourKey(self.number.name, None, banding.edges(self.low, self.high, chosen.bands),
                                         self.colours, style="bands")
            atom_material = materials[banding.band_of(values, self.low, self.high, chosen.bands)]
        self._atoms(scene, positions, atom_material)
        self._bonds(scene, positions, decimals, atom_material, values)
        if chosen.cell:
            scene.add_lines(self._cell(frame), plain, radius=_CELL_LINE * seen.size)
        if self.floor is not None:
            scene.add_mesh(self.floor, [[0, 1, 2], [0, 2, 3]], material=floor)
        return scene

    def _atoms(self, scene, positions, atom_material):
        """The atoms as balls, a group per radius, each after its own radius."""
        radii, group = np.unique(self.radii, return_inverse=True)
        group = group.ravel()
        order = np.argsort(group, kind="stable")
        starts = np.searchsorted(group[order], np.arange(len(radii) + 1))
        for k, radius in enumerate(radii):
            members = order[starts[k]:starts[k + 1]]
            scene.add_spheres(positions[members], atom_material[members], radius=float(radius))

    def _bonds(self, scene, positions, decimals, atom_material, values):
        """Each bond as two lines, from each atom to the middle, in that atom's colour."""
        drawn = bonds.within_cell(positions, self.bonds, self.read_in.universe.trajectory.ts.dimensions)
        if not len(drawn):
            return
        radius = _LICORICE if self.chosen.style == "licorice" else _STICK
        halves = bonds.half_bonds(positions, drawn)
        # The middle of two ends of at most k decimals has at most k + 1:
        # written so, it is their exact middle, and short.
        places = np.maximum(decimals[drawn[:, 0]], decimals[drawn[:, 1]]) + 1
        places = np.concatenate([places, places])  # the halves at the first atoms, then at the second
        scale = 10.0 ** np.minimum(places, _MOST_DECIMALS)
        halves[:, 1] = np.where(places <= _MOST_DECIMALS, np.rint(halves[:, 1] * scale) / scale, halves[:, 1])
        ends = np.concatenate([drawn[:, 0], drawn[:, 1]])
        if values is None:
            scene.add_lines(halves, atom_material[ends], radius=radius)
        else:
            scene.add_lines(halves, values=np.repeat(values[ends][:, None], 2, axis=1), radius=radius)
