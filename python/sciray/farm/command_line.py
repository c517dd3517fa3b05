# command_line.py - sciray-farm's options, their checks, and where the
# programs it runs are found.
import argparse
import os
import shutil
import sys

from .band_files import farm_error
from .join import MOVIE_FORMATS, movie_format

USAGE = '''sciray-farm [--engine local|parallel|slurm] [--bands N] [--threads T] [--out DIR]
                   [--hosts FILE] [--slurm-option OPT ...] [--movie FILE.mp4 --fps F]
                   [--wait] [--resume] SCENE.ren ...'''

DESCRIPTION = '''Renders each scene split into N bands and joins the bands into OUT/NAME.png.
The bands are kept in OUT/bands/; --resume renders only those missing or damaged.
sciray and sciray-png are taken from beside this program, or from the
environment variables SCIRAY and SCIRAY_PNG.'''


class parser(argparse.ArgumentParser):
    def error(self, message):
        raise farm_error(f'{message} (see sciray-farm --help)')


def positive(kind):
    def convert(text):
        try:
            value = kind(text)
        except ValueError:
            value = 0
        if not value > 0:
            raise argparse.ArgumentTypeError(f'{text!r} is not a number above 0')
        return value
    return convert


def define():
    p = parser(prog='sciray-farm', usage=USAGE, description=DESCRIPTION)
    p.add_argument('--engine', choices=['local', 'parallel', 'slurm'], default='local',
                   help='where the bands run: this machine (default), ssh hosts through GNU parallel, or Slurm')
    p.add_argument('--bands', type=positive(int), default=1, metavar='N', help='bands per scene (default 1)')
    p.add_argument('--threads', type=positive(int), metavar='T', help='threads of each sciray run')
    p.add_argument('--out', default='.', metavar='DIR', help='where the pictures go (default: here)')
    p.add_argument('--hosts', metavar='FILE', help='the hosts of --engine parallel (--sshloginfile format)')
    p.add_argument('--slurm-option', action='append', default=[], dest='slurm_options', metavar='OPT',
                   help='an sbatch option for every job, e.g. --slurm-option=--partition=big (repeatable)')
    p.add_argument('--movie', metavar='FILE.mp4',
                   help='also encode the pictures, in file-name order, into a movie in the container its extension '
                        f'names ({", ".join(sorted(MOVIE_FORMATS))})')
    p.add_argument('--fps', type=positive(float), metavar='F', help='frames per second of the movie (default 25)')
    p.add_argument('--wait', action='store_true', help='with slurm: return when the join job ends, with its status')
    p.add_argument('--resume', action='store_true', help='render only the bands that are missing or damaged')
    p.add_argument('--join', action='store_true',
                   help='render nothing; join the bands already there (the Slurm join job does this)')
    p.add_argument('scenes', nargs='+', metavar='SCENE.ren')
    return p


def beside_farm(name):
    return os.path.join(os.path.dirname(os.path.realpath(sys.argv[0])), name)


def need_program(path, what):
    if not (os.path.isfile(path) and os.access(path, os.X_OK)):
        raise farm_error(f'{what} not found at {path}')


def need_command(name, package):
    if shutil.which(name) is None:
        raise farm_error(f'{name} not found (Debian package {package})')


def parse(argv):
    options = define().parse_args(argv)
    engine = options.engine
    if options.hosts and engine != 'parallel':
        raise farm_error('--hosts is for --engine parallel')
    if engine == 'parallel' and not options.hosts:
        raise farm_error('--engine parallel needs --hosts FILE')
    if (options.slurm_options or options.wait) and engine != 'slurm':
        raise farm_error('--slurm-option and --wait are for --engine slurm')
    if options.fps and not options.movie:
        raise farm_error('--fps is for --movie')
    if options.movie and movie_format(options.movie) is None:
        known = sorted(MOVIE_FORMATS)
        raise farm_error(f'--movie {options.movie}: not a movie file name; the extension gives the container: '
                         f'{", ".join(known[:-1])} or {known[-1]}')
    options.fps = options.fps or 25.0
    options.farm = os.path.realpath(sys.argv[0])
    # Messages name paths as given; the engines use them made absolute.
    options.out_given, options.movie_given = options.out, options.movie
    options.out = os.path.abspath(options.out)
    options.movie = options.movie and os.path.abspath(options.movie)
    # The programs are named by absolute paths: batch jobs and ssh hosts run them too.
    options.sciray = os.path.abspath(os.environ.get('SCIRAY') or beside_farm('sciray'))
    options.sciray_png = os.path.abspath(os.environ.get('SCIRAY_PNG') or beside_farm('sciray-png'))

    need_program(options.sciray_png, 'sciray-png')
    if not options.join and engine != 'parallel':
        need_program(options.sciray, 'sciray')
    if options.movie:
        need_command('ffmpeg', 'ffmpeg')
    if engine == 'parallel' and not options.join:
        need_command('parallel', 'parallel')
        need_command('rsync', 'rsync')
    if engine == 'slurm' and not options.join:
        need_command('sbatch', 'slurm-client')
        need_command('scontrol', 'slurm-client')
    return options
