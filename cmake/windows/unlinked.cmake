# SPDX-License-Identifier: BSD-3-Clause
# Rules for clang.cmake: an empty file takes the place of what would be linked.
set(CMAKE_IMPORT_LIBRARY_SUFFIX "")
foreach(rule LINK_EXECUTABLE CREATE_SHARED_LIBRARY CREATE_SHARED_MODULE)
    set(CMAKE_CXX_${rule} "<CMAKE_COMMAND> -E touch <TARGET>")
endforeach()
