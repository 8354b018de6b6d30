# SPDX-License-Identifier: MIT
#
# cmake -DABIDW=... -DABIDIFF=... -DLIBRARY=... -DHEADERS=... -DDUMP=... -DFOLDER=... [-DUPDATE=ON] -P CompareAbi.cmake
set(now "${FOLDER}/libkoInteraction.abi")
# Without paths, so that the dump is the same wherever it is made.
execute_process(COMMAND "${ABIDW}" --headers-dir "${HEADERS}" --exported-interfaces-only --drop-undefined-syms
        --no-corpus-path --no-comp-dir-path --no-show-locs --no-elf-needed --type-id-style hash
        --out-file "${now}" "${LIBRARY}"
    COMMAND_ERROR_IS_FATAL ANY)
if(UPDATE)
    file(COPY_FILE "${now}" "${DUMP}")
    return()
endif()
execute_process(COMMAND "${ABIDIFF}" --no-show-locs "${DUMP}" "${now}" RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR
        "The binary interface of libkoInteraction.so changed, see above. If that is meant, follow Docs/Compatibility.md.")
endif()
