# SPDX-License-Identifier: BSD-3-Clause
# Compiler options of all of the project's own code, carried by the target spanlet_options.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

find_package(Threads REQUIRED)

add_library(spanlet_options INTERFACE)
get_filename_component(SPANLET_ROOT ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
target_include_directories(spanlet_options INTERFACE ${SPANLET_ROOT}/src ${SPANLET_ROOT}/apps)
if(MSVC)
    # The sources are UTF-8. Without the last, __cplusplus has the value of C++98.
    target_compile_options(spanlet_options INTERFACE /W4 /permissive- /utf-8 /Zc:__cplusplus)
else()
    target_compile_options(spanlet_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
endif()
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    # Classes that are owned through a shared pointer made with the class itself.
    target_compile_options(spanlet_options INTERFACE -Wno-delete-non-abstract-non-virtual-dtor)
endif()
target_compile_definitions(
    spanlet_options INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH
                              QT_DEPRECATED_WARNINGS)
target_link_libraries(spanlet_options INTERFACE Threads::Threads)

# No path of this computer in what is built, so that the same sources give the same bytes anywhere.
if(NOT MSVC)
    add_compile_options("$<$<CONFIG:Release>:-ffile-prefix-map=${SPANLET_ROOT}=.>"
                        "$<$<CONFIG:Release>:-ffile-prefix-map=${CMAKE_BINARY_DIR}=build>")
endif()
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    # Tables of functions are read-only once the program has started.
    add_link_options(-Wl,-z,relro,-z,now)
endif()

if(SPANLET_SANITIZER)
    add_compile_options(-fsanitize=${SPANLET_SANITIZER} -fno-omit-frame-pointer
                        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${SPANLET_SANITIZER})
    # Instrumented, the standard library's own code trips this warning; the other builds keep it.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(spanlet_options INTERFACE -Wno-maybe-uninitialized)
    endif()
endif()

# spanlet_program(NAME)
# What every program of the project needs to run under the sanitizers.
function(spanlet_program NAME)
    if(SPANLET_SANITIZER MATCHES "address")
        target_sources(${NAME} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/LeakSuppressions.cpp)
    endif()
endfunction()
