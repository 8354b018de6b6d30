// SPDX-License-Identifier: MIT
#include "Viewer/Tools/NavigationContext.h"

#include "Viewer/Tools/CameraController.h"

#include <Interaction/InteractionEvent.h>

#include <cmath>

namespace quon::viewer {

namespace {

const char* const Category = "navigate";

constexpr double WheelStep = 1.15;
constexpr double DragZoomPerPixel = 1.006;

} // namespace

NavigationContext::NavigationContext(CameraController* camera)
    : AbstractInteractionContext(Navigation)
    , m_camera(camera)
{}

void NavigationContext::pointerMoved(const osg::Pnt2f& position)
{
    m_pointer = position;
}

bool NavigationContext::triggerEvent(interaction::InteractionManager*, const interaction::InteractionEvent& event)
{
    if (event.getTool() != Category) {
        return false;
    }
    const std::string& hint = event.getHint();
    const std::string& verb = event.getEvent();
    if (hint == "zoom-in" || hint == "zoom-out") {
        if (verb != "trigger") {
            return false;
        }
        m_camera->zoom(hint == "zoom-in" ? WheelStep : 1 / WheelStep);
        return true;
    }
    if (hint != "orbit" && hint != "pan" && hint != "zoom") {
        return false;
    }
    if (verb == "start") {
        m_last = m_pointer;
        return true;
    }
    if (verb == "process") {
        drag(hint);
        return true;
    }
    return verb == "stop" || verb == "trigger";
}

void NavigationContext::drag(const std::string& hint)
{
    const double deltaX = static_cast<double>(m_pointer[0] - m_last[0]);
    const double deltaY = static_cast<double>(m_pointer[1] - m_last[1]);
    m_last = m_pointer;
    if (hint == "orbit") {
        m_camera->orbit(deltaX, deltaY);
    } else if (hint == "pan") {
        m_camera->pan(deltaX, deltaY);
    } else {
        m_camera->zoom(std::pow(DragZoomPerPixel, -deltaY));
    }
}

} // namespace quon::viewer
