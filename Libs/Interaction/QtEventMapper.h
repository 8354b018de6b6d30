// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionExport.h>

#include <QPoint>
#include <QString>
#include <Qt>

#include <map>
#include <set>
#include <string>

class QEvent;
class QKeyEvent;
class QMouseEvent;

namespace quon::interaction {

class InteractionEvent;
class InteractionManager;

/** One binding: what has to be pressed, and the category of the events that it then stands for. */
struct InputMapping {
    int code;             ///< Qt::Key of a keyboard binding, Qt::MouseButton of a mouse binding
    int modifiers;        ///< Qt::KeyboardModifiers, as the host passed them
    std::string category; ///< first argument of InteractionEvent: a tool, or a tool and a hint joined by a colon
};

/**
 * Translates Qt mouse and key events into interaction events.
 *
 * The host declares bindings of keys and mouse buttons to categories and forwards the input of its viewport. Each
 * matching binding gives one event of its category: "start" on a press, "process" while dragging, "stop" and then
 * "trigger" on the release, "hover" on a move without buttons, "stopHover" when hovering ends. A key press that no
 * binding consumed becomes the category "qt-key:" plus qtKeyEventToString() with the verb "press", and later "release".
 *
 * Of the modifiers of an input event only shift, control and alt count; meta, keypad and group switch are dropped. A
 * binding that asks for any of the others never fires. A mouse binding asks for exactly its modifiers; a keyboard
 * binding without modifiers fires whatever modifiers are held.
 *
 * Every event operation returns true when a context consumed at least one of its events, so that the host can accept
 * the Qt event. All events of an operation are sent, whether or not an earlier one was consumed.
 *
 * @par Ownership
 * The manager is borrowed. Destroying a mapper neither sends what is pending nor takes its bindings out of the shortcut
 * registry; call resetEvents() first where that matters. Copies are independent of each other.
 * @par Calls from inside an event
 * A context may call every operation of the mapper while it handles an event of the mapper. A binding removed from
 * inside gets no further event, except that a press or release whose event is under way is completed; a binding added
 * from inside takes part from the next operation on. After setInteractionManager() the rest of the operation goes to
 * the new manager, or nowhere when it is null; what it would have started counts as started. On a release a category
 * stays active until its "trigger" has returned: resetEvents() called from inside the "stop" or "trigger" of a release
 * sends both again, and a "start" sent from inside ends with the release under way. A context must not destroy the
 * mapper or assign to it.
 * @par Exceptions
 * The memory for an event and for what is pending after it is there before the event is sent: what started is ended.
 * After std::bad_alloc the operation may be repeated, which sends again what was sent; a repeated release and reset go
 * on where they stopped. A binding that could not be registered is there without a registration: remove and add it.
 * What a context throws passes through; its "start" or "press" is not pending then, its "stop" and "trigger" on a
 * release are. QString ends the process where it gets no memory.
 * @par Threading
 * User-interface thread only for all mappers together, no locks.
 */
class INTERACTION_EXPORT QtEventMapper {
public:
    /** Creates a mapper without manager and without bindings, the last pointer position at (0, 0). */
    QtEventMapper();

    /**
     * Sets where all events go. Bindings and pending events are kept.
     *
     * @param manager borrowed; null switches the mapper off: every event operation does nothing and returns false. Call
     *        resetEvents() before, as long as the manager is bound that heard the starts.
     */
    void setInteractionManager(InteractionManager* manager);

    /**
     * Adds a keyboard binding behind those of the same key. Equal bindings are kept side by side and all fire.
     *
     * Calls koShortcut::addKey() under the translated group "Interaction", unless @p description is empty. No argument
     * is validated.
     *
     * @param key a Qt::Key
     * @param modifiers Qt::KeyboardModifiers to hold; 0 fires whatever is held
     * @param category of the events to send, for example `tool` or `select:toggle`; may be empty
     * @param description text for the shortcut registry, in the user's language
     */
    void addKeyboardMapping(int key, int modifiers, const std::string& category, const QString& description);

    /**
     * Removes all keyboard bindings with exactly this key, modifiers and category; an unknown binding is ignored.
     *
     * Calls koShortcut::subKey() before each removal, also for a binding that was added without a description and thus
     * never registered. A category that is active stays so, and a later release does not find it through this binding.
     */
    void removeKeyboardMapping(int key, int modifiers, const std::string& category);

    /** Like the overload with a category, for bindings of every category. */
    void removeKeyboardMapping(int key, int modifiers);

    /**
     * Adds a mouse binding behind those of the same button. Equal bindings are kept side by side and all fire.
     *
     * Calls koShortcut::addMouseButton() under the translated group "Interaction", unless @p description is empty. No
     * argument is validated.
     *
     * @param button one button, or the value of several: such a binding only gets "process" while exactly these are
     * held, and "hover" and "stopHover"
     * @param modifiers Qt::KeyboardModifiers to hold, no more and no less
     * @param category of the events to send, for example `tool` or `select:toggle`; may be empty
     * @param description text for the shortcut registry, in the user's language
     */
    void addMouseMapping(Qt::MouseButton button, int modifiers, const std::string& category,
                         const QString& description);

    /** Like removeKeyboardMapping(), with koShortcut::subMouseButton(). */
    void removeMouseMapping(Qt::MouseButton button, int modifiers, const std::string& category);

    /** Like the overload with a category, for bindings of every category. */
    void removeMouseMapping(Qt::MouseButton button, int modifiers);

    /**
     * Reports the pointer, then sends "start" for each binding of the button with exactly the modifiers held.
     *
     * The pointer is reported with InteractionManager::pointerMoved(), in whole pixels, halves rounded towards positive
     * infinity, and only when it differs from the last one reported (at first (0, 0)). The categories become active
     * even when nobody consumed their "start".
     *
     * @param event must not be null (not checked)
     * @return true when a "start" was consumed
     */
    bool mousePressed(const QMouseEvent* event);

    /**
     * Reports the pointer like mousePressed(), then sends "stop" and "trigger" for each active category of the button.
     *
     * The modifiers do not matter. A category that several bindings of the button share ends once.
     *
     * @param event must not be null (not checked)
     * @return true when a "stop" or "trigger" was consumed
     */
    bool mouseReleased(const QMouseEvent* event);

    /**
     * Reports the pointer like mousePressed(), then sends "process" or "hover".
     *
     * Dragging sends "process" for each binding whose button is the whole set of held buttons, with exactly the
     * modifiers held, active or not: with two buttons held only a binding to the value of both is found, and a change
     * of modifiers ends the "process" of a binding, though not its "stop". Hovering sends "hover" for each binding of
     * any button with exactly the modifiers held, by ascending button and in order of addition.
     *
     * @param event must not be null (not checked)
     * @param dragging whether buttons are held, for example `event->buttons() != Qt::NoButton`
     * @return true when an event was consumed
     */
    bool mouseMoved(const QMouseEvent* event, bool dragging);

    /**
     * Sends "stopHover" for every mouse binding, whatever its modifiers, by ascending button and in order of addition.
     * The pointer is not reported.
     *
     * @param event not read, may be null; QEvent::Leave is the natural one
     * @return true when a "stopHover" was consumed
     */
    bool hoverStopped(const QEvent* event);

    /**
     * Sends "start" for each binding of the key whose modifiers are 0 or exactly those held.
     *
     * The flag of a pressed modifier key itself does not count as held. The categories become active even when nobody
     * consumed their "start". When nobody consumed a "start", "press" follows with the category "qt-key:" plus
     * qtKeyEventToString(); it is pending until the release of the key.
     *
     * In presenter mode a key passes only if it is Qt::Key_unknown with shift, control or alt held; every other press
     * is answered with false.
     *
     * @param event must not be null (not checked)
     * @return true when an event was consumed, and for every auto-repeat, of which nothing is sent
     */
    bool keyPressed(const QKeyEvent* event);

    /**
     * Sends "stop" and "trigger" for each active category of the key, then "release" for each of its pending presses,
     * oldest first.
     *
     * A key from 1 to 31, a control character, is taken for the key 64 above it (presses are not); the modifiers do not
     * matter, except in presenter mode, which filters as for keyPressed().
     *
     * @param event must not be null (not checked)
     * @return true when an event was consumed, and for every auto-repeat, of which nothing is sent
     */
    bool keyReleased(const QKeyEvent* event);

    /**
     * Ends everything pending, for example when the viewport loses the focus.
     *
     * Sends "stop" and "trigger" for each category that a key made active, then for each that a mouse button made
     * active, both in byte order, then "release" for each pending key press, by key and oldest first. A reset from
     * inside one of these events ends nothing twice. What is started or pressed from inside is ended as well when its
     * turn is still to come, and forgotten when its place among those that are being ended has passed. A category that
     * becomes active after all of its kind were ended, by a key while those of the buttons are ended or by either
     * during a "release", stays active: a later release ends it.
     *
     * Must only be called while a manager is bound or nothing is pending.
     */
    void resetEvents();

    /**
     * Returns the text form of a key: "ctrl+", "alt+" and "shift+", in this order and as held, then the decimal key
     * code.
     *
     * @param key a Qt::Key, any number is accepted
     * @param modifiers Qt::KeyboardModifiers; other flags are ignored
     * @return for example "ctrl+shift+65"
     */
    static std::string qtKeyEventToString(int key, int modifiers);

private:
    using Bindings = std::multimap<int, InputMapping>;
    using Categories = std::set<std::string>;
    using PressedKeys = std::multimap<int, std::string>;

    void updatePointer(const QPoint& position);
    bool passesPresenterMode(int key, int modifiers) const;

    bool send(const InteractionEvent& event) const;
    bool start(const std::string& category, Categories& active);
    bool endBindings(Bindings& bindings, int code, Categories& active);
    void endAll(Categories& active);
    bool releasePressedKey(int key);

    InteractionManager* m_interactionManager;
    std::multimap<int, InputMapping> m_keyboardMappings;
    std::multimap<int, InputMapping> m_mouseMappings;
    QPoint m_lastPointerPosition;
    std::set<std::string> m_activeKeyEvents;
    std::set<std::string> m_activeMouseEvents;
    PressedKeys m_pressedQtKeys;
};

} // namespace quon::interaction
