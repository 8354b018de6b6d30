// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Model/Matrix4.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quon::viewer {

/**
 * A camera that circles around points of the scene, y upwards, with perspective or parallel projection.
 *
 * Distances are world units. Places in the viewport and movements are logical pixels, those of the widget and of mouse
 * events whatever the density of the display, from the top left corner of the viewport: 0.5, 0.5 is the middle of the
 * first pixel. Angles are degrees.
 *
 * The camera never rolls and never turns over: up is up, at most it looks along the y axis. Near and far plane follow
 * the bounds of the scene at every change, so that the depth buffer is spent on the scene alone.
 *
 * In parallel projection the distance to the point of interest is the scale: what lies at the point of interest is as
 * large as with perspective.
 */
class CameraController {
public:
    /**
     * @param changed called once after every operation that changed the camera or the size of the viewport, and not
     *        after one that did not; may be empty
     */
    explicit CameraController(std::function<void()> changed = {});

    /**
     * Carries out several operations as one change.
     *
     * @param operations called at once; calls may nest
     */
    void changeAtOnce(const std::function<void()>& operations);

    /**
     * Sets the size of the viewport; what was fitted and not moved since is fitted again.
     *
     * @param width, height in logical pixels; values below one count as one
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

    /** Does the same for these points in world space; points that are not finite are left out, none change nothing. */
    void fit(const std::vector<osg::Pnt3f>& points);

    /**
     * Looks from a standard direction and fits the scene.
     *
     * @param name iso, front, back, left, right, top or bottom
     * @return false for another name, which changes nothing
     */
    bool setStandardView(const std::string& name);

    /**
     * Switches between parallel and perspective projection.
     *
     * What was fitted and not moved since is fitted again; otherwise what is at the point of interest keeps its size.
     */
    void setParallel(bool parallel);
    bool isParallel() const { return m_parallel; }

    /**
     * Turns around a point, which stays at its pixel: a drag over the whole width is a full turn.
     *
     * @param pivot in world space; none is the point of interest. Movements that are not finite are ignored.
     */
    void orbit(double deltaX, double deltaY, const std::optional<osg::Pnt3f>& pivot = {});

    /** Turns like orbit(), by angles: to the right and over the top towards the viewer are positive. */
    void turn(double sideways, double over, const std::optional<osg::Pnt3f>& pivot = {});

    /**
     * Moves sideways so that a point follows the pointer.
     *
     * @param grabbed in world space; none and what lies behind the eye stand for the point of interest. Movements that
     *        are not finite are ignored.
     */
    void pan(double deltaX, double deltaY, const std::optional<osg::Pnt3f>& grabbed = {});

    /** Zooms around the middle of the viewport. */
    void zoom(double factor);

    /**
     * Enlarges by @p factor what is at a place of the viewport and keeps it there.
     *
     * The eye goes along the ray through that place, to the surface that is seen there and never through it. The
     * surface becomes as far away as the point of interest. Near the limits, a thousandth and a thousand times the
     * radius of the scene, the factor is cut.
     *
     * @param factor what is not positive and finite is ignored, and so is a place that is not finite
     * @param surface in world space; none and what lies behind the eye stand for the point of interest
     */
    void zoom(double factor, double x, double y, const std::optional<osg::Pnt3f>& surface = {});

    /** The point of interest, in world space: the middle of the viewport at the depth that was last looked at. */
    osg::Pnt3f getInterest() const;

    /** Returns where a point in world space is seen, nothing when it lies behind the eye. */
    std::optional<std::array<double, 2>> getPlace(const osg::Pnt3f& point) const;

    /** All that tells one view of a scene from another in the same projection and a viewport of the same size. */
    struct Pose {
        std::array<double, 3> interest{};
        double distance = 1;
        double yaw = 0;
        double pitch = 0;
        bool fitted = false; ///< all of the scene, which is fitted again when the viewport gets another size

        bool operator==(const Pose& other) const
        {
            return interest == other.interest && distance == other.distance && yaw == other.yaw &&
                   pitch == other.pitch && fitted == other.fitted;
        }
        bool operator!=(const Pose& other) const { return !(*this == other); }
    };

    Pose getPose() const;

    /** Takes up a pose that getPose() returned; nothing of it is checked. */
    void setPose(const Pose& pose);

    /** World to eye. In parallel projection the eye is well outside of the scene. */
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

    struct Reported {
        Matrix4 worldToClip;
        int width;
        int height;
    };

    Axes getAxes() const;
    double getHalfHeight(double distance) const;
    double getUnitsPerPixel(double distance) const;
    double getDepth(const Axes& axes, const osg::Pnt3f& point) const;
    double limitDistance(double distance) const;
    void moveInterest(const Axes& axes, double right, double up, double back);
    void fitTarget();
    void changed();

    std::function<void()> m_changed;
    std::optional<Reported> m_reported; ///< what the last call of m_changed was about
    int m_held = 0;                     ///< levels of changeAtOnce()
    int m_width = 1;
    int m_height = 1;
    Vector3 m_sceneCentre{0, 0, 0};
    std::vector<Vector3> m_outline;
    std::vector<Vector3> m_target; ///< what was fitted and not moved since; empty when it was moved
    double m_radius = 1;
    Vector3 m_interest{0, 0, 0};
    double m_distance = 4;
    bool m_parallel = false;
    double m_yaw;
    double m_pitch; ///< from -90 to 90
};

} // namespace quon::viewer
