# SPDX-License-Identifier: MIT
#
# What libkoInteraction shows to the linker: run with -DLIBRARY=<file> -DNM=<nm> -DREADELF=<readelf>
# -DSCENE_GRAPH=<library>,... -DQT=<major version>
cmake_policy(VERSION 3.25)

set(failures "")

function(report text)
    set(failures "${failures}  ${text}\n" PARENT_SCOPE)
endfunction()

function(lines_of output)
    execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE text ERROR_VARIABLE error RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        list(JOIN ARGN " " command)
        message(FATAL_ERROR "${command} failed (${status}): ${error}")
    endif()
    # Brackets would join elements of a CMake list.
    string(REGEX REPLACE "[][;]" "_" text "${text}")
    string(REPLACE "\n" ";" text "${text}")
    set(${output} "${text}" PARENT_SCOPE)
endfunction()

# Classes with operations of their own, and interfaces, which have nothing but their type.
set(classes
    AbstractInteractionContext
    AbstractInteractionTool
    AbstractSelectionVisualisation
    BoxSelectionVisualisation
    HighlightSelectionVisualisation
    InteractionEvent
    InteractionManager
    LazyPicker
    MultimodeInteractionContext
    NodeSelectionModel
    QtEventMapper
    SelectionManager
    ToolInteractionContext)
set(interfaces
    InteractionContext
    InteractionTool
    Picker
    SelectionVisualisation)
set(notPolymorphic
    InteractionEvent
    InteractionManager
    NodeSelectionModel
    QtEventMapper
    SelectionManager)
list(JOIN classes "|" classPattern)
list(JOIN interfaces "|" interfacePattern)
set(function "quon::interaction::cloneSelectionTree(osg::NodePtr const&)")

# Only the exported classes, their tables and types, and the one free function.
lines_of(symbols ${NM} -D -C --defined-only ${LIBRARY})
set(names "")
foreach(line IN LISTS symbols)
    if(line MATCHES "^[0-9a-f]* +[A-Za-z] (.+)$")
        list(APPEND names "${CMAKE_MATCH_1}")
    elseif(NOT line STREQUAL "")
        report("not understood: ${line}")
    endif()
endforeach()
foreach(name IN LISTS names)
    if(name STREQUAL function
       OR name MATCHES "^quon::interaction::(${classPattern}|${interfacePattern})::m_[A-Za-z]+$"
       OR name MATCHES "^quon::interaction::(${classPattern}|${interfacePattern})::[A-Za-z~]+(_abi:cxx11_)?\\("
       OR name MATCHES "^(vtable|typeinfo|typeinfo name) for quon::interaction::(${classPattern}|${interfacePattern})$")
        continue()
    endif()
    report("exported, but no part of the interface: ${name}")
endforeach()

# All of them.
if(NOT function IN_LIST names)
    report("not exported: ${function}")
endif()
foreach(class IN LISTS classes)
    set(found FALSE)
    foreach(name IN LISTS names)
        if(name MATCHES "^quon::interaction::${class}::[A-Za-z~]+(_abi:cxx11_)?\\(")
            set(found TRUE)
            break()
        endif()
    endforeach()
    if(NOT found)
        report("no operation exported: ${class}")
    endif()
    foreach(kind vtable typeinfo "typeinfo name")
        if(class IN_LIST notPolymorphic)
            if("${kind} for quon::interaction::${class}" IN_LIST names)
                report("should not exist: ${kind} for ${class}")
            endif()
        elseif(NOT "${kind} for quon::interaction::${class}" IN_LIST names)
            report("not exported: ${kind} for ${class}")
        endif()
    endforeach()
endforeach()
# A host compares types of the interfaces with dynamic_cast: both sides must mean the same one.
foreach(interface IN LISTS interfaces)
    if(NOT "typeinfo for quon::interaction::${interface}" IN_LIST names)
        report("not exported: typeinfo for ${interface}")
    endif()
endforeach()

# The name by which hosts find it, and what it brings along.
lines_of(dynamic ${READELF} -d -W ${LIBRARY})
set(soname "")
set(needed "")
foreach(line IN LISTS dynamic)
    if(line MATCHES "\\(SONAME\\).*: _(.+)_")
        set(soname "${CMAKE_MATCH_1}")
    elseif(line MATCHES "\\(NEEDED\\).*: _(.+)_")
        list(APPEND needed "${CMAKE_MATCH_1}")
    endif()
endforeach()
if(NOT soname STREQUAL "libkoInteraction.so.1")
    report("the library's name is '${soname}' and not 'libkoInteraction.so.1'")
endif()
string(REPLACE "," ";" sceneGraph "${SCENE_GRAPH}")
list(JOIN sceneGraph "|" sceneGraphPattern)
set(own "libQt${QT}Core|libQt${QT}Gui|libkoHost|${sceneGraphPattern}")
set(runtime "libstdc\\+\\+|libc\\+\\+|libc\\+\\+abi|libm|libgcc_s|libc|ld-linux[-a-z0-9_]*|libasan|libubsan|libgcov")
foreach(entry IN LISTS needed)
    if(NOT entry MATCHES "^(${own}|${runtime})\\.so(\\.[0-9]+)*$")
        report("needs ${entry}")
    endif()
endforeach()
foreach(expected libQt${QT}Core libkoHost ${sceneGraph})
    if(NOT needed MATCHES "(^|;)${expected}\\.so")
        report("does not need ${expected}, which it calls")
    endif()
endforeach()

list(LENGTH names count)
if(failures)
    message(FATAL_ERROR "${LIBRARY}, ${count} symbols:\n${failures}")
endif()
message(STATUS "${count} symbols, needs ${needed}")
