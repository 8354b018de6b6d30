// SPDX-License-Identifier: MIT
#include "Viewer/Script/Script.h"

#include "Viewer/Model/ViewerError.h"
#include "Viewer/Tools/CameraController.h"

#include <QKeySequence>
#include <QString>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <system_error>

namespace quon::viewer {

namespace {

using Kind = ScriptCommand::Kind;

/**
 * What follows a command. One letter each: s a size, p a pixel, f a fraction or any number, n a rank, w a number of
 * steps, v a view, t a text, d a picture's name, k a key; at the end b for a button and modifiers, both optional, or m
 * for modifiers alone.
 */
struct Grammar {
    const char* name;
    Kind kind;
    const char* arguments;
    const char* usage;
};

constexpr Grammar Grammars[] = {
    {"size", Kind::Size, "ss", "WIDTH HEIGHT"},
    {"view", Kind::View, "v", "iso|front|back|left|right|top|bottom"},
    {"fit", Kind::Fit, "", ""},
    {"move", Kind::Move, "ppm", "X Y [MODIFIER...]"},
    {"press", Kind::Press, "ppb", "X Y [BUTTON] [MODIFIER...]"},
    {"release", Kind::Release, "ppb", "X Y [BUTTON] [MODIFIER...]"},
    {"click", Kind::Click, "ppb", "X Y [BUTTON] [MODIFIER...]"},
    {"drag", Kind::Drag, "ppppb", "X1 Y1 X2 Y2 [BUTTON] [MODIFIER...]"},
    {"wheel", Kind::Wheel, "ppwm", "X Y STEPS [MODIFIER...]"},
    {"leave", Kind::Leave, "", ""},
    {"focusout", Kind::FocusOut, "", ""},
    {"key", Kind::Key, "km", "KEY [MODIFIER...]"},
    {"keypress", Kind::KeyPress, "km", "KEY [MODIFIER...]"},
    {"keyrelease", Kind::KeyRelease, "km", "KEY [MODIFIER...]"},
    {"click-part", Kind::ClickPart, "tb", "NAME [BUTTON] [MODIFIER...]"},
    {"click-visible", Kind::ClickVisible, "nb", "RANK [BUTTON] [MODIFIER...]"},
    {"add-empty-group", Kind::AddEmptyGroup, "tfff", "NAME X Y Z"},
    {"toggle-node", Kind::ToggleNode, "t", "NAME"},
    {"shot", Kind::Shot, "d", "NAME"},
};

constexpr int LargestSize = 8192;
constexpr int LargestPixel = 100000;
constexpr int LargestSteps = 1000;

// Splits a line into words; false when a quote is not closed.
bool splitLine(const std::string& line, std::vector<std::string>& words)
{
    std::size_t i = 0;
    while (i < line.size()) {
        const char character = line[i];
        if (character == ' ' || character == '\t' || character == '\r') {
            ++i;
        } else if (character == '#') {
            return true;
        } else if (character == '"') {
            const std::size_t end = line.find('"', i + 1);
            if (end == std::string::npos) {
                return false;
            }
            words.push_back(line.substr(i + 1, end - i - 1));
            i = end + 1;
        } else {
            const std::size_t end = std::min(line.find_first_of(" \t\r", i), line.size());
            words.push_back(line.substr(i, end - i));
            i = end;
        }
    }
    return true;
}

class LineParser {
public:
    LineParser(const std::string& place, const std::vector<std::string>& words)
        : m_place(place)
        , m_words(words)
    {}

    ScriptCommand parse()
    {
        const bool optional = m_words[0] == "try";
        if (optional) {
            m_usage = "try COMMAND";
            ++m_next;
        }
        const std::string& name = take();
        const auto* grammar = std::find_if(std::begin(Grammars), std::end(Grammars),
                                           [&](const Grammar& candidate) { return name == candidate.name; });
        if (grammar == std::end(Grammars)) {
            fail("unknown command '" + name + "'");
        }
        m_usage = std::string(grammar->name) + (*grammar->usage != 0 ? " " : "") + grammar->usage;
        ScriptCommand command{};
        command.optional = optional;
        command.kind = grammar->kind;
        command.button = Qt::LeftButton;
        for (const char* kind = grammar->arguments; *kind != 0; ++kind) {
            readArgument(*kind, command);
        }
        if (m_next < m_words.size()) {
            fail("unexpected '" + m_words[m_next] + "', usage: " + m_usage);
        }
        return command;
    }

private:
    [[noreturn]] void fail(const std::string& reason) const { throw ViewerError(m_place, reason); }

    const std::string& take()
    {
        if (m_next >= m_words.size()) {
            fail("argument missing, usage: " + m_usage);
        }
        return m_words[m_next++];
    }

    double takeNumber(const double smallest, const double largest, const bool whole)
    {
        const std::string& word = take();
        std::istringstream stream(word);
        stream.imbue(std::locale::classic());
        double number = 0;
        if (!(stream >> number) || stream.peek() != std::char_traits<char>::eof() || !std::isfinite(number) ||
            (whole && number != std::floor(number))) {
            fail("'" + word + "' is not a " + (whole ? "whole number" : "number"));
        }
        if (number < smallest || number > largest) {
            fail("'" + word + "' is out of range");
        }
        return number;
    }

    void readArgument(const char kind, ScriptCommand& command)
    {
        switch (kind) {
        case 's':
            command.numbers.push_back(takeNumber(1, LargestSize, true));
            break;
        case 'p':
            command.numbers.push_back(takeNumber(-LargestPixel, LargestPixel, true));
            break;
        case 'f':
            command.numbers.push_back(takeNumber(-1e6, 1e6, false));
            break;
        case 'n':
            command.numbers.push_back(takeNumber(1, 1e6, true));
            break;
        case 'w':
            command.numbers.push_back(takeNumber(-LargestSteps, LargestSteps, true));
            break;
        case 'v':
            command.text = take();
            if (!CameraController().setStandardView(command.text)) {
                fail("unknown view '" + command.text + "', usage: " + m_usage);
            }
            break;
        case 't':
            command.text = take();
            break;
        case 'd':
            command.text = take();
            if (command.text.empty() || command.text.find_first_not_of("abcdefghijklmnopqrstuvwxyz"
                                                                       "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                                                       "0123456789-_") != std::string::npos) {
                fail("'" + command.text + "' is no name for a picture: letters, digits, - and _");
            }
            break;
        case 'k':
            command.key = takeKey();
            break;
        case 'b':
            readModifiers(command, true);
            break;
        default:
            readModifiers(command, false);
            break;
        }
    }

    int takeKey()
    {
        // Names that key sequences do not know.
        static const std::map<std::string, int> names{
            {"Escape", Qt::Key_Escape}, {"Shift", Qt::Key_Shift}, {"Ctrl", Qt::Key_Control}, {"Alt", Qt::Key_Alt}};
        const std::string& word = take();
        if (const auto name = names.find(word); name != names.end()) {
            return name->second;
        }
        const QKeySequence sequence = QKeySequence::fromString(QString::fromStdString(word));
        const int key = sequence.count() == 1 ? sequence[0] : Qt::Key_unknown;
        if (key == Qt::Key_unknown || key == 0 || (key & static_cast<int>(Qt::KeyboardModifierMask)) != 0) {
            fail("unknown key '" + word + "'");
        }
        return key;
    }

    void readModifiers(ScriptCommand& command, const bool buttonAllowed)
    {
        static const std::map<std::string, Qt::MouseButton> buttons{
            {"left", Qt::LeftButton}, {"middle", Qt::MiddleButton}, {"right", Qt::RightButton}};
        static const std::map<std::string, Qt::KeyboardModifier> modifiers{
            {"shift", Qt::ShiftModifier}, {"ctrl", Qt::ControlModifier}, {"alt", Qt::AltModifier}};
        while (m_next < m_words.size()) {
            const std::string& word = m_words[m_next];
            const auto button = buttons.find(word);
            const auto modifier = modifiers.find(word);
            if (buttonAllowed && button != buttons.end()) {
                command.button = button->second;
            } else if (modifier != modifiers.end()) {
                command.modifiers |= modifier->second;
            } else {
                return;
            }
            ++m_next;
        }
    }

    const std::string& m_place;
    const std::vector<std::string>& m_words;
    std::string m_usage;
    std::size_t m_next = 0;
};

} // namespace

Script Script::load(const std::string& file)
{
    std::error_code error;
    if (std::filesystem::is_directory(file, error)) {
        throw ViewerError(file, "is a directory");
    }
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw ViewerError(file, std::filesystem::exists(file, error) ? "cannot be read" : "no such file");
    }
    std::ostringstream text;
    text << stream.rdbuf();
    return parse(text.str(), file);
}

Script Script::parse(const std::string& text, const std::string& file)
{
    Script script;
    script.m_file = file;
    std::istringstream stream(text);
    std::string line;
    for (int number = 1; std::getline(stream, line); ++number) {
        const std::string place = file + ":" + std::to_string(number);
        std::vector<std::string> words;
        if (!splitLine(line, words)) {
            throw ViewerError(place, "a quote is not closed");
        }
        if (!words.empty()) {
            script.m_commands.push_back(LineParser(place, words).parse());
            script.m_commands.back().line = number;
        }
    }
    return script;
}

} // namespace quon::viewer
