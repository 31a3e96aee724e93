# shellcheck shell=bash
# The tour: the built program on a virtual screen, used by a real mouse and real keys, with a picture of each step.
# A step that doesn't happen ends it.

pictures=$build/tour$apart
table=$pictures/router-table.txt
picture_number=0

driver() { wine build/$preset/tests/e2e/driver/driver.exe "$@"; }

# The tour's own failure: says what didn't happen, and what the screen shows.
lost() {
  import -window root "$pictures/failure.png" || true
  {
    echo "The tour ends here: $*."
    echo "On the screen (${pictures#"$root"/}/failure.png):"
    driver windows | cut -f 6- || true
  } >&2
  exit 1
}

# picture NAME WORDS: a picture of the screen when it has come to rest, and what it shows. With at_once it doesn't wait.
picture() {
  picture_number=$((picture_number + 1))
  local file
  file=$(printf '%s/%02d-%s.png' "$pictures" "$picture_number" "$1")
  [ -n "${at_once:-}" ] || until_true 5 screen_rests || true
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

# Opens the window by a double click on the icon.
open_window() {
  local x y width height
  until_true 10 icon_rests || lost "the icon doesn't come to rest"
  read -r x y width height < <(place_of_icon) || lost 'the icon is not in the notification area'
  xdotool mousemove $((x + width / 2)) $((y + height / 2)) click --repeat 2 --delay 60 1
  until_true 10 shown frmMain || lost "a double click on the icon opens no window"
}
icon_rests() {
  local before
  before=$(place_of_icon) && sleep 0.2 && [ "$(place_of_icon)" = "$before" ]
}

# press CONTROL [BUTTON]: waits for the control of that name and clicks its middle.
press() {
  local x y width height
  read -r x y width height < <(driver control "$1" --within 10 | cut -f 2-5) || lost "there is no $1"
  click $((x + width / 2)) $((y + height / 2)) "${2:-1}"
}

# choose CONTROL TEXT [BUTTON]: clicks the row, node or button with that text.
choose() {
  local x y width height
  read -r x y width height < <(driver items "$1" | grep -P "\t$2\$" | cut -f 1-4) || lost "there is no '$2' in $1"
  click $((x + width / 2)) $((y + height / 2)) "${3:-1}"
}

# fill CONTROL TEXT: types the text in place of what stands there.
fill() {
  press "$1"
  xdotool key Home shift+End
  xdotool type --delay 20 "$2"
  until_true 5 says "$1" "$2" || lost "$1 doesn't take '$2'"
}

# close_window TITLE: closes it as its close box does.
close_window() {
  xdotool search --name "^$1\$" windowactivate --sync || lost "the window '$1' can't be brought to the front"
  xdotool key alt+F4
}

says() { [ "$(driver control "$1" | cut -f 8)" = "$2" ]; }
shown() { driver control "$1" >/dev/null; }
has_row() { driver items "$1" | cut -f 5 | grep -xF "$2" >/dev/null; }

# open_page NODE CONTROL: clicks the node and waits for the page.
open_page() {
  choose tvCategories "$1"
  until_true 10 shown "$2" || lost "'$1' doesn't show its page"
}

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

# Starts the program in FOLDER and waits for its icon.
start_program() {
  # Wine has its say about drives and fonts there.
  HARBOURLINE_PRACTICE_TABLE=$(wine_path "$table") wine "$1/Harbourline.exe" 2>>"$build/logs/tour-wine.log" &
  program=$!
  until_true 30 place_of_icon || lost 'no icon comes up in the notification area'
}

# Chooses 'Exit' in the menu and says Yes.
exit_program() {
  local status
  open_menu
  driver keys e
  answer 'Are you sure you want to exit ' Yes "$@"
  until_true 20 program_is_gone || lost 'the program goes on after Yes'
  wait "$program" && status=0 || status=$?
  ((status == 0)) || lost "the program ended with exit code $status"
}

# Installs what is built, silently, and goes on the tour with that.
install_program() {
  local package=$build/tour-package$apart width=${preset#windows-} name=Harbourline
  [ "$bits" = 64 ] || name='Harbourline (32-bit)'
  logged tour-package scripts/package --width "$width" --from "$build/$preset" --to "$package"
  logged tour-setup wine "$package/Harbourline-$(project_version)-$width-setup.exe" /S
  program_folder="$WINEPREFIX/drive_c/users/$(id -un)/AppData/Local/Programs/$name"
  [ -f "$program_folder/Harbourline.exe" ] || fail 'the installer has installed nothing'
  # What is registered in this prefix is no longer what is built.
  rm -f "$WINEPREFIX"/registered-*
  demo_profiles
}

remove_program() {
  logged tour-removal wine "$program_folder/Uninstall.exe" /S /PURGE
  until_true 20 test ! -e "$program_folder" || lost 'the uninstaller leaves something'
}

# tour [installed]: with the program as it is built, or as its installer leaves it.
tour() {
  local x y width height program before after program_folder=$build/$preset/src
  rm -rf "$pictures"
  mkdir -p "$pictures"
  wine_prefix tour
  trap tour_end EXIT
  screen_start
  wine reg delete 'HKEY_CURRENT_USER\Software\Harbourline' /f >/dev/null 2>&1 || true
  if [ "${1:-}" = installed ]; then
    install_program
  else
    demo_install
  fi
  rm -f "$program_folder/RouterLog.dat"

  say 'The tour'
  chapter_first_start
  chapter_menu
  chapter_pages
  chapter_profile
  chapter_follow
  chapter_exchange
  chapter_log
  chapter_icon
  chapter_exit
  chapter_second_installation
  if [ "${1:-}" = installed ]; then remove_program; fi

  echo
  echo "The router's table before the click:"
  printf '%s\n' "$before"
  echo 'and after it:'
  printf '%s\n' "$after"
  echo 'The newest rows of "RouterLog.dat", each a line a column:'
  head -n 14 "$pictures/RouterLog.dat" | sed 's/^/    /'
}

program_is_gone() { ! program_runs && driver windows --program Harbourline.exe --gone; }

# answer TEXT BUTTON [NAME WORDS]: waits for the program's message box that has the text, takes a picture when it has a
# name, and presses the button.
answer() {
  local box text x y width height
  box=$(driver windows --program Harbourline.exe --class '#32770' --title Harbourline --within 10 | cut -f 1) ||
    lost "no message box says '$1'"
  text=$(driver inside "$box")
  grep -qF "$1" <<<"$text" || lost "the message box doesn't say '$1'"
  if (($# > 2)); then picture "$3" "$4"; fi
  read -r x y width height < <(grep -P "\t&?$2\$" <<<"$text" | cut -f 2-5) || lost "the message box has no '$2'"
  click $((x + width / 2)) $((y + height / 2)) 1
  driver windows --program Harbourline.exe --class '#32770' --title Harbourline --within 10 --gone >/dev/null ||
    lost "the message box stays after '$2'"
}

tour_end() {
  end_traffic
  wine_end
  screen_stop
}
