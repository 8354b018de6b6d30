// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/ToolInteractionContext.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace quon::viewer {

class ViewerTool;

/**
 * The context of the viewer's tools: each mode has one, the empty mode the one that is there when no mode runs.
 *
 * Events of the category "mode:NAME" start and stop modes. Keeps its picker's pointer and camera up to date with what
 * the manager reports. Escape, which is no binding, arrives as a generic key event and leaves the innermost thing that
 * is under way: a step of the tool, else the mode, else whatever setIdleEscape() says.
 */
class ToolContext : public interaction::ToolInteractionContext {
public:
    ToolContext();

    /**
     * Gives a mode its tool.
     *
     * @param mode the empty one is the tool that works without any mode; it is set at once
     * @param tool borrowed, must not be null (not checked) and must outlive the context
     */
    void addTool(const std::string& mode, ViewerTool* tool);

    /** Returns the current mode, empty for none. */
    const std::string& getCurrentMode() const { return m_mode; }

    /** Returns the modes that events started and nobody ended, the current one first. */
    const std::vector<std::string>& getModes() const { return m_modes; }

    /** Returns the tool of the current mode; null when there is none. */
    ViewerTool* getCurrentTool() const;

    /** @param changed called after every change of the current mode */
    void setModeChanged(std::function<void()> changed);

    /** @param escape called on Escape when nothing is under way; returns whether there was something to do */
    void setIdleEscape(std::function<bool()> escape);

    /** @param wanted called when the tool may have something to do at the next frame: the pointer moved or hovers */
    void setFrameWanted(std::function<void()> wanted);

    /** Lets the current tool catch up with the pointer, see ViewerTool::beginFrame(). */
    void beginFrame();

    void contextRemoved(interaction::InteractionManager* manager) override;
    void pointerMoved(const osg::Pnt2f& position) override;
    void cameraMoved(const osg::Matrix& camera) override;
    bool triggerEvent(interaction::InteractionManager* manager, const interaction::InteractionEvent& event) override;

    /** Hands over to the tool of @p mode; a mode without a tool is refused. */
    bool selectMode(const std::string& mode) override;

private:
    bool escape();
    void noteMode(const std::string& mode, bool started);
    void wantFrame();

    std::map<std::string, ViewerTool*> m_tools;
    std::string m_mode;
    std::vector<std::string> m_modes; ///< the base keeps its own to itself
    std::function<void()> m_modeChanged;
    std::function<bool()> m_idleEscape;
    std::function<void()> m_frameWanted;
};

} // namespace quon::viewer
