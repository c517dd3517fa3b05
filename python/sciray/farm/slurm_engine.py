# slurm_engine.py - submits the band tasks as one Slurm job array, and a join
# job that runs only when every task has succeeded (afterok) and makes the
# pictures by running this program with --join; with --wait, follows both
# until the join job ends. The nodes must see the scenes, the output
# directory and the sciray programs at the same paths as this machine.
import os
import shlex
import subprocess
import sys
import time

from . import band_script
from .band_files import farm_error

# The ids of the jobs this run has submitted.
submitted = []

# Job states after which a job does not run again.
ENDED = {'COMPLETED', 'FAILED', 'CANCELLED', 'TIMEOUT', 'NODE_FAIL', 'PREEMPTED', 'BOOT_FAIL', 'DEADLINE',
         'OUT_OF_MEMORY'}


def slurm_output(out_dir, pattern):
    return os.path.join(out_dir, 'bands', f'slurm-{pattern}.out')


def bands_script(tasks, options):
    """A batch script whose array task K renders tasks[K]."""
    # Without --threads a task has Slurm's one CPU, and sciray one thread.
    rows = [band_script.arguments(options.sciray, t.scene.path, t, t.band_file, t.log_file, options.threads or 1)
            for t in tasks]
    width = len(rows[0])
    table = '\n'.join('  ' + ' '.join(shlex.quote(a) for a in row) for row in rows)
    return ('#!/bin/bash\n'
            '# sciray-farm: array task K renders the band in row K of the table.\n'
            '# Its standard output is only the result line, which the log holds too.\n'
            f'band_script={shlex.quote(band_script.SCRIPT)}\n'
            f'tasks=(\n{table}\n)\n'
            f'exec sh -c "$band_script" sh "${{tasks[@]:{width}*SLURM_ARRAY_TASK_ID:{width}}}" >/dev/null\n')


def join_script(scenes, options):
    command = [sys.executable, options.farm, '--join', '--bands', str(options.bands), '--out', options.out]
    if options.movie:
        command += ['--movie', options.movie, '--fps', format(options.fps, 'g')]
    command += ['--', *(s.path for s in scenes)]
    return f'#!/bin/bash\n# sciray-farm: joins the bands into pictures.\nexec {shlex.join(command)}\n'


def sbatch(arguments, script, options):
    command = ['sbatch', '--parsable', *arguments, *options.slurm_options]
    try:
        r = subprocess.run(command, input=script, capture_output=True, text=True)
    except OSError as e:
        raise farm_error(f'sbatch: {e.strerror}')
    if r.returncode != 0:
        lines = r.stderr.strip().splitlines()
        raise farm_error(lines[-1] if lines else f'sbatch ended with exit {r.returncode}')
    submitted.append(r.stdout.strip().split(';')[0])
    return submitted[-1]


def submit(tasks, scenes, options):
    """Submits the jobs and prints their ids; the join job's id."""
    dependency = []
    if tasks:
        cpus = [f'--cpus-per-task={options.threads}'] if options.threads else []
        array = sbatch([f'--array=0-{len(tasks) - 1}', '--job-name=sciray-bands', *cpus,
                        f'--output={slurm_output(options.out, "%A")}', '--open-mode=append'],
                       bands_script(tasks, options), options)
        print(f'array job {array}', flush=True)
        dependency = [f'--dependency=afterok:{array}', '--kill-on-invalid-dep=yes']
    join = sbatch(['--job-name=sciray-join', f'--output={slurm_output(options.out, "%j")}', *dependency],
                  join_script(scenes, options), options)
    print(f'join job {join}', flush=True)
    return join


def job_state(job):
    """(state, exit status) of a job, or None while Slurm can't be asked."""
    r = subprocess.run(['scontrol', '-o', 'show', 'job', job], capture_output=True, text=True)
    fields = dict(f.split('=', 1) for f in r.stdout.split() if '=' in f)
    if r.returncode != 0 or 'JobState' not in fields:
        return None
    # ExitCode is STATUS:SIGNAL; a job killed by a signal counts as the shell would count it.
    status, signal = (int(n) for n in fields.get('ExitCode', '0:0').split(':'))
    return fields['JobState'], status or (128 + signal if signal else 0)


def wait(join, tasks, progress, patience=60):
    """Reports bands as their results appear until the join job ends; its
    (state, exit status)."""
    waiting = list(tasks)
    unanswered = 0
    while True:
        state = job_state(join)
        for task in list(waiting):
            result = band_script.logged_result(task.log_file)
            if result is not None:
                progress.band_finished(task, result)
                waiting.remove(task)
        if state is not None and state[0] in ENDED:
            return state
        unanswered = 0 if state is not None else unanswered + 1
        if unanswered > patience:
            raise farm_error(f'Slurm does not answer about job {join}; it may still run')
        time.sleep(1)
