// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/AbstractInteractionContext.h>

#include <functional>
#include <map>
#include <string>

namespace quon::viewer {

/**
 * Carries out named commands on events of the category "view": the hint is the command's name.
 *
 * A command runs on "start", when its key goes down, and not on "trigger": losing the focus ends every pending key
 * with a "trigger", and that must not lock or hide anything. The verbs that end a key are consumed.
 */
class CommandContext : public interaction::AbstractInteractionContext {
public:
    CommandContext();

    /** Adds or replaces a command. */
    void setCommand(const std::string& name, std::function<void()> command);

    bool triggerEvent(interaction::InteractionManager* manager, const interaction::InteractionEvent& event) override;

private:
    std::map<std::string, std::function<void()>> m_commands;
};

} // namespace quon::viewer
