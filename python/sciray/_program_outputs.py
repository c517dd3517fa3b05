"""What sciray's Python programs (sciray-import, sciray-farm) and the
package's savers share about their outputs: an output that is one of the
inputs is refused before anything is written; an output is written under a
temporary name beside it and put in place only when complete; and a signal
(INT, TERM, HUP, XCPU) ends a program through the clean-up of what it had
begun writing, with the status that signal gives.

A caught signal becomes the exception `interrupted`, raised in the main
thread wherever it is, so that the ``finally`` blocks that remove a partial
file run as they do for any failure. It is not an Exception: no handler of
errors takes it for one. Only the standard library is used here: the farm
runs on nodes without numpy."""
from __future__ import annotations

import contextlib
import errno
import os
import signal
import stat
import sys
import threading
from typing import Callable, Iterable, Iterator, NoReturn

SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGXCPU)


class interrupted(BaseException):
    """A signal that ends the program, raised where the main thread was."""

    def __init__(self, number: int) -> None:
        super().__init__(signal.Signals(number).name)
        self.number = number


def same_file(outputs: Iterable[str], inputs: Iterable[str]) -> str | None:
    """The refusal of the first output that is the same file as an input
    (by name, symbolic link or hard link: the same device and inode), or
    None. Paths are named as given.

    >>> same_file(["scene.ren"], ["scene.ren"])       # doctest: +SKIP
    'output file scene.ren is the same file as input scene.ren'
    """
    known = {}
    for path in inputs:
        try:
            info = os.stat(path)
        except OSError:
            continue
        known.setdefault((info.st_dev, info.st_ino), path)
    for path in outputs:
        try:
            info = os.stat(path)
        except OSError:
            continue
        source = known.get((info.st_dev, info.st_ino))
        if source is not None:
            return "output file %s is the same file as input %s" % (path, source)
    return None


@contextlib.contextmanager
def written_whole(path: str) -> Iterator[str]:
    """The name to write the output `path` under: a new, empty file
    PATH.PID.tmp beside it (beside the file a symbolic link leads to), with
    the permissions the output would get (those of the file it replaces, or
    0666 less the umask). When the block ends, it is renamed to `path`; when
    the block raises (a failure, a signal), it is removed, and a file
    already under `path` stays as it was. A device or pipe (/dev/stdout) is
    written directly.

    >>> with written_whole("scene.ren") as partial:       # doctest: +SKIP
    ...     with open(partial, "w") as out:
    ...         out.write(text)
    """
    try:
        replaced = os.stat(path)
    except OSError:
        replaced = None
    if replaced is not None and not stat.S_ISREG(replaced.st_mode):
        yield path
        return
    target = os.path.realpath(path)
    partial = None
    with signals_held():  # the file is made and noted as one step
        for attempt in range(100):  # a file left by a process killed outright is passed over
            name = "%s.%d%s.tmp" % (target, os.getpid(), "-%d" % attempt if attempt else "")
            try:
                os.close(os.open(name, os.O_WRONLY | os.O_CREAT | os.O_EXCL | os.O_CLOEXEC, 0o666))
            except FileExistsError:
                continue
            partial = name
            break
        else:
            raise FileExistsError(errno.EEXIST, "no free temporary name beside it", path)
    try:
        if replaced is not None:
            os.chmod(partial, stat.S_IMODE(replaced.st_mode))
        yield partial
        os.replace(partial, target)
    finally:
        if os.path.lexists(partial):
            os.unlink(partial)


_held = 0  # the depth of signals_held() in the main thread
_pending: int | None = None  # a signal that came while they were held


def _raise(number: int, frame) -> None:
    global _pending
    # The first signal ends the program; later ones wait for its clean-up.
    for each in SIGNALS:
        signal.signal(each, signal.SIG_IGN)
    if _held:
        _pending = number
    else:
        raise interrupted(number)


@contextlib.contextmanager
def signals_held() -> Iterator[None]:
    """A step the signal must not cut in two (a process started and noted
    as started): a signal that comes during it is raised at its end. Only
    the main thread, where signals are raised, holds them."""
    global _held
    main = threading.current_thread() is threading.main_thread()
    _held += main
    try:
        yield
    finally:
        _held -= main
        if not _held and _pending is not None and main:
            raise interrupted(_pending)


def _end_by(number: int) -> NoReturn:
    """Ends the process as the signal would have ended it."""
    for stream in (sys.stdout, sys.stderr):
        try:
            stream.flush()
        except (OSError, ValueError):
            pass
    signal.signal(number, signal.SIG_DFL)
    signal.pthread_sigmask(signal.SIG_UNBLOCK, [number])
    os.kill(os.getpid(), number)
    os._exit(128 + number)  # not reached: the signal has ended the process


def run(main: Callable[[], int], on_signal: Callable[[int], None] | None = None) -> NoReturn:
    """Runs main() with the signals caught and exits with its status. After
    a signal (once main's clean-up has run), on_signal(number) is called and
    the program ends by that signal. A signal that was ignored when the
    program started (under nohup, say) stays ignored."""
    caught = [n for n in SIGNALS if signal.getsignal(n) != signal.SIG_IGN]
    try:
        for number in caught:
            signal.signal(number, _raise)
        status = main()
        for number in caught:  # the work is done: a signal now simply ends it
            signal.signal(number, signal.SIG_DFL)
    except interrupted as stop:
        if on_signal is not None:
            on_signal(stop.number)
        _end_by(stop.number)
    sys.exit(status)
