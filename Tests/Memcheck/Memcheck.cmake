# SPDX-License-Identifier: MIT
#
# ctest -S Memcheck.cmake,BUILD,REGEX runs the tests with such names under memcheck; called by scripts/memcheck.sh.

string(REPLACE "," ";" koArguments "${CTEST_SCRIPT_ARG}")
list(GET koArguments 0 koBuild)
list(GET koArguments 1 koNames)

get_filename_component(CTEST_SOURCE_DIRECTORY "${CMAKE_CURRENT_LIST_DIR}/../.." ABSOLUTE)
set(CTEST_BINARY_DIRECTORY "${koBuild}")
find_program(CTEST_MEMORYCHECK_COMMAND valgrind REQUIRED)
# Tests that count allocations, or let them fail, bring an operator new of their own, which valgrind has to leave alone.
set(CTEST_MEMORYCHECK_COMMAND_OPTIONS
    "--quiet --error-exitcode=99 --num-callers=30 --leak-check=full --show-leak-kinds=definite --errors-for-leak-kinds=definite --soname-synonyms=somalloc=nouserintercepts")

cmake_host_system_information(RESULT koProcessors QUERY NUMBER_OF_LOGICAL_CORES)
ctest_start(Experimental QUIET)
# What starts compilers, shells and other programs would check those.
ctest_memcheck(
    INCLUDE "${koNames}"
    EXCLUDE "Package|^Example|Tutorial|HostServices|^Host(Target|Package)|^Configure|Documentation|Snippet|^Guarantees|^HowItWorks|^ExportedSymbols|^Licences|^AbiGuard"
    PARALLEL_LEVEL ${koProcessors}
    RETURN_VALUE koResult
    DEFECT_COUNT koDefects)
if(koResult OR koDefects)
    message(FATAL_ERROR "${koDefects} findings; result ${koResult}")
endif()
