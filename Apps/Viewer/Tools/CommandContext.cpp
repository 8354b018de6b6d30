// SPDX-License-Identifier: MIT
#include "Viewer/Tools/CommandContext.h"

#include <Interaction/InteractionEvent.h>

#include <utility>

namespace quon::viewer {

CommandContext::CommandContext()
    : AbstractInteractionContext(Background)
{}

void CommandContext::setCommand(const std::string& name, std::function<void()> command)
{
    m_commands[name] = std::move(command);
}

bool CommandContext::triggerEvent(interaction::InteractionManager*, const interaction::InteractionEvent& event)
{
    if (event.getTool() != "view") {
        return false;
    }
    const auto command = m_commands.find(event.getHint());
    if (command == m_commands.end()) {
        return false;
    }
    if (event.getEvent() == "start") {
        command->second();
        return true;
    }
    return event.getEvent() == "stop" || event.getEvent() == "trigger";
}

} // namespace quon::viewer
