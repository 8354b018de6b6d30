# SPDX-License-Identifier: MIT
#
# Run by cpack after it packed: a Debian package is an archive of three files, whose modes are those that the umask left
# them. Nobody unpacks them by that; they are what dpkg-deb would write.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    if(NOT package MATCHES "[.]deb$")
        continue()
    endif()
    file(SIZE "${package}" end)
    # The archive's own mark. A header has 60 bytes: 8 of the mode from the 40th on, 10 of the size from the 48th on.
    set(header 8)
    while(header LESS end)
        math(EXPR mode "${header} + 40")
        math(EXPR size "${header} + 48")
        execute_process(COMMAND "${CMAKE_COMMAND}" -E echo_append "100644  "
            COMMAND dd "of=${package}" bs=1 seek=${mode} count=8 conv=notrunc status=none COMMAND_ERROR_IS_FATAL ANY)
        file(READ "${package}" length OFFSET ${size} LIMIT 10)
        string(STRIP "${length}" length)
        # A file of odd length is followed by a byte that fills up.
        math(EXPR header "${header} + 60 + (${length} + 1) / 2 * 2")
    endwhile()
endforeach()
