// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionExport.h>
#include <Interaction/MultimodeInteractionContext.h>

#include <string>

namespace quon::interaction {

class InteractionTool;
class Picker;

/**
 * Drives one interaction tool.
 *
 * The tool is active while the context is in a manager's stack, on top or not. Events of the tool category become calls
 * of the tool: the category `tool:select` with the event "start" calls InteractionTool::startTool() with the hint
 * `select`. Everything else falls through to the modes, and a change of mode reaches the tool as
 * InteractionTool::setToolMode().
 *
 * @par Ownership
 * Tool and picker are borrowed: both outlive their use by the context. The picker is for the tool, the context itself
 * never calls it.
 */
class INTERACTION_EXPORT ToolInteractionContext : public MultimodeInteractionContext {
public:
    /** Creates a context without tool and picker whose tool category is "tool". */
    explicit ToolInteractionContext(PreferredPosition position);

    /**
     * Replaces the tool.
     *
     * While the context is in a manager's stack, calls deactivateTool() on the tool so far, then activateTool() on the
     * new one. Setting the current tool again does nothing: when activateTool() throws, which leaves the new tool set,
     * set null first. activateTool() may set another tool, deactivateTool() must not: that one would be activated and
     * then replaced without being deactivated.
     *
     * @param tool borrowed; null leaves the context without a tool, which refuses every mode
     */
    void setTool(InteractionTool* tool);

    /** Returns the tool that the context drives, null without one. */
    InteractionTool* getTool() const;

    /** Sets the tool part of the categories whose events go to the tool. */
    void setToolCategory(const std::string& category);

    /** Returns the tool part of the categories whose events go to the tool. */
    const std::string& getToolCategory() const;

    /**
     * Stores the picker that the tool uses to find what lies under the pointer.
     *
     * @param picker borrowed, may be null
     */
    virtual void setPicker(Picker* picker);

    /** Returns the picker that was stored last, null without one. */
    Picker* getPicker() const;

    /** Does what the base does, then activates the tool. */
    void contextAdded(InteractionManager* manager) override;

    /** Deactivates the tool, then ends the modes, which reaches the tool once more, and does what the base does. */
    void contextRemoved(InteractionManager* manager) override;

    void contextRaised(InteractionManager* manager) override;
    void contextLowered(InteractionManager* manager) override;

    /**
     * Calls the tool on "trigger", "start", "stop", "process", "hover" and "stopHover" of the tool category.
     *
     * Any other event name of the tool category is not consumed and not offered to the modes. Events of other
     * categories, and all events while there is no tool, are handled as the base does.
     *
     * @return what the tool or the mode handling answered
     */
    bool triggerEvent(InteractionManager* manager, const InteractionEvent& event) override;

    /** Returns what InteractionTool::setToolMode() answers, false without a tool. */
    bool selectMode(const std::string& mode) override;

private:
    InteractionTool* m_tool;
    bool m_toolActive;
    std::string m_toolCategory;
    Picker* m_picker;
};

} // namespace quon::interaction
