#!/usr/bin/python3
# sciray_farm_slurm_test.py - sciray-farm's Slurm engine against a real
# one-node cluster that scripts/local-slurm.sh starts for this test and
# stops after it (also when a check fails): the checks of every engine with
# --wait, submitting without waiting, a signal that leaves the jobs going,
# and a cluster that starts once and leaves no daemon behind.
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

from farm_test_support import FARM, SOURCE, engine_checks, pixels, reference_pixels, run, running, write_scene

CLUSTER_SCRIPT = os.path.join(SOURCE, 'scripts', 'local-slurm.sh')
DAEMONS = ('munged', 'slurmctld', 'slurmd')


class slurm_engine(engine_checks, unittest.TestCase):
    engine = ['--engine', 'slurm', '--wait']

    @classmethod
    def setUpClass(cls):
        cls.work = tempfile.mkdtemp(prefix='sciray-farm-slurm-')
        cls.addClassCleanup(shutil.rmtree, cls.work)
        os.chmod(cls.work, 0o755)  # munged wants its socket reachable by everyone
        cls.tools = cls.work
        cls.cluster_env = dict(os.environ, SCIRAY_SLURM_DIR=os.path.join(cls.work, 'cluster'))
        cls.addClassCleanup(cls.stop_cluster)
        cls.export = cls.start_cluster()
        os.environ['SLURM_CONF'] = re.fullmatch(r'export SLURM_CONF=(\S+)\n', cls.export)[1]
        cls.addClassCleanup(os.environ.pop, 'SLURM_CONF')
        cls.pids = {d: cls.pid_of(d) for d in DAEMONS}

    @classmethod
    def pid_of(cls, daemon):
        with open(os.path.join(cls.work, 'cluster', f'{daemon}.pid')) as f:
            return f.read().strip()

    @classmethod
    def start_cluster(cls):
        r = run(['bash', CLUSTER_SCRIPT, 'start'], env=cls.cluster_env)
        if r.returncode != 0:
            raise RuntimeError(f'local Slurm cluster did not start: {r.stderr}')
        return r.stdout

    @classmethod
    def stop_cluster(cls):
        r = run(['bash', CLUSTER_SCRIPT, 'stop'], env=cls.cluster_env)
        if r.returncode != 0:
            raise RuntimeError(f'local Slurm cluster did not stop: {r.stderr}')
        left = [f'{d} ({pid})' for d, pid in getattr(cls, 'pids', {}).items() if running(pid)]
        if left:
            raise RuntimeError(f'still running after stop: {", ".join(left)}')

    def farm(self, *arguments, env=None):
        r = super().farm(*arguments, env=env)
        self.assertRegex(r.stdout, r'^(array job \d+\n)?join job \d+\n$', r.stderr)
        return r

    def test_starting_again_keeps_the_running_cluster(self):
        self.assertEqual(self.start_cluster(), self.export)
        for daemon, pid in self.pids.items():
            self.assertTrue(running(pid), daemon)
            self.assertEqual(self.pid_of(daemon), pid)

    def test_without_wait_prints_the_jobs_and_returns(self):
        d = self.fresh_dir('no_wait')
        scene = write_scene(os.path.join(d, 'still.ren'))
        out = os.path.join(d, 'out')
        r = run([FARM, '--engine', 'slurm', '--bands', '3',
                 '--out', out, '--slurm-option=--comment=sciray-farm-test', scene])
        self.assertEqual(r.returncode, 0, r.stderr)
        jobs = re.fullmatch(r'array job (\d+)\njoin job (\d+)\n', r.stdout)
        self.assertIsNotNone(jobs, r.stdout)
        for job in jobs.groups():
            self.assertIn('Comment=sciray-farm-test', run(['scontrol', 'show', 'job', job]).stdout)
        self.assert_picture_comes(os.path.join(out, 'still.png'), scene)

    def test_a_signal_while_waiting_leaves_the_jobs_going(self):
        d = self.fresh_dir('signal')
        scene = write_scene(os.path.join(d, 'still.ren'))
        out = os.path.join(d, 'out')
        farm = subprocess.Popen([FARM, *self.engine, '--bands', '2', '--out', out, scene], stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, text=True)
        array, join = (re.fullmatch(rf'{kind} job (\d+)\n', farm.stdout.readline())[1] for kind in ('array', 'join'))
        farm.send_signal(signal.SIGINT)
        _, err = farm.communicate(timeout=60)
        self.assertEqual(farm.returncode, -signal.SIGINT, err)
        self.assertTrue(err.endswith(f'sciray-farm: stopped by SIGINT; Slurm jobs go on: {array} {join} '
                                     f'(scancel {array} {join} stops them)\n'), err)
        self.assert_picture_comes(os.path.join(out, 'still.png'), scene)

    def assert_picture_comes(self, picture, scene):
        deadline = time.monotonic() + 120
        while not os.path.exists(picture) and time.monotonic() < deadline:
            time.sleep(0.5)
        self.assertEqual(pixels(picture), reference_pixels(scene, self.work))


if __name__ == '__main__':
    sys.exit(unittest.main())
