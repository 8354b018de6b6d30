# SPDX-License-Identifier: MIT
#
# Host services that are not ours: quon::Host is whatever the host says.
#
#   KOINTERACTION_HOST_TARGET        a target of the parent project, or of KOINTERACTION_HOST_PACKAGE
#   KOINTERACTION_HOST_PACKAGE       a package to find first, perhaps with a version and components, as a list; what
#                                    finds the installed library looks for it, too
#   KOINTERACTION_HOST_INCLUDE_DIRS  folders with the headers, instead of a target
#   KOINTERACTION_HOST_LIBRARIES     libraries to link; none when the program itself has the services
#
# The library links a target that is a shared library. Of a static or an object library it only reads the headers, since
# there is but one copy of the services, which is the program's; whoever links the library links the static one, too.
# With headers alone, an interface library, nobody knows who has the services.
#
# The target quon::Host says of itself: KO_LINKED, whether the library that links it has all services; KO_FOLLOWS, the
# target that whoever links the library links, too; KO_PACKAGE, the package that has the services.
add_library(koHost INTERFACE)
add_library(quon::Host ALIAS koHost)

set_target_properties(koHost PROPERTIES KO_LINKED FALSE KO_FOLLOWS "" KO_PACKAGE "")
if(KOINTERACTION_HOST_PACKAGE)
    find_package(${KOINTERACTION_HOST_PACKAGE} REQUIRED GLOBAL)
endif()
if(KOINTERACTION_HOST_TARGET)
    if(NOT TARGET ${KOINTERACTION_HOST_TARGET})
        message(FATAL_ERROR "KOINTERACTION_HOST_TARGET names ${KOINTERACTION_HOST_TARGET}, which is no target here")
    endif()
    get_target_property(koHostIsImported ${KOINTERACTION_HOST_TARGET} IMPORTED)
    if(KOINTERACTION_HOST_PACKAGE AND koHostIsImported)
        set_target_properties(koHost PROPERTIES KO_PACKAGE "${KOINTERACTION_HOST_PACKAGE}")
    endif()
    get_target_property(koHostKind ${KOINTERACTION_HOST_TARGET} TYPE)
    if(koHostKind MATCHES "^(STATIC_LIBRARY|OBJECT_LIBRARY|EXECUTABLE)$")
        foreach(property INCLUDE_DIRECTORIES SYSTEM_INCLUDE_DIRECTORIES COMPILE_DEFINITIONS COMPILE_OPTIONS)
            set_property(TARGET koHost APPEND PROPERTY INTERFACE_${property}
                "$<TARGET_PROPERTY:${KOINTERACTION_HOST_TARGET},INTERFACE_${property}>")
        endforeach()
        if(koHostKind STREQUAL "STATIC_LIBRARY")
            set_target_properties(koHost PROPERTIES KO_FOLLOWS ${KOINTERACTION_HOST_TARGET})
        endif()
    else()
        target_link_libraries(koHost INTERFACE ${KOINTERACTION_HOST_TARGET})
        if(NOT koHostKind STREQUAL "INTERFACE_LIBRARY")
            set_target_properties(koHost PROPERTIES KO_LINKED TRUE)
        endif()
    endif()
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
    if(KOINTERACTION_HOST_LIBRARIES)
        set_target_properties(koHost PROPERTIES KO_LINKED TRUE)
    endif()
endif()
target_link_libraries(koHost INTERFACE quon::OpenSG)
