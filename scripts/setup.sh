#!/usr/bin/env bash
# Installs what sciray needs on a Debian machine. Packages already present
# are left alone.
#
#   scripts/setup.sh        # everything: building, testing, the farm, fuzzing
#   scripts/setup.sh demo   # only building sciray and sciray-png
#
# "demo" installs a compiler, CMake, make and libpng (without the packages
# they merely recommend). Everything else is what the tests use: GoogleTest
# and Google Benchmark; Python's venv and headers for the Python package;
# numpy, meshio and matplotlib for sciray-import with the system's Python;
# the GL library the VTK wheels that its tests use load; what sciray-farm and
# its tests use (Slurm, munge, an ssh server, GNU parallel with rsync,
# ffmpeg); what the package test uses (dpkg-dev finds the package's library
# dependencies; man renders its pages); and clang with libFuzzer and the
# sanitizer runtimes for the fuzz targets.
set -euo pipefail
packages=(g++ make cmake libpng-dev)
options=(--no-install-recommends)
if [ "${1:-}" != demo ]; then
  packages+=(libgtest-dev libbenchmark-dev python3 python3-venv python3-dev libgl1 python3-pil
    python3-numpy python3-meshio python3-matplotlib slurm-wlm munge openssh-server parallel rsync ffmpeg
    dpkg-dev man-db clang libfuzzer-14-dev libclang-rt-14-dev)
  options=()
fi
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -q
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -q "${options[@]}" "${missing[@]}"
fi
