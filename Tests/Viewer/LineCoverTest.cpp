// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/LineCover.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace quon::testing {

namespace {

using viewer::CoverMap;
using viewer::LineCover;
using viewer::LineStyle;
using viewer::PictureBox;
using viewer::PicturePoint;

class LineCoverTest : public ::testing::Test {
protected:
    static constexpr int Width = 90;
    static constexpr int Height = 300;

    LineCoverTest() { begin(LineStyle::Edges::Smooth); }

    void begin(const LineStyle::Edges edges, const float width = 1, const float opacity = 1)
    {
        LineStyle style;
        style.edges = edges;
        style.width = width;
        style.opacity = opacity;
        style.samples = {{-0.125F, -0.375F}, {0.375F, -0.125F}, {-0.375F, 0.125F}, {0.125F, 0.375F}};
        ASSERT_TRUE(LineCover::canFollow(style));
        m_cover.begin(Width, Height, style);
    }

    bool add(const float fromX, const float fromY, const float toX, const float toY)
    {
        return m_cover.add({fromX, fromY}, {toX, toY});
    }

    // Until nothing changes any more.
    void addOften(const float fromX, const float fromY, const float toX, const float toY)
    {
        for (int i = 0; i < 100; ++i) {
            add(fromX, fromY, toX, toY);
        }
    }

    static PictureBox makeBox(const float left, const float bottom, const float right, const float top)
    {
        PictureBox box;
        box.left = left;
        box.bottom = bottom;
        box.right = right;
        box.top = top;
        return box;
    }

    LineCover m_cover;
};

TEST_F(LineCoverTest, ALineIsDrawnUntilAllThatItTouchesIsCovered)
{
    EXPECT_TRUE(add(20, 30.5F, 40, 30.5F));
    EXPECT_FALSE(m_cover.isCovered(30, 30));

    int drawn = 1;
    while (drawn < 1000 && add(20, 30.5F, 40, 30.5F)) {
        ++drawn;
    }
    // Its sides touch the rows beside it, its ends a pixel each, for which nothing is counted.
    EXPECT_EQ(drawn, 1000);
    EXPECT_TRUE(m_cover.isCovered(30, 30));
    EXPECT_FALSE(m_cover.isCovered(30, 31));

    addOften(20, 29.5F, 40, 29.5F);
    addOften(20, 31.5F, 40, 31.5F);
    EXPECT_FALSE(add(24, 30.5F, 36, 30.5F));
    EXPECT_TRUE(add(24, 30.5F, 46, 30.5F));
}

TEST_F(LineCoverTest, LinesOfEveryDirectionCoverTheirPixels)
{
    const PicturePoint ends[] = {{70, 50.5F}, {70, 70}, {50.5F, 70}, {30, 70}, {30, 50.5F}, {30, 30}, {55, 90}};

    for (const PicturePoint& end : ends) {
        begin(LineStyle::Edges::Smooth);
        for (int i = 0; i < 100; ++i) {
            m_cover.add({50.5F, 50.5F}, end);
        }
        const float x = (50.5F + end.x) / 2;
        const float y = (50.5F + end.y) / 2;
        EXPECT_TRUE(m_cover.isCovered(static_cast<int>(x), static_cast<int>(y))) << end.x << ", " << end.y;
        const float beyondX = end.x + (end.x - x) / 2;
        const float beyondY = end.y + (end.y - y) / 2;
        EXPECT_FALSE(m_cover.isCovered(static_cast<int>(beyondX), static_cast<int>(beyondY)));
    }
}

TEST_F(LineCoverTest, WhatIsHalfTransparentTakesMoreLines)
{
    const auto count = [&](const float opacity) {
        begin(LineStyle::Edges::Smooth, 3, opacity);
        int drawn = 0;
        while (drawn < 1000 && !m_cover.isCovered(30, 30)) {
            add(20, 30.5F, 40, 30.5F);
            ++drawn;
        }
        return drawn;
    };

    EXPECT_LE(count(1), 2);
    EXPECT_GE(count(0.5F), 6); // a half to the power of six is about four of 255
    EXPECT_LT(count(0.5F), 9);
}

TEST_F(LineCoverTest, SamplesAreCoveredOneByOne)
{
    begin(LineStyle::Edges::Sampled);
    // Above the middle of the pixels: two of the four samples are below.
    addOften(20, 31, 40, 31);
    EXPECT_FALSE(m_cover.isCovered(30, 30));

    add(20, 30, 40, 30);

    EXPECT_TRUE(m_cover.isCovered(30, 30));
    EXPECT_FALSE(m_cover.isCovered(30, 31));
}

TEST_F(LineCoverTest, NothingCountsThatTilesMayLose)
{
    begin(LineStyle::Edges::Sampled);

    add(64.05F, 30.5F, 70, 30.5F);
    add(63.05F, 40.5F, 70, 40.5F);

    EXPECT_TRUE(m_cover.isCovered(64, 30));
    EXPECT_FALSE(m_cover.isCovered(63, 40));
    EXPECT_TRUE(m_cover.isCovered(64, 40));
}

TEST_F(LineCoverTest, HardLinesCoverTheirPixelsAtOnce)
{
    begin(LineStyle::Edges::Hard);

    EXPECT_TRUE(add(20, 30.6F, 40, 30.6F));

    EXPECT_TRUE(m_cover.isCovered(30, 30));
    EXPECT_FALSE(m_cover.isCovered(30, 31));
    EXPECT_TRUE(m_cover.isCovered(38, 30));
    EXPECT_FALSE(m_cover.isCovered(40, 30));
}

TEST_F(LineCoverTest, ABoxIsHiddenWhenAllAroundItIsCovered)
{
    const PictureBox box = makeBox(25, 28, 35, 32);
    for (int row = 20; row < 33; ++row) {
        EXPECT_FALSE(m_cover.hides(box));
        addOften(10, static_cast<float>(row) + 0.5F, 50, static_cast<float>(row) + 0.5F);
    }

    EXPECT_TRUE(m_cover.hides(box));
    EXPECT_FALSE(m_cover.hides(makeBox(25, 28, 35, 39)));
    EXPECT_FALSE(m_cover.hides(makeBox(25, 28, 50, 32)));
}

TEST_F(LineCoverTest, WhatLiesBesideThePictureIsHidden)
{
    EXPECT_TRUE(m_cover.hides(makeBox(-20, 10, -10, 20)));
    EXPECT_TRUE(m_cover.hides(makeBox(1e8F, 10, 1e9F, 20)));
    EXPECT_FALSE(add(-20, 10, -10, 20));
    EXPECT_FALSE(m_cover.hides(makeBox(-20, 10, 1, 20)));
}

TEST_F(LineCoverTest, WhatIsNoNumberOrVeryLongIsDrawnAndCoversNothing)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();

    for (int i = 0; i < 100; ++i) {
        EXPECT_TRUE(add(10, nan, 20, 10));
        EXPECT_TRUE(add(-3000, 30.5F, 3000, 30.5F));
    }

    EXPECT_FALSE(m_cover.isCovered(30, 30));
}

TEST_F(LineCoverTest, SomeLinesCannotBeFollowed)
{
    LineStyle style;
    EXPECT_TRUE(LineCover::canFollow(style));
    style.width = 0.5F;
    EXPECT_FALSE(LineCover::canFollow(style));

    style.width = 1;
    style.edges = LineStyle::Edges::Sampled;
    EXPECT_FALSE(LineCover::canFollow(style)); // nobody says where the samples are
    style.samples.resize(4);
    EXPECT_TRUE(LineCover::canFollow(style));
    style.opacity = 0.5F;
    EXPECT_FALSE(LineCover::canFollow(style));
    style.edges = LineStyle::Edges::Smooth;
    EXPECT_TRUE(LineCover::canFollow(style));
}

TEST_F(LineCoverTest, BandsAreApart)
{
    EXPECT_EQ(m_cover.getBandCount(), 3U);
    EXPECT_EQ(m_cover.findBand(makeBox(0, 10, 10, 20)), 0U);
    EXPECT_EQ(m_cover.findBand(makeBox(0, 140, 10, 150)), 1U);
    EXPECT_EQ(m_cover.findBand(makeBox(0, 270, 10, 1e6F)), 2U);
    EXPECT_EQ(m_cover.findBand(makeBox(0, 100, 10, 140)), LineCover::NoBand);
    // The pixel above may be touched.
    EXPECT_EQ(m_cover.findBand(makeBox(0, 100, 10, 127)), LineCover::NoBand);
}

TEST_F(LineCoverTest, AMapShowsNothingOfWhatIsCovered)
{
    CoverMap map;
    map.setSize(Width, Height);
    map.getPixels()[30 * Width + 30] = 0.5F;
    map.getPixels()[31 * Width + 30] = 0.5F;
    addOften(20, 30.5F, 40, 30.5F);

    m_cover.limit(map);

    EXPECT_EQ(map.getPixels()[30 * Width + 30], 0.0F);
    EXPECT_EQ(map.getPixels()[31 * Width + 30], 0.5F);
}

} // namespace

} // namespace quon::testing
