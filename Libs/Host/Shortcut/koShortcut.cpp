// SPDX-License-Identifier: MIT
#include <Shortcut/koShortcut.h>

#include <Utilities/ListenerList.h>

#include <QCoreApplication>
#include <QKeySequence>
#include <Qt>

#include <algorithm>
#include <iterator>

namespace {

struct Registry {
    std::vector<koShortcut::Entry> entries;
    quon::ListenerList<koShortcut::Listener> listeners;
};

// Never destroyed: objects with static storage may take their shortcuts out at the end of the process.
Registry& registry()
{
    static Registry* const instance = new Registry;
    return *instance;
}

void add(const koShortcut::Entry& entry)
{
    registry().entries.push_back(entry);
    registry().listeners.callWhile([&](koShortcut::Listener& listener) {
        listener.entryAdded(entry);
        return true;
    });
}

void removeAt(std::vector<koShortcut::Entry>::iterator position)
{
    const koShortcut::Entry entry = *position;
    registry().entries.erase(position);
    registry().listeners.callWhile([&](koShortcut::Listener& listener) {
        listener.entryRemoved(entry);
        return true;
    });
}

void subtract(koShortcut::Kind kind, const QString& group, int code, int modifiers)
{
    std::vector<koShortcut::Entry>& entries = registry().entries;
    const auto found = std::find_if(entries.rbegin(), entries.rend(), [&](const koShortcut::Entry& entry) {
        return entry.kind == kind && entry.code == code && entry.modifiers == modifiers && entry.group == group;
    });
    if (found != entries.rend()) {
        removeAt(std::prev(found.base()));
    }
}

QString buttonName(int button)
{
    switch (button) {
    case Qt::LeftButton:
        return QCoreApplication::translate("koShortcut", "Left button");
    case Qt::RightButton:
        return QCoreApplication::translate("koShortcut", "Right button");
    case Qt::MiddleButton:
        return QCoreApplication::translate("koShortcut", "Middle button");
    case Qt::BackButton:
        return QCoreApplication::translate("koShortcut", "Back button");
    case Qt::ForwardButton:
        return QCoreApplication::translate("koShortcut", "Forward button");
    case Qt::TaskButton:
        return QCoreApplication::translate("koShortcut", "Task button");
    default:
        // Anything may be registered, also several buttons at once; the flags tell all of them apart.
        return QCoreApplication::translate("koShortcut", "Button 0x%1")
            .arg(static_cast<unsigned int>(button), 0, 16, QLatin1Char('0'));
    }
}

} // namespace

void koShortcut::Listener::entryAdded(const Entry&) {}

void koShortcut::Listener::entryRemoved(const Entry&) {}

void koShortcut::addKey(const QString& group, int key, int modifiers, const QString& description)
{
    add(Entry{group, Key, key, modifiers, description});
}

void koShortcut::subKey(const QString& group, int key, int modifiers)
{
    subtract(Key, group, key, modifiers);
}

void koShortcut::addMouseButton(const QString& group, int button, int modifiers, const QString& description)
{
    add(Entry{group, MouseButton, button, modifiers, description});
}

void koShortcut::subMouseButton(const QString& group, int button, int modifiers)
{
    subtract(MouseButton, group, button, modifiers);
}

const std::vector<koShortcut::Entry>& koShortcut::getEntries()
{
    return registry().entries;
}

void koShortcut::clear()
{
    std::vector<Entry>& entries = registry().entries;
    while (!entries.empty()) {
        removeAt(std::prev(entries.end()));
    }
}

void koShortcut::addListener(Listener* listener)
{
    registry().listeners.add(listener);
}

void koShortcut::removeListener(Listener* listener)
{
    registry().listeners.remove(listener);
}

QString koShortcut::toText(const Entry& entry)
{
    if (entry.kind == Key) {
        return QKeySequence(entry.modifiers | entry.code).toString(QKeySequence::NativeText);
    }
    // Without a key the text ends in whatever the platform puts between the modifiers and the key.
    const QString modifiers = QKeySequence(entry.modifiers).toString(QKeySequence::NativeText);
    return modifiers + buttonName(entry.code);
}
