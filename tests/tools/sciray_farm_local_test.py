#!/usr/bin/python3
# sciray_farm_local_test.py - sciray-farm with its local engine: the checks
# of every engine, bands without rows, damaged and outdated band files on
# --resume, and the refusals and failures that must end with a clear message.
import os
import shutil
import sys
import tempfile
import unittest

from farm_test_support import FARM, engine_checks, files_under, pixels, reference_pixels, run, write_scene


class local_engine(engine_checks, unittest.TestCase):
    engine = ['--engine', 'local']

    def setUp(self):
        self.work = tempfile.mkdtemp(prefix='sciray-farm-test-')
        self.tools = self.work
        self.addCleanup(shutil.rmtree, self.work)

    def test_empty_damaged_and_outdated_bands(self):
        # 4 rows (the least a picture has) in 7 bands: three bands hold no row.
        scene = write_scene(os.path.join(self.work, 'flat.ren'), width=8, height=4)
        out = os.path.join(self.work, 'out')
        r = self.farm('--bands', '7', '--out', out, scene)
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertEqual(pixels(os.path.join(out, 'flat.png')), reference_pixels(scene, self.work))
        bands = [os.path.join(out, 'bands', f) for f in files_under(os.path.join(out, 'bands')) if f.endswith('.rgb')]
        self.assertEqual(sorted(os.path.getsize(b) == 0 for b in bands), [False] * 4 + [True] * 3)

        damaged = next(b for b in bands if os.path.getsize(b) > 0)
        with open(damaged, 'r+b') as f:
            f.truncate(os.path.getsize(damaged) - 1)
        r = self.farm('--bands', '7', '--out', out, '--resume', scene)
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertRegex(r.stderr, r'7 bands: 1 rendered, 6 already there')
        self.assertEqual(pixels(os.path.join(out, 'flat.png')), reference_pixels(scene, self.work))

        # An edited scene shares no band with its earlier text.
        with open(scene, 'a') as f:
            f.write('render_002 { width 9 }\n')
        r = self.farm('--bands', '7', '--out', out, '--resume', scene)
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertRegex(r.stderr, r'7 bands: 7 rendered;')
        self.assertEqual(pixels(os.path.join(out, 'flat.png')), reference_pixels(scene, self.work))

    def test_scene_error_is_quoted_and_gives_no_picture(self):
        scene = os.path.join(self.work, 'broken.ren')
        with open(scene, 'w') as f:
            f.write('render_002 { width 8 height 4 }\nnot_a_block\n')
        out = os.path.join(self.work, 'out')
        r = self.farm('--bands', '2', '--out', out, scene)
        self.assertEqual(r.returncode, 1, r.stderr)
        for band in (1, 2):
            self.assertRegex(r.stderr, rf'broken band {band}/2 failed \(exit 1\); standard error in \S+/{band}of2.log: '
                                       r".*Unknown keyword 'not_a_block'")
        self.assertEqual([f for f in files_under(out) if not f.endswith('.log')], [])

    def test_refusals(self):
        scene = write_scene(os.path.join(self.work, 's.ren'))
        os.makedirs(os.path.join(self.work, 'other'))
        twin = write_scene(os.path.join(self.work, 'other', 's.ren'))
        hosts = os.path.join(self.work, 'hosts')
        with open(hosts, 'w') as f:
            f.write('# this machine\n2/:\n')
        missing = os.path.join(self.work, 'missing.ren')
        cases = [
            ([missing], {}, f'{missing}: No such file or directory'),
            ([scene, twin], {}, f'{scene} and {twin} would both make s.png'),
            (['--bands', '0', scene], {}, "argument --bands: '0' is not a number above 0 (see sciray-farm --help)"),
            (['--engine', 'parallel', scene], {}, '--engine parallel needs --hosts FILE'),
            (['--engine', 'parallel', '--hosts', hosts, scene], {}, f'{hosts}: ":" (this machine) is not supported'),
            (['--wait', scene], {}, '--slurm-option and --wait are for --engine slurm'),
            (['--fps', '10', scene], {}, '--fps is for --movie'),
            (['--frobnicate', scene], {}, 'unrecognized arguments: --frobnicate'),
            ([scene], {'SCIRAY_PNG': '/nowhere/sciray-png'}, 'sciray-png not found at /nowhere/sciray-png'),
        ]
        out = os.path.join(self.work, 'out')
        for arguments, environment, message in cases:
            r = run([FARM, '--out', out, *arguments], env=dict(os.environ, **environment))
            self.assertEqual(r.returncode, 1, message)
            self.assertTrue(r.stderr.startswith('sciray-farm: ' + message), r.stderr)
            self.assertEqual(r.stderr.count('\n'), 1, r.stderr)
            self.assertFalse(os.path.exists(out), message)


if __name__ == '__main__':
    sys.exit(unittest.main())
