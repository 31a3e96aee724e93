# shellcheck shell=bash disable=SC2154
# What the cases of the installer's test are made of.

# How much wasn't so.
wrong=0

# so WORDS COMMAND...: says whether the command succeeds, and remembers when it doesn't.
so() {
  local words=$1
  shift
  if "$@" >"$place/said" 2>&1; then
    echo "ok: $words"
  else
    wrong=$((wrong + 1))
    echo "WRONG: $words (the screen then: ${place#"$root"/}/wrong-$wrong.png)"
    sed 's/^/    /' "$place/said"
    import -window root "$place/wrong-$wrong.png" || true
  fi
}

skip() { echo "left out, for want of rights: $*"; }

# ends WITH COMMAND...: runs it, for a minute at most, and compares its exit code.
ends() {
  local wanted=$1 code=0
  shift
  timeout --kill-after=5 60 "$@" || code=$?
  [ "$code" = "$wanted" ] || {
    echo "the exit code is $code, not $wanted"
    return 1
  }
}

# install_ends WITH [FOLDER]: the silent installation ends with that exit code. FOLDER is a path of Windows.
install_ends() {
  local words=()
  # Wine puts a word with blanks into quotes, and the installer wants this one without: so it comes in pieces.
  if (($# > 1)); then read -ra words <<<"/D=$2"; fi
  ends "$1" wine "$setup" /S "${words[@]}"
}

# uninstall_ends WITH FOLDER [OPTION...]: the silent removal of what is in FOLDER does. It runs from a copy, which waits.
uninstall_ends() {
  local wanted=$1 words
  read -ra words <<<"_?=$(windows_path "$2")"
  shift 2
  ends "$wanted" wine "$place/Uninstall.exe" /S "$@" "${words[@]}"
}

windows_path() { winepath -w "$1" 2>/dev/null; }

# files_in FOLDER: what lies there, one a line.
files_in() { (cd "$1" && find . -mindepth 1 ! -type d -printf '%P\n' | LC_ALL=C sort); }

# The files of an installation, as the installer has to write them.
expected_files() {
  printf '%s\n' Files.lst Harbourline.exe License.rtf OtherLicences.txt Ports.dat PracticeRouter.dll Uninstall.exe \
    UpnpRouter.dll
  (cd help && find . -type f -printf 'Help/%P\n')
  find profiles -maxdepth 1 -name '*.prf' -printf 'Profiles/%P\n'
}

lies_as_expected() { diff <(expected_files | LC_ALL=C sort) <(files_in "$1"); }
# The ready-made profiles in FOLDER are those of the tree.
has_the_profiles() { diff --brief --recursive "$1/Profiles" profiles --exclude='*.csv' --exclude='*.md' --exclude=maker; }
is_the_built_one() { cmp "$(find "$built/src" "$built/plug-ins" -name "$(basename "$1")" -type f)" "$1"; }
holds_only() { [ "$(files_in "$1")" = "$(printf '%s\n' "${@:2}" | LC_ALL=C sort)" ] || { files_in "$1"; return 1; }; }

# query KEY [OPTION...]: what the registry says of it; false when it isn't there. A busy Wine now and then can't start a
# program, and says so: it is asked again.
query() {
  local tries=0 answer code
  while :; do
    code=0
    answer=$(wine reg query "$@" 2>&1) || code=$?
    tries=$((tries + 1))
    if ((tries == 5)) || [[ $answer != *'could not be started'* && -n $answer ]]; then break; fi
    sleep 1
  done
  printf '%s\n' "$answer" | tr -d '\r'
  return $code
}
# A key as text, with all below it. A key that is missing has none.
key() { if query "$1" /s >"$place/key"; then sed 's/ *$//; /^$/d' "$place/key"; fi; }
# value KEY NAME: the data of a value.
value() { query "$1" /v "$2" | sed -n "s/^ *$2 *REG_[A-Z]* *//p"; }
is_there() { query "$@"; }
is_missing() { ! query "$@"; }
# same A B: the two texts are the same.
same() { diff <(printf '%s\n' "$1") <(printf '%s\n' "$2"); }

settings_key='HKCU\Software\Harbourline\RouterSection'
run_key='HKCU\Software\Microsoft\Windows\CurrentVersion\Run'

# state FOLDER: every value of the user in the registry, the classes, and what lies in the folder.
state() {
  until_true 10 wine reg export 'HKCU\Software' "$(windows_path "$place/state.reg")" /y
  iconv -f UTF-16 -t UTF-8 "$place/state.reg"
  key 'HKCR\Harbourline.PracticeRouter'
  find "$1" \( -type d -printf '%p\n' -o -printf '%p %s %T@\n' \) | LC_ALL=C sort
}
# stays FOLDER COMMAND...: succeeds when the command leaves the registry and the folder as they are.
stays() {
  local folder=$1
  shift
  state "$folder" >"$place/before"
  "$@" || return
  state "$folder" >"$place/after"
  diff "$place/before" "$place/after"
}
# disk FOLDER OPTION...: mounts it there, and waits until Wine has taken notice.
disk() {
  mount "${@:2}" "$1"
  until_true 10 is_there 'HKCU\Software'
}

# driver ...: tells windows; see tests/e2e/driver.
driver() { wine "$built/tests/e2e/driver/driver.exe" "$@"; }

# start_in CURRENT FOLDER: starts the program in FOLDER, which is $program then, with CURRENT as its current folder.
start_in() {
  env -C "$1" wine "$2/Harbourline.exe" &
  program=$!
}
# start FOLDER: starts the program there and waits for its icon.
start() {
  start_in "$1" "$1"
  until_true 30 icon_is_there
}
icon_is_there() {
  local area
  area=$(driver windows --title 'Wine System Tray' | cut -f 1)
  [ -n "$area" ] && driver inside "$area" | grep -q .
}
program_ended() { ! kill -0 "$program" 2>/dev/null; }
has_ended_well() { until_true 20 program_ended && wait "$program"; }
known_routers() { key "$settings_key" | sed -n 's/^ *Router_[0-9]* *REG_SZ *//p'; }
announced() { key "$settings_key" | sed -n 's/^ *\(RouterPlugIn_[0-9]*\) *REG_SZ */\1 /p'; }

finish() {
  local code=$?
  trap - EXIT
  wine_end
  screen_stop
  exit $code
}
