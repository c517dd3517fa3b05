#!/usr/bin/env bash
# Renders each scene with one thread and with N threads, in turn, and prints
# a table of median wall times, the speed-up, and whether the two pictures
# and outputs are the same bytes.
#
#   bench/thread-speedup.sh [--threads N] [--runs R] [--size W H]
#                           [--no-antialias] [--out FILE] SCENE...
#
# N defaults to the number of processors. --size renders at W x H instead
# of the scene's own size and --no-antialias with anti-aliasing off, both
# on a copy of the scene. SCIRAY names the renderer (default build/sciray).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
threads=$(nproc) runs=3 size="" no_aa=0 out=""
while [ $# -gt 0 ]; do
  case "$1" in
    --threads) threads=$2; shift 2 ;;
    --runs) runs=$2; shift 2 ;;
    --size) size="$2 $3"; shift 3 ;;
    --no-antialias) no_aa=1; shift ;;
    --out) out=$2; shift 2 ;;
    -*) sed -n '2,10p' "$0" >&2; exit 2 ;;
    *) break ;;
  esac
done
[ $# -gt 0 ] || { sed -n '2,10p' "$0" >&2; exit 2; }
sciray=${SCIRAY:-$root/build/sciray}
[ -x "$sciray" ] || { echo "thread-speedup: no renderer at $sciray (build first)" >&2; exit 2; }
[ -x /usr/bin/time ] || { echo "thread-speedup: install the package time" >&2; exit 2; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# One run of SCENE with T threads: its wall seconds; picture and output kept under TAG.
run() {
  local scene=$1 t=$2 tag=$3
  /usr/bin/time -f "%e" -o "$work/time" "$sciray" "$scene" "$work/$tag.rgb" -threads "$t" >"$work/$tag.out" 2>"$work/err" ||
    { echo "thread-speedup: failed: $scene -threads $t" >&2; cat "$work/err" >&2; exit 1; }
  cat "$work/time"
}
median() { sort -n | awk '{ v[NR] = $1 } END { printf "%.2f", v[int((NR + 1) / 2)] }'; }

table="| scene | size | anti-aliasing | 1 thread s | $threads threads s | speed-up | same bytes |
|---|---|---|---:|---:|---:|---|"
for original in "$@"; do
  name=$(basename "$original" .ren)
  scene="$work/$name.ren"
  cp "$original" "$scene"
  if [ -n "$size" ]; then
    read -r w h <<<"$size"
    sed -E -i "0,/width [0-9]+ +height [0-9]+/s//width $w height $h/" "$scene"
  fi
  [ "$no_aa" -eq 1 ] && sed -E -i 's/antialias +true/antialias false/' "$scene"
  : >"$work/one" && : >"$work/many"
  for ((i = 0; i < runs; ++i)); do
    run "$scene" 1 one >>"$work/one"
    run "$scene" "$threads" many >>"$work/many"
  done
  same=no
  cmp -s "$work/one.rgb" "$work/many.rgb" && cmp -s "$work/one.out" "$work/many.out" && same=yes
  dims=$(grep -oE -m1 'width [0-9]+ +height [0-9]+' "$scene" | awk '{ print $2 "x" $4 }')
  aa=$(grep -qE 'antialias +true' "$scene" && echo on || echo off)
  one=$(median <"$work/one") many=$(median <"$work/many")
  row="| $name | $dims | $aa | $one | $many | $(awk -v a="$one" -v b="$many" 'BEGIN { printf "%.2f", a / b }') | $same |"
  echo "$row" >&2
  table+=$'\n'"$row"
done
summary="median of $runs runs each, on $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ *//') ($(nproc) processors)"
echo "$table"
echo "$summary"
[ -z "$out" ] || printf '%s\n\n%s\n' "$summary" "$table" >"$out"
