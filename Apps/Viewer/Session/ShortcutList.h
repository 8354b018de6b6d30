// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Session/InputBindings.h"

#include <Shortcut/koShortcut.h>

#include <QString>

#include <string>
#include <vector>

namespace quon::viewer {

struct Command;

/** A line in the list of shortcuts. */
struct ShortcutRow {
    koShortcut::Entry entry;                  ///< with code 0 for a command that has no key and thus is not registered
    const Command* command = nullptr;         ///< whose key it is; null: it cannot be changed here
    std::vector<koShortcut::Entry> conflicts; ///< entries that the same press is meant for

    /** The command's text, else the description. */
    QString getName() const;

    /** The key or button as the user reads it, empty for none. */
    QString getKeyText() const;

    /** Returns whether a press of @p key is meant for the row. */
    bool isFiredBy(const KeyBinding& key) const;
};

/**
 * Lists everything that the shortcut registry holds, in order of registration, and behind the last entry of a command
 * those commands that have no key.
 */
std::vector<ShortcutRow> listShortcuts(const InputBindings& bindings);

/** Returns the command that an entry of the registry belongs to, null for none. */
const Command* findCommandOf(const koShortcut::Entry& entry, const InputBindings& bindings);

} // namespace quon::viewer
