# SPDX-License-Identifier: MIT
#
# Keeps what the library costs: the instructions of koCountedWork, as valgrind counts them, are compared with the counts
# in the repository, which a build with gcc 12 and optimisation made. Unlike times they are the same on every machine and
# whatever else runs there.
#
#   InstructionGuardTest                fails where a count is off by more than 3 percent, and where a node among 32,000
#                                       takes more than one and a half times what it takes among 1,000
#   koInteraction_update_instructions   writes the counts anew, after a change that is meant to have others
#   koInteraction_growth                prints what a node takes among 1,000 up to 1,000,000, and fails where that more
#                                       than doubles; half an hour
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU" OR NOT CMAKE_CXX_COMPILER_VERSION MATCHES "^12[.]")
    message(FATAL_ERROR "KOINTERACTION_INSTRUCTION_GUARD needs gcc 12: the counts in the repository are those of its code")
endif()
find_program(VALGRIND valgrind)
find_path(CALLGRIND_INCLUDE_DIR valgrind/callgrind.h)
if(NOT VALGRIND OR NOT CALLGRIND_INCLUDE_DIR)
    message(FATAL_ERROR "KOINTERACTION_INSTRUCTION_GUARD needs valgrind and its headers, from Debian's package valgrind")
endif()

add_executable(koCountedWork
    "${PROJECT_SOURCE_DIR}/Benchmarks/Instructions/CountedWork.cpp"
    "${PROJECT_SOURCE_DIR}/Benchmarks/Instructions/SteadyMemory.cpp")
target_include_directories(koCountedWork SYSTEM PRIVATE "${CALLGRIND_INCLUDE_DIR}")
target_link_libraries(koCountedWork PRIVATE
    koBenchmarkSupport
    quon::Warnings)

set(koInstructionArguments "-DVALGRIND=${VALGRIND}" "-DPROGRAM=$<TARGET_FILE:koCountedWork>"
    "-DCOUNTS=${PROJECT_SOURCE_DIR}/Benchmarks/Instructions/gcc-12.txt"
    "-DFOLDER=${CMAKE_CURRENT_BINARY_DIR}")
add_custom_target(koInteraction_update_instructions
    COMMAND "${CMAKE_COMMAND}" ${koInstructionArguments} -DUPDATE=ON
            -P "${CMAKE_CURRENT_LIST_DIR}/CompareInstructions.cmake"
    DEPENDS koCountedWork
    VERBATIM)
add_custom_target(koInteraction_growth
    COMMAND "${CMAKE_COMMAND}" ${koInstructionArguments} -DTABLE=ON
            -P "${CMAKE_CURRENT_LIST_DIR}/CompareInstructions.cmake"
    DEPENDS koCountedWork
    USES_TERMINAL
    VERBATIM)
add_test(NAME InstructionGuardTest
    COMMAND "${CMAKE_COMMAND}" ${koInstructionArguments} -P "${CMAKE_CURRENT_LIST_DIR}/CompareInstructions.cmake")
