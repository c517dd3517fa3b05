#!/usr/bin/env bash
# Times sciray against Tachyon on the benchmark scenes, the two renderers run
# in turn (sciray, Tachyon, sciray, ...) so that a drifting machine affects
# both alike, and prints a table of median wall time and largest peak
# memory per scene and thread count (from /usr/bin/time), with sciray's
# loading time (an empty band: reading, building, no row) and the ratio.
#
#   bench/compare-tachyon.sh [--sizes "medium large"] [--width W] [--height H]
#                            [--threads "1 2"] [--runs N] [--out FILE]
#
# Tachyon comes from Debian's package of that name (installed here when
# missing and running as root). SCIRAY names the renderer (default
# build/sciray); scenes are written by bench/make-scenes.sh into
# /tmp/sciray-bench/WxH (SCENES to change it).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
sizes="medium large" width=640 height=480 threads="1" runs=5 out=""
while [ $# -gt 0 ]; do
  case "$1" in
    --sizes) sizes=$2; shift 2 ;;
    --width) width=$2; shift 2 ;;
    --height) height=$2; shift 2 ;;
    --threads) threads=$2; shift 2 ;;
    --runs) runs=$2; shift 2 ;;
    --out) out=$2; shift 2 ;;
    *) sed -n '2,15p' "$0" >&2; exit 2 ;;
  esac
done
sciray=${SCIRAY:-$root/build/sciray}
scenes=${SCENES:-/tmp/sciray-bench/${width}x$height}
[ -x "$sciray" ] || { echo "compare-tachyon: no renderer at $sciray (build first)" >&2; exit 2; }
if ! command -v tachyon >/dev/null || [ ! -x /usr/bin/time ]; then
  [ "$(id -u)" -eq 0 ] || { echo "compare-tachyon: install the packages tachyon and time" >&2; exit 2; }
  DEBIAN_FRONTEND=noninteractive apt-get install -y -q tachyon time >/dev/null
fi
read -r -a size_list <<<"$sizes"
bash "$root/bench/make-scenes.sh" "$scenes" "$width" "$height" "${size_list[@]}" >/dev/null
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# One run: "wall_seconds peak_kib" of the command.
measure() {
  /usr/bin/time -f "%e %M" -o "$work/time" "$@" >/dev/null 2>"$work/err" ||
    { echo "compare-tachyon: failed: $*" >&2; cat "$work/err" >&2; exit 1; }
  cat "$work/time"
}
# The median of the first column and the largest second column of the lines on stdin.
summarise() { sort -n | awk '{ w[NR] = $1; if ($2 > m) m = $2 } END { printf "%.3f %d\n", w[int((NR + 1) / 2)], m }'; }

table="| scene | primitives | .ren MB | threads | sciray s | sciray MiB | of which loading s | Tachyon s | Tachyon MiB | sciray / Tachyon |
|---|---:|---:|---:|---:|---:|---:|---:|---:|---:|"
empty_band="1/$((2 * height + 1))"  # more bands than rows: the first is empty
for size in "${size_list[@]}"; do
  for family in balls sticks mesh; do
    name=${family}_$size
    primitives=$(python3 -c "import json; print(json.load(open('$scenes/$name.json'))['primitives'])")
    megabytes=$(du -m "$scenes/$name.ren" | cut -f1)
    for t in $threads; do
      : >"$work/ours" && : >"$work/theirs" && : >"$work/load"
      for ((i = 0; i < runs; ++i)); do
        measure "$sciray" "$scenes/$name.ren" "$work/out.rgb" -threads "$t" >>"$work/ours"
        measure tachyon "$scenes/$name.dat" -fullshade -shade_phong -aasamples 0 -numthreads "$t" -format PPM \
          -o "$work/out.ppm" >>"$work/theirs"
        measure "$sciray" "$scenes/$name.ren" "$work/empty.rgb" -band "$empty_band" >>"$work/load"
      done
      read -r ours ours_kib < <(summarise <"$work/ours")
      read -r theirs theirs_kib < <(summarise <"$work/theirs")
      read -r load _ < <(summarise <"$work/load")
      row=$(awk -v n="$name" -v p="$primitives" -v m="$megabytes" -v t="$t" -v o="$ours" -v ok="$ours_kib" \
        -v l="$load" -v th="$theirs" -v tk="$theirs_kib" \
        'BEGIN { printf "| %s | %d | %d | %d | %.2f | %.0f | %.2f | %.2f | %.0f | %.2f |", n, p, m, t, o, ok / 1024, l, th, tk / 1024, o / th }')
      table+=$'\n'"$row"
      echo "$row" >&2
    done
  done
done
printf '%s x %s, median of %s runs each, on %s\n\n%s\n' "$width" "$height" "$runs" "$(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | xargs) ($(nproc) processors)" "$table" |
  { if [ -n "$out" ]; then tee "$out"; else cat; fi; }
