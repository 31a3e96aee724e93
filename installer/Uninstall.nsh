; The way back: what the installer wrote goes, and what the user made only when asked for.

; 1 when this folder is the one that Windows knows Harbourline in. Of another one nothing but its files is taken.
Var Registered
; 1 when the list of ports was never edited.
Var PortsOurs

Function un.onInit
  SetShellVarContext current
  StrCpy $Purge 0
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/PURGE" $1
  ${IfNot} ${Errors}
    StrCpy $Purge 1
  ${EndIf}
  ReadRegStr $0 HKCU "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $0 == $INSTDIR
    StrCpy $Registered 1
  ${Else}
    StrCpy $Registered 0
    ${IfNot} ${FileExists} "$INSTDIR\Harbourline.exe"
      MessageBox MB_OK|MB_ICONINFORMATION "Harbourline is not installed in$\r$\n$INSTDIR$\r$\n$\r$\nNothing was \
removed." /SD IDOK
      SetErrorLevel 3
      Quit
    ${EndIf}
  ${EndIf}
FunctionEnd

!macro RemoveFile FILE
  !if "${FILE}" != "Ports.dat"
    Delete "$INSTDIR\${FILE}"
  !endif
!macroend

!macro RemoveFolder FOLDER
  RMDir "$INSTDIR\${FOLDER}"
!macroend

Function un.RemoveFiles
  !insertmacro ForEachFile RemoveFile
  ${If} $PortsOurs = 1
  ${OrIf} $Purge = 1
    Delete "$INSTDIR\Ports.dat"
  ${EndIf}
  ${If} $Purge = 1
    Delete "$INSTDIR\RouterLog.dat"
  ${EndIf}
  !insertmacro ForEachFolderFromInside RemoveFolder
  Delete "$INSTDIR\Uninstall.exe"
  ; An installation that was cut short may have left it.
  RMDir /r "${STAGE}"
  SetOutPath "$TEMP"
  RMDir "$INSTDIR"
FunctionEnd

; RemoveRunAtLogon: the program writes the entry itself, in quotes when its path has a blank.
Function un.RemoveRunAtLogon
  ReadRegStr $0 HKCU "${RUN_KEY}" "Harbourline"
  ${If} $0 == "$INSTDIR\Harbourline.exe"
  ${OrIf} $0 == '"$INSTDIR\Harbourline.exe"'
    DeleteRegValue HKCU "${RUN_KEY}" "Harbourline"
  ${EndIf}
FunctionEnd

Function un.RemoveEntries
  !insertmacro ForEachPlugIn RemovePlugIn
  Call un.RemoveRunAtLogon
  Delete "$SMPROGRAMS\${NAME}.lnk"
  DeleteRegKey HKCU "${UNINSTALL_KEY}"
  ${If} $Purge = 1
    DeleteRegKey HKCU "${APPLICATION_KEY}"
    !insertmacro ForEachPlugIn RemovePlugInSettings
  ${EndIf}
FunctionEnd

Section "Uninstall"
  Call un.RequireEnd
  Call un.IsPortsOurs
  StrCpy $PortsOurs $0
  ${If} $Registered = 1
    Call un.RemoveEntries
  ${EndIf}
  Call un.RemoveFiles
SectionEnd
