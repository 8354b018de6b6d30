// SPDX-License-Identifier: MIT
#pragma once

namespace quon::interaction {
class QtEventMapper;
}

namespace quon::viewer {

/**
 * The bindings of keys and mouse buttons, in an event mapper and with it in the shortcut registry.
 *
 * Keys belong to the commands of Command::getAll(), mouse buttons to tools and navigation.
 */
class InputBindings {
public:
    /**
     * Adds the default bindings.
     *
     * @param mapper borrowed, must outlive the bindings
     */
    explicit InputBindings(interaction::QtEventMapper& mapper);

    /** Removes the bindings. */
    ~InputBindings();

    InputBindings(const InputBindings&) = delete;
    InputBindings& operator=(const InputBindings&) = delete;

    /** Adds all bindings again with their descriptions in the user's language, after that changed. */
    void retranslate();

private:
    void addAll();
    void removeAll();

    interaction::QtEventMapper& m_mapper;
};

} // namespace quon::viewer
