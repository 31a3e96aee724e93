# shellcheck shell=bash
# A Wine of our own for every purpose (run, tour, tests): a prefix under build/wine that nothing else uses. The
# one of a 32-bit program is 32-bit Windows.

# What every prefix is told before its first use.
wine_settings() {
  cat <<'END'
REGEDIT4

; A crash prints its backtrace and ends the program: a box would wait for ever.
[HKEY_CURRENT_USER\Software\Wine\WineDbg]
"ShowCrashDialog"=dword:00000000

; The program's face isn't free; this one looks like it.
[HKEY_CURRENT_USER\Software\Wine\Fonts\Replacements]
"Comic Sans MS"="Comic Neue"
END
}

# wine_prefix NAME: takes the prefix of that name for all further calls, and makes it when it isn't there yet.
wine_prefix() {
  export WINEPREFIX=$build/wine/$1$apart
  export WINEARCH=win$bits WINEDEBUG=-all
  # No .NET, no browser engine, no entries in the desktop's own menus.
  export WINEDLLOVERRIDES='mscoree,mshtml,winemenubuilder.exe='

  local ready=$WINEPREFIX/harbourline-ready
  if [ "$(cat "$ready" 2>/dev/null)" = "$(wine --version; wine_settings)" ]; then return; fi
  say "Making a Wine prefix in ${WINEPREFIX#"$root"/}"
  rm -rf "$WINEPREFIX"
  mkdir -p "$build/wine"
  # Without a screen: what this start leaves running must be gone before a program wants one.
  DISPLAY='' logged "wine-$1" wineboot -i
  wine_settings >"$build/wine/settings.reg"
  DISPLAY='' logged "wine-$1-settings" wine reg import "$build/wine/settings.reg"
  DISPLAY='' logged "wine-$1-end" timeout 60 wineserver -w
  (wine --version; wine_settings) >"$ready"
}

# Ends every program of the current prefix.
wine_end() {
  wineserver -k 2>/dev/null || true
  timeout 20 wineserver -w 2>/dev/null || true
}

# wine_register DLL: registers a plug-in in the current prefix, unless this very file is registered there already.
wine_register() {
  local stamp
  stamp=$WINEPREFIX/registered-$(basename "$1")
  if [ "$stamp" -nt "$1" ]; then return; fi
  logged "regsvr32-$(basename "$1")" wine regsvr32 /s "$(wine_path "$1")"
  touch "$stamp"
}

# The path of a file as Windows programs write it.
wine_path() { printf 'Z:%s' "${1//\//\\}"; }
