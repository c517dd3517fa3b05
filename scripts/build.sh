#!/usr/bin/env bash
# Sets up the machine and builds sciray (renderer, picture tool, the Python
# programs and the tests) in build/.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DSCIRAY_TESTS=ON
cmake --build build -j"$(nproc)"
