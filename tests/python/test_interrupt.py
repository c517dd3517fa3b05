"""test_interrupt.py - Ctrl-C during a long in-process render: a SIGINT to
a Python process that renders stops the render within a second, raises
KeyboardInterrupt, and the process renders again afterwards. Rendering
and saving leave the process's signal handlers as they were (the programs
install their own, the module must not)."""
import os
import signal
import subprocess
import sys
import time

from conftest import SOURCE

RENDER_TWICE = r"""
import sys, time, sciray
scene = sciray.Scene.load(sys.argv[1])
scene.render(width=2000, height=6000, antialias=False)
print("rendering", flush=True)
try:
    sciray.render(scene, threads=2)
    print("finished", flush=True)
except KeyboardInterrupt:
    print("interrupted %.3f" % time.monotonic(), flush=True)
small = sciray.render(sys.argv[2], threads=2)
print("again", small.objects, flush=True)
"""


def test_ctrl_c_stops_a_long_render_within_a_second():
    examples = os.path.join(SOURCE, "examples")
    process = subprocess.Popen([sys.executable, "-c", RENDER_TWICE, os.path.join(examples, "glass.ren"),
                                os.path.join(examples, "preview.ren")], stdout=subprocess.PIPE, text=True)
    assert process.stdout.readline() == "rendering\n"
    time.sleep(1.5)  # well into the rows (the whole render takes minutes)
    sent = time.monotonic()
    process.send_signal(signal.SIGINT)
    out, _ = process.communicate(timeout=120)
    lines = out.splitlines()
    assert lines[0].startswith("interrupted"), out
    assert float(lines[0].split()[1]) - sent < 1.0
    assert lines[1].startswith("again ") and process.returncode == 0


SIGNAL_HANDLERS = r"""
import ctypes, signal, sys
libc = ctypes.CDLL(None)
def handlers():
    found = []
    for number in (signal.SIGHUP, signal.SIGINT, signal.SIGQUIT, signal.SIGPIPE, signal.SIGTERM,
                   signal.SIGXCPU, signal.SIGXFSZ):
        action = ctypes.create_string_buffer(256)  # a struct sigaction, its handler first
        assert libc.sigaction(number, None, action) == 0
        found.append(ctypes.c_void_p.from_buffer(action).value)
    return found
before = handlers()
import sciray
picture = sciray.render(sys.argv[1], threads=2, mark=False)
picture.save(sys.argv[2])
picture.save(sys.argv[3])
print(handlers() == before)
"""


def test_rendering_and_saving_leave_the_signal_handlers_alone(tmp_path):
    preview = os.path.join(SOURCE, "examples", "preview.ren")
    result = subprocess.run([sys.executable, "-c", SIGNAL_HANDLERS, preview, str(tmp_path / "p.png"),
                             str(tmp_path / "p.rgb")], capture_output=True, text=True, timeout=120)
    assert result.returncode == 0, result.stderr
    assert result.stdout == "True\n"
