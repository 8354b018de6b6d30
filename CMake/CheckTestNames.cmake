# SPDX-License-Identifier: MIT
#
# cmake -DDOCUMENT=... -DSOURCE_DIR=... -P CheckTestNames.cmake
#
# Every test that the document names, as `Suite.Name` or as the whole `Suite`, exists.
cmake_minimum_required(VERSION 3.25)

file(READ "${SOURCE_DIR}/${DOCUMENT}" document)
if(document MATCHES "```cpp")
    message(FATAL_ERROR "${DOCUMENT} has C++ that nobody compares with a source")
endif()
string(REGEX MATCHALL "`[A-Za-z]+Test(\\.[A-Za-z0-9]+)?`" names "${document}")
list(REMOVE_DUPLICATES names)
if(NOT names)
    message(FATAL_ERROR "${DOCUMENT} names no test")
endif()

file(GLOB_RECURSE sources "${SOURCE_DIR}/Tests/*Test.cpp")
set(known "")
foreach(source ${sources})
    file(READ "${source}" text)
    string(REGEX MATCHALL "TEST(_F|_P)?\\([A-Za-z]+,[ \n]*[A-Za-z0-9]+\\)" tests "${text}")
    list(APPEND known ${tests})
endforeach()
list(TRANSFORM known REPLACE "TEST(_F|_P)?\\(([A-Za-z]+),[ \n]*([A-Za-z0-9]+)\\)" "\\2.\\3")

foreach(name ${names})
    string(REPLACE "`" "" name "${name}")
    if(name MATCHES "\\.")
        set(found "${known}")
        list(FILTER found INCLUDE REGEX "^${name}$")
    else()
        set(found "${known}")
        list(FILTER found INCLUDE REGEX "^${name}\\.")
    endif()
    if(NOT found)
        message(SEND_ERROR "${DOCUMENT} names the test ${name}, which does not exist")
    endif()
endforeach()
list(LENGTH names count)
message(STATUS "${DOCUMENT} names ${count} tests")
