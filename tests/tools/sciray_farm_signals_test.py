#!/usr/bin/python3
# sciray_farm_signals_test.py - sciray-farm (local engine) stopped by a
# signal while its bands render or while it encodes the movie: it stops
# every process it started, removes what they had begun writing, says so in
# one line, and ends by that signal; a later --resume finds nothing damaged.
import os
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

from farm_test_support import FARM, TIMEOUT, files_under, pixels, reference_pixels, running, write_program, write_scene

SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGXCPU)


class farm_signals(unittest.TestCase):
    def setUp(self):
        self.work = tempfile.mkdtemp(prefix='sciray-farm-signals-')
        self.addCleanup(shutil.rmtree, self.work)
        self.pids = os.path.join(self.work, 'pids')
        # A sciray or an ffmpeg that writes part of its output (sciray's
        # second argument, ffmpeg's last), notes its process id, and waits.
        self.slow = write_program(os.path.join(self.work, 'slow'), f'''#!/bin/sh
out=$2
[ "$3" = -band ] || for a; do out=$a; done
printf partial >"$out"
echo $$ >>{self.pids}
exec sleep 60
''')

    def start_farm(self, *arguments, env=None):
        # Standard error goes to a file: the bands hold it open too, and a pipe
        # would end only with the last of them.
        self.errors = tempfile.TemporaryFile('w+')
        self.addCleanup(self.errors.close)
        farm = subprocess.Popen([FARM, *arguments], cwd=self.work, env={**os.environ, **(env or {})},
                                stdout=subprocess.DEVNULL, stderr=self.errors, text=True,
                                preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_CORE, (0, 0)))
        self.addCleanup(farm.kill)
        return farm

    def wait_for_pids(self, count):
        deadline = time.monotonic() + TIMEOUT
        while time.monotonic() < deadline:
            if os.path.exists(self.pids):
                with open(self.pids) as f:
                    pids = [int(line) for line in f if line.endswith('\n')]
                if len(pids) >= count:
                    os.remove(self.pids)
                    return pids
            time.sleep(0.01)
        self.fail('the programs did not start')

    def stop(self, farm, number, pids):
        farm.send_signal(number)
        farm.wait(timeout=TIMEOUT)
        self.errors.seek(0)
        err = self.errors.read()
        self.assertEqual([pid for pid in pids if running(pid)], [], err)
        self.assertEqual(farm.returncode, -number, err)
        self.assertTrue(err.endswith(f'sciray-farm: stopped by {number.name}\n'), err)

    def test_a_signal_stops_the_bands_and_leaves_nothing_partial(self):
        scene = write_scene(os.path.join(self.work, 's.ren'), width=24, height=16)
        at_once = min(3, len(os.sched_getaffinity(0)))
        for number in SIGNALS:
            with self.subTest(signal=number.name):
                farm = self.start_farm('--bands', '3', '--out', 'out', 's.ren', env={'SCIRAY': self.slow})
                self.stop(farm, number, self.wait_for_pids(at_once))
                self.assertEqual(files_under(os.path.join(self.work, 'out')), [])
        r = subprocess.run([FARM, '--bands', '3', '--out', 'out', '--resume', 's.ren'], cwd=self.work,
                           capture_output=True, text=True, timeout=TIMEOUT)
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertEqual(pixels(os.path.join(self.work, 'out', 's.png')), reference_pixels(scene, self.work))

    def test_a_signal_while_the_movie_is_made_leaves_no_movie(self):
        for i in (1, 2):
            write_scene(os.path.join(self.work, f'f{i}.ren'), width=24, height=16, eye_x=0.5 * i)
        tools = os.path.join(self.work, 'tools')
        os.makedirs(tools)
        os.symlink(self.slow, os.path.join(tools, 'ffmpeg'))
        farm = self.start_farm('--out', 'out', '--movie', 'out/m.mp4', 'f1.ren', 'f2.ren',
                               env={'PATH': tools + os.pathsep + os.environ['PATH']})
        self.stop(farm, signal.SIGTERM, self.wait_for_pids(1))
        self.assertEqual(sorted(f for f in files_under(os.path.join(self.work, 'out')) if not f.startswith('bands')),
                         ['f1.png', 'f2.png'])


if __name__ == '__main__':
    sys.exit(unittest.main())
