; The installation: all files are written aside, the program ends, then they take their places.

Function .onInit
  SetShellVarContext current
FunctionEnd

; RequireFolder: stops here when Harbourline can't live in $INSTDIR; its page has asked already, if there was one.
Function RequireFolder
  Call WhyUnfit
  ${If} $0 != ""
    MessageBox MB_OK|MB_ICONSTOP "$0" /SD IDOK
    Abort "$0"
  ${EndIf}
  Call MakeFolder
FunctionEnd

; StageFiles: a file that can't be written, as on a full disk, is told by the installer itself and ends in .onInstFailed. Of
; the uninstaller that is ours to see.
Function StageFiles
  RMDir /r "${STAGE}"
  SetOverwrite on
  SetDateSave on
  !insertmacro StageAll
  ClearErrors
  WriteUninstaller "${STAGE}\Uninstall.exe"
  SetOutPath "$INSTDIR"
  ${If} ${Errors}
  ${OrIfNot} ${FileExists} "${STAGE}\Uninstall.exe"
    MessageBox MB_OK|MB_ICONSTOP "There isn't enough room for Harbourline in$\r$\n$INSTDIR" /SD IDOK
    Abort "There isn't enough room."
  ${EndIf}
FunctionEnd

Var NewPorts

; KeepPorts: a list of ports that isn't the one that was installed is the user's: the new one steps back.
Function KeepPorts
  StrCpy $NewPorts 1
  ${IfNot} ${FileExists} "$INSTDIR\Ports.dat"
    Return
  ${EndIf}
  Call IsPortsOurs
  ${If} $0 = 0
    StrCpy $NewPorts 0
    DetailPrint "Keeping your own Ports.dat"
    Delete "${STAGE}\Ports.dat"
  ${EndIf}
FunctionEnd

; RemoveOldFiles: what the version before brought. What can't be removed is met again when it is to be replaced.
Function RemoveOldFiles
  ClearErrors
  FileOpen $0 "$INSTDIR\${LIST}" r
  ${If} ${Errors}
    Return
  ${EndIf}
  ${Do}
    ClearErrors
    FileRead $0 $1
    ${If} ${Errors}
      ${Break}
    ${EndIf}
    ${TrimNewLines} $1 $1
    ${If} $1 != ""
    ${AndIf} $1 != "Ports.dat"
    ${AndIf} $1 != "${LIST}"
      Delete "$INSTDIR\$1"
    ${EndIf}
  ${Loop}
  FileClose $0
FunctionEnd

!macro TakePlace FILE
  ${If} ${FileExists} "${STAGE}\${FILE}"
    Delete "$INSTDIR\${FILE}"
    Rename "${STAGE}\${FILE}" "$INSTDIR\${FILE}"
  ${EndIf}
!macroend

!macro MakeSubfolder FOLDER
  CreateDirectory "$INSTDIR\${FOLDER}"
!macroend

Function TakePlaces
  Call KeepPorts
  Call RemoveOldFiles
  ClearErrors
  !insertmacro ForEachFolder MakeSubfolder
  !insertmacro ForEachFile TakePlace
  !insertmacro TakePlace "Uninstall.exe"
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONSTOP "Not every file could take its place in$\r$\n$INSTDIR$\r$\n$\r$\nPlease close what \
uses them and install Harbourline once more." /SD IDOK
    Abort "Not every file could take its place."
  ${EndIf}
  RMDir /r "${STAGE}"
FunctionEnd

!macro Entry TYPE NAME VALUE
  WriteReg${TYPE} HKCU "${UNINSTALL_KEY}" "${NAME}" '${VALUE}'
!macroend

Function WriteEntries
  !insertmacro Entry Str DisplayName "${NAME}"
  !insertmacro Entry Str DisplayVersion "${VERSION}"
  !insertmacro Entry Str Publisher "Harbourline"
  !insertmacro Entry Str DisplayIcon "$INSTDIR\Harbourline.exe"
  !insertmacro Entry Str InstallLocation "$INSTDIR"
  !insertmacro Entry Str UninstallString '"$INSTDIR\Uninstall.exe"'
  !insertmacro Entry Str QuietUninstallString '"$INSTDIR\Uninstall.exe" /S'
  !insertmacro Entry DWORD EstimatedSize ${KILOBYTES}
  !insertmacro Entry DWORD NoModify 1
  !insertmacro Entry DWORD NoRepair 1
  ${If} $NewPorts == 1
    GetFileTime "$INSTDIR\Ports.dat" $0 $1
    !insertmacro Entry Str PortsTime "$0 $1"
  ${EndIf}
  CreateShortCut "$SMPROGRAMS\${NAME}.lnk" "$INSTDIR\Harbourline.exe" "" "" 0 SW_SHOWNORMAL "" \
    "Open the right ports of your router at a click"
FunctionEnd

Section "Harbourline"
  AddSize ${KILOBYTES}
  Call RequireFolder
  Call StageFiles
  Call RequireEnd
  Call TakePlaces
  Call WriteEntries
  Call AddPlugIns
SectionEnd

Function .onInstFailed
  SetOutPath "$TEMP"
  RMDir /r "${STAGE}"
  Call UnmakeFolder
FunctionEnd
