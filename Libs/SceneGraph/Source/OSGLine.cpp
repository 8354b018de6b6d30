// SPDX-License-Identifier: MIT
#include <OpenSG/OSGLine.h>

#include <OpenSG/OSGBoxVolume.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace osg {

Line::Line() noexcept
    : m_direction(0.0F, 0.0F, -1.0F)
{}

Line::Line(const Pnt3f& position, const Vec3f& direction) noexcept
{
    setValue(position, direction);
}

Line::Line(const Pnt3f& start, const Pnt3f& end) noexcept
{
    setValue(start, end);
}

void Line::setValue(const Pnt3f& position, const Vec3f& direction) noexcept
{
    m_position = position;
    m_direction = direction;
    m_direction.normalize();
}

void Line::setValue(const Pnt3f& start, const Pnt3f& end) noexcept
{
    setValue(start, end - start);
}

Pnt3f Line::getClosestPoint(const Pnt3f& point) const noexcept
{
    return m_position + m_direction * (point - m_position).dot(m_direction);
}

Real32 Line::distance(const Pnt3f& point) const noexcept
{
    return point.dist(getClosestPoint(point));
}

bool Line::intersect(const BoxVolume& box, Real32& enter, Real32& exit) const noexcept
{
    if (box.isEmpty()) {
        return false;
    }
    Real32 first = 0.0F;
    Real32 last = Inf;
    if (!box.isInfinite()) {
        for (UInt32 i = 0; i < 3; ++i) {
            const Real32 toLow = box.getMin()[i] - m_position[i];
            const Real32 toHigh = box.getMax()[i] - m_position[i];
            if (!(std::abs(m_direction[i]) > 0.0F)) {
                // Along this pair of sides; the line has to start between them.
                if (!(toLow <= 0.0F && toHigh >= 0.0F)) {
                    return false;
                }
                continue;
            }
            Real32 near = toLow / m_direction[i];
            Real32 far = toHigh / m_direction[i];
            if (near > far) {
                std::swap(near, far);
            }
            first = std::max(first, near);
            last = std::min(last, far);
        }
    }
    if (!(first <= last)) {
        return false;
    }
    enter = first;
    exit = last;
    return true;
}

bool Line::intersect(const BoxVolume& box) const noexcept
{
    Real32 enter = 0.0F;
    Real32 exit = 0.0F;
    return intersect(box, enter, exit);
}

bool Line::intersect(const Pnt3f& v0, const Pnt3f& v1, const Pnt3f& v2, Real32& distance, Vec3f* normal) const noexcept
{
    const Vec3f first = v1 - v0;
    const Vec3f second = v2 - v0;
    const Vec3f p = m_direction.cross(second);
    const Real32 determinant = first.dot(p);
    // Zero for a line in the plane of the triangle and for a triangle without area.
    if (!(std::abs(determinant) > 0.0F)) {
        return false;
    }
    const Vec3f toPosition = m_position - v0;
    const Real32 u = toPosition.dot(p) / determinant;
    if (!(u >= 0.0F && u <= 1.0F)) {
        return false;
    }
    const Vec3f q = toPosition.cross(first);
    const Real32 v = m_direction.dot(q) / determinant;
    if (!(v >= 0.0F && u + v <= 1.0F)) {
        return false;
    }
    const Real32 hit = second.dot(q) / determinant;
    if (!(hit >= 0.0F)) {
        return false;
    }
    distance = hit;
    if (normal != nullptr) {
        *normal = first.cross(second);
        normal->normalize();
    }
    return true;
}

} // namespace osg
