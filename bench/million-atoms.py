#!/usr/bin/env python3
"""million-atoms.py - times a copper crystal of a million atoms (63 x 63 x 63
cubic cells, built with ASE) becoming a space-filling scene at 1920 x 1440:
in process (sciray.from_molecule on the Atoms, then Scene.save), and the
program sciray-molecule on the crystal saved as a GRO file, in turns; then
the sciray program rendering the scene, on every processor.

    build/venv/bin/python bench/million-atoms.py [--turns T] [--repeat N] [--no-render]

Run it with the Python the package is installed in (with its molecules
extra); the programs are those beside that Python. Times of the programs
come from /usr/bin/time."""
import argparse
import os
import statistics
import subprocess
import sysconfig
import tempfile
import time

import ase.build

import sciray
from sciray.molecule_import import reading


def timed(command):
    """Seconds and peak memory (kB) of a program, from /usr/bin/time."""
    result = subprocess.run(["/usr/bin/time", "-f", "%e %M", *command], capture_output=True, text=True, check=True)
    seconds, peak = result.stderr.split()[-2:]
    return float(seconds), int(peak)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--turns", type=int, default=3)
    parser.add_argument("--repeat", type=int, default=63, help="cubic cells along each side (default 63)")
    parser.add_argument("--no-render", action="store_true", help="leave out the render")
    chosen = parser.parse_args()
    scripts = sysconfig.get_path("scripts")
    crystal = ase.build.bulk("Cu", "fcc", a=3.61, cubic=True).repeat((chosen.repeat,) * 3)
    print("%d atoms" % len(crystal))
    with tempfile.TemporaryDirectory() as folder:
        structure, scene_file = os.path.join(folder, "copper.gro"), os.path.join(folder, "copper.ren")
        with reading.quiet():  # MDAnalysis writes GRO files of a million atoms (numbers wrapped), ASE does not
            reading.from_ase([crystal], "copper").universe.atoms.write(structure)
        in_process, program = [], []
        for _ in range(chosen.turns):
            start = time.perf_counter()
            sciray.from_molecule(crystal, style="spacefill", size=(1920, 1440)).save(scene_file)
            in_process.append(time.perf_counter() - start)
            program.append(timed([os.path.join(scripts, "sciray-molecule"), structure, scene_file,
                                  "--style", "spacefill", "--size", "1920x1440"]))
        print("in process, Atoms to saved scene: median %.2f s (%s)" % (
            statistics.median(in_process), ", ".join("%.2f" % s for s in in_process)))
        print("sciray-molecule on the GRO file: median %.2f s (%s), peak %d MB" % (
            statistics.median(s for s, _ in program), ", ".join("%.2f" % s for s, _ in program),
            max(p for _, p in program) // 1024))
        print("scene file: %d MB" % (os.path.getsize(scene_file) // 1000000))
        if not chosen.no_render:
            seconds, peak = timed([os.path.join(scripts, "sciray"), scene_file, os.path.join(folder, "copper.rgb")])
            print("sciray rendering it at 1920 x 1440 on %d processors: %.1f s, peak %d MB" % (
                os.cpu_count(), seconds, peak // 1024))


if __name__ == "__main__":
    main()
