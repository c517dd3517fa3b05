# sciray-farm - renders scene files, each split into bands, on this machine,
# on ssh hosts through GNU parallel, or on a Slurm cluster, and joins each
# scene's bands into OUT/NAME.png (and, if asked, the pictures into a movie).
import contextlib
import os
import signal
import sys

from .._program_outputs import interrupted, run as run_program
from . import children, command_line, join, local_engine, outputs, parallel_engine, report, slurm_engine
from .band_files import band_tasks, clear, farm_error, is_whole, read_scenes
from .band_script import logged_result
from .report import say


def prepare(tasks, options):
    """The bands to render (all, or with --resume those not whole), with
    whatever an earlier run left of them removed."""
    todo = [t for t in tasks if not (options.resume and is_whole(t.band_file))]
    for task in todo:
        try:
            os.makedirs(task.band_dir, exist_ok=True)
            clear(task)
        except OSError as e:
            raise farm_error(f"can't prepare {task.band_file}: {e.strerror}")
    return todo


def render(todo, options, progress):
    """Runs the bands; when interrupted, stops them and removes what they
    had begun: partial band files, and the logs of bands that did not end."""
    engine = local_engine if options.engine == 'local' else parallel_engine
    try:
        engine.run(todo, options, progress)
    except interrupted:
        children.stop_all()
        for task in todo:
            if not is_whole(task.band_file) and logged_result(task.log_file) is None:
                with contextlib.suppress(OSError):
                    clear(task)
        raise


def scene_complete(scene, tasks):
    return all(is_whole(t.band_file) for t in tasks if t.scene == scene)


def make_pictures(scenes, tasks, options):
    """Joins every scene whose bands are all whole, then the movie; the
    pictures written and the number of problems."""
    pictures, problems = [], 0
    for scene in scenes:
        if not scene_complete(scene, tasks):
            continue  # its failed bands are reported
        error = join.join_scene(options.sciray_png, options.out, [t for t in tasks if t.scene == scene])
        if error:
            say(f'{scene.name}.png not written: {error}')
            problems += 1
        else:
            pictures.append(join.picture_path(options.out, scene))
    if options.movie:
        missing = len(scenes) - len(pictures)
        error = f'{missing} of {len(scenes)} pictures are missing' if missing else \
            join.make_movie(pictures, options.movie, options.fps)
        if error:
            say(f'{options.movie} not written: {error}')
            problems += 1
        else:
            say(f'{options.movie}: {len(pictures)} frames at {options.fps:g} per second')
    return pictures, problems


def close(tasks, todo, pictures, scenes, options, progress):
    """Reports failed bands and the summary; the number of failed bands."""
    failed = report.failed_bands(tasks)
    report.report_failures(failed)
    rendered = len(todo) - len(set(failed) & set(todo))
    report.summary(len(tasks), rendered, len(tasks) - len(todo), len(failed), len(pictures), len(scenes),
                   options.out, progress.seconds())
    return len(failed)


def follow_slurm(tasks, todo, scenes, options, progress):
    join_job = slurm_engine.submit(todo, scenes, options)
    if not options.wait:
        say(f'band files and logs go to {options.out}/bands, pictures to {options.out}')
        return 0
    state, status = slurm_engine.wait(join_job, todo, progress)
    if state != 'COMPLETED':
        output = slurm_engine.slurm_output(options.out, join_job)
        say(f'join job {join_job} ended {state}' + (f'; its output is in {output}' if os.path.exists(output) else ''))
    pictures = [join.picture_path(options.out, s) for s in scenes
                if scene_complete(s, tasks) and os.path.exists(join.picture_path(options.out, s))]
    close(tasks, todo, pictures, scenes, options, progress)
    return status if state == 'COMPLETED' else status or 1


def run(argv):
    options = command_line.parse(argv)
    scenes = read_scenes(options.scenes)
    if options.engine == 'parallel':
        parallel_engine.check_hosts(options.hosts)
    tasks = band_tasks(scenes, options.bands, options.out)
    outputs.check(scenes, tasks, options)
    todo = [] if options.join else prepare(tasks, options)
    progress = report.progress(len(todo))
    if options.engine == 'slurm' and not options.join:
        return follow_slurm(tasks, todo, scenes, options, progress)
    if todo:
        render(todo, options, progress)
    pictures, problems = make_pictures(scenes, tasks, options)
    failed = close(tasks, todo, pictures, scenes, options, progress)
    return 1 if failed or problems else 0


def stopped(number):
    """After a signal: every child stopped, and a line saying so."""
    children.stop_all()
    jobs = ' '.join(slurm_engine.submitted)
    say(f'stopped by {signal.Signals(number).name}' + (f'; Slurm jobs go on: {jobs} (scancel {jobs} stops them)'
                                                       if jobs else ''))


def main(argv):
    try:
        return run(argv)
    except farm_error as e:
        say(str(e))
        return 1


def entry():
    """The program: sciray-farm's command line; exits with its status, or
    by the signal that stopped it."""
    run_program(lambda: main(sys.argv[1:]), on_signal=stopped)
