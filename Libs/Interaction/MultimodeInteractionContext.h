// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/AbstractInteractionContext.h>
#include <Interaction/InteractionExport.h>

#include <list>
#include <string>

namespace quon::interaction {

/**
 * A context that runs named modes.
 *
 * The modes started form a stack without repetitions whose front is the current mode; every change of the current mode
 * is handed to selectMode(), which a subclass implements. Events of the mode category start and stop modes: the
 * category `mode:measure` with the event "start" starts the mode `measure`.
 *
 * @par Exceptions
 * Without memory startMode() and stopMode() throw std::bad_alloc before they call selectMode(), and nothing has
 * changed. What selectMode() throws passes through: a mode that was to start is not on the stack, one that was stopped
 * is off it; when a context that throws is removed, its modes stay and end when it is removed the next time.
 */
class INTERACTION_EXPORT MultimodeInteractionContext : public AbstractInteractionContext {
public:
    /** Creates a context without modes whose mode category is "mode". */
    explicit MultimodeInteractionContext(PreferredPosition position);

    /** Sets the tool part of the categories whose events start and stop modes. */
    void setModeCategory(const std::string& category);

    /** Returns the tool part of the categories whose events start and stop modes. */
    const std::string& getModeCategory() const;

    /**
     * Makes @p mode the current mode.
     *
     * Calls selectMode() first, also when @p mode is current already. When it is refused the stack stays as it is.
     *
     * @param mode may be empty, which is a mode like any other here
     * @return what selectMode() answered
     */
    bool startMode(const std::string& mode);

    /**
     * Takes @p mode off the stack.
     *
     * When it was the current mode, selectMode() is then called with the mode that is current now, or with an empty
     * string when none is left; its answer is ignored. Stopping a mode that is not current calls nothing.
     *
     * @return whether the mode was in the stack; an unknown mode is ignored
     */
    bool stopMode(const std::string& mode);

    void contextAdded(InteractionManager* manager) override;

    /** Ends all modes with one call of selectMode() with an empty string, then does what the base does. */
    void contextRemoved(InteractionManager* manager) override;

    /**
     * Starts or stops the mode that the hint of @p event names, on "start" and "stop" of the mode category.
     *
     * @return what startMode() or stopMode() answered; false for any other category or event name
     */
    bool triggerEvent(InteractionManager* manager, const InteractionEvent& event) override;

    /**
     * Called to make @p mode the current mode, before the mode is put on the stack and after it was taken off.
     *
     * @param mode empty when no mode is current any more
     * @return whether the mode was accepted
     */
    virtual bool selectMode(const std::string& mode) = 0;

private:
    std::list<std::string> m_modes;
    std::string m_modeCategory;
};

} // namespace quon::interaction
