# SPDX-License-Identifier: MIT
#
# Finds an installed OpenSG 1.8 (OSGBase and OSGSystem). OpenSG_ROOT points at its prefix.
#
# Defines the target OpenSG::OpenSG and the variables OpenSG_FOUND, OpenSG_VERSION and OpenSG_FLAVOUR: "BoxVolume" for a
# build with OSG_2_PREP, "DynamicVolume" for a plain one. The two differ in their interface and in their symbols, so
# that the define must be the same for the libraries and for everything that includes their headers; which one is
# installed shows only when a program is linked.
include(CheckCXXSourceCompiles)
include(FindPackageHandleStandardArgs)

find_path(OpenSG_INCLUDE_DIR NAMES OpenSG/OSGConfig.h DOC "Folder that contains OpenSG/OSGConfig.h")
find_library(OpenSG_BASE_LIBRARY NAMES OSGBase PATH_SUFFIXES lib64 lib lib64/opt lib/opt DOC "OpenSG's base library")
find_library(OpenSG_SYSTEM_LIBRARY NAMES OSGSystem PATH_SUFFIXES lib64 lib lib64/opt lib/opt
    DOC "OpenSG's system library")
find_package(OpenGL QUIET COMPONENTS OpenGL)
find_package(Threads QUIET)
mark_as_advanced(OpenSG_INCLUDE_DIR OpenSG_BASE_LIBRARY OpenSG_SYSTEM_LIBRARY)

set(koOpenSGReason "")
unset(OpenSG_VERSION)
if(OpenSG_INCLUDE_DIR)
    set(OpenSG_VERSION "")
    foreach(koPart MAJOR MINOR RELEASE)
        file(STRINGS "${OpenSG_INCLUDE_DIR}/OpenSG/OSGConfig.h" koLine
            REGEX "^#[ \t]*define[ \t]+OSG_${koPart}_VERSION[ \t]+[0-9]+")
        if(koLine MATCHES "OSG_${koPart}_VERSION[ \t]+([0-9]+)")
            list(APPEND OpenSG_VERSION "${CMAKE_MATCH_1}")
        endif()
    endforeach()
    list(JOIN OpenSG_VERSION "." OpenSG_VERSION)
else()
    string(APPEND koOpenSGReason "no header OpenSG/OSGConfig.h, ")
endif()
if(NOT OpenSG_BASE_LIBRARY)
    string(APPEND koOpenSGReason "no library OSGBase, ")
endif()
if(NOT OpenSG_SYSTEM_LIBRARY)
    string(APPEND koOpenSGReason "no library OSGSystem, ")
endif()
if(NOT TARGET OpenGL::GL)
    string(APPEND koOpenSGReason "no OpenGL, whose header OpenSG includes, ")
endif()
if(NOT TARGET Threads::Threads)
    string(APPEND koOpenSGReason "no threads library, ")
endif()
# The release 1.8.0 spells the handlers of drawables and the types of points otherwise.
if(OpenSG_VERSION AND (OpenSG_VERSION VERSION_LESS 1.8.1 OR OpenSG_VERSION VERSION_GREATER_EQUAL 1.9))
    string(APPEND koOpenSGReason "version ${OpenSG_VERSION} instead of 1.8.1 or a later 1.8, ")
endif()

unset(OpenSG_FLAVOUR)
if(NOT koOpenSGReason)
    set(koOpenSGDefinitions "")
    # Read by the headers only on request. A build that has it was made with it.
    if(EXISTS "${OpenSG_INCLUDE_DIR}/OpenSG/OSGConfigured.h")
        list(APPEND koOpenSGDefinitions _OSG_HAVE_CONFIGURED_H_)
    endif()

    # Its headers include containers of libstdc++ that warn of their age.
    list(APPEND koOpenSGDefinitions _GLIBCXX_PERMIT_BACKWARD_HASH)

    # ko_check_opensg(<variable> <volume> <define>...)
    function(ko_check_opensg variable volume)
        set(CMAKE_REQUIRED_QUIET ON)
        set(CMAKE_REQUIRED_INCLUDES "${OpenSG_INCLUDE_DIR}" "${OpenSG_INCLUDE_DIR}/OpenSG")
        set(CMAKE_REQUIRED_LIBRARIES
            "${OpenSG_SYSTEM_LIBRARY}" "${OpenSG_BASE_LIBRARY}" OpenGL::GL Threads::Threads)
        list(TRANSFORM ARGN PREPEND -D OUTPUT_VARIABLE CMAKE_REQUIRED_DEFINITIONS)
        # Whatever the caller's own warnings are; clang takes "register" for an error in C++17.
        set(CMAKE_REQUIRED_FLAGS "-w -Wno-register")
        check_cxx_source_compiles("
            #include <OpenSG/OSGConfig.h>
            #include <OpenSG/OSGBaseFunctions.h>
            #include <OpenSG/OSGNode.h>
            int main(int argc, char** argv)
            {
                osg::osgInit(argc, argv);
                osg::NodePtr node = osg::Node::create();
                osg::${volume} volume;
                node->getWorldVolume(volume);
                return 0;
            }
            " ${variable})
    endfunction()

    # Results of another installation are of no use.
    set(koOpenSGChecked "${OpenSG_INCLUDE_DIR};${OpenSG_BASE_LIBRARY};${OpenSG_SYSTEM_LIBRARY}")
    if(NOT koOpenSGChecked STREQUAL "${KO_OPENSG_CHECKED}")
        unset(KO_OPENSG_HAS_BOX_VOLUME CACHE)
        unset(KO_OPENSG_HAS_DYNAMIC_VOLUME CACHE)
        set(KO_OPENSG_CHECKED "${koOpenSGChecked}" CACHE INTERNAL "What the flavour was determined of")
    endif()
    ko_check_opensg(KO_OPENSG_HAS_BOX_VOLUME BoxVolume ${koOpenSGDefinitions} OSG_2_PREP)
    if(KO_OPENSG_HAS_BOX_VOLUME)
        set(OpenSG_FLAVOUR BoxVolume)
        list(APPEND koOpenSGDefinitions OSG_2_PREP)
    else()
        ko_check_opensg(KO_OPENSG_HAS_DYNAMIC_VOLUME DynamicVolume ${koOpenSGDefinitions})
        if(KO_OPENSG_HAS_DYNAMIC_VOLUME)
            set(OpenSG_FLAVOUR DynamicVolume)
        else()
            string(APPEND koOpenSGReason
                "a program that uses its headers and libraries does not build, with OSG_2_PREP or without, ")
        endif()
    endif()
endif()

string(REGEX REPLACE ", $" "" koOpenSGReason "${koOpenSGReason}")
if(koOpenSGReason)
    set(koOpenSGReason "${koOpenSGReason}. Point OpenSG_ROOT at the prefix of an installed OpenSG 1.8")
endif()
find_package_handle_standard_args(OpenSG
    REQUIRED_VARS OpenSG_SYSTEM_LIBRARY OpenSG_BASE_LIBRARY OpenSG_INCLUDE_DIR OpenSG_FLAVOUR
    VERSION_VAR OpenSG_VERSION
    REASON_FAILURE_MESSAGE "${koOpenSGReason}")

if(OpenSG_FOUND AND NOT TARGET OpenSG::OpenSG)
    add_library(OpenSG::OSGBase UNKNOWN IMPORTED)
    set_target_properties(OpenSG::OSGBase PROPERTIES IMPORTED_LOCATION "${OpenSG_BASE_LIBRARY}")
    add_library(OpenSG::OpenSG UNKNOWN IMPORTED)
    # Both folders: headers of OpenSG include each other with and without the folder's name.
    set_target_properties(OpenSG::OpenSG PROPERTIES
        IMPORTED_LOCATION "${OpenSG_SYSTEM_LIBRARY}"
        INTERFACE_COMPILE_DEFINITIONS "${koOpenSGDefinitions}"
        INTERFACE_COMPILE_OPTIONS "$<$<COMPILE_LANG_AND_ID:CXX,Clang,AppleClang>:-Wno-register>"
        INTERFACE_INCLUDE_DIRECTORIES "${OpenSG_INCLUDE_DIR};${OpenSG_INCLUDE_DIR}/OpenSG"
        INTERFACE_SYSTEM_INCLUDE_DIRECTORIES "${OpenSG_INCLUDE_DIR};${OpenSG_INCLUDE_DIR}/OpenSG"
        INTERFACE_LINK_LIBRARIES "OpenSG::OSGBase;OpenGL::GL;Threads::Threads")
endif()
