// SPDX-License-Identifier: MIT
#pragma once

#include <Qt>

#include <string>
#include <vector>

namespace quon::viewer {

/** One line of a script, checked and taken apart. */
struct ScriptCommand {
    enum class Kind {
        Size,          ///< numbers: width, height
        View,          ///< text: a standard view
        Fit,           ///<
        Move,          ///< numbers: x, y
        Press,         ///< numbers: x, y; button
        Release,       ///< numbers: x, y; button
        Click,         ///< numbers: x, y; button
        Drag,          ///< numbers: from x, y, to x, y; button
        Wheel,         ///< numbers: x, y, steps
        Leave,         ///<
        FocusOut,      ///<
        Key,           ///< key
        KeyPress,      ///< key
        KeyRelease,    ///< key
        ClickPart,     ///< text: name of a part; button
        ClickVisible,  ///< numbers: rank by visible area, from 1; button
        AddEmptyGroup, ///< text: name; numbers: place as fractions of the model's box
        ToggleNode,    ///< text: name of a node
        Shot,          ///< text: name of the picture
    };

    Kind kind;
    bool optional = false; ///< when it cannot be carried out, the script goes on
    int line = 0;
    std::string text;
    std::vector<double> numbers;
    int key = 0;
    Qt::MouseButton button = Qt::LeftButton;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
};

/**
 * A script for the viewer: one command a line, words separated by blanks.
 *
 * The word "try" before a command lets the script go on when the command cannot be carried out. A word with blanks is
 * put in double quotes; from a word that begins with # on the line is a comment.
 */
class Script {
public:
    /**
     * Reads and checks a whole script file.
     *
     * @throws ViewerError with the file's name, the line's number and the reason
     */
    static Script load(const std::string& file);

    /** Checks a script's text; @p file is what errors call it. */
    static Script parse(const std::string& text, const std::string& file);

    const std::string& getFile() const { return m_file; }
    const std::vector<ScriptCommand>& getCommands() const { return m_commands; }

private:
    std::string m_file;
    std::vector<ScriptCommand> m_commands;
};

} // namespace quon::viewer
