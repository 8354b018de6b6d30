// SPDX-License-Identifier: MIT
#include "Viewer/Tools/SelectionTool.h"

#include "Viewer/Model/Part.h"
#include "Viewer/Session/SceneEditor.h"

#include <Interaction/Picker.h>
#include <Interaction/ToolInteractionContext.h>

#include <QCoreApplication>

#include <utility>

namespace quon::viewer {

namespace {

constexpr float DragDistance = 3;

} // namespace

SelectionTool::SelectionTool(SceneEditor& editor)
    : m_editor(editor)
{
    retranslate();
}

void SelectionTool::setHovered(std::function<void(const osg::NodePtr&)> hovered)
{
    m_hovered = std::move(hovered);
}

void SelectionTool::cancel()
{
    m_click = false;
}

void SelectionTool::retranslate()
{
    setDescription(
        QCoreApplication::translate("SelectionTool", "Click selects a part, Ctrl+click adds it or takes it out")
            .toStdString());
}

void SelectionTool::deactivateTool(interaction::ToolInteractionContext* context)
{
    cancel();
    report(osg::NullFC);
    AbstractInteractionTool::deactivateTool(context);
}

bool SelectionTool::startTool(interaction::ToolInteractionContext* context, const std::string& hint)
{
    if (!isPickHint(hint) || context->getPicker() == nullptr) {
        return false;
    }
    m_pressed = context->getPicker()->getPointer();
    m_click = true;
    return true;
}

bool SelectionTool::processTool(interaction::ToolInteractionContext* context, const std::string&)
{
    noteMovement(context);
    return true;
}

bool SelectionTool::triggerTool(interaction::ToolInteractionContext* context, const std::string& hint)
{
    if (!isPickHint(hint) || context->getPicker() == nullptr) {
        return false;
    }
    // Moves reach the tool only while the modifiers stay as they were: the last stretch is measured here.
    noteMovement(context);
    if (!m_click) {
        return true;
    }
    m_click = false;

    const osg::NodePtr node = findPart(context->getPicker()->getPickedNode(nullptr));
    if (hint == "toggle") {
        m_editor.toggle(node);
    } else if (node == osg::NullFC) {
        m_editor.select({});
    } else {
        m_editor.select({node});
    }
    return true;
}

bool SelectionTool::hoverTool(interaction::ToolInteractionContext* context, const std::string&)
{
    if (context->getPicker() == nullptr) {
        return false;
    }
    if (m_hovered) {
        m_hovered(findPart(context->getPicker()->getPickedNode(nullptr)));
    }
    return true;
}

bool SelectionTool::stopHoverTool(interaction::ToolInteractionContext*, const std::string&)
{
    report(osg::NullFC);
    return true;
}

void SelectionTool::noteMovement(interaction::ToolInteractionContext* context)
{
    if (context->getPicker() != nullptr &&
        context->getPicker()->getPointer().dist2(m_pressed) >= DragDistance * DragDistance) {
        m_click = false;
    }
}

void SelectionTool::report(const osg::NodePtr& node)
{
    if (m_hovered) {
        m_hovered(node);
    }
}

} // namespace quon::viewer
