"""molecule_support.py - what the tests of the molecule importer share:
reading a scene's materials, balls, lines and camera back from its text
(with the radius in force for each), running sciray-molecule, and small
structures built with ASE."""
import os
import re
import subprocess
import sysconfig

import numpy as np

SCIRAY_MOLECULE = os.path.join(sysconfig.get_path("scripts"), "sciray-molecule")
_BLOCK = re.compile(r"^(render_002|viewing_001|colormap_002|contour_table_001|gr_geometry_001|lighting_001)\b",
                    re.M)


class drawn:
    """A scene's text read back: `colours` (entry -> rgb), `balls` (centres,
    entries, radii), `lines` (ends, entries, radii, values), `camera` (the
    viewing blocks' text) and `levels` (the contour table's (entry, level)
    pairs)."""

    def __init__(self, text):
        self.text, self.colours, self.camera, self.levels = text, {}, [], []
        balls, lines, symbol_radius, line_radius = [], [], 0.03, 0.01
        starts = [m.start() for m in _BLOCK.finditer(text)] + [len(text)]
        for start, end in zip(starts, starts[1:]):
            block = text[start:end]
            if block.startswith("render_002"):
                symbol_radius = _number(block, "symbol_radius", symbol_radius)
                line_radius = _number(block, "line_radius", line_radius)
            elif block.startswith("viewing_001"):
                self.camera.append(block)
            elif block.startswith("colormap_002"):
                self.colours = {int(i): np.array(rgb, dtype=float) for i, *rgb in
                                re.findall(r"index (\d+) \{ color (\S+) (\S+) (\S+)", block)}
            elif block.startswith("contour_table_001"):
                self.levels = [(int(i), float(v)) for i, v in re.findall(r"^ (\d+) (\S+)$", block, re.M)]
            elif block.startswith("gr_geometry_001"):
                for index, x, y, z in re.findall(r"gr_symbol \{ index (\d+) type gr_disk xyz (\S+) (\S+) (\S+) \}",
                                                 block):
                    balls.append((int(index), float(x), float(y), float(z), symbol_radius))
                for body in re.findall(r"gr_lines(?:_cont)? 2 \{([^}]*)\}", block):
                    index = int(re.search(r"index (\d+)", body).group(1))
                    ends = [float(v) for v in body.split("xyz")[1].split("values")[0].split()]
                    values = [float(v) for v in body.split("values")[1].split()] if "values" in body else [0, 0]
                    lines.append((index, *ends, line_radius, *values))
        balls, lines = np.array(balls).reshape(-1, 5), np.array(lines).reshape(-1, 10)
        self.ball_entries, self.centres, self.ball_radii = balls[:, 0].astype(int), balls[:, 1:4], balls[:, 4]
        self.line_entries, self.line_ends = lines[:, 0].astype(int), lines[:, 1:7].reshape(-1, 2, 3)
        self.line_radii, self.line_values = lines[:, 7], lines[:, 8:10]

    def ball_colours(self):
        return np.array([self.colours[i] for i in self.ball_entries])


def _number(block, keyword, current):
    found = re.search(r"\b%s (\S+)" % keyword, block)
    return float(found.group(1)) if found else current


def matching(centres, positions):
    """For each position, the index of the ball centred there (to 1e-3)."""
    order = [int(np.argmin(np.linalg.norm(centres - p, axis=1))) for p in positions]
    assert np.allclose(centres[order], positions, atol=1e-3)
    return np.array(order)


def run_molecule(*args):
    return subprocess.run([SCIRAY_MOLECULE, *map(str, args)], capture_output=True, text=True, timeout=300)
