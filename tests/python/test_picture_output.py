"""test_picture_output.py - render(mark=False) is the program's -nomark
picture, which differs from the marked one only in the mark's corner; the
program's PNG output is the very PNG that Picture.save writes."""
import inspect
import os
import subprocess
import sys

import numpy as np
import pytest

import sciray
from conftest import EXAMPLES, program_output, run_sciray
from sgi_picture import read_rgb

DEMO = next(e for e in EXAMPLES if os.path.basename(e) == "demo.ren")


def test_render_keeps_its_names_and_adds_mark():
    parameters = inspect.signature(sciray.render).parameters
    assert list(parameters) == ["scene", "threads", "band", "mark"]
    assert parameters["mark"].default is True


def test_without_the_mark_only_the_corner_changes(tmp_path):
    marked = sciray.render(DEMO, threads=2)
    clean = sciray.render(DEMO, threads=2, mark=False)
    assert marked.mark and not clean.mark
    assert clean.progress == marked.progress
    picture_bytes, _ = program_output(DEMO, tmp_path, "-nomark")
    np.testing.assert_array_equal(clean.pixels, read_rgb(picture_bytes))
    # demo is 320 x 240: the mark is 26 x 9 pixels, 4 from the top and right.
    rows, columns = np.nonzero((clean.pixels != marked.pixels).any(axis=2))
    assert (rows.min(), rows.max(), columns.min(), columns.max()) == (4, 12, 290, 315)

    top = sciray.render(DEMO, band=(3, 3), mark=False)
    np.testing.assert_array_equal(top.pixels, clean.pixels[:80])


def test_the_programs_png_is_the_pictures_png(tmp_path):
    program_png = tmp_path / "program.png"
    result = run_sciray(DEMO, program_png, "-band", "2/3")
    assert result.returncode == 0, result.stderr
    saved = tmp_path / "saved.png"
    sciray.render(DEMO, band=(2, 3)).save(saved)
    assert program_png.read_bytes() == saved.read_bytes()


# Saves a small picture over `path` in a process whose files may grow to 600
# bytes: the picture's own file would grow past that.
SAVE_UNDER_A_SIZE_LIMIT = """
import resource, signal, sys
import numpy as np
import sciray
signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
resource.setrlimit(resource.RLIMIT_FSIZE, (600, 600))
pixels = np.random.default_rng(7).integers(0, 256, (64, 64, 3), dtype=np.uint8)
try:
    sciray.Picture(pixels).save(sys.argv[1])
except OSError as error:
    print(type(error).__name__)
"""


def test_a_failed_save_leaves_the_earlier_file_as_it_was(tmp_path):
    for name in ("picture.png", "picture.rgb"):
        earlier = tmp_path / name
        earlier.write_bytes(b"an earlier picture")
        result = subprocess.run([sys.executable, "-c", SAVE_UNDER_A_SIZE_LIMIT, str(earlier)],
                                capture_output=True, text=True, timeout=60)
        assert result.stdout.strip() == "OSError", result.stderr
        assert earlier.read_bytes() == b"an earlier picture"
        assert sorted(p.name for p in tmp_path.iterdir()) == sorted(
            n for n in ("picture.png", "picture.rgb") if (tmp_path / n).exists())

    with pytest.raises(FileNotFoundError):
        sciray.render(DEMO, band=(3, 3)).save(tmp_path / "no such folder" / "picture.png")
