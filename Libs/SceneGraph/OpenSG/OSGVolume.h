// SPDX-License-Identifier: MIT
#pragma once

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>

#include <string>

namespace osg {

class Line;

/**
 * A region of space with four flags.
 *
 * A fresh volume is valid and empty. Whether it is empty is a flag of its own: emptying leaves the bounds as they were,
 * and reading the bounds does not look at the flag. While a volume is untouchable (invalid, static or infinite)
 * extending it does nothing.
 */
class OSG_BASE_DLLMAPPING Volume {
public:
    virtual ~Volume();

    bool isValid() const noexcept { return (m_state & Valid) != 0; }
    void setValid(const bool value = true) noexcept { setFlag(Valid, value); }

    bool isEmpty() const noexcept { return (m_state & Empty) != 0; }
    /// Emptying makes the volume valid and finite as well; the bounds stay.
    void setEmpty(const bool value = true) noexcept
    {
        setFlag(Empty, value);
        if (value) {
            setFlag(Valid, true);
            setFlag(Infinite, false);
        }
    }

    bool isStatic() const noexcept { return (m_state & Static) != 0; }
    void setStatic(const bool value = true) noexcept { setFlag(Static, value); }

    bool isInfinite() const noexcept { return (m_state & Infinite) != 0; }
    /// An infinite volume is valid and not empty.
    void setInfinite(const bool value = true) noexcept
    {
        setFlag(Infinite, value);
        if (value) {
            setFlag(Valid, true);
            setFlag(Empty, false);
        }
    }

    bool isUntouchable() const noexcept { return (m_state & (Valid | Static | Infinite)) != Valid; }

    virtual void getCenter(Pnt3f& center) const = 0;
    virtual Real32 getScalarVolume() const = 0;
    virtual void getBounds(Pnt3f& minimum, Pnt3f& maximum) const = 0;
    Pnt3f getMin() const;
    Pnt3f getMax() const;

    virtual void extendBy(const Pnt3f& point) = 0;
    virtual void extendBy(const Volume& volume) = 0;

    virtual bool intersect(const Pnt3f& point) const = 0;
    virtual bool intersect(const Line& line) const = 0;
    virtual bool intersect(const Line& line, Real32& enter, Real32& exit) const = 0;
    virtual bool intersect(const Volume& volume) const = 0;

    virtual void transform(const Matrix& matrix) = 0;

    /// Writes type, flags and bounds to standard error, for a look from a debugger.
    virtual void dump(UInt32 indent = 0, BitVector flags = 0) const = 0;

protected:
    Volume() noexcept = default;
    Volume(const Volume&) noexcept = default;
    Volume& operator=(const Volume&) noexcept = default;

    bool hasSameState(const Volume& other) const noexcept { return m_state == other.m_state; }

private:
    enum State : UInt16 { Valid = 1, Empty = 2, Static = 4, Infinite = 8 };

    void setFlag(const State flag, const bool value) noexcept
    {
        m_state = static_cast<UInt16>(value ? m_state | flag : m_state & ~flag);
    }

    UInt16 m_state = Valid | Empty;
};

} // namespace osg
