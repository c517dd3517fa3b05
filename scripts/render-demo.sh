#!/usr/bin/env bash
# Builds sciray and renders the example scene to demo.rgb and demo.png.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
build/sciray examples/demo.ren demo.rgb
build/sciray-png demo.png demo.rgb
echo "wrote demo.rgb and demo.png"
