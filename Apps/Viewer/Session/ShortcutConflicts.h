// SPDX-License-Identifier: MIT
#pragma once

#include <Shortcut/koShortcut.h>

#include <cstddef>
#include <vector>

namespace quon::viewer {

/**
 * Returns whether one press of a key or button is meant for both entries of the shortcut registry.
 *
 * Two keys of an event mapper conflict when their modifiers are equal or one of them has none: such a binding fires
 * whatever modifiers are held. A key of a window (any other group than InputBindings::getGroup()) fires with exactly
 * its modifiers and is not passed on, one that works without a binding gets only what no binding took, and buttons need
 * exactly their modifiers: of those only equal ones conflict.
 */
bool areConflicting(const koShortcut::Entry& first, const koShortcut::Entry& second);

/** Returns the entries of the registry that conflict with its entry at @p index, in order of registration. */
std::vector<koShortcut::Entry> findConflicts(std::size_t index);

} // namespace quon::viewer
