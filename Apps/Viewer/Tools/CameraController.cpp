// SPDX-License-Identifier: MIT
#include "Viewer/Tools/CameraController.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quon::viewer {

namespace {

constexpr double Pi = 3.14159265358979323846;
constexpr double VerticalFieldOfView = 22.0 * Pi / 180.0;
// At the pole itself the upward direction is lost.
constexpr double LargestPitch = 89.0 * Pi / 180.0;
// What is left free around a fitted scene.
constexpr double Margin = 1.25;

struct StandardView {
    const char* name;
    double yaw;
    double pitch;
};

constexpr StandardView StandardViews[] = {
    {"iso", 40.0, 26.0},  {"front", 0.0, 0.0}, {"back", 180.0, 0.0},   {"left", -90.0, 0.0},
    {"right", 90.0, 0.0}, {"top", 0.0, 90.0},  {"bottom", 0.0, -90.0},
};

double dot(const std::array<double, 3>& a, const std::array<double, 3>& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

} // namespace

CameraController::CameraController(std::function<void()> changed)
    : m_changed(std::move(changed))
    , m_yaw(StandardViews[0].yaw * Pi / 180.0)
    , m_pitch(StandardViews[0].pitch * Pi / 180.0)
{}

void CameraController::setViewportSize(const int width, const int height)
{
    m_width = std::max(1, width);
    m_height = std::max(1, height);
    if (m_fitted) {
        fit();
    } else {
        changed();
    }
}

void CameraController::setSceneBounds(const osg::Pnt3f& minimum, const osg::Pnt3f& maximum,
                                      const std::vector<osg::Pnt3f>& outline)
{
    Vector3 centre{};
    Vector3 extent{};
    double squares = 0;
    bool valid = true;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double low = static_cast<double>(minimum[static_cast<osg::UInt32>(axis)]);
        const double high = static_cast<double>(maximum[static_cast<osg::UInt32>(axis)]);
        valid = valid && std::isfinite(low) && std::isfinite(high) && low <= high;
        centre[axis] = (low + high) / 2;
        extent[axis] = (high - low) / 2;
        squares += extent[axis] * extent[axis];
    }
    if (!valid || !(squares > 0)) {
        centre = valid ? centre : Vector3{0, 0, 0};
        extent = {0.5, 0.5, 0.5};
        squares = 0.75;
    }
    m_sceneCentre = centre;
    m_radius = std::sqrt(squares);

    m_outline.clear();
    for (const osg::Pnt3f& point : outline) {
        m_outline.push_back({static_cast<double>(point[0]) - centre[0], static_cast<double>(point[1]) - centre[1],
                             static_cast<double>(point[2]) - centre[2]});
    }
    for (int corner = 0; m_outline.size() < 8 && corner < 8; ++corner) {
        m_outline.push_back({(corner & 1) != 0 ? extent[0] : -extent[0], (corner & 2) != 0 ? extent[1] : -extent[1],
                             (corner & 4) != 0 ? extent[2] : -extent[2]});
    }
    changed();
}

void CameraController::fit()
{
    const Axes axes = getAxes();
    const double tangentY = std::tan(VerticalFieldOfView / 2);
    const double tangentX = tangentY * m_width / m_height;
    // With perspective the middle of the picture is not the middle of the scene; a few steps find it.
    Vector3 offset{0, 0, 0};
    for (int step = 0; step < 5; ++step) {
        m_distance = m_radius * 1e-3;
        for (const Vector3& point : m_outline) {
            const Vector3 place{point[0] - offset[0], point[1] - offset[1], point[2] - offset[2]};
            const double sideways =
                std::max(std::abs(dot(place, axes.right)) / tangentX, std::abs(dot(place, axes.up)) / tangentY);
            m_distance = std::max(m_distance, sideways * Margin + dot(place, axes.back));
        }
        double left = 0;
        double right = 0;
        double bottom = 0;
        double top = 0;
        for (const Vector3& point : m_outline) {
            const Vector3 place{point[0] - offset[0], point[1] - offset[1], point[2] - offset[2]};
            const double depth = std::max(m_distance - dot(place, axes.back), m_radius * 1e-3);
            left = std::min(left, dot(place, axes.right) / depth);
            right = std::max(right, dot(place, axes.right) / depth);
            bottom = std::min(bottom, dot(place, axes.up) / depth);
            top = std::max(top, dot(place, axes.up) / depth);
        }
        for (std::size_t axis = 0; axis < 3; ++axis) {
            offset[axis] += (axes.right[axis] * (left + right) + axes.up[axis] * (bottom + top)) / 2 * m_distance;
        }
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
        m_interest[axis] = m_sceneCentre[axis] + offset[axis];
    }
    // Room for the last correction.
    m_distance *= 1.02;
    m_fitted = true;
    changed();
}

bool CameraController::setStandardView(const std::string& name)
{
    for (const StandardView& view : StandardViews) {
        if (name == view.name) {
            m_yaw = view.yaw * Pi / 180.0;
            m_pitch = std::clamp(view.pitch * Pi / 180.0, -LargestPitch, LargestPitch);
            fit();
            return true;
        }
    }
    return false;
}

void CameraController::orbit(const double deltaX, const double deltaY)
{
    m_fitted = false;
    m_yaw = std::remainder(m_yaw - 2 * Pi * deltaX / m_width, 2 * Pi);
    m_pitch = std::clamp(m_pitch + 2 * Pi * deltaY / m_width, -LargestPitch, LargestPitch);
    changed();
}

void CameraController::pan(const double deltaX, const double deltaY)
{
    m_fitted = false;
    const Axes axes = getAxes();
    const double unitsPerPixel = 2 * m_distance * std::tan(VerticalFieldOfView / 2) / m_height;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        m_interest[axis] += (axes.up[axis] * deltaY - axes.right[axis] * deltaX) * unitsPerPixel;
    }
    changed();
}

void CameraController::zoom(const double factor)
{
    if (!(factor > 0) || !std::isfinite(factor)) {
        return;
    }
    m_fitted = false;
    m_distance = std::clamp(m_distance / factor, m_radius * 1e-3, m_radius * 1e3);
    changed();
}

Matrix4 CameraController::getView() const
{
    const Axes axes = getAxes();
    Vector3 eye{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        eye[axis] = m_interest[axis] + axes.back[axis] * m_distance;
    }
    Matrix4 view;
    const Vector3* const rows[] = {&axes.right, &axes.up, &axes.back};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            view(row, column) = (*rows[row])[static_cast<std::size_t>(column)];
        }
        view(row, 3) = -dot(*rows[row], eye);
    }
    return view;
}

Matrix4 CameraController::getProjection() const
{
    // Depth of the scene's centre, in front of the eye.
    const Vector4 centre = getView() * Vector4{m_sceneCentre[0], m_sceneCentre[1], m_sceneCentre[2], 1.0};
    const double depth = -centre[2];
    const double farPlane = std::max(depth + m_radius * 1.5, m_radius * 0.01);
    // Not nearer than a thousandth of the far plane: the depth buffer has 24 bits.
    const double nearPlane = std::max(depth - m_radius * 1.5, farPlane * 1e-3);

    const double cotangent = 1 / std::tan(VerticalFieldOfView / 2);
    Matrix4 projection;
    projection(0, 0) = cotangent * m_height / m_width;
    projection(1, 1) = cotangent;
    projection(2, 2) = (farPlane + nearPlane) / (nearPlane - farPlane);
    projection(2, 3) = 2 * farPlane * nearPlane / (nearPlane - farPlane);
    projection(3, 2) = -1;
    projection(3, 3) = 0;
    return projection;
}

osg::Matrix CameraController::getWorldToClip() const
{
    return (getProjection() * getView()).toMatrix();
}

CameraController::Axes CameraController::getAxes() const
{
    Axes axes{};
    axes.right = {std::cos(m_yaw), 0, -std::sin(m_yaw)};
    axes.back = {std::sin(m_yaw) * std::cos(m_pitch), std::sin(m_pitch), std::cos(m_yaw) * std::cos(m_pitch)};
    axes.up = {axes.back[1] * axes.right[2] - axes.back[2] * axes.right[1],
               axes.back[2] * axes.right[0] - axes.back[0] * axes.right[2],
               axes.back[0] * axes.right[1] - axes.back[1] * axes.right[0]};
    return axes;
}

void CameraController::changed() const
{
    if (m_changed) {
        m_changed();
    }
}

} // namespace quon::viewer
