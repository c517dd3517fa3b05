"""test_program_outputs.py - what sciray's Python programs and savers share
about their outputs: a file is put in place whole or not at all, replacing
the file a link leads to with its permissions; a program ends on a signal
by the clean-up, then by that very signal; a signal that comes while one
is held waits until the held step is done."""
import errno
import os
import signal
import stat
import subprocess
import sys

import pytest

import sciray
from sciray._program_outputs import written_whole

PROGRAM = r"""
import os, signal, sys, time
from sciray import _program_outputs as outputs

def main():
    with outputs.signals_held():
        os.kill(os.getpid(), signal.SIGTERM)
        time.sleep(0.2)
        print("held step done", flush=True)
    print("not reached", flush=True)
    return 0

outputs.run(main, on_signal=lambda number: print("cleaned up after", number, flush=True))
"""


def test_a_held_signal_ends_the_program_after_the_step():
    result = subprocess.run([sys.executable, "-c", PROGRAM], capture_output=True, text=True, timeout=60)
    assert result.stdout == "held step done\ncleaned up after %d\n" % signal.SIGTERM
    assert result.returncode == -signal.SIGTERM
    assert result.stderr == ""


def test_an_output_is_put_in_place_whole_through_its_link_with_its_permissions(tmp_path):
    target, link = tmp_path / "scene.ren", tmp_path / "link.ren"
    target.write_text("old\n")
    os.chmod(target, 0o640)
    link.symlink_to(target.name)
    with written_whole(str(link)) as partial:
        assert os.path.dirname(partial) == str(tmp_path) and partial.endswith(".%d.tmp" % os.getpid())
        assert target.read_text() == "old\n"
        with open(partial, "w") as out:
            out.write("new\n")
    assert link.is_symlink() and target.read_text() == "new\n"
    assert stat.S_IMODE(target.stat().st_mode) == 0o640
    assert sorted(os.listdir(tmp_path)) == ["link.ren", "scene.ren"]


def test_a_save_that_fails_midway_leaves_the_earlier_file_and_no_partial_one(tmp_path, monkeypatch):
    class failing_text:  # the first chunk of the text, then a failure
        def __init__(self, pieces):
            self.chunks = [b"render_002 {\n"]

        def read(self, size):
            if not self.chunks:
                raise OSError(errno.EIO, "input/output error")
            return self.chunks.pop()

    path = tmp_path / "scene.ren"
    path.write_text("old\n")
    monkeypatch.setattr(sciray.scene._sciray, "SceneText", failing_text)
    with pytest.raises(OSError):
        sciray.Scene().save(path)
    assert path.read_text() == "old\n" and os.listdir(tmp_path) == ["scene.ren"]


def test_a_device_is_written_directly():
    with written_whole(os.devnull) as partial:
        assert partial == os.devnull
