// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/Matrix4.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>

#include <functional>
#include <string>
#include <vector>

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

    /**
     * Sets the size of the viewport; a fitted scene that nobody has moved since is fitted again.
     *
     * @param width, height in pixels; values below one count as one
     */
    void setViewportSize(int width, int height);
    int getViewportWidth() const { return m_width; }
    int getViewportHeight() const { return m_height; }

    /**
     * Sets what must stay visible.
     *
     * @param minimum, maximum world box of the scene; one that is not a finite box counts as the unit box
     * @param outline points that stand for the shape of the scene when it is fitted into the view; where there are none
     *        the corners of the box do
     */
    void setSceneBounds(const osg::Pnt3f& minimum, const osg::Pnt3f& maximum,
                        const std::vector<osg::Pnt3f>& outline = {});

    /** Half the diagonal of the scene's box; never zero. */
    double getSceneRadius() const { return m_radius; }

    /** Moves sideways and back or forth until the scene just fits, keeping the direction of view. */
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
    std::vector<Vector3> m_outline; ///< relative to the centre
    double m_radius = 1;
    Vector3 m_interest{0, 0, 0};
    double m_distance = 4;
    bool m_fitted = false; ///< nothing moved since fit()
    double m_yaw;
    double m_pitch;
};

} // namespace quon::viewer
