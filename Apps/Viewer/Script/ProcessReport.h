// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace quon::viewer {

/** What the process holds at a moment: for scripts that run long enough to notice when something is never given back.
 */
struct ProcessReport {
    std::size_t containers = 0; ///< of the scene graph, alive, prototypes of types left out
    std::size_t resident = 0;   ///< bytes of memory that the process has; 0 where the system does not tell
    std::size_t allocated = 0;  ///< bytes of the heap that are in use; 0 where nobody knows
    std::size_t files = 0;      ///< that are open, pipes and devices included; 0 where the system does not tell

    /**
     * Counts now.
     *
     * What is free in the heap goes back to the system first, so that resident memory follows what is in use. Asks for
     * all ids of containers that were ever given, see ContainerCount.
     */
    static ProcessReport take();

    /** Writes all of it in one line: each name with its number behind it. */
    std::string write() const;
};

} // namespace quon::viewer
