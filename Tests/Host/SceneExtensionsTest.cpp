// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include <Extensions/SceneExtensions.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGDepthTestChunk.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGeoProperty.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGUberCamera.h>
#include <OpenSG/OSGUberLight.h>

#include <gtest/gtest.h>

using namespace quon::extensions;

namespace {

class SceneExtensionsTest : public quon::testing::SceneFixture {
protected:
    osg::RefPtr<osg::NodePtr> m_node{osg::Node::create()};
};

osg::NodePtr makePoints(const osg::Pnt3f& first, const osg::Pnt3f& second)
{
    const osg::GeoPositions3fPtr positions = osg::GeoPositions3f::create();
    positions->addValue(first);
    positions->addValue(second);
    osg::endEditCP(positions);
    // Without a primitive that uses them, positions have no extent.
    const osg::GeoPTypesUI8Ptr types = osg::GeoPTypesUI8::create();
    types->addValue(GL_POINTS);
    osg::endEditCP(types);
    const osg::GeometryPtr geometry = osg::Geometry::create();
    geometry->setTypes(types);
    geometry->setPositions(positions);
    osg::endEditCP(geometry);
    const osg::NodePtr node = osg::Node::create();
    node->setCore(geometry);
    osg::endEditCP(node, osg::Node::CoreFieldMask);
    return node;
}

TEST_F(SceneExtensionsTest, TakesAllChildrenOutAndReleasesThem)
{
    const osg::RefPtr<osg::NodePtr> kept(osg::Node::create());
    m_node->addChild(osg::Node::create());
    m_node->addChild(kept);

    clearChildren(m_node);

    EXPECT_EQ(m_node->getNChildren(), 0u);
    EXPECT_TRUE(kept->getParent() == osg::NullFC);
    EXPECT_EQ(osg::getRefCount(kept.get()), 1);
}

TEST_F(SceneExtensionsTest, ClearingTheChildrenOfALeafDoesNothing)
{
    clearChildren(m_node);

    EXPECT_EQ(m_node->getNChildren(), 0u);
}

TEST_F(SceneExtensionsTest, ReadsTheBoxInWorldSpace)
{
    osg::Matrix matrix;
    matrix.setTranslate(10.f, 20.f, 30.f);
    const osg::TransformPtr transform = osg::Transform::create();
    transform->setMatrix(matrix);
    osg::endEditCP(transform);
    m_node->setCore(transform);
    osg::endEditCP(m_node, osg::Node::CoreFieldMask);
    const osg::NodePtr points = makePoints(osg::Pnt3f(-1.f, -2.f, -3.f), osg::Pnt3f(1.f, 2.f, 3.f));
    m_node->addChild(points);
    osg::endEditCP(m_node, osg::Node::ChildrenFieldMask);

    osg::Pnt3f min;
    osg::Pnt3f max;
    getWorldBounds(points, min, max);

    EXPECT_EQ(min, osg::Pnt3f(9.f, 18.f, 27.f));
    EXPECT_EQ(max, osg::Pnt3f(11.f, 22.f, 33.f));
}

TEST_F(SceneExtensionsTest, ReadsZerosForANodeWithoutExtent)
{
    m_node->setCore(osg::Group::create());
    osg::Pnt3f min(1.f, 1.f, 1.f);
    osg::Pnt3f max(2.f, 2.f, 2.f);

    getWorldBounds(m_node, min, max);

    EXPECT_EQ(min, osg::Pnt3f(0.f, 0.f, 0.f));
    EXPECT_EQ(max, osg::Pnt3f(0.f, 0.f, 0.f));
}

TEST_F(SceneExtensionsTest, HostFlagsStartAtZeroAndKeepAllBits)
{
    EXPECT_EQ(getHostFlags(m_node), 0u);

    setHostFlags(m_node, 0x80000008u);

    EXPECT_EQ(getHostFlags(m_node), 0x80000008u);
}

TEST_F(SceneExtensionsTest, TheHostOptionOfAMaterialIsKept)
{
    const osg::RefPtr<osg::SimpleMaterialPtr> material(osg::SimpleMaterial::create());

    setHostOption(material, true);
    EXPECT_TRUE(getHostOption(material));

    setHostOption(material, false);
    EXPECT_FALSE(getHostOption(material));
}

TEST_F(SceneExtensionsTest, AGeometryDoesNotOverwriteTheMaterialUnlessToldSo)
{
    const osg::RefPtr<osg::GeometryPtr> geometry(osg::Geometry::create());
    EXPECT_FALSE(getOverwriteMaterial(geometry));

    setOverwriteMaterial(geometry, true);

    EXPECT_TRUE(getOverwriteMaterial(geometry));
}

TEST_F(SceneExtensionsTest, AGeometryThatCanCarryTheFlagIsAGeometry)
{
    const osg::RefPtr<osg::GeometryPtr> geometry(createGeometry());

    ASSERT_TRUE(geometry != osg::NullFC);
    EXPECT_TRUE(geometry->getType().isDerivedFrom(osg::Geometry::getClassType()));
    EXPECT_FALSE(getOverwriteMaterial(geometry));

    setOverwriteMaterial(geometry, true);
    EXPECT_TRUE(getOverwriteMaterial(geometry));

    setOverwriteMaterial(geometry, false);
    EXPECT_FALSE(getOverwriteMaterial(geometry));
}

TEST_F(SceneExtensionsTest, AShallowCopyHasFlagsOfItsOwn)
{
    setHostFlags(m_node, 8);
    const osg::RefPtr<osg::NodePtr> copy(osg::NodePtr::dcast(m_node->shallowCopy()));
    EXPECT_EQ(getHostFlags(copy), 8u);

    setHostFlags(copy, 3);

    EXPECT_EQ(getHostFlags(copy), 3u);
    EXPECT_EQ(getHostFlags(m_node), 8u);
    setHostFlags(copy, 0);
    EXPECT_EQ(getHostFlags(m_node), 8u);
}

TEST_F(SceneExtensionsTest, TheDepthTestIsATypeOfItsOwnInThePlaceOfTheDepthChunk)
{
    const osg::RefPtr<osg::DepthTestChunkPtr> chunk(osg::DepthTestChunk::create());
    const osg::RefPtr<osg::DepthChunkPtr> depth(osg::DepthChunk::create());
    const osg::RefPtr<osg::SimpleMaterialPtr> material(osg::SimpleMaterial::create());
    material->addChunk(chunk.get());

    EXPECT_TRUE(chunk->getType().isDerivedFrom(osg::DepthChunk::getClassType()));
    EXPECT_EQ(chunk->getClass()->getId(), depth->getClass()->getId());
    EXPECT_TRUE(material->find(osg::DepthTestChunk::getClassType()) == chunk);
    EXPECT_TRUE(material->find(osg::DepthChunk::getClassType()) == osg::NullFC);
}

TEST_F(SceneExtensionsTest, LightsAndCamerasAreGroups)
{
    const osg::RefPtr<osg::UberLightPtr> light(osg::UberLight::create());
    const osg::RefPtr<osg::UberCameraPtr> camera(osg::UberCamera::create());

    EXPECT_TRUE(light->getType().isDerivedFrom(osg::Group::getClassType()));
    EXPECT_TRUE(camera->getType().isDerivedFrom(osg::Group::getClassType()));
    EXPECT_FALSE(camera->getType().isDerivedFrom(osg::UberLight::getClassType()));
}

TEST_F(SceneExtensionsTest, TheOverwriteMaskIsOneBitOfItsOwn)
{
    const osg::BitVector mask = getOverwriteMaterialFieldMask();

    EXPECT_NE(mask, osg::BitVector(0));
    EXPECT_EQ(mask & (mask - 1), osg::BitVector(0));
    EXPECT_NE(mask, osg::MaterialDrawable::MaterialFieldMask);
}

} // namespace
