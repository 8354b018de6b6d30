// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace quon::testing {

/**
 * Returns how often the process has called the global operator new so far.
 *
 * Programs that use this function have their operator new replaced by one that counts; all others keep their own.
 */
std::size_t getAllocationCount();

} // namespace quon::testing
