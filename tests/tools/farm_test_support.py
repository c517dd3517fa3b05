# farm_test_support.py - what the sciray-farm tests share: the built
# programs, small scenes, reference pictures rendered whole by one sciray
# run, a renderer that dies in one band, and engine_checks, the checks that
# every engine (local, GNU parallel, Slurm) must pass.
import hashlib
import os
import re
import stat
import subprocess

from PIL import Image

BUILD = os.environ['SCIRAY_BUILD_DIR']
SOURCE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
SCIRAY = os.path.join(BUILD, 'sciray')
SCIRAY_PNG = os.path.join(BUILD, 'sciray-png')
FARM = os.path.join(BUILD, 'sciray-farm')
TIMEOUT = 300  # seconds for any one program run; nothing here takes near that


def write_scene(path, width=96, height=72, eye_x=0.8):
    """The demo scene (no area lights) at a small size, seen from eye_x."""
    with open(os.path.join(SOURCE, 'examples', 'demo.ren')) as f:
        text = f.read()
    with open(path, 'w') as f:
        f.write(f'{text}\nrender_002 {{ width {width} height {height} }}\n'
                f'viewing_001 {{ viewpoint {eye_x} -6.5 2.4 }}\n')
    return path


def run(command, **keywords):
    return subprocess.run(command, capture_output=True, text=True, timeout=TIMEOUT, **keywords)


def pixels(png):
    """Mode, size and a hash of the pixels: equal for equal pictures, and
    short to print when they differ."""
    with Image.open(png) as picture:
        return picture.mode, picture.size, hashlib.sha256(picture.tobytes()).hexdigest()


def reference_pixels(scene, scratch):
    """The pixels of the scene rendered whole by one sciray run."""
    name = os.path.join(scratch, os.path.basename(scene) + '.whole')
    for command in ([SCIRAY, scene, name + '.rgb'], [SCIRAY_PNG, name + '.png', name + '.rgb']):
        r = run(command)
        assert r.returncode == 0, r.stderr
    return pixels(name + '.png')


def write_killing_sciray(path, scene_name, band):
    """A renderer that works like sciray, except that in the given band of
    the given scene it writes part of its picture and is killed."""
    with open(path, 'w') as f:
        f.write(f'''#!/bin/sh
if [ "$(basename "$1")" = {scene_name}.ren ] && [ "$3" = -band ] && [ "${{4%/*}}" = {band} ]; then
  printf 'half a picture' >"$2"
  kill -KILL $$
fi
exec {SCIRAY} "$@"
''')
    os.chmod(path, os.stat(path).st_mode | stat.S_IXUSR | stat.S_IXGRP | stat.S_IXOTH)
    return path


def write_program(path, text):
    """An executable script."""
    with open(path, 'w') as f:
        f.write(text)
    os.chmod(path, 0o755)
    return path


def running(pid):
    """True while the process runs (one that has ended and waits to be reaped does not)."""
    try:
        with open(f'/proc/{pid}/stat') as f:
            return f.read().rsplit(')', 1)[1].split()[0] != 'Z'
    except FileNotFoundError:
        return False


def files_under(directory):
    return sorted(os.path.relpath(os.path.join(d, f), directory) for d, _, fs in os.walk(directory) for f in fs)


class engine_checks:
    """Mixed into a unittest.TestCase that sets `engine` (the farm's engine
    options), `work` (where scenes and pictures go) and `tools` (a directory
    every host can see)."""
    engine = []

    def farm(self, *arguments, env=None):
        return run([FARM, *self.engine, *arguments], env=env)

    def fresh_dir(self, name):
        path = os.path.join(self.work, name)
        os.makedirs(path)
        return path

    def assert_progress(self, err, scene, bands):
        done = re.findall(rf'^sciray-farm: {scene} band (\d+)/{bands} done in [0-9.]+ s \[\d+/\d+\]$', err, re.M)
        self.assertEqual(sorted(map(int, done)), list(range(1, bands + 1)), err)

    def test_bands_and_frames_make_the_whole_pictures(self):
        d = self.fresh_dir('bands_and_frames')
        still = write_scene(os.path.join(d, 'still.ren'))
        r = self.farm('--bands', '5', '--threads', '2', '--out', os.path.join(d, 'out'), still)
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assert_progress(r.stderr, 'still', 5)
        self.assertRegex(r.stderr, r'sciray-farm: 5 bands: 5 rendered; 1 of 1 pictures written to .*/out in')
        self.assertEqual(pixels(os.path.join(d, 'out', 'still.png')), reference_pixels(still, d))

        frames = [write_scene(os.path.join(d, f'frame{i}.ren'), eye_x=0.4 * i) for i in (1, 2, 3)]
        movie = os.path.join(d, 'out', 'frames.mp4')
        r = self.farm('--bands', '3', '--out', os.path.join(d, 'out'), '--movie', movie, '--fps', '5', *frames)
        self.assertEqual(r.returncode, 0, r.stderr)
        wholes = [reference_pixels(f, d) for f in frames]
        self.assertEqual(len(set(wholes)), 3, 'the frames should differ')
        for i, whole in enumerate(wholes, 1):
            self.assert_progress(r.stderr, f'frame{i}', 3)
            self.assertEqual(pixels(os.path.join(d, 'out', f'frame{i}.png')), whole, f'frame{i}')
        probe = run(['ffprobe', '-v', 'error', '-count_frames', '-select_streams', 'v:0', '-show_entries',
                     'stream=nb_read_frames,width,height,r_frame_rate', '-of', 'csv=p=0', movie])
        self.assertEqual(probe.stdout.strip(), '96,72,5/1,3', probe.stderr)
        self.assertEqual([f for f in files_under(d) if f.endswith('.tmp')], [])

    def test_killed_band_gives_no_picture_until_resumed(self):
        d = self.fresh_dir('killed_band')
        scene = write_scene(os.path.join(d, 'still.ren'))
        out = os.path.join(d, 'out')
        killer = write_killing_sciray(os.path.join(self.tools, 'killing-sciray'), 'still', 2)
        r = self.farm('--bands', '3', '--out', out, scene, env=dict(os.environ, SCIRAY=killer))
        self.assertEqual(r.returncode, 1, r.stderr)
        self.assertFalse(os.path.exists(os.path.join(out, 'still.png')))
        log = re.search(r'^sciray-farm: still band 2/3 failed \(killed by signal 9\); standard error in (\S+\.log)',
                        r.stderr, re.M)
        self.assertIsNotNone(log, r.stderr)
        self.assertTrue(os.path.isfile(log[1]))
        self.assertRegex(r.stderr, r'sciray-farm: 3 bands: 2 rendered, 1 failed; 0 of 1 pictures written')
        bands = os.path.dirname(log[1])
        self.assertEqual(sorted(f for f in os.listdir(bands) if f.endswith('.rgb')), ['1of3.rgb', '3of3.rgb'])
        kept = {f: os.stat(os.path.join(bands, f)) for f in ('1of3.rgb', '3of3.rgb')}

        r = self.farm('--bands', '3', '--out', out, '--resume', scene)
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertRegex(r.stderr, r'sciray-farm: still band 2/3 done in')
        self.assertRegex(r.stderr, r'sciray-farm: 3 bands: 1 rendered, 2 already there; 1 of 1 pictures written')
        for name, before in kept.items():
            after = os.stat(os.path.join(bands, name))
            self.assertEqual((after.st_ino, after.st_mtime_ns), (before.st_ino, before.st_mtime_ns), name)
        self.assertEqual(pixels(os.path.join(out, 'still.png')), reference_pixels(scene, d))
