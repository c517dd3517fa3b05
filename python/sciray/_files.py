"""Files written whole or not at all: under a temporary name beside their
own, moved into place when complete, so that a failed or interrupted write
leaves an earlier file of that name as it was."""
from __future__ import annotations

import contextlib
import os
import tempfile


@contextlib.contextmanager
def written_whole(path: str | os.PathLike, suffix: str):
    """A binary file to write; when the block ends without an error it
    becomes `path`, with the permissions a new file gets, else it is removed.

    >>> with written_whole("out.ren", ".ren") as out:     # doctest: +SKIP
    ...     out.write(b"...")
    """
    path = os.fspath(path)
    handle, partial = tempfile.mkstemp(prefix=".sciray-", suffix=suffix, dir=os.path.dirname(os.path.abspath(path)))
    try:
        with os.fdopen(handle, "wb") as out:
            yield out
        mask = os.umask(0)
        os.umask(mask)
        os.chmod(partial, 0o666 & ~mask)
        os.replace(partial, path)
    finally:
        if os.path.exists(partial):
            os.unlink(partial)
