# SPDX-License-Identifier: MIT
#
# Host services that are not ours: quon::Host is whatever the host says.
#
#   KOINTERACTION_HOST_TARGET        a target of the parent project, or of KOINTERACTION_HOST_PACKAGE
#   KOINTERACTION_HOST_PACKAGE       a package to find first
#   KOINTERACTION_HOST_INCLUDE_DIRS  folders with the headers, instead of a target
#   KOINTERACTION_HOST_LIBRARIES     libraries to link; none when the program itself has the services
add_library(koHost INTERFACE)
add_library(quon::Host ALIAS koHost)

if(KOINTERACTION_HOST_PACKAGE)
    find_package(${KOINTERACTION_HOST_PACKAGE} REQUIRED)
endif()
if(KOINTERACTION_HOST_TARGET)
    if(NOT TARGET ${KOINTERACTION_HOST_TARGET})
        message(FATAL_ERROR "KOINTERACTION_HOST_TARGET names ${KOINTERACTION_HOST_TARGET}, which is no target here")
    endif()
    target_link_libraries(koHost INTERFACE ${KOINTERACTION_HOST_TARGET})
elseif(NOT KOINTERACTION_HOST_INCLUDE_DIRS)
    message(FATAL_ERROR "KOINTERACTION_HOST=external needs KOINTERACTION_HOST_TARGET or KOINTERACTION_HOST_INCLUDE_DIRS")
else()
    # Before the compiler does, and with the name of what is missing.
    foreach(header Notification/NotificationManager.h Notification/TextNotification.h SceneUtilities/NodeUtils.h
                   SceneUtilities/koMaterials.h SceneUtilities/koNodeUtils.h SceneUtilities/koUberCameraUtils.h
                   Shortcut/koShortcut.h)
        unset(koFound)
        foreach(folder ${KOINTERACTION_HOST_INCLUDE_DIRS})
            if(EXISTS "${folder}/${header}")
                set(koFound TRUE)
            endif()
        endforeach()
        if(NOT koFound)
            message(FATAL_ERROR "KOINTERACTION_HOST_INCLUDE_DIRS has no ${header}, which the library includes")
        endif()
    endforeach()
    target_include_directories(koHost INTERFACE ${KOINTERACTION_HOST_INCLUDE_DIRS})
    target_link_libraries(koHost INTERFACE ${KOINTERACTION_HOST_LIBRARIES})
endif()
target_link_libraries(koHost INTERFACE quon::OpenSG)
