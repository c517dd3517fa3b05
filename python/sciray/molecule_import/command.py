"""command.py - the run of sciray-molecule: read the structure (and its
trajectory), plan the scenes, and write one scene, or one per chosen frame
into a folder."""
import os
import sys

from .._program_outputs import run, same_file
from . import drawing, options, reading
from .failure import molecule_error
from ..mesh_import.command import _write_figure
from ..mesh_import.failure import conversion_error


def _refuse_over_inputs(paths, inputs):
    """Refuses, before anything is written, a scene that would be an input."""
    refusal = same_file(paths, [given for given in inputs if given is not None])
    if refusal:
        raise molecule_error(refusal)


def save(scene, path):
    """Writes the scene whole or not at all (Scene.save), with one line on failure."""
    try:
        scene.save(path)
    except OSError as failure:
        raise molecule_error("cannot write %s: %s" % (path, failure.strerror or failure)) from None


def frame_paths(work, folder, stem):
    """One scene name per chosen frame, STEM_FRAME.ren with the frame number
    padded so that names sort in frame order."""
    digits = max(4, len(str(max(work.frames))))
    return [os.path.join(folder, "%s_%0*d.ren" % (stem, digits, frame)) for frame in work.frames]


def _write(work, frame, path, chosen):
    """One frame's scene, and its figure when asked; returns what was written."""
    scene = work.scene(frame)
    save(scene, path)
    return path + (" and " + _write_figure(chosen, scene, path) if chosen.figure else "")


def _write_frames(work, folder, stem, inputs):
    try:
        os.makedirs(folder, exist_ok=True)
    except OSError as failure:
        raise molecule_error("cannot make %s: %s" % (folder, failure.strerror)) from None
    paths = frame_paths(work, folder, stem)
    _refuse_over_inputs(paths, inputs)
    for frame, path in zip(work.frames, paths):
        _write(work, frame, path, work.chosen)
    return paths


def _message(failure):
    if isinstance(failure, (molecule_error, conversion_error)):
        return str(failure)
    if isinstance(failure, MemoryError):
        return "out of memory"
    text = str(failure).strip()
    return "cannot convert: %s%s" % (type(failure).__name__, ": " + text.splitlines()[0] if text else "")


def main(argv):
    try:
        chosen = options.parse(argv)
        inputs = (chosen.structure, chosen.trajectory)
        if chosen.out is not None:
            _refuse_over_inputs([chosen.out], inputs)
        work = drawing.plan(reading.read(chosen.structure, chosen.trajectory), chosen)
        if chosen.out_dir is None:
            if len(work.frames) > 1:
                raise molecule_error("--frames chooses %d frames: write them with --out-dir DIR" % len(work.frames))
            wrote = _write(work, work.frames[0], chosen.out, chosen)
        else:
            stem = os.path.splitext(os.path.basename(chosen.trajectory or chosen.structure))[0]
            paths = _write_frames(work, chosen.out_dir, stem, inputs)
            wrote = "%d scene%s%s in %s" % (len(paths), "" if len(paths) == 1 else "s",
                                            " and figures" if chosen.figure else "", chosen.out_dir)
    except Exception as failure:  # every failure, foreseen or not, ends in one line
        print("sciray-molecule: %s" % _message(failure), file=sys.stderr)
        return 1
    print("sciray-molecule: wrote %s: %s" % (wrote, work.summary()))
    return 0


def entry():
    """The program: sciray-molecule's command line; exits with its status, or
    by the signal that stopped it."""
    run(lambda: main(sys.argv[1:]))
