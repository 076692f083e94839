# SPDX-License-Identifier: BSD-3-Clause
# Toolchain of the whole project: the compiler, the libraries that scripts/windows-libraries has
# built, and Wine to run the tests.
include(${CMAKE_CURRENT_LIST_DIR}/../mingw-w64.cmake)

get_filename_component(SPANLET_WINDOWS_LIBRARIES
                       ${CMAKE_CURRENT_LIST_DIR}/../../build/windows-libraries ABSOLUTE)
list(APPEND CMAKE_FIND_ROOT_PATH ${SPANLET_WINDOWS_LIBRARIES})

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine)
# Listing a program's tests starts Wine: ctest does it, not the build.
set(CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE PRE_TEST)
