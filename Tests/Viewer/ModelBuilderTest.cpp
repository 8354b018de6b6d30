// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include "Viewer/Model/GeometryData.h"
#include "Viewer/Model/ModelBuilder.h"

#include <SceneUtilities/NodeUtils.h>

#include <OpenSG/OSGGL.h>

#include <gtest/gtest.h>

#include <utility>

namespace quon::testing {

namespace {

using viewer::ModelBuilder;
using viewer::ModelData;

constexpr auto AtOnce = ModelBuilder::Clock::time_point::min();

class ModelBuilderTest : public SceneFixture {
protected:
    // A root with two children that share the first of two meshes; each mesh has triangles of their own corners.
    static ModelData makeData(const std::size_t triangles)
    {
        ModelData data;
        data.materials.resize(1);
        for (int i = 0; i < 2; ++i) {
            ModelData::Mesh mesh;
            mesh.primitive = GL_TRIANGLES;
            mesh.material = 0;
            for (std::size_t corner = 0; corner < 3 * triangles; ++corner) {
                mesh.positions.emplace_back(static_cast<float>(corner), static_cast<float>(corner % 3), 0.0F);
                mesh.normals.emplace_back(0.0F, 0.0F, 1.0F);
                mesh.indices.push_back(static_cast<osg::UInt32>(corner));
            }
            data.meshes.push_back(std::move(mesh));
        }
        data.nodes.resize(3);
        data.nodes[1].name = "left";
        data.nodes[1].meshes = {0};
        data.nodes[2].meshes = {0, 1};
        return data;
    }

    static osg::GeometryPtr geometryOf(const osg::NodePtr& part, const osg::UInt32 piece)
    {
        return osg::GeometryPtr::dcast(part->getChild(piece)->getCore());
    }
};

TEST_F(ModelBuilderTest, BuildsAllAtOnce)
{
    ModelBuilder builder(makeData(1));
    EXPECT_EQ(builder.getRoot(), osg::NullFC);

    EXPECT_TRUE(builder.advance());

    const osg::NodePtr root = builder.getRoot();
    ASSERT_EQ(root->getNChildren(), 2U);
    const osg::NodePtr left = root->getChild(0);
    const osg::NodePtr right = root->getChild(1);
    EXPECT_EQ(NodeUtils::getName(root), "node 1");
    EXPECT_EQ(NodeUtils::getName(left), "left");
    EXPECT_EQ(NodeUtils::getName(right), "node 2");
    ASSERT_EQ(left->getNChildren(), 1U);
    ASSERT_EQ(right->getNChildren(), 2U);
    EXPECT_EQ(geometryOf(left, 0), geometryOf(right, 0));
    EXPECT_NE(geometryOf(right, 0), geometryOf(right, 1));
    EXPECT_EQ(geometryOf(right, 0)->getMaterial(), geometryOf(right, 1)->getMaterial());
    EXPECT_EQ(builder.countParts(), 2U);
    EXPECT_EQ(builder.countBuiltParts(), 2U);
}

TEST_F(ModelBuilderTest, GivesTheCallerBackControlWithinALargeMesh)
{
    ModelBuilder builder(makeData(100000));
    std::size_t slices = 1;
    std::size_t parts = 0;
    while (!builder.advance(AtOnce)) {
        ++slices;
        EXPECT_GE(builder.countBuiltParts(), parts);
        parts = builder.countBuiltParts();
    }

    // Ten for each of the arrays of either mesh.
    EXPECT_GT(slices, 50U);
    EXPECT_EQ(builder.countBuiltParts(), 2U);
    const viewer::GeometryData data = viewer::GeometryData::read(geometryOf(builder.getRoot()->getChild(1), 1));
    ASSERT_EQ(data.positions.size(), 300000U);
    EXPECT_EQ(data.positions[299999], osg::Pnt3f(299999, 2, 0));
    EXPECT_EQ(data.normals.size(), 300000U);
    EXPECT_EQ(data.triangles.size(), 300000U);
}

TEST_F(ModelBuilderTest, BuildsTheSameInSlicesAsAtOnce)
{
    ModelBuilder builder(makeData(1));

    while (!builder.advance(AtOnce)) {
    }

    EXPECT_TRUE(builder.advance(AtOnce)) << "nothing is left to do";
    ASSERT_EQ(builder.getRoot()->getNChildren(), 2U);
    EXPECT_EQ(builder.getRoot()->getChild(1)->getNChildren(), 2U);
}

TEST_F(ModelBuilderTest, LeavesNothingBehindWhereverItStops)
{
    const std::size_t before = countLiveContainers();
    std::size_t slices = 0;
    for (ModelBuilder builder(makeData(1)); !builder.advance(AtOnce);) {
        ++slices;
    }
    ASSERT_GT(slices, 3U);

    for (std::size_t last = 1; last <= slices; ++last) {
        {
            ModelBuilder builder(makeData(1));
            for (std::size_t i = 0; i < last; ++i) {
                builder.advance(AtOnce);
            }
            EXPECT_GT(countLiveContainers(), before);
        }
        EXPECT_EQ(countLiveContainers(), before) << "after " << last << " slices";
    }
}

} // namespace

} // namespace quon::testing
