#!/usr/bin/env bash
# Writes the benchmark scenes (balls, sticks and mesh of the given sizes) for
# sciray (.ren) and Tachyon (.dat) into OUTDIR, with the shared benchmark
# generator; scenes already there are kept.
#
#   bench/make-scenes.sh OUTDIR WIDTH HEIGHT SIZE...     (SIZE: small, medium, large)
#
# BENCH_GEN names the generator (default: ../shared/bench/gen.py, the shared
# benchmark folder beside the repository).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
gen=${BENCH_GEN:-$root/../shared/bench/gen.py}
[ $# -ge 4 ] || { sed -n '2,9p' "$0" >&2; exit 2; }
out=$1 width=$2 height=$3
shift 3
[ -f "$gen" ] || { echo "make-scenes: no benchmark generator at $gen (set BENCH_GEN)" >&2; exit 2; }
mkdir -p "$out"
for size in "$@"; do
  for family in balls sticks mesh; do
    name=${family}_${size}
    [ -f "$out/$name.ren" ] && [ -f "$out/$name.dat" ] && continue
    python3 "$gen" "$family" "$size" --width "$width" --height "$height" --outdir "$out" --name "$name" >/dev/null
    echo "$out/$name.ren"
  done
done
