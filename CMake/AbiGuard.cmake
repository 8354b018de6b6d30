# SPDX-License-Identifier: MIT
#
# Keeps the binary interface of libkoInteraction.so: its exported functions with all types that they reach, as libabigail
# reads them from the debug information, are compared with the dump in the repository. Needs a build with gcc 12, whose
# dump it is.
#
#   AbiGuardTest               fails, with a report, when layout, virtual functions or symbols are others
#   koInteraction_update_abi   writes the dump anew, after a change that is meant; see Docs/Compatibility.md
find_program(ABIDW abidw)
find_program(ABIDIFF abidiff)
if(NOT ABIDW OR NOT ABIDIFF)
    message(FATAL_ERROR "KOINTERACTION_ABI_GUARD needs abidw and abidiff, from Debian's package abigail-tools")
endif()
target_compile_options(koInteraction PRIVATE -g)

set(koAbiDump "${PROJECT_SOURCE_DIR}/Libs/Interaction/Abi/libkoInteraction.abi")
set(koAbiArguments "-DABIDW=${ABIDW}" "-DABIDIFF=${ABIDIFF}" "-DLIBRARY=$<TARGET_FILE:koInteraction>"
    "-DHEADERS=${PROJECT_SOURCE_DIR}/Libs/Interaction" "-DDUMP=${koAbiDump}"
    "-DFOLDER=${CMAKE_CURRENT_BINARY_DIR}")
add_custom_target(koInteraction_update_abi
    COMMAND "${CMAKE_COMMAND}" ${koAbiArguments} -DUPDATE=ON -P "${CMAKE_CURRENT_LIST_DIR}/CompareAbi.cmake"
    DEPENDS koInteraction
    VERBATIM)
add_test(NAME AbiGuardTest
    COMMAND "${CMAKE_COMMAND}" ${koAbiArguments} -P "${CMAKE_CURRENT_LIST_DIR}/CompareAbi.cmake")
