// SPDX-License-Identifier: MIT
#include "Viewer/Script/Script.h"

#include "Viewer/Model/AssemblyGenerator.h"
#include "Viewer/Model/ViewerError.h"
#include "Viewer/Session/Commands.h"
#include "Viewer/Session/QtVersions.h"
#include "Viewer/Tools/CameraController.h"

#include <QKeySequence>
#include <QString>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <locale>
#include <sstream>
#include <system_error>

namespace quon::viewer {

namespace {

using Kind = ScriptCommand::Kind;

/**
 * What follows a command. One letter each: s a size, p a pixel, f a fraction or any number, a a number of any size, l a
 * length above 0, u degrees up or down, z a way to scroll, n a rank, w a number of steps, v a view, t a text, d a
 * picture's name, j a number of parts, k a key, c a command, e a verb, g a gesture, h a phase of scrolling, o on or
 * off, x a digest, y what happens to a set, its name and that of another one where two belong to it; at the end N for
 * any number of nodes, H for any number of buttons, P for any number of pixels, q for "fitted" or nothing, b for a
 * button and modifiers, all optional, m for modifiers alone, r for modifiers and "repeat", i for modifiers and
 * "inverted".
 */
struct Grammar {
    const char* name;
    Kind kind;
    const char* arguments;
    const char* usage;
};

constexpr Grammar Grammars[] = {
    {"exact", Kind::Exact, "", ""},
    {"size", Kind::Size, "ss", "WIDTH HEIGHT"},
    {"view", Kind::View, "v", "iso|front|back|left|right|top|bottom"},
    {"fit", Kind::Fit, "", ""},
    {"camera", Kind::Camera, "aaalauq", "X Y Z DISTANCE YAW PITCH [fitted]"},
    {"move", Kind::Move, "ppm", "X Y [MODIFIER...]"},
    {"press", Kind::Press, "ppb", "X Y [BUTTON] [MODIFIER...]"},
    {"release", Kind::Release, "ppb", "X Y [BUTTON] [MODIFIER...]"},
    {"click", Kind::Click, "ppb", "X Y [BUTTON] [MODIFIER...]"},
    {"doubleclick", Kind::DoubleClick, "ppb", "X Y [BUTTON] [MODIFIER...]"},
    {"doublepress", Kind::DoublePress, "ppb", "X Y [BUTTON] [MODIFIER...]"},
    {"drag", Kind::Drag, "ppppb", "X1 Y1 X2 Y2 [BUTTON] [MODIFIER...]"},
    {"held", Kind::Held, "H", "[BUTTON...]"},
    {"wheel", Kind::Wheel, "ppwm", "X Y STEPS [MODIFIER...]"},
    {"scroll", Kind::Scroll, "ffzzzzhi",
     "X Y ANGLE-X ANGLE-Y PIXEL-X PIXEL-Y none|begin|update|end|momentum [inverted] [MODIFIER...]"},
    {"gesture", Kind::Gesture, "gfffm", "begin|end|pan|zoom|smart-zoom|rotate|swipe X Y VALUE [MODIFIER...]"},
    {"touch", Kind::Touch, "P", "[X Y]..."},
    {"leave", Kind::Leave, "", ""},
    {"focusout", Kind::FocusOut, "", ""},
    {"key", Kind::Key, "km", "KEY [MODIFIER...]"},
    {"keypress", Kind::KeyPress, "kr", "KEY [repeat] [MODIFIER...]"},
    {"keyrelease", Kind::KeyRelease, "kr", "KEY [repeat] [MODIFIER...]"},
    {"command", Kind::Command, "c", "NAME"},
    {"switch", Kind::Switch, "co", "NAME on|off"},
    {"event", Kind::Event, "te", "CATEGORY VERB"},
    {"presenter", Kind::Presenter, "o", "on|off"},
    {"click-part", Kind::ClickPart, "tb", "NAME [BUTTON] [MODIFIER...]"},
    {"click-visible", Kind::ClickVisible, "nb", "RANK [BUTTON] [MODIFIER...]"},
    {"add-empty-group", Kind::AddEmptyGroup, "tfff", "NAME X Y Z"},
    {"toggle-node", Kind::ToggleNode, "t", "NAME"},
    {"select", Kind::Select, "N", "[NODE...]"},
    {"select-more", Kind::SelectMore, "N", "[NODE...]"},
    {"deselect", Kind::Deselect, "N", "[NODE...]"},
    {"hide", Kind::Hide, "N", "[NODE...]"},
    {"show", Kind::Show, "N", "[NODE...]"},
    {"isolate", Kind::Isolate, "N", "[NODE...]"},
    {"show-all", Kind::ShowAll, "", ""},
    {"forget-history", Kind::ForgetHistory, "", ""},
    {"set", Kind::Set, "y",
     "recall|add|replace|delete NAME, rename NAME NEW-NAME, union|intersection|difference NAME [NAME]"},
    {"open", Kind::Open, "t", "FILE"},
    {"generate", Kind::Generate, "j", "PARTS"},
    {"lock", Kind::Lock, "N", "[NODE...]"},
    {"unlock", Kind::Unlock, "N", "[NODE...]"},
    {"expect-model", Kind::ExpectModel, "x", "PARTS [CHECKSUM]"},
    {"expect-selection", Kind::ExpectSelection, "x", "COUNT [CHECKSUM]"},
    {"expect-hidden", Kind::ExpectHidden, "x", "COUNT [CHECKSUM]"},
    {"expect-locked", Kind::ExpectLocked, "x", "COUNT [CHECKSUM]"},
    {"shot", Kind::Shot, "d", "NAME"},
    {"report", Kind::Report, "d", "NAME"},
};

// Names that are written and read the same way.
template <class Value>
struct Named {
    const char* name;
    Value value;
};

constexpr Named<Qt::MouseButton> Buttons[] = {
    {"left", Qt::LeftButton},       {"middle", Qt::MiddleButton},   {"right", Qt::RightButton},
    {"back", Qt::BackButton},       {"forward", Qt::ForwardButton}, {"extra3", Qt::ExtraButton3},
    {"extra4", Qt::ExtraButton4},   {"extra5", Qt::ExtraButton5},   {"extra6", Qt::ExtraButton6},
    {"extra7", Qt::ExtraButton7},   {"extra8", Qt::ExtraButton8},   {"extra9", Qt::ExtraButton9},
    {"extra10", Qt::ExtraButton10}, {"extra11", Qt::ExtraButton11}, {"extra12", Qt::ExtraButton12},
};

constexpr Named<Qt::KeyboardModifier> Modifiers[] = {
    {"shift", Qt::ShiftModifier}, {"ctrl", Qt::ControlModifier}, {"alt", Qt::AltModifier}};

constexpr Named<Qt::ScrollPhase> Phases[] = {{"none", Qt::NoScrollPhase},
                                             {"begin", Qt::ScrollBegin},
                                             {"update", Qt::ScrollUpdate},
                                             {"end", Qt::ScrollEnd},
                                             {"momentum", Qt::ScrollMomentum}};

constexpr Named<Qt::NativeGestureType> Gestures[] = {{"begin", Qt::BeginNativeGesture},
                                                     {"end", Qt::EndNativeGesture},
                                                     {"pan", Qt::PanNativeGesture},
                                                     {"zoom", Qt::ZoomNativeGesture},
                                                     {"smart-zoom", Qt::SmartZoomNativeGesture},
                                                     {"rotate", Qt::RotateNativeGesture},
                                                     {"swipe", Qt::SwipeNativeGesture}};

// What happens to a set, and how many other names that takes: at least, at most.
struct SetAction {
    const char* name;
    std::size_t fewest;
    std::size_t most;
};

constexpr SetAction SetActions[] = {{"recall", 0, 0}, {"add", 0, 0},   {"replace", 0, 0},      {"delete", 0, 0},
                                    {"rename", 1, 1}, {"union", 0, 1}, {"intersection", 0, 1}, {"difference", 0, 1}};

template <class Value, std::size_t Count>
const Named<Value>* findNamed(const Named<Value> (&table)[Count], const std::string& name)
{
    const auto* found =
        std::find_if(std::begin(table), std::end(table), [&](const Named<Value>& entry) { return name == entry.name; });
    return found == std::end(table) ? nullptr : found;
}

template <class Value, std::size_t Count>
const char* findName(const Named<Value> (&table)[Count], const Value value)
{
    const auto* found = std::find_if(std::begin(table), std::end(table),
                                     [&](const Named<Value>& entry) { return value == entry.value; });
    return found == std::end(table) ? nullptr : found->name;
}

// Keys whose names key sequences do not know.
constexpr Named<int> Keys[] = {
    {"Escape", Qt::Key_Escape}, {"Shift", Qt::Key_Shift}, {"Ctrl", Qt::Key_Control}, {"Alt", Qt::Key_Alt}};

// No key when the name is unknown.
int findKey(const std::string& name)
{
    if (const auto* known = findNamed(Keys, name); known != nullptr) {
        return known->value;
    }
    const QKeySequence sequence = QKeySequence::fromString(QString::fromStdString(name), QKeySequence::PortableText);
    const int key = sequence.count() == 1 ? QtVersions::getFirstKey(sequence) : 0;
    const bool modified = (key & static_cast<int>(Qt::KeyboardModifierMask)) != 0;
    return key == Qt::Key_unknown || modified ? 0 : key;
}

constexpr int LargestSize = 8192;
constexpr int LargestPixel = 100000;
constexpr int LargestSteps = 1000;
constexpr int LargestScroll = 1000000; // more than that many steps in eighths of a degree
constexpr double LargestCoordinate = 1e30;
constexpr double SmallestLength = 1e-30;
constexpr double LargestCount = 1e9;
constexpr std::size_t LongestChecksum = 16; // hexadecimal digits

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
        case 'a':
            command.numbers.push_back(takeNumber(-LargestCoordinate, LargestCoordinate, false));
            break;
        case 'l':
            command.numbers.push_back(takeNumber(SmallestLength, LargestCoordinate, false));
            break;
        case 'z':
            command.numbers.push_back(takeNumber(-LargestScroll, LargestScroll, true));
            break;
        case 'u':
            command.numbers.push_back(takeNumber(-90, 90, false));
            break;
        case 'q':
            command.on = takeIf("fitted");
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
        case 'c':
            command.text = take();
            if (Command::find(command.text) == nullptr) {
                fail("unknown command '" + command.text + "' of the viewer");
            }
            break;
        case 'e':
            command.words.push_back(take());
            break;
        case 'g':
            command.text = take();
            if (findNamed(Gestures, command.text) == nullptr) {
                fail("unexpected '" + command.text + "', usage: " + m_usage);
            }
            break;
        case 'h':
            command.phase = takeNamed(Phases);
            break;
        case 'j':
            command.numbers.push_back(takeNumber(1, AssemblyGenerator::LargestCount, true));
            break;
        case 'y':
            takeSetAction(command);
            break;
        case 'P':
            while (m_next < m_words.size()) {
                command.numbers.push_back(takeNumber(-LargestPixel, LargestPixel, true));
                command.numbers.push_back(takeNumber(-LargestPixel, LargestPixel, true));
            }
            break;
        case 'o':
            command.on = takeIf("on");
            if (!command.on && !takeIf("off")) {
                fail("unexpected '" + take() + "', usage: " + m_usage);
            }
            break;
        case 'x':
            takeDigest(command);
            break;
        case 'N':
            command.words.assign(m_words.begin() + static_cast<std::ptrdiff_t>(m_next), m_words.end());
            m_next = m_words.size();
            break;
        case 'H':
            readButtons(command);
            break;
        case 'r':
            command.repeated = readModifiers(command, false, "repeat");
            break;
        case 'i':
            command.inverted = readModifiers(command, false, "inverted");
            break;
        case 'b':
            readModifiers(command, true);
            break;
        default:
            readModifiers(command, false);
            break;
        }
    }

    bool takeIf(const char* word)
    {
        const bool there = m_next < m_words.size() && m_words[m_next] == word;
        m_next += there ? 1 : 0;
        return there;
    }

    // A word of a table, which the usage lists.
    template <class Value, std::size_t Count>
    Value takeNamed(const Named<Value> (&table)[Count])
    {
        const std::string& word = take();
        const Named<Value>* found = findNamed(table, word);
        if (found == nullptr) {
            fail("unexpected '" + word + "', usage: " + m_usage);
        }
        return found->value;
    }

    void takeSetAction(ScriptCommand& command)
    {
        command.text = take();
        const auto* action = std::find_if(std::begin(SetActions), std::end(SetActions),
                                          [&](const SetAction& known) { return command.text == known.name; });
        if (action == std::end(SetActions)) {
            fail("unexpected '" + command.text + "', usage: " + m_usage);
        }
        command.words.push_back(take());
        while (command.words.size() <= action->fewest ||
               (command.words.size() <= action->most && m_next < m_words.size())) {
            command.words.push_back(take());
        }
    }

    int takeKey()
    {
        const std::string& word = take();
        int key = findKey(word);
        bool known = key != 0;
        if (word.size() > 2 && word.compare(0, 2, "0x") == 0) {
            const char* const end = word.data() + word.size();
            const auto [stop, error] = std::from_chars(word.data() + 2, end, key, 16);
            known = error == std::errc() && stop == end && key >= 0;
        }
        if (!known) {
            fail("unknown key '" + word + "'");
        }
        return key;
    }

    void takeDigest(ScriptCommand& command)
    {
        command.digest.count = static_cast<std::size_t>(takeNumber(0, LargestCount, true));
        if (m_next == m_words.size()) {
            return;
        }
        const std::string& word = take();
        const char* const end = word.data() + word.size();
        const auto [stop, error] = std::from_chars(word.data(), end, command.digest.checksum, 16);
        if (error != std::errc() || stop != end || word.size() > LongestChecksum) {
            fail("'" + word + "' is no checksum");
        }
        command.hasChecksum = true;
    }

    void readButtons(ScriptCommand& command)
    {
        while (m_next < m_words.size()) {
            command.buttons |= takeNamed(Buttons);
        }
    }

    // Modifiers and, where they are allowed, a button and the word @p extra, in any order.
    bool readModifiers(ScriptCommand& command, const bool buttonAllowed, const char* extra = "")
    {
        bool hasExtra = false;
        while (m_next < m_words.size()) {
            const std::string& word = m_words[m_next];
            const auto* button = findNamed(Buttons, word);
            const auto* modifier = findNamed(Modifiers, word);
            if (buttonAllowed && button != nullptr) {
                command.button = button->value;
            } else if (modifier != nullptr) {
                command.modifiers |= modifier->value;
            } else if (*extra != 0 && word == extra) {
                hasExtra = true;
            } else {
                break;
            }
            ++m_next;
        }
        return hasExtra;
    }

    const std::string& m_place;
    const std::vector<std::string>& m_words;
    std::string m_usage;
    std::size_t m_next = 0;
};

} // namespace

std::string Script::writeWord(const std::string& word)
{
    std::string written = word;
    std::replace_if(
        written.begin(), written.end(),
        [](const char character) { return character == '"' || character == '\n' || character == '\r'; }, ' ');
    return '"' + written + '"';
}

std::string Script::writeKey(const int key)
{
    const char* known = findName(Keys, key);
    const std::string name =
        known != nullptr ? known : QKeySequence(key).toString(QKeySequence::PortableText).toStdString();
    const bool plain = std::all_of(name.begin(), name.end(), [](const char character) {
        return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
               (character >= 'a' && character <= 'z');
    });
    if (plain && !name.empty() && findKey(name) == key) {
        return name;
    }
    char number[16];
    std::snprintf(number, sizeof number, "0x%08x", static_cast<unsigned>(key));
    return number;
}

std::string Script::writeButtons(const Qt::MouseButtons buttons)
{
    std::string words;
    for (const Named<Qt::MouseButton>& button : Buttons) {
        words += buttons.testFlag(button.value) ? std::string(" ") + button.name : std::string();
    }
    return words;
}

std::string Script::writeModifiers(const Qt::KeyboardModifiers modifiers)
{
    std::string words;
    for (const Named<Qt::KeyboardModifier>& modifier : Modifiers) {
        words += modifiers.testFlag(modifier.value) ? std::string(" ") + modifier.name : std::string();
    }
    return words;
}

const char* Script::writePhase(const Qt::ScrollPhase phase)
{
    const char* name = findName(Phases, phase);
    return name == nullptr ? "none" : name;
}

const char* Script::writeGesture(const Qt::NativeGestureType type)
{
    return findName(Gestures, type);
}

Qt::NativeGestureType Script::readGesture(const std::string& name)
{
    return findNamed(Gestures, name)->value;
}

std::string Script::writeNumber(const double number)
{
    // The digits that bring the same number back, and no more.
    char text[32];
    const auto [end, error] = std::to_chars(text, text + sizeof text, number);
    return std::string(text, end);
}

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

Script Script::parse(const std::string& text, const std::string& file, const int firstLine)
{
    Script script;
    script.m_file = file;
    // Some editors mark the encoding at the beginning.
    const std::string mark = "\xEF\xBB\xBF";
    std::istringstream stream(text.compare(0, mark.size(), mark) == 0 ? text.substr(mark.size()) : text);
    std::string line;
    for (int number = firstLine; std::getline(stream, line); ++number) {
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
