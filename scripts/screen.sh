# shellcheck shell=bash
# A virtual screen with a window manager, for machines without a display.

screen_processes=()

# Starts a screen on a number that is free and exports DISPLAY.
screen_start() {
  local number=$build/logs/screen-number.$$
  : >"$number"
  Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset 3>"$number" >"$build/logs/Xvfb.log" 2>&1 &
  screen_processes+=($!)
  until_true 20 test -s "$number" || fail "the virtual screen doesn't start (build/logs/Xvfb.log)"
  DISPLAY=:$(tr -d '\n' <"$number")
  export DISPLAY
  rm -f "$number"

  openbox --sm-disable >"$build/logs/openbox.log" 2>&1 &
  screen_processes+=($!)
  xsetroot -solid '#339966'
  until_true 20 screen_has_manager || fail "the window manager doesn't start (build/logs/openbox.log)"
}

screen_has_manager() { xprop -root _NET_SUPPORTING_WM_CHECK | grep -q '#'; }

# Ends what screen_start started, in the opposite order.
screen_stop() {
  local i
  for ((i = ${#screen_processes[@]} - 1; i >= 0; i--)); do
    kill "${screen_processes[i]}" 2>/dev/null || true
    wait "${screen_processes[i]}" 2>/dev/null || true
  done
  screen_processes=()
}

# True when $DISPLAY names a screen that answers.
screen_is_there() { [ -n "${DISPLAY:-}" ] && timeout 10 xdpyinfo >/dev/null 2>&1; }
