#!/usr/bin/env bash
# Starts and stops a one-node Slurm cluster on this machine (Debian's
# slurm-wlm and munge, run as root), to try sciray-farm's Slurm engine
# without a cluster:
#
#   eval "$(scripts/local-slurm.sh start)"   # prints "export SLURM_CONF=..."
#   scripts/local-slurm.sh stop
#
# The munge key, the filled-in slurm.conf, state and logs live in
# SCIRAY_SLURM_DIR (default /tmp/sciray-slurm). Starting a running cluster
# only prints the export line again; stopping cancels every job and leaves
# no daemon running.
set -euo pipefail

dir=${SCIRAY_SLURM_DIR:-/tmp/sciray-slurm}
conf=$dir/slurm.conf
template=$(dirname "$0")/local-slurm.conf
host=$(hostname -s)
daemons=(slurmd slurmctld munged)  # in the order they are stopped

fail() {
  echo "local-slurm: $*" >&2
  exit 1
}

# True when the daemon named $1 runs with the pid in its pid file.
running() {
  local pid
  pid=$(cat "$dir/$1.pid" 2>/dev/null) || return 1
  [ -n "$pid" ] && [ "$(cat "/proc/$pid/comm" 2>/dev/null)" = "$1" ] &&
    ! grep -q '^State:[[:space:]]*Z' "/proc/$pid/status" 2>/dev/null
}

# Runs the command "$@" every half second until it succeeds; false after $1 seconds.
wait_until() {
  local tries=$(($1 * 2))
  shift
  until "$@"; do
    tries=$((tries - 1))
    [ "$tries" -gt 0 ] || return 1
    sleep 0.5
  done
}

node_idle() { [ "$(SLURM_CONF=$conf sinfo -h -n "$host" -o %t 2>/dev/null)" = idle ]; }
queue_empty() { [ -z "$(SLURM_CONF=$conf squeue -h -o %i 2>/dev/null)" ]; }
not_running() { ! running "$1"; }

start() {
  [ "$(id -u)" -eq 0 ] || fail "start must run as root (the daemons run jobs for any user)"
  for program in munged slurmctld slurmd sinfo; do
    command -v "$program" >/dev/null || fail "$program not found: install slurm-wlm and munge (bash scripts/setup.sh)"
  done
  mkdir -p "$dir/state" "$dir/spool"
  chmod 755 "$dir"  # munged wants every user able to reach its socket
  if [ ! -s "$dir/munge.key" ]; then
    (umask 077 && head -c 1024 /dev/urandom >"$dir/munge.key")
  fi
  if ! running slurmctld; then
    sed -e "s|@DIR@|$dir|g" -e "s|@HOST@|$host|g" -e "s|@CPUS@|$(nproc)|g" "$template" >"$conf"
  fi

  running munged || munged --socket="$dir/munge.socket" --key-file="$dir/munge.key" \
    --pid-file="$dir/munged.pid" --log-file="$dir/munged.log" --seed-file="$dir/munged.seed" ||
    fail "munged did not start; see $dir/munged.log"
  # -c: a new cluster starts with no jobs left over from an earlier one.
  running slurmctld || SLURM_CONF=$conf slurmctld -c || fail "slurmctld did not start; see $dir/slurmctld.log"
  running slurmd || SLURM_CONF=$conf slurmd -N "$host" || fail "slurmd did not start; see $dir/slurmd.log"
  wait_until 60 node_idle || fail "node $host did not become idle; see $dir/slurmctld.log and $dir/slurmd.log"
  echo "local-slurm: cluster running on $host; state and logs in $dir" >&2
  echo "export SLURM_CONF=$conf"
}

stop() {
  if running slurmctld; then
    SLURM_CONF=$conf squeue -h -o %i | xargs -r env SLURM_CONF="$conf" scancel
    wait_until 30 queue_empty || echo "local-slurm: jobs still listed after 30 s; stopping anyway" >&2
  fi
  for daemon in "${daemons[@]}"; do
    running "$daemon" || continue
    kill "$(cat "$dir/$daemon.pid")"
    if ! wait_until 10 not_running "$daemon"; then
      kill -KILL "$(cat "$dir/$daemon.pid")" 2>/dev/null || true
      wait_until 5 not_running "$daemon" || fail "$daemon (pid $(cat "$dir/$daemon.pid")) does not stop"
    fi
  done
  echo "local-slurm: stopped; logs in $dir" >&2
}

case ${1:-} in
  start) start ;;
  stop) stop ;;
  *)
    echo "usage: local-slurm.sh start|stop" >&2
    exit 1
    ;;
esac
