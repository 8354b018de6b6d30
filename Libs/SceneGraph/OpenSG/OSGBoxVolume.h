// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGVolume.h>

namespace osg {

/**
 * A box along the axes, kept as its two corners.
 *
 * A fresh box is empty with both corners at the origin. The first point it is extended by sets both corners. Corners
 * are stored as given: nothing checks that the minimum is the smaller one.
 */
class OSG_BASE_DLLMAPPING BoxVolume final : public Volume {
public:
    BoxVolume() noexcept = default;
    /// Not empty, even where both corners are the same.
    BoxVolume(Real32 minimumX, Real32 minimumY, Real32 minimumZ, Real32 maximumX, Real32 maximumY,
              Real32 maximumZ) noexcept;
    BoxVolume(const Pnt3f& minimum, const Pnt3f& maximum) noexcept;

    const Pnt3f& getMin() const noexcept { return m_minimum; }
    const Pnt3f& getMax() const noexcept { return m_maximum; }

    /// The corners as stored, whether the box is empty or not.
    void getBounds(Pnt3f& minimum, Pnt3f& maximum) const override
    {
        minimum = m_minimum;
        maximum = m_maximum;
    }
    void getBounds(Real32& minimumX, Real32& minimumY, Real32& minimumZ, Real32& maximumX, Real32& maximumY,
                   Real32& maximumZ) const noexcept
    {
        m_minimum.getSeparateValues(minimumX, minimumY, minimumZ);
        m_maximum.getSeparateValues(maximumX, maximumY, maximumZ);
    }

    /// A box of this size around the origin. All three forms make the box not empty.
    void setBounds(Real32 width, Real32 height, Real32 depth) noexcept;
    void setBounds(Real32 minimumX, Real32 minimumY, Real32 minimumZ, Real32 maximumX, Real32 maximumY,
                   Real32 maximumZ) noexcept;
    void setBounds(const Pnt3f& minimum, const Pnt3f& maximum) noexcept;
    void setBoundsByCenterAndSize(const Pnt3f& center, const Vec3f& size) noexcept;

    /// Zeros for an empty box.
    void getSize(Real32& width, Real32& height, Real32& depth) const noexcept;

    /// The origin for an empty box.
    void getCenter(Pnt3f& center) const override;
    Real32 getScalarVolume() const override;

    void extendBy(const Pnt3f& point) override;
    /// An empty or invalid @p volume changes nothing; an infinite one makes this box infinite.
    void extendBy(const Volume& volume) override;

    /// False for empty boxes, true for infinite ones; so do all four. Touching counts, but not for points.
    bool intersect(const Pnt3f& point) const override;
    bool intersect(const Line& line) const override;
    bool intersect(const Line& line, Real32& enter, Real32& exit) const override;
    bool intersect(const Volume& volume) const override;

    /// Becomes the smallest box around the transformed one. Empty and infinite boxes stay as they are.
    void transform(const Matrix& matrix) override;

    void dump(UInt32 indent = 0, BitVector flags = 0) const override;

    /// Same flags, and corners equal within Eps.
    bool operator==(const BoxVolume& other) const noexcept
    {
        return hasSameState(other) && m_minimum == other.m_minimum && m_maximum == other.m_maximum;
    }
    bool operator!=(const BoxVolume& other) const noexcept { return !(*this == other); }

private:
    Pnt3f m_minimum;
    Pnt3f m_maximum;
};

OSG_BASE_DLLMAPPING std::ostream& operator<<(std::ostream& stream, const BoxVolume& volume);

} // namespace osg
