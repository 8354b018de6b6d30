# SPDX-License-Identifier: MIT
#
# What is installed, in components that stand alone:
#
#   Interaction, InteractionDevelopment   the library; its headers and what finds it
#   Host, HostDevelopment                 the host services; not with KOINTERACTION_HOST=external
#   SceneGraph, SceneGraphDevelopment     the embedded scene graph, or what an installed OpenSG lacks
#   Testing                               the test kit for hosts: headers, and what finds them
#   Viewer                                koviewer
#
# A component with Development needs the one of the same name without it.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(KOINTERACTION_INSTALL_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/koInteraction")
set(KOINTERACTION_INSTALL_TRANSLATIONSDIR "${CMAKE_INSTALL_DATADIR}/koInteraction/translations")
set(KOINTERACTION_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/koInteraction")

# Programs find the libraries, and those each other, wherever the prefix is moved to. A distribution switches it off
# with CMAKE_SKIP_INSTALL_RPATH: its loader knows the folder.
file(RELATIVE_PATH koLibraryFolder "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
set(CMAKE_INSTALL_RPATH "$ORIGIN/${koLibraryFolder}")
if(KOINTERACTION_OPENSG STREQUAL "system")
    # It may be where no loader looks.
    set(CMAKE_INSTALL_RPATH_USE_LINK_PATH ON)
endif()

# ko_get_development_component(<component> <variable>)
#
# Of the test kit there is nothing to run: it is one component.
function(ko_get_development_component component variable)
    if(component STREQUAL "Testing")
        set(${variable} Testing PARENT_SCOPE)
    else()
        set(${variable} ${component}Development PARENT_SCOPE)
    endif()
endfunction()

# ko_install_library(<target> <component> NAME <exported name>)
#
# Exported as quon::<exported name> in the set of the component.
function(ko_install_library target component)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "NAME" "")
    set_target_properties(${target} PROPERTIES EXPORT_NAME ${arg_NAME} INSTALL_RPATH "$ORIGIN")
    target_include_directories(${target} INTERFACE "$<INSTALL_INTERFACE:${KOINTERACTION_INSTALL_INCLUDEDIR}>")
    install(TARGETS ${target} EXPORT koInteraction${component}Targets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
            COMPONENT ${component}
            NAMELINK_COMPONENT ${component}Development
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT ${component}Development)
endfunction()

# ko_install_headers(<component> <folder below the include root> FILES <file>...)
function(ko_install_headers component folder)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "FILES")
    ko_get_development_component(${component} developmentComponent)
    install(FILES ${arg_FILES} DESTINATION "${KOINTERACTION_INSTALL_INCLUDEDIR}/${folder}"
        COMPONENT ${developmentComponent})
endfunction()

# ko_install_targets(<component>)
#
# The file that tells others of the exported targets of a component.
function(ko_install_targets component)
    ko_get_development_component(${component} developmentComponent)
    install(EXPORT koInteraction${component}Targets
        NAMESPACE quon::
        DESTINATION "${KOINTERACTION_INSTALL_CMAKEDIR}"
        COMPONENT ${developmentComponent})
endfunction()
