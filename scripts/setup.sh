#!/usr/bin/env bash
# Installs what sciray needs to build, test and convert pictures on a Debian
# machine (with Python's venv and headers for the Python package, numpy,
# meshio and matplotlib for sciray-import with the system's Python, and the
# GL library the VTK wheels that its tests use load), what sciray-farm and its tests use (Slurm, munge, an ssh server,
# GNU parallel with rsync, ffmpeg), what the package test uses (dpkg-dev
# finds the package's library dependencies; man renders its pages), and
# clang with libFuzzer and the sanitizer runtimes for the fuzz targets.
# Packages already present are left alone.
set -euo pipefail
packages=(cmake g++ make libgtest-dev libbenchmark-dev libpng-dev python3 python3-venv python3-dev libgl1 python3-pil
  python3-numpy python3-meshio python3-matplotlib slurm-wlm munge openssh-server parallel rsync ffmpeg
  dpkg-dev man-db clang libfuzzer-14-dev libclang-rt-14-dev)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -q
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -q "${missing[@]}"
fi
