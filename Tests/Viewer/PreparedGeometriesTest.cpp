// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include "Support/DrawnScene.h"

#include "Viewer/Model/ModelBuilder.h"
#include "Viewer/Model/ModelData.h"
#include "Viewer/Model/PreparedGeometries.h"

#include <OpenSG/OSGRefPtr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using viewer::GeometryContent;
using viewer::GeometryData;
using viewer::LoadCancelled;
using viewer::LoadControl;
using viewer::ModelBuilder;
using viewer::ModelData;
using viewer::PreparedGeometries;
using viewer::SceneChanges;

class PreparedGeometriesTest : public SceneFixture {
protected:
    PreparedGeometriesTest()
        : m_geometry(makeRectangle(0, 0, 1, 1, 0, osg::NullFC))
        , m_content(std::make_shared<GeometryContent>(GeometryData()))
    {
        SceneChanges::take();
        m_prepared.add(m_geometry.get(), m_content);
    }

    bool isPrepared() const { return PreparedGeometries::read(&m_prepared, m_geometry.get()) == m_content; }

    void report() { m_prepared.sceneChanged(SceneChanges::take()); }

    // One mesh of one triangle in one node.
    static ModelData makeData()
    {
        ModelData data;
        data.nodes.resize(1);
        data.nodes[0].meshes = {0};
        data.meshes.resize(1);
        data.meshes[0].primitive = GL_TRIANGLES;
        data.meshes[0].positions = {osg::Pnt3f(0, 0, 0), osg::Pnt3f(1, 0, 0), osg::Pnt3f(0, 1, 0), osg::Pnt3f(9, 9, 9)};
        data.meshes[0].normals.assign(4, osg::Vec3f(0, 0, 1));
        data.meshes[0].colours.assign(4, osg::Color4f(1, 0, 0, 1));
        data.meshes[0].texCoords.assign(4, osg::Vec2f(0.5F, 0.25F));
        data.meshes[0].indices = {2, 1, 0};
        return data;
    }

    osg::RefPtr<osg::GeometryPtr> m_geometry;
    std::shared_ptr<const GeometryContent> m_content;
    PreparedGeometries m_prepared;
};

TEST_F(PreparedGeometriesTest, WhatWasPreparedIsNotReadAgain)
{
    EXPECT_TRUE(isPrepared());
}

TEST_F(PreparedGeometriesTest, WhatWasNotPreparedIsRead)
{
    const osg::RefPtr<osg::GeometryPtr> other(makeRectangle(0, 0, 1, 1, 0, osg::NullFC));

    EXPECT_EQ(PreparedGeometries::read(&m_prepared, other.get())->getData().triangles.size(), 6U);
    EXPECT_EQ(PreparedGeometries::read(nullptr, m_geometry.get())->getData().triangles.size(), 6U);
    EXPECT_THAT(PreparedGeometries::read(&m_prepared, osg::NullFC)->getData().triangles, IsEmpty());
}

TEST_F(PreparedGeometriesTest, AnEditOfAPropertyEndsIt)
{
    const osg::GeoPositionsPtr positions = m_geometry->getPositions();
    beginEditCP(positions);
    positions->setValue(osg::Pnt3f(5, 5, 5), 0);
    endEditCP(positions);
    report();

    EXPECT_FALSE(isPrepared());
    EXPECT_TRUE(m_prepared.isEmpty());
}

TEST_F(PreparedGeometriesTest, AnotherPropertyEndsItEvenWhenNobodyReportsIt)
{
    const osg::RefPtr<osg::GeometryPtr> other(makeRectangle(0, 0, 2, 2, 0, osg::NullFC));

    m_geometry->setPositions(other->getPositions());

    EXPECT_FALSE(isPrepared());
}

TEST_F(PreparedGeometriesTest, NodesThatShareTheGeometryComeAndGoWithoutEndingIt)
{
    osg::RefPtr<osg::NodePtr> node(makeNode(m_geometry.get()));
    report();
    EXPECT_TRUE(isPrepared());

    node = osg::NullFC;
    report();
    EXPECT_TRUE(isPrepared());
}

TEST_F(PreparedGeometriesTest, AGeometryThatIsDestroyedIsForgotten)
{
    m_geometry = osg::NullFC;
    report();

    EXPECT_TRUE(m_prepared.isEmpty());
}

TEST_F(PreparedGeometriesTest, WithoutContentNothingIsPrepared)
{
    PreparedGeometries prepared;
    prepared.add(m_geometry.get(), nullptr);

    EXPECT_TRUE(prepared.isEmpty());
}

TEST_F(PreparedGeometriesTest, WhatIsPreparedFromAFileIsWhatWouldBeReadFromTheScene)
{
    ModelData data = makeData();
    data.meshes[0].indices = {2, 1, 0, 0, 1, 3};
    data.meshes[0].positions[3] = osg::Pnt3f(1e30F, 0, 0);
    prepareGeometries(data, LoadControl());
    ModelBuilder builder(std::move(data));
    builder.advance();
    const PreparedGeometries prepared = builder.takePrepared();
    const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(builder.getRoot()->getChild(0)->getCore());

    const GeometryData ready = PreparedGeometries::read(&prepared, geometry)->getData();
    const GeometryData read = GeometryData::read(geometry);

    EXPECT_FALSE(prepared.isEmpty());
    EXPECT_THAT(ready.triangles, ElementsAre(2, 1, 0));
    EXPECT_EQ(ready.triangles, read.triangles);
    EXPECT_EQ(ready.positions, read.positions);
    EXPECT_EQ(ready.normals, read.normals);
    EXPECT_EQ(ready.texCoords, read.texCoords);
    ASSERT_EQ(ready.colours.size(), read.colours.size());
    EXPECT_TRUE(ready.colours[0] == read.colours[0]);
}

TEST_F(PreparedGeometriesTest, APreparationThatIsCancelledEnds)
{
    ModelData data = makeData();
    LoadControl control;
    control.cancel();

    EXPECT_THROW(prepareGeometries(data, control), LoadCancelled);
}

TEST_F(PreparedGeometriesTest, ThePreparationOfALargeMeshCanBeCancelledInBetween)
{
    ModelData data = makeData();
    for (int i = 0; i < 300000; ++i) {
        const auto place = static_cast<float>(i);
        const auto first = static_cast<osg::UInt32>(data.meshes[0].positions.size());
        for (const osg::Pnt3f& corner : {osg::Pnt3f(place, 0, 0), osg::Pnt3f(place, 1, 0), osg::Pnt3f(place, 0, 1)}) {
            data.meshes[0].positions.push_back(corner);
            data.meshes[0].indices.push_back(first +
                                             static_cast<osg::UInt32>(data.meshes[0].positions.size() - first - 1));
        }
    }
    data.meshes[0].normals.clear();
    data.meshes[0].colours.clear();
    data.meshes[0].texCoords.clear();
    LoadControl* cancelled = nullptr;
    double farthest = 0;
    LoadControl control([&](LoadControl::Step, const double share) {
        farthest = std::max(farthest, share);
        if (share > 0) {
            cancelled->cancel();
        }
    });
    cancelled = &control;

    EXPECT_THROW(prepareGeometries(data, control), LoadCancelled);

    EXPECT_LT(farthest, 1);
}

} // namespace

} // namespace quon::testing
