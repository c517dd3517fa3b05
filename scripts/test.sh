#!/usr/bin/env bash
# Builds sciray and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
ctest --test-dir build -j"$(nproc)" --output-on-failure
