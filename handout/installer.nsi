; Installs for the operator alone: all of it lies in the operator's own profile and registry, so nobody has to be an
; administrator. The build defines TARGET, VERSION, FOLDER (where pack.py left the files and their list) and OUTPUT.

Unicode true
Target ${TARGET}
SetCompressor /SOLID lzma

!include LogicLib.nsh
!include FileFunc.nsh
!include "${FOLDER}/files.nsh"

!define TITLE "Tolvan Programmer"
!define SHORTCUT "$SMPROGRAMS\${TITLE}.lnk"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\TolvanP"
!define CLASSES "Software\Classes"
!define PROGRAM_CLASS "TolvanP.Program"
!define PREVIOUS "TolvanP.previous" ; beside the class of .PGT files, what it was before

Name "${TITLE}"
OutFile "${OUTPUT}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\${TITLE}"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
ManifestDPIAware true
BrandingText "${TITLE} ${VERSION}"

VIProductVersion "${VERSION}.0.0"
VIAddVersionKey ProductName "${TITLE}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileDescription "${TITLE} Setup"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey LegalCopyright ""

!define MUI_ICON "resources/TolvanP.ico"
!define MUI_UNICON "resources/TolvanP.ico"
!define MUI_FINISHPAGE_RUN "$INSTDIR\TolvanP.exe"
!include MUI2.nsh
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

; A program that runs cannot be replaced or removed, so the operator is asked to close it before anything is touched. That
; its file cannot be opened tells it of any version, and until the process has really ended.
!macro WAIT_UNTIL_CLOSED PROGRAM
  ${Do}
    ${IfNotThen} ${FileExists} "${PROGRAM}" ${|} ${Break} ${|}
    ClearErrors
    FileOpen $0 "${PROGRAM}" a
    ${IfNot} ${Errors}
      FileClose $0
      ${Break}
    ${EndIf}
    ${If} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "${TITLE} is running.$\nClose it, then choose Retry." \
      /SD IDCANCEL IDCANCEL`
      Abort "${TITLE} is running."
    ${EndIf}
  ${Loop}
!macroend

!macro MAKE_FOLDER NAME
  CreateDirectory "$INSTDIR\${NAME}"
!macroend

!macro REMOVE_FOLDER NAME
  RMDir "$INSTDIR\${NAME}" ; only when it is empty
!macroend

!macro INSTALL NAME
  File "/oname=${NAME}" "${FOLDER}/files/${NAME}"
!macroend

!macro REMOVE NAME
  Delete "$INSTDIR\${NAME}"
!macroend

; A file whose time is no longer the one that it was installed with belongs to the operator.
!macro REMOVE_UNCHANGED NAME
  !searchreplace SOURCE "${FOLDER}/files/${NAME}" "\" "/"
  GetFileTimeLocal "${SOURCE}" $0 $1
  GetFileTime "$INSTDIR\${NAME}" $2 $3
  ${If} "$0 $1" == "$2 $3"
    Delete "$INSTDIR\${NAME}"
  ${EndIf}
!macroend

; Another entry in the context menu of a kind of file. It never becomes what a double click does.
!macro ADD_SEND EXTENSION
  !define VERB "${CLASSES}\SystemFileAssociations\${EXTENSION}\shell\TolvanP.send"
  WriteRegStr HKCU "${VERB}" "" "Send to the portable"
  WriteRegStr HKCU "${VERB}" "Icon" "$INSTDIR\TolvanP.exe"
  WriteRegStr HKCU "${VERB}" "NeverDefault" ""
  WriteRegStr HKCU "${VERB}\command" "" '"$INSTDIR\TolvanP.exe" -S="%1"'
  !undef VERB
!macroend

!macro REMOVE_SEND EXTENSION
  DeleteRegKey HKCU "${CLASSES}\SystemFileAssociations\${EXTENSION}\shell\TolvanP.send"
  DeleteRegKey /ifempty HKCU "${CLASSES}\SystemFileAssociations\${EXTENSION}\shell"
  DeleteRegKey /ifempty HKCU "${CLASSES}\SystemFileAssociations\${EXTENSION}"
!macroend

!macro EACH_SENT_EXTENSION DO
  !insertmacro ${DO} .pgt
  !insertmacro ${DO} .cft
  !insertmacro ${DO} .lkt
  !insertmacro ${DO} .lbt
!macroend

Section
  !insertmacro WAIT_UNTIL_CLOSED "$INSTDIR\TolvanP.exe"

  ; An older installation goes as its own uninstaller wants it. It runs where it lies, so that it can be waited for.
  ReadRegStr $R0 HKCU "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $R0 != ""
  ${AndIf} ${FileExists} "$R0\uninstall.exe"
    !insertmacro WAIT_UNTIL_CLOSED "$R0\TolvanP.exe"
    ExecWait '"$R0\uninstall.exe" /S _?=$R0' $0
    ${IfThen} $0 <> 0 ${|} Abort "The installed version could not be removed." ${|}
    Delete "$R0\uninstall.exe"
    RMDir "$R0"
  ${EndIf}

  SetOutPath "$INSTDIR"
  !insertmacro EACH_FOLDER MAKE_FOLDER
  !insertmacro EACH_FILE INSTALL
  SetOverwrite off
  !insertmacro EACH_FILE_KEPT_WHEN_CHANGED INSTALL
  SetOverwrite on
  WriteUninstaller "$INSTDIR\uninstall.exe"

  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "${TITLE}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\TolvanP.exe"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" ${SIZE_IN_KB}
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1

  WriteRegStr HKCU "${CLASSES}\${PROGRAM_CLASS}" "" "Tolvan program"
  WriteRegStr HKCU "${CLASSES}\${PROGRAM_CLASS}\DefaultIcon" "" "$INSTDIR\TolvanP.exe,0"
  WriteRegStr HKCU "${CLASSES}\${PROGRAM_CLASS}\shell\open\command" "" '"$INSTDIR\TolvanP.exe" -F="%1"'
  ReadRegStr $0 HKCU "${CLASSES}\.pgt" ""
  ${If} $0 != ""
  ${AndIf} $0 != "${PROGRAM_CLASS}"
    WriteRegStr HKCU "${CLASSES}\.pgt" "${PREVIOUS}" $0
  ${EndIf}
  WriteRegStr HKCU "${CLASSES}\.pgt" "" "${PROGRAM_CLASS}"
  WriteRegStr HKCU "${CLASSES}\.pgt\OpenWithProgids" "${PROGRAM_CLASS}" ""
  !insertmacro EACH_SENT_EXTENSION ADD_SEND
  ${RefreshShellIcons}

  SetOutPath "$DOCUMENTS" ; where the program starts, and so where it first looks for files and keeps its log
  CreateShortcut "${SHORTCUT}" "$INSTDIR\TolvanP.exe"
SectionEnd

Section Uninstall
  !insertmacro WAIT_UNTIL_CLOSED "$INSTDIR\TolvanP.exe"
  SetOutPath "$TEMP" ; a folder that is current cannot be removed
  Delete "${SHORTCUT}"

  !insertmacro EACH_SENT_EXTENSION REMOVE_SEND
  DeleteRegKey /ifempty HKCU "${CLASSES}\SystemFileAssociations"
  ReadRegStr $0 HKCU "${CLASSES}\.pgt" ""
  ReadRegStr $1 HKCU "${CLASSES}\.pgt" "${PREVIOUS}"
  ${If} $0 != "${PROGRAM_CLASS}"
    ; another program has taken the files over since
  ${ElseIf} $1 != ""
    WriteRegStr HKCU "${CLASSES}\.pgt" "" $1
  ${Else}
    DeleteRegValue HKCU "${CLASSES}\.pgt" ""
  ${EndIf}
  DeleteRegValue HKCU "${CLASSES}\.pgt" "${PREVIOUS}"
  DeleteRegValue HKCU "${CLASSES}\.pgt\OpenWithProgids" "${PROGRAM_CLASS}"
  DeleteRegKey /ifempty HKCU "${CLASSES}\.pgt\OpenWithProgids"
  DeleteRegKey /ifempty HKCU "${CLASSES}\.pgt"
  DeleteRegKey HKCU "${CLASSES}\${PROGRAM_CLASS}"
  ${RefreshShellIcons}

  !insertmacro EACH_FILE REMOVE
  !insertmacro EACH_FILE_KEPT_WHEN_CHANGED REMOVE_UNCHANGED
  !insertmacro EACH_FOLDER REMOVE_FOLDER
  DeleteRegKey HKCU "${UNINSTALL_KEY}"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
SectionEnd
