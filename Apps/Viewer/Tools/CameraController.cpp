// SPDX-License-Identifier: MIT
#include "Viewer/Tools/CameraController.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace quon::viewer {

namespace {

constexpr double Pi = 3.14159265358979323846;
constexpr double VerticalFieldOfView = 22.0;
constexpr double LargestPitch = 90.0;
// What is left free around what is fitted.
constexpr double Margin = 1.275;
// Nearest and farthest point of interest, and the distance of a parallel eye from the scene's centre, in radii.
constexpr double NearestInterest = 1e-3;
constexpr double FarthestInterest = 1e3;
constexpr double ParallelEye = 10.0;

struct StandardView {
    const char* name;
    double yaw;
    double pitch;
};

constexpr StandardView StandardViews[] = {
    {"iso", 40.0, 26.0},  {"front", 0.0, 0.0}, {"back", 180.0, 0.0},   {"left", -90.0, 0.0},
    {"right", 90.0, 0.0}, {"top", 0.0, 90.0},  {"bottom", 0.0, -90.0},
};

// Exact at whole quarters, so that the standard views look exactly along the axes.
double sine(const double degrees)
{
    int quarter = 0;
    const double rest = std::remquo(degrees, 90.0, &quarter) * Pi / 180;
    switch (static_cast<unsigned>(quarter) & 3U) {
    case 0:
        return std::sin(rest);
    case 1:
        return std::cos(rest);
    case 2:
        return -std::sin(rest);
    default:
        return -std::cos(rest);
    }
}

double cosine(const double degrees)
{
    return sine(degrees + 90.0);
}

double tangentOfHalfView()
{
    static const double tangent = std::tan(VerticalFieldOfView / 2 * Pi / 180);
    return tangent;
}

double dot(const std::array<double, 3>& a, const std::array<double, 3>& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

std::array<double, 3> toVector(const osg::Pnt3f& point)
{
    return {static_cast<double>(point[0]), static_cast<double>(point[1]), static_cast<double>(point[2])};
}

bool isFinite(const std::array<double, 3>& vector)
{
    return std::isfinite(vector[0]) && std::isfinite(vector[1]) && std::isfinite(vector[2]);
}

/** The smallest and the largest of some values. */
struct Range {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();

    void include(const double value)
    {
        low = std::min(low, value);
        high = std::max(high, value);
    }

    double getMiddle() const { return (low + high) / 2; }
};

} // namespace

CameraController::CameraController(std::function<void()> changed)
    : m_changed(std::move(changed))
    , m_yaw(StandardViews[0].yaw)
    , m_pitch(StandardViews[0].pitch)
{}

void CameraController::changeAtOnce(const std::function<void()>& operations)
{
    ++m_held;
    operations();
    --m_held;
    changed();
}

void CameraController::setViewportSize(const int width, const int height)
{
    m_width = std::max(1, width);
    m_height = std::max(1, height);
    if (!m_target.empty()) {
        fitTarget();
    }
    changed();
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
        m_outline.push_back(toVector(point));
    }
    for (int corner = 0; m_outline.size() < 8 && corner < 8; ++corner) {
        m_outline.push_back({centre[0] + ((corner & 1) != 0 ? extent[0] : -extent[0]),
                             centre[1] + ((corner & 2) != 0 ? extent[1] : -extent[1]),
                             centre[2] + ((corner & 4) != 0 ? extent[2] : -extent[2])});
    }
    changed();
}

void CameraController::fit()
{
    m_target = m_outline;
    fitTarget();
    changed();
}

void CameraController::fit(const std::vector<osg::Pnt3f>& points)
{
    std::vector<Vector3> target;
    target.reserve(points.size());
    for (const osg::Pnt3f& point : points) {
        const Vector3 place = toVector(point);
        if (isFinite(place)) {
            target.push_back(place);
        }
    }
    if (target.empty()) {
        return;
    }
    m_target = std::move(target);
    fitTarget();
    changed();
}

bool CameraController::setStandardView(const std::string& name)
{
    for (const StandardView& view : StandardViews) {
        if (name == view.name) {
            m_yaw = view.yaw;
            m_pitch = view.pitch;
            fit();
            return true;
        }
    }
    return false;
}

void CameraController::setParallel(const bool parallel)
{
    m_parallel = parallel;
    if (!m_target.empty()) {
        fitTarget();
    }
    changed();
}

void CameraController::orbit(const double deltaX, const double deltaY, const std::optional<osg::Pnt3f>& pivot)
{
    // Both by the width: a movement at an angle turns at that angle.
    turn(360 * deltaX / m_width, 360 * deltaY / m_width, pivot);
}

void CameraController::turn(const double sideways, const double over, const std::optional<osg::Pnt3f>& pivot)
{
    if (!std::isfinite(sideways) || !std::isfinite(over)) {
        return;
    }
    const Axes before = getAxes();
    m_target.clear();
    m_yaw = std::remainder(m_yaw - sideways, 360.0);
    m_pitch = std::clamp(m_pitch + over, -LargestPitch, LargestPitch);
    const Axes after = getAxes();

    // What the pivot is to the camera it stays.
    const Vector3 centre = pivot ? toVector(*pivot) : m_interest;
    const Vector3 offset{m_interest[0] - centre[0], m_interest[1] - centre[1], m_interest[2] - centre[2]};
    m_interest = centre;
    moveInterest(after, dot(offset, before.right), dot(offset, before.up), dot(offset, before.back));
    changed();
}

void CameraController::pan(const double deltaX, const double deltaY, const std::optional<osg::Pnt3f>& grabbed)
{
    if (!std::isfinite(deltaX) || !std::isfinite(deltaY)) {
        return;
    }
    m_target.clear();
    const Axes axes = getAxes();
    const double depth = grabbed && !m_parallel ? getDepth(axes, *grabbed) : m_distance;
    const double units = getUnitsPerPixel(depth > 0 ? depth : m_distance);
    moveInterest(axes, -deltaX * units, deltaY * units, 0);
    changed();
}

void CameraController::zoom(const double factor)
{
    zoom(factor, m_width / 2.0, m_height / 2.0);
}

void CameraController::zoom(const double factor, const double x, const double y,
                            const std::optional<osg::Pnt3f>& surface)
{
    if (!(factor > 0) || !std::isfinite(factor) || !std::isfinite(x) || !std::isfinite(y)) {
        return;
    }
    m_target.clear();
    const Axes axes = getAxes();
    if (surface) {
        // The point of interest takes on the depth of the surface, which is not to be seen yet.
        const double depth = getDepth(axes, *surface);
        if (m_parallel) {
            moveInterest(axes, 0, 0, m_distance - depth);
        } else if (depth > 0) {
            moveInterest(axes, 0, 0, m_distance - depth);
            m_distance = depth;
        }
    }
    const double distance = limitDistance(m_distance / factor);
    const double step = getUnitsPerPixel(m_distance) - getUnitsPerPixel(distance);
    moveInterest(axes, (x - m_width / 2.0) * step, (m_height / 2.0 - y) * step, 0);
    m_distance = distance;
    changed();
}

osg::Pnt3f CameraController::getInterest() const
{
    return osg::Pnt3f(static_cast<float>(m_interest[0]), static_cast<float>(m_interest[1]),
                      static_cast<float>(m_interest[2]));
}

std::optional<std::array<double, 2>> CameraController::getPlace(const osg::Pnt3f& point) const
{
    const Vector4 clip = (getProjection() * getView()).transform(point);
    if (!(clip[3] > 0)) {
        return {};
    }
    return std::array<double, 2>{(clip[0] / clip[3] + 1) / 2 * m_width, (1 - clip[1] / clip[3]) / 2 * m_height};
}

CameraController::Pose CameraController::getPose() const
{
    return {m_interest, m_distance, m_yaw, m_pitch, !m_target.empty() && m_target == m_outline};
}

void CameraController::setPose(const Pose& pose)
{
    m_interest = pose.interest;
    m_distance = pose.distance;
    m_yaw = pose.yaw;
    m_pitch = pose.pitch;
    m_target = pose.fitted ? m_outline : std::vector<Vector3>();
    changed();
}

Matrix4 CameraController::getView() const
{
    const Axes axes = getAxes();
    double distance = m_distance;
    if (m_parallel) {
        const Vector3 toCentre{m_sceneCentre[0] - m_interest[0], m_sceneCentre[1] - m_interest[1],
                               m_sceneCentre[2] - m_interest[2]};
        distance = ParallelEye * m_radius + dot(axes.back, toCentre);
    }
    Vector3 eye{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        eye[axis] = m_interest[axis] + axes.back[axis] * distance;
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
    Matrix4 projection;
    if (m_parallel) {
        const double nearPlane = depth - m_radius * 1.5;
        const double halfHeight = getHalfHeight(m_distance);
        projection(0, 0) = m_height / (halfHeight * m_width);
        projection(1, 1) = 1 / halfHeight;
        projection(2, 2) = 2 / (nearPlane - farPlane);
        projection(2, 3) = (farPlane + nearPlane) / (nearPlane - farPlane);
        return projection;
    }
    // Not nearer than a thousandth of the far plane, for the depth buffer has 24 bits, but before what is looked at.
    const double nearPlane = std::max(depth - m_radius * 1.5, std::min(farPlane * 1e-3, m_distance * 0.2));
    const double cotangent = 1 / tangentOfHalfView();
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
    const Vector3 right{cosine(m_yaw), 0, -sine(m_yaw)};
    const Vector3 back{sine(m_yaw) * cosine(m_pitch), sine(m_pitch), cosine(m_yaw) * cosine(m_pitch)};
    const Vector3 up{back[1] * right[2], back[2] * right[0] - back[0] * right[2], -back[1] * right[0]};
    return {right, up, back};
}

double CameraController::getHalfHeight(const double distance) const
{
    return distance * tangentOfHalfView();
}

double CameraController::getUnitsPerPixel(const double distance) const
{
    return 2 * getHalfHeight(distance) / m_height;
}

double CameraController::getDepth(const Axes& axes, const osg::Pnt3f& point) const
{
    const Vector3 place = toVector(point);
    const Vector3 offset{place[0] - m_interest[0], place[1] - m_interest[1], place[2] - m_interest[2]};
    return m_distance - dot(offset, axes.back);
}

double CameraController::limitDistance(const double distance) const
{
    // From beyond a limit one may come back but not go on.
    const double low = std::min(m_distance, m_radius * NearestInterest);
    const double high = std::max(m_distance, m_radius * FarthestInterest);
    return std::clamp(distance, low, high);
}

void CameraController::moveInterest(const Axes& axes, const double right, const double up, const double back)
{
    Vector3 moved = m_interest;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        moved[axis] += axes.right[axis] * right + axes.up[axis] * up + axes.back[axis] * back;
    }
    // From beyond all numbers there is no way back.
    if (isFinite(moved)) {
        m_interest = moved;
    }
}

void CameraController::fitTarget()
{
    const Axes axes = getAxes();
    Range right;
    Range up;
    Range back;
    // How far points reach across the planes through the eye that bound the view, if the eye were in the origin: the
    // bounds of the four planes together give the one eye that touches them all, or stays inside of two.
    const double tangentY = tangentOfHalfView() / Margin;
    const double tangentX = tangentY * m_width / m_height;
    double reach[4];
    std::fill(std::begin(reach), std::end(reach), -std::numeric_limits<double>::infinity());
    for (const Vector3& point : m_target) {
        const double x = dot(point, axes.right);
        const double y = dot(point, axes.up);
        const double z = dot(point, axes.back);
        right.include(x);
        up.include(y);
        back.include(z);
        reach[0] = std::max(reach[0], x + tangentX * z);
        reach[1] = std::max(reach[1], -x + tangentX * z);
        reach[2] = std::max(reach[2], y + tangentY * z);
        reach[3] = std::max(reach[3], -y + tangentY * z);
    }
    m_interest = {0, 0, 0};
    const double smallest = m_radius * NearestInterest;
    if (m_parallel) {
        const double halfWidth = (right.high - right.low) / 2;
        const double halfHeight = (up.high - up.low) / 2;
        m_distance = std::max({halfWidth / tangentX, halfHeight / tangentY, smallest});
        moveInterest(axes, right.getMiddle(), up.getMiddle(), back.getMiddle());
    } else {
        const double eye = std::max((reach[0] + reach[1]) / (2 * tangentX), (reach[2] + reach[3]) / (2 * tangentY));
        m_distance = std::max(eye - back.getMiddle(), smallest);
        moveInterest(axes, (reach[0] - reach[1]) / 2, (reach[2] - reach[3]) / 2, back.getMiddle());
    }
}

void CameraController::changed()
{
    if (m_held > 0) {
        return;
    }
    const Reported now{getProjection() * getView(), m_width, m_height};
    if (m_reported && m_reported->worldToClip == now.worldToClip && m_reported->width == now.width &&
        m_reported->height == now.height) {
        return;
    }
    m_reported = now;
    if (m_changed) {
        m_changed();
    }
}

} // namespace quon::viewer
