# shellcheck shell=bash
# What the tour does, a chapter a function, in the order of the file. Each leaves the program as the next one wants it.

# The first start: the wizard leads through the choice of the router, then the title window is up for its seven seconds.
chapter_first_start() {
  HARBOURLINE_PRACTICE_TABLE=$(wine_path "$table") wine "$program_folder/Harbourline.exe" \
    2>>"$build/logs/tour-wine.log" &
  program=$!
  until_true 30 shown frmWizard || lost 'the first start shows no Setup Wizard'
  move_icon_area
  picture wizard-welcome 'The first start leads through the Setup Wizard'
  press frmWizard.cmdNext
  until_true 10 shown frmWizard.cmdConfigureRouter || lost 'the wizard has no step for the router'
  press frmWizard.cbRouterSelection
  sleep 0.3
  xdotool key Down Return
  until_true 10 says frmWizard.lblStatus Online || lost "the practice router isn't in the list"
  # The practice router has opened its own window over the wizard.
  xdotool search --name 'Harbourline - Setup Wizard' windowactivate --sync || lost "the wizard can't be raised"
  picture wizard-router 'The router is chosen'
  press frmWizard.cmdConfigureRouter
  driver windows --title 'Configure Practice Router' --within 10 >/dev/null || lost "'Configure' opens no dialog"
  xdotool key Return
  until_true 10 shown frmWizard.chkEnableLogging || lost "the wizard doesn't move on by itself"
  picture wizard-log 'The log is decided on'
  press frmWizard.cmdNext
  sleep 0.5
  picture wizard-complete 'All is entered'

  # On stripes, what isn't part of a window's shape is seen at once.
  xsetroot -mod 8 8 -fg white -bg steelblue
  press frmWizard.cmdNext
  local x y width height before
  # Its seconds are short on a busy machine: nothing that can wait comes before it is gone.
  read -r x y width height < <(driver control frmSplash --within 10 | cut -f 2-5) ||
    lost "the title window doesn't come up"
  at_once=yes picture title 'The title window has its own shape'
  [ "$width $height" = '500 375' ] || lost "the title window is $width by $height pixels"
  before="$x $y"
  xdotool mousemove $((x + 250)) $((y + 187)) mousedown 1 sleep 0.2 mousemove_relative 60 40 sleep 0.2 \
    mousemove_relative 60 40 sleep 0.2 mouseup 1
  [ "$(driver control frmSplash | cut -f 2,3 --output-delimiter ' ')" = "$((x + 120)) $((y + 80))" ] ||
    lost "the title window doesn't follow the mouse from $before"
  hidden frmWizard || lost "'Finish' leaves the wizard open"
  until_true 15 hidden frmSplash || lost 'the title window stays'
  xsetroot -solid '#339966'
}

# The menu of the icon: a profile goes on and off, by mouse and by keyboard.
chapter_menu() {
  until_true 10 table_is_empty || lost "the router's table is not empty at the start"
  picture started 'The icon stands in the notification area; the router forwards nothing'
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
}

# The main window, with every node of its tree.
chapter_pages() {
  open_window
  local node file
  while read -r node; do
    choose tvCategories "$node"
    sleep 0.3
    file=page-$(tr 'A-Z ' 'a-z-' <<<"$node")
    picture "$file" "The window at '$node'"
  done < <(driver items tvCategories | cut -f 5)
}

# A new profile, with a mapping and a program to follow.
chapter_profile() {
  wine build/$preset/tests/e2e/window-program/window_program.exe ChessBoard 'Chess club' 900 60 &
  chess=$!
  open_page Router ctlRouter
  press ctlRouter.cmdConfigureRouter
  driver windows --title 'Configure Practice Router' --within 10 >/dev/null || lost "'Configure' opens no dialog"
  picture configure "'Configure' opens the router's own settings"
  xdotool key Return
  driver windows --title 'Configure Practice Router' --within 10 --gone >/dev/null || lost "OK doesn't close them"

  open_page Profiles ctlMapProfile
  choose tbProfiles 1
  until_true 10 shown ctlProfile || lost 'a new profile opens no editor'
  fill ctlProfile.txtName 'Chess club'
  fill ctlProfile.txtDescription 'Friends watch the game'
  press ctlProfile.cmdMappingAssignments
  until_true 10 shown ctlMappingEditor || lost "'Mapping Assignments' opens no grid"
  fill 'ctlMappingEditor.txtDescription(0)' Moves
  fill 'ctlMappingEditor.txtBeginRange(0)' 5000
  fill 'ctlMappingEditor.txtEndRange(0)' 5010
  press 'ctlMappingEditor.chkTCP(0)'
  picture mappings 'The mappings of a new profile are typed into the grid'
  press ctlMappingEditor.cmdAccept
  until_true 10 shown ctlProfile.cmdBrowse || lost "the grid's Accept doesn't lead back"
  press ctlProfile.cmdBrowse
  answer 'Make sure the application that you want to recognized is running before continuing' OK
  until_true 10 shown frmClassBrowser || lost "'Browse...' opens no list of programs"
  choose lslAvailableClasses 'Chess club::ChessBoard'
  picture programs 'The program to follow is picked among those that run'
  press frmClassBrowser.cmdAccept
  until_true 10 shown lblRunning || lost "'Running' doesn't blink"
  picture profile 'The profile is complete, and its program is running'
  press ctlProfile.cmdAccept
  until_true 10 has_row ctlMapProfile.lvProfiles 'Chess club' || lost "'Chess club' isn't in the list"
}

# The profile follows its program.
chapter_follow() {
  open_page Automatic ctlAutomatic
  press ctlAutomatic.chkEnable
  until_true 10 table_has 'Chess club' || lost "the profile doesn't go on while its program runs"
  until_true 5 has_row ctlAutomatic.lvProfiles 'Chess club (Active)' || lost "the page doesn't say that it is active"
  picture active 'Its program runs: the profile is on, and shown in red'
  close_window 'Chess club'
  wait "$chess" || true
  until_true 10 table_has_not 'Chess club' || lost "the profile stays on when its program is gone"
  picture followed 'The program was closed: the mapping is gone'

  open_profiles
  driver keys '{DOWN}'
  picture menu-profiles 'The menu has the new profile, in the order of the names'
  driver keys '{ESC}{ESC}'
  menus --within 10 --gone || lost 'the key Escape leaves the menu open'
}
table_has_not() { ! table_has "$1"; }

# A profile goes into a file and comes back.
chapter_exchange() {
  exchange=$pictures/chess.prf
  open_page Export ctlExport
  choose ctlExport.lvProfiles 'Chess club'
  xdotool key space
  picture export 'A tick chooses what is exported'
  press ctlExport.cmdBrowse
  type_path 'Select Export Output File' "$exchange"
  answer 'Export Complete Successfully' OK exported 'The profile was exported'
  [ "$(head -c 34 "$exchange")" = '<MapProfile Name="Chess club" Desc' ] || lost "the file doesn't hold the profile"

  open_page Import ctlExport
  press ctlExport.cmdBrowse
  type_path 'Select Import Source File' "$exchange"
  answer 'Import Complete Successfully' OK
  open_page Profiles ctlMapProfile
  until_true 10 has_row ctlMapProfile.lvProfiles 'Chess club(1)' || lost "the imported profile isn't in the list"
  picture imported 'Imported again, it has a number'
}

# type_path TITLE FILE: the file for the file dialog of that title.
type_path() {
  driver windows --title "$1" --within 10 >/dev/null || lost "there is no dialog '$1'"
  sleep 0.5
  xdotool key alt+n
  xdotool type --delay 20 "$(wine_path "$2")"
  xdotool key Return
  driver windows --title "$1" --within 10 --gone >/dev/null || lost "the dialog '$1' stays"
}

# The router makes traffic; the log is read, sorted, filtered and cleared.
chapter_log() {
  open_page Log ctlRouterLog
  press ctlRouterLog.chkEnable
  until_true 20 log_has_rows 8 || lost 'no rows come into the log'
  picture log 'The router reports who comes and goes; ports have their names'
  local x y width height
  read -r x y width height < <(driver control lvRouterLog | cut -f 2-5)
  click $((x + 60)) $((y + 10)) 1
  sleep 1
  picture log-sorted 'A click on a heading sorts'
  press ctlRouterLog.chkFilterOutProfiles
  press ctlRouterLog.chkEnable
  sleep 1
}
log_is_left_with() { [ "$(driver items lvRouterLog | wc -l)" = "$1" ]; }
right_click_a_row() {
  local x y width height
  # One that is in view has a size; the first such ones may lie below the headings, and the log shows its last row.
  read -r x y width height < <(driver items lvRouterLog | awk -F '\t' '$3 > 0 { row = $1 " " $2 " " $3 " " $4 } END { print row }') ||
    lost 'no row of the log is in view'
  click $((x + width / 2)) $((y + height / 2)) 1
  click $((x + width / 2)) $((y + height / 2)) 3
}
log_has_rows() { [ "$(driver items lvRouterLog | wc -l)" -ge "$1" ]; }

# What the icon tells, enlarged: traffic, the bar, a warning.
chapter_icon() {
  find_icon
  make_traffic &
  traffic=$!
  until_true 10 icon_shows 255,214,10 || lost "no lamp of the icon lights with traffic"
  icon_picture lamps 'The lamps of the icon light with traffic (enlarged)'
  open_page Windows ctlWinStartup
  press ctlWinStartup.chkShowSplash
  press ctlWinStartup.cbSystemTray
  sleep 0.3
  xdotool key Down Return
  until_true 10 icon_shows 63,221,114 || lost 'the bar of the icon stays empty with traffic'
  icon_picture bar 'As a bar it fills with traffic and falls (enlarged)'
  end_traffic
  press ctlWinStartup.cbSystemTray
  sleep 0.3
  xdotool key Up Return

  set_warning
  until_true 10 icon_shows 214,32,32 || lost "the icon doesn't flash when the router has a warning"
  icon_picture warning 'The router has a warning: the icon flashes red (enlarged)'
  set_warning
}

set_warning() {
  open_page Router ctlRouter
  press ctlRouter.cmdConfigureRouter
  driver windows --title 'Configure Practice Router' --within 10 >/dev/null || lost "'Configure' opens no dialog"
  sleep 0.5
  xdotool key alt+s Return
  driver windows --title 'Configure Practice Router' --within 10 --gone >/dev/null || lost "OK doesn't close it"
}

end_traffic() {
  if [ -n "${traffic:-}" ]; then kill "$traffic" 2>/dev/null || true; fi
  traffic=
}

# Connections that are refused at once: segments leave and arrive.
make_traffic() {
  while true; do
    for ((i = 0; i < 40; i++)); do (: >/dev/tcp/127.0.0.1/9) 2>/dev/null || true; done
    sleep 0.1
  done
}

# Where the icon's own pixels are; asked once, since asking takes longer than a lamp is lit.
find_icon() {
  local x y width height
  until_true 10 icon_rests || lost "the icon doesn't come to rest"
  read -r x y width height < <(place_of_icon) || lost 'the icon is not in the notification area'
  icon=${width}x${height}+$x+$y
}
# icon_shows RED,GREEN,BLUE: takes a picture of the icon when that colour is in it.
icon_shows() {
  import -window root -crop "$icon" +repage "$pictures/icon.png"
  convert "$pictures/icon.png" txt:- | grep -F "($1" >/dev/null
}
icon_picture() {
  picture_number=$((picture_number + 1))
  local file
  file=$(printf '%s/%02d-%s.png' "$pictures" "$picture_number" "$1")
  convert "$pictures/icon.png" -filter point -resize 1000% "$file"
  rm "$pictures/icon.png"
  printf '%2d. %-70s %s\n' "$picture_number" "$2" "${file#"$root"/}"
}

# The close box hides the window, the exit saves, and the next start has everything where it was.
chapter_exit() {
  open_page Profiles ctlMapProfile
  close_window Harbourline
  until_true 10 hidden frmMain || lost 'the close box leaves the window open'
  program_runs || lost 'the close box ends the program'
  exit_program question "'Exit' asks first"
  [ "$(stored_setting MP_2_Enabled)" = True ] || [ "$(stored_setting MP_3_Enabled)" = True ] ||
    lost "the settings don't say that 'Game server' is on"
  [ "$(stored_setting MapProfileCount)" = 5 ] || lost "the settings don't have the five profiles"
  [ "$(stored_setting ShowSplashOnStartup)" = False ] || lost "the settings don't say that the title window is off"
  [ "$(stored_setting LastMenuLocation)" = PortForwardingProfiles ] || lost "the settings don't say which page was open"
  [ "$(stored_setting Router_1)" = "$practice_router" ] || lost 'the settings have lost the router'
  [ "$(stored_setting RouterClass)" = "$practice_router" ] || lost 'the settings have lost the choice of the router'
  [ -z "$(stored_setting RouterPlugIn_1)" ] || lost "the plug-in's announcement is still in the settings"
  cp "$program_folder/RouterLog.dat" "$pictures/RouterLog.dat"
  [ "$(wc -l <"$pictures/RouterLog.dat")" -ge 56 ] || lost 'the log was not kept'
  picture gone 'The program is gone, and its settings are saved'

  start_program "$program_folder"
  until_true 10 table_has 'Game server' || lost "'Game server' isn't on again after the start"
  open_window
  until_true 10 shown ctlMapProfile || lost 'the window opens on another page than before'
  picture again 'Started again: the page is the one that was open, the profile is on'
  open_page Log ctlRouterLog
  log_has_rows 8 || lost 'the log is empty after the start'
  local rows
  rows=$(driver items lvRouterLog | wc -l)
  right_click_a_row
  menus --within 10 >/dev/null || lost 'a right click on a row opens no menu'
  picture log-menu 'A right click on a row of the log'
  driver keys '{DOWN}{DOWN}{ENTER}'
  until_true 10 log_is_left_with $((rows - 1)) || lost "'Remove' leaves the row"
  press ctlRouterLog.cmdClear
  answer 'Are you sure you want to clear the log?' Yes
  until_true 10 log_is_left_with 0 || lost "'Clear Log' leaves rows"
  exit_program
}
hidden() { ! shown "$1"; }

# Another computer: the wizard is called off, and the file of the first one brings its profile.
chapter_second_installation() {
  local second=$pictures/second
  mkdir -p "$second"
  cp -r "$program_folder"/{Harbourline.exe,Help,License.rtf,Ports.dat} "$second"
  wine reg delete 'HKEY_CURRENT_USER\Software\Harbourline' /f >/dev/null 2>&1 || true
  wine reg add "$demo_section" /v ShowSplashOnStartup /d False /f >/dev/null
  HARBOURLINE_PRACTICE_TABLE=$(wine_path "$table") wine "$second/Harbourline.exe" 2>>"$build/logs/tour-wine.log" &
  program=$!
  until_true 30 shown frmWizard || lost 'the first start of another computer shows no Setup Wizard'
  press frmWizard.cmdCancel
  answer 'Are you sure you want to cancel the Setup Wizard?' Yes wizard-cancel 'Another computer: the wizard asks before it goes'
  until_true 10 hidden frmWizard || lost "the wizard doesn't go"

  open_window
  open_page Import ctlExport
  press ctlExport.cmdBrowse
  type_path 'Select Import Source File' "$exchange"
  answer 'Import Complete Successfully' OK
  open_page Profiles ctlMapProfile
  until_true 10 has_row ctlMapProfile.lvProfiles 'Chess club' || lost "the profile didn't come over"
  picture second "The first computer's profile came over in its file"
  exit_program
  rm -rf "$second"
}
