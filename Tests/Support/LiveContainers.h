// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace quon::testing {

/**
 * Returns the number of containers that exist, without the prototypes of the types.
 *
 * Walks all ids given so far, and takes one: a container is made and released to learn which id is the newest.
 */
std::size_t countLiveContainers();

} // namespace quon::testing
