# shellcheck shell=bash
# Sourced by every script here: where things lie, and how the scripts speak.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$root/build
mkdir -p "$build/logs"

# What the script is doing.
say() { printf '==> %s\n' "$*"; }
# Something that the reader should know, while the script goes on.
warn() { printf 'Warning: %s\n' "$*" >&2; }
# What went wrong; the script ends.
fail() {
  printf 'Error: %s\n' "$*" >&2
  exit 1
}

# The version in the project line of the build.
project_version() { sed -n 's/^project(Harbourline VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt"; }

# logged NAME COMMAND...: runs the command with its output in build/logs/NAME.log, and shows the end of that when the
# command fails.
logged() {
  local log=$build/logs/$1.log
  shift
  if ! "$@" >"$log" 2>&1 </dev/null; then
    tail -n 40 "$log" >&2
    fail "'$*' failed; all that it said is in ${log#"$root"/}"
  fi
}

# until_true SECONDS COMMAND...: tries the command again and again until it succeeds; false when the time is over.
until_true() {
  local end=$((SECONDS + $1))
  shift
  until "$@" >/dev/null 2>&1; do
    ((SECONDS < end)) || return 1
    sleep 0.1
  done
}
