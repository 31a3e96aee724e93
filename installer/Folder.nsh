; The folder that the user chose: may it be written, and what had to be made for it.

Var FirstNewFolder

; MakeFolder: makes $INSTDIR and tries to write there. The error flag is set when that fails; $FirstNewFolder is the
; topmost folder that had to be made, or empty.
Function MakeFolder
  StrCpy $FirstNewFolder ""
  StrCpy $0 $INSTDIR
  ${DoUntil} ${FileExists} "$0\*.*"
    StrCpy $FirstNewFolder $0
    ${GetParent} $0 $0
    ${If} $0 == ""
      ${Break}
    ${EndIf}
  ${Loop}
  ClearErrors
  CreateDirectory "$INSTDIR"
  ${If} ${Errors}
    Call UnmakeFolder
    SetErrors
    Return
  ${EndIf}
  GetTempFileName $0 "$INSTDIR"
  ${If} ${Errors}
    Call UnmakeFolder
    SetErrors
    Return
  ${EndIf}
  Delete $0
FunctionEnd

; UnmakeFolder: takes away the folders that MakeFolder made, as far as they are empty.
Function UnmakeFolder
  ${If} $FirstNewFolder == ""
    Return
  ${EndIf}
  StrCpy $0 $INSTDIR
  ${Do}
    RMDir $0
    ${If} $0 == $FirstNewFolder
    ${OrIf} $0 == ""
      ${Break}
    ${EndIf}
    ${GetParent} $0 $0
  ${Loop}
FunctionEnd

; WhyUnfit: why Harbourline can't live in $INSTDIR into $0; empty when it can.
Function WhyUnfit
  ReadRegStr $0 HKCU "${OTHER_UNINSTALL_KEY}" "InstallLocation"
  ${If} $0 == $INSTDIR
    StrCpy $0 "${OTHER_NAME} lives in this folder, and the two don't mix."
    Return
  ${EndIf}
  Call MakeFolder
  ${If} ${Errors}
    StrCpy $0 "Nothing can be written into this folder:$\r$\n$INSTDIR"
    Return
  ${EndIf}
  Call UnmakeFolder
  StrCpy $0 ""
FunctionEnd

Function RefuseUnfitFolder
  Call WhyUnfit
  ${If} $0 != ""
    MessageBox MB_OK|MB_ICONEXCLAMATION "$0$\r$\n$\r$\nPlease choose another one, such as$\r$\n\
$LOCALAPPDATA\Programs\${NAME}"
    Abort
  ${EndIf}
FunctionEnd
