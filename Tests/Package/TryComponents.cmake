# SPDX-License-Identifier: MIT
#
# cmake -DBUILD=... -DFOLDER=... -DGENERATOR=... -DCOMPILER=... -DPROJECT=... "-DINSTALLED=...|..."
#       "-DCOMPONENTS=...|..." "-DTARGETS=...|..." "-DOPTIONS=...|..." -P TryComponents.cmake
#
# Installs components alone, and builds and runs a project that asks for some.
foreach(list INSTALLED COMPONENTS TARGETS OPTIONS)
    string(REPLACE "|" ";" ${list} "${${list}}")
endforeach()
file(REMOVE_RECURSE "${FOLDER}")
foreach(component ${INSTALLED})
    execute_process(
        COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${FOLDER}/installed" --component ${component}
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endforeach()
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${PROJECT}" -B "${FOLDER}/project" -G "${GENERATOR}"
    "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_PREFIX_PATH=${FOLDER}/installed" "-DCOMPONENTS=${COMPONENTS}"
    "-DTARGETS=${TARGETS}" ${OPTIONS}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${FOLDER}/project" OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${FOLDER}/project/Components" COMMAND_ERROR_IS_FATAL ANY)
