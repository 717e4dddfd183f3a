; The installer for Windows. Made by scripts/windows.sh, which gives
;   VERSION  version of the program, four numbers
;   STAGE    folder with the files as they are installed
;   LISTS    folder with remove.nsh, which removes these files and no others
;   OUTPUT   file of the installer
; Switches: /S silent, /AllUsers or /CurrentUser, /D=FOLDER (the last one, without quotes).
Unicode true
ManifestDPIAware true
SetCompressor /SOLID lzma

!define NAME "KartoCheck"
!define WINDOW_PROGRAM "kartocheck-window.exe"
!define SETTINGS_KEY "Software\KartoCheck"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\KartoCheck"

; Whoever may install for everybody is asked for whom; others install for themselves.
!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_INSTALLMODE_INSTDIR "${NAME}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME "InstallLocation"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_VALUENAME "InstallLocation"
!include MultiUser.nsh
!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh

Name "${NAME}"
OutFile "${OUTPUT}"
BrandingText "${NAME} ${VERSION}"
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}"
VIAddVersionKey ProductName "${NAME}"
VIAddVersionKey FileDescription "Installation von ${NAME}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey LegalCopyright "${NAME}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!insertmacro MUI_PAGE_WELCOME
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN "$INSTDIR\${WINDOW_PROGRAM}"
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "German"

; Windows lets nobody write into a program that runs. Exit status 1 of a silent run.
!macro RefuseWhileRuns FILE
  ${If} ${FileExists} "$INSTDIR\${FILE}"
    ClearErrors
    FileOpen $0 "$INSTDIR\${FILE}" a
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONEXCLAMATION "KartoCheck läuft noch. Bitte beenden Sie das Programm und versuchen Sie es erneut." /SD IDOK
      SetErrorLevel 1
      Quit
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend
!macro RefuseWhileItRuns UN
Function ${UN}RefuseWhileItRuns
  !insertmacro RefuseWhileRuns "${WINDOW_PROGRAM}"
  !insertmacro RefuseWhileRuns "kartocheck.exe"
FunctionEnd
!macroend
!insertmacro RefuseWhileItRuns ""
!insertmacro RefuseWhileItRuns "un."

Function .onInit
  ; A folder that was named on the command line goes before that of the mode.
  StrCpy $R9 $INSTDIR
  !insertmacro MULTIUSER_INIT
  ${If} $R9 != ""
    StrCpy $INSTDIR $R9
  ${EndIf}
FunctionEnd

Function un.onInit
  !insertmacro MULTIUSER_UNINIT
FunctionEnd

Section
  Call RefuseWhileItRuns
  ; Files that an older version had and this one has not are not left behind; settings are.
  ReadRegStr $1 SHCTX "${UNINSTALL_KEY}" "UninstallString"
  ReadRegStr $2 SHCTX "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $1 != ""
  ${AndIf} ${FileExists} "$2\Deinstallieren.exe"
    ExecWait '"$2\Deinstallieren.exe" /S /KeepSettings _?=$2'
  ${EndIf}

  SetOutPath "$INSTDIR"
  File /r "${STAGE}/*"
  WriteUninstaller "$INSTDIR\Deinstallieren.exe"
  CreateShortcut "$SMPROGRAMS\${NAME}.lnk" "$INSTDIR\${WINDOW_PROGRAM}"

  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayName" "${NAME}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\${WINDOW_PROGRAM}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "Publisher" "${NAME}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Deinstallieren.exe" /$MultiUser.InstallMode'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Deinstallieren.exe" /$MultiUser.InstallMode /S'
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "EstimatedSize" $0
SectionEnd

Section "Uninstall"
  Call un.RefuseWhileItRuns
  !include "${LISTS}/remove.nsh"
  Delete "$INSTDIR\Deinstallieren.exe"
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\${NAME}.lnk"
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/KeepSettings" $1
  ${If} ${Errors}
    DeleteRegKey HKCU "${SETTINGS_KEY}"
  ${EndIf}
SectionEnd
