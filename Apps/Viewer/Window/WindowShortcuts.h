// SPDX-License-Identifier: MIT
#pragma once

#include <Shortcut/koShortcut.h>

#include <QString>

#include <vector>

class QAction;

namespace quon::viewer {

/**
 * Shortcuts of a window in the shortcut registry: those that Qt handles because they are no interaction.
 *
 * Takes out again what it added, also after the language and with it the heading changed.
 */
class WindowShortcuts {
public:
    WindowShortcuts() = default;

    /** Takes out what was added. */
    ~WindowShortcuts();

    WindowShortcuts(const WindowShortcuts&) = delete;
    WindowShortcuts& operator=(const WindowShortcuts&) = delete;

    /** Adds the shortcut of @p action under a heading; an action without one, or with several keys, is ignored. */
    void add(const QString& group, const QAction& action);

    /** Takes out what was added. */
    void clear();

private:
    std::vector<koShortcut::Entry> m_entries;
};

} // namespace quon::viewer
