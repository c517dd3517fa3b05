# join.py - joins a scene's bands into OUT/NAME.png with sciray-png and the
# pictures into a movie with ffmpeg, in the container its file name's
# extension names. Both are written under a temporary name that is renamed
# when complete (sciray-png does so itself), so a failure or an interrupt
# never leaves a partial file.
import os
import subprocess
import tempfile

from .._program_outputs import written_whole
from . import children

# H.264 and the other codecs in yuv420p play everywhere, but need even sizes.
_EVEN = ['-vf', 'pad=ceil(iw/2)*2:ceil(ih/2)*2', '-pix_fmt', 'yuv420p']
_H264 = ['-c:v', 'libx264', *_EVEN]
# The movie's file name extension: ffmpeg's container (muxer) and the
# codec and settings for it.
MOVIE_FORMATS = {
    '.mp4': ('mp4', _H264),
    '.m4v': ('ipod', _H264),
    '.mov': ('mov', _H264),
    '.mkv': ('matroska', _H264),
    '.webm': ('webm', ['-c:v', 'libvpx-vp9', '-crf', '32', '-b:v', '0', *_EVEN]),
    '.avi': ('avi', ['-c:v', 'mpeg4', '-q:v', '3', *_EVEN]),
    # A palette made from the frames themselves, not a fixed one.
    '.gif': ('gif', ['-vf', 'split[a][b];[a]palettegen[p];[b][p]paletteuse']),
}


def movie_format(path):
    """(container, codec arguments) for a movie path, or None when its
    extension names no container the farm writes."""
    return MOVIE_FORMATS.get(os.path.splitext(path)[1].lower())


def picture_path(out_dir, scene):
    return os.path.join(out_dir, scene.name + '.png')


def run_tool(command):
    """Runs a tool; its error message (one line), or None when it succeeded."""
    try:
        r = children.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                         text=True, errors='replace')
    except OSError as e:
        return f'{command[0]}: {e.strerror}'
    if r.returncode == 0:
        return None
    lines = r.stderr.strip().splitlines()
    return lines[-1] if lines else f'{command[0]} ended with exit {r.returncode}'


def join_scene(sciray_png, out_dir, tasks):
    """Joins one scene's bands, all whole, bottom first into its PNG; an
    error or None."""
    parts = [t.band_file for t in tasks if os.path.getsize(t.band_file) > 0]
    if not parts:
        return 'no band holds a row of the picture'
    return run_tool([sciray_png, picture_path(out_dir, tasks[0].scene), *parts])


class _failed(Exception):
    """A tool's error: the movie is not put in place."""


def make_movie(pictures, movie, fps):
    """Encodes the pictures, in file-name order, into the movie; an error or None."""
    container, codec = movie_format(movie)
    try:
        with written_whole(movie) as partial, tempfile.TemporaryDirectory() as frames:
            # ffmpeg reads a numbered sequence; links give the pictures those numbers.
            for number, picture in enumerate(sorted(pictures, key=os.path.basename)):
                os.symlink(os.path.abspath(picture), os.path.join(frames, f'{number:06d}.png'))
            error = run_tool(['ffmpeg', '-nostdin', '-loglevel', 'error', '-y', '-framerate', format(fps, 'g'),
                              '-i', os.path.join(frames, '%06d.png'), *codec, '-f', container, partial])
            if error is not None:
                raise _failed(error)
    except _failed as failure:
        return str(failure)
    except OSError as e:
        return f"can't write {movie}: {e.strerror}"
    return None
