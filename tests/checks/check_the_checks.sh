#!/usr/bin/env bash
# Proves that the checks of the tree can fail: each case lays out a small tree with one breach, or none, and asks the
# check. Prints one line a case, and ends with 1 when a check said the wrong thing.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
scripts=$here/../../scripts
source "$here/profiles.sh"
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
wrong=0

# judge RESULT CHECK CASE: asks the check about the tree that was laid out.
judge() {
  local result=$1 check=$2 case=$3 answer=passes
  "$scripts/$check" "$place/tree" >"$place/said" 2>&1 || answer=fails
  if [ "$answer" = "$result" ]; then
    echo "ok: $check $result: $case"
  else
    echo "WRONG: $check $answer, and should not: $case"
    cat "$place/said"
    wrong=1
  fi
}

# expect RESULT CHECK FILE CONTENT: a tree of FILE with CONTENT, beside headers that may be included.
expect() {
  local result=$1 check=$2 file=$3 content=$4
  rm -rf "$place/tree"
  mkdir -p "$place/tree/src/base" "$place/tree/src/platform/win32" "$place/tree/src/shell" \
    "$(dirname "$place/tree/$file")"
  cp "$here/../../.clang-format" "$place/tree"
  touch "$place/tree/src/base/Known.h" "$place/tree/src/platform/Known.h" "$place/tree/src/shell/Known.h" \
    "$place/tree/src/platform/win32/Known.h"
  printf '%s\n' "$content" >"$place/tree/$file"
  judge "$result" "$check" "$file: ${content%%$'\n'*}"
}

# help_page NAME BODY: a page of the help with all that it needs.
help_page() {
  cat >"$place/tree/help/$1.html" <<END
<!DOCTYPE html>
<html lang="en">
<head>
<title>Help</title>
<meta name="viewport" content="width=device-width">
<link rel="stylesheet" href="help.css">
</head>
<body>
<h1 id="top">Help</h1>
$2
</body>
</html>
END
}

# expect_help RESULT FILE CHANGE: a help of two pages, for sources with one topic, in which sed makes a CHANGE of FILE.
expect_help() {
  local result=$1 file=$2 change=$3
  rm -rf "$place/tree"
  mkdir -p "$place/tree/help" "$place/tree/src"
  echo 'Page::Page() { HelpContextID(1000); }' >"$place/tree/src/Page.cpp"
  echo 'p { background: url("dot.svg"); }' >"$place/tree/help/help.css"
  touch "$place/tree/help/dot.svg"
  help_page index '<a rel="next" href="1000.html#top">A topic</a>'
  help_page 1000 '<a rel="prev" href="index.html">Contents</a> <img src="dot.svg" alt="A dot">'
  sed -i "$change" "$place/tree/$file"
  judge "$result" check-help "$file: ${change:-as it should be}"
}

# expect_profiles RESULT FILE CHANGE: two profiles with their sources and their help, in which sed makes a CHANGE of FILE. An
# empty CHANGE of a FILE that isn't there makes it as a copy of the first profile.
expect_profiles() {
  local result=$1 file=$2 change=$3
  lay_out_profiles "$place/tree"
  if [ -f "$place/tree/$file" ]; then
    sed -i "$change" "$place/tree/$file"
  else
    cp "$place/tree/profiles/Chess.prf" "$place/tree/$file"
  fi
  judge "$result" check-profiles "$file: ${change:-as it should be}"
}

# expect_fault FAULT SOURCE OPTION...: what check-binaries says first of a program that is made of a C++ source with these options
# of the linker; nothing for a good one.
expect_fault() {
  local fault=$1 source=$2 said
  shift 2
  printf '%s\n' "$source" >"$place/binary/program.cpp"
  (cd "$place/binary" && x86_64-w64-mingw32-g++-posix -o program.exe program.cpp resources.o -mwindows -static -s \
    -Wl,--dynamicbase,--nxcompat,--high-entropy-va,--no-insert-timestamp "$@")
  said=$("$scripts/check-binaries" "$place/binary/program.exe" | sed -n '1s/^[^:]*: //p' || true)
  if [ "$said" = "$fault" ]; then
    echo "ok: check-binaries says: ${fault:-nothing}"
  else
    echo "WRONG: check-binaries says: ${said:-nothing}; and should say: ${fault:-nothing}"
    wrong=1
  fi
}

# resources [CHANGE]: the program's own resources for expect_fault, with a CHANGE by sed.
resources() {
  rm -rf "$place/binary"
  mkdir -p "$place/binary"
  cp "$here/../../src/Harbourline.rc" "$here/../../src/Harbourline.manifest" "$place/binary"
  : >"$place/binary/pictures.rc"
  if (($#)); then sed -i "$1" "$place/binary/Harbourline.rc" "$place/binary/Harbourline.manifest"; fi
  (cd "$place/binary" && x86_64-w64-mingw32-windres -DHARBOURLINE_VERSION_MAJOR=1 -DHARBOURLINE_VERSION_MINOR=0 \
    -DHARBOURLINE_VERSION_REVISION=0 Harbourline.rc resources.o)
}

expect passes check-headers src/model/A.cpp '#include <vector>'
expect passes check-headers src/model/A.cpp '#include "shell/Known.h"'
expect passes check-headers src/platform/win32/A.cpp '#include <windows.h>'
expect passes check-headers src/main.cpp '#include <windows.h>'
expect passes check-headers src/main.cpp '#include "platform/win32/Known.h"'
expect passes check-headers plug-ins/sdk/A.h '#include <oleauto.h>'
expect passes check-headers plug-ins/upnp/A.cpp '#include <winsock2.h>'
expect passes check-headers plug-ins/upnp/log/A.cpp '#include <chrono>'
expect passes check-headers tests/upnp/windows/A.cpp '#include <windows.h>'
expect passes check-headers tests/windows/A.cpp '#include <shellapi.h>'
expect passes check-headers tests/unit/A.cpp '#include <gtest/gtest.h>'
expect passes check-headers bench/win32/A.cpp '#include <windows.h>'
expect fails check-headers src/model/A.cpp '#include <windows.h>'
expect fails check-headers src/model/A.h '  #  include<oleauto.h>'
expect fails check-headers src/model/A.cpp '#include <sys/stat.h>'
expect fails check-headers src/model/A.cpp '#include "platform/win32/Known.h"'
expect fails check-headers src/platform/A.h '#include <winsock2.h>'
expect fails check-headers tests/unit/A.cpp '#include <windows.h>'
expect fails check-headers tests/upnp/unit/A.cpp '#include <windows.h>'
expect fails check-headers plug-ins/upnp/log/A.cpp '#include <winsock2.h>'
expect fails check-headers plug-ins/upnp/rules/A.h '#include <windows.h>'
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

expect_help passes help/index.html ''
expect_help fails help/index.html 's/1000.html/2000.html/'
expect_help fails help/index.html 's/#top/#bottom/'
expect_help fails help/index.html 's,1000.html#top,../src/Page.cpp,'
expect_help fails help/index.html 's,1000.html#top,https://harbourline.example/,'
expect_help fails help/index.html '/A topic/d'
expect_help fails help/index.html 's,<h1,<p id="top"></p><h1,'
expect_help fails help/1000.html 's/dot.svg/dash.svg/'
expect_help fails help/1000.html 's/ alt="A dot"//'
expect_help fails help/1000.html 's/index.html/1000.html/'
expect_help fails help/1000.html '/title/d'
expect_help fails help/1000.html 's/ lang="en"//'
expect_help fails help/1000.html '/viewport/d'
expect_help fails help/1000.html 's,<h1\(.*\)h1>,<p\1p>,'
expect_help fails help/help.css 's/dot.svg/dash.svg/'
expect_help fails src/Page.cpp 's/1000/1010/'
expect_help fails src/Page.cpp 's/HelpContextID/Topic/'

expect_profiles passes profiles/sources.csv ''
expect_profiles fails profiles/sources.csv 's/,the manual,/,/'
expect_profiles fails profiles/sources.csv 's,https://chess.example/ports,,'
expect_profiles fails profiles/sources.csv 's,https://chess.example/ports,the manual,'
expect_profiles fails profiles/sources.csv 's/2026-11-21,the manual/yesterday,the manual/'
expect_profiles fails profiles/sources.csv 's/the manual//'
expect_profiles fails profiles/sources.csv 's/^Chess,games/Chess,parlour games/'
expect_profiles fails profiles/sources.csv 's/^Chess,/Chess?,/'
expect_profiles fails profiles/sources.csv '/^Chess/{p;s/^Chess/chess/}'
expect_profiles fails profiles/sources.csv '/^Chess/d'
expect_profiles fails profiles/sources.csv 's/,5432,/,0,/'
expect_profiles fails profiles/sources.csv 's/,5432,/,65536,/'
expect_profiles fails profiles/sources.csv 's/,5432,/,5432-5431,/'
expect_profiles fails profiles/sources.csv 's/,5432,/,5432; 5433,/'
expect_profiles fails profiles/sources.csv 's/,5432,/,5433,/'
expect_profiles fails profiles/sources.csv 's/5432,TCP,/5432,,/'
expect_profiles fails profiles/sources.csv 's/5432,TCP,/5432,SCTP,/'
expect_profiles fails profiles/sources.csv 's/,database,/,,/'
expect_profiles fails profiles/sources.csv 's/,database,/,fire,/'
expect_profiles fails profiles/warnings.csv 's/Think/Do think/'
expect_profiles fails profiles/Chess.prf 's/Name="Chess"/Name="Checkers"/'
expect_profiles fails profiles/Chess.prf 's/BeginPort=4000/BeginPort=4001/'
expect_profiles fails profiles/Chess.prf 's/Protocal=1/Protocal=3/'
expect_profiles fails profiles/Chess.prf 's/ForwardIPAddress=-1/ForwardIPAddress=12/'
expect_profiles fails profiles/Chess.prf 's/Enabled=False/Enabled=True/'
expect_profiles fails profiles/Chess.prf 's/AutoActivate=False/AutoActivate=True/'
expect_profiles fails profiles/Chess.prf 's/WindowClass=""/WindowClass="Chess"/'
expect_profiles fails profiles/Chess.prf '/^<.Mapping>/d'
expect_profiles fails profiles/Chess.prf '/^<.MapProfile>/d'
expect_profiles fails profiles/Chess.prf 's/\r$//'
expect_profiles fails 'profiles/All games.prf' '1,6d'
expect_profiles fails profiles/Checkers.prf ''
expect_profiles fails help/ready-made.html 's/4000/4001/'
expect_profiles fails help/ready-made.html '/So far/d'

main='extern "C" int WinMain() { return 0; }'
resources
expect_fault '' "$main"
expect_fault 'the system may not choose its address' "$main" -Wl,--disable-dynamicbase
expect_fault 'its data may be run' "$main" -Wl,--disable-nxcompat
expect_fault "it doesn't take addresses from all of the address space" "$main" -Wl,--disable-high-entropy-va
expect_fault 'it has no relocations' "$main" -Wl,--disable-reloc-section
expect_fault 'section .mixed may be written and run' "asm(\".section .mixed,\\\"wx\\\"\\n nop\\n .text\"); $main"
expect_fault 'it needs WINMM.dll' "extern \"C\" int timeGetTime(); extern \"C\" int WinMain() { return timeGetTime(); }" -lwinmm
expect_fault 'it tells the time of its build' "$main" -Wl,--insert-timestamp
path=$(cd "$scripts/.." && pwd)/src/main.cpp
expect_fault "it tells a path of the machine that built it: $path" "extern \"C\" const char kept[] = \"$path\";
extern \"C\" int WinMain() { return kept[0]; }" -Wl,--undefined=kept
resources '/VS_VERSION_INFO/,$d'
expect_fault 'it has no version information' "$main"
resources 's/"ProductName"/"Name"/'
expect_fault 'its version information lacks ProductName' "$main"
resources '/RT_MANIFEST/d'
expect_fault 'it has no manifest' "$main"
resources 's/asInvoker/requireAdministrator/'
expect_fault 'its manifest lacks: no elevation' "$main"

exit "$wrong"
