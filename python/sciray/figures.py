"""figure(): a rendered picture made ready for a paper, with matplotlib: the
picture unscaled beside the colour bar of its colour key, with an optional
title above it and a caption below."""
from __future__ import annotations

import os
import textwrap

import numpy as np

from .colour_key import ColourKey
from .picture import Picture

# Sizes in points (1/72 inch) and pixels at the figure's resolution.
_TEXT, _TITLE = 9.0, 12.0
_MARGIN = 12          # pixels around everything
_GAP = 14             # pixels between the picture and the bar, and around the texts
_BAR_WIDTH = 16       # pixels
_STEPS = 256          # bands of the gradient of a continuous key
_MOST_TICKS = 11


def _layout_pixels(fig, renderer, artist) -> tuple:
    """Width and height of what an artist draws, in pixels."""
    box = artist.get_window_extent(renderer) if hasattr(artist, "get_text") else artist.get_tightbbox(renderer)
    return box.width, box.height, box


def _thinned(values: np.ndarray) -> np.ndarray:
    step = int(np.ceil(len(values) / _MOST_TICKS))
    return values[::step] if step > 1 else values


def _draw_key(bar, key: ColourKey) -> None:
    """The colour bar: the bands as blocks, a continuous key as a gradient
    through the scene's own blend, coloured contour lines on a plain bar in
    the lines style; ticks at the band edges (or at the contour levels)."""
    from matplotlib.colors import BoundaryNorm, ListedColormap

    low, high = key.edges[0], key.edges[-1]
    if key.style == "continuous":
        ends = key.scale([low, high])
        scaled = np.linspace(ends[0], ends[1], _STEPS + 1)
        steps = 10 ** scaled if key.log else scaled
        colours = key.colour_at(steps[:-1] + np.diff(steps) / 2)
    else:
        steps, colours = np.array(key.edges), key.colours
    if key.log:
        bar.set_yscale("log")
    if key.style == "lines":
        bar.set_facecolor("white")
        for level in key.lines:
            bar.axhline(level, color=key.colour_at([level])[0], linewidth=2.5)
        ticks = np.array(key.lines)
    else:
        count = len(colours)
        bar.pcolormesh([0, 1], steps, np.arange(count)[:, None], cmap=ListedColormap(colours),
                       norm=BoundaryNorm(np.arange(count + 1) - 0.5, count), shading="flat", antialiased=False,
                       edgecolors="none")
        for level in key.lines:
            bar.axhline(level, color=key.line_colour, linewidth=1.0)
        ticks = np.array(key.edges)
    bar.set_xlim(0, 1)
    bar.set_ylim(low, high)
    bar.set_xticks([])
    bar.minorticks_off()
    bar.set_yticks(_thinned(ticks))
    bar.set_yticklabels(["%.4g" % t for t in _thinned(ticks)], fontsize=_TEXT)
    bar.yaxis.tick_right()
    bar.yaxis.set_label_position("right")
    bar.set_ylabel(key.label, fontsize=_TEXT)


def _draw_missing(box, key: ColourKey) -> None:
    """A swatch of the colour of points without a value, named beside it."""
    box.set_facecolor(key.missing_colour)
    box.set_xticks([])
    box.set_yticks([])
    box.yaxis.set_label_position("right")
    box.set_ylabel("no value", fontsize=_TEXT, rotation=0, ha="left", va="center")


def figure(picture: Picture, key: ColourKey | None = None, *, title: str | None = None,
           caption: str | None = None, path: str | os.PathLike | None = None, dpi: float = 100):
    """A matplotlib Figure of the picture, one picture pixel to one figure
    pixel (placed as an image, unscaled, in PDF and SVG), beside the colour
    bar of its colour key: the field's name and units, ticks at the band
    edges (or at the contour levels), the scene's own colours.

    Args:
        picture: a Picture; render one without the corner mark for a paper.
        key: the ColourKey to draw; by default the picture's own (a picture
            rendered from a Scene of ``sciray.from_mesh`` has one). Without
            one the figure holds the picture alone, with its texts.
        title: a line above the picture.
        caption: text below the picture, wrapped to the figure's width.
        path: when given, the figure is also written there: PNG, PDF or
            SVG by the name's ending, at `dpi`.
        dpi: pixels per inch, which sets the size of the texts and of a
            raster figure's pixels (a picture pixel is always one of them).

    >>> scene = sciray.from_mesh("examples/torus.vtk", units="°C")          # doctest: +SKIP
    >>> sciray.figure(sciray.render(scene), title="Torus", path="torus.pdf")  # doctest: +SKIP
    """
    from matplotlib.backends.backend_agg import FigureCanvasAgg
    from matplotlib.figure import Figure

    key = picture.colour_key if key is None else key
    height, width = picture.height, picture.width
    fig = Figure(dpi=dpi, facecolor="white")
    renderer = FigureCanvasAgg(fig).get_renderer()
    point = dpi / 72.0
    title_text = fig.text(0, 0, title or "", fontsize=_TITLE, ha="center", va="bottom") if title else None
    caption_text = fig.text(0, 0, caption or "", fontsize=_TEXT, ha="left", va="top") if caption else None
    if caption_text is not None:
        line, _, _ = _layout_pixels(fig, renderer, caption_text)
        room = max(width, 200)
        if line > room:
            caption_text.set_text(textwrap.fill(caption, max(10, int(len(caption) * room / line))))
    caption_h = _layout_pixels(fig, renderer, caption_text)[1] + _GAP if caption_text is not None else 0
    title_h = _layout_pixels(fig, renderer, title_text)[1] + _GAP if title_text is not None else 0
    bottom = _MARGIN + caption_h
    right = _MARGIN + width
    bar = swatch = None
    if key is not None:
        swatch_h = 2 * _BAR_WIDTH if key.missing else 0
        bar_h = max(0.8 * height - swatch_h, 4 * _TEXT * point)
        bar_bottom = bottom + (height - bar_h + swatch_h) / 2
        bar = fig.add_axes([0, 0, 1, 1])
        _draw_key(bar, key)
        positions = {bar: (right + _GAP, bar_bottom, _BAR_WIDTH, bar_h)}
        if key.missing:
            swatch = fig.add_axes([0, 0, 1, 1])
            _draw_missing(swatch, key)
            positions[swatch] = (right + _GAP, bar_bottom - swatch_h, _BAR_WIDTH, _BAR_WIDTH)
    total_h = bottom + height + title_h + _MARGIN
    total_w = right + _MARGIN
    if bar is not None:
        fig.set_size_inches(total_w / dpi, total_h / dpi)
        for axes, (x, y, w, h) in positions.items():
            axes.set_position([x / total_w, y / total_h, w / total_w, h / total_h])
        reach = max(axes.get_tightbbox(renderer).x1 for axes in positions)
        total_w = int(np.ceil(reach)) + _MARGIN
    total_w = max(total_w, int(np.ceil(_layout_pixels(fig, renderer, title_text)[0])) + 2 * _MARGIN
                  if title_text is not None else total_w)
    fig.set_size_inches(total_w / dpi, total_h / dpi)
    if bar is not None:
        for axes, (x, y, w, h) in positions.items():
            axes.set_position([x / total_w, y / total_h, w / total_w, h / total_h])
    fig.figimage(picture.pixels, xo=_MARGIN, yo=bottom, origin="upper")
    if title_text is not None:
        title_text.set_position(((_MARGIN + width / 2) / total_w, (bottom + height + _GAP) / total_h))
    if caption_text is not None:
        caption_text.set_position((_MARGIN / total_w, (bottom - _GAP) / total_h))
    if path is not None:
        fig.savefig(path, dpi=dpi, facecolor="white")
    return fig
