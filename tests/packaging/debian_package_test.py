#!/usr/bin/python3
# debian_package_test.py - the Debian package made by cpack, and the same
# files installed by "cmake --install --prefix": what the package declares,
# every file it should hold and no other, programs that run where they are
# installed (the farm finding sciray and sciray-png beside it), and manual
# pages that man renders without a warning.
import glob
import hashlib
import os
import re
import shutil
import stat
import subprocess
import sysconfig
import tempfile
import unittest

from PIL import Image

BUILD = os.environ['SCIRAY_BUILD_DIR']
VERSION = os.environ['SCIRAY_VERSION']
SOURCE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
PROGRAMS = ('sciray', 'sciray-png', 'sciray-farm', 'sciray-import')
TIMEOUT = 300


def run(command, **keywords):
    return subprocess.run(command, capture_output=True, text=True, timeout=TIMEOUT, **keywords)


def files_under(root):
    return {os.path.relpath(os.path.join(d, f), root) for d, _, fs in os.walk(root) for f in fs}


def expected_files():
    """What an installation holds, relative to its prefix, from the source tree."""
    doc = 'share/doc/sciray'
    files = {f'bin/{p}' for p in PROGRAMS}
    files |= {f'share/man/man1/{os.path.basename(p)}.gz' for p in glob.glob(os.path.join(SOURCE, 'docs/man/*.1'))}
    files |= {f'{doc}/{name}' for name in ('README.md', 'scene-format.md', 'gallery.md', 'python.md')}
    for directory in ('docs/scene-format', 'docs/gallery', 'examples'):
        files |= {f'{doc}/{os.path.basename(directory)}/{f}' for f in os.listdir(os.path.join(SOURCE, directory))}
    # The Python package for sciray-import, with its module built for this Python.
    package = os.path.join(SOURCE, 'python')
    files |= {f'lib/python3/dist-packages/{os.path.relpath(os.path.join(d, f), package)}'
              for d, _, fs in os.walk(os.path.join(package, 'sciray')) for f in fs if f.endswith('.py')}
    files.add('lib/python3/dist-packages/sciray/_sciray' + sysconfig.get_config_var('EXT_SUFFIX'))
    return files


def package_names(field):
    """The package names of a Depends-like field, versions left out."""
    return {re.sub(r'\s*\(.*\)', '', entry).strip() for entry in field.split(',') if entry.strip()}


def linked_libraries(program):
    """The files of the libraries a program names itself (not those they need in turn)."""
    needed = re.findall(r'\(NEEDED\)\s+Shared library: \[(.*)\]', run(['readelf', '-d', program]).stdout)
    found = dict(re.findall(r'^\s*(\S+) => (/\S+)', run(['ldd', program]).stdout, re.M))
    assert needed and set(needed) <= set(found), (needed, found)
    return [found[name] for name in needed]


def owning_package(path):
    r = run(['dpkg', '-S', os.path.realpath(path)])
    if r.returncode != 0:  # merged /usr: the package may name the file under /lib
        r = run(['dpkg', '-S', os.path.realpath(path).replace('/usr/lib/', '/lib/', 1)])
    assert r.returncode == 0, f'no package holds {path}'
    return r.stdout.split(':')[0]


def pixels(png):
    with Image.open(png) as picture:
        return picture.mode, picture.size, hashlib.sha256(picture.tobytes()).hexdigest()


class debian_package(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.work = tempfile.mkdtemp(prefix='sciray-package-test-')
        r = run(['cpack', '-G', 'DEB', '-B', os.path.join(cls.work, 'package'),
                 '--config', os.path.join(BUILD, 'CPackConfig.cmake')])
        assert r.returncode == 0, r.stdout + r.stderr
        debs = glob.glob(os.path.join(cls.work, 'package', 'sciray_*.deb'))
        assert len(debs) == 1, debs
        cls.deb = debs[0]
        cls.root = os.path.join(cls.work, 'root')
        r = run(['dpkg', '-x', cls.deb, cls.root])
        assert r.returncode == 0, r.stderr
        cls.usr = os.path.join(cls.root, 'usr')

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.work)

    def field(self, name):
        r = run(['dpkg-deb', '-f', self.deb, name])
        self.assertEqual(r.returncode, 0, r.stderr)
        return r.stdout.strip()

    def test_control_fields_and_dependencies(self):
        self.assertEqual(self.field('Package'), 'sciray')
        self.assertEqual(self.field('Version'), VERSION)
        self.assertEqual(os.path.basename(self.deb), f'sciray_{VERSION}_{self.field("Architecture")}.deb')
        depends = package_names(self.field('Depends'))
        self.assertTrue({'libc6', 'libstdc++6', 'libpng16-16', 'python3'} <= depends, depends)
        # Every library the installed programs are linked with comes from a declared package.
        for program in ('sciray', 'sciray-png'):
            for library in linked_libraries(os.path.join(self.usr, 'bin', program)):
                self.assertIn(owning_package(library), depends, f'{program} needs {library}')
        recommends = package_names(self.field('Recommends'))
        self.assertTrue({'python3-meshio', 'python3-numpy'} <= recommends, recommends)
        suggests = package_names(self.field('Suggests'))
        self.assertTrue({'parallel', 'rsync', 'slurm-client', 'ffmpeg'} <= suggests, suggests)
        # apt can resolve the package's dependencies here.
        r = run(['apt-get', 'install', '--simulate', '-q', self.deb])
        self.assertEqual(r.returncode, 0, r.stdout + r.stderr)

    def test_files_of_the_package_and_of_an_install_under_a_prefix(self):
        self.assertEqual(files_under(self.usr), expected_files())
        self.assertEqual(files_under(self.root) - {f'usr/{f}' for f in expected_files()}, set())
        prefix = os.path.join(self.work, 'prefix')
        r = run(['cmake', '--install', BUILD, '--prefix', prefix])
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertEqual(files_under(prefix), expected_files())
        # Every user may run the programs.
        for root in (self.usr, prefix):
            for program in PROGRAMS:
                mode = os.stat(os.path.join(root, 'bin', program)).st_mode
                self.assertEqual(stat.S_IMODE(mode), 0o755, f'{root}/bin/{program}')

    def test_installed_programs_render_an_installed_example(self):
        bin_dir = os.path.join(self.usr, 'bin')
        scene = os.path.join(self.usr, 'share/doc/sciray/examples/preview.ren')
        out = os.path.join(self.work, 'render')
        os.makedirs(out)
        env = {k: v for k, v in os.environ.items() if k not in ('SCIRAY', 'SCIRAY_PNG')}
        r = run([os.path.join(bin_dir, 'sciray'), scene, os.path.join(out, 'whole.rgb')])
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertRegex(r.stdout, r'^Number of objects : [1-9]')
        r = run([os.path.join(bin_dir, 'sciray-png'), os.path.join(out, 'whole.png'), os.path.join(out, 'whole.rgb')])
        self.assertEqual(r.returncode, 0, r.stderr)
        # The farm runs the sciray and sciray-png installed beside it.
        r = run([os.path.join(bin_dir, 'sciray-farm'), '--bands', '3', '--out', out, scene], env=env)
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertEqual(pixels(os.path.join(out, 'preview.png')), pixels(os.path.join(out, 'whole.png')))
        # sciray-import makes a scene the installed sciray renders, and a figure.
        mesh = os.path.join(self.usr, 'share/doc/sciray/examples/torus.vtk')
        imported = os.path.join(out, 'torus.ren')
        r = run([os.path.join(bin_dir, 'sciray-import'), mesh, imported, '--size', '32x24', '--figure', 'png'])
        self.assertEqual(r.returncode, 0, r.stderr)
        with Image.open(os.path.join(out, 'torus.png')) as figure:
            self.assertGreater(figure.size[0], 32)
        r = run([os.path.join(bin_dir, 'sciray'), imported, os.path.join(out, 'torus.rgb')])
        self.assertEqual(r.returncode, 0, r.stderr)
        self.assertRegex(r.stdout, r'^Number of objects : [1-9]')

    def test_manual_pages_render_without_warnings(self):
        pages = sorted(glob.glob(os.path.join(self.usr, 'share/man/man1/*.1.gz')))
        self.assertEqual(sorted(os.path.basename(p)[:-len('.1.gz')] for p in pages), sorted(PROGRAMS))
        env = dict(os.environ, MANWIDTH='80', LC_ALL='C.UTF-8')
        for page in pages:
            name = os.path.basename(page)[:-len('.1.gz')]
            with self.subTest(page=name):
                r = run(['man', '--warnings', '-l', page], env=env)
                self.assertEqual((r.returncode, r.stderr), (0, ''))
                self.assertRegex(r.stdout, rf'(?m)^NAME\n\s+{re.escape(name)} [—-] ')


if __name__ == '__main__':
    unittest.main()
