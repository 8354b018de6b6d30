// SPDX-License-Identifier: MIT
#pragma once

#include <QKeySequence>
#include <QPointF>
#include <QString>
#include <Qt>
#include <QtGlobal>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstddef>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace quon::testing {

/** One command of a script for an InputDriver. Each kind uses the members that its words give. */
struct InputCommand {
    /** What is done: each is one operation of InputDriver. */
    enum class Kind {
        Move,
        Hover,
        Leave,
        Press,
        Release,
        Click,
        DoubleClick,
        Drag,
        TypeKey,
        PressKey,
        ReleaseKey,
        RepeatKey,
        Modifiers,
        LoseFocus
    };

    Kind kind = Kind::Move;                           ///< what is done
    QPointF position;                                 ///< where to, in viewport pixels
    Qt::MouseButton button = Qt::LeftButton;          ///< with which button
    int key = 0;                                      ///< with which Qt::Key
    Qt::KeyboardModifiers modifiers = Qt::NoModifier; ///< of a chord, or what is held from here on
};

/** Reads the scripts that InputDriver::play() describes, and knows the names in them. */
class InputScript {
public:
    /** A modifier and the key that produces it. */
    using ModifierKey = std::pair<Qt::KeyboardModifier, Qt::Key>;

    /**
     * Returns the commands of @p script; empty ones are left out.
     *
     * @throws std::invalid_argument when something is no command; the text names the command and the word
     */
    static std::vector<InputCommand> parse(const std::string& script)
    {
        std::vector<InputCommand> commands;
        std::string::size_type begin = 0;
        while (begin <= script.size()) {
            const std::string::size_type end = std::min(script.find_first_of(";\n", begin), script.size());
            InputScript line(script.substr(begin, end - begin));
            if (!line.m_words.empty()) {
                commands.push_back(line.read());
            }
            begin = end + 1;
        }
        return commands;
    }

    /** Returns the name of a button in scripts, its number when it has none there. */
    static std::string getName(const Qt::MouseButton button)
    {
        for (const auto& [name, each] : buttons()) {
            if (each == button) {
                return name;
            }
        }
        return std::to_string(static_cast<int>(button));
    }

    /** Returns the name of a key in scripts. */
    static std::string getKeyName(const int key)
    {
        for (const auto& [name, each] : modifierNames()) {
            if (each.second == key) {
                return name;
            }
        }
        return QKeySequence(key).toString(QKeySequence::PortableText).toStdString();
    }

    /** The modifiers that keys produce, each with its key. */
    static std::array<ModifierKey, 4> getModifierKeys()
    {
        return {ModifierKey(Qt::ShiftModifier, Qt::Key_Shift), ModifierKey(Qt::ControlModifier, Qt::Key_Control),
                ModifierKey(Qt::AltModifier, Qt::Key_Alt), ModifierKey(Qt::MetaModifier, Qt::Key_Meta)};
    }

    /** Returns the modifier that a key produces, Qt::NoModifier for all but four keys. */
    static Qt::KeyboardModifier getModifier(const int key)
    {
        for (const auto& [modifier, each] : getModifierKeys()) {
            if (each == key) {
                return modifier;
            }
        }
        return Qt::NoModifier;
    }

private:
    template <typename Value>
    using Named = std::pair<const char*, Value>;

    /** What is read of one command: its words, and which of them comes next. */
    explicit InputScript(const std::string& command)
    {
        std::istringstream words(command);
        for (std::string word; words >> word;) {
            m_words.push_back(word);
        }
    }

    static std::array<Named<Qt::MouseButton>, 5> buttons()
    {
        using Button = Named<Qt::MouseButton>;
        return {Button("left", Qt::LeftButton), Button("right", Qt::RightButton), Button("middle", Qt::MiddleButton),
                Button("back", Qt::BackButton), Button("forward", Qt::ForwardButton)};
    }

    static std::array<Named<ModifierKey>, 4> modifierNames()
    {
        const std::array<ModifierKey, 4> keys = getModifierKeys();
        using Modifier = Named<ModifierKey>;
        return {Modifier("Shift", keys[0]), Modifier("Ctrl", keys[1]), Modifier("Alt", keys[2]),
                Modifier("Meta", keys[3])};
    }

    static std::string toLower(std::string text)
    {
        std::transform(text.begin(), text.end(), text.begin(),
                       [](const unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
        return text;
    }

    template <typename Value, std::size_t Size>
    static const Value* find(const std::array<Named<Value>, Size>& names, const std::string& word)
    {
        const auto found = std::find_if(names.begin(), names.end(),
                                        [&](const Named<Value>& each) { return toLower(each.first) == toLower(word); });
        return found == names.end() ? nullptr : &found->second;
    }

    InputCommand read()
    {
        InputCommand command = readKind();
        using Kind = InputCommand::Kind;
        switch (command.kind) {
        case Kind::Move:
        case Kind::Hover:
            command.position = readPosition();
            break;
        case Kind::Drag:
            command.position = readPosition();
            command.button = readButton();
            break;
        case Kind::Press:
        case Kind::Release:
        case Kind::Click:
        case Kind::DoubleClick:
            command.button = readButton();
            break;
        case Kind::TypeKey:
            readChord(command);
            break;
        case Kind::PressKey:
        case Kind::ReleaseKey:
        case Kind::RepeatKey:
            command.key = readKey(takeWord("a key is"));
            break;
        case Kind::Modifiers:
            command.modifiers = readModifiers(takeWord("modifiers are"));
            break;
        case Kind::Leave:
        case Kind::LoseFocus:
            break;
        }
        if (m_next < m_words.size()) {
            fail(quote(m_words[m_next]) + " is one word too many");
        }
        return command;
    }

    InputCommand readKind()
    {
        using Kind = InputCommand::Kind;
        using Word = Named<Kind>;
        const std::array<Word, 14> kinds = {Word("move", Kind::Move),           Word("hover", Kind::Hover),
                                            Word("leave", Kind::Leave),         Word("press", Kind::Press),
                                            Word("release", Kind::Release),     Word("click", Kind::Click),
                                            Word("drag", Kind::Drag),           Word("doubleclick", Kind::DoubleClick),
                                            Word("key", Kind::TypeKey),         Word("keypress", Kind::PressKey),
                                            Word("repeat", Kind::RepeatKey),    Word("keyrelease", Kind::ReleaseKey),
                                            Word("modifiers", Kind::Modifiers), Word("losefocus", Kind::LoseFocus)};
        const std::string word = m_words[m_next++];
        const Kind* const kind = find(kinds, word);
        if (kind == nullptr) {
            fail(quote(word) + " is no command");
        }
        InputCommand command;
        command.kind = *kind;
        return command;
    }

    QPointF readPosition()
    {
        const double x = readNumber();
        return QPointF(x, readNumber());
    }

    double readNumber()
    {
        const std::string word = takeWord("a number is");
        bool isNumber = false;
        const double number = QString::fromStdString(word).toDouble(&isNumber);
        if (!isNumber || !std::isfinite(number)) {
            fail(quote(word) + " is no number");
        }
        return number;
    }

    Qt::MouseButton readButton()
    {
        if (m_next == m_words.size()) {
            return Qt::LeftButton;
        }
        const std::string word = m_words[m_next++];
        const auto names = buttons();
        const Qt::MouseButton* const button = find(names, word);
        if (button == nullptr) {
            fail(quote(word) + " is no button");
        }
        return *button;
    }

    // Modifiers and a key, parted by "+", which may be the key as well.
    void readChord(InputCommand& command)
    {
        std::string rest = takeWord("a key is");
        for (std::string::size_type plus = rest.find('+', 1); plus != std::string::npos && plus + 1 < rest.size();
             plus = rest.find('+', 1)) {
            command.modifiers |= readModifier(rest.substr(0, plus));
            rest.erase(0, plus + 1);
        }
        command.key = readKey(rest);
    }

    Qt::KeyboardModifiers readModifiers(const std::string& word)
    {
        Qt::KeyboardModifiers modifiers = Qt::NoModifier;
        if (toLower(word) == "none") {
            return modifiers;
        }
        std::istringstream names(word);
        for (std::string name; std::getline(names, name, '+');) {
            modifiers |= readModifier(name);
        }
        return modifiers;
    }

    Qt::KeyboardModifier readModifier(const std::string& name)
    {
        const auto names = modifierNames();
        const ModifierKey* const modifier = find(names, name);
        if (modifier == nullptr) {
            fail(quote(name) + " is no modifier");
        }
        return modifier->first;
    }

    int readKey(const std::string& name)
    {
        const auto names = modifierNames();
        if (const ModifierKey* const modifier = find(names, name); modifier != nullptr) {
            return modifier->second;
        }
        const QKeySequence sequence =
            QKeySequence::fromString(QString::fromStdString(name), QKeySequence::PortableText);
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
        const int key = sequence.isEmpty() ? 0 : sequence[0].toCombined();
#else
        const int key = sequence.isEmpty() ? 0 : sequence[0];
#endif
        // More than one key, one with modifiers, or none that Qt knows.
        if (sequence.count() != 1 || key == Qt::Key_unknown ||
            (key & static_cast<int>(Qt::KeyboardModifierMask)) != 0) {
            fail(quote(name) + " is no key");
        }
        return key;
    }

    // @param wanted with its verb, for the message that it is missing
    std::string takeWord(const std::string& wanted)
    {
        if (m_next == m_words.size()) {
            fail(wanted + " missing");
        }
        return m_words[m_next++];
    }

    static std::string quote(const std::string& text)
    {
        return '"' + text + '"';
    }

    [[noreturn]] void fail(const std::string& what) const
    {
        std::string command;
        for (const std::string& word : m_words) {
            command += (command.empty() ? "" : " ") + word;
        }
        throw std::invalid_argument("InputDriver does not understand " + quote(command) + ": " + what);
    }

    std::vector<std::string> m_words;
    std::size_t m_next = 0;
};

} // namespace quon::testing
