// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Matrix4.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>

#include <functional>
#include <string>

namespace quon::viewer {

/**
 * A perspective camera that circles around a point of interest, y upwards.
 *
 * Distances are world units, movements viewport pixels (origin top left), angles radians. Near and far plane follow
 * the bounds of the scene at every change, so that the depth buffer is spent on the scene alone.
 */
class CameraController {
public:
    /** @param changed called after every change of the camera or the viewport; may be empty */
    explicit CameraController(std::function<void()> changed = {});

    /** @param width, height in pixels; values below one count as one */
    void setViewportSize(int width, int height);
    int getViewportWidth() const { return m_width; }
    int getViewportHeight() const { return m_height; }

    /** Sets the world box that must stay visible; one that is not a finite box counts as the unit box. */
    void setSceneBounds(const osg::Pnt3f& minimum, const osg::Pnt3f& maximum);

    /** Half the diagonal of the scene's box; never zero. */
    double getSceneRadius() const { return m_radius; }

    /** Moves straight back or forth until the scene's box just fits, keeping the direction of view. */
    void fit();

    /**
     * Looks from a standard direction and fits the scene.
     *
     * @param name iso, front, back, left, right, top or bottom
     * @return false for another name, which changes nothing
     */
    bool setStandardView(const std::string& name);

    /** Turns around the point of interest: a drag over the whole width is a full turn. */
    void orbit(double deltaX, double deltaY);

    /** Moves sideways so that the point of interest follows the pointer. */
    void pan(double deltaX, double deltaY);

    /** Divides the distance to the point of interest by @p factor; what is not positive and finite is ignored. */
    void zoom(double factor);

    /** World to eye. */
    Matrix4 getView() const;

    /** Eye to clip. */
    Matrix4 getProjection() const;

    /** World to clip: what contexts and pickers receive as the camera. */
    osg::Matrix getWorldToClip() const;

private:
    using Vector3 = std::array<double, 3>;

    struct Axes {
        Vector3 right;
        Vector3 up;
        Vector3 back; ///< from the point of interest to the eye
    };

    Axes getAxes() const;
    void changed() const;

    std::function<void()> m_changed;
    int m_width = 1;
    int m_height = 1;
    Vector3 m_sceneCentre{0, 0, 0};
    Vector3 m_sceneExtent{0.5, 0.5, 0.5};
    double m_radius = 1;
    Vector3 m_interest{0, 0, 0};
    double m_distance = 4;
    double m_yaw;
    double m_pitch;
};

} // namespace quon::viewer
