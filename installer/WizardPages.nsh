; The pages, their texts and their pictures.

!define ART "..\art\rendered"
!define MUI_ICON "${ART}\harbourline.ico"
!define MUI_UNICON "${ART}\harbourline.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${ART}\installer-side.bmp"
!define MUI_UNWELCOMEFINISHPAGE_BITMAP "${ART}\installer-side.bmp"
!define MUI_HEADERIMAGE
!define MUI_HEADERIMAGE_RIGHT
!define MUI_HEADERIMAGE_BITMAP "${ART}\installer-head.bmp"
!define MUI_HEADERIMAGE_UNBITMAP "${ART}\installer-head.bmp"
!define MUI_ABORTWARNING
!define MUI_ABORTWARNING_TEXT "Leave without installing Harbourline?"

!define MUI_WELCOMEPAGE_TITLE "Welcome aboard"
!define MUI_WELCOMEPAGE_TEXT "Harbourline opens the right ports of your home router at a click, from an icon beside \
the clock.$\r$\n$\r$\nIt is installed for you alone, in a folder of your own, so no administrator is needed. Version \
${VERSION}, ${WIDTH}-bit.$\r$\n$\r$\nIf Harbourline is running, it saves its settings and ends before its files are \
replaced. Your profiles and settings stay.$\r$\n$\r$\n$_CLICK"
!insertmacro MUI_PAGE_WELCOME

!define MUI_LICENSEPAGE_TEXT_TOP "In short: use it, copy it, change it, pass it on; there is no warranty."
!insertmacro MUI_PAGE_LICENSE "..\dist\License.rtf"

!define MUI_PAGE_HEADER_SUBTEXT "Choose the folder in which Harbourline lives."
!define MUI_DIRECTORYPAGE_TEXT_TOP "Choose a folder that you may write to: Harbourline keeps its activity log there."
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE RefuseUnfitFolder
!insertmacro MUI_PAGE_DIRECTORY

!insertmacro MUI_PAGE_INSTFILES

!define MUI_FINISHPAGE_TITLE "All set"
!define MUI_FINISHPAGE_TEXT "Harbourline is installed. Look for its icon beside the clock: a click with the right \
button opens the menu.$\r$\n$\r$\nAt its first start the Setup Wizard helps you to choose your router."
!define MUI_FINISHPAGE_RUN "$INSTDIR\Harbourline.exe"
!define MUI_FINISHPAGE_RUN_TEXT "Start Harbourline"
!insertmacro MUI_PAGE_FINISH

UninstPage custom un.AskWhatGoes un.TakeAnswer
!insertmacro MUI_UNPAGE_INSTFILES

!insertmacro MUI_LANGUAGE "English"

Var Purge
Var PurgeBox

Function un.AskWhatGoes
  !insertmacro MUI_HEADER_TEXT "Remove Harbourline" "The program, its plug-ins and its help go away."
  nsDialogs::Create 1018
  Pop $0
  ${NSD_CreateLabel} 0 0 100% 36u "Harbourline is removed from this folder:$\r$\n$INSTDIR$\r$\n$\r$\nIf it is running, \
it ends first. The routers keep what they were told last."
  Pop $0
  ${NSD_CreateCheckBox} 0 52u 100% 12u "Remove my &profiles, settings and the activity log, too"
  Pop $PurgeBox
  ${If} $Purge == 1
    ${NSD_Check} $PurgeBox
  ${EndIf}
  ${NSD_CreateLabel} 12u 66u 95% 24u "Without the tick they stay, and are there again when you install Harbourline \
another time."
  Pop $0
  nsDialogs::Show
FunctionEnd

Function un.TakeAnswer
  ${NSD_GetState} $PurgeBox $Purge
FunctionEnd
