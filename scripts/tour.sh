# shellcheck shell=bash
# The tour: the built program on a virtual screen, used by a real mouse and real keys, with a picture of each step.
# A step that doesn't happen ends it.

pictures=$build/tour
table=$pictures/router-table.txt
picture_number=0

driver() { wine build/windows-x64/tests/e2e/driver/driver.exe "$@"; }

# The tour's own failure: says what didn't happen, and what the screen shows.
lost() {
  import -window root "$pictures/failure.png" || true
  {
    echo "The tour ends here: $*."
    echo 'On the screen (build/tour/failure.png):'
    driver windows | cut -f 6- || true
  } >&2
  exit 1
}

# picture NAME WORDS: a picture of the screen when it has come to rest, and what it shows.
picture() {
  picture_number=$((picture_number + 1))
  local file
  file=$(printf '%s/%02d-%s.png' "$pictures" "$picture_number" "$1")
  until_true 5 screen_rests || true
  import -window root "$file"
  printf '%2d. %-70s %s\n' "$picture_number" "$2" "${file#"$root"/}"
}

# What a part of the screen looks like, as one word; the whole screen without a part. WIDTHxHEIGHT+X+Y
look() { import -window root ${1:+-crop "$1"} rgb:- | cksum; }
screen_rests() {
  local before
  before=$(look)
  sleep 0.15
  [ "$(look)" = "$before" ]
}
looks_different() { [ "$(look "$1")" != "$2" ]; }

# The rows of the practice router's table.
router_table() {
  if [ ! -s "$table" ]; then echo '    (empty)'; fi
  awk -F '|' '{ printf "    %-16s %-12s ports %-12s %-8s to the computer %s\n", $1, $2, $3, $4, $5 }' "$table"
}

# Places of windows, as `driver` tells them: x, y, width, height.
place_of_icon() {
  local area
  area=$(driver windows --title 'Wine System Tray' | cut -f 1)
  driver inside "$area" | head -n 1 | cut -f 2-5 | grep .
}
menus() { driver windows --program Harbourline.exe --class '#32768' "$@"; }
menus_are() { [ "$(menus | wc -l)" -eq "$1" ]; }
program_runs() { kill -0 "$program" 2>/dev/null; }

# click X Y BUTTON
click() { xdotool mousemove "$1" "$2" click "$3"; }

open_menu() {
  local x y width height
  read -r x y width height < <(place_of_icon) || lost 'the icon is not in the notification area'
  click $((x + width / 2)) $((y + height / 2)) 3
  menus --within 10 >/dev/null || lost 'a right click on the icon opens no menu'
}

# Opens the menu by the mouse and the profiles in it by the key; the place of the submenu is in x, y, width, height.
open_profiles() {
  open_menu
  driver keys p || lost 'no key can be pressed'
  until_true 10 menus_are 2 || lost "'Profiles' doesn't open"
  read -r x y width height < <(menus | head -n 1 | cut -f 2-5)
}

# From the edge of a menu to the middle of its first or last entry.
entry_middle=11

# point_at Y: moves the mouse to an entry of the open submenu and waits until the menu shows it.
point_at() {
  local entry=$((width - 20))x4+$((x + 10))+$(($1 - 2)) before
  before=$(look "$entry")
  xdotool mousemove $((x + width / 2 - 2)) "$1" mousemove $((x + width / 2)) "$1"
  until_true 5 looks_different "$entry" "$before" || lost "the menu doesn't follow the mouse"
}

# choose_by_mouse Y: clicks there in the open submenu.
choose_by_mouse() {
  click $((x + width / 2)) "$1" 1
  menus --within 10 --gone || lost 'a click leaves the menu open'
}

# Puts the icon's area where users have theirs, out of the way of the windows.
move_icon_area() {
  xdotool search --name 'Wine System Tray' windowmove 1100 740
  until_true 10 icon_is_at_the_bottom || lost "the icon's area can't be moved"
}
icon_is_at_the_bottom() { [ "$(place_of_icon | cut -f 2)" -gt 700 ]; }

table_has() { grep -q "$1" "$table"; }
table_is_empty() { [ -e "$table" ] && [ ! -s "$table" ]; }

tour() {
  local x y width height program status
  rm -rf "$pictures"
  mkdir -p "$pictures"
  wine_prefix tour
  trap tour_end EXIT
  screen_start
  wine reg delete 'HKEY_CURRENT_USER\Software\Harbourline' /f >/dev/null 2>&1 || true
  demo_install

  say 'The tour'
  HARBOURLINE_PRACTICE_TABLE=$(wine_path "$table") wine build/windows-x64/src/Harbourline.exe &
  program=$!
  until_true 30 place_of_icon || lost 'no icon comes up in the notification area'
  move_icon_area
  until_true 10 table_is_empty || lost "the router's table is not empty at the start"
  picture started 'The icon stands in the notification area; the router forwards nothing'
  local before
  before=$(router_table)

  open_menu
  picture menu 'A right click opens the menu'
  driver keys p
  until_true 10 menus_are 2 || lost "'Profiles' doesn't open"
  picture profiles 'The key P opens the profiles'
  driver keys '{ESC}{ESC}'
  menus --within 10 --gone || lost 'the key Escape leaves the menu open'

  open_profiles
  point_at $((y + height - entry_middle))
  picture choice 'The mouse points at the last profile'
  choose_by_mouse $((y + height - entry_middle))
  until_true 10 table_has 'Web server' || lost "the mapping of 'Web server' doesn't reach the router"
  picture forwarded "'Web server' is on: its mapping stands in the router's table"
  local after
  after=$(router_table)

  open_profiles
  picture checked 'The menu shows the profile that is on'
  choose_by_mouse $((y + entry_middle))
  until_true 10 table_is_empty || lost "'Clear All' leaves mappings on the router"
  picture cleared "'Clear All' took it off again"

  open_profiles
  driver keys '{DOWN}{ENTER}'
  until_true 10 table_has 'Game server' || lost "the mapping of 'Game server' doesn't reach the router"
  picture by-keyboard "'Game server' was chosen by the keyboard"

  open_menu
  driver keys e
  answer_exit_question
  until_true 20 program_is_gone || lost 'the program goes on after Yes'
  wait "$program" && status=0 || status=$?
  ((status == 0)) || lost "the program ended with exit code $status"
  [ "$(stored_setting MP_1_Enabled)" = True ] || lost "the settings don't say that 'Game server' is on"
  [ "$(stored_setting MP_3_Enabled)" = False ] || lost "the settings don't say that 'Web server' is off"
  [ "$(stored_setting Router_1)" = "$practice_router" ] || lost 'the settings have lost the router'
  [ -z "$(stored_setting RouterPlugIn_1)" ] || lost "the plug-in's announcement is still in the settings"
  picture gone 'The program is gone, and its settings are saved'

  echo
  echo "The router's table before the click:"
  printf '%s\n' "$before"
  echo 'and after it:'
  printf '%s\n' "$after"
}

program_is_gone() { ! program_runs && driver windows --program Harbourline.exe --gone; }

answer_exit_question() {
  local box text x y width height
  box=$(driver windows --program Harbourline.exe --class '#32770' --title Harbourline --within 10 | cut -f 1) ||
    lost "'Exit' asks nothing"
  text=$(driver inside "$box")
  grep -q 'Are you sure you want to exit ' <<<"$text" || lost "the question at the exit isn't asked"
  picture question "'Exit' asks first"
  read -r x y width height < <(grep -P '\t&?Yes$' <<<"$text" | cut -f 2-5) || lost "the question has no 'Yes'"
  click $((x + width / 2)) $((y + height / 2)) 1
}

tour_end() {
  wine_end
  screen_stop
}
