# SPDX-License-Identifier: BSD-3-Clause
# Finds the camera SDK in SPANLET_ORVCPP_ROOT, and nowhere else, and defines the target OrvCPP. The
# folder has include/OrvCPP, the library to link in lib and, for Windows, the DLL in bin or lib.
include(FindPackageHandleStandardArgs)

# Results of an earlier configuration are those of its folder.
if(DEFINED SPANLET_ORVCPP_FOUND_IN
   AND NOT "${SPANLET_ORVCPP_ROOT}" STREQUAL "${SPANLET_ORVCPP_FOUND_IN}")
    unset(SPANLET_ORVCPP_INCLUDE_DIR CACHE)
    unset(SPANLET_ORVCPP_LIBRARY CACHE)
    unset(SPANLET_ORVCPP_DLL CACHE)
endif()
set(SPANLET_ORVCPP_FOUND_IN "${SPANLET_ORVCPP_ROOT}" CACHE INTERNAL "Where the camera SDK was found")

set(in_root PATHS ${SPANLET_ORVCPP_ROOT} NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
find_path(SPANLET_ORVCPP_INCLUDE_DIR OrvCPP/OrvSystem.h ${in_root} PATH_SUFFIXES include)
find_library(SPANLET_ORVCPP_LIBRARY OrvCPP ${in_root} PATH_SUFFIXES lib)
set(required SPANLET_ORVCPP_LIBRARY SPANLET_ORVCPP_INCLUDE_DIR)
if(WIN32)
    find_file(SPANLET_ORVCPP_DLL NAMES OrvCPP.dll libOrvCPP.dll ${in_root} PATH_SUFFIXES bin lib)
    list(APPEND required SPANLET_ORVCPP_DLL)
endif()
mark_as_advanced(${required})
find_package_handle_standard_args(
    OrvCPP REQUIRED_VARS ${required}
    REASON_FAILURE_MESSAGE "SPANLET_ORVCPP_ROOT is \"${SPANLET_ORVCPP_ROOT}\". It names the folder of \
a camera SDK with include/OrvCPP, the library in lib and, for Windows, the DLL in bin")

if(OrvCPP_FOUND AND NOT TARGET OrvCPP)
    add_library(OrvCPP SHARED IMPORTED GLOBAL)
    set_target_properties(OrvCPP PROPERTIES INTERFACE_LINK_LIBRARIES orvcpp_api)
    if(WIN32)
        set_target_properties(OrvCPP PROPERTIES IMPORTED_IMPLIB ${SPANLET_ORVCPP_LIBRARY}
                                                IMPORTED_LOCATION ${SPANLET_ORVCPP_DLL})
    else()
        set_target_properties(OrvCPP PROPERTIES IMPORTED_LOCATION ${SPANLET_ORVCPP_LIBRARY})
    endif()
endif()
