// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Session/QtVersions.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPoint>
#include <QWheelEvent>
#include <QWidget>

namespace quon::testing {

/** A user at a widget: sends it real Qt events and tells for each whether it was accepted. */
class UserInput {
public:
    explicit UserInput(QWidget& widget)
        : m_widget(widget)
    {}

    bool press(const QPoint& position, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        m_buttons |= button;
        return sendMouse(QEvent::MouseButtonPress, position, button, modifiers);
    }

    bool doubleClick(const QPoint& position, Qt::MouseButton button = Qt::LeftButton)
    {
        m_buttons |= button;
        return sendMouse(QEvent::MouseButtonDblClick, position, button, Qt::NoModifier);
    }

    bool move(const QPoint& position, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        return sendMouse(QEvent::MouseMove, position, Qt::NoButton, modifiers);
    }

    bool release(const QPoint& position, Qt::MouseButton button = Qt::LeftButton,
                 Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        m_buttons &= ~Qt::MouseButtons(button);
        return sendMouse(QEvent::MouseButtonRelease, position, button, modifiers);
    }

    void click(const QPoint& position, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
               Qt::MouseButton button = Qt::LeftButton)
    {
        move(position, modifiers);
        press(position, button, modifiers);
        release(position, button, modifiers);
    }

    void drag(const QPoint& from, const QPoint& to, Qt::MouseButton button = Qt::LeftButton,
              Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        move(from, modifiers);
        press(from, button, modifiers);
        move((from + to) / 2, modifiers);
        move(to, modifiers);
        release(to, button, modifiers);
    }

    /** @param delta in eighths of a degree, 120 is one step */
    bool turnWheel(const QPoint& position, int delta, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        return scroll(position, QPoint(), QPoint(0, delta), Qt::NoScrollPhase, modifiers);
    }

    /**
     * A wheel event with everything that devices may say.
     *
     * @param pixels moved by fingers, zero where the device does not tell
     * @param angle in eighths of a degree
     * @param phase of the gesture on a touchpad, none for a wheel
     */
    bool scroll(const QPoint& position, const QPoint& pixels, const QPoint& angle, Qt::ScrollPhase phase,
                Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWheelEvent event(position, m_widget.mapToGlobal(position), pixels, angle, m_buttons, modifiers, phase, false);
        return send(event);
    }

    /** Two fingers go apart on a touchpad, or together. @param growth of their distance, as a share of it */
    bool pinch(const QPoint& position, double growth)
    {
        QNativeGestureEvent event = viewer::QtVersions::makeGesture(Qt::ZoomNativeGesture, position, position,
                                                                    m_widget.mapToGlobal(position), growth);
        return send(event);
    }

    bool pressKey(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier, bool repeated = false)
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, QString(), repeated);
        return send(event);
    }

    bool releaseKey(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QKeyEvent event(QEvent::KeyRelease, key, modifiers);
        return send(event);
    }

    void type(int key)
    {
        pressKey(key);
        releaseKey(key);
    }

    bool leave()
    {
        QEvent event(QEvent::Leave);
        return send(event);
    }

    void loseFocus()
    {
        QFocusEvent event(QEvent::FocusOut);
        send(event);
    }

private:
    bool sendMouse(QEvent::Type type, const QPoint& position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
    {
        QMouseEvent event(type, position, m_widget.mapToGlobal(position), button, m_buttons, modifiers);
        return send(event);
    }

    bool send(QEvent& event)
    {
        QApplication::sendEvent(&m_widget, &event);
        return event.isAccepted();
    }

    QWidget& m_widget;
    Qt::MouseButtons m_buttons = Qt::NoButton;
};

} // namespace quon::testing
