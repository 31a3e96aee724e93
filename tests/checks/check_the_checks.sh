#!/usr/bin/env bash
# Proves that the checks of the tree can fail: each case lays out a small tree with one breach, or none, and asks the
# check. Prints one line a case, and ends with 1 when a check said the wrong thing.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
scripts=$here/../../scripts
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
wrong=0

# expect RESULT CHECK FILE CONTENT: a tree of FILE with CONTENT, beside headers that may be included.
expect() {
  local result=$1 check=$2 file=$3 content=$4 answer=passes
  rm -rf "$place/tree"
  mkdir -p "$place/tree/src/base" "$place/tree/src/platform/win32" "$place/tree/src/shell" \
    "$(dirname "$place/tree/$file")"
  cp "$here/../../.clang-format" "$place/tree"
  touch "$place/tree/src/base/Known.h" "$place/tree/src/platform/Known.h" "$place/tree/src/shell/Known.h" \
    "$place/tree/src/platform/win32/Known.h"
  printf '%s\n' "$content" >"$place/tree/$file"
  "$scripts/$check" "$place/tree" >"$place/said" 2>&1 || answer=fails
  if [ "$answer" = "$result" ]; then
    echo "ok: $check $result: $file: ${content%%$'\n'*}"
  else
    echo "WRONG: $check $answer, and should not: $file: ${content%%$'\n'*}"
    cat "$place/said"
    wrong=1
  fi
}

expect passes check-headers src/model/A.cpp '#include <vector>'
expect passes check-headers src/model/A.cpp '#include "shell/Known.h"'
expect passes check-headers src/platform/win32/A.cpp '#include <windows.h>'
expect passes check-headers src/main.cpp '#include <windows.h>'
expect passes check-headers src/main.cpp '#include "platform/win32/Known.h"'
expect passes check-headers plug-ins/sdk/A.h '#include <oleauto.h>'
expect passes check-headers tests/windows/A.cpp '#include <shellapi.h>'
expect passes check-headers tests/unit/A.cpp '#include <gtest/gtest.h>'
expect passes check-headers bench/win32/A.cpp '#include <windows.h>'
expect fails check-headers src/model/A.cpp '#include <windows.h>'
expect fails check-headers src/model/A.h '  #  include<oleauto.h>'
expect fails check-headers src/model/A.cpp '#include <sys/stat.h>'
expect fails check-headers src/model/A.cpp '#include "platform/win32/Known.h"'
expect fails check-headers src/platform/A.h '#include <winsock2.h>'
expect fails check-headers tests/unit/A.cpp '#include <windows.h>'
expect fails check-headers bench/A.cpp '#include <windows.h>'
expect fails check-headers src/model/A.cpp '#include "windows.h"'
expect fails check-headers src/shell/A.cpp '#include "Known.h"'
expect fails check-headers src/base/A.cpp '#include "platform/Known.h"'
expect fails check-headers src/platform/A.cpp '#include "shell/Known.h"'
expect fails check-headers src/platform/win32/A.cpp '#include "shell/Known.h"'
expect fails check-headers src/ui/A.cpp '#include "shell/Known.h"'
expect passes check-headers src/ui/A.cpp '#include "platform/Known.h"'

expect passes check-format src/model/A.cpp 'int a = 1;'
expect fails check-format src/model/A.cpp 'int a=1;'

expect passes check-length src/model/A.cpp "$(seq 599)"
expect fails check-length src/model/A.cpp "$(seq 600)"

exit "$wrong"
