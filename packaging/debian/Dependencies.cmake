# SPDX-License-Identifier: BSD-3-Clause
# Dependencies among our packages. The version is that of cpack: -D CPACK_PACKAGE_VERSION may be
# another one than the project's.
set(library "libspanlet (= ${CPACK_PACKAGE_VERSION})")
set(CPACK_DEBIAN_CLI_PACKAGE_DEPENDS ${library})
set(CPACK_DEBIAN_CLI_PACKAGE_RECOMMENDS libcap2-bin)
set(CPACK_DEBIAN_CLI_PACKAGE_SUGGESTS "ethtool, spanlet-viewer, spanlet-fake-camera")
set(CPACK_DEBIAN_VIEWER_PACKAGE_DEPENDS ${library})
set(CPACK_DEBIAN_VIEWER_PACKAGE_RECOMMENDS "libcap2-bin, qttranslations5-l10n")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library}, qtbase5-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
