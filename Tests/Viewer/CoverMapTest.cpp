// SPDX-License-Identifier: MIT
#include "Viewer/Drawing/CoverMap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <random>

namespace quon::testing {

namespace {

using viewer::CoverMap;
using viewer::Matrix4;
using viewer::PictureBox;
using viewer::PictureCorners;
using viewer::WorldBox;

class CoverMapTest : public ::testing::Test {
protected:
    static constexpr int Width = 37;
    static constexpr int Height = 23;
    static constexpr std::ptrdiff_t Count = Width * Height;

    CoverMapTest()
    {
        m_map.setSize(Width, Height);
        fill(0.25F);
    }

    void fill(const float value)
    {
        std::fill(m_map.getPixels(), m_map.getPixels() + Count, value);
        m_map.finish();
    }

    void set(const int x, const int y, const float value)
    {
        m_map.getPixels()[y * Width + x] = value;
        m_map.finish();
    }

    static PictureBox makeBox(const float left, const float bottom, const float right, const float top)
    {
        PictureBox box;
        box.left = left;
        box.bottom = bottom;
        box.right = right;
        box.top = top;
        box.nearest = 0.5F;
        box.farthest = 0.6F;
        return box;
    }

    bool hides(const PictureBox& box, const float depth = 0.5F) const { return m_map.hides(box, 0, depth); }

    CoverMap m_map;
};

TEST_F(CoverMapTest, HidesWhatIsBehindAllItsPixels)
{
    EXPECT_TRUE(hides(makeBox(3.5F, 4.5F, 20.5F, 15.5F)));

    set(20, 15, 1);

    EXPECT_FALSE(hides(makeBox(3.5F, 4.5F, 20.5F, 15.5F)));
    EXPECT_FALSE(hides(makeBox(17.5F, 12.5F, 20.5F, 15.5F)));
    EXPECT_TRUE(hides(makeBox(17.5F, 12.5F, 20.5F, 14.9F)));
}

TEST_F(CoverMapTest, WhatIsAsDeepHidesNothing)
{
    EXPECT_FALSE(hides(makeBox(3, 4, 5, 6), 0.25F));
    EXPECT_TRUE(hides(makeBox(3, 4, 5, 6), 0.2501F));
}

TEST_F(CoverMapTest, TheBorderCounts)
{
    set(10, 10, 1);

    EXPECT_TRUE(m_map.hides(makeBox(12, 10, 14, 11), 0.9F, 0.5F));
    EXPECT_FALSE(m_map.hides(makeBox(12, 10, 14, 11), 1.1F, 0.5F));
}

TEST_F(CoverMapTest, WhatLiesBesideThePictureIsHidden)
{
    fill(1);

    EXPECT_TRUE(hides(makeBox(-9, 4, -1, 6)));
    EXPECT_TRUE(hides(makeBox(Width, 4, Width + 9, 6)));
    EXPECT_TRUE(hides(makeBox(3, -9, 5, -1)));
    EXPECT_TRUE(hides(makeBox(3, Height, 5, Height + 9)));
    EXPECT_FALSE(hides(makeBox(-9, -9, 0.5F, 0.5F)));
}

TEST_F(CoverMapTest, WhatLiesBehindTheFarPlaneIsHidden)
{
    fill(1);
    PictureBox box = makeBox(3, 4, 5, 6);
    box.nearest = 1.01F;

    EXPECT_TRUE(hides(box));
}

TEST_F(CoverMapTest, NeverHidesWhatAPixelShows)
{
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same every time
    const auto upTo = [&](const int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    int hidden = 0;
    for (int round = 0; round < 2000; ++round) {
        fill(0.25F);
        const int x = upTo(Width);
        const int y = upTo(Height);
        set(x, y, 1);
        const int left = upTo(Width);
        const int bottom = upTo(Height);
        const int right = left + upTo(Width - left);
        const int top = bottom + upTo(Height - bottom);
        const PictureBox box = makeBox(static_cast<float>(left) + 0.5F, static_cast<float>(bottom) + 0.5F,
                                       static_cast<float>(right) + 0.5F, static_cast<float>(top) + 0.5F);
        const bool isInside = x >= left && x <= right && y >= bottom && y <= top;
        hidden += hides(box) ? 1 : 0;
        ASSERT_FALSE(isInside && hides(box)) << x << ", " << y;
    }
    EXPECT_GT(hidden, 1000);
}

TEST_F(CoverMapTest, GrowingLetsNeighboursShowAsMuch)
{
    m_map.getPixels()[10 * Width + 10] = 1;
    m_map.grow(2);
    m_map.finish();

    for (int y = 0; y < Height; ++y) {
        for (int x = 0; x < Width; ++x) {
            const bool isNear = std::max(std::abs(x - 10), std::abs(y - 10)) <= 2;
            EXPECT_FLOAT_EQ(m_map.getPixels()[y * Width + x], isNear ? 1.0F : 0.25F) << x << ", " << y;
        }
    }
}

TEST_F(CoverMapTest, GrowingStopsAtTheEdges)
{
    m_map.getPixels()[0] = 1;
    m_map.getPixels()[Width * Height - 1] = 1;
    m_map.grow(1);

    EXPECT_FLOAT_EQ(m_map.getPixels()[Width + 1], 1);
    EXPECT_FLOAT_EQ(m_map.getPixels()[2], 0.25F);
    EXPECT_FLOAT_EQ(m_map.getPixels()[Width * (Height - 1) - 2], 1);
    EXPECT_FLOAT_EQ(m_map.getPixels()[Width - 1], 0.25F);
}

TEST_F(CoverMapTest, LinesAreHiddenByThePixelsThatTheyRunThrough)
{
    set(10, 10, 1);

    EXPECT_FALSE(m_map.hides({3.5F, 3.5F}, {17.5F, 17.5F}, 0.5F));
    EXPECT_FALSE(m_map.hides({10.5F, 2.5F}, {10.5F, 20.5F}, 0.5F));
    EXPECT_TRUE(m_map.hides({3.5F, 5.5F}, {17.5F, 19.5F}, 0.5F));
    EXPECT_TRUE(m_map.hides({3.5F, 3.5F}, {8.5F, 8.5F}, 0.5F));
    EXPECT_FALSE(m_map.hides({10.2F, 10.7F}, {10.2F, 10.7F}, 0.5F));
}

TEST_F(CoverMapTest, LinesBesideThePictureAreHiddenAndThoseWithoutNumberAreNot)
{
    fill(1);
    const float nan = std::numeric_limits<float>::quiet_NaN();

    EXPECT_TRUE(m_map.hides({-9, 4}, {-2, 8}, 0.5F));
    EXPECT_FALSE(m_map.hides({-9, 4}, {2, 4}, 0.5F));
    EXPECT_FALSE(m_map.hides({nan, 4}, {2, 4}, 0.5F));
    EXPECT_FALSE(m_map.hides({-1e9F, -5}, {1e9F, -5}, 0.5F));
}

TEST_F(CoverMapTest, ABoxIsWhereItsCornersAre)
{
    Matrix4 worldToClip;
    worldToClip(2, 2) = -1;
    PictureBox box;
    PictureCorners corners;
    const WorldBox world{osg::Pnt3f(-1, -0.5F, -0.2F), osg::Pnt3f(0, 1, 0.4F)};

    ASSERT_TRUE(m_map.project(worldToClip, world, box));
    ASSERT_TRUE(m_map.project(worldToClip, world, corners));

    EXPECT_TRUE(box.isKnown());
    EXPECT_FLOAT_EQ(box.left, 0);
    EXPECT_FLOAT_EQ(box.right, Width / 2.0F);
    EXPECT_FLOAT_EQ(box.bottom, Height / 4.0F);
    EXPECT_FLOAT_EQ(box.top, Height);
    EXPECT_FLOAT_EQ(box.nearest, 0.3F);
    EXPECT_FLOAT_EQ(box.farthest, 0.6F);
    EXPECT_FLOAT_EQ(corners[1].x, Width / 2.0F);
    EXPECT_FLOAT_EQ(corners[1].y, Height / 4.0F);
    EXPECT_FLOAT_EQ(corners[6].x, 0);
    EXPECT_FLOAT_EQ(corners[6].y, Height);
}

TEST_F(CoverMapTest, WhereABoxIsThatReachesBeforeTheNearPlaneIsNotKnown)
{
    Matrix4 worldToClip;
    worldToClip(2, 2) = -1;
    PictureBox box;
    PictureCorners corners;
    const WorldBox world{osg::Pnt3f(-1, -1, 0), osg::Pnt3f(1, 1, 1.5F)};

    EXPECT_FALSE(m_map.project(worldToClip, world, box));
    EXPECT_FALSE(m_map.project(worldToClip, world, corners));
    EXPECT_FALSE(PictureBox().isKnown());
}

} // namespace

} // namespace quon::testing
