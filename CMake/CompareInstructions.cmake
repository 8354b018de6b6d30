# SPDX-License-Identifier: MIT
#
# cmake -DVALGRIND=... -DPROGRAM=... -DCOUNTS=... -DFOLDER=... [-DUPDATE=ON] -P CompareInstructions.cmake
# cmake -DVALGRIND=... -DPROGRAM=... -DFOLDER=... -DTABLE=ON -P CompareInstructions.cmake
#
# TABLE prints what a node takes among a thousand up to a million, and compares nothing with what is kept.
cmake_minimum_required(VERSION 3.25)

# Per mille that a count may be off.
set(tolerance 30)
# The first number of nodes is the measure of the others. Per mille that a node may take of what it takes among those: a
# search tree of a thousand is 10 levels deep, one of 32,000 is 15, one of a million 20. A walk over all others for each
# node would show as a multiple.
set(sizes 1000 32000)
set(mostGrowth 1500)
if(TABLE)
    set(sizes 1000 10000 100000 1000000)
    set(mostGrowth 2000)
endif()

set(output "${FOLDER}/koCountedWork.callgrind")
file(REMOVE "${output}")
# The same machine code everywhere: the C library picks its copying loops by the processor, and looks up functions when
# they are called for the first time.
execute_process(
    COMMAND "${CMAKE_COMMAND}" -E env LD_BIND_NOW=1
        "GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX512F,-AVX2,-AVX,-AVX_Fast_Unaligned_Load,-ERMS,-FSRM,-SSSE3,-SSE4_1,-SSE4_2"
        "${VALGRIND}" --tool=callgrind --instr-atstart=no --combine-dumps=yes "--callgrind-out-file=${output}"
        "--log-file=${FOLDER}/koCountedWork.log" "${PROGRAM}" ${sizes}
    RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "koCountedWork ended with ${result}; see ${FOLDER}/koCountedWork.log")
endif()

# Two lines for each piece of work: its name, and what it took.
file(STRINGS "${output}" lines REGEX "^(desc: Trigger: Client Request: |totals: )")
set(name "")
set(names "")
foreach(line IN LISTS lines)
    if(line MATCHES "^desc: Trigger: Client Request: (.+)$")
        set(name "${CMAKE_MATCH_1}")
    elseif(line MATCHES "^totals: ([0-9]+)" AND NOT name STREQUAL "")
        list(APPEND names "${name}")
        set("now_${name}" "${CMAKE_MATCH_1}")
        set(name "")
    endif()
endforeach()
if(NOT names)
    message(FATAL_ERROR "valgrind counted nothing; see ${FOLDER}/koCountedWork.log")
endif()

list(POP_FRONT sizes fewest)
set(faults "")
foreach(name IN LISTS names)
    if(NOT name MATCHES "^(.*)/${fewest}$")
        continue()
    endif()
    set(work "${CMAKE_MATCH_1}")
    math(EXPR ofFewest "${now_${name}} / ${fewest}")
    set(row "${work}: ${ofFewest}")
    foreach(size IN LISTS sizes)
        set(count "${now_${work}/${size}}")
        math(EXPR ofNode "${count} / ${size}")
        math(EXPR growth "${count} * ${fewest} * 1000 / (${now_${name}} * ${size})")
        # A handful for each node is no walk over the others: clearing takes none at all while all elements can be kept.
        if(growth GREATER mostGrowth AND ofNode GREATER 50)
            list(APPEND faults "${work}: ${ofNode} for each of ${size} nodes, ${ofFewest} for each of ${fewest}")
        endif()
        string(APPEND row " ${ofNode}")
    endforeach()
    if(TABLE)
        message("${row}")
    endif()
endforeach()

if(UPDATE AND NOT faults)
    set(text "# Instructions of koCountedWork. Written by koInteraction_update_instructions.\n")
    foreach(name IN LISTS names)
        string(APPEND text "${name} ${now_${name}}\n")
    endforeach()
    file(WRITE "${COUNTS}" "${text}")
    return()
endif()

set(kept "")
if(EXISTS "${COUNTS}" AND NOT UPDATE AND NOT TABLE)
    file(STRINGS "${COUNTS}" kept REGEX "^[^#]")
endif()
foreach(line IN LISTS kept)
    string(REGEX MATCH "^([^ ]+) ([0-9]+)$" match "${line}")
    set(name "${CMAKE_MATCH_1}")
    set("before_${name}" "${CMAKE_MATCH_2}")
    if(NOT DEFINED "now_${name}")
        list(APPEND faults "${name}: no longer counted")
        continue()
    endif()
    math(EXPR difference "(${now_${name}} - ${CMAKE_MATCH_2}) * 1000 / ${CMAKE_MATCH_2}")
    if(difference GREATER tolerance OR difference LESS -${tolerance})
        list(APPEND faults "${name}: ${now_${name}}, was ${CMAKE_MATCH_2}")
    endif()
endforeach()
if(NOT UPDATE AND NOT TABLE)
    foreach(name IN LISTS names)
        if(NOT DEFINED "before_${name}")
            list(APPEND faults "${name}: ${now_${name}}, not counted before")
        endif()
    endforeach()
endif()

if(faults)
    list(JOIN faults "\n  " faults)
    message(FATAL_ERROR "Instructions that are not as they were:\n  ${faults}\n"
        "Where that is meant, update them with the target koInteraction_update_instructions.")
endif()
