# SPDX-License-Identifier: MIT
#
# cmake -DPAGE=... -DEXAMPLE=... -DFOLDER=... -DPREFIX=... -DGENERATOR=... -DCOMPILER=... -DLAUNCHER=... -DOPTIONS=...|...
#       -P FollowTutorial.cmake
#
# Does what a page says, in an empty folder, with what is installed at PREFIX. What it says is marked by comments, each
# above a block:
#
#   <!-- file: NAME -->              the block is the file, in place of the one before
#   <!-- file: NAME, includes -->    the block goes above the other includes of the file
#   <!-- file: NAME, below: LINE --> the block goes below this line of the file, indented as it is
#   <!-- run -->                     builds, runs the lines behind "$ " and compares what they print with the rest
#
# In the end the folder has the files of EXAMPLE, the order of includes and the licence aside.
cmake_minimum_required(VERSION 3.25)

cmake_path(GET EXAMPLE FILENAME name)
set(sources "${FOLDER}/${name}")
file(REMOVE_RECURSE "${FOLDER}")
file(MAKE_DIRECTORY "${sources}")
string(REPLACE "|" ";" OPTIONS "${OPTIONS}")
set(programs "${FOLDER}/build")

# After an empty line where the block starts with a comment.
function(insert_below file line block)
    file(READ "${file}" content)
    string(FIND "${content}" "    ${line}\n" position)
    if(position EQUAL -1)
        message(FATAL_ERROR "${file} has no line ${line}")
    endif()
    string(LENGTH "    ${line}\n" length)
    math(EXPR position "${position} + ${length}")
    string(SUBSTRING "${content}" 0 ${position} before)
    string(SUBSTRING "${content}" ${position} -1 after)
    string(REGEX REPLACE "\n([^\n])" "\n    \\1" block "\n${block}")
    if(NOT block MATCHES "^\n    //")
        string(SUBSTRING "${block}" 1 -1 block)
    endif()
    file(WRITE "${file}" "${before}${block}${after}")
endfunction()

function(insert_includes file block)
    file(READ "${file}" content)
    string(FIND "${content}" "#include" position)
    string(SUBSTRING "${content}" 0 ${position} before)
    string(SUBSTRING "${content}" ${position} -1 after)
    file(WRITE "${file}" "${before}${block}${after}")
endfunction()

function(build)
    execute_process(COMMAND "${CMAKE_COMMAND}" -S "${sources}" -B "${programs}" -G "${GENERATOR}"
        "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}" "-DCMAKE_PREFIX_PATH=${PREFIX}"
        ${OPTIONS}
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND "${CMAKE_COMMAND}" --build "${programs}"
        OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE failed)
    if(failed)
        message(FATAL_ERROR "What the page says does not build:\n${output}")
    endif()
endfunction()

# What is printed is compared as a whole, commands included.
function(run block)
    string(REGEX REPLACE "\n$" "" rest "${block}")
    string(REPLACE "\n" ";" lines "${rest}")
    set(printed "")
    foreach(line ${lines})
        if(line MATCHES "^\\$ build/(.*)$")
            separate_arguments(command UNIX_COMMAND "${CMAKE_MATCH_1}")
            list(POP_FRONT command program)
            execute_process(COMMAND "${programs}/${program}" ${command}
                WORKING_DIRECTORY "${programs}"
                OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
            string(APPEND printed "${line}\n${output}")
        endif()
    endforeach()
    if(printed STREQUAL "" OR NOT printed STREQUAL block)
        message(FATAL_ERROR "The page says:\n${block}\nBut it is:\n${printed}")
    endif()
endfunction()

# As read by a human: without licence, includes in order.
function(read_normalised file result)
    file(READ "${file}" content)
    string(REGEX REPLACE "^(//|#) SPDX[^\n]*\n(//\n)?" "" content "${content}")
    string(REGEX MATCHALL "#include [^\n]*" includes "${content}")
    list(SORT includes)
    string(REGEX REPLACE "#include [^\n]*\n+" "" content "${content}")
    set(${result} "${includes}\n${content}" PARENT_SCOPE)
endfunction()

file(READ "${PAGE}" rest)
string(REGEX MATCHALL "\n```cpp\n" fences "${rest}")
list(LENGTH fences fenceCount)
set(codeCount 0)
set(runCount 0)
while(TRUE)
    string(FIND "${rest}" "<!-- " position)
    if(position EQUAL -1)
        break()
    endif()
    math(EXPR position "${position} + 5")
    string(SUBSTRING "${rest}" ${position} -1 rest)
    string(FIND "${rest}" " -->\n```" position)
    string(SUBSTRING "${rest}" 0 ${position} directive)
    math(EXPR position "${position} + 5")
    string(SUBSTRING "${rest}" ${position} -1 rest)
    string(FIND "${rest}" "\n" position)
    string(SUBSTRING "${rest}" 0 ${position} fence)
    math(EXPR position "${position} + 1")
    string(SUBSTRING "${rest}" ${position} -1 rest)
    string(FIND "${rest}" "\n```" position)
    math(EXPR position "${position} + 1")
    string(SUBSTRING "${rest}" 0 ${position} block)
    string(SUBSTRING "${rest}" ${position} -1 rest)

    if(directive STREQUAL "run")
        build()
        run("${block}")
        math(EXPR runCount "${runCount} + 1")
    elseif(directive MATCHES "^file: ([^,]+), below: (.*)$")
        insert_below("${sources}/${CMAKE_MATCH_1}" "${CMAKE_MATCH_2}" "${block}")
    elseif(directive MATCHES "^file: ([^,]+), includes$")
        insert_includes("${sources}/${CMAKE_MATCH_1}" "${block}")
    elseif(directive MATCHES "^file: ([^,]+)$")
        file(WRITE "${sources}/${CMAKE_MATCH_1}" "${block}")
    else()
        message(FATAL_ERROR "${PAGE} says what nobody understands: ${directive}")
    endif()
    if(fence STREQUAL "```cpp")
        math(EXPR codeCount "${codeCount} + 1")
    endif()
endwhile()

if(NOT codeCount EQUAL fenceCount OR runCount EQUAL 0)
    message(FATAL_ERROR "${PAGE} has ${fenceCount} blocks of C++, of which ${codeCount} belong to a file")
endif()
file(GLOB files RELATIVE "${EXAMPLE}" "${EXAMPLE}/*")
foreach(file ${files})
    read_normalised("${EXAMPLE}/${file}" wanted)
    read_normalised("${sources}/${file}" written)
    if(NOT wanted STREQUAL written)
        message(FATAL_ERROR "Whoever follows ${PAGE} has another ${file} than ${EXAMPLE}:\n${written}")
    endif()
endforeach()
message(STATUS "${PAGE}: ${codeCount} blocks of C++ followed, ${runCount} times built and run")
