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

# picture NAME WORDS: a picture of the screen, and what it shows.
picture() {
  picture_number=$((picture_number + 1))
  local file
  file=$(printf '%s/%d-%s.png' "$pictures" "$picture_number" "$1")
  import -window root "$file"
  printf '%2d. %-70s %s\n' "$picture_number" "$2" "${file#"$root"/}"
}

# The rows of the practice router's table.
router_table() {
  if [ -s "$table" ]; then sed 's/^/      /' "$table"; else echo '      (empty)'; fi
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

# Half the height of a menu's entry and the menu's border: from its edge to the middle of its first or last entry.
entry_middle=11

# Moves the mouse to an entry in steps, as a hand does, so that the menu follows.
point_at() { xdotool mousemove $(($1 - 2)) "$2" mousemove "$1" "$2"; }

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
  point_at $((x + width / 2)) $((y + height - entry_middle))
  picture choice 'The mouse points at the last profile'
  click $((x + width / 2)) $((y + height - entry_middle)) 1
  until_true 10 table_has 'Web server' || lost "the mapping of 'Web server' doesn't reach the router"
  picture forwarded "'Web server' is on: its mapping stands in the router's table"
  local after
  after=$(router_table)

  open_profiles
  picture checked 'The menu shows the profile that is on'
  click $((x + width / 2)) $((y + entry_middle)) 1
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
