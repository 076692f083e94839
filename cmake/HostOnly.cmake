# SPDX-License-Identifier: BSD-3-Clause
# The interface handlers, their calls of Windows and those of the command line, with tests. Needs a
# cross compiler and Wine, but no Qt (scripts/check-windows-host).
include_directories(${PROJECT_SOURCE_DIR})
enable_testing()

add_library(orvcpp_api INTERFACE)
target_include_directories(orvcpp_api INTERFACE src/orvcpp/api/include src/orvcpp/api/simulation)
# The part of logging that is free of Qt.
add_library(spanlet_logging STATIC src/logging/ForwardingBuffer.cpp src/logging/Log.cpp)
target_link_libraries(spanlet_logging PUBLIC spanlet_sdk)
add_library(spanlet_cli_platform STATIC apps/cli/platform/ConsoleWindows.cpp
                                        apps/cli/platform/InterruptionWindows.cpp)
target_link_libraries(spanlet_cli_platform PRIVATE spanlet_options)
target_compile_definitions(spanlet_cli_platform PRIVATE _WIN32_WINNT=0x0A00 NOMINMAX)

add_subdirectory(src/platform)
add_subdirectory(src/sdk)
add_subdirectory(src/engine/host)
add_subdirectory(tools/show-interface-speeds)
add_subdirectory(tests/engine/host/windows)
