# SPDX-License-Identifier: MIT
#
# cmake -DPREFIX=... -DGZIP=... -DGROFF=... -DVALIDATE=... -P CheckDesktop.cmake
#
# What a desktop and a reader of manuals find of the installed viewer: the manual page has every option of --help and the
# version, and groff has nothing to say of it; the entry of the menu is valid, and its icon is there. GROFF and VALIDATE
# may be missing.
set(page "${CMAKE_CURRENT_BINARY_DIR}/koviewer.1")
execute_process(COMMAND "${GZIP}" -dc "${PREFIX}/share/man/man1/koviewer.1.gz"
    OUTPUT_FILE "${page}" COMMAND_ERROR_IS_FATAL ANY)
file(READ "${page}" manual)
string(REPLACE "\\-" "-" manual "${manual}")
execute_process(COMMAND "${PREFIX}/bin/koviewer" --help OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "\n  --[a-z]+" options "${help}")
if(NOT options)
    message(FATAL_ERROR "koviewer --help lists no option")
endif()
foreach(option ${options})
    string(REGEX REPLACE "^\n  " "" option "${option}")
    if(NOT manual MATCHES "\n\\.B[IR]? ${option}[\n \\]")
        message(SEND_ERROR "The manual page lacks ${option}")
    endif()
endforeach()
execute_process(COMMAND "${PREFIX}/bin/koviewer" --version
    OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
string(FIND "${manual}" "\"${version}\"" position)
if(position EQUAL -1)
    message(SEND_ERROR "The manual page is not that of ${version}")
endif()

if(GROFF)
    execute_process(COMMAND "${GROFF}" -man -ww -Tutf8 "${page}"
        OUTPUT_QUIET ERROR_VARIABLE warnings COMMAND_ERROR_IS_FATAL ANY)
    if(warnings)
        message(SEND_ERROR "${warnings}")
    endif()
endif()

set(entry "${PREFIX}/share/applications/koviewer.desktop")
if(VALIDATE)
    execute_process(COMMAND "${VALIDATE}" "${entry}" OUTPUT_VARIABLE warnings ERROR_VARIABLE warnings)
    if(warnings)
        message(SEND_ERROR "${warnings}")
    endif()
endif()
file(STRINGS "${entry}" icon REGEX "^Icon=")
string(REPLACE "Icon=" "" icon "${icon}")
if(NOT EXISTS "${PREFIX}/share/icons/hicolor/scalable/apps/${icon}.svg")
    message(SEND_ERROR "The menu names the icon ${icon}, which is not installed")
endif()
