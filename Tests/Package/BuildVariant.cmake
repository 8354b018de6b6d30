# SPDX-License-Identifier: MIT
#
# cmake -DSOURCE=... -DFOLDER=... -DGENERATOR=... -DCOMPILER=... -DLAUNCHER=... -DPROJECT=... "-DOPTIONS=...|..."
#       [-DPKG_CONFIG=ON] [-DSERVICES=... -DPREFIX=...] -P BuildVariant.cmake
#
# Builds the library with other options, installs it and builds and runs a project against that, once more with
# pkg-config where that is wanted. SERVICES is a project to build and install before, against the library that is
# installed at PREFIX: a package that the library needs, and what is built against it.
string(REPLACE "|" ";" OPTIONS "${OPTIONS}")
file(REMOVE_RECURSE "${FOLDER}/installed" "${FOLDER}/project" "${FOLDER}/services")
cmake_path(GET PROJECT FILENAME program)
set(packages "")
if(SERVICES)
    execute_process(COMMAND "${CMAKE_COMMAND}" -S "${SERVICES}" -B "${FOLDER}/services/build" -G "${GENERATOR}"
        "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}"
        -DCMAKE_BUILD_TYPE=Release "-DCMAKE_PREFIX_PATH=${PREFIX}"
        "-DCMAKE_INSTALL_PREFIX=${FOLDER}/services/installed" "-DKOINTERACTION_SOURCE=${SOURCE}" ${OPTIONS}
        --no-warn-unused-cli
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND "${CMAKE_COMMAND}" --build "${FOLDER}/services/build" --target install
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    set(packages "${FOLDER}/services/installed")
endif()
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${FOLDER}/library" -G "${GENERATOR}"
    "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}"
    -DCMAKE_BUILD_TYPE=Release "-DCMAKE_INSTALL_PREFIX=${FOLDER}/installed"
    -DKOINTERACTION_BUILD_VIEWER=OFF -DKOINTERACTION_BUILD_TESTS=OFF "-DCMAKE_PREFIX_PATH=${packages}" ${OPTIONS}
    --no-warn-unused-cli
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${FOLDER}/library" --target install
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${PROJECT}" -B "${FOLDER}/project" -G "${GENERATOR}"
    "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}"
    "-DCMAKE_PREFIX_PATH=${FOLDER}/installed;${packages}" "-DKOINTERACTION_SOURCE=${SOURCE}" --no-warn-unused-cli
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${FOLDER}/project" OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${FOLDER}/project/${program}" COMMAND_ERROR_IS_FATAL ANY)
if(PKG_CONFIG)
    set(PACKAGES koInteraction koInteractionHost)
    set(PREFIX "${FOLDER}/installed")
    set(PROGRAM "${FOLDER}/${program}")
    set(SOURCE "${PROJECT}/${program}.cpp")
    include("${CMAKE_CURRENT_LIST_DIR}/BuildWithPkgConfig.cmake")
endif()
