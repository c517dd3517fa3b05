"""test_render_like_the_program.py - render(path) gives the program's very
picture and output for every example and the medium benchmark scenes, at 1
and 2 threads and in band mode; the Picture's pixels are the file's, top
row first; repeated renders give the same bytes."""
import os

import numpy as np
import pytest

import sciray
from conftest import EXAMPLES, program_output
from sgi_picture import read_rgb

MODES = {"1 thread": ({"threads": 1}, ["-threads", "1"]),
         "2 threads": ({"threads": 2}, ["-threads", "2"]),
         "band 2 of 3": ({"band": (2, 3), "threads": 2}, ["-band", "2/3", "-threads", "2"])}


def check_same(scene, tmp_path, mode):
    keywords, arguments = MODES[mode]
    picture_bytes, stdout = program_output(scene, tmp_path, *arguments)
    picture = sciray.render(scene, **keywords)
    assert stdout == "Number of objects : %d\n\n" % picture.objects + picture.progress
    np.testing.assert_array_equal(picture.pixels, read_rgb(picture_bytes))
    picture.save(tmp_path / "saved.rgb")
    assert (tmp_path / "saved.rgb").read_bytes() == picture_bytes


@pytest.mark.parametrize("mode", MODES)
@pytest.mark.parametrize("example", EXAMPLES, ids=lambda p: os.path.basename(p)[:-4])
def test_examples(example, mode, tmp_path):
    check_same(example, tmp_path, mode)


@pytest.mark.parametrize("mode", MODES)
@pytest.mark.parametrize("family", ["balls", "sticks", "mesh"])
def test_medium_benchmark_scenes(bench_scenes, family, mode, tmp_path):
    check_same(bench_scenes[family], tmp_path, mode)


def test_a_second_render_and_an_empty_band(tmp_path):
    scene = os.path.join(os.path.dirname(EXAMPLES[0]), "molecule.ren")  # area lights: the random stream matters
    first, second = sciray.render(scene), sciray.render(scene)
    np.testing.assert_array_equal(first.pixels, second.pixels)
    assert first.progress == second.progress
    # More bands than rows: nothing rendered, as the program writes no file.
    tiny = tmp_path / "tiny.ren"
    tiny.write_text("render_002 { width 8 height 4 }\n")
    empty = sciray.render(tiny, band=(3, 5))
    assert empty.pixels.shape[0] == 0 and empty.progress == "" and empty._repr_png_() is None
    with pytest.raises(ValueError, match="empty"):
        empty.save(tmp_path / "empty.rgb")


def unfiltered(raw, width, height):
    """The rows of an 8-bit RGB PNG's image data with their filters undone."""
    rows, above, stride = [], [0] * (3 * width), 3 * width
    for y in range(height):
        kind, line = raw[y * (stride + 1)], list(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
        for i in range(stride):
            left = line[i - 3] if i >= 3 else 0
            up, corner = above[i], above[i - 3] if i >= 3 else 0
            estimate = left + up - corner
            paeth = min((abs(estimate - left), 0, left), (abs(estimate - up), 1, up),
                        (abs(estimate - corner), 2, corner))[2]
            line[i] = (line[i] + [0, left, up, (left + up) // 2, paeth][kind]) & 0xFF
        rows.append(line)
        above = line
    return np.array(rows, dtype=np.uint8).reshape(height, width, 3)


def test_png_holds_the_pixels(tmp_path):
    zlib = pytest.importorskip("zlib")
    scene = tmp_path / "small.ren"
    scene.write_text(open(EXAMPLES[0]).read() + "\nrender_002 { width 120 height 40 }\n")
    picture = sciray.render(scene)
    picture.save(tmp_path / "picture.png")
    png = (tmp_path / "picture.png").read_bytes()
    assert png == picture._repr_png_()
    chunks, at = [], 8
    while at < len(png):
        length = int.from_bytes(png[at:at + 4], "big")
        chunks.append((png[at + 4:at + 8], png[at + 8:at + 8 + length]))
        at += 12 + length
    header = dict(chunks)[b"IHDR"]
    assert (int.from_bytes(header[:4], "big"), int.from_bytes(header[4:8], "big")) == (120, 40)
    raw = zlib.decompress(b"".join(data for kind, data in chunks if kind == b"IDAT"))
    np.testing.assert_array_equal(unfiltered(raw, 120, 40), picture.pixels)


@pytest.mark.parametrize("threads, band, error", [(0, None, ValueError), ("2", None, TypeError),
                                                  (None, (3, 2), ValueError), (None, (0, 1), ValueError)])
def test_bad_arguments(threads, band, error):
    with pytest.raises(error):
        sciray.render(EXAMPLES[0], threads=threads, band=band)


def test_files_that_cannot_be_read(tmp_path):
    with pytest.raises(FileNotFoundError):
        sciray.render(tmp_path / "missing.ren")
    with pytest.raises(IsADirectoryError):
        sciray.render(tmp_path)
