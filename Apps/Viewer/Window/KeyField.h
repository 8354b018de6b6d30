// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Session/InputBindings.h"

#include <QLineEdit>

class QKeyEvent;

namespace quon::viewer {

/**
 * A field that takes the next key in place of text: Escape, the tabulator and function keys as well, with whatever
 * modifiers are held.
 *
 * Modifiers alone are shown while they are held and are no key. After a key the focus goes to the focus proxy's
 * successor that setNextFocus() names: no key would leave the field otherwise.
 */
class KeyField : public QLineEdit {
    Q_OBJECT

public:
    explicit KeyField(QWidget* parent = nullptr);

    /** Shows @p key as the current one; none shows the placeholder. */
    void setKey(const KeyBinding& key);
    const KeyBinding& getKey() const { return m_key; }

    /** @param widget gets the focus after a key; borrowed, null for none */
    void setNextFocus(QWidget* widget) { m_nextFocus = widget; }

signals:
    /** The user pressed a key that an event mapper can have. */
    void keyEntered(const quon::viewer::KeyBinding& key);

protected:
    bool event(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void takeKey(const QKeyEvent& event);
    void showHeld(Qt::KeyboardModifiers modifiers);
    void showKey();

    KeyBinding m_key;
    QWidget* m_nextFocus = nullptr;
};

} // namespace quon::viewer
