// SPDX-License-Identifier: MIT
#include "Viewer/Session/InputBindings.h"

#include "Viewer/Session/Commands.h"

#include <Interaction/QtEventMapper.h>

#include <QCoreApplication>
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
    {Qt::RightButton, Qt::NoModifier, "navigate:orbit", QT_TRANSLATE_NOOP("InputBindings", "Turn the view")},
    {Qt::MiddleButton, Qt::NoModifier, "navigate:pan", QT_TRANSLATE_NOOP("InputBindings", "Move the view")},
    {Qt::RightButton, Qt::ShiftModifier, "navigate:pan", QT_TRANSLATE_NOOP("InputBindings", "Move the view")},
    {Qt::RightButton, Qt::ControlModifier, "navigate:zoom", QT_TRANSLATE_NOOP("InputBindings", "Zoom the view")},
};

} // namespace

InputBindings::InputBindings(interaction::QtEventMapper& mapper)
    : m_mapper(mapper)
{
    addAll();
}

InputBindings::~InputBindings()
{
    removeAll();
}

void InputBindings::retranslate()
{
    removeAll();
    addAll();
}

void InputBindings::addAll()
{
    for (const Command& command : Command::getAll()) {
        if (command.key != 0) {
            m_mapper.addKeyboardMapping(command.key, command.modifiers, command.getCategory(),
                                        command.getDescription());
        }
    }
    for (const MouseBinding& binding : MouseBindings) {
        m_mapper.addMouseMapping(binding.button, binding.modifiers, binding.category,
                                 QCoreApplication::translate("InputBindings", binding.description));
    }
}

void InputBindings::removeAll()
{
    for (const Command& command : Command::getAll()) {
        if (command.key != 0) {
            m_mapper.removeKeyboardMapping(command.key, command.modifiers, command.getCategory());
        }
    }
    for (const MouseBinding& binding : MouseBindings) {
        m_mapper.removeMouseMapping(binding.button, binding.modifiers, binding.category);
    }
}

} // namespace quon::viewer
