// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGDepthTestChunk.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGSimpleAttachments.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace osg;
using quon::testing::hold;
using quon::testing::makeCube;
using quon::testing::makeNode;

class FieldContainerTypeTest : public quon::testing::SceneFixture {};

TEST_F(FieldContainerTypeTest, ATypeIsDerivedFromItselfAndItsBases)
{
    EXPECT_TRUE(Geometry::getClassType().isDerivedFrom(Geometry::getClassType()));
    EXPECT_TRUE(Geometry::getClassType().isDerivedFrom(MaterialDrawable::getClassType()));
    EXPECT_TRUE(Geometry::getClassType().isDerivedFrom(Drawable::getClassType()));
    EXPECT_TRUE(Geometry::getClassType().isDerivedFrom(NodeCore::getClassType()));
    EXPECT_TRUE(MaterialGroup::getClassType().isDerivedFrom(Group::getClassType()));
    EXPECT_TRUE(SimpleMaterial::getClassType().isDerivedFrom(Material::getClassType()));
    EXPECT_TRUE(DepthTestChunk::getClassType().isDerivedFrom(StateChunk::getClassType()));
}

TEST_F(FieldContainerTypeTest, ATypeIsNotDerivedFromOthers)
{
    EXPECT_FALSE(Group::getClassType().isDerivedFrom(MaterialGroup::getClassType()));
    EXPECT_FALSE(Geometry::getClassType().isDerivedFrom(Group::getClassType()));
    EXPECT_FALSE(Node::getClassType().isDerivedFrom(NodeCore::getClassType()));
}

TEST_F(FieldContainerTypeTest, AContainerKnowsItsOwnTypeThroughAnyHandle)
{
    const auto node = hold(makeNode(makeCube()));
    const NodeCorePtr core = node->getCore();

    EXPECT_TRUE(core->getType() == Geometry::getClassType());
    EXPECT_TRUE(core->getType().isDerivedFrom(Geometry::getClassType()));
    EXPECT_EQ(core->getTypeId(), Geometry::getClassTypeId());
    EXPECT_STREQ(core->getTypeName(), "Geometry");
    EXPECT_STREQ(core->getType().getCName(), "Geometry");
}

TEST_F(FieldContainerTypeTest, DerivedMeansThatDcastSucceeds)
{
    const auto group = hold(MaterialGroup::create());
    const FieldContainerPtr container = group.get();

    EXPECT_EQ(container->getType().isDerivedFrom(Group::getClassType()), GroupPtr::dcast(container) != NullFC);
    EXPECT_EQ(container->getType().isDerivedFrom(Transform::getClassType()), TransformPtr::dcast(container) != NullFC);
}

TEST_F(FieldContainerTypeTest, TypesSayWhatTheyAre)
{
    EXPECT_TRUE(Node::getClassType().isNode());
    EXPECT_FALSE(Node::getClassType().isNodeCore());
    EXPECT_TRUE(Transform::getClassType().isNodeCore());
    EXPECT_TRUE(GeoPositions3f::getClassType().isAttachment());
    EXPECT_TRUE(Name::getClassType().isAttachment());
    EXPECT_FALSE(SimpleMaterial::getClassType().isNodeCore());
}

TEST_F(FieldContainerTypeTest, AbstractTypesHaveNoPrototype)
{
    EXPECT_TRUE(NodeCore::getClassType().isAbstract());
    EXPECT_TRUE(Material::getClassType().isAbstract());
    EXPECT_FALSE(Group::getClassType().isAbstract());
    EXPECT_TRUE(Material::getClassType().getPrototype() == NullFC);
    EXPECT_TRUE(Group::getClassType().getPrototype() != NullFC);
}

TEST_F(FieldContainerTypeTest, TypesHaveTheirParents)
{
    EXPECT_EQ(MaterialGroup::getClassType().getParent(), &Group::getClassType());
    EXPECT_EQ(Group::getClassType().getParent(), &NodeCore::getClassType());
}

TEST_F(FieldContainerTypeTest, TypesCreateContainers)
{
    const auto container = hold(Group::getClassType().createFieldContainer());

    EXPECT_TRUE(GroupPtr::dcast(container.get()) != NullFC);
}

TEST_F(FieldContainerTypeTest, FieldsAreReachedByNameAndById)
{
    const auto node = hold(Node::create());
    node->setTravMask(7);

    Field* byName = node->getField("travMask");
    Field* byId = node->getField(Node::TravMaskFieldId);

    ASSERT_TRUE(byName != nullptr);
    EXPECT_EQ(byName, byId);
    EXPECT_EQ(static_cast<SFUInt32*>(byName)->getValue(), 7U);
}

TEST_F(FieldContainerTypeTest, WritingAFieldIsSettingTheValue)
{
    const auto material = hold(SimpleMaterial::create());

    static_cast<SFInt32*>(material->getField("sortKey"))->setValue(12);

    EXPECT_EQ(material->getSortKey(), 12);
}

TEST_F(FieldContainerTypeTest, UnknownFieldsAreNull)
{
    const auto node = hold(Node::create());

    EXPECT_TRUE(node->getField("noSuchField") == nullptr);
}

TEST_F(FieldContainerTypeTest, FieldsOfABaseComeBeforeTheOwn)
{
    EXPECT_EQ(UInt32(AttachmentContainer::AttachmentsFieldId), 1U);
    EXPECT_EQ(UInt32(Node::VolumeFieldId), 2U);
    EXPECT_EQ(UInt32(Node::CoreFieldId), 6U);
    EXPECT_LT(UInt32(Material::TransparencyModeFieldId), UInt32(ChunkMaterial::ChunksFieldId));
    EXPECT_LT(UInt32(ChunkMaterial::SlotsFieldId), UInt32(SimpleMaterial::AmbientFieldId));
    EXPECT_LT(UInt32(MaterialDrawable::MaterialFieldId), UInt32(Geometry::TypesFieldId));
}

TEST_F(FieldContainerTypeTest, FieldsHaveTheirNames)
{
    const auto geometry = hold(Geometry::create());
    const auto material = hold(SimpleMaterial::create());
    const auto group = hold(MaterialGroup::create());

    for (const char* name :
         {"types", "lengths", "positions", "normals", "colors", "indices", "material", "dlistCache"}) {
        EXPECT_TRUE(geometry->getField(name) != nullptr) << name;
    }
    for (const char* name : {"chunks", "slots", "ambient", "diffuse", "specular", "shininess", "emission",
                             "transparency", "lit", "colorMaterial", "sortKey", "transparencyMode"}) {
        EXPECT_TRUE(material->getField(name) != nullptr) << name;
    }
    EXPECT_TRUE(group->getField("material") != nullptr);
    EXPECT_TRUE(group->getField("parents") != nullptr);
}

} // namespace
