// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace quon::testing {

/**
 * Returns the number of containers that exist, without the prototypes of the types.
 *
 * Walks all ids given so far, and takes one: a container is made and released to learn which id is the newest. The
 * list of changes is writable afterwards, as it always is in tests, and has nothing of this.
 */
std::size_t countLiveContainers();

} // namespace quon::testing
