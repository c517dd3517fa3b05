"""command.py - the run of sciray-import: the scene of a mesh, as
sciray.from_mesh makes it, saved; with --figure also rendered and composed
into a figure; with --out-dir one scene (and figure) per step of a series."""
import os
import sys

from .._program_outputs import run, same_file
from . import mesh_reading, options, series
from .failure import conversion_error


def _save(scene, path):
    """Writes the scene whole or not at all (Scene.save writes beside the
    name and moves the file there when complete)."""
    try:
        scene.save(path)
    except OSError as failure:
        raise conversion_error("cannot write %s: %s" % (path, failure.strerror or failure)) from None


def _figure_path(chosen, scene_path):
    """Where the figure of a scene goes: --figure's name, or beside the
    scene when --figure names a kind (png, pdf, svg)."""
    kind = options.figure_kind(chosen.figure)
    return chosen.figure if chosen.figure.lower() != kind else os.path.splitext(scene_path)[0] + "." + kind


def _write_figure(chosen, scene, scene_path):
    from ..figures import figure
    from ..rendering import render

    path = _figure_path(chosen, scene_path)
    try:
        figure(render(scene, mark=False), title=chosen.title, caption=chosen.caption, path=path)
    except OSError as failure:
        raise conversion_error("cannot write %s: %s" % (path, failure.strerror or failure)) from None
    return path


def _refuse_over_meshes(chosen, scene_paths):
    """Refuses, before anything is written, a scene or figure that would be
    one of the meshes."""
    figures = [_figure_path(chosen, path) for path in scene_paths] if chosen.figure else []
    refusal = same_file(scene_paths + figures, chosen.meshes)
    if refusal:
        raise conversion_error(refusal)


def _write(chosen, mesh, source, scene_path, shared=None):
    """One scene (and its figure when asked); prints its notes and summary."""
    from ..meshes import converted

    scene, summary, notes = converted(mesh, source, chosen, shared)
    for note in notes:
        print("sciray-import: %s" % note, file=sys.stderr)
    _save(scene, scene_path)
    written = scene_path
    if chosen.figure:
        written += " and " + _write_figure(chosen, scene, scene_path)
    print("sciray-import: wrote %s: %s" % (written, summary), flush=True)


def _one(chosen):
    mesh_path, out = chosen.meshes[0], chosen.out
    _refuse_over_meshes(chosen, [out])
    _write(chosen, mesh_reading.read_mesh(mesh_path), mesh_path, out)


def _series(chosen):
    steps = series.steps_of(chosen.meshes)
    scene_paths = [os.path.join(chosen.out_dir, step.name + ".ren") for step in steps]
    _refuse_over_meshes(chosen, scene_paths)
    try:
        os.makedirs(chosen.out_dir, exist_ok=True)
    except OSError as failure:
        raise conversion_error("cannot make %s: %s" % (chosen.out_dir, failure.strerror or failure)) from None
    shared = series.shared_of(steps, chosen)
    for step, scene_path in zip(steps, scene_paths):
        _write(chosen, step.mesh(), step.source, scene_path, shared)


def main(argv):
    try:
        chosen = options.parse(argv)
        (_one if chosen.out_dir is None else _series)(chosen)
    except conversion_error as failure:
        print("sciray-import: %s" % failure, file=sys.stderr)
        return 1
    except MemoryError:
        print("sciray-import: out of memory", file=sys.stderr)
        return 1
    except Exception as failure:  # a mesh that meets a case not foreseen still ends in one line
        print("sciray-import: cannot convert: %s: %s" % (type(failure).__name__, failure), file=sys.stderr)
        return 1
    return 0


def entry():
    """The program: sciray-import's command line; exits with its status, or
    by the signal that stopped it."""
    run(lambda: main(sys.argv[1:]))
