// SPDX-License-Identifier: MIT
#include "Viewer/Model/GeometryContent.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::IsEmpty;
using ::testing::Not;
using viewer::GeometryContent;
using viewer::GeometryData;

// As many points in a row, and one far away that nothing uses.
GeometryData makeRow(const std::size_t count)
{
    GeometryData data;
    for (std::size_t i = 0; i < count; ++i) {
        data.positions.emplace_back(static_cast<float>(i), 0.0F, 0.0F);
        data.points.push_back(static_cast<osg::UInt32>(i));
    }
    data.positions.emplace_back(-1000.0F, 0.0F, 0.0F);
    return data;
}

TEST(GeometryContentTest, NothingHasNoBoxAndNoBlocks)
{
    const GeometryContent content{GeometryData()};

    EXPECT_EQ(content.getMinimum(), osg::Pnt3f());
    EXPECT_EQ(content.getMaximum(), osg::Pnt3f());
    EXPECT_THAT(content.getBlocks(), IsEmpty());
    EXPECT_NE(content.getTree().getScene(), nullptr);
}

TEST(GeometryContentTest, TheBoxHoldsWhatIsUsed)
{
    const GeometryContent content(makeRow(11));

    EXPECT_EQ(content.getMinimum(), osg::Pnt3f(0, 0, 0));
    EXPECT_EQ(content.getMaximum(), osg::Pnt3f(10, 0, 0));
}

TEST(GeometryContentTest, TheBlocksHoldEachUsedPositionOnce)
{
    constexpr std::size_t Count = 5000;
    const GeometryContent content(makeRow(Count));

    const std::vector<GeometryContent::Block>& blocks = content.getBlocks();

    ASSERT_GT(blocks.size(), 5U);
    std::vector<int> seen(Count + 1, 0);
    for (const GeometryContent::Block& block : blocks) {
        for (std::size_t i = block.begin; i < block.end; ++i) {
            if (content.isUsed(i)) {
                ++seen[i];
                EXPECT_GE(content.getData().positions[i][0], block.minimum[0]);
                EXPECT_LE(content.getData().positions[i][0], block.maximum[0]);
            }
        }
        EXPECT_LT(block.maximum[0] - block.minimum[0], 1000.0F);
    }
    EXPECT_EQ(seen, [] {
        std::vector<int> expected(Count + 1, 1);
        expected.back() = 0;
        return expected;
    }());
}

TEST(GeometryContentTest, ABlockOfWhichNothingIsUsedIsLeftOut)
{
    GeometryData data;
    data.positions.resize(10000);
    data.points = {9999};

    EXPECT_EQ(GeometryContent(std::move(data)).getBlocks().size(), 1U);
}

TEST(GeometryContentTest, PreparingItGivesTheSameAndTellsHowFarItIs)
{
    GeometryData data;
    data.positions = {osg::Pnt3f(0, 0, 0), osg::Pnt3f(1, 0, 0), osg::Pnt3f(0, 1, 0)};
    data.triangles = {0, 1, 2};
    const GeometryContent content(std::move(data));
    std::vector<double> shares;

    content.prepare([&](const double share) {
        shares.push_back(share);
        return true;
    });

    const viewer::TriangleTree* const tree = &content.getTree();
    EXPECT_EQ(tree, &content.getTree());
    EXPECT_EQ(content.getBlocks().size(), 1U);
    for (const double share : shares) {
        EXPECT_GE(share, 0);
        EXPECT_LE(share, 1);
    }
}

} // namespace

} // namespace quon::testing
