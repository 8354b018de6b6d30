// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/LineCover.h"

#include <algorithm>
#include <cmath>

namespace quon::viewer {

namespace {

// A multiple of the bits of a word: different bands then have words of their own along both axes.
constexpr int RowsOfBand = 128;

// Longer lines are few, and seen.
constexpr float LongestLine = 1024;

// How far drawing may be from what is calculated here, in pixels.
constexpr float Error = 0.02F;

// A pixel is covered when so much of what is behind is left, of the whole. Less than that takes long: blending in steps
// comes nearer to a colour ever more slowly.
constexpr std::uint16_t Whole = 65535;
constexpr std::uint16_t CoveredShare = Whole / 255 * 4;

// Of what lines take away so much is counted, and of what they hardly touch nothing.
constexpr float CountedShare = 0.98F;
constexpr float LeastShare = 0.02F;

// With less of their own colour, lines without shades leave too much of what is behind.
constexpr float LeastOpacity = 0.985F;

constexpr std::size_t MostSamples = 16;

// The sides of Mesa's tiles, in pixels.
constexpr int TileSize = 64;

bool isLastOfTile(const int pixel)
{
    return pixel % TileSize == TileSize - 1;
}

// What is farther out has no place among the pixels.
constexpr float FarthestPlace = 1e6F;

// Quicker than those of the library, which has to bear numbers of any size.
int roundDown(const float value)
{
    const int cut = static_cast<int>(value);
    return cut - (value < static_cast<float>(cut) ? 1 : 0);
}

int roundUp(const float value)
{
    const int cut = static_cast<int>(value);
    return cut + (value > static_cast<float>(cut) ? 1 : 0);
}

float clampShare(const float value)
{
    return std::min(std::max(value, 0.0F), 1.0F);
}

} // namespace

void LineCover::Bits::reset(const int lines, const int length)
{
    m_lines = lines;
    m_length = length;
    m_stride = static_cast<std::size_t>(length) / 64 + 1;
    m_words.assign(m_stride * static_cast<std::size_t>(lines), 0);
}

void LineCover::Bits::set(const int line, const int place)
{
    m_words[static_cast<std::size_t>(line) * m_stride + static_cast<std::size_t>(place) / 64] |=
        std::uint64_t(1) << (static_cast<unsigned>(place) % 64);
}

bool LineCover::Bits::areSet(const int line, int first, int last) const
{
    first = std::max(first, 0);
    last = std::min(last, m_length - 1);
    if (line < 0 || line >= m_lines) {
        return true;
    }
    const std::uint64_t* words = m_words.data() + static_cast<std::size_t>(line) * m_stride;
    while (first <= last) {
        const auto low = static_cast<unsigned>(first) % 64;
        const unsigned high = std::min(63U, low + static_cast<unsigned>(last - first));
        const std::uint64_t mask = (~std::uint64_t(0) << low) & (~std::uint64_t(0) >> (63 - high));
        if ((words[static_cast<std::size_t>(first) / 64] & mask) != mask) {
            return false;
        }
        first += static_cast<int>(high - low) + 1;
    }
    return true;
}

bool LineCover::canFollow(const LineStyle& style)
{
    // Finer ones fade, each renderer in its own way.
    if (!(style.width >= 1)) {
        return false;
    }
    switch (style.edges) {
    case LineStyle::Edges::Smooth:
        return style.opacity > LeastShare;
    case LineStyle::Edges::Sampled:
        return style.opacity >= LeastOpacity && !style.samples.empty() && style.samples.size() <= MostSamples;
    case LineStyle::Edges::Hard:
        return style.opacity >= LeastOpacity;
    }
    return false;
}

void LineCover::begin(const int width, const int height, const LineStyle& style)
{
    m_style = style;
    // A sample is nearer to the line than the middle of its pixel by half a diagonal at most.
    m_reach = m_style.width / 2 + (style.edges == LineStyle::Edges::Sampled ? 0.71F : 0.5F) + Error;
    m_border = std::hypot(m_reach, 0.5F) + Error;
    const bool isSampled = style.edges == LineStyle::Edges::Sampled;
    m_coveredAt = isSampled ? 0 : CoveredShare;
    const auto nothing = isSampled ? static_cast<std::uint16_t>((std::uint32_t(1) << style.samples.size()) - 1) : Whole;
    m_left.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), nothing);
    m_rows.reset(height, width);
    m_columns.reset(width, height);
}

std::size_t LineCover::getBandCount() const
{
    return static_cast<std::size_t>((m_rows.getLines() + RowsOfBand - 1) / RowsOfBand);
}

std::size_t LineCover::findBand(const PictureBox& box) const
{
    // The pixels that are looked at above each other reach farther up than the sides of a line that is not level.
    const float border = 3 * m_reach + 2;
    const auto last = static_cast<float>(m_rows.getLines() - 1);
    const int bottom = static_cast<int>(std::clamp(box.bottom - border, 0.0F, last)) / RowsOfBand;
    const int top = static_cast<int>(std::clamp(box.top + border, 0.0F, last)) / RowsOfBand;
    return bottom == top ? static_cast<std::size_t>(bottom) : NoBand;
}

bool LineCover::hides(const PictureBox& box) const
{
    const auto width = static_cast<float>(m_rows.getLength());
    const auto height = static_cast<float>(m_rows.getLines());
    const auto find = [&](const float place, const float size) { return std::clamp(place, -1.0F, size); };
    const int left = roundUp(find(box.left - m_border - 0.5F, width));
    const int right = roundDown(find(box.right + m_border - 0.5F, width));
    const int bottom = roundUp(find(box.bottom - m_border - 0.5F, height));
    const int top = roundDown(find(box.top + m_border - 0.5F, height));
    for (int y = bottom; y <= top; ++y) {
        if (!m_rows.areSet(y, left, right)) {
            return false;
        }
    }
    return true;
}

bool LineCover::add(const PicturePoint& from, const PicturePoint& to)
{
    Track track;
    if (!makeTrack(from, to, track)) {
        return true;
    }
    if (!isSeen(track)) {
        return false;
    }
    cover(track);
    return true;
}

/// Leaves the track unfinished and returns false where a line is not to be followed.
bool LineCover::makeTrack(const PicturePoint& from, const PicturePoint& to, Track& track) const
{
    const float across = to.x - from.x;
    const float up = to.y - from.y;
    track.length = std::sqrt(across * across + up * up);
    const float farthest = std::max({std::abs(from.x), std::abs(from.y), std::abs(to.x), std::abs(to.y)});
    // Written so that a NaN fails.
    if (!(track.length < LongestLine && farthest < FarthestPlace)) {
        return false;
    }
    track.steep = std::abs(up) > std::abs(across);
    PicturePoint begin = track.steep ? PicturePoint{from.y, from.x} : from;
    PicturePoint end = track.steep ? PicturePoint{to.y, to.x} : to;
    if (begin.x > end.x) {
        std::swap(begin, end);
    }
    track.from = begin.x;
    track.to = end.x;
    track.start = begin.y;
    if (track.length > 1e-4F) {
        track.cosine = (end.x - begin.x) / track.length;
        track.sine = (end.y - begin.y) / track.length;
        track.slope = track.sine / track.cosine;
    }
    track.reach = m_reach / track.cosine;
    const float ahead = 0.5F * track.cosine + m_reach * std::abs(track.sine);
    track.first = roundUp(track.from - ahead - 0.5F);
    track.last = roundDown(track.to + ahead - 0.5F);
    return true;
}

bool LineCover::isSeen(const Track& track) const
{
    const Bits& bits = track.steep ? m_rows : m_columns;
    const int first = std::max(track.first, 0);
    const int last = std::min(track.last, bits.getLines() - 1);
    for (int i = first; i <= last; ++i) {
        const float middle = track.start + (static_cast<float>(i) + 0.5F - track.from) * track.slope - 0.5F;
        if (!bits.areSet(i, roundUp(middle - track.reach), roundDown(middle + track.reach))) {
            return true;
        }
    }
    return false;
}

void LineCover::cover(const Track& track)
{
    const Bits& bits = track.steep ? m_rows : m_columns;
    // What is cut off at the borders of the picture may be rounded off there.
    const int first = std::max(track.first, 1);
    const int last = std::min(track.last, bits.getLines() - 2);
    const float centre = (track.from + track.to) / 2;
    // The box around what is drawn of it.
    const float half = m_style.width / 2 - Error;
    const float sine = std::abs(track.sine);
    const float alongBox = track.length / 2 * track.cosine + half * sine;
    const float acrossBox = track.length / 2 * sine + half * track.cosine;
    for (int i = first; i <= last; ++i) {
        const float place = static_cast<float>(i) + 0.5F;
        const float middle = track.start + (place - track.from) * track.slope - 0.5F;
        const int low = std::max(roundUp(middle - track.reach), 1);
        const int high = std::min(roundDown(middle + track.reach), bits.getLength() - 2);
        for (int j = low; j <= high; ++j) {
            const int x = track.steep ? j : i;
            const int y = track.steep ? i : j;
            std::uint16_t& left = m_left[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_rows.getLength()) +
                                         static_cast<std::size_t>(x)];
            if (left <= m_coveredAt) {
                continue;
            }
            const float along = place - centre;
            const float across = static_cast<float>(j) - middle + along * track.slope;
            // Mesa, which draws tile by tile, may begin a line that several samples are taken of one pixel too late.
            if (m_style.edges == LineStyle::Edges::Sampled &&
                ((isLastOfTile(i) && along - 0.5F < -alongBox) || (isLastOfTile(j) && across - 0.5F < -acrossBox))) {
                continue;
            }
            left = getLeft(left, track, along, across);
            if (left <= m_coveredAt) {
                setCovered(x, y);
            }
        }
    }
}

/// What a line leaves of a pixel, of which the middle is so far from the line's.
std::uint16_t LineCover::getLeft(const std::uint16_t left, const Track& track, const float along,
                                 const float across) const
{
    if (m_style.edges == LineStyle::Edges::Sampled) {
        return getSamplesLeft(left, track, along, across);
    }
    const float half = m_style.width / 2;
    if (m_style.edges == LineStyle::Edges::Hard) {
        // At its ends rules decide that differ.
        const bool isInside = std::abs(along) <= (track.to - track.from) / 2 - 0.5F;
        const float beside = std::abs(across - along * track.slope);
        return isInside && beside <= std::max(half - 0.5F, 0.5F) - Error ? 0 : left;
    }
    const float distance = std::abs(across * track.cosine - along * track.sine);
    const float way = std::abs(along * track.cosine + across * track.sine);
    // Short lines fade.
    const float strength = track.length < 1 ? 2 * track.length / (track.length + 1) : 1.0F;
    const float share = clampShare(half + 0.5F - Error - distance) * clampShare(track.length / 2 + 0.5F - Error - way) *
                        strength * m_style.opacity * CountedShare;
    if (share < LeastShare) {
        return left;
    }
    return static_cast<std::uint16_t>(std::ceil(static_cast<float>(left) * (1 - share)));
}

std::uint16_t LineCover::getSamplesLeft(std::uint16_t left, const Track& track, const float along,
                                        const float across) const
{
    const float half = m_style.width / 2 - Error;
    // Shorter ones are not drawn where they leave no diamond around the middle of a pixel.
    if (track.to - track.from < 1) {
        return left;
    }
    for (std::size_t i = 0; i < m_style.samples.size(); ++i) {
        const PicturePoint& sample = m_style.samples[i];
        const float sampleAlong = along + (track.steep ? sample.y : sample.x);
        const float sampleAcross = across + (track.steep ? sample.x : sample.y);
        const float distance = std::abs(sampleAcross * track.cosine - sampleAlong * track.sine);
        const float way = std::abs(sampleAlong * track.cosine + sampleAcross * track.sine);
        if (distance <= half && way <= track.length / 2 - Error) {
            left = static_cast<std::uint16_t>(left & ~(1U << i));
        }
    }
    return left;
}

void LineCover::setCovered(const int x, const int y)
{
    m_rows.set(y, x);
    m_columns.set(x, y);
}

void LineCover::limit(CoverMap& map) const
{
    float* pixels = map.getPixels();
    for (std::size_t i = 0; i < m_left.size(); ++i) {
        pixels[i] = m_left[i] <= m_coveredAt ? 0.0F : pixels[i];
    }
}

} // namespace quon::viewer
