// SPDX-License-Identifier: MIT
#include <Interaction/QtEventMapper.h>

#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>

#include <Shortcut/koShortcut.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGVector.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include "SpareNodes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace quon::interaction {

namespace {

constexpr int shiftModifier = static_cast<int>(Qt::ShiftModifier);
constexpr int controlModifier = static_cast<int>(Qt::ControlModifier);
constexpr int altModifier = static_cast<int>(Qt::AltModifier);

int relevantModifiers(Qt::KeyboardModifiers modifiers)
{
    return static_cast<int>(modifiers) & (shiftModifier | controlModifier | altModifier);
}

// The flag that a modifier key itself produces.
int ownModifier(int key)
{
    switch (key) {
    case Qt::Key_Shift:
        return shiftModifier;
    case Qt::Key_Control:
        return controlModifier;
    case Qt::Key_Alt:
        return altModifier;
    default:
        return 0;
    }
}

// Halves go towards positive infinity, whatever Qt does: Qt 6 rounds them away from zero.
QPoint pixelOf(const QMouseEvent& event)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return event.pos();
#else
    const QPointF position = event.position();
    return QPoint(static_cast<int>(std::floor(position.x() + 0.5)), static_cast<int>(std::floor(position.y() + 0.5)));
#endif
}

// With Control held some platforms report the control character instead of the key.
int keyOfControlCharacter(int key)
{
    return key >= 1 && key <= 31 ? key + 64 : key;
}

// Asked for at every call: the language may change while the host runs.
QString groupName()
{
    return QCoreApplication::translate("QtEventMapper", "Interaction");
}

/**
 * A walk over the bindings of one code, or over all, during which anybody may add and remove bindings.
 *
 * A context that handles an event may rebind its tool, and a listener of the shortcut registry may do so when it hears
 * of a removal. Every addition and removal therefore goes through this class: the walks under way pass over what was
 * added, and are moved off what is removed.
 */
class BindingWalk {
public:
    using Bindings = std::multimap<int, InputMapping>;

    explicit BindingWalk(Bindings& bindings, std::optional<int> code = std::nullopt)
        : m_bindings(bindings)
        , m_code(code)
        , m_next(code ? bindings.lower_bound(*code) : bindings.begin())
        , m_outer(s_innermost)
    {
        s_innermost = this;
    }

    BindingWalk(const BindingWalk&) = delete;
    BindingWalk& operator=(const BindingWalk&) = delete;

    ~BindingWalk() { s_innermost = m_outer; }

    /** Files @p binding behind those of the same code. */
    static void addBinding(Bindings& bindings, const InputMapping& binding)
    {
        // First all that can fail.
        for (BindingWalk* walk = s_innermost; walk != nullptr; walk = walk->m_outer) {
            if (&walk->m_bindings == &bindings) {
                walk->m_added.reserve(walk->m_added.size() + 1);
            }
        }
        const Bindings::iterator added = bindings.insert({binding.code, binding});
        for (BindingWalk* walk = s_innermost; walk != nullptr; walk = walk->m_outer) {
            if (&walk->m_bindings == &bindings) {
                walk->m_added.push_back(added);
            }
        }
    }

    bool step()
    {
        // Passed over, or a context that adds a binding with every event would keep the walk going.
        while (std::find(m_added.begin(), m_added.end(), m_next) != m_added.end()) {
            ++m_next;
        }
        m_onEntry = m_next != m_bindings.end() && (!m_code || m_next->first == *m_code);
        if (m_onEntry) {
            m_current = m_next++;
        }
        return m_onEntry;
    }

    /** The entry of the last step; valid until somebody else is called. */
    const InputMapping& binding() const { return m_current->second; }

    /** Removes the entry of the last step, unless that has happened meanwhile. */
    void removeBinding()
    {
        if (!m_onEntry) {
            return;
        }
        const Bindings::iterator removed = m_current;
        for (BindingWalk* walk = s_innermost; walk != nullptr; walk = walk->m_outer) {
            if (&walk->m_bindings == &m_bindings) {
                walk->leave(removed);
            }
        }
        m_bindings.erase(removed);
    }

private:
    void leave(Bindings::iterator removed)
    {
        if (m_onEntry && m_current == removed) {
            m_onEntry = false;
        }
        if (m_next == removed) {
            ++m_next;
        }
        m_added.erase(std::remove(m_added.begin(), m_added.end(), removed), m_added.end());
    }

    static BindingWalk* s_innermost;

    Bindings& m_bindings;
    std::optional<int> m_code;
    Bindings::iterator m_next;
    Bindings::iterator m_current;
    bool m_onEntry = false;
    std::vector<Bindings::iterator> m_added;
    BindingWalk* m_outer;
};

BindingWalk* BindingWalk::s_innermost = nullptr;

void removeBindings(std::multimap<int, InputMapping>& bindings, int code, int modifiers, const std::string* category,
                    void (*unregister)(const QString& group, int code, int modifiers))
{
    for (BindingWalk walk(bindings, code); walk.step();) {
        const InputMapping& binding = walk.binding();
        if (binding.modifiers == modifiers && (category == nullptr || binding.category == *category)) {
            // Also for a binding that was never registered: nobody keeps a record of which ones were.
            unregister(groupName(), code, modifiers);
            walk.removeBinding();
        }
    }
}

// A press allocates nothing, as long as no more categories are active at a time.
using SpareCategories = SpareNodes<std::set<std::string>, 8>;

} // namespace

QtEventMapper::QtEventMapper()
    : m_interactionManager(nullptr)
    , m_lastPointerPosition(0, 0)
{}

void QtEventMapper::setInteractionManager(InteractionManager* manager)
{
    m_interactionManager = manager;
}

void QtEventMapper::addKeyboardMapping(int key, int modifiers, const std::string& category, const QString& description)
{
    BindingWalk::addBinding(m_keyboardMappings, InputMapping{key, modifiers, category});
    if (!description.isEmpty()) {
        koShortcut::addKey(groupName(), key, modifiers, description);
    }
}

void QtEventMapper::removeKeyboardMapping(int key, int modifiers, const std::string& category)
{
    removeBindings(m_keyboardMappings, key, modifiers, &category, &koShortcut::subKey);
}

void QtEventMapper::removeKeyboardMapping(int key, int modifiers)
{
    removeBindings(m_keyboardMappings, key, modifiers, nullptr, &koShortcut::subKey);
}

void QtEventMapper::addMouseMapping(Qt::MouseButton button, int modifiers, const std::string& category,
                                    const QString& description)
{
    const int code = static_cast<int>(button);
    BindingWalk::addBinding(m_mouseMappings, InputMapping{code, modifiers, category});
    if (!description.isEmpty()) {
        koShortcut::addMouseButton(groupName(), code, modifiers, description);
    }
}

void QtEventMapper::removeMouseMapping(Qt::MouseButton button, int modifiers, const std::string& category)
{
    removeBindings(m_mouseMappings, static_cast<int>(button), modifiers, &category, &koShortcut::subMouseButton);
}

void QtEventMapper::removeMouseMapping(Qt::MouseButton button, int modifiers)
{
    removeBindings(m_mouseMappings, static_cast<int>(button), modifiers, nullptr, &koShortcut::subMouseButton);
}

bool QtEventMapper::mousePressed(const QMouseEvent* event)
{
    if (m_interactionManager == nullptr) {
        return false;
    }
    updatePointer(pixelOf(*event));

    const int modifiers = relevantModifiers(event->modifiers());
    bool consumed = false;
    for (BindingWalk walk(m_mouseMappings, static_cast<int>(event->button())); walk.step();) {
        // Unlike a key, a button without modifiers is not bound to the button with modifiers held.
        if (walk.binding().modifiers == modifiers) {
            consumed |= start(walk.binding().category, m_activeMouseEvents);
        }
    }
    return consumed;
}

bool QtEventMapper::mouseReleased(const QMouseEvent* event)
{
    if (m_interactionManager == nullptr) {
        return false;
    }
    updatePointer(pixelOf(*event));
    return endBindings(m_mouseMappings, static_cast<int>(event->button()), m_activeMouseEvents);
}

bool QtEventMapper::mouseMoved(const QMouseEvent* event, bool dragging)
{
    if (m_interactionManager == nullptr) {
        return false;
    }
    updatePointer(pixelOf(*event));

    // Dragging looks up all held buttons as one value and does not ask what was started: with a second button or other
    // modifiers the "process" of a binding pauses, while its release still ends it.
    const std::optional<int> code = dragging ? std::optional<int>(static_cast<int>(event->buttons())) : std::nullopt;
    const std::string verb = dragging ? "process" : "hover";
    const int modifiers = relevantModifiers(event->modifiers());
    bool consumed = false;
    for (BindingWalk walk(m_mouseMappings, code); walk.step();) {
        if (walk.binding().modifiers == modifiers) {
            consumed |= send(InteractionEvent(walk.binding().category, verb));
        }
    }
    return consumed;
}

bool QtEventMapper::hoverStopped(const QEvent*)
{
    if (m_interactionManager == nullptr) {
        return false;
    }

    const std::string verb = "stopHover";
    bool consumed = false;
    for (BindingWalk walk(m_mouseMappings); walk.step();) {
        consumed |= send(InteractionEvent(walk.binding().category, verb));
    }
    return consumed;
}

bool QtEventMapper::keyPressed(const QKeyEvent* event)
{
    if (m_interactionManager == nullptr) {
        return false;
    }
    // Before the presenter mode: a repeat counts as handled even where the press was not let through.
    if (event->isAutoRepeat()) {
        return true;
    }
    const int key = event->key();
    const int modifiers = relevantModifiers(event->modifiers());
    if (!passesPresenterMode(key, modifiers)) {
        return false;
    }

    const int expectedModifiers = modifiers & ~ownModifier(key);
    bool consumed = false;
    for (BindingWalk walk(m_keyboardMappings, key); walk.step();) {
        const InputMapping& binding = walk.binding();
        // Unlike a button, a key without modifiers is bound whatever modifiers are held.
        if (binding.modifiers == expectedModifiers || binding.modifiers == 0) {
            consumed |= start(binding.category, m_activeKeyEvents);
        }
    }
    if (consumed) {
        return true;
    }

    // The text names all modifiers held, that of a pressed modifier key included.
    const InteractionEvent press("qt-key:" + qtKeyEventToString(key, modifiers), "press");
    // Made before it is sent: nobody hears of a press that gets no release.
    PressedKeys pressed;
    pressed.emplace(key, press.getCategory());
    consumed = send(press);
    m_pressedQtKeys.merge(pressed);
    return consumed;
}

bool QtEventMapper::keyReleased(const QKeyEvent* event)
{
    if (m_interactionManager == nullptr) {
        return false;
    }
    if (event->isAutoRepeat()) {
        return true;
    }
    // Presses are not normalised: what a press reported as a control character is ended by resetEvents() only.
    const int key = keyOfControlCharacter(event->key());
    if (!passesPresenterMode(key, relevantModifiers(event->modifiers()))) {
        return false;
    }

    const bool endConsumed = endBindings(m_keyboardMappings, key, m_activeKeyEvents);
    const bool releaseConsumed = releasePressedKey(key);
    return endConsumed || releaseConsumed;
}

void QtEventMapper::resetEvents()
{
    // Unlike all other operations without a look at the manager: what is pending without one is forgotten.
    endAll(m_activeKeyEvents);
    endAll(m_activeMouseEvents);

    for (auto next = m_pressedQtKeys.begin(); next != m_pressedQtKeys.end();) {
        const int key = next->first;
        releasePressedKey(key);
        next = m_pressedQtKeys.upper_bound(key);
    }
    // A key that was pressed from inside after its turn: nothing stays pending.
    m_pressedQtKeys.clear();
}

std::string QtEventMapper::qtKeyEventToString(int key, int modifiers)
{
    std::string text;
    if ((modifiers & controlModifier) != 0) {
        text += "ctrl+";
    }
    if ((modifiers & altModifier) != 0) {
        text += "alt+";
    }
    if ((modifiers & shiftModifier) != 0) {
        text += "shift+";
    }
    text += std::to_string(key);
    return text;
}

void QtEventMapper::updatePointer(const QPoint& position)
{
    if (position == m_lastPointerPosition) {
        return;
    }
    m_lastPointerPosition = position;
    m_interactionManager->pointerMoved(osg::Pnt2f(static_cast<float>(position.x()), static_cast<float>(position.y())));
}

bool QtEventMapper::passesPresenterMode(int key, int modifiers) const
{
    // Deliberately narrow: of all keys only those that Qt does not know, with a modifier held.
    return !m_interactionManager->getPresenterMode() || (key == Qt::Key_unknown && modifiers != 0);
}

bool QtEventMapper::send(const InteractionEvent& event) const
{
    // A context may have unbound the manager from inside an earlier event.
    return m_interactionManager != nullptr && m_interactionManager->triggerEvent(event);
}

bool QtEventMapper::start(const std::string& category, Categories& active)
{
    const InteractionEvent event(category, "start");
    // Made before it is sent: nobody hears of a start that gets no stop.
    auto started = SpareCategories::instance().prepare(category);
    const bool consumed = send(event);
    SpareCategories::instance().insert(active, std::move(started));
    return consumed;
}

bool QtEventMapper::endBindings(Bindings& bindings, int code, Categories& active)
{
    bool consumed = false;
    for (BindingWalk walk(bindings, code); walk.step();) {
        const std::string& category = walk.binding().category;
        if (active.count(category) == 0) {
            continue;
        }
        const InteractionEvent stop(category, "stop");
        const InteractionEvent trigger(category, "trigger");
        consumed |= send(stop);
        consumed |= send(trigger);
        // Looked up again: a context may have ended it from inside.
        const auto ended = active.find(stop.getCategory());
        if (ended != active.end()) {
            SpareCategories::instance().erase(active, ended);
        }
    }
    return consumed;
}

void QtEventMapper::endAll(Categories& active)
{
    // Each is taken out before it is sent and the next one looked up afterwards: a context may start, end and reset
    // from inside, and ends nothing twice.
    for (auto next = active.begin(); next != active.end();) {
        const InteractionEvent stop(*next, "stop");
        const InteractionEvent trigger(*next, "trigger");
        const Categories::node_type ended = active.extract(next);
        send(stop);
        send(trigger);
        next = active.upper_bound(ended.value());
    }
    // One that was started from inside after its turn: nothing stays pending.
    active.clear();
}

bool QtEventMapper::releasePressedKey(int key)
{
    // Taken out before they are sent: a context that presses, releases or resets from inside does not meet them again.
    PressedKeys released;
    for (auto next = m_pressedQtKeys.lower_bound(key); next != m_pressedQtKeys.end() && next->first == key;) {
        released.insert(released.end(), m_pressedQtKeys.extract(next++));
    }
    bool consumed = false;
    auto next = released.begin();
    try {
        while (next != released.end()) {
            const InteractionEvent release(next->second, "release");
            ++next;
            consumed |= send(release);
        }
    } catch (...) {
        // What was not sent stays pending.
        released.erase(released.begin(), next);
        m_pressedQtKeys.merge(released);
        throw;
    }
    return consumed;
}

} // namespace quon::interaction
