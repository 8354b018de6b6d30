// SPDX-License-Identifier: MIT
#pragma once

#include "Viewer/Drawing/CoverMap.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quon::viewer {

/** How lines become pixels. */
struct LineStyle {
    enum class Edges {
        Smooth,  ///< the more of a pixel they cover, the more of their colour it has
        Sampled, ///< a pixel has several samples, each of which has their colour or not
        Hard,    ///< a pixel has their colour or not
    };

    Edges edges = Edges::Smooth;
    float width = 1; ///< in pixels
    float opacity = 1;
    std::vector<PicturePoint> samples; ///< Sampled: the places of the samples, seen from the middle of the pixel
};

/**
 * Which pixels have the colour of many lines, drawn over everything else, to tell which of the lines add nothing.
 *
 * Works without drawing: a line that is drawn is followed from pixel to pixel. Pixels count as covered when the colour
 * is reached within a few of 255 steps, as with lines as the standard describes them, smooth ones as Mesa draws them.
 * @par Bands
 * The rows of the picture fall into bands. What touches different bands may be added in different threads at once.
 */
class LineCover {
public:
    /** What touches pixels of more than one band. */
    static constexpr std::size_t NoBand = static_cast<std::size_t>(-1);

    /** Whether anything can be told of such lines; otherwise they are not to be added. */
    static bool canFollow(const LineStyle& style);

    /** Begins with a picture in which nothing is covered. */
    void begin(int width, int height, const LineStyle& style);

    std::size_t getBandCount() const;

    /** The band of all pixels that lines in a box can touch. */
    std::size_t findBand(const PictureBox& box) const;

    /** Whether all pixels that lines in a box can touch are covered already. */
    bool hides(const PictureBox& box) const;

    /**
     * Takes the next line.
     *
     * @return whether it has to be drawn, and covers pixels therefore: one that touches covered pixels alone has not
     */
    bool add(const PicturePoint& from, const PicturePoint& to);

    /** Writes 0 into a map of the same size where a pixel is covered, without finishing it. */
    void limit(CoverMap& map) const;

    bool isCovered(const int x, const int y) const { return m_rows.areSet(y, x, x); }

private:
    /** A bit for each pixel, in lines along one axis. */
    class Bits {
    public:
        void reset(int lines, int length);
        void set(int line, int place);

        /** Whether those of the bits from one place to another are set that lie in the picture. */
        bool areSet(int line, int first, int last) const;

        int getLines() const { return m_lines; }
        int getLength() const { return m_length; }

    private:
        int m_lines = 0;
        int m_length = 0;
        std::size_t m_stride = 0;
        std::vector<std::uint64_t> m_words;
    };

    /** A line by the axis that it is longer along. */
    struct Track {
        bool steep = false; ///< that axis points upwards
        float from = 0;     ///< along that axis
        float to = 0;
        float start = 0; ///< across, at its beginning
        float slope = 0;
        float length = 0;
        float cosine = 1; ///< of the direction
        float sine = 0;
        int first = 0; ///< pixels along the axis that it can touch
        int last = 0;
        float reach = 0; ///< how far from its middle it touches the middles of pixels, across
    };

    bool makeTrack(const PicturePoint& from, const PicturePoint& to, Track& track) const;
    bool isSeen(const Track& track) const;
    void cover(const Track& track);
    std::uint16_t getLeft(std::uint16_t left, const Track& track, float along, float across) const;
    std::uint16_t getSamplesLeft(std::uint16_t left, const Track& track, float along, float across) const;
    void setCovered(int x, int y);

    LineStyle m_style;
    float m_reach = 0;  ///< from the middle of a line to the middle of a pixel that it touches
    float m_border = 0; ///< from a box to the middle of a pixel that a line in it touches
    std::uint16_t m_coveredAt = 0;
    std::vector<std::uint16_t> m_left; ///< by pixel: what is not covered yet, a share or samples
    Bits m_rows;
    Bits m_columns;
};

} // namespace quon::viewer
