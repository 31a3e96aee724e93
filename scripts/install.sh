# shellcheck shell=bash
# Installs what packages.txt lists and the machine lacks, and fetches the source of miniupnpc. Nothing is asked of the
# network when nothing is missing.

source "$(dirname "${BASH_SOURCE[0]}")/debian-source.sh"

# listed_packages WORDS: those below the headings with these words; all without words.
listed_packages() {
  awk -v words="$1" '/^#/ { wanted = words == "" || index($0, words) } /^[^#]/ && wanted { print $1 }' "$root/scripts/packages.txt"
}

missing_packages() {
  local package
  while read -r package; do
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || printf '%s\n' "$package"
  done < <(listed_packages '')
}

install_packages() {
  if ! command -v dpkg-query >/dev/null; then
    warn "this isn't a Debian machine: what is needed stands in scripts/packages.txt; going on with what is here"
    return
  fi
  fetch_miniupnpc_source
  local missing
  mapfile -t missing < <(missing_packages)
  ((${#missing[@]})) || return 0

  say "Installing what this machine lacks: ${missing[*]}"
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null ||
      fail "installing needs root: run as root, or with sudo there, or let root run: apt-get install ${missing[*]}"
    as_root=(sudo)
  fi
  # An index that can't be fetched may be one that isn't needed: only the installation itself decides.
  "${as_root[@]}" apt-get -q -o Acquire::Retries=3 update >"$build/logs/apt-update.log" 2>&1 ||
    warn "the package index could not be brought up to date (build/logs/apt-update.log); trying with what it has"
  logged apt-install "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y --no-install-recommends \
    -o Acquire::Retries=3 -o DPkg::Lock::Timeout=300 install "${missing[@]}"

  mapfile -t missing < <(missing_packages)
  ((${#missing[@]} == 0)) || fail "still missing after the installation: ${missing[*]}"
}
