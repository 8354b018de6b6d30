# SPDX-License-Identifier: MIT
# One interface target with the warnings of our own sources; consumers of the libraries never see it.
add_library(koWarnings INTERFACE)
add_library(quon::Warnings ALIAS koWarnings)

target_compile_options(koWarnings INTERFACE
    -Wall
    -Wextra
    -Wpedantic
    -Wshadow
    -Wconversion
    -Wsign-conversion
    -Wold-style-cast
    -Woverloaded-virtual
    -Wcast-align
    -Wformat=2
    -Wunused
    # -Wnull-dereference stays off: gcc 12 finds it in the stream buffers of its own library once it optimises.
    # -Wnon-virtual-dtor stays off: contexts and tools have no virtual destructor because they are never deleted
    # through their interface.
    $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wlogical-op -Wuseless-cast>
    $<$<BOOL:${KOINTERACTION_WARNINGS_AS_ERRORS}>:-Werror>)
