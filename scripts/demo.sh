# shellcheck shell=bash
# The state in which a newcomer finds Harbourline: the practice router announced, as an installer does it, and three
# profiles. The first start leads through the Setup Wizard.

demo_section='HKEY_CURRENT_USER\Software\Harbourline\RouterSection'
practice_router=Harbourline.PracticeRouter

demo_settings() {
  cat <<END
REGEDIT4

[$demo_section]
"MapProfileCount"="3"
END
  demo_profile 1 'Game server' 'Friends join the game on this computer' 'Game' 27015 27030 1
  demo_profile 2 'Remote desktop' 'This computer from anywhere' 'Desktop' 3389 3389 0
  demo_profile 3 'Web server' 'The pages of this computer' 'Web pages' 8080 8081 0
}

# demo_profile NUMBER NAME DESCRIPTION MAPPING BEGIN END PROTOCOL: one profile with one mapping to this computer.
demo_profile() {
  cat <<END
"MP_$1_Description"="$3"
"MP_$1_Name"="$2"
"MP_$1_MapCount"="1"
"MP_$1_MAP_1_Description"="$4"
"MP_$1_MAP_1_BeginPort"="$5"
"MP_$1_MAP_1_EndPort"="$6"
"MP_$1_MAP_1_Protocal"="$7"
"MP_$1_MAP_1_ForwardIPAddress"="-1"
"MP_$1_WindowTitle"=""
"MP_$1_WindowClass"=""
"MP_$1_AutoActivate"="False"
"MP_$1_Enabled"="False"
END
}

# The value of a setting in the current prefix; nothing when it isn't there.
stored_setting() {
  wine reg query "$demo_section" /v "$1" 2>/dev/null | tr -d '\r' | sed -n "s/^ *$1 *REG_SZ *//p"
}

demo_profiles() {
  demo_settings >"$build/wine/demo.reg"
  logged demo-settings wine reg import "$(wine_path "$build/wine/demo.reg")"
}

# Registers and announces the practice router, as the installer does, and brings the profiles when there are no settings.
demo_install() {
  wine_register "$build/$preset/plug-ins/practice-router/PracticeRouter.dll"
  local settings
  if ! settings=$(wine reg query "$demo_section" 2>/dev/null | tr -d '\r'); then demo_profiles; fi
  if ! grep -qE "^ *Router(PlugIn)?_[0-9]+ .*$practice_router\$" <<<"$settings"; then
    logged demo-announcement wine reg add "$demo_section" /v RouterPlugIn_1 /d "$practice_router" /f
  fi
}
