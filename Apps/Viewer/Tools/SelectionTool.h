// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/AbstractInteractionTool.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGVector.h>

#include <functional>
#include <string>

namespace quon::interaction {
class NodeSelectionModel;
}

namespace quon::viewer {

/**
 * Selects the part under the pointer; findPart() says what that is.
 *
 * A click with the hint "select" makes that part the selection, on empty space it clears the selection. A click with
 * the hint "toggle" adds the part or takes it out, on empty space it does nothing. A press that moved three pixels or
 * more away before its release was a drag and selects nothing. Hovering reports the part under the pointer.
 */
class SelectionTool : public interaction::AbstractInteractionTool {
public:
    /** @param model borrowed, must not be null (not checked) and must outlive the tool */
    explicit SelectionTool(interaction::NodeSelectionModel* model);

    /** @param selectionChanged called after a click that may have changed the selection */
    void setSelectionChanged(std::function<void()> selectionChanged);

    /** @param hovered called with the part under the pointer, and with null when hovering ends */
    void setHovered(std::function<void(const osg::NodePtr&)> hovered);

    /** Forgets a press: the "trigger" that ends it will select nothing. For presses that end without a release. */
    void cancel();

    void deactivateTool(interaction::ToolInteractionContext* context) override;
    bool startTool(interaction::ToolInteractionContext* context, const std::string& hint) override;
    bool processTool(interaction::ToolInteractionContext* context, const std::string& hint) override;
    bool triggerTool(interaction::ToolInteractionContext* context, const std::string& hint) override;
    bool hoverTool(interaction::ToolInteractionContext* context, const std::string& hint) override;
    bool stopHoverTool(interaction::ToolInteractionContext* context, const std::string& hint) override;

private:
    void noteMovement(interaction::ToolInteractionContext* context);
    void report(const osg::NodePtr& node);

    interaction::NodeSelectionModel* m_model;
    std::function<void()> m_selectionChanged;
    std::function<void(const osg::NodePtr&)> m_hovered;
    osg::Pnt2f m_pressed;
    bool m_click = false; ///< pressed, not moved away since
};

} // namespace quon::viewer
