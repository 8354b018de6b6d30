# SPDX-License-Identifier: MIT
# Sanitizers and coverage apply to the whole build, not to single targets: a half-instrumented process reports nonsense.
if(KOINTERACTION_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

if(KOINTERACTION_SANITIZE_THREADS)
    if(KOINTERACTION_SANITIZE)
        message(FATAL_ERROR "KOINTERACTION_SANITIZE_THREADS and KOINTERACTION_SANITIZE exclude each other")
    endif()
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
endif()

# Containers have other members then: nothing that was built without it may see them.
if(KOINTERACTION_DEBUG_CONTAINERS)
    add_compile_definitions(_GLIBCXX_DEBUG)
    if(KOINTERACTION_BUILD_TESTS)
        # From its sources, which Debian's libgtest-dev brings along: the library there knows only ordinary containers.
        add_subdirectory(/usr/src/googletest "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
    endif()
endif()

# What the fuzzer steers by; its main function is linked into the fuzzers alone.
if(KOINTERACTION_BUILD_FUZZERS)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(KOINTERACTION_COVERAGE)
    add_compile_options(--coverage -fprofile-abs-path)
    add_link_options(--coverage)
endif()
