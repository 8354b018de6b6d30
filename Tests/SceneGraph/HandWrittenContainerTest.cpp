// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGFieldContainer.h>
#include <OpenSG/OSGFieldDescription.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGSFSysTypes.h>

#include <gtest/gtest.h>

// A class of containers as a host writes it: a group with one field more.
namespace {

class HostGroup;
typedef osg::FCPtr<osg::GroupPtr, HostGroup> HostGroupPtr;

class HostGroup : public osg::Group {
public:
    typedef osg::Group Inherited;
    typedef HostGroupPtr Ptr;

    enum : osg::UInt32 { LevelFieldId = Inherited::NextFieldId, NextFieldId };
    static const osg::BitVector LevelFieldMask;

    OSG_FIELD_CONTAINER_DECL(HostGroupPtr)

    osg::SFUInt32* editSFLevel() { return &m_level; }
    osg::UInt32 getLevel() const { return m_level.getValue(); }
    void setLevel(const osg::UInt32 level) { m_level.setValue(level); }

    static int changes;
    void changed(osg::BitVector whichField, osg::UInt32 origin) override
    {
        changes += (whichField & LevelFieldMask) != 0 ? 1 : 0;
        Inherited::changed(whichField, origin);
    }

protected:
    HostGroup() = default;
    HostGroup(const HostGroup& source)
        : Inherited(source)
        , m_level(source.m_level)
    {}
    ~HostGroup() override = default;

    static osg::FieldDescription* _desc[];
    static osg::FieldContainerType _type;

private:
    friend class osg::FieldContainer;

    osg::SFUInt32 m_level;
};

int HostGroup::changes = 0;
const osg::BitVector HostGroup::LevelFieldMask = osg::BitVector(1) << HostGroup::LevelFieldId;

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wcast-function-type"
osg::FieldDescription* HostGroup::_desc[] = {
    new osg::FieldDescription(osg::SFUInt32::getClassType(), "level", LevelFieldId, LevelFieldMask, false,
                              reinterpret_cast<osg::FieldAccessMethod>(&HostGroup::editSFLevel)),
};
#pragma GCC diagnostic pop

osg::FieldContainerType HostGroup::_type(
    "HostGroup", "Group", nullptr, []() -> osg::FieldContainerPtr { return createEmpty(); }, nullptr, _desc,
    sizeof(_desc));

OSG_FIELD_CONTAINER_INL_DEF(HostGroup, HostGroupPtr)
OSG_FIELD_CONTAINER_DEF(HostGroup, HostGroupPtr)

using namespace osg;
using quon::testing::hold;
using quon::testing::isAlive;
using quon::testing::makeNode;

class HandWrittenContainerTest : public quon::testing::SceneFixture {};

TEST_F(HandWrittenContainerTest, IsCreatedAndDestroyedLikeTheOthers)
{
    HostGroupPtr group = HostGroup::create();
    const UInt32 id = getContainerId(group);
    EXPECT_EQ(group.getRefCount(), 0);
    EXPECT_TRUE(isAlive(id));

    subRefCP(group);

    EXPECT_FALSE(isAlive(id));
}

TEST_F(HandWrittenContainerTest, IsACoreAndAGroup)
{
    const auto node = hold(makeNode(HostGroup::create()));

    EXPECT_TRUE(HostGroupPtr::dcast(node->getCore()) == node->getCore());
    EXPECT_TRUE(GroupPtr::dcast(node->getCore()) == node->getCore());
    EXPECT_TRUE(TransformPtr::dcast(node->getCore()) == NullFC);
    EXPECT_TRUE(node->getCore()->getType().isDerivedFrom(Group::getClassType()));
    EXPECT_STREQ(node->getCore()->getTypeName(), "HostGroup");
}

TEST_F(HandWrittenContainerTest, PlainGroupsAreNotOfItsType)
{
    const auto group = hold(Group::create());

    EXPECT_TRUE(HostGroupPtr::dcast(group.get()) == NullFC);
    EXPECT_FALSE(group->getType().isDerivedFrom(HostGroup::getClassType()));
}

TEST_F(HandWrittenContainerTest, HasATypeAndAGroupOfItsOwn)
{
    EXPECT_EQ(HostGroup::getClassTypeId(), HostGroup::getClassType().getId());
    EXPECT_NE(HostGroup::getClassTypeId(), Group::getClassTypeId());
    EXPECT_NE(HostGroup::getClassType().getGroupId(), Group::getClassType().getGroupId());
}

TEST_F(HandWrittenContainerTest, ItsFieldIsReachedByNameAndById)
{
    const auto group = hold(HostGroup::create());

    group->setLevel(7);

    ASSERT_TRUE(group->getField("level") != nullptr);
    EXPECT_EQ(group->getField("level"), group->getField(HostGroup::LevelFieldId));
    EXPECT_EQ(static_cast<SFUInt32*>(group->getField("level"))->getValue(), 7U);
    EXPECT_TRUE(group->getField("parents") != nullptr);
}

TEST_F(HandWrittenContainerTest, AShallowCopyTakesItsField)
{
    const auto group = hold(HostGroup::create());
    group->setLevel(7);

    const auto copy = hold(HostGroupPtr::dcast(group->shallowCopy()));

    ASSERT_TRUE(copy != NullFC);
    EXPECT_EQ(copy->getLevel(), 7U);
}

TEST_F(HandWrittenContainerTest, TheFactoryCreatesItByName)
{
    const auto container = hold(FieldContainerFactory::the()->createFieldContainer("HostGroup"));
    const auto core = hold(FieldContainerFactory::the()->createNodeCore("HostGroup"));

    EXPECT_TRUE(HostGroupPtr::dcast(container.get()) != NullFC);
    EXPECT_TRUE(HostGroupPtr::dcast(core.get()) != NullFC);
}

TEST_F(HandWrittenContainerTest, HearsOfTheEndOfEdits)
{
    const auto group = hold(HostGroup::create());
    HostGroup::changes = 0;

    endEditCP(group, HostGroup::LevelFieldMask);
    endEditCP(group, NodeCore::ParentsFieldMask);

    EXPECT_EQ(HostGroup::changes, 1);
}

} // namespace
