"""test_fuzz_corpora.py - the Python fuzz targets (fuzz/import_fuzz.py,
fuzz/scene_builder_fuzz.py) replay their seeds and every input that once
found a fault, as the C++ targets replay theirs under ctest: each must pass
the target's checks again."""
import importlib.util
import os

import pytest

from conftest import SOURCE
from sciray.mesh_import import reader_process

FUZZ = os.path.join(SOURCE, "fuzz")


def target(name):
    spec = importlib.util.spec_from_file_location(name + "_fuzz", os.path.join(FUZZ, name + "_fuzz.py"))
    module = importlib.util.module_from_spec(spec)
    spec.loader.exec_module(module)
    return module


def inputs(name):
    found = []
    for folder in (os.path.join(FUZZ, "corpus", name), os.path.join(FUZZ, "corpus", "regressions", name)):
        if os.path.isdir(folder):
            found += sorted(os.path.join(folder, f) for f in os.listdir(folder))
    return found


@pytest.mark.parametrize("name", ["import", "scene_builder"])
def test_the_corpus_passes_the_target(name, monkeypatch):
    monkeypatch.syspath_prepend(FUZZ)  # the targets' shared module
    replayed = inputs(name)
    assert replayed, "no seeds"
    module = target(name)
    if name == "import":  # the readers' time as the fuzzer gives it
        monkeypatch.setattr(reader_process, "SECONDS", module.READ_SECONDS)
    check = module.test_one_input
    for path in replayed:
        with open(path, "rb") as f:
            check(f.read())  # raises, as under the fuzzer, on a finding
