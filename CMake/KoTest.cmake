# SPDX-License-Identifier: MIT

# ko_add_test(<name> SOURCES <file>... LIBRARIES <target>...)
#
# One executable and one test of that name. The main function of Tests/Support starts the scene graph and lets every
# test fail that writes to standard error what it did not announce.
function(ko_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    # Debian's rapidcheck knows only ordinary containers.
    if(KOINTERACTION_DEBUG_CONTAINERS AND RAPIDCHECK_LIBRARY AND RAPIDCHECK_LIBRARY IN_LIST arg_LIBRARIES)
        return()
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} koTestSupport quon::Warnings)
    # What is tested is optimised as its build type says; the tests themselves are compiled far longer than they run.
    target_compile_options(${name} PRIVATE -O0)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        TIMEOUT 600
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1:check_initialization_order=1;UBSAN_OPTIONS=print_stacktrace=1")
endfunction()
