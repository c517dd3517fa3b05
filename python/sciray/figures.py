"""figure(): a rendered picture made ready for a paper, with matplotlib: the
picture unscaled beside the colour bar of its colour key, with an optional
title above it and a caption below."""
from __future__ import annotations

import math
import os
import textwrap

import numpy as np

from ._program_outputs import written_whole
from .colour_key import ColourKey
from .picture import Picture

# Text sizes in points; distances in pixels of the figure.
_TEXT, _TITLE = 9.0, 12.0
_MARGIN = 12          # around everything
_GAP = 14             # between the picture and the bar, and around the texts
_BAR_WIDTH = 16
_STEPS = 256          # steps of the gradient of a continuous key
_MOST_TICKS = 11


def _thinned(values) -> np.ndarray:
    values = np.asarray(values)
    step = math.ceil(len(values) / _MOST_TICKS)
    return values[::step] if step > 1 else values


def _draw_key(bar, key: ColourKey) -> None:
    """The colour bar: the bands as blocks, a continuous key as a gradient
    through the scene's own blend, coloured contour lines on a plain bar in
    the lines style; ticks at the band edges (or at the contour levels)."""
    from matplotlib.colors import BoundaryNorm, ListedColormap

    low, high = key.edges[0], key.edges[-1]
    if key.log:
        bar.set_yscale("log")
    if key.style == "lines":
        bar.set_facecolor("white")
        for level in key.lines:
            bar.axhline(level, color=key.colour_at([level])[0], linewidth=2.5)
        ticks = key.lines
    else:
        if key.style == "continuous":
            scaled = np.linspace(*key.scale([low, high]), _STEPS + 1)
            steps = 10 ** scaled if key.log else scaled
            colours = key.colour_at(steps[:-1] + np.diff(steps) / 2)
        else:
            steps, colours = np.array(key.edges), key.colours
        count = len(colours)
        bar.pcolormesh([0, 1], steps, np.arange(count)[:, None], cmap=ListedColormap(colours),
                       norm=BoundaryNorm(np.arange(count + 1) - 0.5, count), shading="flat", antialiased=False,
                       edgecolors="none")
        for level in key.lines:
            bar.axhline(level, color=key.line_colour, linewidth=1.0)
        ticks = key.edges
    bar.set_xlim(0, 1)
    bar.set_ylim(low, high)
    bar.set_xticks([])
    bar.minorticks_off()
    bar.set_yticks(_thinned(ticks))
    bar.set_yticklabels(["%.4g" % t for t in _thinned(ticks)], fontsize=_TEXT)
    bar.yaxis.tick_right()
    bar.yaxis.set_label_position("right")
    bar.set_ylabel(key.label, fontsize=_TEXT)


def _draw_missing(swatch, key: ColourKey) -> None:
    """A swatch of the colour of points without a value, named beside it."""
    swatch.set_facecolor(key.missing_colour)
    swatch.set_xticks([])
    swatch.set_yticks([])
    swatch.yaxis.set_label_position("right")
    swatch.set_ylabel("no value", fontsize=_TEXT, rotation=0, ha="left", va="center")


class _layout:
    """Places axes and texts in pixels, measured from the figure's lower
    left corner, on a figure whose size is settled last."""

    def __init__(self, fig, dpi):
        from matplotlib.backends.backend_agg import FigureCanvasAgg

        self.fig, self.dpi = fig, dpi
        self.renderer = FigureCanvasAgg(fig).get_renderer()
        self.places = {}

    def size_of(self, artist):
        box = artist.get_window_extent(self.renderer)
        return math.ceil(box.width), math.ceil(box.height)

    def axes(self, x, y, width, height):
        axes = self.fig.add_axes([0, 0, 1, 1])
        self.places[axes] = (x, y, width, height)
        return axes

    def settle(self, width, height):
        """Sets the figure's size and puts every axes in its place."""
        self.fig.set_size_inches(width / self.dpi, height / self.dpi)
        for axes, (x, y, w, h) in self.places.items():
            axes.set_position([x / width, y / height, w / width, h / height])

    def right_edge(self):
        """How far right the axes reach, with their ticks and labels."""
        return max(axes.get_tightbbox(self.renderer).x1 for axes in self.places)


def figure(picture: Picture, key: ColourKey | None = None, *, title: str | None = None,
           caption: str | None = None, path: str | os.PathLike | None = None, dpi: float = 100):
    """A matplotlib Figure of the picture, one picture pixel to one figure
    pixel, beside the colour bar of its colour key: the field's name and
    units, ticks at the band edges (or at the contour levels), the scene's
    own colours.

    Args:
        picture: a Picture; render one without the corner mark for a paper.
        key: the ColourKey to draw; by default the picture's own (a picture
            rendered from a Scene of ``sciray.from_mesh`` has one). Without
            one the figure holds the picture alone, with its texts.
        title: a line above the picture.
        caption: text below the picture, wrapped to the figure's width.
        path: when given, the figure is also written there, whole or not
            at all, in the format its name ends in: a PNG holds the
            picture's pixels exactly; PDF and SVG hold them as an image of
            their own, unscaled (and so do matplotlib's other formats).
        dpi: pixels per inch: sets the size of the texts against the picture.

    Raises:
        ValueError: for a `path` whose ending names no format matplotlib writes.
        OSError: when the file cannot be written; an earlier file of that
            name stays as it was.

    >>> scene = sciray.from_mesh("examples/torus.vtk", units="°C")          # doctest: +SKIP
    >>> sciray.figure(sciray.render(scene), title="Torus", path="torus.pdf")  # doctest: +SKIP
    """
    from matplotlib.figure import Figure

    if path is not None:
        kind = os.path.splitext(os.fsdecode(os.fspath(path)))[1].lower()[1:]
        if kind not in Figure().canvas.get_supported_filetypes():
            raise ValueError("cannot tell the figure format of %r: name it .png, .pdf or .svg" % os.fspath(path))
    key = picture.colour_key if key is None else key
    height, width = picture.height, picture.width
    fig = Figure(dpi=dpi, facecolor="white")
    place = _layout(fig, dpi)
    title_text = fig.text(0, 0, title, fontsize=_TITLE, ha="center", va="bottom") if title else None
    caption_text = fig.text(0, 0, caption, fontsize=_TEXT, ha="left", va="top") if caption else None
    if caption_text is not None:
        line = place.size_of(caption_text)[0]
        room = max(width, 240)
        if line > room:
            caption_text.set_text(textwrap.fill(caption, max(10, len(caption) * room // line)))
    below = place.size_of(caption_text)[1] + _GAP if caption_text is not None else 0
    above = place.size_of(title_text)[1] + _GAP if title_text is not None else 0
    bottom, right = _MARGIN + below, _MARGIN + width
    picture_axes = place.axes(_MARGIN, bottom, width, height)
    picture_axes.set_axis_off()
    picture_axes.imshow(picture.pixels, interpolation="none", aspect="auto", extent=(0, width, 0, height))
    if key is not None:
        swatch_height = 2 * _BAR_WIDTH if key.missing else 0
        bar_height = max(0.8 * height - swatch_height, 4 * _TEXT * dpi / 72)
        bar_bottom = bottom + (height - bar_height + swatch_height) / 2
        _draw_key(place.axes(right + _GAP, bar_bottom, _BAR_WIDTH, bar_height), key)
        if key.missing:
            _draw_missing(place.axes(right + _GAP, bar_bottom - swatch_height, _BAR_WIDTH, _BAR_WIDTH), key)
    total_height = bottom + height + above + _MARGIN
    place.settle(right + _MARGIN, total_height)
    total_width = max(math.ceil(place.right_edge()) + _MARGIN,
                      place.size_of(title_text)[0] + 2 * _MARGIN if title_text is not None else 0)
    place.settle(total_width, total_height)
    if title_text is not None:
        centre = min(max(_MARGIN + width / 2, _MARGIN + place.size_of(title_text)[0] / 2), total_width / 2)
        title_text.set_position((centre / total_width, (bottom + height + _GAP) / total_height))
    if caption_text is not None:
        caption_text.set_position((_MARGIN / total_width, (bottom - _GAP) / total_height))
    if path is not None:
        _save(fig, picture, (_MARGIN, bottom), os.fspath(path))
    return fig


def _save(fig, picture: Picture, at: tuple, path: str) -> None:
    """Writes the figure, whole or not at all. A PNG is drawn by matplotlib
    and gets the picture's own pixels at their place (`at`: its lower left
    corner, in pixels from the figure's); other formats are matplotlib's,
    the vector ones with the picture as an image of its own."""
    kind = os.path.splitext(os.fsdecode(path))[1].lower()
    if kind != ".png":
        with written_whole(path) as partial, open(partial, "wb") as out:
            fig.savefig(out, format=kind[1:], dpi=fig.dpi, facecolor="white")
        return
    fig.canvas.draw()
    pixels = np.array(fig.canvas.buffer_rgba())[:, :, :3]
    left, bottom = at
    top = len(pixels) - bottom - picture.height
    pixels[top:top + picture.height, left:left + picture.width] = picture.pixels
    Picture(pixels).save(path)
