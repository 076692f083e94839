; SPDX-License-Identifier: BSD-3-Clause
; The installer, for one user or for all (/CurrentUser, /AllUsers). Silent with /S; /D=FOLDER, the last
; argument and without quotes, is the folder to install in; /HOST=FOLDER also installs the plug-in for
; the program in that folder, and with /PLUGINONLY nothing else. The uninstaller takes /S, and /SETTINGS
; to remove the user's settings.
; Exit code 2: a file could not be written, the folder of /HOST does not exist, the folder to install in
; has files of others, or /S /AllUsers was given without the rights of an administrator.
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
; Whether the installation in the folder is ours, and then whether it has the programs.
Var IsOurs
Var HasPrograms

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC
!insertmacro MUI_PAGE_LICENSE "${PACKAGE}\licences\Spanlet.txt"
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_COMPONENTS
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE checkTarget
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
!insertmacro TEXT FOLDER_HAS_FILES \
    "The folder $\"$INSTDIR$\" has files of other programs. Choose an empty folder." \
    "Der Ordner $\"$INSTDIR$\" enthält Dateien anderer Programme. Wählen Sie einen leeren Ordner."
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

; Stops, before anything is removed, when a program has the file open.
!macro CHECK_UNUSED FILE
    ${If} ${FileExists} "${FILE}"
        ClearErrors
        FileOpen $0 "${FILE}" a
        !insertmacro STOP_ON_ERRORS
        FileClose $0
    ${EndIf}
!macroend

; The host's own file of this name gets another one until ours is removed.
!macro KEEP_ASIDE FILE
    ${If} ${FileExists} "${FILE}"
    ${AndIfNot} ${FileExists} "${FILE}.original"
        Rename "${FILE}" "${FILE}.original"
    ${EndIf}
!macroend

!macro RESTORE FILE
    ${If} ${FileExists} "${FILE}.original"
        Rename "${FILE}.original" "${FILE}"
    ${EndIf}
!macroend

; A version that is installed already, with the files that this one may no longer have.
Section "-previous"
    ReadRegStr $0 SHCTX "${KEY}" "InstallLocation"
    ${If} $0 != ""
    ${AndIf} ${FileExists} "$0\uninstall.exe"
        ClearErrors
        ExecWait '"$0\uninstall.exe" /$MultiUser.InstallMode /S _?=$0' $1
        ${If} ${Errors}
            StrCpy $1 2
        ${EndIf}
        ${If} $1 <> 0
            SetErrors
            !insertmacro STOP_ON_ERRORS
        ${EndIf}
        Delete "$0\uninstall.exe"
        RMDir "$0"
    ${EndIf}
SectionEnd

; First, so that what a failed installation leaves can be removed.
Section "-uninstaller"
    ClearErrors
    SetOutPath "$INSTDIR"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    !insertmacro STOP_ON_ERRORS
    WriteRegStr SHCTX "${KEY}" "DisplayName" "Spanlet"
    WriteRegStr SHCTX "${KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr SHCTX "${KEY}" "DisplayIcon" "$INSTDIR\uninstall.exe"
    WriteRegStr SHCTX "${KEY}" "Publisher" "The Spanlet authors"
    WriteRegStr SHCTX "${KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr SHCTX "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode'
    WriteRegStr SHCTX "${KEY}" "QuietUninstallString" \
        '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode /S'
    WriteRegDWORD SHCTX "${KEY}" "NoModify" 1
    WriteRegDWORD SHCTX "${KEY}" "NoRepair" 1
SectionEnd

Section "$(PROGRAMS)" programs
    WriteRegDWORD SHCTX "${KEY}" "HasPrograms" 1
    ClearErrors
    !include "${LISTS}/install.nsh"
    !insertmacro STOP_ON_ERRORS
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    WriteRegDWORD SHCTX "${KEY}" "EstimatedSize" $0
SectionEnd

Section "$(MENU)" menu
    ${If} ${SectionIsSelected} ${programs}
        SetOutPath "$INSTDIR"
        CreateShortcut "$SMPROGRAMS\Spanlet.lnk" "$INSTDIR\spanlet-viewer.exe"
    ${EndIf}
SectionEnd

Section /o "$(PLUGIN)" plugin
    StrCpy $HostListIsOurs 1
    ${If} ${FileExists} "$HostFolder\plugins\Spanlet_Settings.json"
        StrCpy $HostListIsOurs 0
    ${EndIf}
    ClearErrors
    !insertmacro KEEP_ASIDE "$HostFolder\plugins\Spanlet.dll"
    !insertmacro KEEP_ASIDE "$HostFolder\qm\Spanlet_de.qm"
    !insertmacro STOP_ON_ERRORS
    WriteRegDWORD SHCTX "${KEY}" "HostListIsOurs" $HostListIsOurs
    WriteRegStr SHCTX "${KEY}" "HostFolder" "$HostFolder"
    SetOutPath "$HostFolder\plugins"
    File "${PACKAGE}\plugins\Spanlet.dll"
    ${If} $HostListIsOurs = 1
        File "${PACKAGE}\plugins\Spanlet_Settings.json"
    ${EndIf}
    SetOutPath "$HostFolder\qm"
    File "${PACKAGE}\qm\Spanlet_de.qm"
    !insertmacro STOP_ON_ERRORS
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
!insertmacro MUI_DESCRIPTION_TEXT ${programs} "$(PROGRAMS_DESCRIPTION)"
!insertmacro MUI_DESCRIPTION_TEXT ${menu} "$(MENU_DESCRIPTION)"
!insertmacro MUI_DESCRIPTION_TEXT ${plugin} "$(PLUGIN_DESCRIPTION)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END

; Asking for an administrator needs a box, which a silent run must not show.
!macro QUIT_WITHOUT_RIGHTS PARAMETERS OPTIONS
    ${${PARAMETERS}} $0
    ClearErrors
    ${${OPTIONS}} $0 "/AllUsers" $1
    ${IfNot} ${Errors}
    ${AndIf} ${Silent}
        UserInfo::GetAccountType
        Pop $1
        ${If} $1 != "Admin"
        ${AndIf} $1 != "Power"
            SetErrorLevel 2
            Quit
        ${EndIf}
    ${EndIf}
!macroend

Function .onInit
    ${IfNot} ${RunningX64}
    ${OrIfNot} ${AtLeastWin10}
        MessageBox MB_OK|MB_ICONSTOP "$(WINDOWS_TOO_OLD)" /SD IDOK
        SetErrorLevel 2
        Quit
    ${EndIf}
    SetRegView 64
    !insertmacro QUIT_WITHOUT_RIGHTS GetParameters GetOptions
    ; The one that /D= gave; the next line sets the folder that belongs to the users.
    StrCpy $GivenFolder $INSTDIR
    !insertmacro MULTIUSER_INIT
    ${If} $GivenFolder != ""
        StrCpy $INSTDIR $GivenFolder
    ${EndIf}
    ; A plug-in that is installed already is replaced where it is, unless its program has gone.
    ReadRegStr $HostFolder SHCTX "${KEY}" "HostFolder"
    ${IfNot} ${FileExists} "$HostFolder\*.*"
        StrCpy $HostFolder ""
    ${EndIf}
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/HOST=" $1
    ${IfNot} ${Errors}
        StrCpy $HostFolder $1
        Call requireHost
    ${EndIf}
    ${If} $HostFolder != ""
        !insertmacro SelectSection ${plugin}
    ${EndIf}
    Call readInstalled
    ClearErrors
    ${GetOptions} $0 "/PLUGINONLY" $1
    ${IfNot} ${Errors}
        Call requireHost
        !insertmacro UnselectSection ${programs}
        !insertmacro UnselectSection ${menu}
    ${ElseIf} $IsOurs = 1
    ${AndIf} $HasPrograms <> 1
        !insertmacro UnselectSection ${programs}
        !insertmacro UnselectSection ${menu}
    ${EndIf}
    ${If} ${Silent}
        Call checkTarget
    ${EndIf}
FunctionEnd

Function requireHost
    ${If} $HostFolder == ""
    ${OrIfNot} ${FileExists} "$HostFolder\*.*"
        MessageBox MB_OK|MB_ICONSTOP "$(HOST_MISSING)" /SD IDOK
        SetErrorLevel 2
        Quit
    ${EndIf}
FunctionEnd

; What the folder to install in has.
Function readInstalled
    StrCpy $IsOurs 0
    StrCpy $HasPrograms 0
    ReadRegStr $1 SHCTX "${KEY}" "InstallLocation"
    ${If} $1 == $INSTDIR
        StrCpy $IsOurs 1
        ReadRegDWORD $HasPrograms SHCTX "${KEY}" "HasPrograms"
    ${EndIf}
FunctionEnd

; The uninstaller removes files by their names, so these must not be those of another program.
Function checkTarget
    Call readInstalled
    ${If} $HasPrograms = 1
        Return
    ${EndIf}
    StrCpy $3 0
    FindFirst $1 $2 "$INSTDIR\*.*"
    ${DoWhile} $2 != ""
        ${If} $2 == "uninstall.exe"
            ${If} $IsOurs <> 1
                StrCpy $3 1
            ${EndIf}
        ${ElseIf} $2 != "."
        ${AndIf} $2 != ".."
        ${AndIf} ${SectionIsSelected} ${programs}
            StrCpy $3 1
        ${EndIf}
        FindNext $1 $2
    ${Loop}
    FindClose $1
    ${If} $3 = 1
        MessageBox MB_OK|MB_ICONSTOP "$(FOLDER_HAS_FILES)" /SD IDOK
        ${If} ${Silent}
            SetErrorLevel 2
            Quit
        ${EndIf}
        Abort
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
    ReadRegDWORD $HasPrograms SHCTX "${KEY}" "HasPrograms"
    ReadRegStr $HostFolder SHCTX "${KEY}" "HostFolder"
    ${If} $HasPrograms = 1
        !include "${LISTS}/check-unused.nsh"
    ${EndIf}
    ${If} $HostFolder != ""
        !insertmacro CHECK_UNUSED "$HostFolder\plugins\Spanlet.dll"
    ${EndIf}
    ${If} $HostFolder != ""
        ReadRegDWORD $HostListIsOurs SHCTX "${KEY}" "HostListIsOurs"
        ClearErrors
        Delete "$HostFolder\plugins\Spanlet.dll"
        ${If} $HostListIsOurs = 1
            Delete "$HostFolder\plugins\Spanlet_Settings.json"
        ${EndIf}
        Delete "$HostFolder\qm\Spanlet_de.qm"
        !insertmacro STOP_ON_ERRORS
        ; A second attempt must not delete what this one restores.
        DeleteRegValue SHCTX "${KEY}" "HostFolder"
        ClearErrors
        !insertmacro RESTORE "$HostFolder\plugins\Spanlet.dll"
        !insertmacro RESTORE "$HostFolder\qm\Spanlet_de.qm"
        !insertmacro STOP_ON_ERRORS
        RMDir "$HostFolder\plugins"
        RMDir "$HostFolder\qm"
    ${EndIf}
    ${If} $HasPrograms = 1
        ; The files of the list, and folders that are empty then.
        ClearErrors
        !include "${LISTS}/delete-files.nsh"
        !insertmacro STOP_ON_ERRORS
        !include "${LISTS}/remove-folders.nsh"
    ${EndIf}
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
    DeleteRegKey HKCU "Software\spanlet\spanlet-viewer"
    DeleteRegKey /ifempty HKCU "Software\spanlet"
    ; For all users, this folder would be another one.
    SetShellVarContext current
    Delete "$LOCALAPPDATA\spanlet\capacities.conf"
    Delete "$LOCALAPPDATA\spanlet\spanlet.conf"
    RMDir "$LOCALAPPDATA\spanlet"
SectionEnd

!insertmacro MUI_UNFUNCTION_DESCRIPTION_BEGIN
!insertmacro MUI_DESCRIPTION_TEXT ${un_settings} "$(SETTINGS_DESCRIPTION)"
!insertmacro MUI_UNFUNCTION_DESCRIPTION_END

Function un.onInit
    SetRegView 64
    !insertmacro QUIT_WITHOUT_RIGHTS un.GetParameters un.GetOptions
    !insertmacro MULTIUSER_UNINIT
    ${un.GetParameters} $0
    ClearErrors
    ${un.GetOptions} $0 "/SETTINGS" $1
    ${IfNot} ${Errors}
        !insertmacro SelectSection ${un_settings}
    ${EndIf}
FunctionEnd
