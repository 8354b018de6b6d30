// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/Picker.h>
#include <Interaction/QtEventMapper.h>

#include <InteractionTesting/InputScript.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGVector.h>

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointF>
#include <QString>
#include <Qt>

#include <cmath>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace quon::testing {

/**
 * A user's hands without a window: makes real Qt events and hands them to a QtEventMapper, as a viewport does.
 *
 * The mapper tells the contexts of its manager about the pointer and sends the interaction events. Buttons, modifiers
 * and keys are held until they are released, and every event carries what is held; at first that is nothing, and the
 * pointer is at (0, 0). Neither a widget nor an application object is needed.
 *
 * Each operation returns whether the mapper consumed the event, one that sends several whether it consumed any of them.
 * What no hand can do is a mistake of the test and throws std::logic_error: to release what is not held, to press what
 * is held, to repeat a key that is not held.
 *
 * Wheels and gestures are no business of the mapper: send what a viewport makes of them to the manager.
 */
class InputDriver {
public:
    /** @param mapper borrowed, must outlive the driver */
    explicit InputDriver(interaction::QtEventMapper& mapper)
        : m_mapper(mapper)
    {}

    /**
     * Tells a picker where the pointer is, at once and with every movement before the mapper hears of it.
     *
     * For a tool that asks its context's picker for the place of the pointer while the context under test does not keep
     * the two together, as a host's own context would.
     *
     * @param picker borrowed; null: none, as at first
     */
    void setPicker(interaction::Picker* picker)
    {
        m_picker = picker;
        tellPicker();
    }

    /** The place of the pointer, in viewport pixels from the top left. */
    QPointF getPosition() const { return m_position; }

    /** The buttons that are held. */
    Qt::MouseButtons getButtons() const { return m_buttons; }

    /** The modifiers that the next event carries. */
    Qt::KeyboardModifiers getModifiers() const { return m_modifiers; }

    /** Moves the pointer: drags while a button is held, hovers otherwise. */
    bool move(const QPointF& position)
    {
        m_position = position;
        tellPicker();
        const QMouseEvent event = makeMouseEvent(QEvent::MouseMove, Qt::NoButton);
        return m_mapper.mouseMoved(&event, m_buttons != Qt::NoButton);
    }

    /** Moves the pointer without a button; throws std::logic_error while one is held. */
    bool hover(const QPointF& position)
    {
        require(m_buttons == Qt::NoButton, "hover while a button is held");
        return move(position);
    }

    /** Takes the pointer out of the viewport, which ends hovering. */
    bool leave()
    {
        const QEvent event(QEvent::Leave);
        return m_mapper.hoverStopped(&event);
    }

    /** Presses a button where the pointer is. */
    bool press(const Qt::MouseButton button = Qt::LeftButton) { return press(QEvent::MouseButtonPress, button); }

    /** Releases a button where the pointer is. */
    bool release(const Qt::MouseButton button = Qt::LeftButton)
    {
        require(m_buttons.testFlag(button), "release " + InputScript::getName(button) + ", which is not held");
        m_buttons.setFlag(button, false);
        const QMouseEvent event = makeMouseEvent(QEvent::MouseButtonRelease, button);
        return m_mapper.mouseReleased(&event);
    }

    /** Presses and releases a button where the pointer is. */
    bool click(const Qt::MouseButton button = Qt::LeftButton)
    {
        const bool pressConsumed = press(button);
        return release(button) || pressConsumed;
    }

    /** Clicks twice, quickly: the second press is a QEvent::MouseButtonDblClick, for the mapper a press like any other.
     */
    bool doubleClick(const Qt::MouseButton button = Qt::LeftButton)
    {
        const bool clickConsumed = click(button);
        const bool pressConsumed = press(QEvent::MouseButtonDblClick, button);
        return release(button) || pressConsumed || clickConsumed;
    }

    /** Presses a button where the pointer is, moves in two steps of equal length and releases the button there. */
    bool drag(const QPointF& target, const Qt::MouseButton button = Qt::LeftButton)
    {
        const QPointF halfWay = (m_position + target) / 2;
        bool consumed = press(button);
        consumed = move(halfWay) || consumed;
        consumed = move(target) || consumed;
        return release(button) || consumed;
    }

    /**
     * Presses a key and holds it. Shift, Control, Alt and Meta change the modifiers from the next event on.
     *
     * @param key a Qt::Key
     */
    bool pressKey(const int key)
    {
        const bool heldAsModifier = (m_modifiers & InputScript::getModifier(key)) != Qt::NoModifier;
        require(!heldAsModifier && m_keys.insert(key).second,
                "press the key " + InputScript::getKeyName(key) + ", which is held already");
        return sendKeyPress(key, false);
    }

    /** Releases a key. Shift, Control, Alt and Meta change the modifiers from the next event on. */
    bool releaseKey(const int key)
    {
        require(m_keys.erase(key) != 0, "release the key " + InputScript::getKeyName(key) + ", which is not held");
        return sendKeyRelease(key, false);
    }

    /** Sends what a key that is held down repeats: a release and a press that are marked as repetitions. */
    bool repeatKey(const int key)
    {
        require(m_keys.count(key) != 0, "repeat the key " + InputScript::getKeyName(key) + ", which is not held");
        const bool releaseConsumed = sendKeyRelease(key, true);
        return sendKeyPress(key, true) || releaseConsumed;
    }

    /**
     * Presses and releases a key, between presses and releases of the keys of those modifiers that are not held yet.
     *
     * @return whether the press or the release of the key itself was consumed
     */
    bool typeKey(const int key, const Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        std::vector<int> added;
        for (const auto& [modifier, modifierKey] : InputScript::getModifierKeys()) {
            if (modifiers.testFlag(modifier) && !m_modifiers.testFlag(modifier)) {
                added.push_back(modifierKey);
                pressKey(modifierKey);
            }
        }
        const bool pressConsumed = pressKey(key);
        const bool consumed = releaseKey(key) || pressConsumed;
        while (!added.empty()) {
            releaseKey(added.back());
            added.pop_back();
        }
        return consumed;
    }

    /** Sets what is held from the next event on, without a key event: as if the keys were pressed in another window. */
    void setModifiers(const Qt::KeyboardModifiers modifiers) { m_modifiers = modifiers; }

    /** Takes the focus away from the viewport, which ends what is pending. What is held stays held. */
    void loseFocus() { m_mapper.resetEvents(); }

    /**
     * Carries out a script.
     *
     * Commands are parted by semicolons or line ends; words by blanks; nothing depends on upper and lower case.
     *
     * | Command | Operation |
     * |---|---|
     * | `move X Y`, `hover X Y`, `leave` | move(), hover(), leave() |
     * | `press`, `release`, `click`, `doubleclick [BUTTON]` | press(), release(), click(), doubleClick() |
     * | `drag X Y [BUTTON]` | drag() |
     * | `key KEY` | typeKey() |
     * | `keypress KEY`, `keyrelease KEY`, `repeat KEY` | pressKey(), releaseKey(), repeatKey() |
     * | `modifiers MODIFIERS` | setModifiers() |
     * | `losefocus` | loseFocus() |
     *
     * A button is `left` (unless said otherwise), `right`, `middle`, `back` or `forward`; a key is written as Qt writes
     * it, for example `Escape`, `A` or `PgUp`, or is `Shift`, `Ctrl`, `Alt` or `Meta`; behind `key` the modifiers of a
     * chord stand before it, as in `Ctrl+Shift+A`. MODIFIERS are such names joined by `+`, or `none`. The semicolon is
     * no key of a script.
     *
     *     driver.play("move 10 20; press left; move 40 20; release left; key Ctrl+A");
     *
     * @return what each command returned, in order; false for those that return nothing
     * @throws std::invalid_argument for what is no command, before any event is sent; the text names the command and
     *         the word
     */
    std::vector<bool> play(const std::string& script)
    {
        std::vector<bool> consumed;
        for (const InputCommand& command : InputScript::parse(script)) {
            consumed.push_back(carryOut(command));
        }
        return consumed;
    }

private:
    static void require(const bool possible, const std::string& what)
    {
        if (!possible) {
            throw std::logic_error("InputDriver cannot " + what);
        }
    }

    bool press(const QEvent::Type type, const Qt::MouseButton button)
    {
        require(!m_buttons.testFlag(button), "press " + InputScript::getName(button) + ", which is held already");
        m_buttons.setFlag(button);
        const QMouseEvent event = makeMouseEvent(type, button);
        return m_mapper.mousePressed(&event);
    }

    // In the window and on the screen the viewport is somewhere else.
    QMouseEvent makeMouseEvent(const QEvent::Type type, const Qt::MouseButton button) const
    {
        const QPointF inWindow = m_position + QPointF(100, 200);
        return QMouseEvent(type, m_position, inWindow, inWindow + QPointF(1000, 2000), button, m_buttons, m_modifiers);
    }

    void tellPicker() const
    {
        if (m_picker != nullptr) {
            // In whole pixels, as the mapper reports it; not every Qt rounds like that.
            m_picker->setPointer(osg::Pnt2f(static_cast<float>(std::floor(m_position.x() + 0.5)),
                                            static_cast<float>(std::floor(m_position.y() + 0.5))));
        }
    }

    bool sendKeyPress(const int key, const bool repeated)
    {
        const QKeyEvent event(QEvent::KeyPress, key, m_modifiers, QString(), repeated);
        m_modifiers |= InputScript::getModifier(key);
        return m_mapper.keyPressed(&event);
    }

    bool sendKeyRelease(const int key, const bool repeated)
    {
        const QKeyEvent event(QEvent::KeyRelease, key, m_modifiers, QString(), repeated);
        m_modifiers &= ~Qt::KeyboardModifiers(InputScript::getModifier(key));
        return m_mapper.keyReleased(&event);
    }

    bool carryOut(const InputCommand& command)
    {
        using Kind = InputCommand::Kind;
        switch (command.kind) {
        case Kind::Move:
            return move(command.position);
        case Kind::Hover:
            return hover(command.position);
        case Kind::Leave:
            return leave();
        case Kind::Press:
            return press(command.button);
        case Kind::Release:
            return release(command.button);
        case Kind::Click:
            return click(command.button);
        case Kind::DoubleClick:
            return doubleClick(command.button);
        case Kind::Drag:
            return drag(command.position, command.button);
        case Kind::TypeKey:
            return typeKey(command.key, command.modifiers);
        case Kind::PressKey:
            return pressKey(command.key);
        case Kind::ReleaseKey:
            return releaseKey(command.key);
        case Kind::RepeatKey:
            return repeatKey(command.key);
        case Kind::Modifiers:
            setModifiers(command.modifiers);
            return false;
        case Kind::LoseFocus:
            loseFocus();
            return false;
        }
        return false;
    }

    interaction::QtEventMapper& m_mapper;
    interaction::Picker* m_picker = nullptr;
    QPointF m_position;
    Qt::MouseButtons m_buttons = Qt::NoButton;
    Qt::KeyboardModifiers m_modifiers = Qt::NoModifier;
    std::set<int> m_keys;
};

} // namespace quon::testing
