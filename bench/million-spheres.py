#!/usr/bin/env python3
"""million-spheres.py - times a million spheres from a numpy array to a
finished picture in this process (Scene, add_spheres, render) against the
sciray program on the same scene saved as a file, in turns (A B A B ...),
and the memory each holds while rendering.

    build/venv/bin/python bench/million-spheres.py [--count N] [--turns T] [--threads N]

Run it with the Python the package is installed in; the program is the
sciray beside that Python (its scripts directory). The program's time and
peak memory are measured by /usr/bin/time; the in-process peak is the
process's peak resident memory during render() (reset just before it),
compared with the program's peak plus the picture."""
import argparse
import os
import statistics
import subprocess
import sysconfig
import tempfile
import time

import numpy as np

import sciray


def make_scene(centres):
    scene = sciray.Scene()
    scene.render(width=640, height=480, atmosphere_len=0, zenith=(0.2, 0.3, 0.6), horizon=(0.9, 0.9, 0.9))
    scene.camera(viewpoint=(0.5, -3.2, 1.6), lookat=(0, 0, 0), up_vector_1=(0, 0, 1), extents=(1.6, 1.2))
    scene.light((3, -4, 6))
    orange = scene.material(color=(0.95, 0.55, 0.2), shininess=30)
    scene.add_spheres(centres, orange, radius=0.004)
    return scene


def kilobytes(field):
    with open("/proc/self/status") as f:
        return next(int(line.split()[1]) for line in f if line.startswith(field + ":"))


def in_process(centres, threads):
    """Seconds from the array to the picture, and the peak memory (kB) added while rendering."""
    start = time.perf_counter()
    scene = make_scene(centres)
    with open("/proc/self/clear_refs", "w") as f:
        f.write("5")  # the peak starts again from here
    before = kilobytes("VmRSS")
    picture = sciray.render(scene, threads=threads)
    seconds = time.perf_counter() - start
    return seconds, kilobytes("VmHWM") - before, picture


def program(scene_file, picture_file, threads):
    """Seconds and peak memory (kB) of the program, from /usr/bin/time."""
    sciray_program = os.path.join(sysconfig.get_path("scripts"), "sciray")
    result = subprocess.run(["/usr/bin/time", "-f", "%e %M", sciray_program, scene_file, picture_file,
                             "-threads", str(threads)], capture_output=True, text=True, check=True)
    seconds, peak = result.stderr.split()[-2:]
    return float(seconds), int(peak)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--count", type=int, default=1_000_000)
    parser.add_argument("--turns", type=int, default=3)
    parser.add_argument("--threads", type=int, default=os.cpu_count())
    options = parser.parse_args()
    centres = np.random.default_rng(2024).uniform(-1, 1, (options.count, 3))
    with tempfile.TemporaryDirectory() as folder:
        scene_file, picture_file = os.path.join(folder, "spheres.ren"), os.path.join(folder, "spheres.rgb")
        make_scene(centres).save(scene_file)
        megabytes = os.path.getsize(scene_file) / 1e6
        ours, theirs = [], []
        for _ in range(options.turns):
            seconds, peak, picture = in_process(centres, options.threads)
            ours.append((seconds, peak))
            theirs.append(program(scene_file, picture_file, options.threads))
        picture.save(os.path.join(folder, "in_process.rgb"))
        with open(picture_file, "rb") as f, open(os.path.join(folder, "in_process.rgb"), "rb") as g:
            assert f.read() == g.read(), "the pictures differ"
    a, b = statistics.median(s for s, _ in ours), statistics.median(s for s, _ in theirs)
    picture_kb = picture.pixels.nbytes // 1024
    print("spheres: %d, threads: %d, turns: %d, scene file: %.1f MB"
          % (options.count, options.threads, options.turns, megabytes))
    print("in process (array to picture): %.2f s (median; %s)" % (a, " ".join("%.2f" % s for s, _ in ours)))
    print("program on the saved file:     %.2f s (median; %s)" % (b, " ".join("%.2f" % s for s, _ in theirs)))
    print("ratio: %.2f" % (a / b))
    print("peak memory while rendering: in process +%d MB; program %d MB, plus the picture %d MB"
          % (max(p for _, p in ours) // 1024, max(p for _, p in theirs) // 1024, picture_kb // 1024))


if __name__ == "__main__":
    main()
