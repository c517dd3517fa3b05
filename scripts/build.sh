#!/usr/bin/env bash
# Sets up the machine and builds sciray (renderer, picture tool, the Python
# programs and the tests) in build/.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
# sciray-import's module for the system's Python is built with nanobind,
# which Debian 12 does not package: it is fetched from the Python package
# index into a virtual environment of its own.
if ! build/tools/bin/python -m nanobind --cmake_dir >/dev/null 2>&1; then
  /usr/bin/python3 -m venv build/tools
  build/tools/bin/python -m pip install -q "nanobind>=2.4"
fi
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DSCIRAY_TESTS=ON -DSCIRAY_NANOBIND_PYTHON="$PWD/build/tools/bin/python"
cmake --build build -j"$(nproc)"
