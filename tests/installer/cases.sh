# shellcheck shell=bash disable=SC2154
# The cases of the installer's test; the first lines of `run` set what they share.

case_first_installation() {
  so 'the installer installs and says nothing' install_ends 0
  so 'it writes the program, the plug-ins, the help, the profiles, the licence and the ports, and nothing else' \
    lies_as_expected "$installed"
  so 'the program is the built one' is_the_built_one "$installed/Harbourline.exe"
  so 'the practice router is the built one' is_the_built_one "$installed/PracticeRouter.dll"
  so 'the plug-in for UPnP is the built one' is_the_built_one "$installed/UpnpRouter.dll"
  so 'the help pages are ours' diff -r help "$installed/Help"
  so 'the ready-made profiles are ours' has_the_profiles "$installed"
  so 'the ports are ours' cmp dist/Ports.dat "$installed/Ports.dat"
  so 'Windows knows how to remove it' diff - <(entry_of_windows) < <(key "$uninstall_key" | sed '/PortsTime/d; /EstimatedSize/d')
  so 'its size is told in kilobytes' near $((16#$(value "$uninstall_key" EstimatedSize | sed 's/0x//'))) "$(du -sk --apparent-size "$installed" | cut -f 1)"
  so 'it is in the start menu' test -f "$home/$programs/$product.lnk"
  so 'the class of the practice router is registered' is_there 'HKCR\Harbourline.PracticeRouter\CLSID'
  so 'that for UPnP, too' is_there 'HKCR\Harbourline.UpnpRouter\CLSID'
  so 'each plug-in is announced' same "$(announced)" "$(expected_announcements)"
  cp "$installed/Uninstall.exe" "$place/Uninstall.exe"
}
entry_of_windows() {
  local folder
  folder='C:\users\'$(id -un)'\AppData\Local\Programs\'$product
  cat <<END
${uninstall_key/HKCU/HKEY_CURRENT_USER}
    DisplayIcon    REG_SZ    $folder\\Harbourline.exe
    DisplayName    REG_SZ    $product
    DisplayVersion    REG_SZ    $(project_version)
    InstallLocation    REG_SZ    $folder
    NoModify    REG_DWORD    0x1
    NoRepair    REG_DWORD    0x1
    Publisher    REG_SZ    Harbourline
    QuietUninstallString    REG_SZ    "$folder\\Uninstall.exe" /S
    UninstallString    REG_SZ    "$folder\\Uninstall.exe"
END
}
plug_in_classes() { printf '%s\n' Harbourline.PracticeRouter Harbourline.UpnpRouter; }
expected_announcements() { plug_in_classes | awk '{ print "RouterPlugIn_" NR, $0 }'; }
# near A B: A is B, give or take a tenth.
near() { (($1 * 10 >= $2 * 9 && $1 * 10 <= $2 * 11)) || { echo "$1 is far from $2" && return 1; }; }

case_first_start() {
  so 'the installed program shows its icon' start "$installed"
  so 'it takes the announcements' until_true 10 no_announcements
}
no_announcements() { [ -z "$(announced)" ]; }

case_installing_while_it_runs() {
  so 'installing over the running program works' install_ends 0
  so 'the program has ended by itself' has_ended_well
  so 'it has saved the list of its routers' same "$(known_routers | sort)" "$(plug_in_classes | sort)"
  so 'a plug-in that the program knows is not announced again' no_announcements
  rm "$installed/RouterLog.dat"
  so 'the files are all there' lies_as_expected "$installed"
  so 'the program runs at logon from this folder' same "$(value "$run_key" Harbourline)" "$(quoted_if_blank "$(windows_path "$installed/Harbourline.exe")")"
}

quoted_if_blank() { if [[ $1 = *' '* ]]; then printf '"%s"' "$1"; else printf '%s' "$1"; fi; }

case_program_that_does_not_end() {
  cp "$built/tests/e2e/window-program/window_program.exe" "$installed/Harbourline.exe"
  (cd "$installed" && exec wine ./Harbourline.exe Stubborn Stubborn 10 10) &
  program=$!
  so 'another program stands in for one that never ends' until_true 20 driver windows --title Stubborn
  so 'installing over it fails and changes nothing' stays "$installed" install_ends 2
  so 'removing it fails and changes nothing' stays "$installed" uninstall_ends 2 "$installed"
  so 'it goes on' kill -0 "$program"
  so 'until it is ended by force' end_by_force
}
end_by_force() {
  kill "$program"
  until_true 20 program_ended
}

case_upgrade() {
  local before ports
  cp "$installed/Harbourline.exe" "$installed/Help/old.html"
  printf 'Help\\old.html\r\n' >>"$installed/Files.lst"
  echo mine >"$installed/Help/mine.html"
  echo log >"$installed/RouterLog.dat"
  wine reg add "$settings_key" /v MapProfileCount /d 0 /f >/dev/null
  wine reg add "$settings_key" /v RouterClass /d Harbourline.PracticeRouter /f >/dev/null
  before=$(key "$settings_key")
  # The list of an older version, which nobody has edited, has the time that it was installed with. NSIS rounds times to
  # even seconds.
  cp -p "$installed/Ports.dat" "$place/Ports.dat"
  echo '4711 Old' >"$installed/Ports.dat"
  touch --reference="$place/Ports.dat" "$installed/Ports.dat"
  so 'installing over an older version works' install_ends 0
  so 'a list of ports that nobody has edited is renewed' cmp dist/Ports.dat "$installed/Ports.dat"
  so 'the program is renewed' is_the_built_one "$installed/Harbourline.exe"
  so 'a help page of the older version goes' test ! -e "$installed/Help/old.html"
  so 'a file of the user stays' grep -qx mine "$installed/Help/mine.html"
  so 'the log stays' grep -qx log "$installed/RouterLog.dat"
  so 'the settings stay' diff <(key "$settings_key") <(printf '%s\n' "$before")
  ports=$installed/Ports.dat
  echo '4711 Mine' >>"$ports"
  so 'installing once more works' install_ends 0
  so 'a list of ports that was edited stays' grep -q '4711 Mine' "$ports"
  so 'and once more' install_ends 0
  so 'it stays then, too' grep -q '4711 Mine' "$ports"
}

# The program asks for this library by its name only. One that isn't Windows' own leaves a trace when it is loaded.
case_planted_library() {
  local -A compiler=([32]=i686-w64-mingw32-g++-posix [64]=x86_64-w64-mingw32-g++-posix)
  if ! command -v "${compiler[$bits]}" >/dev/null; then
    echo 'left out, for want of a compiler: a planted library'
    return
  fi
  mkdir -p "$place/documents"
  printf '#include <cstdio>\n#include <windows.h>\nBOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID)\n{ std::fclose(std::fopen("C:\\\\planted", "w")); return 1; }\n' \
    >"$place/planted.cpp"
  "${compiler[$bits]}" -shared -static -o "$place/documents/msftedit.dll" "$place/planted.cpp"
  cp "$place/documents/msftedit.dll" "$installed"
  WINEDLLOVERRIDES="$WINEDLLOVERRIDES;msftedit=n,b" start_in "$place/documents" "$installed"
  so 'the program starts among planted libraries' until_true 30 icon_is_there
  so 'it loads none of them' test ! -e "$WINEPREFIX/drive_c/planted"
  end_by_force
  rm "$installed/msftedit.dll"
}

case_folder_without_write_permission() {
  if [ "$HARBOURLINE_OWN_DISKS" = no ]; then
    skip 'a folder without write permission'
    return
  fi
  mkdir -p "$place/locked/folder"
  disk "$place/locked" --bind "$place/locked"
  disk "$place/locked" -o remount,ro,bind
  so 'installing into a folder that cannot be written fails and changes nothing' \
    stays "$installed" install_ends 2 "$(windows_path "$place/locked/folder")"
  so 'so does a folder that cannot be made' stays "$installed" install_ends 2 "$(windows_path "$place/locked")\\new\\folder"
  so 'nothing is there' holds_only "$place/locked" ''
}

# As after a copy into the folder of all programs by an administrator.
case_program_that_can_not_write() {
  if [ "$HARBOURLINE_OWN_DISKS" = no ]; then
    skip 'a program whose folder it cannot write to'
    return
  fi
  local frozen=$place/frozen
  cp -r "$installed" "$frozen"
  rm -f "$frozen/RouterLog.dat"
  disk "$frozen" --bind "$frozen"
  disk "$frozen" -o remount,ro,bind
  wine reg add "$settings_key" /v MapProfileCount /d 1 /f >/dev/null
  wine reg add "$settings_key" /v MP_1_Name /d Kept /f >/dev/null
  so 'a program that cannot write to its folder starts' start "$frozen"
  wine taskkill /im Harbourline.exe >/dev/null
  so 'it ends without a word' has_ended_well
  so 'it keeps its profiles' same "$(value "$settings_key" MP_1_Name)" Kept
  so 'and its routers' same "$(known_routers | sort)" "$(plug_in_classes | sort)"
  so 'it has no log' test ! -e "$frozen/RouterLog.dat"
  wine reg add "$settings_key" /v MapProfileCount /d 0 /f >/dev/null
}

case_full_disk() {
  if [ "$HARBOURLINE_OWN_DISKS" = no ]; then
    skip 'a full disk'
    return
  fi
  mkdir -p "$place/small"
  disk "$place/small" -t tmpfs -o size=2m tmpfs
  so 'installing on a full disk fails and changes nothing' \
    stays "$installed" install_ends 2 "$(windows_path "$place/small")\\some\\folder"
  so 'nothing stays on the disk' [ -z "$(ls -A "$place/small")" ]
  disk "$place/small" -o remount,size=$(($(du -sk "$place/package/$width" | cut -f 1) + 24))k
  so 'so does room for all but the uninstaller' stays "$installed" install_ends 2 "$(windows_path "$place/small")\\some\\folder"
  so 'nothing stays then, either' [ -z "$(ls -A "$place/small")" ]
  disk "$place/small" -o remount,size=16m
  so 'with room enough it works' install_ends 0 "$(windows_path "$place/small")\\some\\folder"
  disk "$place/small" -o remount,size=$(($(du -sk "$place/small" | cut -f 1) + 512))k
  so 'an upgrade on a full disk fails and changes nothing' \
    stays "$place/small" install_ends 2 "$(windows_path "$place/small")\\some\\folder"
  so 'the old files are all there' lies_as_expected "$place/small/some/folder"
  so 'installing into the first folder again works' install_ends 0 "$(windows_path "$installed")"
  so 'removing what was moved away from works' uninstall_ends 0 "$place/small/some/folder"
  so 'nothing stays there' holds_only "$place/small" ''
  so 'and Windows still knows the other' same "$(value "$uninstall_key" InstallLocation)" "$(windows_path "$installed")"
  so 'its plug-in included' is_there 'HKCR\Harbourline.PracticeRouter\CLSID'
}

case_removal() {
  local before
  so 'the program starts' start "$installed"
  so 'removing it works while it runs' uninstall_ends 0 "$installed"
  so 'the program has ended by itself' has_ended_well
  so 'nothing stays but what the user made' holds_only "$installed" Help/mine.html Ports.dat RouterLog.dat
  so 'Windows no longer knows it' is_missing "$uninstall_key"
  so 'it no longer runs at logon' is_missing "$run_key" /v Harbourline
  so 'it is no longer in the start menu' test ! -e "$home/$programs/$product.lnk"
  so 'its class is no longer registered' is_missing 'HKCR\Harbourline.PracticeRouter'
  so 'the settings stay' is_there "$settings_key" /v MapProfileCount
}

case_second_removal() {
  so 'removing it twice says so and changes nothing' stays "$installed" uninstall_ends 3 "$installed" /PURGE
}

case_purge() {
  so 'it can be installed again' install_ends 0
  so 'the edited list of ports is still there' grep -q '4711 Mine' "$installed/Ports.dat"
  wine reg add 'HKCU\Software\Harbourline Practice Router' /v LAN /d 1 /f >/dev/null
  so 'the uninstaller in the folder removes all with /PURGE' wine "$installed/Uninstall.exe" /S /PURGE
  so 'nothing stays but what the user laid there' until_true 30 holds_only "$installed" Help/mine.html
  so 'the settings are gone' is_missing 'HKCU\Software\Harbourline'
  so 'those of the practice router, too' is_missing 'HKCU\Software\Harbourline Practice Router'
  rm -r "$installed"
}

case_taken_announcements() {
  local n=0 class
  wine reg add "$settings_key" /v RouterPlugIn_1 /d Other.Router /f >/dev/null
  wine reg add "$settings_key" /v RouterPlugIn_2 /t REG_BINARY /d 00 /f >/dev/null
  so 'it can be installed beside announcements of others' install_ends 0
  so 'none of them is overwritten' same "$(value "$settings_key" RouterPlugIn_1),$(value "$settings_key" RouterPlugIn_2)" Other.Router,00
  for class in $(plug_in_classes); do
    so "$class has the next free number" same "$(value "$settings_key" RouterPlugIn_$((n + 3)))" "$class"
    n=$((n + 1))
  done
  so 'removing it works' uninstall_ends 0 "$installed"
  so 'its own announcements go, and no others' same "$(announced)" 'RouterPlugIn_1 Other.Router'
  so 'nothing stays in the folder' holds_only "$installed" ''
}

# A regsvr32 that always fails takes the place of the real one.
case_plug_in_that_fails() {
  local system=$WINEPREFIX/drive_c/windows/system32/regsvr32.exe
  local -A stub=([32]=x86-unicode [64]=amd64-unicode)
  printf 'Unicode true\nTarget %s\nSilentInstall silent\nOutFile "%s"\nSection\nSetErrorLevel 5\nSectionEnd\n' \
    "${stub[$bits]}" "$place/fails.exe" >"$place/fails.nsi"
  makensis -V1 "$place/fails.nsi"
  mv "$system" "$place/regsvr32.exe"
  cp "$place/fails.exe" "$system"
  so 'a plug-in that cannot be registered is told' env WINEDLLOVERRIDES="$WINEDLLOVERRIDES;regsvr32.exe=n" \
    timeout 60 bash -c 'wine "$1" /S; [ $? = 3 ]' _ "$setup"
  so 'and not announced' same "$(announced)" 'RouterPlugIn_1 Other.Router'
  mv "$place/regsvr32.exe" "$system"
  so 'removing it works' uninstall_ends 0 "$installed"
  wine reg delete 'HKCU\Software\Harbourline' /f >/dev/null
}

case_portable() {
  local folder=$place/portable/Harbourline
  unzip -q "$archive" -d "$place/portable"
  so 'the archive holds the files of the installer and its own two' diff <(files_in "$folder") <(
    (expected_files && printf '%s\n' Plug-ins.cmd 'Read me.txt') | grep -vx 'Files.lst\|Uninstall.exe' | LC_ALL=C sort)
  so 'its ready-made profiles are ours' has_the_profiles "$folder"
  so 'Plug-ins.cmd works' ends 0 wine cmd /c "$(windows_path "$folder/Plug-ins.cmd")"
  so 'it announces each plug-in' same "$(announced)" "$(expected_announcements)"
  so 'it registers the practice router' is_there 'HKCR\Harbourline.PracticeRouter\CLSID'
  so 'a second time it announces nothing more' ends 0 wine cmd /c "$(windows_path "$folder/Plug-ins.cmd")"
  so 'so each is announced once' same "$(announced)" "$(expected_announcements)"
  so 'with /u it works, too' ends 0 wine cmd /c "$(windows_path "$folder/Plug-ins.cmd")" /u
  so 'and the practice router is forgotten' is_missing 'HKCR\Harbourline.PracticeRouter'
}
