# shellcheck shell=bash
# The C++ files of the tree, one a line, for the checks. Run in its root.

source_files() {
  local folder
  for folder in src plug-ins tests bench profiles; do
    if [ -d "$folder" ]; then find "$folder" \( -name '*.h' -o -name '*.cpp' \) -type f; fi
  done | LC_ALL=C sort
}
