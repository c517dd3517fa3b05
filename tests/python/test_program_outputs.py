"""test_program_outputs.py - how sciray's Python programs end on a signal:
the clean-up runs, then the program ends by that very signal; a signal
that comes while one is held waits until the held step is done."""
import signal
import subprocess
import sys

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
