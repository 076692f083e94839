# SPDX-License-Identifier: BSD-3-Clause
# The Debian packages, one per component, as scripts/package makes them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME spanlet)
set(CPACK_PACKAGE_VENDOR "The Spanlet authors")
set(CPACK_PACKAGE_CONTACT "The Spanlet authors <maintainers@spanlet.dev>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library cli viewer development fakecamera)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ
    GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
# scripts/package packs them again.
set(CPACK_DEBIAN_COMPRESSION_TYPE none)

# For the scripts below, which cpack runs.
set(CPACK_SPANLET_PACKAGING_DIR ${CMAKE_CURRENT_SOURCE_DIR})
# It adds the dependencies among the packages, which name the version.
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_SOURCE_DIR}/debian/Dependencies.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/debian/FinishFolders.cmake)

# spanlet_package(COMPONENT PACKAGE SECTION SUMMARY TEXT [CONTROL FILES...])
# TEXT describes the package in lines of at most 79 characters.
function(spanlet_package COMPONENT PACKAGE SECTION SUMMARY TEXT)
    string(TOUPPER ${COMPONENT} name)
    set(prefix CPACK_DEBIAN_${name}_PACKAGE)
    set(${prefix}_NAME ${PACKAGE} PARENT_SCOPE)
    set(${prefix}_SECTION ${SECTION} PARENT_SCOPE)
    set(CPACK_COMPONENT_${name}_DESCRIPTION "${SUMMARY}\n${TEXT}" PARENT_SCOPE)
    set(${prefix}_CONTROL_EXTRA ${ARGN} PARENT_SCOPE)
endfunction()

set(about "Spanlet shows how the GigE Vision and USB3 Vision cameras of a computer share
its network adapters and USB controllers, measures what arrives, and divides
the bandwidth of each among its cameras.
")
configure_file(debian/library/shlibs.in debian/library/shlibs @ONLY)
spanlet_package(
    library libspanlet libs "bandwidth of machine-vision cameras (plug-in, camera SDK)"
    "${about}
This package has the plug-in for camera viewers, the camera SDK that it uses,
German texts, access to USB3 Vision cameras, and room for received packets."
    ${CMAKE_CURRENT_SOURCE_DIR}/debian/library/postinst
    ${CMAKE_CURRENT_SOURCE_DIR}/debian/library/postrm
    ${CMAKE_CURRENT_BINARY_DIR}/debian/library/shlibs
    ${CMAKE_CURRENT_SOURCE_DIR}/debian/library/triggers)
foreach(program spanlet-viewer spanlet)
    set(services)
    set(scripts program/preinst program/postinst)
    if(program STREQUAL spanlet)
        set(services "spanlet-restore.service spanlet-observe.service")
        list(APPEND scripts cli/prerm cli/postrm)
    endif()
    foreach(script IN LISTS scripts)
        get_filename_component(name ${script} NAME)
        configure_file(debian/${script}.in debian/${program}/${name} @ONLY)
        list(APPEND ${program}_scripts ${CMAKE_CURRENT_BINARY_DIR}/debian/${program}/${name})
    endforeach()
endforeach()
spanlet_package(
    cli spanlet utils "bandwidth of machine-vision cameras (command line)"
    "${about}
This package has the command line, which also checks a computer for what costs
frames, with completions for bash and zsh."
    ${spanlet_scripts})
spanlet_package(
    viewer spanlet-viewer graphics "bandwidth of machine-vision cameras (camera viewer)"
    "${about}
This package has a small camera viewer, which shows live images and opens
Spanlet's dialog."
    ${spanlet-viewer_scripts})
spanlet_package(
    development spanlet-dev libdevel "bandwidth of machine-vision cameras (development files)"
    "${about}
This package has what a camera viewer needs to be built that opens Spanlet's
dialog: headers, a CMake package and a pkg-config file.")
spanlet_package(
    fakecamera spanlet-fake-camera utils "GigE Vision camera without hardware"
    "fake-camera is a GigE Vision camera as a program, on an address of this
computer. It streams real packets, and loses some on request, for tests of
programs that receive them.")

include(CPack)
