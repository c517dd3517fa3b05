# outputs.py - the checks of what the farm will write, made before the
# first band starts: no picture, movie, band file or log would land on an
# input (a scene or the hosts file), no picture or movie on a folder, and
# the picture folder and the movie's folder can be made and written in.
# Paths are named in messages as the user gave them.
import os
import tempfile

from .._program_outputs import same_file
from . import join
from .band_files import farm_error


def _as_given(path, options):
    if options.movie and path == options.movie:
        return options.movie_given
    return os.path.join(options.out_given, os.path.relpath(path, options.out))


def _writable_folder(folder, shown):
    """Makes the folder (and those above it) and tries a file in it."""
    if os.path.exists(folder) and not os.path.isdir(folder):
        raise farm_error(f'{shown} is not a folder')
    try:
        os.makedirs(folder, exist_ok=True)
        with tempfile.TemporaryFile(dir=folder):
            pass
    except OSError as e:
        raise farm_error(f"can't write in {shown}: {e.strerror}")


def check(scenes, tasks, options):
    """Raises farm_error for the first output the run could not write."""
    finals = [join.picture_path(options.out, s) for s in scenes] + ([options.movie] if options.movie else [])
    bands = [path for t in tasks for path in (t.band_file, t.log_file)]
    inputs = list(options.scenes) + ([options.hosts] if options.hosts else [])
    refusal = same_file([_as_given(path, options) for path in finals + bands], inputs)
    if refusal:
        raise farm_error(refusal)
    for path in finals:
        if os.path.isdir(path):
            raise farm_error(f'{_as_given(path, options)} is a folder')
    _writable_folder(options.out, options.out_given)
    if options.movie:
        _writable_folder(os.path.dirname(options.movie), os.path.dirname(options.movie_given) or '.')
