"""reader_process.py - runs a mesh reader in a child process, so that a
damaged file can neither crash the importer (VTK's legacy reader can) nor
keep it reading for ever (some of meshio's readers go round in circles at an
early end of file): the child sends back what it read, or is stopped when
its time is up."""
import os
import pickle
import select
import signal
import time

# A reader's time: this many seconds for any file, and one more per megabyte.
SECONDS = 10.0
SECONDS_PER_MEGABYTE = 1.0
_CRASHES = (signal.SIGSEGV, signal.SIGBUS, signal.SIGFPE, signal.SIGILL, signal.SIGABRT)


def time_for(path):
    return SECONDS + SECONDS_PER_MEGABYTE * os.path.getsize(path) / 1e6


def run(read, path):
    """read(path) done in a child process: what it returns (sent back with
    pickle), or (None, why) when the child crashed or ran out of time."""
    seconds = time_for(path)
    readable, writable = os.pipe()
    child = os.fork()
    if child == 0:
        status = 1
        try:
            os.close(readable)
            for crash in _CRASHES:
                signal.signal(crash, signal.SIG_DFL)  # a crash ends the child quietly
            with os.fdopen(writable, "wb") as out:
                pickle.dump(read(path), out, protocol=pickle.HIGHEST_PROTOCOL)
            status = 0
        finally:
            os._exit(status)
    os.close(writable)
    chunks, deadline, finished = [], time.monotonic() + seconds, False
    try:
        with os.fdopen(readable, "rb", buffering=0) as sent:
            while select.select([sent], [], [], max(0.0, deadline - time.monotonic()))[0]:
                chunk = sent.read(1 << 20)
                if not chunk:
                    finished = True
                    break
                chunks.append(chunk)
    finally:
        if not finished:  # out of time, or this process is stopping
            os.kill(child, signal.SIGKILL)
        _, status = os.waitpid(child, 0)
    if not finished:
        return None, "its reader did not finish in %.0f s (a damaged file?)" % seconds
    if os.WIFSIGNALED(status):
        return None, "its reader crashed (%s)" % signal.Signals(os.WTERMSIG(status)).name
    if os.WEXITSTATUS(status) != 0:
        return None, "its reader ended without a result"
    return pickle.loads(b"".join(chunks))
