// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/AbstractInteractionContext.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGVector.h>

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quon::interaction {
class Picker;
}

namespace quon::viewer {

class CameraController;

/**
 * Moves the camera on events of the category "navigate".
 *
 * | hint | verbs | effect |
 * |---|---|---|
 * | orbit, pan, zoom | start, process, stop | a drag: follows the pointer from "start" to "stop" |
 * | orbit-by:X,Y, pan-by:X,Y | start, process, stop | a gesture: each "process" moves by so many pixels |
 * | zoom-by:FACTOR | trigger | enlarges what is under the pointer and keeps it there |
 * | orbit-left, -right, -up, -down | start, process, stop | turns by a step at "start" and at every "process" |
 * | pan-left, -right, -up, -down | start, process, stop | moves by a step, in the same way |
 * | zoom-in, zoom-out | start, process, stop | zooms around the middle by a step, in the same way |
 * | fit, fit-selection | trigger | fits the scene, or what is selected, into the view |
 * | front, back, left, right, top, bottom, iso | trigger | looks from a standard direction and fits the scene |
 * | parallel | trigger | switches between parallel and perspective projection |
 *
 * Drags and gestures go by the surface that was under the pointer at their start: the view turns around that point, and
 * when it is moved the point follows the pointer. A dragged zoom leaves the pixel of the start in its place. Where
 * there is nothing, the camera's point of interest stands in. Pointer positions are logical pixels of the viewport.
 *
 * Steps repeat while their key is held: repeatSteps() sends their "process" events. Arrow keys and the key "=" that no
 * binding uses turn the view and zoom in as if they were bound to orbit-left and so on; with modifiers they stay free
 * for bindings.
 *
 * The verbs that come with these are consumed too; hovering is not, so that contexts below hear of it.
 */
class NavigationContext : public interaction::AbstractInteractionContext {
public:
    /**
     * @param camera borrowed, must not be null (not checked) and must outlive the context
     * @param picker borrowed, must outlive the context and follow the pointer and the camera; null finds no surfaces
     */
    NavigationContext(CameraController* camera, interaction::Picker* picker);

    /**
     * Sets who knows what is selected, for `fit-selection`; without anybody, the scene is fitted.
     *
     * @param extent returns points in world space that stand for what is selected, none when nothing is; called at
     *        every such event
     */
    void setSelectionExtent(std::function<std::vector<osg::Pnt3f>()> extent);

    /** The categories of events that move the camera by a given amount, in logical pixels. */
    static std::string getOrbitCategory(double deltaX, double deltaY);
    static std::string getPanCategory(double deltaX, double deltaY);
    static std::string getZoomCategory(double factor);

    /**
     * Sends "process" for each step whose key is held, through the manager.
     *
     * The host calls it when a held key repeats: how soon and how often is the user's setting of the keyboard.
     *
     * @return whether an event was consumed
     */
    bool repeatSteps();

    void contextRemoved(interaction::InteractionManager* manager) override;
    void disabled(interaction::InteractionManager* manager) override;
    void pointerMoved(const osg::Pnt2f& position) override;
    bool triggerEvent(interaction::InteractionManager* manager, const interaction::InteractionEvent& event) override;

private:
    bool handle(const std::string& hint, const std::string& verb);
    bool handleDrag(const std::string& hint, const std::string& verb);
    bool handleGesture(const std::string& hint, const std::string& verb);
    bool handleStep(const std::string& hint, const std::string& verb);
    bool handleView(const std::string& hint);
    void fitSelection();
    std::optional<osg::Pnt3f> pickSurface() const;
    void drag(const std::string& hint);

    CameraController* m_camera;
    interaction::Picker* m_picker;
    std::function<std::vector<osg::Pnt3f>()> m_selectionExtent;
    osg::Pnt2f m_pointer;
    osg::Pnt2f m_last;                   ///< where the pointer was before its last movement
    osg::Pnt2f m_start;                  ///< where the drag began
    std::optional<osg::Pnt3f> m_surface; ///< what was under the pointer at the start of the drag or gesture
    std::set<std::string> m_heldSteps;   ///< hints of the steps whose keys are held
};

} // namespace quon::viewer
