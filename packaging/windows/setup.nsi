; SPDX-License-Identifier: BSD-3-Clause
; The installer, for one user or for all (/CurrentUser, /AllUsers). Silent with /S; /D=FOLDER, the last
; argument and without quotes, is the folder to install in; /HOST=FOLDER also installs the plug-in for
; the program in that folder. The uninstaller takes /S, and /SETTINGS to remove the user's settings.
; Exit code 2: a file could not be written, or the folder of /HOST does not exist.
; Defined by make-setup: VERSION, NUMBERS (version, four numbers), PACKAGE, LISTS, ICON, OUTPUT.
Target amd64-unicode
Unicode true
SetCompressor /SOLID lzma
ManifestDPIAware true
ManifestLongPathAware true
Name "Spanlet"
OutFile "${OUTPUT}"
BrandingText "Spanlet ${VERSION}"

!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Spanlet"
!define SETTINGS_PARENT "Software\Meridane"

!define MULTIUSER_MUI
!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_INSTALLMODE_INSTDIR "Spanlet"
!define MULTIUSER_INSTALLMODE_DEFAULT_CURRENTUSER
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_KEY "${KEY}"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_VALUENAME "UninstallString"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${KEY}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME "InstallLocation"
!define MULTIUSER_USE_PROGRAMFILES64
!include MultiUser.nsh
!include MUI2.nsh
!include FileFunc.nsh
!include x64.nsh

VIProductVersion "${NUMBERS}"
VIAddVersionKey "ProductName" "Spanlet"
VIAddVersionKey "FileDescription" "Installs Spanlet"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "CompanyName" "The Spanlet authors"
VIAddVersionKey "LegalCopyright" "Copyright (c) 2026 The Spanlet authors"

; The folder of the program that gets the plug-in; empty for none.
Var HostFolder
; Whether the list of features there is ours: one that was there before stays.
Var HostListIsOurs
Var GivenFolder

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC
!insertmacro MUI_PAGE_LICENSE "${PACKAGE}\licences\Spanlet.txt"
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!define MUI_PAGE_HEADER_TEXT "$(HOST_TITLE)"
!define MUI_PAGE_HEADER_SUBTEXT "$(PLUGIN_DESCRIPTION)"
!define MUI_DIRECTORYPAGE_TEXT_TOP "$(HOST_TEXT)"
!define MUI_DIRECTORYPAGE_VARIABLE $HostFolder
!define MUI_PAGE_CUSTOMFUNCTION_PRE skipHostPage
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE checkHost
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN "$INSTDIR\spanlet-viewer.exe"
!define MUI_PAGE_CUSTOMFUNCTION_SHOW hideRunWithoutViewer
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES

!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "German"
!macro TEXT NAME ENGLISH GERMAN
    LangString ${NAME} ${LANG_ENGLISH} "${ENGLISH}"
    LangString ${NAME} ${LANG_GERMAN} "${GERMAN}"
!macroend
!insertmacro TEXT PROGRAMS "Viewer and command line" "Viewer und Kommandozeile"
!insertmacro TEXT PROGRAMS_DESCRIPTION \
    "The camera viewer with Spanlet, and the command line." \
    "Der Kamera-Viewer mit Spanlet, und die Kommandozeile."
!insertmacro TEXT MENU "Start menu" "Startmenü"
!insertmacro TEXT MENU_DESCRIPTION \
    "An entry for the viewer in the Start menu." "Ein Eintrag für den Viewer im Startmenü."
!insertmacro TEXT PLUGIN "Plug-in for another program" "Plug-in für ein anderes Programm"
!insertmacro TEXT PLUGIN_DESCRIPTION \
    "The plug-in, for an installed program that loads it." \
    "Das Plug-in, für ein installiertes Programm, das es lädt."
!insertmacro TEXT HOST_TITLE "Program for the Plug-in" "Programm für das Plug-in"
!insertmacro TEXT HOST_TEXT \
    "The plug-in is installed below the folder of the program that loads it, built by MinGW-w64 for 64 bits." \
    "Das Plug-in wird unterhalb des Ordners des Programms installiert, das es lädt und mit MinGW-w64 für 64 Bit gebaut ist."
!insertmacro TEXT HOST_MISSING \
    "There is no folder $\"$HostFolder$\"." "Es gibt keinen Ordner $\"$HostFolder$\"."
!insertmacro TEXT FILES_IN_USE \
    "Not all files could be replaced or removed. Close Spanlet and the programs that use it, and try again." \
    "Nicht alle Dateien konnten ersetzt oder entfernt werden. Schließen Sie Spanlet und die Programme, die es verwenden, und versuchen Sie es noch einmal."
!insertmacro TEXT WINDOWS_TOO_OLD \
    "Spanlet needs Windows 10 or later, 64 bits." "Spanlet benötigt Windows 10 oder neuer, 64 Bit."
!insertmacro TEXT SETTINGS "Settings" "Einstellungen"
!insertmacro TEXT SETTINGS_DESCRIPTION \
    "The settings of this user." "Die Einstellungen dieses Benutzers."
!insertmacro TEXT UNINSTALL_PROGRAMS "Spanlet" "Spanlet"

!macro STOP_ON_ERRORS
    ${If} ${Errors}
        MessageBox MB_OK|MB_ICONSTOP "$(FILES_IN_USE)" /SD IDOK
        SetErrorLevel 2
        Abort "$(FILES_IN_USE)"
    ${EndIf}
!macroend

; A version that is installed already, with the files that this one may no longer have.
Section "-previous"
    ReadRegStr $0 SHCTX "${KEY}" "InstallLocation"
    ${If} $0 != ""
    ${AndIf} ${FileExists} "$0\uninstall.exe"
        ExecWait '"$0\uninstall.exe" /$MultiUser.InstallMode /S _?=$0'
        Delete "$0\uninstall.exe"
        RMDir "$0"
    ${EndIf}
SectionEnd

Section "$(PROGRAMS)" programs
    ClearErrors
    !include "${LISTS}/install.nsh"
    !insertmacro STOP_ON_ERRORS
SectionEnd

Section "$(MENU)" menu
    ${If} ${SectionIsSelected} ${programs}
        SetOutPath "$INSTDIR"
        CreateShortcut "$SMPROGRAMS\Spanlet.lnk" "$INSTDIR\spanlet-viewer.exe"
    ${EndIf}
SectionEnd

Section /o "$(PLUGIN)" plugin
    ClearErrors
    StrCpy $HostListIsOurs 0
    SetOutPath "$HostFolder\plugins"
    File "${PACKAGE}\plugins\Spanlet.dll"
    ${IfNot} ${FileExists} "$HostFolder\plugins\Spanlet_Settings.json"
        StrCpy $HostListIsOurs 1
        File "${PACKAGE}\plugins\Spanlet_Settings.json"
    ${EndIf}
    SetOutPath "$HostFolder\qm"
    File "${PACKAGE}\qm\Spanlet_de.qm"
    !insertmacro STOP_ON_ERRORS
SectionEnd

Section "-uninstaller"
    SetOutPath "$INSTDIR"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    WriteRegStr SHCTX "${KEY}" "DisplayName" "Spanlet"
    WriteRegStr SHCTX "${KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr SHCTX "${KEY}" "DisplayIcon" "$INSTDIR\uninstall.exe"
    WriteRegStr SHCTX "${KEY}" "Publisher" "The Spanlet authors"
    WriteRegStr SHCTX "${KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr SHCTX "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode'
    WriteRegStr SHCTX "${KEY}" "QuietUninstallString" \
        '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode /S'
    WriteRegDWORD SHCTX "${KEY}" "EstimatedSize" $0
    WriteRegDWORD SHCTX "${KEY}" "NoModify" 1
    WriteRegDWORD SHCTX "${KEY}" "NoRepair" 1
    ${If} ${SectionIsSelected} ${plugin}
        WriteRegStr SHCTX "${KEY}" "HostFolder" "$HostFolder"
        WriteRegDWORD SHCTX "${KEY}" "HostListIsOurs" $HostListIsOurs
    ${EndIf}
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
!insertmacro MUI_DESCRIPTION_TEXT ${programs} "$(PROGRAMS_DESCRIPTION)"
!insertmacro MUI_DESCRIPTION_TEXT ${menu} "$(MENU_DESCRIPTION)"
!insertmacro MUI_DESCRIPTION_TEXT ${plugin} "$(PLUGIN_DESCRIPTION)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Function .onInit
    ${IfNot} ${RunningX64}
    ${OrIfNot} ${AtLeastWin10}
        MessageBox MB_OK|MB_ICONSTOP "$(WINDOWS_TOO_OLD)" /SD IDOK
        SetErrorLevel 2
        Quit
    ${EndIf}
    SetRegView 64
    ; The one that /D= gave; the next line sets the folder that belongs to the users.
    StrCpy $GivenFolder $INSTDIR
    !insertmacro MULTIUSER_INIT
    ${If} $GivenFolder != ""
        StrCpy $INSTDIR $GivenFolder
    ${EndIf}
    ; A plug-in that is installed already is replaced where it is.
    ReadRegStr $HostFolder SHCTX "${KEY}" "HostFolder"
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/HOST=" $1
    ${IfNot} ${Errors}
        StrCpy $HostFolder $1
    ${EndIf}
    ${If} $HostFolder != ""
        !insertmacro SelectSection ${plugin}
        ${IfNot} ${FileExists} "$HostFolder\*.*"
            MessageBox MB_OK|MB_ICONSTOP "$(HOST_MISSING)" /SD IDOK
            SetErrorLevel 2
            Quit
        ${EndIf}
    ${EndIf}
FunctionEnd

Function skipHostPage
    ${IfNot} ${SectionIsSelected} ${plugin}
        Abort
    ${EndIf}
FunctionEnd

Function checkHost
    ${IfNot} ${FileExists} "$HostFolder\*.*"
        MessageBox MB_OK|MB_ICONEXCLAMATION "$(HOST_MISSING)"
        Abort
    ${EndIf}
FunctionEnd

Function hideRunWithoutViewer
    ${IfNot} ${SectionIsSelected} ${programs}
        SendMessage $mui.FinishPage.Run ${BM_SETCHECK} ${BST_UNCHECKED} 0
        ShowWindow $mui.FinishPage.Run ${SW_HIDE}
    ${EndIf}
FunctionEnd

Section "un.$(UNINSTALL_PROGRAMS)" un_programs
    SectionIn RO
    ReadRegStr $HostFolder SHCTX "${KEY}" "HostFolder"
    ${If} $HostFolder != ""
        ReadRegDWORD $HostListIsOurs SHCTX "${KEY}" "HostListIsOurs"
        ClearErrors
        Delete "$HostFolder\plugins\Spanlet.dll"
        ${If} $HostListIsOurs = 1
            Delete "$HostFolder\plugins\Spanlet_Settings.json"
        ${EndIf}
        Delete "$HostFolder\qm\Spanlet_de.qm"
        !insertmacro STOP_ON_ERRORS
        RMDir "$HostFolder\plugins"
        RMDir "$HostFolder\qm"
    ${EndIf}
    ; The files of the list, and folders that are empty then.
    ClearErrors
    !include "${LISTS}/delete-files.nsh"
    !insertmacro STOP_ON_ERRORS
    !include "${LISTS}/remove-folders.nsh"
    ReadRegStr $0 SHCTX "${KEY}" "InstallLocation"
    ${If} $0 == $INSTDIR
        Delete "$SMPROGRAMS\Spanlet.lnk"
        DeleteRegKey SHCTX "${KEY}"
    ${EndIf}
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
SectionEnd

Section /o "un.$(SETTINGS)" un_settings
    DeleteRegKey HKCU "${SETTINGS_PARENT}\Spanlet"
    DeleteRegKey /ifempty HKCU "${SETTINGS_PARENT}"
SectionEnd

!insertmacro MUI_UNFUNCTION_DESCRIPTION_BEGIN
!insertmacro MUI_DESCRIPTION_TEXT ${un_settings} "$(SETTINGS_DESCRIPTION)"
!insertmacro MUI_UNFUNCTION_DESCRIPTION_END

Function un.onInit
    SetRegView 64
    !insertmacro MULTIUSER_UNINIT
    ${un.GetParameters} $0
    ClearErrors
    ${un.GetOptions} $0 "/SETTINGS" $1
    ${IfNot} ${Errors}
        !insertmacro SelectSection ${un_settings}
    ${EndIf}
FunctionEnd
