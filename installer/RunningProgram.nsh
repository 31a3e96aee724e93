; Ends the program of the folder as the task manager does: it saves its state. Programs of other folders go on.

!define PROCESS_SYNCHRONIZE_AND_QUERY 0x101000
!define SECONDS_TO_END 15

!macro RunningProgramFunctions un
  ; FindProgram: the handle of a process of this folder's program into $0, its main window into $1; 0 when none runs.
  Function ${un}FindProgram
    StrCpy $1 0
    ${Do}
      StrCpy $0 0
      FindWindow $1 "HarbourlineWindow" "Harbourline" 0 $1
      ${If} $1 = 0
        Return
      ${EndIf}
      System::Call 'user32::GetWindowThreadProcessId(p r1, *i .r2)'
      System::Call 'kernel32::OpenProcess(i ${PROCESS_SYNCHRONIZE_AND_QUERY}, i 0, i r2) p .r0'
      ${If} $0 = 0
        ${Continue}
      ${EndIf}
      StrCpy $3 ""
      System::Call 'kernel32::QueryFullProcessImageNameW(p r0, i 0, w .r3, *i ${NSIS_MAX_STRLEN})'
      ${If} $3 == "$INSTDIR\Harbourline.exe"
        Return
      ${EndIf}
      System::Call 'kernel32::CloseHandle(p r0)'
    ${Loop}
  FunctionEnd

  ; InUse: the first of the folder's binaries that a program holds open into $0; empty when all can be replaced.
  Function ${un}InUse
    !insertmacro ForEachBinary CheckInUse
    StrCpy $0 ""
  FunctionEnd

  ; EndProgram: waits until the program of this folder has ended. "" into $0, or what still is in use.
  Function ${un}EndProgram
    Call ${un}FindProgram
    ${If} $0 <> 0
      DetailPrint "Harbourline is running: it saves its settings and ends"
      System::Call 'user32::PostMessageW(p r1, i ${WM_CLOSE}, p 0, p 0)'
      IntOp $2 ${SECONDS_TO_END} * 1000
      System::Call 'kernel32::WaitForSingleObject(p r0, i r2)'
      System::Call 'kernel32::CloseHandle(p r0)'
    ${EndIf}
    Call ${un}InUse
  FunctionEnd

  ; RequireEnd: ends the program, and has the user help when it doesn't end. Stops here when it goes on.
  Function ${un}RequireEnd
    ${Do}
      Call ${un}EndProgram
      ${If} $0 == ""
        Return
      ${EndIf}
      MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$0 is in use, and doesn't end by itself.$\r$\n$\r$\nChoose Exit in \
the menu of Harbourline's icon, close what else uses it, and try again. Cancel leaves everything as it is." \
        /SD IDCANCEL IDRETRY +2
      Abort "$0 is in use."
    ${Loop}
  FunctionEnd
!macroend

!macro CheckInUse FILE
  ${If} ${FileExists} "$INSTDIR\${FILE}"
    ClearErrors
    FileOpen $0 "$INSTDIR\${FILE}" a
    ${If} ${Errors}
      StrCpy $0 "${FILE}"
      Return
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

!insertmacro RunningProgramFunctions ""
!insertmacro RunningProgramFunctions "un."
