# SPDX-License-Identifier: MIT
#
# cmake -DBUILD=... -DPREFIX=... -DVIEWER=... -P InstallAndMove.cmake
#
# Installs to a folder that is renamed then: nothing that is installed may name it.
file(REMOVE_RECURSE "${PREFIX}" "${PREFIX}.before")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${PREFIX}.before"
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(RENAME "${PREFIX}.before" "${PREFIX}")

file(GLOB_RECURSE texts "${PREFIX}/*.cmake" "${PREFIX}/*.pc" "${PREFIX}/*.h" "${PREFIX}/*.desktop")
foreach(text ${texts})
    file(READ "${text}" content)
    foreach(folder "${PREFIX}" "${BUILD}")
        string(FIND "${content}" "${folder}" position)
        if(NOT position EQUAL -1)
            message(FATAL_ERROR "${text} names the folder ${folder}")
        endif()
    endforeach()
endforeach()

# Its own libraries are found beside it.
if(VIEWER)
    execute_process(COMMAND "${PREFIX}/bin/koviewer" --version COMMAND_ERROR_IS_FATAL ANY)
endif()
