// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Tools/RubberBand.h"
#include "Viewer/Tools/ViewerTool.h"

#include <InteractionTools/ClickOrDrag.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>

#include <functional>
#include <string>
#include <vector>

namespace quon::interaction {
class Picker;
}

namespace quon::viewer {

class Preselection;
class SceneEditor;

/**
 * Selects the part under the pointer, or the parts in a rectangle; findPart() says what a part is.
 *
 * | hint | click on a part | click on empty space | drag |
 * |---|---|---|---|
 * | select | selects it and nothing else | clears the selection | nothing |
 * | toggle | adds it or takes it out | nothing | nothing |
 * | box | adds it | nothing | selects the parts in the rectangle and nothing else |
 * | box-add | adds it | nothing | adds the parts in the rectangle |
 *
 * A press that moved three pixels or more away before its release is a drag and never ends in a click. A rectangle
 * drawn to the right holds what it encloses as a whole, one drawn to the left whatever it touches; hidden parts never.
 * The selection changes once, when the button is released; until then the parts in the rectangle are preselected, and
 * while no button is held the part under the pointer is. Leaving the step takes the rectangle away, and the release
 * then selects nothing.
 *
 * What is picked while the pointer moves is picked at most once per frame, with the pointer where it is then.
 */
class SelectionTool : public ViewerTool {
public:
    /**
     * Both are borrowed and must outlive the tool.
     *
     * @param preselection shows what would be selected: the part under the pointer, the parts in the rectangle
     */
    SelectionTool(SceneEditor& editor, Preselection& preselection);

    /** @param hovered called with the part under the pointer when that changes, with null when hovering ends */
    void setHovered(std::function<void(const osg::NodePtr&)> hovered);

    /** The rectangle, to be painted over the scene. */
    RubberBand& getRubberBand() { return m_band; }

    /** Sets whether a rectangle leaves out the parts that are hidden behind others at all its pixels; false at first.
     */
    void setVisibleOnly(bool visibleOnly) { m_visibleOnly = visibleOnly; }
    bool isVisibleOnly() const { return m_visibleOnly; }

    /**
     * Notes a node that the user points at outside of the view: it is preselected from the next frame on, as long as
     * the pointer is not over the view. Null for none.
     */
    void pointAt(const osg::NodePtr& node);

    bool leaveStep() override;
    void cancel() override;
    void retranslate() override;
    Qt::CursorShape getCursor() const override;
    void pointerMoved(interaction::ToolInteractionContext* context) override;
    void beginFrame(interaction::ToolInteractionContext* context) override;

    void deactivateTool(interaction::ToolInteractionContext* context) override;
    bool startTool(interaction::ToolInteractionContext* context, const std::string& hint) override;
    bool triggerTool(interaction::ToolInteractionContext* context, const std::string& hint) override;
    bool hoverTool(interaction::ToolInteractionContext* context, const std::string& hint) override;
    bool stopHoverTool(interaction::ToolInteractionContext* context, const std::string& hint) override;

private:
    bool isOwnHint(const std::string& hint) const;
    void click(interaction::Picker& picker, const std::string& hint);
    const std::vector<osg::NodePtr>& pickInRectangle(interaction::Picker& picker) const;
    void hover(const osg::NodePtr& part);
    void report(const osg::NodePtr& part);

    SceneEditor& m_editor;
    Preselection& m_preselection;
    std::function<void(const osg::NodePtr&)> m_hovered;
    RubberBand m_band;
    bool m_visibleOnly = false;
    interaction::ClickOrDrag m_press;
    bool m_drawsBand = false;    ///< the press draws a rectangle once it is a drag
    bool m_hovering = false;     ///< the last movement was one without a button
    osg::UInt32 m_pointedId = 0; ///< of the node pointed at elsewhere; 0 for none
    osg::NodePtr m_hoveredPart;  ///< reported last; only compared
};

} // namespace quon::viewer
