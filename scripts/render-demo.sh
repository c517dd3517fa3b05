#!/usr/bin/env bash
# Installs only what building sciray takes (a compiler, CMake, make and
# libpng), builds sciray and sciray-png in build/ (no tests, no Python
# module), and renders the example scene to demo.rgb and demo.png.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh demo
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DSCIRAY_TESTS=OFF -DSCIRAY_SYSTEM_IMPORTER=OFF
cmake --build build -j"$(nproc)" --target sciray sciray-png
build/sciray examples/demo.ren demo.rgb
build/sciray-png demo.png demo.rgb
echo "wrote demo.rgb and demo.png"
