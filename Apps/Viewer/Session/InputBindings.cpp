// SPDX-License-Identifier: MIT
#include "Viewer/Session/InputBindings.h"

#include "Viewer/Session/Commands.h"
#include "Viewer/Session/QtVersions.h"

#include <Interaction/QtEventMapper.h>
#include <Shortcut/koShortcut.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <Qt>

namespace quon::viewer {

namespace {

struct MouseBinding {
    Qt::MouseButton button;
    int modifiers;
    const char* category;
    const char* description; ///< source text of the context "InputBindings"
};

constexpr MouseBinding MouseBindings[] = {
    {Qt::LeftButton, Qt::NoModifier, "tool:select",
     QT_TRANSLATE_NOOP("InputBindings", "Select the part under the pointer")},
    {Qt::LeftButton, Qt::ControlModifier, "tool:toggle",
     QT_TRANSLATE_NOOP("InputBindings", "Add the part under the pointer or take it out")},
    {Qt::LeftButton, Qt::ShiftModifier, "tool:box",
     QT_TRANSLATE_NOOP("InputBindings", "Select what a rectangle encloses (to the right) or touches (to the left)")},
    {Qt::LeftButton, static_cast<int>(Qt::ControlModifier) | static_cast<int>(Qt::ShiftModifier), "tool:box-add",
     QT_TRANSLATE_NOOP("InputBindings", "Add what a rectangle encloses (to the right) or touches (to the left)")},
    {Qt::RightButton, Qt::NoModifier, "navigate:orbit", QT_TRANSLATE_NOOP("InputBindings", "Turn the view")},
    {Qt::MiddleButton, Qt::NoModifier, "navigate:pan", QT_TRANSLATE_NOOP("InputBindings", "Move the view")},
    {Qt::RightButton, Qt::ShiftModifier, "navigate:pan", QT_TRANSLATE_NOOP("InputBindings", "Move the view")},
    {Qt::RightButton, Qt::ControlModifier, "navigate:zoom", QT_TRANSLATE_NOOP("InputBindings", "Zoom the view")},
};

struct FreeKey {
    int key;
    const char* description; ///< source text of the context "InputBindings"
};

// No bindings: tools and navigation get them as keys that no binding took. Listed all the same.
constexpr FreeKey FreeKeys[] = {
    {Qt::Key_Escape, QT_TRANSLATE_NOOP("InputBindings", "Leave the tool, or clear the selection")},
    {Qt::Key_Left, QT_TRANSLATE_NOOP("InputBindings", "Turn the model to the left")},
    {Qt::Key_Right, QT_TRANSLATE_NOOP("InputBindings", "Turn the model to the right")},
    {Qt::Key_Up, QT_TRANSLATE_NOOP("InputBindings", "Turn the model upwards")},
    {Qt::Key_Down, QT_TRANSLATE_NOOP("InputBindings", "Turn the model downwards")},
};

bool isModifierKey(const int key)
{
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Meta:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
        return true;
    default:
        return false;
    }
}

} // namespace

QString KeyBinding::toText() const
{
    return isNone() ? QString() : QKeySequence(key | modifiers).toString(QKeySequence::NativeText);
}

QString KeyBinding::toPortableText() const
{
    return isNone() ? QString() : QKeySequence(key | modifiers).toString(QKeySequence::PortableText);
}

KeyBinding KeyBinding::fromPortableText(const QString& text, bool& isValid)
{
    isValid = true;
    if (text.isEmpty()) {
        return {};
    }
    const QKeySequence sequence = QKeySequence::fromString(text, QKeySequence::PortableText);
    // Several keys after one another are a sequence of Qt's that no mapper knows.
    if (sequence.count() == 1) {
        constexpr int allModifiers = static_cast<int>(Qt::KeyboardModifierMask);
        const int key = QtVersions::getFirstKey(sequence);
        const KeyBinding binding{key & ~allModifiers, key & allModifiers};
        if (!binding.isNone() && binding.key != Qt::Key_unknown && !isModifierKey(binding.key) &&
            (binding.modifiers & ~AllModifiers) == 0) {
            return binding;
        }
    }
    isValid = false;
    return {};
}

KeyBinding KeyBinding::fromEvent(const QKeyEvent& event)
{
    const KeyBinding pressed{event.key(), static_cast<int>(event.modifiers()) & AllModifiers};
    // What its text does not lead back to could not be kept.
    bool isValid = false;
    const KeyBinding read = fromPortableText(pressed.toPortableText(), isValid);
    return isValid && read == pressed ? pressed : KeyBinding();
}

InputBindings::InputBindings(interaction::QtEventMapper& mapper)
    : m_mapper(mapper)
{
    addAll();
}

InputBindings::~InputBindings()
{
    removeAll();
}

QString InputBindings::getGroup()
{
    // The library's own text, which its translations have: lupdate does not take it for one of the viewer.
    constexpr const char* Context = "QtEventMapper";
    return QCoreApplication::translate(Context, "Interaction");
}

QString InputBindings::getFreeKeyGroup()
{
    return QCoreApplication::translate("InputBindings", "Fixed keys");
}

KeyBinding InputBindings::getKey(const std::string& command) const
{
    const auto changed = m_changedKeys.find(command);
    return changed == m_changedKeys.end() ? getDefaultKey(command) : changed->second;
}

QString InputBindings::withKey(const QString& text, const std::string& command) const
{
    const KeyBinding key = getKey(command);
    return key.isNone() ? text : tr("%1 (%2)").arg(text, key.toText());
}

KeyBinding InputBindings::getDefaultKey(const std::string& command)
{
    const Command* found = Command::find(command);
    return found == nullptr ? KeyBinding() : KeyBinding{found->key, found->modifiers};
}

void InputBindings::setKey(const std::string& command, const KeyBinding& key)
{
    if (Command::find(command) == nullptr || key == getKey(command)) {
        return;
    }
    rebuild([&] {
        if (key == getDefaultKey(command)) {
            m_changedKeys.erase(command);
        } else {
            m_changedKeys[command] = key;
        }
    });
}

void InputBindings::restoreKey(const std::string& command)
{
    setKey(command, getDefaultKey(command));
}

void InputBindings::restoreAllKeys()
{
    setChangedKeys({});
}

void InputBindings::setChangedKeys(const std::map<std::string, KeyBinding>& keys)
{
    std::map<std::string, KeyBinding> changedKeys;
    for (const auto& [command, key] : keys) {
        if (Command::find(command) != nullptr && key != getDefaultKey(command)) {
            changedKeys[command] = key;
        }
    }
    if (changedKeys != m_changedKeys) {
        rebuild([&] { m_changedKeys = changedKeys; });
    }
}

void InputBindings::remove()
{
    emit aboutToChange();
    removeAll();
}

void InputBindings::retranslate()
{
    rebuild([] {});
}

template <class Change>
void InputBindings::rebuild(const Change& change)
{
    remove();
    change();
    addAll();
    emit changed();
}

void InputBindings::addAll()
{
    for (const Command& command : Command::getAll()) {
        if (const KeyBinding key = getKey(command.name); !key.isNone()) {
            m_mapper.addKeyboardMapping(key.key, key.modifiers, command.getCategory(), command.getDescription());
        }
    }
    for (const MouseBinding& binding : MouseBindings) {
        m_mapper.addMouseMapping(binding.button, binding.modifiers, binding.category,
                                 QCoreApplication::translate("InputBindings", binding.description));
    }
    for (const FreeKey& entry : FreeKeys) {
        koShortcut::addKey(getFreeKeyGroup(), entry.key, Qt::NoModifier,
                           QCoreApplication::translate("InputBindings", entry.description));
    }
    m_added = true;
}

void InputBindings::removeAll()
{
    if (!m_added) {
        return;
    }
    m_added = false;
    for (const Command& command : Command::getAll()) {
        if (const KeyBinding key = getKey(command.name); !key.isNone()) {
            m_mapper.removeKeyboardMapping(key.key, key.modifiers, command.getCategory());
        }
    }
    for (const MouseBinding& binding : MouseBindings) {
        m_mapper.removeMouseMapping(binding.button, binding.modifiers, binding.category);
    }
    for (const FreeKey& entry : FreeKeys) {
        koShortcut::subKey(getFreeKeyGroup(), entry.key, Qt::NoModifier);
    }
}

} // namespace quon::viewer
