# children.py - the processes the farm starts (bands, GNU parallel,
# sciray-png, ffmpeg), each in a session of its own so that a Ctrl-C at the
# terminal reaches the farm alone, and their stopping: when the farm is
# interrupted it stops every one of them and their children (the band
# script's sciray) before it removes what they had begun writing.
import os
import signal
import subprocess
import threading
import time

from .._program_outputs import interrupted, signals_held
from .band_files import farm_error

GRACE = 5.0  # seconds a child has to end when asked before it is killed

_lock = threading.Lock()
_running = set()
_stopping = False


def start(command, stop_with=signal.SIGTERM, **keywords):
    """A Popen of the command in a new session, known until it is waited
    for; stop_with is the signal that asks it to stop."""
    # The child may be under way before Popen returns: a signal waits until it is noted.
    with signals_held(), _lock:
        if _stopping:
            raise farm_error('stopping: no process is started')
        process = subprocess.Popen(command, start_new_session=True, **keywords)
        process.stop_with = stop_with
        _running.add(process)
    return process


def forget(process):
    with _lock:
        _running.discard(process)


def run(command, **keywords):
    """subprocess.run for a child that is stopped, with every other, when a
    signal interrupts the farm while it starts or waits for it."""
    try:
        process = start(command, **keywords)
        out, err = process.communicate()
    except interrupted:
        stop_all()  # before whatever the child was writing is removed
        raise
    forget(process)
    return subprocess.CompletedProcess(command, process.returncode, out, err)


def _signal_group(process, number):
    try:
        os.killpg(process.pid, number)
    except (ProcessLookupError, PermissionError):
        pass  # the group has ended


def _running_groups():
    """The process groups with a member that has not ended (one that has
    ended and waits for its new parent to reap it does not count)."""
    groups = set()
    for entry in os.scandir('/proc'):
        try:
            with open(os.path.join(entry.path, 'stat')) as f:
                stat = f.read()
            state, _, group = stat[stat.rindex(')') + 2:].split()[:3]
        except (OSError, ValueError):
            continue  # not a process, or one that has just gone
        if state != 'Z':
            groups.add(int(group))
    return groups


def stop(processes):
    """Asks the process groups to stop and waits until each has ended,
    killing what is left after GRACE seconds; then forgets them."""
    waiting = list(processes)
    for kill in (False, True):
        for process in waiting:
            _signal_group(process, signal.SIGKILL if kill else process.stop_with)
        deadline = time.monotonic() + GRACE
        while waiting and time.monotonic() < deadline:
            for process in waiting:
                process.poll()  # a leader that has ended is reaped here
            running = _running_groups()
            waiting = [p for p in waiting if p.pid in running]
            if waiting:
                time.sleep(0.01)
    for process in processes:
        forget(process)


def stop_all():
    """Stops every child, and starts no more."""
    global _stopping
    with _lock:
        _stopping = True
        processes = list(_running)
    stop(processes)
