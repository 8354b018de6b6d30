// SPDX-License-Identifier: MIT
#include "Viewer/Model/SurfaceFacing.h"

#include "Viewer/Model/GeometryData.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace quon::testing {

namespace {

using viewer::findSurfaceFacing;
using viewer::GeometryData;
using viewer::SurfaceFacing;

// Counter-clockwise from outside.
void addBox(GeometryData& data, const float from, const float to)
{
    const auto first = static_cast<osg::UInt32>(data.positions.size());
    for (unsigned i = 0; i < 8; ++i) {
        data.positions.emplace_back((i & 1U) != 0 ? to : from, (i & 2U) != 0 ? to : from, (i & 4U) != 0 ? to : from);
    }
    for (const osg::UInt32 index : std::vector<osg::UInt32>{0, 2, 3, 0, 3, 1, 4, 5, 7, 4, 7, 6, 0, 1, 5, 0, 5, 4,
                                                            2, 6, 7, 2, 7, 3, 0, 4, 6, 0, 6, 2, 1, 3, 7, 1, 7, 5}) {
        data.triangles.push_back(first + index);
    }
}

GeometryData makeBox()
{
    GeometryData data;
    addBox(data, -1, 1);
    return data;
}

// Each triangle with corners of its own.
GeometryData takeApart(const GeometryData& data)
{
    GeometryData result;
    for (const osg::UInt32 index : data.triangles) {
        result.triangles.push_back(static_cast<osg::UInt32>(result.positions.size()));
        result.positions.push_back(data.positions[index]);
    }
    return result;
}

void turnRound(GeometryData& data, const std::size_t first = 0)
{
    for (std::size_t i = first; i < data.triangles.size(); i += 3) {
        std::swap(data.triangles[i], data.triangles[i + 1]);
    }
}

TEST(SurfaceFacingTest, ABoxIsSeenFromOutside)
{
    EXPECT_EQ(findSurfaceFacing(makeBox()), SurfaceFacing::Outward);
}

TEST(SurfaceFacingTest, ABoxThatIsTurnedRoundFacesInward)
{
    GeometryData data = makeBox();
    turnRound(data);

    EXPECT_EQ(findSurfaceFacing(data), SurfaceFacing::Inward);
}

TEST(SurfaceFacingTest, CornersInOnePlaceAreOne)
{
    EXPECT_EQ(findSurfaceFacing(takeApart(makeBox())), SurfaceFacing::Outward);
}

TEST(SurfaceFacingTest, WithAHoleBothSidesAreSeen)
{
    GeometryData data = makeBox();
    data.triangles.resize(data.triangles.size() - 3);

    EXPECT_EQ(findSurfaceFacing(data), SurfaceFacing::Any);
}

TEST(SurfaceFacingTest, ATriangleThatRunsTheOtherWayRoundCounts)
{
    GeometryData data = makeBox();
    turnRound(data, data.triangles.size() - 3);

    EXPECT_EQ(findSurfaceFacing(data), SurfaceFacing::Any);
}

TEST(SurfaceFacingTest, AllBodiesHaveToFaceTheSameSide)
{
    GeometryData data = makeBox();
    const std::size_t one = data.triangles.size();
    addBox(data, 0.5F, 3);
    EXPECT_EQ(findSurfaceFacing(data), SurfaceFacing::Outward);

    turnRound(data, one);

    EXPECT_EQ(findSurfaceFacing(data), SurfaceFacing::Any);
}

TEST(SurfaceFacingTest, ABodyThatIsNotSeenFromItsMiddleMayBeInsideOut)
{
    // The upper corner is pushed through the opposite sides.
    GeometryData data = makeBox();
    data.positions[7] = osg::Pnt3f(-5, -5, -5);

    EXPECT_EQ(findSurfaceFacing(data), SurfaceFacing::Any);
}

TEST(SurfaceFacingTest, WhatEnclosesNothingIsSeenFromBothSides)
{
    GeometryData flat = makeBox();
    for (osg::Pnt3f& position : flat.positions) {
        position[1] = 0;
    }
    GeometryData lines = makeBox();
    lines.lines.swap(lines.triangles);

    EXPECT_EQ(findSurfaceFacing(flat), SurfaceFacing::Any);
    EXPECT_EQ(findSurfaceFacing(lines), SurfaceFacing::Any);
    EXPECT_EQ(findSurfaceFacing(GeometryData()), SurfaceFacing::Any);
}

} // namespace

} // namespace quon::testing
