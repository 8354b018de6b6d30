// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/CoverMap.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace quon::viewer {

namespace {

// A box is compared with at most so many numbers in a row, of a coarser level where need be.
constexpr int MostInRow = 4;

// Longer lines are few, and seen.
constexpr float LongestLine = 1024;

/** The corners of a box in clip space, one by one. */
class BoxProjection {
public:
    BoxProjection(const Matrix4& worldToClip, const WorldBox& box)
    {
        for (int row = 0; row < 4; ++row) {
            m_first[row] = worldToClip(row, 3);
            for (int axis = 0; axis < 3; ++axis) {
                const auto from = static_cast<double>(box.minimum[static_cast<osg::UInt32>(axis)]);
                const auto to = static_cast<double>(box.maximum[static_cast<osg::UInt32>(axis)]);
                m_first[row] += worldToClip(row, axis) * from;
                m_edges[axis][row] = worldToClip(row, axis) * (to - from);
            }
        }
    }

    /** Divided by w: from -1 to 1 in the view; false behind the eye and beyond the near plane. */
    bool get(const unsigned corner, double* place) const
    {
        double clip[4];
        for (int row = 0; row < 4; ++row) {
            clip[row] = m_first[row] + ((corner & 1U) != 0 ? m_edges[0][row] : 0.0) +
                        ((corner & 2U) != 0 ? m_edges[1][row] : 0.0) + ((corner & 4U) != 0 ? m_edges[2][row] : 0.0);
        }
        // Written so that a NaN fails.
        if (!(clip[3] > 0 && clip[2] >= -clip[3])) {
            return false;
        }
        const double inverse = 1 / clip[3];
        for (int axis = 0; axis < 3; ++axis) {
            place[axis] = clip[axis] * inverse;
        }
        return true;
    }

private:
    double m_first[4];
    double m_edges[3][4];
};

float toPixel(const double place, const int size)
{
    return static_cast<float>((place + 1) * 0.5 * size);
}

} // namespace

void CoverMap::setSize(int width, int height)
{
    width = std::max(width, 1);
    height = std::max(height, 1);
    if (width == getWidth() && height == getHeight()) {
        return;
    }
    m_levels.clear();
    while (true) {
        Level level;
        level.width = width;
        level.height = height;
        level.values.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
        m_levels.push_back(std::move(level));
        if (width <= MostInRow && height <= MostInRow) {
            return;
        }
        width = (width + 1) / 2;
        height = (height + 1) / 2;
    }
}

void CoverMap::finish()
{
    for (std::size_t i = 1; i < m_levels.size(); ++i) {
        const Level& fine = m_levels[i - 1];
        Level& coarse = m_levels[i];
        for (int y = 0; y < coarse.height; ++y) {
            const float* lower = fine.values.data() + static_cast<std::ptrdiff_t>(2 * y) * fine.width;
            const float* upper = 2 * y + 1 < fine.height ? lower + fine.width : lower;
            float* values = coarse.values.data() + static_cast<std::ptrdiff_t>(y) * coarse.width;
            const std::ptrdiff_t pairs = fine.width / 2;
            for (std::ptrdiff_t x = 0; x < pairs; ++x) {
                const float left = lower[2 * x] > upper[2 * x] ? lower[2 * x] : upper[2 * x];
                const float right = lower[2 * x + 1] > upper[2 * x + 1] ? lower[2 * x + 1] : upper[2 * x + 1];
                values[x] = left > right ? left : right;
            }
            if (pairs < coarse.width) {
                values[pairs] = std::max(lower[2 * pairs], upper[2 * pairs]);
            }
        }
    }
}

void CoverMap::grow(const int distance)
{
    const int width = getWidth();
    const int height = getHeight();
    float* pixels = getPixels();
    m_row.resize(static_cast<std::size_t>(width));
    float* former = m_row.data();
    for (int step = 0; step < distance; ++step) {
        for (int y = 0; y < height; ++y) {
            float* row = pixels + static_cast<std::ptrdiff_t>(y) * width;
            std::copy(row, row + width, former);
            for (int x = 1; x + 1 < width; ++x) {
                const float sides = former[x - 1] > former[x + 1] ? former[x - 1] : former[x + 1];
                row[x] = sides > row[x] ? sides : row[x];
            }
            if (width > 1) {
                row[0] = std::max(row[0], former[1]);
                row[width - 1] = std::max(row[width - 1], former[width - 2]);
            }
        }
        // The row before as it was, while its place already holds the result.
        std::copy(pixels, pixels + width, former);
        for (int y = 0; y < height; ++y) {
            float* row = pixels + static_cast<std::ptrdiff_t>(y) * width;
            const float* above = y + 1 < height ? row + width : row;
            for (int x = 0; x < width; ++x) {
                const float before = former[x];
                const float own = row[x];
                const float sides = before > above[x] ? before : above[x];
                former[x] = own;
                row[x] = sides > own ? sides : own;
            }
        }
    }
}

bool CoverMap::project(const Matrix4& worldToClip, const WorldBox& box, PictureBox& result) const
{
    const BoxProjection projection(worldToClip, box);
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    std::array<double, 3> least{Infinity, Infinity, Infinity};
    std::array<double, 3> most{-Infinity, -Infinity, -Infinity};
    for (unsigned corner = 0; corner < 8; ++corner) {
        double place[3];
        if (!projection.get(corner, place)) {
            return false;
        }
        for (std::size_t axis = 0; axis < 3; ++axis) {
            least[axis] = place[axis] < least[axis] ? place[axis] : least[axis];
            most[axis] = place[axis] > most[axis] ? place[axis] : most[axis];
        }
    }
    result.left = toPixel(least[0], getWidth());
    result.right = toPixel(most[0], getWidth());
    result.bottom = toPixel(least[1], getHeight());
    result.top = toPixel(most[1], getHeight());
    result.nearest = static_cast<float>((least[2] + 1) / 2);
    result.farthest = static_cast<float>((most[2] + 1) / 2);
    return std::isfinite(result.right - result.left) && std::isfinite(result.top - result.bottom) &&
           std::isfinite(result.farthest - result.nearest);
}

bool CoverMap::project(const Matrix4& worldToClip, const WorldBox& box, PictureCorners& result) const
{
    const BoxProjection projection(worldToClip, box);
    for (unsigned corner = 0; corner < 8; ++corner) {
        double place[3];
        if (!projection.get(corner, place)) {
            return false;
        }
        result[corner] = {toPixel(place[0], getWidth()), toPixel(place[1], getHeight())};
    }
    return true;
}

bool CoverMap::hides(const PictureBox& box, const float border, const float depth) const
{
    const auto width = static_cast<float>(getWidth());
    const auto height = static_cast<float>(getHeight());
    if (box.right + border < 0 || box.left - border >= width || box.top + border < 0 || box.bottom - border >= height ||
        box.nearest > 1) {
        return true;
    }
    int left = static_cast<int>(std::max(box.left - border, 0.0F));
    int right = static_cast<int>(std::min(box.right + border, width - 1));
    int bottom = static_cast<int>(std::max(box.bottom - border, 0.0F));
    int top = static_cast<int>(std::min(box.top + border, height - 1));
    auto level = m_levels.begin();
    while (right - left >= MostInRow || top - bottom >= MostInRow) {
        left /= 2;
        right /= 2;
        bottom /= 2;
        top /= 2;
        ++level;
    }
    for (int y = bottom; y <= top; ++y) {
        const float* values = level->values.data() + static_cast<std::ptrdiff_t>(y) * level->width;
        for (int x = left; x <= right; ++x) {
            if (!(values[x] < depth)) {
                return false;
            }
        }
    }
    return true;
}

bool CoverMap::hides(const PicturePoint& from, const PicturePoint& to, const float depth) const
{
    const float across = to.x - from.x;
    const float up = to.y - from.y;
    const float length = std::max(std::abs(across), std::abs(up));
    // Written so that a NaN fails.
    if (!(length < LongestLine)) {
        return false;
    }
    const Level& pixels = m_levels.front();
    const int steps = static_cast<int>(length) + 1;
    const float part = 1 / static_cast<float>(steps);
    for (int i = 0; i <= steps; ++i) {
        const float share = static_cast<float>(i) * part;
        const int x = static_cast<int>(std::floor(from.x + across * share));
        const int y = static_cast<int>(std::floor(from.y + up * share));
        const bool isInside = x >= 0 && x < pixels.width && y >= 0 && y < pixels.height;
        if (isInside && !(pixels.values[static_cast<std::size_t>(y) * static_cast<std::size_t>(pixels.width) +
                                        static_cast<std::size_t>(x)] < depth)) {
            return false;
        }
    }
    return true;
}

} // namespace quon::viewer
