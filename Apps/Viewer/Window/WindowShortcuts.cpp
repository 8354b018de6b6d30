// SPDX-License-Identifier: MIT
#include "Viewer/Window/WindowShortcuts.h"

#include "Viewer/Session/QtVersions.h"

#include <QAction>
#include <QKeySequence>
#include <Qt>

namespace quon::viewer {

WindowShortcuts::~WindowShortcuts()
{
    clear();
}

void WindowShortcuts::add(const QString& group, const QAction& action)
{
    const QKeySequence shortcut = action.shortcut();
    if (shortcut.count() != 1) {
        return;
    }
    constexpr int modifiers = static_cast<int>(Qt::KeyboardModifierMask);
    // The icon's text is that of the menu without mnemonic and dots.
    const int key = QtVersions::getFirstKey(shortcut);
    m_entries.push_back({group, koShortcut::Key, key & ~modifiers, key & modifiers, action.iconText()});
    const koShortcut::Entry& entry = m_entries.back();
    koShortcut::addKey(entry.group, entry.code, entry.modifiers, entry.description);
}

void WindowShortcuts::clear()
{
    for (const koShortcut::Entry& entry : m_entries) {
        koShortcut::subKey(entry.group, entry.code, entry.modifiers);
    }
    m_entries.clear();
}

} // namespace quon::viewer
