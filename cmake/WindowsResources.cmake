# SPDX-License-Identifier: BSD-3-Clause
# What Windows reads from programs and libraries themselves: version, icon and manifest.
if(WIN32)
    enable_language(RC)
endif()
set(SPANLET_RESOURCES ${CMAKE_CURRENT_LIST_DIR}/../packaging/windows)

# spanlet_windows_resources(TARGET DESCRIPTION)
# Gives TARGET a version with DESCRIPTION, and programs the icon and the manifest as well. For other
# systems it does nothing.
function(spanlet_windows_resources TARGET DESCRIPTION)
    if(NOT WIN32)
        return()
    endif()
    set(file ${CMAKE_CURRENT_BINARY_DIR}/${TARGET}.rc)
    get_target_property(type ${TARGET} TYPE)
    set(FILE_TYPE VFT_DLL)
    set(PROGRAM_RESOURCES "")
    if(type STREQUAL "EXECUTABLE")
        set(FILE_TYPE VFT_APP)
        set(PROGRAM_RESOURCES "1 ICON \"${SPANLET_RESOURCES}/spanlet.ico\"")
        if(MSVC)
            # Visual Studio's linker makes the resource, from this and from a manifest of its own.
            target_sources(${TARGET} PRIVATE ${SPANLET_RESOURCES}/program.manifest)
        else()
            string(APPEND PROGRAM_RESOURCES "\n1 RT_MANIFEST \"${SPANLET_RESOURCES}/program.manifest\"")
        endif()
    endif()
    string(REPLACE "." "," VERSION_NUMBERS "${PROJECT_VERSION},0")
    configure_file(${SPANLET_RESOURCES}/resources.rc.in ${file}.in @ONLY)
    file(GENERATE OUTPUT ${file} INPUT ${file}.in)
    target_sources(${TARGET} PRIVATE ${file})
    set_source_files_properties(
        ${file} PROPERTIES OBJECT_DEPENDS
                           "${SPANLET_RESOURCES}/spanlet.ico;${SPANLET_RESOURCES}/program.manifest")
endfunction()
