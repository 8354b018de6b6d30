// SPDX-License-Identifier: MIT
#include "Viewer/Window/KeyField.h"

#include <QKeyEvent>
#include <QKeySequence>

namespace quon::viewer {

KeyField::KeyField(QWidget* parent)
    : QLineEdit(parent)
{
    setReadOnly(true);
    setAlignment(Qt::AlignCenter);
    // Dead keys and the like would come as text and never as keys.
    setAttribute(Qt::WA_InputMethodEnabled, false);
}

void KeyField::setKey(const KeyBinding& key)
{
    m_key = key;
    showKey();
}

bool KeyField::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        // Before the shortcuts of the window, which would take their keys away.
        event->accept();
        return true;
    case QEvent::KeyPress:
        // Here and not in keyPressEvent(): the tabulator does not get there.
        takeKey(*static_cast<QKeyEvent*>(event));
        event->accept();
        return true;
    case QEvent::KeyRelease:
        showHeld(static_cast<QKeyEvent*>(event)->modifiers());
        event->accept();
        return true;
    default:
        return QLineEdit::event(event);
    }
}

void KeyField::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    deselect();
}

void KeyField::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    showKey();
}

void KeyField::contextMenuEvent(QContextMenuEvent*) {}

void KeyField::takeKey(const QKeyEvent& event)
{
    if (event.isAutoRepeat()) {
        return;
    }
    const KeyBinding key = KeyBinding::fromEvent(event);
    if (key.isNone()) {
        showHeld(event.modifiers());
        return;
    }
    setKey(key);
    emit keyEntered(key);
    if (m_nextFocus != nullptr) {
        m_nextFocus->setFocus(Qt::OtherFocusReason);
    }
}

void KeyField::showHeld(const Qt::KeyboardModifiers modifiers)
{
    const int held = static_cast<int>(modifiers) & KeyBinding::AllModifiers;
    if (held == 0) {
        showKey();
    } else {
        // Ends in whatever the platform puts between the modifiers and the key.
        setText(QKeySequence(held).toString(QKeySequence::NativeText));
    }
}

void KeyField::showKey()
{
    setText(m_key.toText());
}

} // namespace quon::viewer
