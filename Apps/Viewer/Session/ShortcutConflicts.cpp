// SPDX-License-Identifier: MIT
#include "Viewer/Session/ShortcutConflicts.h"

#include "Viewer/Session/InputBindings.h"

namespace quon::viewer {

bool areConflicting(const koShortcut::Entry& first, const koShortcut::Entry& second)
{
    if (first.kind != second.kind || first.code != second.code) {
        return false;
    }
    if (first.modifiers == second.modifiers) {
        return true;
    }
    const QString mapperGroup = InputBindings::getGroup();
    return first.kind == koShortcut::Key && first.group == mapperGroup && second.group == mapperGroup &&
           (first.modifiers == 0 || second.modifiers == 0);
}

std::vector<koShortcut::Entry> findConflicts(const std::size_t index)
{
    const std::vector<koShortcut::Entry>& entries = koShortcut::getEntries();
    std::vector<koShortcut::Entry> conflicts;
    for (std::size_t other = 0; other < entries.size() && index < entries.size(); ++other) {
        if (other != index && areConflicting(entries[index], entries[other])) {
            conflicts.push_back(entries[other]);
        }
    }
    return conflicts;
}

} // namespace quon::viewer
