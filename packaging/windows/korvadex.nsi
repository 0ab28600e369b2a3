; Installs Korvadex for the current user, without administrator's rights: into a directory where the program may write,
; since it keeps kx.ini beside itself. Hangar, Staging, simulator and kx.ini stay when it is taken away.
Target amd64-unicode
!include MUI2.nsh

Name "Korvadex"
OutFile "${OUTPUT}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\Korvadex"
InstallDirRegKey HKCU "Software\Korvadex" "InstallDir"
SetCompressor /SOLID lzma
ManifestDPIAware true
VIProductVersion "${VERSION}.0.0"
VIAddVersionKey ProductName "Korvadex"
VIAddVersionKey FileDescription "Korvadex setup"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey LegalCopyright "the Korvadex authors, MIT licence"

!define UninstallKey "Software\Microsoft\Windows\CurrentVersion\Uninstall\Korvadex"
!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_FINISHPAGE_RUN "$INSTDIR\korvadex.exe"
!define MUI_FINISHPAGE_SHOWREADME "$INSTDIR\kxdoc.htm"
!define MUI_FINISHPAGE_SHOWREADME_NOTCHECKED
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; A running program cannot be replaced or taken away.
!macro AwaitEnd program id
    again_${id}:
    IfFileExists "$INSTDIR\${program}" 0 ended_${id}
    ClearErrors
    FileOpen $0 "$INSTDIR\${program}" a
    IfErrors 0 closable_${id}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$INSTDIR\${program} is in use or cannot be written.  Please end Korvadex first, then choose Retry." /SD IDCANCEL IDRETRY again_${id}
    SetErrorLevel 1
    Quit
    closable_${id}:
    FileClose $0
    ended_${id}:
!macroend

Section "Korvadex"
    !insertmacro AwaitEnd "korvadex.exe" window
    !insertmacro AwaitEnd "korvadex-cli.exe" shell
    SetOutPath "$INSTDIR"
    File /r "${STAGE}/*"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    CreateShortcut "$SMPROGRAMS\Korvadex.lnk" "$INSTDIR\korvadex.exe"
    WriteRegStr HKCU "Software\Korvadex" "InstallDir" "$INSTDIR"
    WriteRegStr HKCU "${UninstallKey}" "DisplayName" "Korvadex"
    WriteRegStr HKCU "${UninstallKey}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${UninstallKey}" "DisplayIcon" "$INSTDIR\korvadex.exe"
    WriteRegStr HKCU "${UninstallKey}" "Publisher" "the Korvadex authors"
    WriteRegStr HKCU "${UninstallKey}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${UninstallKey}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU "${UninstallKey}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU "${UninstallKey}" "NoModify" 1
    WriteRegDWORD HKCU "${UninstallKey}" "NoRepair" 1
SectionEnd

Section "Uninstall"
    !insertmacro AwaitEnd "korvadex.exe" window
    !insertmacro AwaitEnd "korvadex-cli.exe" shell
    !include "${UNINSTALL}"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR" ; stays while kx.ini or anything else of the user's is in it
    Delete "$SMPROGRAMS\Korvadex.lnk"
    DeleteRegKey HKCU "${UninstallKey}"
    DeleteRegKey HKCU "Software\Korvadex"
SectionEnd
