# shellcheck shell=bash
# Sourced by every script here: where things lie, and how the scripts speak.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$root/build
mkdir -p "$build/logs"

# The build that runs under Wine: that for 64-bit Windows, unless HARBOURLINE_PRESET names the other one. What the two leave
# in one place (prefixes of Wine, logs, pictures) is told apart by what is added to its name.
preset=${HARBOURLINE_PRESET:-windows-x64}
# Not every script needs both.
# shellcheck disable=SC2034
case $preset in
  windows-x64) bits=64 apart='' ;;
  windows-x86) bits=32 apart=-32 ;;
  *)
    printf 'Error: HARBOURLINE_PRESET is no build for Windows: %s\n' "$preset" >&2
    exit 1
    ;;
esac

# True when what is in build/ is to be run as it is: nothing is installed, and nothing built.
already_built() { [ -n "${HARBOURLINE_BUILT:-}" ]; }

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
