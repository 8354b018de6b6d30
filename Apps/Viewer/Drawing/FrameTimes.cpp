// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/FrameTimes.h"

#include <algorithm>

namespace quon::viewer {

void FrameTimes::add(const double milliseconds)
{
    m_times[m_next] = milliseconds;
    m_next = (m_next + 1) % Capacity;
    m_count = std::min(m_count + 1, Capacity);
}

double FrameTimes::getLast() const
{
    return m_count == 0 ? 0 : m_times[(m_next + Capacity - 1) % Capacity];
}

double FrameTimes::getMedian() const
{
    if (m_count == 0) {
        return 0;
    }
    std::array<double, Capacity> times = m_times;
    auto* const middle = times.data() + m_count / 2;
    std::nth_element(times.data(), middle, times.data() + m_count);
    return *middle;
}

} // namespace quon::viewer
