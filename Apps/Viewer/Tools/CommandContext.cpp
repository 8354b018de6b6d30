// SPDX-License-Identifier: MIT
#include "Viewer/Tools/CommandContext.h"

#include <Interaction/InteractionEvent.h>

#include <utility>

namespace quon::viewer {

CommandContext::CommandContext()
    : AbstractInteractionContext(Background)
{}

void CommandContext::setCommand(const std::string& name, Handler handler)
{
    m_commands[name] = std::move(handler);
}

void CommandContext::removeCommand(const std::string& name)
{
    m_commands.erase(name);
}

bool CommandContext::isAvailable(const std::string& name) const
{
    const Handler* handler = find(name);
    return handler != nullptr && (!handler->isEnabled || handler->isEnabled());
}

bool CommandContext::isSwitch(const std::string& name) const
{
    const Handler* handler = find(name);
    return handler != nullptr && handler->isChecked;
}

bool CommandContext::isChecked(const std::string& name) const
{
    return isSwitch(name) && find(name)->isChecked();
}

QString CommandContext::getText(const std::string& name) const
{
    const Handler* handler = find(name);
    return handler != nullptr && handler->getText ? handler->getText() : QString();
}

bool CommandContext::triggerEvent(interaction::InteractionManager*, const interaction::InteractionEvent& event)
{
    if (event.getTool() != "view") {
        return false;
    }
    const Handler* handler = find(event.getHint());
    if (handler == nullptr) {
        return false;
    }
    if (event.getEvent() == "start") {
        if (isAvailable(event.getHint())) {
            // A copy: the command may take itself away.
            const std::function<void()> run = handler->run;
            run();
        }
        return true;
    }
    if (event.getEvent() == "stop" && handler->end) {
        // Also when the command cannot be asked for any more: it may have been when the key went down.
        const std::function<void()> end = handler->end;
        end();
    }
    return event.getEvent() == "stop" || event.getEvent() == "trigger";
}

const CommandContext::Handler* CommandContext::find(const std::string& name) const
{
    const auto command = m_commands.find(name);
    return command == m_commands.end() ? nullptr : &command->second;
}

} // namespace quon::viewer
