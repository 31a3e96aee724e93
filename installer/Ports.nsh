; "Ports.dat" is there to be edited. The time that it was installed with tells whether that has happened.

!macro PortsFunctions un
  ; IsPortsOurs: 1 into $0 when the list of ports is as it was installed.
  Function ${un}IsPortsOurs
    GetFileTime "$INSTDIR\Ports.dat" $0 $1
    ReadRegStr $2 HKCU "${UNINSTALL_KEY}" "PortsTime"
    ${If} $2 == "$0 $1"
      StrCpy $0 1
    ${Else}
      StrCpy $0 0
    ${EndIf}
  FunctionEnd
!macroend
!insertmacro PortsFunctions ""
!insertmacro PortsFunctions "un."
