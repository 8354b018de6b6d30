// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <vector>

/**
 * The process-wide registry of shortcuts: what a host lists in its help and its settings.
 *
 * The registry only keeps records; it neither triggers anything nor resolves conflicts. Equal registrations are kept
 * as entries of their own.
 *
 * @par Threading
 * User-interface thread only, no locks.
 */
class koShortcut {
public:
    /** What an entry is bound to. */
    enum Kind {
        Key,         ///< the code is a Qt::Key
        MouseButton, ///< the code is a Qt::MouseButton
    };

    /** One registration, as it was passed. */
    struct Entry {
        QString group;       ///< translated heading under which the shortcut is listed
        Kind kind;           ///< what the code is
        int code;            ///< a Qt::Key or a Qt::MouseButton
        int modifiers;       ///< Qt::KeyboardModifiers
        QString description; ///< what the shortcut does, in the user's language
    };

    /**
     * Hears about registrations. Every operation does nothing unless overridden.
     *
     * A listener may add and remove entries and listeners, itself included, while it is being told.
     */
    class Listener {
    public:
        virtual ~Listener() = default;

        /** Called after @p entry joined the entries. */
        virtual void entryAdded(const Entry& entry);

        /** Called after @p entry left the entries. */
        virtual void entryRemoved(const Entry& entry);
    };

    koShortcut() = delete;

    /** Appends an entry for a key and calls Listener::entryAdded(). Any number is accepted as key and modifiers. */
    static void addKey(const QString& group, int key, int modifiers, const QString& description);

    /**
     * Removes the most recently added entry with this group, key and modifiers and calls Listener::entryRemoved().
     *
     * One entry a call, whatever its description; without such an entry the call is ignored.
     */
    static void subKey(const QString& group, int key, int modifiers);

    /** Like addKey(), for a mouse button. */
    static void addMouseButton(const QString& group, int button, int modifiers, const QString& description);

    /** Like subKey(), for a mouse button. */
    static void subMouseButton(const QString& group, int button, int modifiers);

    /** Returns the entries in order of registration. */
    static const std::vector<Entry>& getEntries();

    /** Removes all entries, the most recently added first, and calls Listener::entryRemoved() for each. */
    static void clear();

    /**
     * Adds @p listener behind the others. Null is ignored, and so is a listener that is there already.
     *
     * @param listener borrowed: remove it before destroying it
     */
    static void addListener(Listener* listener);

    /** Removes @p listener, which is not called again. Null is ignored, and so is an unknown listener. */
    static void removeListener(Listener* listener);

    /**
     * Returns the text to show for @p entry: the modifiers and the key as the platform writes them, for example
     * "Ctrl+A", or the modifiers and the button, for example "Ctrl+Left button".
     *
     * The names of buttons are translated in the context "koShortcut".
     */
    static QString toText(const Entry& entry);
};
