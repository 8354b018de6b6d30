// SPDX-License-Identifier: MIT
#include "Viewer/Tools/SelectionTool.h"

#include "Viewer/Model/NodeIds.h"
#include "Viewer/Model/Part.h"
#include "Viewer/Session/Preselection.h"
#include "Viewer/Session/SceneEditor.h"

#include <Interaction/Picker.h>
#include <Interaction/ToolInteractionContext.h>

#include <QCoreApplication>

#include <utility>

namespace quon::viewer {

namespace {

bool isBoxHint(const std::string& hint)
{
    return hint == "box" || hint == "box-add";
}

} // namespace

SelectionTool::SelectionTool(SceneEditor& editor, Preselection& preselection)
    : m_editor(editor)
    , m_preselection(preselection)
{
    retranslate();
}

void SelectionTool::setHovered(std::function<void(const osg::NodePtr&)> hovered)
{
    m_hovered = std::move(hovered);
}

void SelectionTool::pointAt(const osg::NodePtr& node)
{
    // By its id: nobody says here when the scene destroys it.
    m_pointedId = node == osg::NullFC ? 0 : osg::getContainerId(node);
}

bool SelectionTool::leaveStep()
{
    if (!m_band.isActive()) {
        return false;
    }
    cancel();
    return true;
}

void SelectionTool::cancel()
{
    m_press.cancel();
    m_drawsBand = false;
    m_band.stop();
    hover(osg::NullFC);
}

void SelectionTool::retranslate()
{
    setDescription(QCoreApplication::translate("SelectionTool",
                                               "Click selects a part, Ctrl+click adds it or takes it out, Shift+drag "
                                               "selects with a rectangle")
                       .toStdString());
}

Qt::CursorShape SelectionTool::getCursor() const
{
    return m_band.isActive() ? Qt::CrossCursor : Qt::ArrowCursor;
}

void SelectionTool::pointerMoved(interaction::ToolInteractionContext* context)
{
    // Unless a "hover" follows, a button is held.
    m_hovering = false;
    const osg::Pnt2f pointer = context->getPicker()->getPointer();
    if (m_press.move(pointer) && m_drawsBand) {
        m_band.start(m_press.getOrigin());
    }
    m_band.moveTo(pointer);
}

void SelectionTool::beginFrame(interaction::ToolInteractionContext* context)
{
    interaction::Picker* picker = context->getPicker();
    if (picker == nullptr) {
        return;
    }
    if (m_band.isActive()) {
        report(osg::NullFC);
        const std::vector<osg::NodePtr>& parts = pickInRectangle(*picker);
        m_band.setCount(static_cast<int>(parts.size()));
        m_preselection.show(parts);
    } else {
        // The picker knows whether anything moved since it was asked last.
        hover(m_hovering ? findPart(picker->getPickedNode(nullptr)) : findNodeById(m_pointedId));
    }
}

void SelectionTool::deactivateTool(interaction::ToolInteractionContext* context)
{
    m_hovering = false;
    cancel();
    AbstractInteractionTool::deactivateTool(context);
}

bool SelectionTool::startTool(interaction::ToolInteractionContext* context, const std::string& hint)
{
    if (!isOwnHint(hint) || context->getPicker() == nullptr) {
        return false;
    }
    m_band.stop();
    m_press.press(context->getPicker()->getPointer());
    m_drawsBand = isBoxHint(hint);
    return true;
}

bool SelectionTool::triggerTool(interaction::ToolInteractionContext* context, const std::string& hint)
{
    interaction::Picker* picker = context->getPicker();
    if (!isOwnHint(hint) || picker == nullptr) {
        return false;
    }
    if (m_press.release()) {
        click(*picker, hint);
    } else if (m_band.isActive() && isBoxHint(hint)) {
        // A copy: the list is the picker's.
        const std::vector<osg::NodePtr> parts = pickInRectangle(*picker);
        m_band.stop();
        if (hint == "box") {
            m_editor.select(parts);
        } else {
            m_editor.add(parts);
        }
    }
    m_drawsBand = false;
    return true;
}

bool SelectionTool::hoverTool(interaction::ToolInteractionContext* context, const std::string&)
{
    m_hovering = context->getPicker() != nullptr;
    return m_hovering;
}

bool SelectionTool::stopHoverTool(interaction::ToolInteractionContext*, const std::string&)
{
    m_hovering = false;
    hover(osg::NullFC);
    return true;
}

bool SelectionTool::isOwnHint(const std::string& hint) const
{
    return isPickHint(hint) || isBoxHint(hint);
}

void SelectionTool::click(interaction::Picker& picker, const std::string& hint)
{
    const osg::NodePtr part = findPart(picker.getPickedNode(nullptr));
    if (isBoxHint(hint)) {
        if (part != osg::NullFC) {
            m_editor.add({part});
        }
    } else if (hint == "toggle") {
        m_editor.toggle(part);
    } else if (part == osg::NullFC) {
        m_editor.select({});
    } else {
        m_editor.select({part});
    }
}

const std::vector<osg::NodePtr>& SelectionTool::pickInRectangle(interaction::Picker& picker) const
{
    picker.setFullyEnclosed(!m_band.isTouching());
    picker.setDepthSelection(!m_visibleOnly);
    RegionOption option(m_band.getRectangle());
    return picker.getPickedNodes(&option);
}

void SelectionTool::hover(const osg::NodePtr& part)
{
    m_preselection.show({part});
    report(part);
}

void SelectionTool::report(const osg::NodePtr& part)
{
    if (part != m_hoveredPart) {
        m_hoveredPart = part;
        if (m_hovered) {
            m_hovered(part);
        }
    }
}

} // namespace quon::viewer
