#!/usr/bin/env bash
# Sets up the machine and builds sciray (renderer, picture tool and tests) in build/.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release
cmake --build build -j"$(nproc)"
