# SPDX-License-Identifier: MIT
#
# Debian packages by CPack: libkointeraction1, libkointeraction-dev, koviewer. Configure with the preset "package", whose
# prefix is /usr, and run cpack.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kointeraction)
set(CPACK_PACKAGE_VENDOR "The koInteraction authors")
set(CPACK_PACKAGE_CONTACT "The koInteraction authors <authors@kointeraction.invalid>")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "interaction library for OpenSG scenes in Qt applications")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/PackageFolders.cmake")
set(CPACK_POST_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/PackageModes.cmake")

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libkointeraction${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
file(WRITE "${CMAKE_CURRENT_BINARY_DIR}/Debian/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_BINARY_DIR}/Debian/triggers")
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "Turns raw input into named interaction events and routes them through a stack
of contexts to tools, keeps named sets of selected nodes and draws selections
as boxes or as a wireframe copy on top of the scene.

This package contains the shared libraries: the library itself, the host
services and the embedded scene graph.")

if(KOINTERACTION_QT EQUAL 5)
    set(koQtDevelopment qtbase5-dev)
    set(koQtTranslations qttranslations5-l10n)
else()
    set(koQtDevelopment qt6-base-dev)
    set(koQtTranslations qt6-translations-l10n)
endif()

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkointeraction-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "libkointeraction${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}), ${koQtDevelopment}, libgl-dev, libgtest-dev, libgmock-dev")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "interaction library for OpenSG scenes - development files
Headers, the package for CMake, files for pkg-config and the test kit for
hosts of koInteraction, the interaction library for OpenSG scenes in Qt
applications.")

set(CPACK_DEBIAN_VIEWER_PACKAGE_NAME koviewer)
set(CPACK_DEBIAN_VIEWER_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_VIEWER_PACKAGE_DEPENDS "libkointeraction${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_VIEWER_PACKAGE_RECOMMENDS "${koQtTranslations}")
set(CPACK_DEBIAN_VIEWER_DESCRIPTION "viewer for 3D models with selection sets and measuring
Shows models of all formats that Assimp reads. Parts can be selected by clicks
and rectangles, kept as named sets, hidden, isolated, locked and measured.

It is the reference host of koInteraction: everything in it that is
interaction goes through the library.")

# What Debian wants beside the files of a package.
find_program(GZIP gzip)
if(GZIP)
    foreach(package libkointeraction${PROJECT_VERSION_MAJOR} libkointeraction-dev koviewer)
        set(folder "${CMAKE_CURRENT_BINARY_DIR}/Debian/${package}")
        configure_file("${PROJECT_SOURCE_DIR}/CMake/Debian/changelog.in" "${folder}/changelog" @ONLY)
        execute_process(COMMAND "${GZIP}" -9nf "${folder}/changelog")
        if(package STREQUAL "koviewer")
            set(component Viewer)
        elseif(package STREQUAL "libkointeraction-dev")
            set(component InteractionDevelopment)
        else()
            set(component Interaction)
        endif()
        install(FILES "${folder}/changelog.gz" "${PROJECT_SOURCE_DIR}/CMake/Debian/copyright"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}" COMPONENT ${component})
        if(EXISTS "${PROJECT_SOURCE_DIR}/CMake/Debian/${package}.lintian-overrides")
            install(FILES "${PROJECT_SOURCE_DIR}/CMake/Debian/${package}.lintian-overrides"
                DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides" RENAME ${package} COMPONENT ${component})
        endif()
    endforeach()
endif()

include(CPack)
cpack_add_component_group(runtime)
cpack_add_component_group(development)
cpack_add_component_group(viewer)
foreach(component Interaction Host SceneGraph)
    cpack_add_component(${component} GROUP runtime)
    cpack_add_component(${component}Development GROUP development)
endforeach()
cpack_add_component(Testing GROUP development)
cpack_add_component(Viewer GROUP viewer)
