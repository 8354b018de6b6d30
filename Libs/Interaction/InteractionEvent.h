// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionExport.h>

#include <string>

namespace quon::interaction {

/**
 * Names what the user did and whom it is for.
 *
 * The category reads `tool:hint`; it is split once, at its first colon, so that receivers compare the tool part and
 * pass the hint part on without parsing. The event is a verb: "start", "process", "stop", "trigger", "hover",
 * "stopHover", "press" or "release". All four are byte strings, compared exactly and case-sensitively.
 */
class INTERACTION_EXPORT InteractionEvent {
public:
    /**
     * Splits @p category at its first colon; no input is rejected.
     *
     * Without a colon the whole category is the tool and the hint is empty. Further colons stay inside the hint.
     * Without memory there is std::bad_alloc and no event.
     *
     * @param category for example `mode:measure` or `qt-key:ctrl+65`; may be empty
     * @param event kept whole, a colon in it means nothing
     */
    InteractionEvent(const std::string& category, const std::string& event);

    /** The category as passed to the constructor. */
    const std::string& getCategory() const { return m_category; }

    /** The event name as passed to the constructor. */
    const std::string& getEvent() const { return m_event; }

    /** The part of the category before its first colon, the whole category when it has none. */
    const std::string& getTool() const { return m_tool; }

    /** The part of the category after its first colon, empty when it has none. */
    const std::string& getHint() const { return m_hint; }

private:
    std::string m_category;
    std::string m_event;
    std::string m_tool;
    std::string m_hint;
};

} // namespace quon::interaction
