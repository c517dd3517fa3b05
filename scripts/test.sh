#!/usr/bin/env bash
# Builds sciray and runs every test: the C++ and program tests with ctest,
# then the Python package, installed into build/venv, with pytest.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
ctest --test-dir build -j"$(nproc)" --output-on-failure
bash scripts/python-test.sh "$@"
