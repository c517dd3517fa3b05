# local_engine.py - runs the band tasks on this machine. Bands at once times
# threads per band stays within the processors the farm may use: with
# --threads T, processors / T bands at once; without it, as many bands at
# once as there are processors (or bands), sharing the processors out.
import os
import subprocess
from concurrent.futures import ThreadPoolExecutor, as_completed

from . import band_script, children


def share(processors, bands, threads):
    """(bands at once, threads per band) for `bands` tasks on `processors`."""
    if threads:
        return max(1, processors // threads), threads
    at_once = max(1, min(bands, processors))
    return at_once, processors // at_once


def run_band(task, options, threads):
    command = ['sh', '-c', band_script.SCRIPT, 'sh',
               *band_script.arguments(options.sciray, task.scene.path, task, task.band_file, task.log_file, threads)]
    r = children.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True)
    return band_script.parse_result(r.stdout)


def run(tasks, options, progress):
    workers, threads = share(len(os.sched_getaffinity(0)), len(tasks), options.threads)
    pool = ThreadPoolExecutor(workers)
    try:
        running = {pool.submit(run_band, task, options, threads): task for task in tasks}
        for done in as_completed(running):
            progress.band_finished(running[done], done.result())
    except BaseException:
        # Interrupted (or failed): the bands running are stopped, none waiting is started.
        pool.shutdown(wait=False, cancel_futures=True)
        children.stop_all()
        raise
    pool.shutdown()
