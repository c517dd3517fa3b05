# parallel_engine.py - runs the band tasks with GNU parallel over ssh on the
# hosts of a --sshloginfile, as many at once on each host as it has cores
# (each on one thread), or with --threads T, cores / T at once.
# Every task works in a directory of its own on its host: the scene is sent
# there and the band's directory (band file and log) comes back, so the
# hosts need no file system in common with this machine. They need rsync
# and the same sciray at the same path.
import os
import re
import shlex
import signal
import subprocess
import tempfile

from . import band_script, children
from .band_files import farm_error
from .report import say


def check_hosts(path):
    """Refuses a hosts file GNU parallel can't read or that names this
    machine as ":" (its tasks would run here with nothing sent to them)."""
    try:
        with open(path) as f:
            lines = [line.strip() for line in f]
    except OSError as e:
        raise farm_error(f'{path}: {e.strerror}')
    logins = [line for line in lines if line and not line.startswith('#')]
    if not logins:
        raise farm_error(f'{path}: names no host')
    if any(re.fullmatch(r'(\d+/)?:', login) for login in logins):
        raise farm_error(f'{path}: ":" (this machine) is not supported; name it by ssh (localhost) '
                         'or use --engine local')


def relative_to(parent_and_name):
    """GNU parallel's way of saying "send to (or bring back from) NAME in the
    task's working directory": PARENT/./NAME."""
    parent, name = os.path.split(parent_and_name)
    return f'{parent}/./{name}'


def task_row(task, options):
    band_dir = os.path.basename(task.band_dir)
    remote = band_script.arguments(options.sciray, os.path.basename(task.scene.path), task,
                                   os.path.join(band_dir, os.path.basename(task.band_file)),
                                   os.path.join(band_dir, os.path.basename(task.log_file)), options.threads or 1)
    row = [relative_to(task.scene.path), relative_to(task.band_dir), *remote]
    if any('\t' in field or '\n' in field for field in row):
        raise farm_error(f'{task.scene.path}: paths with tabs or line breaks can not go through GNU parallel')
    return row


def run(tasks, options, progress):
    rows = [task_row(task, options) for task in tasks]
    placeholders = ' '.join(f'{{{column}}}' for column in range(3, len(rows[0]) + 1))
    jobs = ['--jobs', f'{max(1, 100 // options.threads)}%'] if options.threads else []
    with tempfile.NamedTemporaryFile('w', prefix='sciray-farm-', suffix='.tsv') as table:
        table.write(''.join('\t'.join(row) + '\n' for row in rows))
        table.flush()
        command = ['parallel', '--sshloginfile', options.hosts, '--workdir', '...', '--cleanup',
                   '--transferfile', '{1}', '--return', '{2}', '--colsep', '\t', '--tagstring', '{#}', *jobs,
                   f'sh -c {shlex.quote(band_script.SCRIPT)} sh {placeholders}', '::::', table.name]
        # On SIGINT (unlike an early SIGTERM) GNU parallel stops its tasks and ends.
        parallel = children.start(command, stop_with=signal.SIGINT, stdin=subprocess.DEVNULL,
                                  stdout=subprocess.PIPE, text=True)
        try:
            # Each task prints its result line when it has ended and its files are back.
            for line in parallel.stdout:
                number, _, result = line.partition('\t')
                if number.isdigit() and 1 <= int(number) <= len(tasks):
                    progress.band_finished(tasks[int(number) - 1], band_script.parse_result(result))
            parallel.wait()
        except BaseException:
            children.stop([parallel])  # it stops the tasks it started
            raise
        finally:
            parallel.stdout.close()
        children.forget(parallel)
    meaning = exit_meaning(parallel.returncode)
    if meaning:
        say(f'GNU parallel: {meaning}')


def exit_meaning(status):
    """What GNU parallel's exit status says, or None for success."""
    if status == 0:
        return None
    if 1 <= status <= 100:
        return f'{status} band task{"s" if status > 1 else ""} failed'
    if status == 101:
        return 'more than 100 band tasks failed'
    if status < 0:
        return f'killed by signal {-status}'
    return f'failed itself (exit {status}); see its messages above'
