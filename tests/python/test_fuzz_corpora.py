"""test_fuzz_corpora.py - the Python fuzz targets (fuzz/import_fuzz.py,
fuzz/scene_builder_fuzz.py) replay their seeds and every input that once
found a fault, as the C++ targets replay theirs under ctest: each must pass
the target's checks again."""
import importlib
import os

import pytest

from conftest import SOURCE
from sciray.mesh_import import reader_process

FUZZ = os.path.join(SOURCE, "fuzz")


def inputs(name):
    found = []
    for folder in (os.path.join(FUZZ, "corpus", name), os.path.join(FUZZ, "corpus", "regressions", name)):
        if os.path.isdir(folder):
            found += sorted(os.path.join(folder, f) for f in os.listdir(folder))
    return found


@pytest.mark.parametrize("name", ["import", "scene_builder"])
def test_the_corpus_passes_the_target(name, monkeypatch):
    monkeypatch.syspath_prepend(FUZZ)  # the targets and their shared module
    replayed = inputs(name)
    assert replayed, "no seeds"
    module = importlib.import_module(name + "_fuzz")
    if name == "import":  # the readers' time as the fuzzer gives it
        monkeypatch.setattr(reader_process, "SECONDS", module.READ_SECONDS)
    check = module.test_one_input
    for path in replayed:
        with open(path, "rb") as f:
            check(f.read())  # raises, as under the fuzzer, on a finding
