"""test_scene.py - Scenes grown from arrays: they render in this process to
the bytes the program writes from their saved file; numbers read back to
the same doubles and lines stay short; repeated blocks act as the scene
format says; bad arrays are refused with one clear line."""
import re

import numpy as np
import pytest

import sciray
from conftest import program_output


def lit_scene(width=160, height=120):
    scene = sciray.Scene()
    scene.render(width=width, height=height, antialias=True, zenith=(0.2, 0.3, 0.8), horizon=(0.9, 0.9, 0.95),
                 atmosphere_len=0)
    scene.camera(viewpoint=(0.3, -7, 3.1), lookat=(0, 0, 0), up_vector_1=(0, 0, 1), extents=(4, 3))
    scene.light((5, -4, 9))
    scene.light((-3, -3, 2), (0.6, 0.5, 0.4), local=True, radius=0.2)
    return scene


def bumpy_sheet(n=24):
    """A wavy square: points, triangles, per-point values and normals."""
    u, v = np.meshgrid(np.linspace(-1.5, 1.5, n), np.linspace(-1.5, 1.5, n))
    height = 0.3 * np.sin(2 * u) * np.cos(3 * v)
    points = np.stack([u.ravel(), v.ravel(), height.ravel()], axis=1)
    corner = np.arange(n * n).reshape(n, n)[:-1, :-1].ravel()
    triangles = np.concatenate([np.stack([corner, corner + 1, corner + n + 1], 1),
                                np.stack([corner, corner + n + 1, corner + n], 1)])
    slope_u, slope_v = 0.6 * np.cos(2 * u) * np.cos(3 * v), -0.9 * np.sin(2 * u) * np.sin(3 * v)
    normals = np.stack([-slope_u.ravel(), -slope_v.ravel(), np.ones(n * n)], axis=1)
    return points, triangles, height.ravel(), normals


def grown_scene():
    scene = lit_scene()
    rng = np.random.default_rng(3)
    red, blue, grey = (scene.material(color=c, shininess=30) for c in [(0.8, 0.1, 0.1), (0.1, 0.2, 0.8), (0.6,) * 3])
    glass = scene.material(color=(0.9, 0.9, 1.0), refractive=(0.7, 0.7, 0.7), index_ref=1.5, index_ref_spread=0.05)
    scene.contour_table([-0.3, 0.0, 0.3], [blue, grey, red])
    points, triangles, values, normals = bumpy_sheet()
    scene.add_mesh(points - (0, 0, 0.8), triangles, values=values, normals=normals)
    scene.add_spheres(rng.normal(scale=0.7, size=(60, 3)) / 3 ** 0.5, rng.integers(0, 4, 60), radius=0.09)
    spiral = np.linspace(0, 6 * np.pi, 300)
    helix = np.stack([np.cos(spiral), np.sin(spiral), spiral / 10 - 0.9], axis=1)
    scene.add_lines(helix, values=helix[:, 2], radius=0.02)  # 300 points: three records
    scene.add_lines(rng.normal(size=(5, 2, 3)), [red, blue, grey, glass, red], radius=0.01)
    scene.add_spheres([[1e-17, -1 / 3, 2.5e8 / 1e8]], glass, radius=0.25)
    return scene


def test_grown_scene_renders_as_the_program_renders_its_file(tmp_path):
    scene = grown_scene()
    scene.save(tmp_path / "grown.ren")
    assert (tmp_path / "grown.ren").read_text() == scene.text()
    picture_bytes, stdout = program_output(tmp_path / "grown.ren", tmp_path, "-threads", "2")
    picture = sciray.render(scene, threads=2)
    picture.save(tmp_path / "in_process.rgb")
    assert (tmp_path / "in_process.rgb").read_bytes() == picture_bytes
    assert stdout == "Number of objects : %d\n\n" % picture.objects + picture.progress
    # 2 x 23 x 23 triangles, 60 + 1 balls, 299 + 5 segments.
    assert picture.objects == 2 * 23 * 23 + 61 + 299 + 5
    # Something of each colour is to be seen: the scene is not empty or black.
    assert len(np.unique(picture.pixels.reshape(-1, 3), axis=0)) > 1000


def test_numbers_read_back_exactly_and_lines_stay_short():
    scene = sciray.Scene()
    scene.material(color=(1, 1, 1))
    rng = np.random.default_rng(5)
    centres = rng.normal(size=(2000, 3)) * 10.0 ** rng.integers(-30, 30, (2000, 1))
    scene.add_spheres(centres)
    line = rng.uniform(-1e6, 1e6, (400, 3))
    scene.contour_table([0, 1], [0, 0])
    scene.add_lines(line, values=rng.uniform(size=400))
    text = scene.text()
    assert max(len(t) for t in text.splitlines()) < 511
    written = np.array([[float(x) for x in m] for m in re.findall(r"xyz (\S+) (\S+) (\S+) \}", text)])
    np.testing.assert_array_equal(written, centres)  # exactly: round-trip form
    # A long line is cut into records of at most 128 points sharing their ends.
    counts = [int(n) for n in re.findall(r"gr_lines_cont (\d+) \{", text)]
    assert counts == [128, 128, 128, 19] and sum(counts) - 3 == 400


def test_repeated_blocks_act_from_where_they_stand():
    def balls(radii):
        scene = lit_scene(64, 48)
        scene.material(color=(1, 0.5, 0))
        for x, radius in zip((-1, 1), radii):
            scene.add_spheres([[x, 0, 0]], radius=radius)
        return sciray.render(scene).pixels

    def lit_width(pixels, half):
        rows = pixels[:, :32] if half == "left" else pixels[:, 32:]
        return int((np.abs(rows.astype(int) - pixels[0, 0]).sum(axis=2) > 60).any(axis=0).sum())

    small_big, big_small = balls((0.2, 0.6)), balls((0.6, 0.2))
    # The radius set before a group holds for that group (and after it), not before.
    assert lit_width(small_big, "left") < lit_width(small_big, "right")
    assert lit_width(big_small, "left") > lit_width(big_small, "right")


def test_load_grow_and_from_text(tmp_path):
    demo = tmp_path / "demo.ren"
    demo.write_text("colormap_002 1 { index 0 { color 1 0 0 } }\nrender_002 { width 40 height 30 }")
    scene = sciray.Scene.load(demo)
    scene.add_spheres([[0, 0, 0]], 0, radius=1.0)  # the loaded colour map's entry 0
    assert scene.text().startswith(demo.read_text() + "\n")
    assert sciray.render(scene).objects == 1
    assert sciray.Scene.from_text(scene.text()).text() == scene.text()


BAD = [
    (lambda s: s.add_spheres(np.zeros((4, 2))), r"centres must be an \(n, 3\) array, not an array of shape \(4, 2\)"),
    (lambda s: s.add_spheres([[0, 0, np.nan]]), "centres has NaN or infinite coordinates"),
    (lambda s: s.add_spheres([["a", "b", "c"]]), "centres must hold numbers"),
    (lambda s: s.add_spheres([[0, 0, 0]], 5), "material 5 is not defined: the scene has 1"),
    (lambda s: s.add_spheres(np.zeros((3, 3)), [0, 0]), r"material must be an index or an array of 3 indices"),
    (lambda s: s.add_lines([[0, 0, 0]]), "at least 2 points"),
    (lambda s: s.add_lines(np.zeros((2, 3)), values=[1, 2]), "needs a contour table first"),
    (lambda s: s.add_mesh(np.zeros((3, 3)), [[0, 1, 3]]), "triangles refer to point 3, but there are 3 points"),
    (lambda s: s.add_mesh(np.zeros((3, 3)), [[0.0, 1.0, 2.0]]), "triangles must hold integers, not float64"),
    (lambda s: s.add_mesh(np.zeros((3, 3)), [[0, 1, 2]], normals=np.zeros((2, 3))), r"normals must be a \(3, 3\)"),
    (lambda s: s.add_mesh(np.zeros((3, 3)), [[0, 1, 2]], style="bands"), "a style is for a mesh with values"),
    (lambda s: s.contour_table([0, np.inf], [0, 0]), "levels has NaN or infinite values"),
    (lambda s: s.render(width=1.5), "width must be an integer"),
    (lambda s: s.camera(projection="fisheye"), "projection must be one of perspective, orthographic"),
    (lambda s: s.material(color=(1, 0)), "color must be 3 numbers"),
    (lambda s: s.light(np.array([1, 2, 3j])), "location must be a number"),
]


@pytest.mark.parametrize("call, message", BAD, ids=[m.split(" ")[0] + str(i) for i, (_, m) in enumerate(BAD)])
def test_bad_arrays_and_settings_are_refused_in_one_line(call, message):
    scene = sciray.Scene()
    scene.material(color=(1, 1, 1))
    before = scene.text()
    with pytest.raises(ValueError, match=message) as refused:
        call(scene)
    assert "\n" not in str(refused.value)
    assert scene.text() == before  # nothing half-added
