# shellcheck shell=bash
# Builds by the presets of CMakePresets.json, each in build/<preset>.

# build_preset PRESET [OPTION...]: configures when that is due, and builds with these options of cmake --build.
build_preset() {
  local preset=$1 folder=$build/$1
  shift
  if [ ! -f "$folder/build.ninja" ] || [ "$root/CMakePresets.json" -nt "$folder/configured" ]; then
    if command -v ccache >/dev/null; then export CMAKE_CXX_COMPILER_LAUNCHER=ccache; fi
    (cd "$root" && cmake --preset "$preset" --fresh) || return
    touch "$folder/configured"
  fi
  (cd "$root" && cmake --build --preset "$preset" "$@")
}
