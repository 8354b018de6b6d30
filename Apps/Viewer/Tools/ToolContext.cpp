// SPDX-License-Identifier: MIT
#include "Viewer/Tools/ToolContext.h"

#include "Viewer/Tools/ViewerTool.h"

#include <Interaction/InteractionEvent.h>
#include <Interaction/Picker.h>
#include <Interaction/QtEventMapper.h>

#include <Qt>

#include <algorithm>
#include <utility>

namespace quon::viewer {

namespace {

// With whatever modifiers, which are written before the key.
bool isEscape(const std::string& keyText)
{
    static const std::string escape = interaction::QtEventMapper::qtKeyEventToString(Qt::Key_Escape, Qt::NoModifier);
    return keyText.substr(keyText.rfind('+') + 1) == escape;
}

} // namespace

ToolContext::ToolContext()
    : ToolInteractionContext(Tool)
{}

void ToolContext::addTool(const std::string& mode, ViewerTool* tool)
{
    m_tools[mode] = tool;
    if (mode == m_mode) {
        setTool(tool);
    }
}

ViewerTool* ToolContext::getCurrentTool() const
{
    const auto tool = m_tools.find(m_mode);
    return tool == m_tools.end() ? nullptr : tool->second;
}

void ToolContext::setModeChanged(std::function<void()> changed)
{
    m_modeChanged = std::move(changed);
}

void ToolContext::setIdleEscape(std::function<bool()> escape)
{
    m_idleEscape = std::move(escape);
}

void ToolContext::contextRemoved(interaction::InteractionManager* manager)
{
    ToolInteractionContext::contextRemoved(manager);
    m_modes.clear();
}

void ToolContext::setFrameWanted(std::function<void()> wanted)
{
    m_frameWanted = std::move(wanted);
}

void ToolContext::beginFrame()
{
    if (ViewerTool* tool = getCurrentTool(); tool != nullptr) {
        tool->beginFrame(this);
    }
}

void ToolContext::pointerMoved(const osg::Pnt2f& position)
{
    ToolInteractionContext::pointerMoved(position);
    if (getPicker() == nullptr) {
        return;
    }
    // Whoever reports the pointer may report the place it is at.
    const osg::Pnt2f before = getPicker()->getPointer();
    getPicker()->setPointer(position);
    ViewerTool* tool = getCurrentTool();
    if (tool != nullptr && position != before) {
        tool->pointerMoved(this);
        wantFrame();
    }
}

void ToolContext::cameraMoved(const osg::Matrix& camera)
{
    ToolInteractionContext::cameraMoved(camera);
    if (getPicker() != nullptr) {
        getPicker()->setCamera(camera);
    }
}

bool ToolContext::triggerEvent(interaction::InteractionManager* manager, const interaction::InteractionEvent& event)
{
    if (event.getTool() == "qt-key" && event.getEvent() == "press" && isEscape(event.getHint())) {
        return escape();
    }
    if (event.getTool() == getToolCategory() && event.getEvent() == "hover") {
        wantFrame();
    }
    const bool consumed = ToolInteractionContext::triggerEvent(manager, event);
    if (consumed && event.getTool() == getModeCategory()) {
        noteMode(event.getHint(), event.getEvent() == "start");
    }
    return consumed;
}

bool ToolContext::selectMode(const std::string& mode)
{
    const auto tool = m_tools.find(mode);
    if (tool == m_tools.end()) {
        return false;
    }
    if (mode != m_mode) {
        m_mode = mode;
        setTool(tool->second);
        if (m_modeChanged) {
            m_modeChanged();
        }
    }
    return true;
}

void ToolContext::noteMode(const std::string& mode, const bool started)
{
    m_modes.erase(std::remove(m_modes.begin(), m_modes.end(), mode), m_modes.end());
    if (started) {
        m_modes.insert(m_modes.begin(), mode);
    }
}

bool ToolContext::escape()
{
    ViewerTool* tool = getCurrentTool();
    if (tool != nullptr && tool->leaveStep()) {
        return true;
    }
    if (!m_mode.empty()) {
        // A copy: stopping the mode changes the member.
        const std::string mode = m_mode;
        noteMode(mode, false);
        return stopMode(mode);
    }
    return m_idleEscape && m_idleEscape();
}

void ToolContext::wantFrame()
{
    if (m_frameWanted) {
        m_frameWanted();
    }
}

} // namespace quon::viewer
