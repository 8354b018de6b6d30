// SPDX-License-Identifier: MIT
#include "Viewer/Session/ShortcutList.h"

#include "Viewer/Session/Commands.h"
#include "Viewer/Session/ShortcutConflicts.h"

#include <algorithm>

namespace quon::viewer {

QString ShortcutRow::getName() const
{
    return command == nullptr ? entry.description : command->getText();
}

QString ShortcutRow::getKeyText() const
{
    return entry.code == 0 ? QString() : koShortcut::toText(entry);
}

bool ShortcutRow::isFiredBy(const KeyBinding& key) const
{
    if (entry.kind != koShortcut::Key || entry.code != key.key || key.isNone()) {
        return false;
    }
    return entry.modifiers == key.modifiers || (entry.modifiers == 0 && entry.group == InputBindings::getGroup());
}

std::vector<ShortcutRow> listShortcuts(const InputBindings& bindings)
{
    const std::vector<koShortcut::Entry>& entries = koShortcut::getEntries();
    std::vector<ShortcutRow> rows;
    std::size_t behindCommands = 0;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        rows.push_back({entries[i], findCommandOf(entries[i], bindings), findConflicts(i)});
        if (rows.back().command != nullptr) {
            behindCommands = rows.size();
        }
    }
    for (const Command& command : Command::getAll()) {
        if (bindings.getKey(command.name).isNone()) {
            const koShortcut::Entry entry{InputBindings::getGroup(), koShortcut::Key, 0, 0, command.getDescription()};
            rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(behindCommands), {entry, &command, {}});
            ++behindCommands;
        }
    }
    return rows;
}

const Command* findCommandOf(const koShortcut::Entry& entry, const InputBindings& bindings)
{
    if (entry.kind != koShortcut::Key || entry.group != InputBindings::getGroup()) {
        return nullptr;
    }
    const std::vector<Command>& all = Command::getAll();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Command& command) {
        return bindings.getKey(command.name) == KeyBinding{entry.code, entry.modifiers} &&
               command.getDescription() == entry.description;
    });
    return found == all.end() ? nullptr : &*found;
}

} // namespace quon::viewer
