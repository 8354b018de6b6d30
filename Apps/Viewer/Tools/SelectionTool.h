// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Tools/ViewerTool.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGVector.h>

#include <functional>
#include <string>

namespace quon::viewer {

class SceneEditor;

/**
 * Selects the part under the pointer; findPart() says what that is.
 *
 * A click with the hint "select" makes that part the selection, on empty space it clears the selection. A click with
 * the hint "toggle" adds the part or takes it out, on empty space it does nothing. A press that moved three pixels or
 * more away before its release was a drag and selects nothing. Hovering reports the part under the pointer.
 */
class SelectionTool : public ViewerTool {
public:
    /** @param editor borrowed, must outlive the tool */
    explicit SelectionTool(SceneEditor& editor);

    /** @param hovered called with the part under the pointer, and with null when hovering ends */
    void setHovered(std::function<void(const osg::NodePtr&)> hovered);

    void cancel() override;
    void retranslate() override;

    void deactivateTool(interaction::ToolInteractionContext* context) override;
    bool startTool(interaction::ToolInteractionContext* context, const std::string& hint) override;
    bool processTool(interaction::ToolInteractionContext* context, const std::string& hint) override;
    bool triggerTool(interaction::ToolInteractionContext* context, const std::string& hint) override;
    bool hoverTool(interaction::ToolInteractionContext* context, const std::string& hint) override;
    bool stopHoverTool(interaction::ToolInteractionContext* context, const std::string& hint) override;

private:
    void noteMovement(interaction::ToolInteractionContext* context);
    void report(const osg::NodePtr& node);

    SceneEditor& m_editor;
    std::function<void(const osg::NodePtr&)> m_hovered;
    osg::Pnt2f m_pressed;
    bool m_click = false; ///< pressed, not moved away since
};

} // namespace quon::viewer
