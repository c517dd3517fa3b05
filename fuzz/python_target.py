"""python_target.py - what the Python fuzz targets share: their imports of
the sciray package, with atheris's coverage when the target is fuzzed (run
as a program) and plain when the tests replay its corpus; and the run under
libFuzzer, with libFuzzer's options from the command line."""
import contextlib
import sys


def imports(fuzzing: bool):
    """The context for a target's imports of sciray."""
    if not fuzzing:
        return contextlib.nullcontext()
    import atheris
    return atheris.instrument_imports(include=["sciray"])


def fuzz(test_one_input) -> None:
    import atheris
    atheris.Setup(sys.argv, test_one_input)
    atheris.Fuzz()
