#!/usr/bin/env bash
# The files built for AVX2 or AVX-512 must define no symbol that another
# file could define too: the linker keeps one copy of an inline function or
# template made in several files, and if it kept the one compiled for
# AVX-512 a processor without it would stop there. Every symbol they share
# with the program names their own lane type, or is their entry function.
#
#   tests/tools/vector_objects_test.sh OBJECT...
set -euo pipefail
status=0
for object in "$@"; do
  case "$object" in *avx512*) own=avx512 ;; *avx2*) own=avx2 ;; *) continue ;; esac
  # Global and weak symbols: those the linker may take from this file.
  shared=$(nm -C --defined-only "$object" | awk '$2 ~ /^[TWVuBDR]$/ { $1 = ""; $2 = ""; print }' |
    grep -v -e "${own}_lanes" -e "group_intersect::${own}(" || true)
  if [ -n "$shared" ]; then
    echo "$object defines symbols another file may define too:" >&2
    echo "$shared" >&2
    status=1
  fi
done
exit $status
