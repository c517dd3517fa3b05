# join.py - joins a scene's bands into OUT/NAME.png with sciray-png and the
# pictures into a movie with ffmpeg. Both are written under a temporary name
# that is renamed when complete, so a failure never leaves a partial file.
import os
import subprocess
import tempfile


def picture_path(out_dir, scene):
    return os.path.join(out_dir, scene.name + '.png')


def run_tool(command):
    """Runs a tool; its error message (one line), or None when it succeeded."""
    try:
        r = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                           stderr=subprocess.PIPE, text=True, errors='replace')
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


def make_movie(pictures, movie, fps):
    """Encodes the pictures, in file-name order, into an MP4; an error or None."""
    temporary = f'{movie}.{os.getpid()}.tmp'
    with tempfile.TemporaryDirectory() as frames:
        # ffmpeg reads a numbered sequence; links give the pictures those numbers.
        for number, picture in enumerate(sorted(pictures, key=os.path.basename)):
            os.symlink(os.path.abspath(picture), os.path.join(frames, f'{number:06d}.png'))
        error = run_tool(['ffmpeg', '-nostdin', '-loglevel', 'error', '-y', '-framerate', format(fps, 'g'),
                          '-i', os.path.join(frames, '%06d.png'),
                          # H.264 in yuv420p plays everywhere but needs even sizes.
                          '-vf', 'pad=ceil(iw/2)*2:ceil(ih/2)*2', '-pix_fmt', 'yuv420p',
                          '-f', 'mp4', temporary])
    if error is None:
        try:
            os.replace(temporary, movie)
        except OSError as e:
            error = f"can't rename {temporary}: {e.strerror}"
    if error is not None and os.path.exists(temporary):
        os.remove(temporary)
    return error
