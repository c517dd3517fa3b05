"""import_test_support.py - what the tests of sciray-import share: running the
importer (the environment's sciray-import) and rendering in this process,
reading scene records, and small meshes built with numpy."""
import os
import re
import shutil
import subprocess
import sysconfig
import tempfile

import numpy as np

import sciray

SCIRAY_IMPORT = os.path.join(sysconfig.get_path("scripts"), "sciray-import")


def scratch_dir(test):
    """An empty directory for one test's files, under the build tree; what
    the last run left there stays until the test runs again."""
    parent = os.environ.get("SCIRAY_TEST_OUTPUT_DIR", os.path.join(tempfile.gettempdir(), "sciray_import_tests"))
    folder = os.path.join(parent, test.id().rsplit(".", 1)[-1])
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    return folder


def run(*command, **settings):
    return subprocess.run([str(c) for c in command], capture_output=True, text=True, timeout=120, **settings)


def run_import(*args, **settings):
    return run(SCIRAY_IMPORT, *args, **settings)


def imported(test, mesh_file, *args):
    """Imports and returns the scene's text; fails the test when the importer does."""
    scene = os.path.splitext(mesh_file)[0] + ".ren"
    result = run_import(mesh_file, scene, *args)
    test.assertEqual(result.returncode, 0, result.stderr)
    with open(scene) as f:
        return f.read()


def render(test, scene_text, folder, name="picture"):
    """Renders the scene; returns its object count and its picture as a
    (height, width, 3) array, top row first."""
    with open(os.path.join(folder, name + ".ren"), "w") as f:
        f.write(scene_text)
    picture = sciray.render(sciray.Scene.from_text(scene_text))
    return picture.objects, picture.pixels.astype(int)


def small(scene_text, width=64, height=48):
    """The scene at a small picture size: a later render block changes only what it names."""
    return scene_text + "render_002 { width %d height %d }\n" % (width, height)


def flat_lit(scene_text):
    """The scene with its lights off and white ambient light: with no
    highlight or reflection either, every surface shows exactly the colour
    of its colour-map entry (times 255, truncated)."""
    text = scene_text.replace("on true", "on false")
    return re.sub(r"(lighting_001 0 \{\s*ambient) [^\n]*", r"\1 1 1 1", text, count=1)


def colour_entries(scene_text):
    """The colour of each colour-map entry, as 0..255 pixel values."""
    found = re.findall(r"index (\d+) \{ color (\S+) (\S+) (\S+)", scene_text)
    return {int(i): np.array([int(float(c) * 255) for c in rgb]) for i, *rgb in found}


def records(scene_text, kind):
    """The records of one kind, each a dict of its numbers by keyword."""
    found = []
    for body in re.findall(r"\b%s\b(?: \d+)? \{([^{}]*)\}" % kind, scene_text):
        fields, key = {}, None
        for token in body.split():
            if re.fullmatch(r"[a-z_]+", token):
                key = token
                fields[key] = []
            elif key is not None:
                fields[key].append(float(token))
        found.append({k: np.array(v) for k, v in fields.items()})
    return found


def plate(cells_across):
    """The unit square at z = 0 in triangles: points (n+1)^2, row by row in y."""
    n = cells_across
    x, y = np.meshgrid(np.linspace(0, 1, n + 1), np.linspace(0, 1, n + 1))
    points = np.stack([x.ravel(), y.ravel(), np.zeros(x.size)], axis=1)
    corner = np.arange((n + 1) ** 2).reshape(n + 1, n + 1)[:-1, :-1].ravel()
    quads = np.stack([corner, corner + 1, corner + n + 2, corner + n + 1], axis=1)
    return points, np.concatenate([quads[:, [0, 1, 2]], quads[:, [0, 2, 3]]])


def sphere(rings, around):
    """A closed unit sphere: two poles, `rings` - 1 rings of points between
    them, triangles at the poles and quadrilaterals between rings."""
    polar = np.linspace(0, np.pi, rings + 1)[1:-1]
    turn = np.linspace(0, 2 * np.pi, around, endpoint=False)
    p, t = np.meshgrid(polar, turn, indexing="ij")
    ring_points = np.stack([np.sin(p) * np.cos(t), np.sin(p) * np.sin(t), np.cos(p)], axis=-1).reshape(-1, 3)
    points = np.concatenate([[[0, 0, 1]], ring_points, [[0, 0, -1]]])
    index = 1 + np.arange(len(ring_points)).reshape(rings - 1, around)
    step = np.roll(index, -1, axis=1)
    bottom = len(points) - 1
    triangles = np.concatenate([np.stack([np.zeros(around, int), index[0], step[0]], axis=1),
                                np.stack([np.full(around, bottom), step[-1], index[-1]], axis=1)])
    quads = np.stack([index[:-1], index[1:], step[1:], step[:-1]], axis=-1).reshape(-1, 4)
    return points, triangles, quads


def latitude_longitude_sphere(rings=16, around=32):
    """A unit sphere as a grid of quadrilaterals over latitude and longitude,
    as many programs write one: the first and last rows of points all lie at
    a pole (so the quadrilaterals there have no area on one side) and the
    last column repeats the first (the seam)."""
    polar, turn = np.meshgrid(np.linspace(0, np.pi, rings + 1), np.linspace(0, 2 * np.pi, around + 1), indexing="ij")
    points = np.stack([np.sin(polar) * np.cos(turn), np.sin(polar) * np.sin(turn), np.cos(polar)], axis=-1)
    index = np.arange(points.shape[0] * points.shape[1]).reshape(points.shape[:2])
    quads = np.stack([index[:-1, :-1], index[1:, :-1], index[1:, 1:], index[:-1, 1:]], axis=-1).reshape(-1, 4)
    return points.reshape(-1, 3), quads


def _numbers_after(scene_text, keyword, count):
    """The numbers after the last `keyword` of the scene."""
    return np.array([float(v) for v in re.findall(r"\b%s((?:\s+\S+){%d})" % (keyword, count), scene_text)[-1].split()])


def pixel_rays(scene_text):
    """(origins, directions) of the rays through the pixel centres, (height,
    width, 3) each, top row first, made as the renderer makes them from the
    scene's last viewing and render blocks (without a roll angle)."""
    width, height = (int(_numbers_after(scene_text, k, 1)[0]) for k in ("width", "height"))
    eye, lookat = _numbers_after(scene_text, "viewpoint", 3), _numbers_after(scene_text, "lookat", 3)
    up = _numbers_after(scene_text, "up_vector_1", 3)
    extent_x, extent_y = _numbers_after(scene_text, "extents", 2)
    if extent_y / extent_x > height / width:
        extent_x = extent_y / (height / width)
    else:
        extent_y = height / width * extent_x
    view = (lookat - eye) / np.linalg.norm(lookat - eye)
    right = np.cross(view, up) / np.linalg.norm(np.cross(view, up))
    true_up = np.cross(right, view)
    sx = (np.arange(width) + 0.5) * extent_x / width - extent_x / 2
    sy = ((np.arange(height) + 0.5) * extent_y / height - extent_y / 2)[::-1]
    screen = sx[None, :, None] * right + sy[:, None, None] * true_up
    if "projection orthographic" in scene_text:
        return eye + screen, np.broadcast_to(view, screen.shape)
    through = np.linalg.norm(lookat - eye) * view + screen
    return np.broadcast_to(eye, screen.shape), through / np.linalg.norm(through, axis=2)[:, :, None]


def eroded(mask):
    """The mask without its pixels next to one outside it: pixels whose
    every sample (anti-aliasing samples reach half a pixel out) lies inside."""
    padded = np.pad(mask, 1)
    rows, columns = mask.shape
    return np.logical_and.reduce([padded[1 + dy:1 + dy + rows, 1 + dx:1 + dx + columns]
                                  for dy in (-1, 0, 1) for dx in (-1, 0, 1)])
