#!/usr/bin/python3
# sciray_farm_outputs_test.py - what sciray-farm writes and how it shares
# out the machine: outputs that are inputs or can't be written are refused
# before the first band starts, the movie's container follows its
# extension, bands times threads stay within the processors, GNU parallel's
# exit statuses are told for what they mean, and the programs are 0755.
import json
import os
import re
import shutil
import stat
import sys
import tempfile
import unittest

from farm_test_support import BUILD, FARM, SCIRAY, files_under, run, write_program, write_scene


class farm_outputs(unittest.TestCase):
    def setUp(self):
        self.work = tempfile.mkdtemp(prefix='sciray-farm-outputs-')
        self.addCleanup(shutil.rmtree, self.work)
        self.scene = write_scene(self.path('s.ren'), width=16, height=12)
        # A sciray that notes each band it is asked for.
        self.noted = self.path('noted')
        self.noting_sciray = write_program(self.path('noting-sciray'),
                                           f'#!/bin/sh\necho "$@" >>{self.noted}\nexec {SCIRAY} "$@"\n')

    def path(self, *names):
        return os.path.join(self.work, *names)

    def farm(self, *arguments, **keywords):
        env = {**os.environ, 'SCIRAY': self.noting_sciray, **keywords.pop('env', {})}
        return run([*keywords.pop('prefix', []), FARM, *arguments], env=env, cwd=self.work, **keywords)

    def assert_refused(self, arguments, message):
        before = files_under(self.work)
        r = self.farm(*arguments)
        self.assertEqual((r.returncode, r.stderr), (1, f'sciray-farm: {message}\n'))
        self.assertFalse(os.path.exists(self.noted), 'a band was started')
        self.assertEqual(files_under(self.work), before)

    def test_outputs_are_checked_before_the_first_band(self):
        with open(self.path('hosts.mp4'), 'w') as f:
            f.write('localhost\n')
        os.symlink('s.ren', self.path('link.mp4'))
        os.makedirs(self.path('out', 's.png'))
        os.makedirs(self.path('movie.mkv'))
        open(self.path('file'), 'w').close()
        cases = [
            (['--movie', 'link.mp4', 's.ren'], 'output file link.mp4 is the same file as input s.ren'),
            (['--movie', 'hosts.mp4', '--engine', 'parallel', '--hosts', 'hosts.mp4', 's.ren'],
             'output file hosts.mp4 is the same file as input hosts.mp4'),
            (['--out', 'out', 's.ren'], 'out/s.png is a folder'),
            (['--out', 'file', 's.ren'], 'file is not a folder'),
            (['--out', 'file/out', 's.ren'], "can't write in file/out: Not a directory"),
            (['--movie', 'movie.mkv', 's.ren'], 'movie.mkv is a folder'),
            (['--movie', 'file/sub/m.mp4', 's.ren'], "can't write in file/sub: Not a directory"),
            (['--movie', 'm.mp5', 's.ren'], '--movie m.mp5: not a movie file name; the extension gives the '
                                            'container: .avi, .gif, .m4v, .mkv, .mov, .mp4 or .webm'),
        ]
        for arguments, message in cases:
            with self.subTest(arguments=arguments):
                self.assert_refused(arguments, message)
        # A picture that would land on the scene, through a hard link.
        os.rmdir(self.path('out', 's.png'))
        os.link(self.scene, self.path('out', 's.png'))
        self.assert_refused(['--out', 'out', 's.ren'], 'output file out/s.png is the same file as input s.ren')
        with open(self.scene) as f:
            self.assertIn('render_002 { width 16 height 12 }', f.read())

    def test_the_movie_container_follows_the_extension(self):
        frames = [write_scene(self.path(f'f{i}.ren'), width=15, height=9, eye_x=0.5 * i) for i in (1, 2, 3)]
        r = self.farm('--out', 'out', *frames)
        self.assertEqual(r.returncode, 0, r.stderr)
        containers = {'mp4': ('mov,mp4,m4a,3gp,3g2,mj2', 'h264'), 'm4v': ('mov,mp4,m4a,3gp,3g2,mj2', 'h264'),
                      'mov': ('mov,mp4,m4a,3gp,3g2,mj2', 'h264'), 'mkv': ('matroska,webm', 'h264'),
                      'webm': ('matroska,webm', 'vp9'), 'avi': ('avi', 'mpeg4'), 'gif': ('gif', 'gif')}
        for extension, (container, codec) in containers.items():
            with self.subTest(extension):
                movie = self.path('out', f'movie.{extension.upper() if extension == "mkv" else extension}')
                r = self.farm('--out', 'out', '--join', '--movie', movie, '--fps', '4', *frames)
                self.assertEqual(r.returncode, 0, r.stderr)
                probe = run(['ffprobe', '-v', 'error', '-count_frames', '-show_entries',
                             'format=format_name:stream=codec_name,nb_read_frames', '-of', 'json', movie])
                found = json.loads(probe.stdout)
                self.assertEqual(found['format']['format_name'], container)
                self.assertEqual([(s['codec_name'], s['nb_read_frames']) for s in found['streams']], [(codec, '3')])
        self.assertEqual([f for f in files_under(self.work) if f.endswith('.tmp')], [])

    def test_bands_times_threads_stay_within_the_processors(self):
        processors = sorted(os.sched_getaffinity(0))
        cases = [(1, ['--bands', '3'], 1, 1), (2, ['--bands', '1'], 2, 1), (2, ['--bands', '5'], 1, 2),
                 (2, ['--bands', '3', '--threads', '2'], 2, 1), (1, ['--bands', '2', '--threads', '3'], 3, 1)]
        # A sciray that notes its thread count and how many bands run beside it.
        running = self.path('running')
        os.makedirs(running)
        counting = write_program(self.path('counting-sciray'), f'''#!/bin/sh
mkdir {running}/$$
echo "$6 $(ls {running} | wc -l)" >>{self.noted}
sleep 0.3
rmdir {running}/$$
exec {SCIRAY} "$@"
''')
        for count, arguments, threads, at_once in cases:
            if count > len(processors):
                continue
            with self.subTest(processors=count, arguments=arguments):
                cpus = ','.join(map(str, processors[:count]))
                r = self.farm(*arguments, '--out', 'out', 's.ren', env={'SCIRAY': counting},
                              prefix=['taskset', '-c', cpus])
                self.assertEqual(r.returncode, 0, r.stderr)
                with open(self.noted) as f:
                    noted = [line.split() for line in f]
                os.remove(self.noted)
                self.assertEqual({int(t) for t, _ in noted}, {threads})
                self.assertLessEqual(max(int(n) for _, n in noted), at_once)

    def test_gnu_parallel_exit_statuses(self):
        with open(self.path('hosts'), 'w') as f:
            f.write('localhost\n')
        fake = self.path('fake-bin')
        os.makedirs(fake)
        write_program(os.path.join(fake, 'parallel'), '#!/bin/sh\nexit "$PARALLEL_STATUS"\n')
        env = {'PATH': fake + os.pathsep + os.environ['PATH']}
        for status, meaning in ((3, '3 band tasks failed'), (1, '1 band task failed'),
                                (101, 'more than 100 band tasks failed'),
                                (255, 'failed itself (exit 255); see its messages above')):
            with self.subTest(status=status):
                r = self.farm('--engine', 'parallel', '--hosts', 'hosts', '--bands', '3', '--out', 'out', 's.ren',
                              env={**env, 'PARALLEL_STATUS': str(status)})
                self.assertEqual(r.returncode, 1, r.stderr)
                self.assertEqual(re.findall(r'^sciray-farm: GNU parallel: .*$', r.stderr, re.M),
                                 [f'sciray-farm: GNU parallel: {meaning}'])

    def test_the_built_programs_are_for_every_user(self):
        # Sanitizer builds leave the importer out: its module could not be
        # loaded by the system's Python.
        importer = ('sciray-import',) if os.environ.get('SCIRAY_BUILDS_IMPORTER') == 'ON' else ()
        for program in ('sciray', 'sciray-png', 'sciray-farm') + importer:
            with self.subTest(program):
                self.assertEqual(stat.S_IMODE(os.stat(os.path.join(BUILD, program)).st_mode), 0o755)


if __name__ == '__main__':
    sys.exit(unittest.main())
