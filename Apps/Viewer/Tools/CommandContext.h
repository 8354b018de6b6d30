// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/AbstractInteractionContext.h>

#include <QString>

#include <functional>
#include <map>
#include <string>

namespace quon::viewer {

/**
 * Carries out named commands on events of the category "view": the hint is the command's name.
 *
 * A command runs on "start", when its key goes down, and not on "trigger": losing the focus ends every pending key
 * with a "trigger", and that must not lock or hide anything. The verbs that end a key are consumed; a command that goes
 * on while its key is held ends on "stop".
 */
class CommandContext : public interaction::AbstractInteractionContext {
public:
    /** What a command does and how it stands. */
    struct Handler {
        std::function<void()> run;       ///< must not be empty (not checked)
        std::function<bool()> isChecked; ///< empty: the command is no switch
        std::function<bool()> isEnabled; ///< empty: it can always be asked for
        /** What it would do now, in the user's language; empty: what the table of commands says. */
        std::function<QString()> getText = {};
        std::function<void()> end = {}; ///< called when the key goes up; empty: there is nothing to end
    };

    CommandContext();

    /** Adds or replaces a command. */
    void setCommand(const std::string& name, Handler handler);

    /** Takes a command away; an unknown name is ignored. */
    void removeCommand(const std::string& name);

    /** Returns whether there is such a command and it can be asked for now. A disabled one does nothing. */
    bool isAvailable(const std::string& name) const;

    /** Returns whether the command is a switch. */
    bool isSwitch(const std::string& name) const;

    /** Returns whether the command is a switch that is on. */
    bool isChecked(const std::string& name) const;

    /** Returns what the command would do now, in the user's language; empty where the table of commands says it. */
    QString getText(const std::string& name) const;

    bool triggerEvent(interaction::InteractionManager* manager, const interaction::InteractionEvent& event) override;

private:
    const Handler* find(const std::string& name) const;

    std::map<std::string, Handler> m_commands;
};

} // namespace quon::viewer
