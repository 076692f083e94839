# SPDX-License-Identifier: BSD-3-Clause
# Tests that do not run under Wine, by name and with the reason; ctest lists them as disabled.

# Each name, a regular expression, is followed by the reason.
set(NOT_UNDER_WINE
    "Interruption\\.isRequestedByCtrlC"
    "Wine makes no console without a display (windows_ctrl_c runs it on one)"
    "Shutdown\\.leavesNoThread"
    "counts the threads in /proc, where a program under Wine has one, whatever it starts"
    "ViewerProgram\\.speaksGermanWhereTheSystemDoes"
    "a program under Wine has the language of the one that started it, and TranslationTest shows German")

# disable_under_wine(PROGRAM)
# Disables the tests of PROGRAM among those above. Only ctest knows its tests, so ctest reads the
# file that this writes.
function(disable_under_wine PROGRAM)
    list(LENGTH NOT_UNDER_WINE length)
    math(EXPR last "${length} - 1")
    set(names "")
    foreach(index RANGE 0 ${last} 2)
        list(GET NOT_UNDER_WINE ${index} name)
        list(APPEND names ${name})
    endforeach()
    list(JOIN names "|" names)
    set(file ${CMAKE_CURRENT_BINARY_DIR}/${PROGRAM}_not_under_wine.cmake)
    file(
        WRITE ${file}
        "foreach(test IN LISTS ${PROGRAM}_TESTS)\n"
        "    if(test MATCHES [==[^(${names})$]==])\n"
        "        set_tests_properties(\"\${test}\" PROPERTIES DISABLED ON)\n"
        "    endif()\n"
        "endforeach()\n")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${file})
endfunction()
