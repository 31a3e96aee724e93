# shellcheck shell=bash
# The source of Google Benchmark, for the benchmarks that run on Windows: Debian packs the library for its own machines
# only. It comes from where the machine's own packages come from, by a state of apt's of our own, so that the machine's
# stays as it is.

benchmark_source=$build/google-benchmark

fetch_benchmark_source() {
  if [ -f "$benchmark_source/CMakeLists.txt" ]; then return; fi
  say 'Fetching the source of Google Benchmark'
  local apt=$build/apt archive
  rm -rf "$apt" "$benchmark_source" "$benchmark_source.new"
  mkdir -p "$apt"/{sources,state/lists/partial,cache/archives/partial} "$benchmark_source.new"
  private_sources "$apt/sources"
  cat >"$apt/apt.conf" <<END
Dir::Etc::SourceList "/dev/null";
Dir::Etc::SourceParts "$apt/sources";
Dir::State "$apt/state";
Dir::State::status "/var/lib/dpkg/status";
Dir::Cache "$apt/cache";
APT::Sandbox::User "root";
END
  # An index that can't be fetched may be one that isn't needed: only the download itself decides.
  APT_CONFIG=$apt/apt.conf apt-get -q -o Acquire::Retries=3 update >"$build/logs/apt-sources.log" 2>&1 ||
    warn 'not every index of sources could be fetched (build/logs/apt-sources.log)'
  (
    cd "$apt" || exit
    APT_CONFIG=$apt/apt.conf logged apt-source apt-get -q -o Acquire::Retries=3 source --download-only benchmark
  )
  archive=$(find "$apt" -maxdepth 1 -name 'benchmark_*.orig.tar.*' ! -name '*.asc')
  [ -n "$archive" ] || fail "the package has brought no source (build/logs/apt-source.log)"
  tar -xf "$archive" --strip-components=1 -C "$benchmark_source.new"
  mv "$benchmark_source.new" "$benchmark_source"
  rm -rf "$apt"
}

# private_sources FOLDER: writes the machine's own sources there, each for source packages instead of binary ones.
private_sources() {
  local list
  for list in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ ! -f "$list" ] ||
      sed -nE 's/^[[:blank:]]*deb(-src)?([[:blank:]])/deb-src\2/p' "$list" | sort -u >"$1/$(basename "$list" .list).list"
  done
  for list in /etc/apt/sources.list.d/*.sources; do
    [ ! -f "$list" ] || sed 's/^Types:.*/Types: deb-src/' "$list" >"$1/$(basename "$list")"
  done
}
