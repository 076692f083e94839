# SPDX-License-Identifier: BSD-3-Clause
# Where an installation has which files, relative to its prefix. Programs and the plug-in find the
# others from their own place, so an installation works below any prefix and may be moved.
include(GNUInstallDirs)

if(WIN32)
    # All of it is below the folder of the programs.
    set(SPANLET_PLUGIN_DIR ${CMAKE_INSTALL_BINDIR}/plugins)
    set(SPANLET_SETTINGS_DIR ${SPANLET_PLUGIN_DIR})
    set(SPANLET_TRANSLATION_DIR ${CMAKE_INSTALL_BINDIR}/qm)
else()
    set(SPANLET_PLUGIN_DIR ${CMAKE_INSTALL_LIBDIR}/spanlet/plugins)
    set(SPANLET_SETTINGS_DIR ${CMAKE_INSTALL_DATADIR}/spanlet)
    set(SPANLET_TRANSLATION_DIR ${CMAKE_INSTALL_DATADIR}/spanlet/translations)
endif()
set(SPANLET_DATA_DIR ${CMAKE_INSTALL_DATADIR}/spanlet)
set(SPANLET_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/spanlet)

# spanlet_way(OUTPUT FROM TO)
# The relative path from one folder of the installation to another.
function(spanlet_way OUTPUT FROM TO)
    foreach(folder FROM TO)
        cmake_path(ABSOLUTE_PATH ${folder} BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX} NORMALIZE)
    endforeach()
    file(RELATIVE_PATH way ${FROM} ${TO})
    set(${OUTPUT} ${way} PARENT_SCOPE)
endfunction()

spanlet_way(SPANLET_LIBRARIES_FROM_PROGRAMS ${CMAKE_INSTALL_BINDIR} ${CMAKE_INSTALL_LIBDIR})
spanlet_way(SPANLET_LIBRARIES_FROM_PLUGIN ${SPANLET_PLUGIN_DIR} ${CMAKE_INSTALL_LIBDIR})
if(SPANLET_ORVCPP_ROOT AND NOT WIN32)
    # Stays where it is, whether Spanlet is moved or not.
    set(SPANLET_SDK_LIBRARIES ${SPANLET_ORVCPP_ROOT}/lib)
endif()
spanlet_way(SPANLET_PLUGIN_FROM_PROGRAMS ${CMAKE_INSTALL_BINDIR} ${SPANLET_PLUGIN_DIR})
spanlet_way(SPANLET_DATA_FROM_PROGRAMS ${CMAKE_INSTALL_BINDIR} ${SPANLET_DATA_DIR})
spanlet_way(SPANLET_DATA_FROM_PLUGIN ${SPANLET_PLUGIN_DIR} ${SPANLET_DATA_DIR})
