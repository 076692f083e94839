# SPDX-License-Identifier: BSD-3-Clause
include(GoogleTest)
if(WIN32 AND CMAKE_CROSSCOMPILING)
    include(${CMAKE_CURRENT_LIST_DIR}/windows/NotUnderWine.cmake)
endif()

# spanlet_test(NAME SOURCES ... LIBRARIES ... [MAIN file] [LOCALE name] [THREADS] [ALONE] [TIMED])
# A test program, run without a display, each case as a test of ctest. THREADS marks it for the thread
# sanitizer. ALONE runs its tests without others beside them, for tests that depend on their share of
# the processor. TIMED is for tests that measure time: they may run three times, see
# tests/support/RetriedTests.h; a MAIN of theirs calls what that has. LOCALE is the system locale of
# its tests. NO_PRETTY_VALUES keeps addresses out of the names of parametrised tests, which would
# differ at every discovery.
function(spanlet_test NAME)
    cmake_parse_arguments(PARSE_ARGV 1 TEST "THREADS;ALONE;TIMED" "MAIN;LOCALE" "SOURCES;LIBRARIES")
    if(TEST_TIMED AND NOT TEST_MAIN)
        set(TEST_MAIN ${PROJECT_SOURCE_DIR}/tests/support/RealTimeMain.cpp)
    endif()
    add_executable(${NAME} ${TEST_SOURCES} ${TEST_MAIN})
    target_link_libraries(${NAME} PRIVATE spanlet_options spanlet_test_support ${TEST_LIBRARIES}
                                          GTest::gmock)
    if(NOT TEST_MAIN)
        target_link_libraries(${NAME} PRIVATE GTest::gmock_main)
    endif()
    if(TEST_TIMED)
        target_link_libraries(${NAME} PRIVATE spanlet_retried_tests)
    endif()
    if(TEST_TIMED AND TARGET run_again)
        set_target_properties(${NAME} PROPERTIES CROSSCOMPILING_EMULATOR "${TIMED_TEST_LAUNCHER}")
        add_dependencies(${NAME} run_again)
    endif()
    spanlet_program(${NAME})
    set(labels "")
    if(TEST_THREADS)
        set(labels LABELS threads)
        add_dependencies(tests_with_threads ${NAME})
    endif()
    set(alone "")
    if(TEST_ALONE)
        set(alone RUN_SERIAL ON)
    endif()
    set(locale "")
    if(TEST_LOCALE)
        set(locale ENVIRONMENT_MODIFICATION LC_ALL=set:${TEST_LOCALE})
    endif()
    gtest_discover_tests(
        ${NAME}
        NO_PRETTY_VALUES
        DISCOVERY_TIMEOUT 60
        PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen" TIMEOUT 300 SKIP_RETURN_CODE 77 ${labels}
                   ${alone} ${locale})
    if(COMMAND disable_under_wine)
        disable_under_wine(${NAME})
    endif()
endfunction()

# spanlet_network_test(NAME SOURCES ... LIBRARIES ... [ADAPTERS number])
# The program test_NAME, run by tools/congested-network. Only that script can make the network that the
# program needs, so it is one test, and skipped where the user may not make networks. It keeps every
# processor busy, so no other test runs beside it.
function(spanlet_network_test NAME)
    cmake_parse_arguments(PARSE_ARGV 1 TEST "" "ADAPTERS" "SOURCES;LIBRARIES")
    add_executable(test_${NAME} ${TEST_SOURCES} ${PROJECT_SOURCE_DIR}/tests/support/RealTimeMain.cpp)
    target_link_libraries(test_${NAME} PRIVATE fakecamera ${TEST_LIBRARIES} GTest::gmock)
    target_compile_definitions(test_${NAME} PRIVATE SPANLET_FILE="$<TARGET_FILE:spanlet>")
    add_dependencies(test_${NAME} spanlet)
    spanlet_program(test_${NAME})
    set_target_properties(test_${NAME} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
    add_test(NAME ${NAME} COMMAND ${PROJECT_SOURCE_DIR}/tools/congested-network
                                  $<TARGET_FILE:test_${NAME}>)
    set_tests_properties(${NAME} PROPERTIES SKIP_RETURN_CODE 77 RUN_SERIAL ON TIMEOUT 300)
    if(TEST_ADAPTERS)
        set_tests_properties(${NAME} PROPERTIES ENVIRONMENT ADAPTERS=${TEST_ADAPTERS})
    endif()
endfunction()
