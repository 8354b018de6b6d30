// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>

namespace quon::viewer {

/**
 * How long the last frames took, in milliseconds.
 *
 * Counted is the time that the program spends on a frame; a graphics card may still be at work afterwards.
 */
class FrameTimes {
public:
    /** The frames that are remembered. */
    static constexpr std::size_t Capacity = 60;

    void add(double milliseconds);

    /** The number of frames remembered. */
    std::size_t getCount() const { return m_count; }

    /** Returns the time of the last frame, 0 when there was none. */
    double getLast() const;

    /** Returns the middle one of the times remembered, the longer of two middle ones; 0 when there was no frame. */
    double getMedian() const;

private:
    std::array<double, Capacity> m_times{};
    std::size_t m_count = 0;
    std::size_t m_next = 0;
};

} // namespace quon::viewer
