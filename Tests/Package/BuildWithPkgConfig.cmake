# SPDX-License-Identifier: MIT
#
# cmake -DPREFIX=... -DCOMPILER=... -DPACKAGES=... -DSOURCE=... -DPROGRAM=... -DSANITIZE=... -P BuildWithPkgConfig.cmake
#
# Builds and runs a program with what pkg-config says of the installed package.
file(GLOB_RECURSE file "${PREFIX}/koInteraction.pc")
cmake_path(GET file PARENT_PATH folder)
set(ENV{PKG_CONFIG_PATH} "${folder}")
execute_process(COMMAND pkg-config --cflags --libs ${PACKAGES}
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND pkg-config --variable=libdir koInteraction
    OUTPUT_VARIABLE libraries OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
# As a shell reads them: blanks in names of folders are escaped.
separate_arguments(flags UNIX_COMMAND "${flags}")
separate_arguments(libraries UNIX_COMMAND "${libraries}")
if(SANITIZE)
    list(PREPEND flags -fsanitize=address,undefined)
endif()
execute_process(COMMAND "${COMPILER}" -std=c++17 -fPIC "${SOURCE}" -o "${PROGRAM}" ${flags} "-Wl,-rpath,${libraries}"
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${PROGRAM}" COMMAND_ERROR_IS_FATAL ANY)
