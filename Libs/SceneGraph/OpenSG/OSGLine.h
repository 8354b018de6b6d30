// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGVector.h>

namespace osg {

class BoxVolume;
class Volume;

/**
 * A position and a direction of length one; what lies behind the position is not hit.
 *
 * Distances along the line are in units of the space it is in. A direction of length zero stays zero: such a line hits
 * only what its position is in.
 */
class OSG_BASE_DLLMAPPING Line {
public:
    /// From the origin along the negative z axis.
    Line() noexcept;
    /// @param direction need not be of length one
    Line(const Pnt3f& position, const Vec3f& direction) noexcept;
    /// From @p start through @p end.
    Line(const Pnt3f& start, const Pnt3f& end) noexcept;

    void setValue(const Pnt3f& position, const Vec3f& direction) noexcept;
    void setValue(const Pnt3f& start, const Pnt3f& end) noexcept;

    const Pnt3f& getPosition() const noexcept { return m_position; }
    const Vec3f& getDirection() const noexcept { return m_direction; }

    /// The foot of @p point on the line, continued in both directions.
    Pnt3f getClosestPoint(const Pnt3f& point) const noexcept;
    /// The distance of @p point from the line, continued in both directions.
    Real32 distance(const Pnt3f& point) const noexcept;

    /**
     * Whether the line meets @p box, and where.
     *
     * @param enter distance at which it enters, zero when it starts inside; untouched without a hit
     * @param exit distance at which it leaves; untouched without a hit
     */
    bool intersect(const BoxVolume& box, Real32& enter, Real32& exit) const noexcept;
    bool intersect(const BoxVolume& box) const noexcept;

    /**
     * Whether the line meets the triangle, from whichever side.
     *
     * @param distance of the hit; untouched without one
     * @param normal unless null receives the normal of length one, counter-clockwise side
     */
    bool intersect(const Pnt3f& v0, const Pnt3f& v1, const Pnt3f& v2, Real32& distance,
                   Vec3f* normal = nullptr) const noexcept;

private:
    Pnt3f m_position;
    Vec3f m_direction;
};

} // namespace osg
