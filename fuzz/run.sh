#!/usr/bin/env bash
# Builds the fuzz targets and runs one target, or each in turn, for SECONDS
# each:
#
#   fuzz/run.sh TARGET SECONDS    # TARGET: scene, render, picture, import or scene_builder
#   fuzz/run.sh all SECONDS
#
# scene, render and picture are libFuzzer targets in C++ (clang, with
# AddressSanitizer and UndefinedBehaviorSanitizer, built in build-fuzz/);
# import and scene_builder are atheris targets in Python, run with the
# package in build/venv (scripts/python-test.sh makes it, with atheris).
# A target starts from its seeds (fuzz/corpus/TARGET, its regression cases,
# and the examples for the scene targets) and keeps what it finds in
# build-fuzz/corpus/TARGET for the next run. Each run ends with a line
# "TARGET: N executions in S s". Any finding (crash, sanitizer report,
# uncaught Python exception, leak, timeout, running out of memory) stops
# that target; its input is written to build-fuzz/findings/ and the script
# exits with status 1.
set -euo pipefail
cd "$(dirname "$0")/.."

targets=(scene render picture import scene_builder)
target=${1:-}
seconds=${2:-}
if [ -z "$target" ] || ! [[ "$seconds" =~ ^[0-9]+$ ]]; then
  sed -n '2,18p' "$0" >&2
  exit 2
fi
[ "$target" = all ] || targets=("$target")
native=false python=false
for t in "${targets[@]}"; do
  if [ -f "fuzz/${t}_fuzz.cpp" ]; then
    native=true
  elif [ -f "fuzz/${t}_fuzz.py" ]; then
    python=true
  else
    echo "run.sh: no fuzz target $t" >&2
    exit 2
  fi
done
if $native; then
  command -v clang++ >/dev/null || { echo "run.sh: clang++ not found: run scripts/setup.sh" >&2; exit 2; }
  CC=clang CXX=clang++ cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=Release -DSCIRAY_FUZZ=ON >/dev/null
  cmake --build build-fuzz -j"$(nproc)" >/dev/null
fi
if $python && ! build/venv/bin/python -c 'import atheris, sciray' 2>/dev/null; then
  echo "run.sh: build/venv has no sciray or no atheris: run scripts/python-test.sh" >&2
  exit 2
fi

export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
status=0
for t in "${targets[@]}"; do
  corpus=build-fuzz/corpus/$t
  mkdir -p "$corpus" build-fuzz/findings
  seeds=(fuzz/corpus/"$t")
  [ -d fuzz/corpus/regressions/"$t" ] && seeds+=(fuzz/corpus/regressions/"$t")
  case $t in
    scene | render) seeds+=(examples) dict=fuzz/scene.dict fuzzer=(build-fuzz/fuzz/"$t"_fuzz) ;;
    picture) dict=fuzz/picture.dict fuzzer=(build-fuzz/fuzz/"$t"_fuzz) ;;
    *) dict=fuzz/$t.dict fuzzer=(build/venv/bin/python fuzz/"$t"_fuzz.py) ;;
  esac
  log=build-fuzz/$t.log
  started=$(date +%s)
  if "${fuzzer[@]}" "$corpus" "${seeds[@]}" -dict="$dict" -max_len=8192 -timeout=30 \
    -rss_limit_mb=2048 -max_total_time="$seconds" -print_final_stats=1 \
    -artifact_prefix=build-fuzz/findings/"$t"- >"$log" 2>&1; then
    result=ok
  else
    result=FINDING
    status=1
    tail -n 60 "$log" >&2
  fi
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
  echo "$t: ${runs:-?} executions in $(($(date +%s) - started)) s: $result (log: $log)"
done
exit "$status"
