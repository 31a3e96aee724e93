; The installer, for the current user alone. scripts/package compiles it and says:
;   WIDTH     64 or 32
;   VERSION   as the program has it
;   FILES     the generated list of what is installed
;   OUTPUT    the installer to write
;
; Options: /S says and asks nothing, /D=<folder> at the end names the folder. The uninstaller takes /S, with which
; profiles, settings and log stay, and /PURGE, with which they go.
; Exit codes: 0 done, 1 called off by the user, 2 failed and nothing was changed, 3 installed but not all plug-ins could
; be made known. The uninstaller's: 0 done, 1 called off, 2 failed, 3 nothing was installed there.

Unicode true
!if ${WIDTH} == 64
  Target amd64-unicode
  !define NAME "Harbourline"
  !define OTHER_NAME "Harbourline (32-bit)"
!else
  !define NAME "Harbourline (32-bit)"
  !define OTHER_NAME "Harbourline"
!endif
RequestExecutionLevel user
ManifestDPIAware true
ManifestSupportedOS all
SetCompressor /SOLID lzma

!define UNINSTALL_KEYS "Software\Microsoft\Windows\CurrentVersion\Uninstall"
!define UNINSTALL_KEY "${UNINSTALL_KEYS}\${NAME}"
!define OTHER_UNINSTALL_KEY "${UNINSTALL_KEYS}\${OTHER_NAME}"
!define APPLICATION_KEY "Software\Harbourline"
!define SETTINGS_KEY "${APPLICATION_KEY}\RouterSection"
!define RUN_KEY "Software\Microsoft\Windows\CurrentVersion\Run"

; New files are written here first, so that a full disk leaves the installed ones alone.
!define STAGE "$INSTDIR\Harbourline.setup"
; What is installed, a path a line: the next version removes what it no longer has.
!define LIST "Files.lst"

Name "${NAME}"
BrandingText "Harbourline ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\${NAME}"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
AllowRootDirInstall false
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey ProductName "Harbourline"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Harbourline Setup, ${WIDTH}-bit"
VIAddVersionKey CompanyName "Harbourline"
VIAddVersionKey OriginalFilename "Harbourline-${VERSION}-setup.exe"
VIAddVersionKey LegalCopyright "MIT licence"

!include LogicLib.nsh
!include MUI2.nsh
!include FileFunc.nsh
!include TextFunc.nsh
!include nsDialogs.nsh
!include "${FILES}"
!include WizardPages.nsh
!include RunningProgram.nsh
!include Folder.nsh
!include Ports.nsh
!include PlugIns.nsh
!include Install.nsh
!include Uninstall.nsh
