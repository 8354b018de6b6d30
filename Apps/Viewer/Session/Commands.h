// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <string>
#include <vector>

namespace quon::viewer {

/**
 * Something that the user can ask for by name, from a menu, with a key or in a script.
 *
 * Asking for it is the interaction event "start" of the category "view:NAME", wherever it comes from; CommandContext
 * carries it out. The table here says how a command is called and which key it has before the user changes that.
 */
struct Command {
    /** The menu that lists it. */
    enum class Group { Edit, Select, View, Navigate, Tools, Window };

    const char* name;        ///< hint of its events
    Group group;             ///< menu
    const char* icon;        ///< name of its icon, empty for none
    const char* text;        ///< in menus and on buttons; source text of the context "Commands"
    const char* description; ///< a sentence for tooltips and the list of shortcuts; source text of "Commands"
    int key;                 ///< Qt::Key of the default binding, 0 for none
    int modifiers;           ///< of the default binding; 0 fires whatever modifiers are held

    /** The category of its events. */
    std::string getCategory() const { return std::string("view:") + name; }

    /** The texts in the user's language, asked for anew at every call. */
    QString getText() const;
    QString getDescription() const;

    /** All commands in the order of the menus. */
    static const std::vector<Command>& getAll();

    /** Returns the command with this name, null when there is none. */
    static const Command* find(const std::string& name);
};

} // namespace quon::viewer
