// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/NodePath.h"

#include <Qt>

#include <string>
#include <vector>

namespace quon::viewer {

/** One line of a script, checked and taken apart. */
struct ScriptCommand {
    enum class Kind {
        Exact,           ///<
        Size,            ///< numbers: width, height
        View,            ///< text: a standard view
        Fit,             ///<
        Camera,          ///< numbers: point of interest, distance, yaw, pitch; on: fitted
        Move,            ///< numbers: x, y
        Press,           ///< numbers: x, y; button
        Release,         ///< numbers: x, y; button
        Click,           ///< numbers: x, y; button
        DoubleClick,     ///< numbers: x, y; button
        DoublePress,     ///< numbers: x, y; button
        Drag,            ///< numbers: from x, y, to x, y; button
        Held,            ///< buttons
        Wheel,           ///< numbers: x, y, steps
        Scroll,          ///< numbers: x, y, angles to the side and away, pixels to the side and away; phase; inverted
        Gesture,         ///< text: a kind of gesture; numbers: x, y, value
        Touch,           ///< numbers: x, y of each finger
        Leave,           ///<
        FocusOut,        ///<
        Key,             ///< key
        KeyPress,        ///< key; repeated
        KeyRelease,      ///< key; repeated
        Command,         ///< text: name of a command
        Switch,          ///< text: name of a command that is a switch; on
        Event,           ///< text: category; words: verb
        Presenter,       ///< on
        ClickPart,       ///< text: name of a part; button
        ClickVisible,    ///< numbers: rank by visible area, from 1; button
        AddEmptyGroup,   ///< text: name; numbers: place as fractions of the model's box
        ToggleNode,      ///< text: name of a node
        Select,          ///< words: nodes
        SelectMore,      ///< words: nodes
        Deselect,        ///< words: nodes
        Hide,            ///< words: nodes
        Show,            ///< words: nodes
        Isolate,         ///< words: nodes
        ShowAll,         ///<
        ForgetHistory,   ///<
        Set,             ///< text: what happens to it; words: name, and another one where two belong to it
        Open,            ///< text: file of a model
        Generate,        ///< numbers: parts
        Lock,            ///< words: nodes
        Unlock,          ///< words: nodes
        ExpectModel,     ///< digest: the number of parts, and the checksum of all nodes
        ExpectSelection, ///< digest
        ExpectHidden,    ///< digest
        ExpectLocked,    ///< digest
        Shot,            ///< text: name of the picture
        Report,          ///< text: name of the report
    };

    Kind kind;
    bool optional = false; ///< when it cannot be carried out, the script goes on
    int line = 0;
    std::string text;
    std::vector<std::string> words;
    std::vector<double> numbers;
    int key = 0;
    bool repeated = false; ///< of a key that is held down
    Qt::MouseButton button = Qt::LeftButton;
    Qt::MouseButtons buttons = Qt::NoButton;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    Qt::ScrollPhase phase = Qt::NoScrollPhase;
    bool inverted = false; ///< the system scrolls the other way round
    bool on = false;
    NodeDigest digest;
    bool hasChecksum = false; ///< without one, only the count is expected
};

/**
 * A script for the viewer: one command a line, words separated by blanks.
 *
 * The word "try" before a command lets the script go on when the command cannot be carried out. A word with blanks is
 * put in double quotes; from a word that begins with # on the line is a comment.
 *
 * Recordings are written in the same language: the operations that write words are here, beside those that read them.
 */
class Script {
public:
    /**
     * Reads and checks a whole script file.
     *
     * @throws ViewerError with the file's name, the line's number and the reason
     */
    static Script load(const std::string& file);

    /** Checks a script's text; @p file is what errors call it, @p firstLine the number of its first line. */
    static Script parse(const std::string& text, const std::string& file, int firstLine = 1);

    /** Writes a word so that it is read as it was; what no word can hold (quotes, ends of lines) becomes a blank. */
    static std::string writeWord(const std::string& word);

    /** Writes a key: by its name where it has one of letters and digits, else by its number, "0x01000030". */
    static std::string writeKey(int key);

    /** Writes buttons and modifiers, each with a blank before it; those that scripts do not know are left out. */
    static std::string writeButtons(Qt::MouseButtons buttons);
    static std::string writeModifiers(Qt::KeyboardModifiers modifiers);

    static const char* writePhase(Qt::ScrollPhase phase);

    /** Writes a native gesture, null for one that scripts do not know. */
    static const char* writeGesture(Qt::NativeGestureType type);

    /** Returns the native gesture of that name, which must be known (not checked). */
    static Qt::NativeGestureType readGesture(const std::string& name);

    /** Writes a number with all its digits, in the same form in every language. */
    static std::string writeNumber(double number);

    const std::string& getFile() const { return m_file; }
    const std::vector<ScriptCommand>& getCommands() const { return m_commands; }

private:
    std::string m_file;
    std::vector<ScriptCommand> m_commands;
};

} // namespace quon::viewer
