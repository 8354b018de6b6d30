// SPDX-License-Identifier: MIT
#include "SceneParts.h"

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGSimpleAttachments.h>
#include <OpenSG/OSGSimpleGeometry.h>

#include <gtest/gtest.h>

#include <cstdlib>

// Where an installed OpenSG destroys twice, and what is left once the scene graph has ended.
namespace {

using namespace osg;
using quon::testing::hold;
using quon::testing::isAlive;

class LargeGroup;
typedef FCPtr<GroupPtr, LargeGroup> LargeGroupPtr;

/// Larger than the pools for containers go, and released once more from inside of its own destruction.
class LargeGroup : public Group {
public:
    typedef Group Inherited;
    typedef LargeGroupPtr Ptr;

    OSG_FIELD_CONTAINER_DECL(LargeGroupPtr)

    UInt8 values[5000] = {};

    static int s_destructions;

protected:
    LargeGroup() = default;
    LargeGroup(const LargeGroup& source)
        : Inherited(source)
    {}
    ~LargeGroup() override { ++s_destructions; }

    void onDestroy() override
    {
        Inherited::onDestroy();
        LargeGroupPtr self(*this);
        addRefCP(self);
        subRefCP(self);
    }

    static FieldContainerType _type;
};

int LargeGroup::s_destructions = 0;

FieldContainerType LargeGroup::_type(
    "LargeGroup", "Group", nullptr, []() -> FieldContainerPtr { return createEmpty(); }, nullptr);

OSG_FIELD_CONTAINER_INL_DEF(LargeGroup, LargeGroupPtr)
OSG_FIELD_CONTAINER_DEF(LargeGroup, LargeGroupPtr)

class EmbeddedDestructionTest : public quon::testing::SceneFixture {};

TEST_F(EmbeddedDestructionTest, AContainerThatIsReleasedFromInsideOfItsDestructionDiesOnce)
{
    LargeGroup::s_destructions = 0;
    UInt32 id = 0;
    {
        const auto group = hold(LargeGroup::create());
        id = getContainerId(group.get());
        EXPECT_TRUE(isAlive(id));
    }

    EXPECT_EQ(LargeGroup::s_destructions, 1);
    EXPECT_FALSE(isAlive(id));
}

TEST_F(EmbeddedDestructionTest, AContainerMayBeOfAnySize)
{
    const auto first = hold(LargeGroup::create());
    const auto second = hold(LargeGroup::create());

    for (UInt8& value : first->values) {
        value = 0xff;
    }

    for (const UInt8 value : second->values) {
        ASSERT_EQ(value, 0U);
    }
    EXPECT_GT(LargeGroup::getClassType().getPrototype()->getContainerSize(), 5000U);
    EXPECT_EQ(first->getTypeId(), LargeGroup::getClassTypeId());
}

// In processes of their own: these end the scene graph, or the program.
using EmbeddedDestructionDeathTest = EmbeddedDestructionTest;

TEST_F(EmbeddedDestructionDeathTest, NothingIsCreatedOnceTheSceneGraphHasEnded)
{
    EXPECT_EXIT(
        {
            const NodePtr node = Node::create();
            osgExit();
            const bool nothing = Node::create() == NullFC && Group::create() == NullFC && Name::create() == NullFC &&
                                 GeoPositions3f::create() == NullFC;
            // Naming what is left is no error, but leaves no name.
            osg::setName(node, "late");
            int value = 0;
            osg::setVoidP(node, &value);
            const bool unnamed = osg::getName(node) == nullptr && osg::getVoidP(node) == nullptr;
            std::exit(nothing && unnamed ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(EmbeddedDestructionDeathTest, NothingIsMadeOfWhatIsLeftOnceTheSceneGraphHasEnded)
{
    EXPECT_EXIT(
        {
            const NodePtr node = makeBox(1, 1, 1, 1, 1, 1);
            const GeometryPtr geometry = GeometryPtr::dcast(node->getCore());
            osgExit();
            const bool nothing = makeNodeFor(geometry) == NullFC && makeCoredNode<Group>() == NullFC &&
                                 cloneTree(node) == NullFC && geometry->getPositions()->clone() == NullFC &&
                                 makeBoxGeo(1, 1, 1, 1, 1, 1) == NullFC && makeBox(1, 1, 1, 1, 1, 1) == NullFC;
            std::exit(nothing ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(EmbeddedDestructionDeathTest, TypesThatComeAfterTheEndGetNoPrototype)
{
    EXPECT_EXIT(
        {
            osgExit();
            FieldContainerFactory::the()->initializePendingTypes();
            std::exit(Group::getClassType().getPrototype() == NullFC ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(EmbeddedDestructionDeathTest, AProgramForAnotherVersionEndsWithAMessage)
{
    EXPECT_EXIT(osgInit(0, nullptr, 2, 0, 0), ::testing::ExitedWithCode(1), "compiled against version 2\\.0\\.0");
}

} // namespace
