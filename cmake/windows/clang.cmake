# SPDX-License-Identifier: BSD-3-Clause
# Toolchain: clang compiles for Windows, with MinGW-w64's headers and those of the host's Qt, and links
# nothing. It checks the sources where no Qt for Windows is built.
include(${CMAKE_CURRENT_LIST_DIR}/../mingw-w64.cmake)

# The C++ library's headers, which clang does not find in Debian's folder of the compiler.
execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-libgcc-file-name OUTPUT_VARIABLE libgcc
                OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
cmake_path(GET libgcc PARENT_PATH gcc)
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES ${gcc}/include/c++ ${gcc}/include/c++/x86_64-w64-mingw32)

set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_USER_MAKE_RULES_OVERRIDE_CXX ${CMAKE_CURRENT_LIST_DIR}/unlinked.cmake)

# The headers of the host's Qt and Qwt. These tell the systems apart by the compiler's macros.
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE NEVER)
foreach(folder LIBS PREFIX)
    execute_process(COMMAND qmake -query QT_INSTALL_${folder} OUTPUT_VARIABLE HOST_${folder}
                    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
endforeach()
set(CMAKE_PREFIX_PATH ${HOST_LIBS}/cmake/Qt5 ${HOST_LIBS}/cmake)
set(Qwt_INCLUDE_DIR ${HOST_PREFIX}/include/qwt CACHE PATH "")
set(Qwt_LIBRARY ${HOST_PREFIX}/lib/libqwt-qt5.so CACHE FILEPATH "")
