// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include "Support/DrawnScene.h"

#include "Viewer/Model/GeometryData.h"
#include "Viewer/Model/Matrix4.h"
#include "Viewer/Tools/CameraController.h"
#include "Viewer/Tools/RegionIndex.h"
#include "Viewer/Tools/RegionOption.h"

#include <SceneUtilities/NodeUtils.h>

#include <OpenSG/OSGRefPtr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <random>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using viewer::GeometryData;
using viewer::Matrix4;
using viewer::PixelRectangle;
using viewer::RegionIndex;
using viewer::Vector4;

constexpr int Width = 200;
constexpr int Height = 100;

class RegionIndexTest : public SceneFixture {
protected:
    RegionIndexTest()
        : m_root(makeGroup())
    {
        // Sees -1 to 1 in all directions; a larger z is nearer to the viewer.
        osg::Matrix camera;
        camera[2][2] = -1;
        m_camera = Matrix4(camera);
    }

    ~RegionIndexTest() override { m_root = osg::NullFC; }

    osg::NodePtr addPart(const char* name)
    {
        const osg::NodePtr part = makeGroup();
        NodeUtils::setName(part, name, false);
        m_root->addChild(part);
        return part;
    }

    void addGeometry(const osg::NodePtr& part, const osg::GeometryPtr& geometry,
                     const osg::Matrix& toWorld = osg::Matrix())
    {
        const osg::NodePtr node = makeNode(geometry);
        part->addChild(node);
        m_data.push_back(GeometryData::read(geometry));
        m_index.add(node, Matrix4(toWorld), m_data.back());
    }

    // A rectangle in the units of the camera, -1 to 1.
    static PixelRectangle pixels(const double left, const double bottom, const double right, const double top)
    {
        return {(left + 1) / 2 * Width, (1 - top) / 2 * Height, (right + 1) / 2 * Width, (1 - bottom) / 2 * Height};
    }

    std::vector<osg::NodePtr> find(const PixelRectangle& rectangle, const bool fullyEnclosed)
    {
        return m_index.find(RegionIndex::Region(rectangle, m_camera, Width, Height), fullyEnclosed);
    }

    std::vector<osg::NodePtr> enclosed(const PixelRectangle& rectangle) { return find(rectangle, true); }
    std::vector<osg::NodePtr> touched(const PixelRectangle& rectangle) { return find(rectangle, false); }

    osg::RefPtr<osg::NodePtr> m_root;
    std::deque<GeometryData> m_data; // addresses stay
    Matrix4 m_camera;
    RegionIndex m_index;
};

TEST_F(RegionIndexTest, APartInsideIsEnclosedAndTouched)
{
    const osg::NodePtr part = addPart("part");
    addGeometry(part, makeRectangle(-0.1F, -0.1F, 0.1F, 0.1F, 0, osg::NullFC));

    EXPECT_THAT(enclosed(pixels(-0.2, -0.2, 0.2, 0.2)), ElementsAre(part));
    EXPECT_THAT(touched(pixels(-0.2, -0.2, 0.2, 0.2)), ElementsAre(part));
}

TEST_F(RegionIndexTest, APartAcrossTheBorderIsTouchedButNotEnclosed)
{
    const osg::NodePtr part = addPart("part");
    addGeometry(part, makeRectangle(-0.1F, -0.1F, 0.1F, 0.1F, 0, osg::NullFC));

    EXPECT_THAT(enclosed(pixels(0, -0.2, 0.2, 0.2)), IsEmpty());
    EXPECT_THAT(touched(pixels(0, -0.2, 0.2, 0.2)), ElementsAre(part));
}

TEST_F(RegionIndexTest, APartIsEnclosedOnlyWithAllOfItsPieces)
{
    const osg::NodePtr part = addPart("part");
    addGeometry(part, makeRectangle(-0.1F, -0.1F, 0.1F, 0.1F, 0, osg::NullFC));
    addGeometry(part, makeRectangle(0.5F, 0.5F, 0.6F, 0.6F, 0, osg::NullFC));

    EXPECT_THAT(enclosed(pixels(-0.2, -0.2, 0.2, 0.2)), IsEmpty());
    EXPECT_THAT(touched(pixels(-0.2, -0.2, 0.2, 0.2)), ElementsAre(part));
    EXPECT_THAT(enclosed(pixels(-0.2, -0.2, 0.7, 0.7)), ElementsAre(part));
}

TEST_F(RegionIndexTest, PartsComeOnceInTheOrderInWhichTheyWereAdded)
{
    const osg::NodePtr second = addPart("second");
    const osg::NodePtr first = addPart("first");
    for (const osg::NodePtr& part : {first, second, first}) {
        addGeometry(part, makeRectangle(-0.1F, -0.1F, 0.1F, 0.1F, 0, osg::NullFC));
    }

    EXPECT_THAT(touched(pixels(-1, -1, 1, 1)), ElementsAre(first, second));
}

TEST_F(RegionIndexTest, ATriangleAroundTheRegionIsTouchedThoughNoCornerLiesInside)
{
    const osg::NodePtr part = addPart("part");
    addGeometry(part, makeGeometry(GL_TRIANGLES,
                                   {osg::Pnt3f(-0.9F, -0.9F, 0), osg::Pnt3f(0.9F, -0.9F, 0), osg::Pnt3f(0, 0.9F, 0)},
                                   {}, osg::NullFC));

    EXPECT_THAT(touched(pixels(-0.05, -0.05, 0.05, 0.05)), ElementsAre(part));
    EXPECT_THAT(enclosed(pixels(-0.05, -0.05, 0.05, 0.05)), IsEmpty());
    // Inside its box, beside the triangle.
    EXPECT_THAT(touched(pixels(0.7, 0.7, 0.85, 0.85)), IsEmpty());
}

TEST_F(RegionIndexTest, LinesAndPointsCount)
{
    const osg::NodePtr line = addPart("line");
    addGeometry(line,
                makeGeometry(GL_LINES, {osg::Pnt3f(-0.5F, -0.5F, 0), osg::Pnt3f(0.5F, 0.5F, 0)}, {}, osg::NullFC));
    const osg::NodePtr point = addPart("point");
    addGeometry(point, makeGeometry(GL_POINTS, {osg::Pnt3f(0.5F, -0.5F, 0)}, {}, osg::NullFC));

    EXPECT_THAT(touched(pixels(-0.1, -0.1, 0.1, 0.1)), ElementsAre(line));
    EXPECT_THAT(touched(pixels(-0.4, 0.1, -0.1, 0.4)), IsEmpty());
    EXPECT_THAT(enclosed(pixels(0.4, -0.6, 0.6, -0.4)), ElementsAre(point));
    EXPECT_THAT(enclosed(pixels(-0.6, -0.6, 0.6, 0.6)), ElementsAre(line, point));
}

TEST_F(RegionIndexTest, WhatTheNearOrTheFarPlaneCutsOffIsNotSeen)
{
    const osg::NodePtr near = addPart("near");
    addGeometry(near, makeBox(osg::Pnt3f(-0.1F, -0.1F, 0), osg::Pnt3f(0.1F, 0.1F, 2), osg::NullFC));
    const osg::NodePtr behind = addPart("behind");
    addGeometry(behind, makeBox(osg::Pnt3f(-0.1F, -0.1F, -3), osg::Pnt3f(0.1F, 0.1F, -2), osg::NullFC));

    EXPECT_THAT(touched(pixels(-0.2, -0.2, 0.2, 0.2)), ElementsAre(near));
    EXPECT_THAT(enclosed(pixels(-0.2, -0.2, 0.2, 0.2)), IsEmpty());
}

TEST_F(RegionIndexTest, PositionsThatNothingUsesDoNotCount)
{
    const osg::NodePtr part = addPart("part");
    addGeometry(part, makeGeometry(GL_TRIANGLES,
                                   {osg::Pnt3f(-0.1F, -0.1F, 0), osg::Pnt3f(0.1F, -0.1F, 0), osg::Pnt3f(0, 0.1F, 0),
                                    osg::Pnt3f(0.9F, 0.9F, 0)},
                                   {0, 1, 2}, osg::NullFC));

    EXPECT_THAT(enclosed(pixels(-0.2, -0.2, 0.2, 0.2)), ElementsAre(part));
    EXPECT_THAT(touched(pixels(0.8, 0.8, 1, 1)), IsEmpty());
}

TEST_F(RegionIndexTest, AMatrixThatIsNotAffineIsLookedInto)
{
    const osg::NodePtr part = addPart("part");
    osg::Matrix half;
    half[3][3] = 2;
    addGeometry(part, makeRectangle(-0.4F, -0.4F, 0.4F, 0.4F, 0, osg::NullFC), half);

    EXPECT_THAT(enclosed(pixels(-0.25, -0.25, 0.25, 0.25)), ElementsAre(part));
    EXPECT_EQ(m_index.getExactTestCount(), 1U);
}

TEST_F(RegionIndexTest, AfterClearingNothingIsFound)
{
    addGeometry(addPart("part"), makeRectangle(-0.1F, -0.1F, 0.1F, 0.1F, 0, osg::NullFC));

    m_index.clear();

    EXPECT_THAT(touched(pixels(-1, -1, 1, 1)), IsEmpty());
}

TEST_F(RegionIndexTest, OnlyThePartsAtTheBorderOfAHundredThousandAreLookedInto)
{
    // A raster of little squares; the index reads no node but asks for the part of each.
    const osg::NodePtr part = makeGroup();
    m_root->addChild(part);
    const osg::GeometryPtr geometry = makeRectangle(0.001F, 0.001F, 0.002F, 0.002F, 0, osg::NullFC);
    m_data.push_back(GeometryData::read(geometry));
    constexpr int Columns = 400;
    constexpr int Rows = 250;
    for (int row = 0; row < Rows; ++row) {
        for (int column = 0; column < Columns; ++column) {
            const osg::NodePtr node = makeNode(geometry);
            part->addChild(node);
            const osg::Matrix place =
                translation(-1 + 2 * static_cast<float>(column) / Columns, -1 + 2 * static_cast<float>(row) / Rows, 0);
            m_index.add(node, Matrix4(place), m_data.back());
        }
    }

    // Through the middles of squares: columns 100 and 300, rows 50 and 200.
    const PixelRectangle rectangle = pixels(-0.4985, -0.5985, 0.5015, 0.6015);

    EXPECT_EQ(touched(rectangle).size(), 201U * 151U);
    EXPECT_EQ(m_index.getExactTestCount(), 2U * 201U + 2U * 149U);
    EXPECT_EQ(enclosed(rectangle).size(), 199U * 149U);
    EXPECT_EQ(m_index.getExactTestCount(), 2U * 201U + 2U * 149U);
}

// Compares with the projection of every corner, one after the other, and an overlap test of its own.
class RegionIndexRandomTest : public RegionIndexTest {
protected:
    struct Point {
        double x;
        double y;
    };

    // The corners of one triangle, line or point in pixels.
    using Shape = std::vector<Point>;

    struct Part {
        osg::NodePtr node;
        std::vector<Shape> shapes;
    };

    float uniform(const float low, const float high)
    {
        return std::uniform_real_distribution<float>(low, high)(m_random);
    }

    osg::Pnt3f place(const float reach)
    {
        return osg::Pnt3f(uniform(-reach, reach), uniform(-reach, reach), uniform(-reach, reach));
    }

    void addRandomPart(const std::size_t cornersPerShape)
    {
        Part part;
        part.node = addPart("part");
        for (int piece = 0; piece < 2; ++piece) {
            std::vector<osg::Pnt3f> corners;
            const osg::Pnt3f middle = place(0.3F);
            for (std::size_t i = 0; i < 4 * cornersPerShape; ++i) {
                corners.push_back(middle + place(0.2F).subZero());
            }
            osg::Matrix matrix;
            const osg::Quaternion rotation(osg::Vec3f(uniform(-1, 1), uniform(-1, 1), uniform(0.1F, 1)), uniform(0, 6));
            matrix.setTransform(place(0.4F).subZero(), rotation,
                                osg::Vec3f(uniform(0.3F, 1.2F), uniform(-1.2F, -0.3F), uniform(0.3F, 1.2F)));
            const GLenum type = cornersPerShape == 3 ? GL_TRIANGLES : cornersPerShape == 2 ? GL_LINES : GL_POINTS;
            addGeometry(part.node, makeGeometry(type, corners, {}, osg::NullFC), matrix);
            for (std::size_t i = 0; i < corners.size(); i += cornersPerShape) {
                Shape shape;
                for (std::size_t corner = 0; corner < cornersPerShape; ++corner) {
                    shape.push_back(project(Matrix4(matrix).transform(corners[i + corner])));
                }
                part.shapes.push_back(shape);
            }
        }
        m_parts.push_back(part);
    }

    Point project(const Vector4& world) const
    {
        const Vector4 clip = m_camera * world;
        EXPECT_GT(clip[3], 0);
        return {(clip[0] / clip[3] + 1) / 2 * Width, (1 - clip[1] / clip[3]) / 2 * Height};
    }

    static bool isInside(const Shape& shape, const PixelRectangle& rectangle)
    {
        return std::all_of(shape.begin(), shape.end(), [&](const Point& point) {
            return point.x >= rectangle.left && point.x <= rectangle.right && point.y >= rectangle.top &&
                   point.y <= rectangle.bottom;
        });
    }

    // Two convex shapes are apart exactly when one of their edges has all of the other on its far side.
    static bool areApart(const Shape& shape, const PixelRectangle& rectangle)
    {
        const Shape box{{rectangle.left, rectangle.top},
                        {rectangle.right, rectangle.top},
                        {rectangle.right, rectangle.bottom},
                        {rectangle.left, rectangle.bottom}};
        std::vector<Point> axes{{1, 0}, {0, 1}};
        for (std::size_t i = 0; i < shape.size(); ++i) {
            const Point& from = shape[i];
            const Point& to = shape[(i + 1) % shape.size()];
            axes.push_back({from.y - to.y, to.x - from.x});
        }
        return std::any_of(axes.begin(), axes.end(), [&](const Point& axis) {
            const auto reach = [&](const Shape& points) {
                std::array<double, 2> range{1e30, -1e30};
                for (const Point& point : points) {
                    const double place = point.x * axis.x + point.y * axis.y;
                    range[0] = std::min(range[0], place);
                    range[1] = std::max(range[1], place);
                }
                return range;
            };
            const auto a = reach(shape);
            const auto b = reach(box);
            return a[1] < b[0] || b[1] < a[0];
        });
    }

    static bool expected(const Part& part, const PixelRectangle& rectangle, const bool fullyEnclosed)
    {
        const auto inside = [&](const Shape& shape) { return isInside(shape, rectangle); };
        const auto touches = [&](const Shape& shape) { return !areApart(shape, rectangle); };
        return fullyEnclosed ? std::all_of(part.shapes.begin(), part.shapes.end(), inside)
                             : std::any_of(part.shapes.begin(), part.shapes.end(), touches);
    }

    static PixelRectangle grown(const PixelRectangle& rectangle, const double by)
    {
        return {rectangle.left - by, rectangle.top - by, rectangle.right + by, rectangle.bottom + by};
    }

    std::mt19937 m_random{20240611};
    std::vector<Part> m_parts;
};

TEST_F(RegionIndexRandomTest, EveryRectangleHoldsWhatTheProjectionOfEveryCornerSays)
{
    viewer::CameraController camera;
    camera.setViewportSize(Width, Height);
    camera.setSceneBounds(osg::Pnt3f(-1, -1, -1), osg::Pnt3f(1, 1, 1));
    camera.setStandardView("iso");
    m_camera = Matrix4(camera.getWorldToClip());
    for (int i = 0; i < 60; ++i) {
        addRandomPart(i % 10 == 9 ? 1 : i % 5 == 4 ? 2 : 3);
    }

    int compared = 0;
    int found = 0;
    for (int i = 0; i < 400; ++i) {
        const double x = static_cast<double>(uniform(0, Width));
        const double y = static_cast<double>(uniform(0, Height));
        const double size = static_cast<double>(uniform(1, i % 2 == 0 ? 20 : 120));
        const PixelRectangle rectangle{x, y, x + size, y + size};
        for (const bool fullyEnclosed : {false, true}) {
            const std::vector<osg::NodePtr> nodes = find(rectangle, fullyEnclosed);
            for (const Part& part : m_parts) {
                const bool isExpected = expected(part, rectangle, fullyEnclosed);
                // So close to the border that rounding may decide.
                if (expected(part, grown(rectangle, 1e-3), fullyEnclosed) != isExpected ||
                    expected(part, grown(rectangle, -1e-3), fullyEnclosed) != isExpected) {
                    continue;
                }
                const bool isFound = std::find(nodes.begin(), nodes.end(), part.node) != nodes.end();
                ASSERT_EQ(isFound, isExpected) << "at " << x << ", " << y << ", size " << size;
                ++compared;
                found += isFound ? 1 : 0;
            }
        }
    }

    EXPECT_GT(compared, 40000);
    EXPECT_GT(found, 2000);
}

} // namespace

} // namespace quon::testing
