; The plug-ins: registered for COM, and announced to the program, which takes each announcement into its list.

!define MOST_ANNOUNCEMENTS 100
!define HKEY_CURRENT_USER_HANDLE -2147483647

Var FaultyPlugIns

; Announce: leaves the class in $0 for the program to find, unless it knows it or has it waiting already. No value that
; is there is overwritten. The error flag is set when there is no room.
Function Announce
  ClearErrors
  ReadRegStr $1 HKCU "${SETTINGS_KEY}" "RouterCount"
  ${For} $2 1 $1
    ReadRegStr $3 HKCU "${SETTINGS_KEY}" "Router_$2"
    ${If} $3 == $0
      ClearErrors
      Return
    ${EndIf}
  ${Next}
  StrCpy $4 ""
  ${For} $2 1 ${MOST_ANNOUNCEMENTS}
    ReadRegStr $3 HKCU "${SETTINGS_KEY}" "RouterPlugIn_$2"
    ${If} $3 == $0
      ClearErrors
      Return
    ${EndIf}
    ; A value of another kind reads as nothing and is there all the same.
    System::Call 'shlwapi::SHGetValueW(p ${HKEY_CURRENT_USER_HANDLE}, w "${SETTINGS_KEY}", w "RouterPlugIn_$2", p 0, p 0, p 0) i .r3'
    ${If} $3 <> 0
    ${AndIf} $4 == ""
      StrCpy $4 $2
    ${EndIf}
  ${Next}
  ClearErrors
  ${If} $4 == ""
    SetErrors
  ${Else}
    WriteRegStr HKCU "${SETTINGS_KEY}" "RouterPlugIn_$4" $0
  ${EndIf}
FunctionEnd

!macro AddPlugIn FILE CLASS SETTINGS
  DetailPrint "Making ${FILE} known"
  StrCpy $0 1
  ExecWait '"$SYSDIR\regsvr32.exe" /s "$INSTDIR\${FILE}"' $0
  ${If} $0 = 0
    StrCpy $0 "${CLASS}"
    Call Announce
    ${If} ${Errors}
      StrCpy $FaultyPlugIns "$FaultyPlugIns$\r$\n${FILE}: too many plug-ins are waiting"
    ${EndIf}
  ${Else}
    StrCpy $FaultyPlugIns "$FaultyPlugIns$\r$\n${FILE}: regsvr32 says $0"
  ${EndIf}
!macroend

; AddPlugIns: makes all of them known, and tells those that can't be.
Function AddPlugIns
  StrCpy $FaultyPlugIns ""
  !insertmacro ForEachPlugIn AddPlugIn
  ${If} $FaultyPlugIns != ""
    SetErrorLevel 3
    MessageBox MB_OK|MB_ICONEXCLAMATION "Harbourline is installed, but it can't use all of its plug-ins:\
$\r$\n$FaultyPlugIns$\r$\n$\r$\nInstalling it once more may help." /SD IDOK
  ${EndIf}
FunctionEnd

!macro RemovePlugIn FILE CLASS SETTINGS
  ${If} ${FileExists} "$INSTDIR\${FILE}"
    ExecWait '"$SYSDIR\regsvr32.exe" /s /u "$INSTDIR\${FILE}"'
  ${EndIf}
  ${For} $0 1 ${MOST_ANNOUNCEMENTS}
    ReadRegStr $1 HKCU "${SETTINGS_KEY}" "RouterPlugIn_$0"
    ${If} $1 == "${CLASS}"
      DeleteRegValue HKCU "${SETTINGS_KEY}" "RouterPlugIn_$0"
    ${EndIf}
  ${Next}
!macroend

!macro RemovePlugInSettings FILE CLASS SETTINGS
  !if "${SETTINGS}" != ""
    DeleteRegKey HKCU "Software\${SETTINGS}"
  !endif
!macroend
