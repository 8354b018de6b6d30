// SPDX-License-Identifier: MIT
#pragma once

#include <Interaction/AbstractInteractionContext.h>

#include <string>

namespace quon::viewer {

class CameraController;

/**
 * Moves the camera on events of the category "navigate".
 *
 * | hint | verbs | effect |
 * |---|---|---|
 * | orbit, pan, zoom | start, process, stop | follows the pointer from "start" to "stop" |
 * | zoom-in, zoom-out | trigger | one step nearer or farther |
 *
 * The verbs that come with these are consumed too; hovering is not, so that contexts below hear of it.
 */
class NavigationContext : public interaction::AbstractInteractionContext {
public:
    /** @param camera borrowed, must not be null (not checked) and must outlive the context */
    explicit NavigationContext(CameraController* camera);

    void pointerMoved(const osg::Pnt2f& position) override;
    bool triggerEvent(interaction::InteractionManager* manager, const interaction::InteractionEvent& event) override;

private:
    void drag(const std::string& hint);

    CameraController* m_camera;
    osg::Pnt2f m_pointer;
    osg::Pnt2f m_last; ///< where the pointer was at the last step of a drag
};

} // namespace quon::viewer
