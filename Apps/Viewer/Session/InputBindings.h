// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <Qt>

#include <map>
#include <string>

class QKeyEvent;

namespace quon::interaction {
class QtEventMapper;
}

namespace quon::viewer {

/** A key and the modifiers to hold with it, as an event mapper takes them. */
struct KeyBinding {
    /** The modifiers that count: meta, keypad and group switch never reach a binding. */
    static constexpr int AllModifiers =
        static_cast<int>(Qt::ShiftModifier) | static_cast<int>(Qt::ControlModifier) | static_cast<int>(Qt::AltModifier);

    int key = 0;       ///< a Qt::Key, 0 for none
    int modifiers = 0; ///< Qt::KeyboardModifiers; 0 fires whatever modifiers are held

    bool isNone() const { return key == 0; }

    /** The key as the platform writes it, empty for none. */
    QString toText() const;

    /** The key as it is written to files, the same on every platform and in every language; empty for none. */
    QString toPortableText() const;

    /**
     * Reads what toPortableText() wrote.
     *
     * @param isValid false afterwards for a text that names no key or one that no event mapper would hear of
     */
    static KeyBinding fromPortableText(const QString& text, bool& isValid);

    /** Returns the binding that @p event fires, none for a modifier alone and for keys that have no name. */
    static KeyBinding fromEvent(const QKeyEvent& event);

    bool operator==(const KeyBinding& other) const { return key == other.key && modifiers == other.modifiers; }
    bool operator!=(const KeyBinding& other) const { return !(*this == other); }
};

/**
 * The bindings of keys and mouse buttons, in an event mapper and with it in the shortcut registry.
 *
 * Keys belong to the commands of Command::getAll(); each has one or none, and the user may change it. Mouse buttons
 * belong to tools and navigation and stay as they are.
 *
 * The registry takes out the most recent of several equal entries, whatever its description, so that taking out one of
 * two bindings of the same key could leave the wrong one. Every change therefore takes all bindings out and adds them
 * again, which also keeps the registry in the order of the menus.
 */
class InputBindings : public QObject {
    Q_OBJECT

public:
    /**
     * Adds the default bindings.
     *
     * @param mapper borrowed, must outlive the bindings
     */
    explicit InputBindings(interaction::QtEventMapper& mapper);

    /** Removes the bindings. */
    ~InputBindings() override;

    InputBindings(const InputBindings&) = delete;
    InputBindings& operator=(const InputBindings&) = delete;

    /** Returns the heading of the bindings in the shortcut registry, in the user's language. */
    static QString getGroup();

    /**
     * Returns the heading of the keys that work without a binding, in the user's language: tools get them as generic
     * key events when no binding took them.
     */
    static QString getFreeKeyGroup();

    /** Returns the key of a command, none for an unknown one. */
    KeyBinding getKey(const std::string& command) const;

    /** Returns @p text with the key of a command in brackets behind it, for tooltips; without a key the text alone. */
    QString withKey(const QString& text, const std::string& command) const;

    /** Returns the key that a command has before the user changes it, none for an unknown one. */
    static KeyBinding getDefaultKey(const std::string& command);

    /**
     * Gives a command another key; none leaves it without. An unknown command is ignored, and so is the key it has.
     *
     * Other commands keep theirs: where two have the same key, both fire.
     */
    void setKey(const std::string& command, const KeyBinding& key);

    /** Gives a command its default key again. */
    void restoreKey(const std::string& command);

    /** Gives all commands their default keys again. */
    void restoreAllKeys();

    /** Returns the commands whose key is not the default one, with their keys. */
    const std::map<std::string, KeyBinding>& getChangedKeys() const { return m_changedKeys; }

    /** Takes over what getChangedKeys() returned; other commands get their default keys. */
    void setChangedKeys(const std::map<std::string, KeyBinding>& keys);

    /**
     * Takes the bindings out of the mapper until retranslate(); call it before the language changes.
     *
     * The mapper finds its entries in the registry by their translated heading: in the new language it would not find
     * those of the old one.
     */
    void remove();

    /** Adds all bindings again with their descriptions in the user's language, after that changed. */
    void retranslate();

signals:
    /**
     * Bindings are about to leave the mapper: end what is pending now. A key that is down would not end any more what
     * it started once its binding is gone.
     */
    void aboutToChange();

    /** Keys or their descriptions changed. */
    void changed();

private:
    template <class Change>
    void rebuild(const Change& change);

    void addAll();
    void removeAll();

    interaction::QtEventMapper& m_mapper;
    std::map<std::string, KeyBinding> m_changedKeys;
    bool m_added = false;
};

} // namespace quon::viewer
