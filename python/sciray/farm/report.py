# report.py - what the farm says on standard error: one line per finished
# band, then which bands failed and where their standard error went, and a
# summary.
import os
import sys
import time

from .band_files import is_whole
from .band_script import logged_error, logged_result


def say(message):
    print(f'sciray-farm: {message}', file=sys.stderr, flush=True)


def describe(status):
    return f'killed by signal {status - 128}' if status > 128 else f'exit {status}'


class progress:
    """Counts the bands of one run as they finish and reports each."""

    def __init__(self, total):
        self.total = total
        self.finished = 0
        self.started = time.monotonic()

    def band_finished(self, task, result):
        """result: (status, seconds) from the band's result line, or None."""
        self.finished += 1
        count = f'[{self.finished}/{self.total}]'
        if result is None:
            say(f'{task.label} ended without a result {count}')
        elif result[0] == 0:
            say(f'{task.label} done in {result[1]:.2f} s {count}')
        else:
            say(f'{task.label} failed ({describe(result[0])}) after {result[1]:.2f} s {count}')

    def seconds(self):
        return time.monotonic() - self.started


def failed_bands(tasks):
    return [t for t in tasks if not is_whole(t.band_file)]


def report_failures(failed):
    for task in failed:
        result = logged_result(task.log_file)
        if result is None:
            why = 'no result'
        elif result[0] == 0:
            why = 'its band file is missing or damaged'
        else:
            why = describe(result[0])
        if os.path.exists(task.log_file):
            error = logged_error(task.log_file)
            where = f'standard error in {task.log_file}' + (f': {error}' if error else '')
        else:
            where = 'it left no log (see the messages above)'
        say(f'{task.label} failed ({why}); {where}')


def summary(total, rendered, reused, failed, pictures, scenes, out_dir, seconds):
    counts = [f'{n} {what}' for n, what in ((rendered, 'rendered'), (reused, 'already there'), (failed, 'failed')) if n]
    say(f'{total} bands: {", ".join(counts)}; {pictures} of {scenes} pictures written to {out_dir} '
        f'in {seconds:.1f} s')
