# SPDX-License-Identifier: MIT
#
# What finds an installation: a CMake package, and a file for pkg-config for each library.
set(koHostPackage "")
if(KOINTERACTION_HOST STREQUAL "external")
    get_target_property(koHostPackage koHost KO_PACKAGE)
    list(JOIN koHostPackage " " koHostPackage)
endif()
configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/koInteractionConfig.cmake.in" koInteractionConfig.cmake
    INSTALL_DESTINATION "${KOINTERACTION_INSTALL_CMAKEDIR}"
    PATH_VARS KOINTERACTION_INSTALL_INCLUDEDIR KOINTERACTION_INSTALL_TRANSLATIONSDIR CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(koInteractionConfigVersion.cmake COMPATIBILITY SameMajorVersion)
set(koPackageFiles
    "${CMAKE_CURRENT_BINARY_DIR}/koInteractionConfig.cmake"
    "${CMAKE_CURRENT_BINARY_DIR}/koInteractionConfigVersion.cmake")
if(KOINTERACTION_OPENSG STREQUAL "system")
    list(APPEND koPackageFiles "${CMAKE_CURRENT_LIST_DIR}/FindOpenSG.cmake")
endif()
# With each component, so that one of them is found without the others.
foreach(component InteractionDevelopment HostDevelopment SceneGraphDevelopment)
    if(NOT (component STREQUAL "HostDevelopment" AND KOINTERACTION_HOST STREQUAL "external"))
        install(FILES ${koPackageFiles} DESTINATION "${KOINTERACTION_INSTALL_CMAKEDIR}" COMPONENT ${component})
    endif()
endforeach()

# The licence goes with every part. A distribution has files of its own for that.
if(NOT KOINTERACTION_PACKAGES)
    foreach(component Interaction Host SceneGraph Testing Viewer)
        install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/koInteraction"
            COMPONENT ${component})
    endforeach()
endif()

# ko_install_pkg_config(<name> <component> DESCRIPTION <text> [REQUIRES <package>...] [FLAGS <flag>...]
#                       [LIBRARIES <flag>...])
function(ko_install_pkg_config name component)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "DESCRIPTION" "REQUIRES;FLAGS;LIBRARIES")
    set(folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
    # Beside the file, but for folders that whoever builds has fixed.
    if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
        set(koPkgConfigPrefix "${CMAKE_INSTALL_PREFIX}")
        set(koPkgConfigLibraries "${CMAKE_INSTALL_LIBDIR}")
    else()
        file(RELATIVE_PATH up "/prefix/${folder}" "/prefix")
        string(REGEX REPLACE "/$" "" up "${up}")
        set(koPkgConfigPrefix "\${pcfiledir}/${up}")
        set(koPkgConfigLibraries "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
    endif()
    if(IS_ABSOLUTE "${KOINTERACTION_INSTALL_INCLUDEDIR}")
        set(koPkgConfigHeaders "${KOINTERACTION_INSTALL_INCLUDEDIR}")
    else()
        set(koPkgConfigHeaders "\${prefix}/${KOINTERACTION_INSTALL_INCLUDEDIR}")
    endif()
    set(koPackageName ${name})
    set(koPackageDescription "${arg_DESCRIPTION}")
    list(JOIN arg_REQUIRES ", " koPackageRequires)
    list(JOIN arg_FLAGS " " koPackageFlags)
    list(JOIN arg_LIBRARIES " " koPackageLibraries)
    configure_file("${CMAKE_CURRENT_FUNCTION_LIST_DIR}/koInteraction.pc.in" ${name}.pc @ONLY)
    ko_get_development_component(${component} developmentComponent)
    install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${name}.pc" DESTINATION "${folder}" COMPONENT ${developmentComponent})
endfunction()

if(KOINTERACTION_OPENSG STREQUAL "system")
    set(sceneGraphFlags "")
    get_target_property(folders OpenSG::OpenSG INTERFACE_INCLUDE_DIRECTORIES)
    foreach(folder ${folders})
        list(APPEND sceneGraphFlags "-isystem ${folder}")
    endforeach()
    get_target_property(definitions OpenSG::OpenSG INTERFACE_COMPILE_DEFINITIONS)
    foreach(definition ${definitions})
        list(APPEND sceneGraphFlags "-D${definition}")
    endforeach()
    cmake_path(GET OpenSG_BASE_LIBRARY PARENT_PATH folder)
    ko_install_pkg_config(koInteractionSceneGraph SceneGraph
        DESCRIPTION "OpenSG and what it lacks of the host's extensions"
        FLAGS "-I\${includedir}" ${sceneGraphFlags}
        LIBRARIES -lkoOpenSGExtensions "${OpenSG_SYSTEM_LIBRARY}" "${OpenSG_BASE_LIBRARY}" "-Wl,-rpath,${folder}" -lGL -lpthread)
else()
    ko_install_pkg_config(koInteractionSceneGraph SceneGraph
        DESCRIPTION "Scene graph that is source compatible with OpenSG 1.x"
        FLAGS "-I\${includedir}"
        LIBRARIES -lkoSceneGraph)
endif()

set(interactionRequires koInteractionSceneGraph "Qt${KOINTERACTION_QT}Gui")
if(NOT KOINTERACTION_HOST STREQUAL "external")
    ko_install_pkg_config(koInteractionHost Host
        DESCRIPTION "Host services that koInteraction calls: notifications, shortcuts, utilities of scenes"
        REQUIRES koInteractionSceneGraph "Qt${KOINTERACTION_QT}Gui"
        FLAGS "-I\${includedir}"
        LIBRARIES -lkoHost)
    if(KOINTERACTION_HOST STREQUAL "static")
        list(PREPEND interactionRequires koInteractionHost)
    endif()
endif()
ko_install_pkg_config(koInteraction Interaction
    DESCRIPTION "${PROJECT_DESCRIPTION}"
    REQUIRES ${interactionRequires}
    FLAGS "-I\${includedir}"
    LIBRARIES -lkoInteraction)
set(testingRequires koInteraction gmock)
if(NOT KOINTERACTION_HOST STREQUAL "external")
    list(APPEND testingRequires koInteractionHost)
endif()
ko_install_pkg_config(koInteractionTesting Testing
    DESCRIPTION "Recording doubles, scripted input and matchers for tests of hosts of koInteraction"
    REQUIRES ${testingRequires}
    FLAGS "-I\${includedir}")
