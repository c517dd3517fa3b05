#!/usr/bin/env bash
# Installs the Python package from this tree into a virtual environment
# (build/venv, made with the system's Python if missing, or made anew with
# --fresh) with what its tests use (and atheris, which fuzz/run.sh runs the
# Python fuzz targets with), and runs its tests with pytest.
#
#   scripts/python-test.sh [--fresh] [PYTEST_ARGS...]
set -euo pipefail
cd "$(dirname "$0")/.."
# pip's downloads and the caches and settings of matplotlib and IPython stay
# in this tree, not in the home folder.
export PIP_CACHE_DIR=$PWD/build/cache/pip MPLCONFIGDIR=$PWD/build/cache/matplotlib IPYTHONDIR=$PWD/build/cache/ipython
venv=build/venv
if [ "${1:-}" = --fresh ]; then
  rm -rf "$venv" build/wheel
  shift
fi
[ -x "$venv/bin/python" ] || /usr/bin/python3 -m venv "$venv"
export CMAKE_BUILD_PARALLEL_LEVEL=${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}
"$venv/bin/python" -m pip install -q --upgrade pip
# build/wheel keeps the extension's build between runs.
"$venv/bin/python" -m pip install -q -C build-dir=build/wheel ".[mesh,molecules]" pyvista pytest nbclient nbformat ipykernel \
  MDAnalysisTests atheris
# The importer's tests keep their files in this build tree, apart from
# other checkouts' test runs on the same machine.
export SCIRAY_TEST_OUTPUT_DIR=${SCIRAY_TEST_OUTPUT_DIR:-$PWD/build/test_output/python}
"$venv/bin/python" -m pytest -p no:cacheprovider "$@" tests/python
