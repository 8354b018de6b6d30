// SPDX-License-Identifier: MIT
#include <Interaction/ToolInteractionContext.h>

#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionTool.h>

namespace quon::interaction {

ToolInteractionContext::ToolInteractionContext(PreferredPosition position)
    : MultimodeInteractionContext(position)
    , m_tool(nullptr)
    , m_toolActive(false)
    , m_toolCategory("tool")
    , m_picker(nullptr)
{}

void ToolInteractionContext::setTool(InteractionTool* tool)
{
    if (tool == m_tool) {
        return;
    }
    if (m_tool != nullptr && m_toolActive) {
        m_tool->deactivateTool(this);
    }
    m_tool = tool;
    if (tool != nullptr && m_toolActive) {
        tool->activateTool(this);
    }
}

InteractionTool* ToolInteractionContext::getTool() const
{
    return m_tool;
}

void ToolInteractionContext::setToolCategory(const std::string& category)
{
    m_toolCategory = category;
}

const std::string& ToolInteractionContext::getToolCategory() const
{
    return m_toolCategory;
}

Picker* ToolInteractionContext::getPicker() const
{
    return m_picker;
}

void ToolInteractionContext::contextAdded(InteractionManager* manager)
{
    MultimodeInteractionContext::contextAdded(manager);
    m_toolActive = true;
    if (m_tool != nullptr) {
        m_tool->activateTool(this);
    }
}

void ToolInteractionContext::contextRemoved(InteractionManager* manager)
{
    m_toolActive = false;
    if (m_tool != nullptr) {
        m_tool->deactivateTool(this);
    }
    // Ends the modes: the tool hears of the empty mode after it was deactivated.
    MultimodeInteractionContext::contextRemoved(manager);
}

void ToolInteractionContext::contextRaised(InteractionManager* manager)
{
    AbstractInteractionContext::contextRaised(manager);
}

void ToolInteractionContext::contextLowered(InteractionManager* manager)
{
    AbstractInteractionContext::contextLowered(manager);
}

bool ToolInteractionContext::triggerEvent(InteractionManager* manager, const InteractionEvent& event)
{
    if (m_tool == nullptr || event.getTool() != m_toolCategory) {
        return MultimodeInteractionContext::triggerEvent(manager, event);
    }

    const std::string& name = event.getEvent();
    if (name == "trigger") {
        return m_tool->triggerTool(this, event.getHint());
    }
    if (name == "start") {
        return m_tool->startTool(this, event.getHint());
    }
    if (name == "stop") {
        return m_tool->stopTool(this, event.getHint());
    }
    if (name == "process") {
        return m_tool->processTool(this, event.getHint());
    }
    if (name == "hover") {
        return m_tool->hoverTool(this, event.getHint());
    }
    if (name == "stopHover") {
        return m_tool->stopHoverTool(this, event.getHint());
    }
    // Not handed on, even when the mode category is the same as the tool category.
    return false;
}

bool ToolInteractionContext::selectMode(const std::string& mode)
{
    return m_tool != nullptr && m_tool->setToolMode(this, mode);
}

void ToolInteractionContext::setPicker(Picker* picker)
{
    m_picker = picker;
}

} // namespace quon::interaction
