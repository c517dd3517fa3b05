#!/usr/bin/env bash
# Renders the pictures of the four contour styles shown in the scene file
# reference: the surface of examples/surface_bands.ren drawn in each style,
# 160 x 120 pixels, as DIR/contour-STYLE.png (DIR: docs/scene-format).
# SCIRAY and SCIRAY_PNG name the programs (default: build/).
set -euo pipefail
cd "$(dirname "$0")/.."
out=${1:-docs/scene-format}
sciray=${SCIRAY:-build/sciray}
sciray_png=${SCIRAY_PNG:-build/sciray-png}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$out"
for style in lines centroid bands continuous; do
  { sed "s/style gr_contour_bands/style gr_contour_$style/" examples/surface_bands.ren
    echo 'render_002 { width 160 height 120 }'; } >"$work/$style.ren"
  "$sciray" "$work/$style.ren" "$work/$style.rgb" >/dev/null
  "$sciray_png" "$out/contour-$style.png" "$work/$style.rgb"
done
