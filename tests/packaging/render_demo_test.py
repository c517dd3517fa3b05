#!/usr/bin/python3
# render_demo_test.py - scripts/render-demo.sh on a copy of the sources,
# with an apt-get that only notes what it is asked: it installs a compiler,
# CMake, make and libpng and nothing the tests need, configures without the
# tests and the Python module, and renders the demo picture the built sciray
# renders.
import filecmp
import os
import shutil
import subprocess
import tempfile
import unittest

BUILD = os.environ['SCIRAY_BUILD_DIR']
SOURCE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
# What the build reads: everything but the tests, fuzz targets and benchmarks.
PARTS = ('CMakeLists.txt', 'README.md', 'cmake', 'docs', 'examples', 'python', 'scripts', 'src', 'tools')


def write_program(path, text):
    with open(path, 'w') as f:
        f.write(text)
    os.chmod(path, 0o755)


class render_demo(unittest.TestCase):
    def test_installs_and_builds_only_what_the_demo_needs(self):
        work = tempfile.mkdtemp(prefix='sciray-render-demo-')
        self.addCleanup(shutil.rmtree, work)
        tree = os.path.join(work, 'sciray')
        os.makedirs(tree)
        for part in PARTS:
            source = os.path.join(SOURCE, part)
            copy = shutil.copytree if os.path.isdir(source) else shutil.copy
            copy(source, os.path.join(tree, part))
        fake = os.path.join(work, 'bin')
        os.makedirs(fake)
        asked = os.path.join(work, 'asked')
        write_program(os.path.join(fake, 'dpkg-query'), '#!/bin/sh\nexit 1\n')  # nothing is installed
        write_program(os.path.join(fake, 'apt-get'), f'#!/bin/sh\necho "$*" >>{asked}\n')
        write_program(os.path.join(fake, 'sudo'), '#!/bin/sh\nexec "$@"\n')
        r = subprocess.run(['bash', os.path.join(tree, 'scripts', 'render-demo.sh')], capture_output=True, text=True,
                           env=dict(os.environ, PATH=fake + os.pathsep + os.environ['PATH']), timeout=900)
        self.assertEqual(r.returncode, 0, r.stdout[-3000:] + r.stderr[-3000:])
        with open(asked) as f:
            self.assertEqual(f.read().splitlines(), ['update -q', 'install -y -q --no-install-recommends '
                                                                   'g++ make cmake libpng-dev'])
        with open(os.path.join(tree, 'build', 'CMakeCache.txt')) as f:
            cache = f.read()
        self.assertIn('SCIRAY_TESTS:BOOL=OFF', cache)
        self.assertNotIn('GTest', cache)
        self.assertNotIn('nanobind', cache)
        self.assertTrue(os.path.isfile(os.path.join(tree, 'demo.png')))
        whole = os.path.join(work, 'demo.rgb')
        r = subprocess.run([os.path.join(BUILD, 'sciray'), os.path.join(SOURCE, 'examples', 'demo.ren'), whole],
                           capture_output=True, timeout=300)
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertTrue(filecmp.cmp(whole, os.path.join(tree, 'demo.rgb'), shallow=False))


if __name__ == '__main__':
    unittest.main()
