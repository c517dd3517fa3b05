"""test_figure.py - sciray.figure: the rendered picture's pixels unchanged
(in PNG, and as the embedded image of SVG and PDF) beside a colour bar of
the scene's own colours, bands as blocks and continuous keys as a
gradient; the key travels from the Scene to the Picture; a figure without
a key holds the picture alone."""
import base64
import io
import re
import struct
import zlib

import meshio
import numpy as np
import pytest
from PIL import Image

import sciray
from conftest import picture_at

pytest.importorskip("matplotlib")


@pytest.fixture(scope="module")
def plate():
    x, y = np.meshgrid(np.linspace(0, 1, 9), np.linspace(0, 1, 9))
    points = np.stack([x.ravel(), y.ravel(), np.zeros(x.size)], axis=1)
    corner = np.arange(81).reshape(9, 9)[:-1, :-1].ravel()
    quads = np.stack([corner, corner + 1, corner + 10, corner + 9], axis=1)
    return meshio.Mesh(points, [("quad", quads)], point_data={"T": 300 + 50 * points[:, 0]})


def _runs(column):
    """The colours of a column of pixels from the bottom up, each run of
    three or more equal pixels once."""
    runs, start = [], len(column) - 1
    for y in range(len(column) - 2, -2, -1):
        if y < 0 or not np.array_equal(column[y], column[start]):
            if start - y >= 3:
                runs.append(tuple(int(c) for c in column[start]))
            start = y
    return runs


def _pdf_string(data, start):
    """The bytes of a PDF literal string whose text starts at `start`."""
    out, k = bytearray(), start
    while data[k:k + 1] != b")":
        if data[k:k + 1] == b"\\":
            k += 1
            out += {b"n": b"\n", b"r": b"\r"}.get(data[k:k + 1], data[k:k + 1])
        else:
            out += data[k:k + 1]
        k += 1
    return bytes(out)


def _pdf_images(data):
    """The images of a PDF as matplotlib writes them (rows with PNG filters,
    Flate-compressed; RGB, or indexed with a palette), decoded by wrapping
    each image's rows as a PNG."""
    def chunk(kind, body):
        return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))

    found = []
    for match in re.finditer(rb"/Subtype /Image /Width (\d+) /Height (\d+)(.*?)stream\r?\n", data, re.S):
        width, height, head = int(match.group(1)), int(match.group(2)), match.group(3)
        rows = zlib.decompressobj().decompress(data[match.end():])
        indexed = re.search(rb"/Indexed /DeviceRGB \d+\s*\(", head)
        bits = int(re.search(rb"/BitsPerComponent (\d+)", head).group(1))
        palette = chunk(b"PLTE", _pdf_string(head, indexed.end())) if indexed else b""
        png = (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, bits, 3 if indexed else 2,
                                                                 0, 0, 0))
               + palette + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))
        found.append(np.asarray(Image.open(io.BytesIO(png)).convert("RGB")))
    return found


def test_the_pictures_pixels_beside_a_bar_of_the_scenes_colours(plate, tmp_path):
    scene = sciray.from_mesh(plate, style="bands", bands=5, units="K", size=(160, 120))
    picture = sciray.render(scene)
    assert picture.colour_key is scene.colour_key
    colours = [tuple(int(round(255 * c)) for c in rgb) for rgb in scene.colour_key.colours]
    sciray.figure(picture, title="A plate", caption="Temperature across a plate. " * 5, path=tmp_path / "f.png")
    figure = np.asarray(Image.open(tmp_path / "f.png").convert("RGB"))
    top, left = picture_at(figure, picture.pixels)
    # Right of the picture, a column runs through the band colours, bottom to top, as blocks.
    bar = [[run for run in _runs(figure[top:top + picture.height, x]) if run != (255, 255, 255)]
           for x in range(left + picture.width, figure.shape[1])]
    assert any(len(runs) == 5 and all(np.abs(np.subtract(a, b)).max() <= 1 for a, b in zip(runs, colours))
               for runs in bar)
    # Title above, caption below: the figure is taller than the picture and the bar.
    assert top > 10 and figure.shape[0] - top - picture.height > 20
    assert scene.colour_key.label == "T [K]"

    # In SVG and PDF the picture is an image of its own, pixel for pixel.
    sciray.figure(picture, path=tmp_path / "f.svg")
    svg = (tmp_path / "f.svg").read_text()
    images = []
    for tag in re.findall(r"<image[^>]*>", svg):
        data = np.asarray(Image.open(io.BytesIO(base64.b64decode(re.search(r"base64,([^\"]+)", tag)
                                                                 .group(1).replace("\n", "")))).convert("RGB"))
        images.append(data[::-1] if "scale(1 -1)" in tag else data)
    assert any(np.array_equal(image, picture.pixels) for image in images)
    sciray.figure(picture, path=tmp_path / "f.pdf")
    # matplotlib stores it bottom row first, drawn turned over.
    assert any(np.array_equal(image[::-1], picture.pixels) for image in _pdf_images((tmp_path / "f.pdf").read_bytes()))


def test_a_continuous_key_is_the_scenes_own_blend(plate, tmp_path):
    scene = sciray.from_mesh(plate, bands=4, contour_lines=3, size=(120, 200))
    key = scene.colour_key
    picture = sciray.render(scene)
    sciray.figure(picture, path=tmp_path / "f.png")
    figure = np.asarray(Image.open(tmp_path / "f.png").convert("RGB")).astype(int)
    top, left = picture_at(figure, picture.pixels)
    beside = figure[top:top + picture.height, left + picture.width:]
    # The bar: the columns coloured the furthest up and down; its middle one,
    # inside the frame, from the top down.
    coloured = (beside < 250).any(axis=2).sum(axis=0)
    bar = np.flatnonzero(coloured >= 0.95 * coloured.max())
    column = beside[:, bar[len(bar) // 2]]
    drawn = column[(column < 250).any(axis=1)][3:-3]
    np.testing.assert_allclose(drawn[-1], np.round(255 * key.colours[0]), atol=1)
    np.testing.assert_allclose(drawn[0], np.round(255 * key.colours[-1]), atol=1)
    # Between, the colours the scene blends (but where a contour line crosses).
    blend = 255 * key.colour_at(np.linspace(key.edges[0], key.edges[-1], 2000))
    off = np.abs(drawn[:, None, :] - blend[None, :, :]).max(axis=2).min(axis=1)
    assert np.mean(off <= 1.5) > 0.9
    assert len(key.lines) == 3 and key.line_colour is not None


def test_points_without_a_value_have_their_swatch(plate, tmp_path):
    mesh = meshio.Mesh(plate.points, plate.cells)
    mesh.point_data["T"] = np.where(np.arange(len(plate.points)) == 40, np.nan, plate.point_data["T"])
    with pytest.warns(UserWarning, match="no value"):
        scene = sciray.from_mesh(mesh, nan_color="#ff00ff", style="lines", size=(120, 90))
    key = scene.colour_key
    assert (key.missing, key.missing_colour, key.line_colour) == (1, (1.0, 0.0, 1.0), None)
    sciray.figure(sciray.render(scene), path=tmp_path / "f.png")
    figure = np.asarray(Image.open(tmp_path / "f.png").convert("RGB"))
    top, left = picture_at(figure, sciray.render(scene).pixels)
    beside = figure[:, left + 120:]
    assert (beside == (255, 0, 255)).all(axis=2).sum() > 100
    # The lines style: the band colours as lines on a plain bar.
    for rgb in np.round(255 * key.colour_at(key.lines)).astype(int):
        assert (np.abs(beside.astype(int) - rgb).max(axis=2) <= 1).any()


def test_without_a_key_the_figure_holds_the_picture_alone(tmp_path):
    scene = sciray.Scene()
    scene.render(width=64, height=48)
    scene.light((1, 1, 1))
    scene.add_spheres([[0, 0, 0]], scene.material(color=(1, 0, 0)), radius=1)
    picture = sciray.render(scene)
    assert picture.colour_key is None
    figure = sciray.figure(picture, path=tmp_path / "alone.png")
    written = np.asarray(Image.open(tmp_path / "alone.png").convert("RGB"))
    assert picture_at(written, picture.pixels) is not None
    assert written.shape[1] < picture.width + 40 and len(figure.axes) == 1


@pytest.mark.parametrize("edges, colours, style, word", [
    ((0, 1), [[0, 0, 0]], "bands", "at least 2 bands"), ((0, 1, 2), [[0, 0, 0]], "bands", "one colour per band"),
    ((0, 2, 1), [[0, 0, 0], [1, 1, 1]], "bands", "increase"), ((0, 1, 2), [[0, 0, 0], [1, 1, 1]], "dots", "style")])
def test_a_colour_key_is_checked(edges, colours, style, word):
    with pytest.raises(ValueError, match=word):
        sciray.ColourKey("T", None, edges, colours, style)


def test_a_figure_is_written_whole_or_not_at_all(plate, tmp_path, monkeypatch):
    from matplotlib.figure import Figure

    picture = sciray.render(sciray.from_mesh(plate, size=(64, 48)))
    with pytest.raises(ValueError, match="name it .png, .pdf or .svg"):
        sciray.figure(picture, path=tmp_path / "figure")
    earlier = tmp_path / "f.pdf"
    earlier.write_bytes(b"an earlier figure")

    def broken(self, out, **settings):
        out.write(b"%PDF- half a figure")
        raise OSError(28, "No space left on device")

    monkeypatch.setattr(Figure, "savefig", broken)
    with pytest.raises(OSError, match="No space"):
        sciray.figure(picture, path=earlier)
    assert earlier.read_bytes() == b"an earlier figure"
    assert sorted(p.name for p in tmp_path.iterdir()) == ["f.pdf"]
