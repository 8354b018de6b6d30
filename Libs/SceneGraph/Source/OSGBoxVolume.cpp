// SPDX-License-Identifier: MIT
#include <OpenSG/OSGBoxVolume.h>

#include <OpenSG/OSGLine.h>

#include <iostream>
#include <string>

namespace osg {

BoxVolume::BoxVolume(const Real32 minimumX, const Real32 minimumY, const Real32 minimumZ, const Real32 maximumX,
                     const Real32 maximumY, const Real32 maximumZ) noexcept
{
    setBounds(minimumX, minimumY, minimumZ, maximumX, maximumY, maximumZ);
}

BoxVolume::BoxVolume(const Pnt3f& minimum, const Pnt3f& maximum) noexcept
{
    setBounds(minimum, maximum);
}

void BoxVolume::setBounds(const Real32 width, const Real32 height, const Real32 depth) noexcept
{
    setBoundsByCenterAndSize(Pnt3f(), Vec3f(width, height, depth));
}

void BoxVolume::setBounds(const Real32 minimumX, const Real32 minimumY, const Real32 minimumZ, const Real32 maximumX,
                          const Real32 maximumY, const Real32 maximumZ) noexcept
{
    setBounds(Pnt3f(minimumX, minimumY, minimumZ), Pnt3f(maximumX, maximumY, maximumZ));
}

void BoxVolume::setBounds(const Pnt3f& minimum, const Pnt3f& maximum) noexcept
{
    m_minimum = minimum;
    m_maximum = maximum;
    setEmpty(false);
}

void BoxVolume::setBoundsByCenterAndSize(const Pnt3f& center, const Vec3f& size) noexcept
{
    setBounds(center - size * 0.5F, center + size * 0.5F);
}

void BoxVolume::getSize(Real32& width, Real32& height, Real32& depth) const noexcept
{
    const Vec3f size = isEmpty() ? Vec3f() : m_maximum - m_minimum;
    size.getSeparateValues(width, height, depth);
}

void BoxVolume::getCenter(Pnt3f& center) const
{
    // Halved before adding: the sum of two large corners would overflow.
    center = isEmpty() ? Pnt3f() : m_minimum * 0.5F + (m_maximum * 0.5F).subZero();
}

Real32 BoxVolume::getScalarVolume() const
{
    Real32 width = 0.0F;
    Real32 height = 0.0F;
    Real32 depth = 0.0F;
    getSize(width, height, depth);
    return width * height * depth;
}

void BoxVolume::extendBy(const Pnt3f& point)
{
    if (isUntouchable()) {
        return;
    }
    if (isEmpty()) {
        setBounds(point, point);
        return;
    }
    for (UInt32 i = 0; i < 3; ++i) {
        if (point[i] < m_minimum[i]) {
            m_minimum[i] = point[i];
        }
        if (point[i] > m_maximum[i]) {
            m_maximum[i] = point[i];
        }
    }
}

void BoxVolume::extendBy(const Volume& volume)
{
    if (isUntouchable() || !volume.isValid() || volume.isEmpty()) {
        return;
    }
    Pnt3f minimum;
    Pnt3f maximum;
    volume.getBounds(minimum, maximum);
    extendBy(minimum);
    extendBy(maximum);
    if (volume.isInfinite()) {
        setInfinite();
    }
}

bool BoxVolume::intersect(const Pnt3f& point) const
{
    if (isEmpty() || isInfinite()) {
        return isInfinite();
    }
    for (UInt32 i = 0; i < 3; ++i) {
        if (!(point[i] > m_minimum[i] && point[i] < m_maximum[i])) {
            return false;
        }
    }
    return true;
}

bool BoxVolume::intersect(const Line& line) const
{
    return line.intersect(*this);
}

bool BoxVolume::intersect(const Line& line, Real32& enter, Real32& exit) const
{
    return line.intersect(*this, enter, exit);
}

bool BoxVolume::intersect(const Volume& volume) const
{
    if (isEmpty() || volume.isEmpty()) {
        return false;
    }
    if (isInfinite() || volume.isInfinite()) {
        return true;
    }
    Pnt3f minimum;
    Pnt3f maximum;
    volume.getBounds(minimum, maximum);
    for (UInt32 i = 0; i < 3; ++i) {
        if (!(minimum[i] <= m_maximum[i] && maximum[i] >= m_minimum[i])) {
            return false;
        }
    }
    return true;
}

void BoxVolume::transform(const Matrix& matrix)
{
    if (isEmpty() || isInfinite()) {
        return;
    }
    Pnt3f minimum(matrix[3]);
    Pnt3f maximum(matrix[3]);
    for (UInt32 column = 0; column < 3; ++column) {
        for (UInt32 row = 0; row < 3; ++row) {
            const Real32 factor = matrix[column][row];
            // No shortcut for zero: a corner at infinity becomes not a number, as in every OpenSG.
            const Real32 first = factor * m_minimum[column];
            const Real32 second = factor * m_maximum[column];
            minimum[row] += second >= first ? first : second;
            maximum[row] += second >= first ? second : first;
        }
    }
    m_minimum = minimum;
    m_maximum = maximum;
}

void BoxVolume::dump(const UInt32 indent, const BitVector /*flags*/) const
{
    std::cerr << std::string(indent, ' ') << *this << '\n';
}

std::ostream& operator<<(std::ostream& stream, const BoxVolume& volume)
{
    return stream << "BoxVolume (" << volume.getMin() << ") (" << volume.getMax() << ')'
                  << (volume.isValid() ? "" : " invalid") << (volume.isEmpty() ? " empty" : "")
                  << (volume.isStatic() ? " static" : "") << (volume.isInfinite() ? " infinite" : "");
}

} // namespace osg
