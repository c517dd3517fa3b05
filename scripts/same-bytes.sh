#!/usr/bin/env bash
# Renders a fixed set of scenes and keeps every picture and every standard
# output, or renders them again and compares byte for byte. Run "save"
# before a change that must not move a byte (speed, memory, threads) and
# "check" after it:
#
#   scripts/same-bytes.sh save  DIR [--large] [-- EXTRA_ARGS...]
#   scripts/same-bytes.sh check DIR [--large] [-- EXTRA_ARGS...]
#
# EXTRA_ARGS go to every sciray run after its own arguments (for example
# "-threads 3", to check that a thread count changes nothing). The scenes:
# the examples, feature variants of them (lights without anti-aliasing,
# haze, orthographic, bands), and the benchmark scenes made by
# bench/make-scenes.sh (small and medium; --large adds the large ones).
# SCIRAY (default build/sciray) names the renderer.
set -euo pipefail
cd "$(dirname "$0")/.."

mode=${1:-}
dir=${2:-}
[ "$mode" = save ] || [ "$mode" = check ] || { sed -n '2,16p' "$0" >&2; exit 2; }
[ -n "$dir" ] || { echo "same-bytes: a directory is needed" >&2; exit 2; }
shift 2
large=0
if [ "${1:-}" = --large ]; then large=1; shift; fi
if [ "${1:-}" = -- ]; then shift; fi
extra=("$@")
sciray=${SCIRAY:-build/sciray}
[ -x "$sciray" ] || { echo "same-bytes: no renderer at $sciray (build first)" >&2; exit 2; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$dir"

# name | scene | settings appended to the scene | band arguments
scenes=(
  "demo|examples/demo.ren||"
  "glass|examples/glass.ren||"
  "molecule|examples/molecule.ren||"
  "preview|examples/preview.ren||"
  "surface_bands|examples/surface_bands.ren||"
  "surface_continuous|examples/surface_continuous.ren||"
  "weather|examples/weather.ren||"
  "area_spot_plain|examples/molecule.ren|render_002 { antialias false }|"
  "glass_plain|examples/glass.ren|render_002 { antialias false width 160 height 120 }|"
  "clouds_sharp|examples/weather.ren|render_002 { cloud_sharpness 0.9 antialias_depth 4 }|"
  "haze|examples/demo.ren|render_002 { atmosphere 0.7 0.7 0.75 atmosphere_len 6 }|"
  "orthographic|examples/surface_bands.ren|viewing_001 { projection orthographic }|"
  "blocks_band|examples/preview.ren||-band 2/3"
  "demo_band|examples/demo.ren||-band 2/3"
  "molecule_band|examples/molecule.ren||-band 3/7"
  "weather_band|examples/weather.ren|render_002 { antialias false }|-band 1/2"
)
sizes=(small medium)
[ "$large" = 1 ] && sizes+=(large)
bash bench/make-scenes.sh "$work/bench" 640 480 "${sizes[@]}" >/dev/null
for size in "${sizes[@]}"; do
  for family in balls sticks mesh; do
    scenes+=("${family}_${size}|$work/bench/${family}_${size}.ren||")
  done
done

failures=0
for entry in "${scenes[@]}"; do
  IFS='|' read -r name scene settings band <<<"$entry"
  input=$scene
  if [ -n "$settings" ]; then
    input="$work/$name.ren"
    { cat "$scene"; printf '\n%s\n' "$settings"; } >"$input"
  fi
  # shellcheck disable=SC2086
  "$sciray" "$input" "$work/$name.rgb" $band "${extra[@]}" >"$work/$name.out" 2>"$work/$name.err" ||
    echo "exit $?" >>"$work/$name.err"
  [ -f "$work/$name.rgb" ] || echo "no picture" >"$work/$name.rgb"
  if [ "$mode" = save ]; then
    cp "$work/$name.rgb" "$work/$name.out" "$work/$name.err" "$dir/"
    echo "saved $name"
    continue
  fi
  for kind in rgb out err; do
    if ! cmp -s "$work/$name.$kind" "$dir/$name.$kind"; then
      echo "DIFFERS: $name ($kind)"
      failures=$((failures + 1))
    fi
  done
  echo "checked $name"
done
if [ "$mode" = check ]; then
  if [ "$failures" -gt 0 ]; then
    echo "same-bytes: $failures outputs differ" >&2
    exit 1
  fi
  echo "same-bytes: every picture and every output line is unchanged"
fi
