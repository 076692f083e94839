# SPDX-License-Identifier: BSD-3-Clause
# The camera SDK's library, and what a host needs to be built: headers, a CMake package, pkg-config.
include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Spanlet)

install(
    TARGETS OrvCPP
    EXPORT SpanletTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(
    TARGETS spanlet_interface orvcpp_api
    EXPORT SpanletTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(FILES ${PROJECT_SOURCE_DIR}/src/plugin/SpanletInterface.h
        DESTINATION ${SPANLET_INCLUDE_DIR} COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/orvcpp/api/include/OrvCPP
        DESTINATION ${SPANLET_INCLUDE_DIR} COMPONENT development)

install(EXPORT SpanletTargets NAMESPACE Spanlet:: DESTINATION ${package_dir} COMPONENT development)
configure_package_config_file(
    SpanletConfig.cmake.in SpanletConfig.cmake
    INSTALL_DESTINATION ${package_dir}
    PATH_VARS SPANLET_PLUGIN_DIR)
write_basic_package_version_file(SpanletConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/SpanletConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/SpanletConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT development)

# Relative to its own folder, as the prefix may be another when it is installed.
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
spanlet_way(SPANLET_PREFIX_FROM_PKGCONFIG ${pkgconfig_dir} .)
configure_file(spanlet.pc.in spanlet.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/spanlet.pc DESTINATION ${pkgconfig_dir}
        COMPONENT development)
