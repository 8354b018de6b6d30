// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/InteractionExport.h>

#include <string>

namespace quon::interaction {

class ToolInteractionContext;

/**
 * Does the actual work of an interaction (selecting, measuring, moving) on behalf of a ToolInteractionContext.
 *
 * Every event operation receives the calling context and the hint part of the event, and returns whether the event was
 * consumed. AbstractInteractionTool gives every operation a default.
 *
 * @par Ownership
 * Tools are borrowed by their contexts and destroyed by their creator through their concrete type. There is no virtual
 * destructor: never delete a tool through this interface.
 */
class INTERACTION_EXPORT InteractionTool {
public:
    /**
     * Called when another mode of the context becomes current.
     *
     * @param mode empty when no mode is current any more
     * @return whether the tool accepts the mode
     */
    virtual bool setToolMode(ToolInteractionContext* context, const std::string& mode) = 0;

    /** Called when the context enters a manager's stack, or when a context that is in one is given the tool. */
    virtual void activateTool(ToolInteractionContext* context) = 0;

    /** Called when the context leaves the manager's stack, or is given another tool while it is in one. */
    virtual void deactivateTool(ToolInteractionContext* context) = 0;

    /** Returns whether the tool is between activateTool() and deactivateTool(). */
    virtual bool isActive() const = 0;

    /** Called on "start": a press, from which the pointer may be dragged. */
    virtual bool startTool(ToolInteractionContext* context, const std::string& hint) = 0;

    /** Called on "process": the pointer moves while pressed. */
    virtual bool processTool(ToolInteractionContext* context, const std::string& hint) = 0;

    /** Called on "stop": the press ends. */
    virtual bool stopTool(ToolInteractionContext* context, const std::string& hint) = 0;

    /** Called on "trigger": the press has ended as a click or key stroke that counts, after "stop". */
    virtual bool triggerTool(ToolInteractionContext* context, const std::string& hint) = 0;

    /** Called on "hover": the pointer moves without anything pressed. */
    virtual bool hoverTool(ToolInteractionContext* context, const std::string& hint) = 0;

    /** Called on "stopHover": hovering has ended. */
    virtual bool stopHoverTool(ToolInteractionContext* context, const std::string& hint) = 0;

    /** Returns whether @p hint asks for picking; the tools' own test, the context does not call it. */
    virtual bool isPickHint(const std::string& hint) const = 0;
};

} // namespace quon::interaction
