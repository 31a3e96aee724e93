# shellcheck shell=bash
# Sources of libraries that are compiled for Windows here: Debian packs them for its own machines only. They come from
# where the machine's own packages come from, by a state of apt's of our own, so that the machine's stays as it is.
# Nothing is asked of the network for a source that is there.

# The benchmarks that run on Windows.
fetch_benchmark_source() { fetch_source benchmark "$build/google-benchmark" 'Google Benchmark'; }
# Discovery and calls of the UPnP plug-in.
fetch_miniupnpc_source() { fetch_source miniupnpc "$build/miniupnpc" miniupnpc; }

# fetch_source PACKAGE FOLDER NAME: brings the library's source, as its makers handed it out, into FOLDER.
fetch_source() {
  local package=$1 folder=$2 name=$3 apt=$build/apt-$1 archive
  if [ -f "$folder/CMakeLists.txt" ]; then return; fi
  say "Fetching the source of $name"
  rm -rf "$apt" "$folder" "$folder.new"
  mkdir -p "$apt"/{sources,state/lists/partial,cache/archives/partial} "$folder.new"
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
    APT_CONFIG=$apt/apt.conf logged apt-source apt-get -q -o Acquire::Retries=3 source --download-only "$package"
  )
  archive=$(find "$apt" -maxdepth 1 -name "${package}_*.orig.tar.*" ! -name '*.asc')
  [ -n "$archive" ] || fail "the package has brought no source (build/logs/apt-source.log)"
  tar -xf "$archive" --strip-components=1 -C "$folder.new"
  mv "$folder.new" "$folder"
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
