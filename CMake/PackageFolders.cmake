# SPDX-License-Identifier: MIT
#
# Run by cpack before it packs: everybody may look into the folders, whatever umask has whoever makes the packages.
# CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS does not help: the umask is taken off it.
file(GLOB_RECURSE entries LIST_DIRECTORIES ON "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*")
foreach(entry IN LISTS entries)
    # Links lead to other packages, where nothing is yet.
    if(IS_DIRECTORY "${entry}" AND NOT IS_SYMLINK "${entry}")
        file(CHMOD "${entry}" PERMISSIONS
            OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
    endif()
endforeach()
