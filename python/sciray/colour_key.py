"""ColourKey: what the colours of a scene coloured by a field mean.

A Scene made by ``sciray.from_mesh`` carries one, and a Picture rendered
from that Scene carries it on; ``sciray.figure`` draws it as the colour bar.
It records the scene's own colours, not a colour map to sample again, so
the bar shows exactly the colours the scene was written with.
"""
from __future__ import annotations

import dataclasses

import numpy as np

STYLES = ("continuous", "bands", "lines")


@dataclasses.dataclass(frozen=True)
class ColourKey:
    """The colouring of a scene by a field.

    Attributes:
        name: the field, as the colour bar's label says it.
        units: its units, or None.
        edges: the band edges, from the low end of the range to the high
            end (one more than there are bands), in the field's values.
        colours: ``(bands, 3)`` colours of the bands, 0 to 1, as written
            to the scene.
        style: "continuous" (the colours blend from band centre to band
            centre), "bands" (one colour per band) or "lines" (a plain
            surface with one contour line per band, in the band colours).
        log: whether the bands divide the range on a logarithmic scale.
        lines: the levels of contour lines drawn on the surface.
        line_colour: their colour, or None when each takes the colour of
            its band (style "lines").
        missing: how many points have no value to colour by (NaN, masked,
            or not positive on a log scale); they show in `missing_colour`.
        missing_colour: the colour of points without a value.

    >>> key = sciray.ColourKey("T", "K", (0, 1, 2), [[0, 0, 1], [1, 0, 0]], "bands")
    >>> key.band_of([0.5, 1.5])
    array([0, 1])
    """

    name: str
    units: str | None
    edges: tuple
    colours: np.ndarray
    style: str = "continuous"
    log: bool = False
    lines: tuple = ()
    line_colour: tuple | None = None
    missing: int = 0
    missing_colour: tuple = (0.5, 0.5, 0.5)

    def __post_init__(self) -> None:
        edges = tuple(float(e) for e in np.ravel(self.edges))
        colours = np.array(self.colours, dtype=float).reshape(-1, 3)
        if len(edges) < 3 or len(colours) != len(edges) - 1:
            raise ValueError("a colour key needs at least 2 bands, with one colour per band: %d edges, %d colours"
                             % (len(edges), len(colours)))
        if not all(a < b for a, b in zip(edges, edges[1:])) or (self.log and edges[0] <= 0):
            raise ValueError("the band edges must increase%s" % (" and be positive" if self.log else ""))
        if self.style not in STYLES:
            raise ValueError("style must be one of %s, not %r" % (", ".join(STYLES), self.style))
        colours.setflags(write=False)
        object.__setattr__(self, "edges", edges)
        object.__setattr__(self, "colours", colours)
        object.__setattr__(self, "lines", tuple(float(v) for v in self.lines))

    @property
    def label(self) -> str:
        """The colour bar's label: the name, and the units in brackets."""
        return self.name if not self.units else "%s [%s]" % (self.name, self.units)

    def scale(self, values) -> np.ndarray:
        """Values on the scale the bands divide evenly (their logarithm on a log scale)."""
        values = np.asarray(values, dtype=float)
        return np.log10(values) if self.log else values

    def band_of(self, values) -> np.ndarray:
        """The band each value falls in, 0 to bands - 1 (values on an edge
        take the lower band; those beyond the range the end bands)."""
        inner = np.asarray(self.edges[1:-1])
        return np.searchsorted(inner, np.asarray(values, dtype=float), side="left")

    def colour_at(self, values) -> np.ndarray:
        """The colour the scene gives each value: the band's colour, or in
        the continuous style the blend between the two nearest band centres."""
        if self.style != "continuous":
            return self.colours[self.band_of(values)]
        ends = self.scale(self.edges)
        centres = (ends[:-1] + ends[1:]) / 2
        at = self.scale(values)
        return np.stack([np.interp(at, centres, self.colours[:, c]) for c in range(3)], axis=-1)
