"""Scene: a scene file made or grown in Python.

Every call appends to the scene's text in order, as the scene format reads
it: a render or camera call is a render or viewing block that changes only
the keywords it names, from there on (so ``add_spheres(..., radius=r)``
changes the ball radius of what follows); lights add to the lights; the
materials form the colour map, written again before the next geometry
whenever one was added; a contour table is in force for the geometry after
it. Geometry arrays are copied and checked when added, and written as
records only when the text is read, rendered or saved.
"""
from __future__ import annotations

import os

import numpy as np

from . import _arrays, _sciray
from ._program_outputs import written_whole
from .colour_key import ColourKey

_INT, _REAL, _TRIPLE, _PAIR, _TRUTH = "integer", "number", "3 numbers", "2 numbers", "True or False"

RENDER_KEYWORDS = {
    "width": _INT, "height": _INT, "zenith": _TRIPLE, "horizon": _TRIPLE, "ground": _TRIPLE,
    "cloud_inner": _TRIPLE, "cloud_outer": _TRIPLE, "cloud_inner_frac": _REAL, "cloud_outer_frac": _REAL,
    "cloud_scale": _REAL, "cloud_offset": _TRIPLE, "cloud_depth": _INT, "cloud_sharpness": _REAL,
    "atmosphere": _TRIPLE, "atmosphere_len": _REAL, "atmosphere_ior": _REAL, "highlights": _TRUTH,
    "shadows": _TRUTH, "depth": _INT, "pixel_size": _INT, "antialias": _TRUTH, "antialias_tol": _REAL,
    "antialias_depth": _INT, "line_radius": _REAL, "symbol_radius": _REAL,
}
CAMERA_KEYWORDS = {
    "viewpoint": _TRIPLE, "lookat": _TRIPLE, "up_vector_1": _TRIPLE, "up_vector_2": _TRIPLE,
    "roll_angle": _REAL, "extents": _PAIR, "projection": ("perspective", "orthographic"),
}
# In the order an entry is written: "color" presets the terms after it, and
# "attenuation" must come before "atten_len".
MATERIAL_KEYWORDS = {
    "color": _TRIPLE, "diffuse": _TRIPLE, "ambient": _TRIPLE, "specular": _TRIPLE, "reflective": _TRIPLE,
    "refractive": _TRIPLE, "emission": _TRIPLE, "shininess": _REAL, "attenuation": _TRIPLE, "atten_len": _REAL,
    "rough_scale": _REAL, "rough_amplitude": _REAL, "rough_depth": _INT, "index_ref": _REAL,
    "index_ref_spread": _REAL,
}
STYLES = ("lines", "centroid", "bands", "continuous")


def _number(keyword: str, value, kind: str) -> str:
    """A value in the form the reader takes back exactly: shortest round-trip
    for reals, plain digits for integers."""
    try:
        if kind == _INT:
            number = int(np.int32(value)) if isinstance(value, (int, np.integer)) else None
            if number is None:
                raise TypeError
            return str(number)
        if np.iscomplexobj(value):  # float() would drop the imaginary part
            raise TypeError
        number = float(value)
    except (TypeError, ValueError, OverflowError):
        raise ValueError("%s must be a%s %s, not %r" % (keyword, "n" if kind == _INT else "", kind, value)) from None
    if not np.isfinite(number):
        raise ValueError("%s must be a finite number, not %r" % (keyword, value))
    return repr(number)


def _entry(keyword: str, value, kind) -> str:
    """'keyword values' for one keyword of a block."""
    if isinstance(kind, tuple):
        if value not in kind:
            raise ValueError("%s must be one of %s, not %r" % (keyword, ", ".join(kind), value))
        return "%s %s" % (keyword, value)
    if kind == _TRUTH:
        if not isinstance(value, (bool, np.bool_)):
            raise ValueError("%s must be True or False, not %r" % (keyword, value))
        return "%s %s" % (keyword, "true" if value else "false")
    if kind in (_TRIPLE, _PAIR):
        count = 3 if kind == _TRIPLE else 2
        items = list(np.ravel(value)) if np.ndim(value) else []
        if len(items) != count:
            raise ValueError("%s must be %s, not %r" % (keyword, kind, value))
        return "%s %s" % (keyword, " ".join(_number(keyword, v, _REAL) for v in items))
    return "%s %s" % (keyword, _number(keyword, value, kind))


def _entries(keywords: dict, table: dict, block: str) -> list[str]:
    unknown = [k for k in keywords if k not in table]
    if unknown:
        raise TypeError("%s got unknown keyword %r; it takes %s" % (block, unknown[0], ", ".join(table)))
    return [_entry(k, keywords[k], table[k]) for k in table if k in keywords and keywords[k] is not None]


class Scene:
    """A scene made or grown in Python: the text of a scene file, written
    from settings and from numpy arrays.

    >>> scene = sciray.Scene()
    >>> scene.render(width=320, height=240, antialias=True)
    >>> scene.camera(viewpoint=(0, -6, 2), lookat=(0, 0, 0), up_vector_1=(0, 0, 1))
    >>> scene.light((5, -5, 8))
    >>> red = scene.material(color=(0.8, 0.1, 0.1))
    >>> scene.add_spheres(np.random.default_rng(1).normal(size=(100, 3)), red, radius=0.1)
    >>> picture = sciray.render(scene)                        # doctest: +SKIP
    """

    def __init__(self) -> None:
        #: What the colours of the scene mean (a ColourKey), when it is coloured by a field.
        self.colour_key: ColourKey | None = None
        self._parts: list = []           # bytes and geometry records, in order
        self._materials: list[str] = []  # colour-map entries
        self._written = 0                # materials in the colour map written last
        self._contours = False           # a contour table is in force
        self._loaded = False             # text read from a file, whose colour map is not known here

    @classmethod
    def load(cls, path: str | os.PathLike) -> "Scene":
        """A scene holding the text of a scene file, to render or to grow.
        Materials added to it form a new colour map for the geometry after them."""
        with open(path, "rb") as f:
            return cls._of_text(f.read())

    @classmethod
    def from_text(cls, text: str) -> "Scene":
        """A scene holding the given scene text, to render or to grow."""
        return cls._of_text(text.encode("utf-8", "surrogateescape"))

    @classmethod
    def _of_text(cls, text: bytes) -> "Scene":
        scene = cls()
        if text:
            # Whatever is added after it starts on a line of its own.
            scene._parts.append(text if text.endswith(b"\n") else text + b"\n")
        scene._loaded = True
        return scene

    def __repr__(self) -> str:
        return "<sciray.Scene: %d parts, %d materials>" % (len(self._parts), len(self._materials))

    # Text

    def _pieces(self) -> list:
        return list(self._parts)

    def text(self) -> str:
        """The scene file's text."""
        return _sciray.SceneText(self._pieces()).read().decode("utf-8", "surrogateescape")

    def save(self, path: str | os.PathLike) -> None:
        """Writes the scene file, whole or not at all: it is written beside
        `path` and moved there when complete."""
        with written_whole(os.fspath(path)) as partial, open(partial, "wb") as out:
            source = _sciray.SceneText(self._pieces())
            while chunk := source.read(1 << 20):
                out.write(chunk)

    def _add(self, text: str) -> None:
        self._parts.append(text.encode())

    # Settings

    def comment(self, text: str) -> None:
        """Comment lines: "# " and each line of `text`."""
        self._add("".join("# %s\n" % line for line in str(text).splitlines() or [""]))

    def render(self, **keywords) -> None:
        """A render block: picture size, sky, atmosphere, anti-aliasing, radii...
        with the scene format's keywords (``width=640, antialias=True,
        zenith=(0.2, 0.3, 0.8)``). Later blocks change only what they name."""
        self._add("render_002 {\n%s}\n" % "".join(" %s\n" % e for e in _entries(keywords, RENDER_KEYWORDS, "render")))

    def camera(self, **keywords) -> None:
        """A viewing block: ``viewpoint``, ``lookat``, ``up_vector_1``,
        ``up_vector_2``, ``roll_angle``, ``extents`` (width, height of the
        view) and ``projection`` ("perspective" or "orthographic")."""
        self._add("viewing_001 {\n%s}\n" % "".join(" %s\n" % e for e in _entries(keywords, CAMERA_KEYWORDS, "camera")))

    def ambient(self, colour) -> None:
        """The ambient light of the whole scene."""
        self._add("lighting_001 0 {\n %s\n}\n" % _entry("ambient", colour, _TRIPLE))

    def light(self, location, color=(0.9, 0.9, 0.9), *, local: bool = False, ambient=(0.09, 0.09, 0.09),
              radius: float | None = None, attenuation_factors=None, spotlight_direction=None,
              spotlight_angles=None) -> None:
        """A light, shining from the direction of `location` (from far away),
        or from `location` itself when `local`. A local light can have a
        `radius` (an area light, soft shadows), `attenuation_factors` (a, b,
        c: the light falls off as 1 / (a + b d + c d^2)) and be a spot light
        (`spotlight_direction`, `spotlight_angles`)."""
        if not local and (radius is not None or attenuation_factors is not None or spotlight_direction is not None):
            raise ValueError("radius, attenuation_factors and spotlight_direction are for a local light")
        block = ""
        if radius is not None or attenuation_factors is not None:
            block = " attenuation true\n %s\n" % _entry("attenuation_factors", attenuation_factors
                                                        if attenuation_factors is not None else (1, 0, 0), _TRIPLE)
        lines = ["on true", _entry("local", bool(local), _TRUTH), _entry("location", location, _TRIPLE),
                 _entry("color", color, _TRIPLE), _entry("ambient", ambient, _TRIPLE)]
        if radius is not None:
            lines.append(_entry("radius", radius, _REAL))
        if spotlight_direction is not None:
            lines += ["spotlight true", _entry("spotlight_direction", spotlight_direction, _TRIPLE)]
            if spotlight_angles is not None:
                lines.append(_entry("spotlight_angles", spotlight_angles, _PAIR))
        self._add("lighting_001 1 {\n%s light 0 {\n%s }\n}\n" % (block, "".join("  %s\n" % e for e in lines)))

    def material(self, **keywords) -> int:
        """A new colour-map entry (``color``, ``specular``, ``shininess``,
        ``reflective``, ``refractive``, ``index_ref``, ...); returns its
        index, for geometry and contour tables."""
        self._materials.append(" ".join(_entries(keywords, MATERIAL_KEYWORDS, "material")))
        return len(self._materials) - 1

    def _colour_map(self) -> None:
        """Writes the colour map before geometry when materials were added."""
        if len(self._materials) > self._written:
            self._add("colormap_002 %d {\n%s}\n" % (len(self._materials), "".join(
                " index %d { %s }\n" % (i, m) for i, m in enumerate(self._materials))))
            self._written = len(self._materials)

    def _defined(self) -> int | None:
        """How many materials geometry may use: None when a loaded scene's
        own colour map is in force."""
        return None if self._loaded and not self._materials else len(self._materials)

    def contour_table(self, levels, materials) -> None:
        """The contour table that colours geometry with values: band k is
        `materials[k]` at `levels[k]` (increasing levels, at least two)."""
        levels = _arrays.values("levels", levels, (np.size(levels),))
        if len(levels) < 2:
            raise ValueError("a contour table needs at least 2 levels, not %d" % len(levels))
        indices = _arrays.materials(materials, len(levels), self._defined())
        self._colour_map()
        self._add("contour_table_001 %d {\n%s}\n" % (len(levels), "".join(
            " %d %s\n" % (i, _number("level", v, _REAL)) for i, v in zip(indices.tolist(), levels.tolist()))))
        self._contours = True

    # Geometry

    def _geometry(self, records) -> None:
        if len(records):
            self._colour_map()
            self._parts += [b"gr_geometry_001 {\n", records, b"}\n"]

    def _needs_contours(self) -> None:
        if not (self._contours or self._loaded):
            raise ValueError("geometry with values needs a contour table first (Scene.contour_table)")

    def add_spheres(self, centres, material=0, *, radius: float | None = None) -> None:
        """Balls at the (n, 3) `centres`, of colour-map entry `material` (one
        index, or one per ball). `radius` sets the ball radius (the render
        block's ``symbol_radius``) for these balls and all after them."""
        centres = _arrays.points("centres", centres)
        indices = _arrays.materials(material, len(centres), self._defined())
        if radius is not None:
            self.render(symbol_radius=radius)
        self._geometry(_sciray.SphereRecords(centres, indices))

    def add_lines(self, points, material=0, values=None, *, radius: float | None = None) -> None:
        """Lines drawn as cylinders: an (n, 3) array is one poly-line through
        its points, an (m, n, 3) array m of them. `material` is one index or
        one per line; `values` (one per point) colour the lines through the
        contour table instead. `radius` sets the render block's
        ``line_radius`` for these lines and all after them."""
        lines = _arrays.polylines("points", points)
        indices = _arrays.materials(material, len(lines), self._defined())
        if values is None:
            data = np.zeros((0, 0))
        else:
            self._needs_contours()
            data = _arrays.values("values", np.reshape(values, (1, -1)) if np.ndim(points) == 2 else values,
                                  lines.shape[:2])
        if radius is not None:
            self.render(line_radius=radius)
        self._geometry(_sciray.LineRecords(lines, indices, data))

    def add_mesh(self, points, triangles, values=None, normals=None, material=0, style: str | None = None) -> None:
        """Triangles over (n, 3) `points`, given as (m, 3) point indices,
        smooth-shaded with (n, 3) `normals` when given. With `values` (one per
        point) the mesh is coloured by the contour table in `style`:
        "continuous" (the default: colours blend), "bands", "lines" or
        "centroid" (one band per triangle)."""
        points = _arrays.points("points", points)
        corners = _arrays.indices("triangles", triangles, len(points))
        indices = _arrays.materials(material, len(corners), self._defined())
        normals = np.zeros((0, 3)) if normals is None else _arrays.points("normals", normals, len(points))
        if values is None:
            if style is not None:
                raise ValueError("a style is for a mesh with values")
            data, word = np.zeros(0), ""
        else:
            self._needs_contours()
            data = _arrays.values("values", values, (len(points),))
            style = "continuous" if style is None else style
            if style not in STYLES:
                raise ValueError("style must be one of %s, not %r" % (", ".join(STYLES), style))
            word = "gr_contour_" + style
        self._geometry(_sciray.TriangleRecords(points, corners, indices, normals, data, word))
