# SPDX-License-Identifier: BSD-3-Clause
# Finds Qwt for Qt 5 and defines the target Qwt::Qwt. Distributions differ in how they tell it from
# builds for other versions of Qt: by the library's name, by a folder for the headers, by neither.
include(FindPackageHandleStandardArgs)

find_path(Qwt_INCLUDE_DIR qwt_slider.h PATH_SUFFIXES qwt-qt5 qt5/qwt qt5/qwt6 qwt)
find_library(Qwt_LIBRARY NAMES qwt-qt5 qwt6-qt5 qwt)
mark_as_advanced(Qwt_INCLUDE_DIR Qwt_LIBRARY)

find_package_handle_standard_args(Qwt REQUIRED_VARS Qwt_LIBRARY Qwt_INCLUDE_DIR)

if(Qwt_FOUND AND NOT TARGET Qwt::Qwt)
    add_library(Qwt::Qwt UNKNOWN IMPORTED)
    set_target_properties(Qwt::Qwt PROPERTIES IMPORTED_LOCATION ${Qwt_LIBRARY}
                                              INTERFACE_INCLUDE_DIRECTORIES ${Qwt_INCLUDE_DIR}
                                              INTERFACE_LINK_LIBRARIES Qt5::Widgets)
endif()
