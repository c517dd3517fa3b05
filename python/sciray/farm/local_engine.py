# local_engine.py - runs the band tasks on this machine, as many at once as
# it has cores (fewer when each task uses several threads).
import os
import subprocess
from concurrent.futures import ThreadPoolExecutor, as_completed

from . import band_script


def run_band(task, options):
    command = ['sh', '-c', band_script.SCRIPT, 'sh',
               *band_script.arguments(options.sciray, task.scene.path, task, task.band_file, task.log_file,
                                      options.threads)]
    r = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True)
    return band_script.parse_result(r.stdout)


def run(tasks, options, progress):
    workers = max(1, len(os.sched_getaffinity(0)) // (options.threads or 1))
    pool = ThreadPoolExecutor(workers)
    try:
        running = {pool.submit(run_band, task, options): task for task in tasks}
        for done in as_completed(running):
            progress.band_finished(running[done], done.result())
    finally:
        # On an interrupt, start no band that is still waiting.
        pool.shutdown(cancel_futures=True)
