// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <cstdlib>

namespace quon::fuzzing {

/** Ends the process with a word about what is wrong unless @p holds: that is how a fuzzer reports a finding. */
inline void require(const bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "\nThis does not hold: %s\n", what);
        std::abort();
    }
}

} // namespace quon::fuzzing
