"""test_scene_errors.py - every fatal message the program can print comes
back from render() as a SceneError with the same text: a failing scene for
each message listed in the scene file reference, rendered in this process
and by the program; and a failed render leaves nothing behind."""
import os
import re

import pytest

import sciray
from conftest import SOURCE, run_sciray

COLOURS = "colormap_002 1 { index 0 { color 1 0 0 } }\n"
RENDER = ["width", "height", "zenith", "horizon", "ground", "cloud_inner", "cloud_outer", "cloud_inner_frac",
          "cloud_outer_frac", "cloud_scale", "cloud_offset", "cloud_depth", "cloud_sharpness", "atmosphere",
          "atmosphere_len", "atmosphere_ior", "highlights", "shadows", "depth", "pixel_size", "antialias",
          "antialias_tol", "antialias_depth", "line_radius", "symbol_radius"]
VIEWING = ["up_vector_1", "up_vector_2", "lookat", "viewpoint", "roll_angle", "extents", "front_dist", "back_dist",
           "projection", "transformations"]
LIGHT = ["on", "selected", "local", "location", "color", "ambient", "radius", "spotlight", "spotlight_direction",
         "spotlight_angles"]
MATERIAL = ["color", "gray", "diffuse", "ambient", "specular", "reflective", "refractive", "attenuation",
            "emission", "atten_len", "shininess", "rough_scale", "rough_amplitude", "rough_depth", "index_ref",
            "index_ref_spread"]
RECORDS = {"gr_lines": ["index", "xyz"], "gr_lines_cont": ["index", "style", "xyz", "values"],
           "gr_poly_fill": ["index", "xyz", "norm"], "gr_poly_fill_cont": ["index", "style", "xyz", "norm", "values"],
           "gr_symbol": ["index", "type", "xyz"]}


def failing_scenes():
    """Scenes that each stop on one error."""
    scenes = ["Render_002 { }", "render_002 {width 4 }", "render_002 { Width 4 }", "render_002 { width 70000 }",
              "render_002 { height 70000 }", "render_001 { depth x }", "viewing_001 x", "viewing_001 { up }",
              "viewing_001 { viewpoint 1 2 3 lookat 1 2 3 }",
              "viewing_001 { viewpoint 0 0 5 lookat 0 0 0 up_vector_1 0 0 1 up_vector_2 0 0 -1 }",
              "lighting_001 x", "lighting_001 1 x", "lighting_001 1 { shadows }", "lighting_001 1 { ambient 1 x }",
              "lighting_001 1 { attenuation yes }", "lighting_001 1 { attenuation_factors 1 0 x }",
              "lighting_001 1 { light x }", "lighting_001 1 { light 0 x }", "lighting_001 1 { light 0 { off } }",
              "colormap_002 x", "colormap_002 0 { }", "colormap_002 1 x", "colormap_002 1 { colour }",
              "colormap_002 1 { index x }", "colormap_002 1 { index 1 { } }", "colormap_002 1 { index 0 x }",
              "colormap_002 1 { index 0 { colour 1 1 1 } }", "contour_table_001 x", "contour_table_001 1 { }",
              COLOURS + "contour_table_001 2 x", COLOURS + "contour_table_001 2 { x",
              COLOURS + "contour_table_001 2 { 3 0 }", COLOURS + "contour_table_001 2 { 0 x",
              COLOURS + "contour_table_001 2 { 0 0 0 1 0 2 }", "gr_geometry_001 x", "gr_geometry_001 { gr_dots }",
              "gr_geometry_001 { gr_symbol 1 { } }"]
    scenes += ["render_002 { %s x }" % k for k in RENDER]
    scenes += ["viewing_001 { %s x }" % k for k in VIEWING] + ["viewing_001 { extents 1 x }"]
    scenes += ["lighting_001 1 { light 0 { %s x } }" % k for k in LIGHT]
    scenes += ["colormap_002 1 { index 0 { %s x } }" % k for k in MATERIAL]
    for record, keywords in RECORDS.items():
        count = "" if record == "gr_symbol" else "2 "
        scenes += ["gr_geometry_001 { %s %s{ %s x } }" % (record, count, k) for k in keywords]
        scenes.append("gr_geometry_001 { %s %s{ shape } }" % (record, count))
        if count:
            scenes += ["gr_geometry_001 { %s x" % record, "gr_geometry_001 { %s 200 {" % record,
                       "gr_geometry_001 { %s 2 x" % record]
    return scenes


def message_patterns():
    """The messages of the reference's list that a scene can cause, as
    patterns. (The others are about the command line and the output file,
    which render() does not have, or are FileNotFoundError and MemoryError
    in Python.)"""
    with open(os.path.join(SOURCE, "docs", "scene-format.md")) as f:
        listed = f.read().split("\n## Messages\n", 1)[1].split("\n## ", 1)[0]
    patterns = []
    for bullet in re.findall(r"^- (.*(?:\n  .*)*)", listed, re.M):
        templates = re.findall(r"`(Error[^`]*|PROGRAM: (?:lookat|up_vector)[^`]*|\.\.\. [^`]*)`", bullet)
        if not templates:
            continue
        head = templates[0].replace("PROGRAM", "sciray")
        for template in templates:
            if template.startswith("... "):  # "`... view height`" after "`... view width`"
                words = template[4:].split()
                template = " ".join(head.split()[:-len(words)] + words)
            pattern = re.escape(template.replace("PROGRAM", "sciray"))
            for word, meaning in (("TOKEN", "[^']*"), ("N", "-?[0-9]+"), ("KEYWORD", "[a-z_]+"), ("RECORD", "gr_[a-z_]+")):
                pattern = re.sub(r"\b%s\b" % word, meaning.replace("\\", "\\\\"), pattern)
            patterns.append(pattern)
    return patterns


@pytest.fixture(scope="module")
def messages(tmp_path_factory):
    """(scene text, program's message, SceneError's message) for every failing scene."""
    folder = tmp_path_factory.mktemp("failing")
    found = []
    for number, text in enumerate(failing_scenes()):
        scene = folder / ("%d.ren" % number)
        scene.write_text(text + "\n")
        result = run_sciray(scene, folder / "never.rgb")
        assert result.returncode == 1 and not (folder / "never.rgb").exists(), text
        with pytest.raises(sciray.SceneError) as raised:
            sciray.render(scene, threads=1)
        found.append((text, result.stderr.decode(), str(raised.value)))
    return found


def test_scene_errors_carry_the_programs_line(messages):
    for text, printed, raised in messages:
        assert printed == raised + "\n", text


def test_every_listed_message_is_among_them(messages):
    raised = [m for _, _, m in messages]
    missing = [p for p in message_patterns() if not any(re.fullmatch(p, m) for m in raised)]
    assert len(message_patterns()) > 60 and not missing


def test_scene_errors_from_a_grown_scene_and_after_an_error():
    scene = sciray.Scene()
    scene.camera(viewpoint=(0, 0, 1), lookat=(0, 0, 1))
    with pytest.raises(sciray.SceneError, match="^sciray: lookat and viewpoint are the same$"):
        sciray.render(scene)
    assert isinstance(sciray.SceneError("x"), ValueError)
    # A failure leaves no state behind: the next render is as a first one.
    first = sciray.render(os.path.join(SOURCE, "examples", "molecule.ren"))
    with pytest.raises(sciray.SceneError):
        sciray.render(sciray.Scene.from_text("render_002 { width x }"))
    again = sciray.render(os.path.join(SOURCE, "examples", "molecule.ren"))
    assert (first.pixels == again.pixels).all() and first.progress == again.progress
