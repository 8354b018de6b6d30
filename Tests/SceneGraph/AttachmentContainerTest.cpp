// SPDX-License-Identifier: MIT
#include "SceneParts.h"
#include "Support/StandardError.h"

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGSimpleAttachments.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using namespace osg;
using quon::testing::hold;
using quon::testing::isAlive;
using quon::testing::StandardError;

class AttachmentContainerTest : public quon::testing::SceneFixture {};

TEST_F(AttachmentContainerTest, AFreshContainerHasNoName)
{
    const auto node = hold(Node::create());

    EXPECT_TRUE(osg::getName(node.get()) == nullptr);
}

TEST_F(AttachmentContainerTest, NodesCoresAndMaterialsHaveNames)
{
    const auto node = hold(Node::create());
    const auto core = hold(Group::create());
    const auto material = hold(SimpleMaterial::create());

    osg::setName(node.get(), "node");
    osg::setName(core.get(), std::string("core"));
    osg::setName(material, "material");

    EXPECT_STREQ(osg::getName(node.get()), "node");
    EXPECT_STREQ(osg::getName(core.get()), "core");
    EXPECT_STREQ(osg::getName(material), "material");
}

TEST_F(AttachmentContainerTest, ANewNameReplacesTheOld)
{
    const auto node = hold(Node::create());
    osg::setName(node.get(), "old");

    osg::setName(node.get(), "new");

    EXPECT_STREQ(osg::getName(node.get()), "new");
}

TEST_F(AttachmentContainerTest, AnEmptyNameIsAName)
{
    const auto node = hold(Node::create());

    osg::setName(node.get(), "");

    EXPECT_STREQ(osg::getName(node.get()), "");
}

TEST_F(AttachmentContainerTest, NullAsNameRemovesIt)
{
    const auto node = hold(Node::create());
    osg::setName(node.get(), "name");

    osg::setName(node.get(), static_cast<const Char8*>(nullptr));

    EXPECT_TRUE(osg::getName(node.get()) == nullptr);
}

TEST_F(AttachmentContainerTest, ANamelessNullContainerHasNoName)
{
    EXPECT_TRUE(osg::getName(NodePtr()) == nullptr);
}

TEST_F(AttachmentContainerTest, NamingNullIsLoggedAndIgnored)
{
    osg::setName(NodePtr(), "name");

    EXPECT_THAT(StandardError::take(), ::testing::Not(::testing::IsEmpty()));
}

TEST_F(AttachmentContainerTest, NamingRecordsTheAttachments)
{
    const auto node = hold(Node::create());
    takeChanges();

    osg::setName(node.get(), "name");

    EXPECT_THAT(takeChanges(), ::testing::Contains(::testing::Pair(getContainerId(node.get()),
                                                                   AttachmentContainer::AttachmentsFieldMask)));
}

TEST_F(AttachmentContainerTest, TheNameIsAnAttachment)
{
    const auto node = hold(Node::create());
    osg::setName(node.get(), "name");

    const NamePtr name = NamePtr::dcast(node->findAttachment(Name::getClassType().getGroupId()));

    ASSERT_TRUE(name != NullFC);
    EXPECT_EQ(name->getFieldPtr()->getValue(), "name");
    EXPECT_EQ(name.getRefCount(), 1);
}

TEST_F(AttachmentContainerTest, FindsAttachmentsByTypeAndBinding)
{
    const auto node = hold(Node::create());
    const auto first = hold(GeoPositions3f::create());
    const auto second = hold(GeoPositions3f::create());

    node->addAttachment(first.get());
    node->addAttachment(second.get(), 1);

    EXPECT_TRUE(node->findAttachment(GeoPositions3f::getClassType()) == first.get());
    EXPECT_TRUE(node->findAttachment(GeoPositions3f::getClassType(), 1) == second.get());
    EXPECT_TRUE(node->findAttachment(GeoPositions3f::getClassType(), 2) == NullFC);
    EXPECT_TRUE(node->findAttachment(Name::getClassType()) == NullFC);
}

TEST_F(AttachmentContainerTest, AnAttachmentReplacesTheOneOfItsGroup)
{
    const auto node = hold(Node::create());
    const auto oldOne = hold(GeoPositions3f::create());
    const auto newOne = hold(GeoPositions3f::create());
    node->addAttachment(oldOne.get());

    node->addAttachment(newOne.get());

    EXPECT_TRUE(node->findAttachment(GeoPositions3f::getClassType()) == newOne.get());
    EXPECT_EQ(oldOne.get().getRefCount(), 1);
    EXPECT_EQ(newOne.get().getRefCount(), 2);
}

TEST_F(AttachmentContainerTest, AnAttachmentKnowsItsContainers)
{
    const auto first = hold(Node::create());
    const auto second = hold(Group::create());
    const auto attachment = hold(GeoPositions3f::create());

    first->addAttachment(attachment.get());
    second->addAttachment(attachment.get());

    ASSERT_EQ(attachment->getParents().size(), 2U);
    EXPECT_TRUE(attachment->getParents()[0] == first.get());

    first->subAttachment(attachment.get());

    ASSERT_EQ(attachment->getParents().size(), 1U);
    EXPECT_TRUE(attachment->getParents()[0] == second.get());
}

TEST_F(AttachmentContainerTest, AShallowCopySharesTheAttachments)
{
    const auto node = hold(Node::create());
    osg::setName(node.get(), "name");

    const auto copy = hold(NodePtr::dcast(node->shallowCopy()));

    EXPECT_STREQ(osg::getName(copy.get()), "name");
    EXPECT_TRUE(copy->findAttachment(Name::getClassType()) == node->findAttachment(Name::getClassType()));
}

TEST_F(AttachmentContainerTest, AnUntypedPointerIsAttached)
{
    const auto node = hold(Node::create());
    int value = 0;
    EXPECT_TRUE(osg::getVoidP(node.get()) == nullptr);

    osg::setVoidP(node.get(), &value);

    EXPECT_TRUE(osg::getVoidP(node.get()) == &value);
}

TEST_F(AttachmentContainerTest, SubtractingFromWhereNothingIsAttachedDoesNothing)
{
    const auto node = hold(Node::create());
    const auto attached = hold(GeoPositions3f::create());
    node->addAttachment(attached.get());

    node->subAttachment(attached.get(), 1);

    EXPECT_TRUE(node->findAttachment(GeoPositions3f::getClassType()) == attached.get());
    EXPECT_EQ(attached.get().getRefCount(), 2);
}

TEST_F(AttachmentContainerTest, SubtractingAnotherOfTheSameGroupTakesOutWhatIsAttached)
{
    const auto node = hold(Node::create());
    const auto attached = hold(GeoPositions3f::create());
    const auto other = hold(GeoPositions3f::create());
    node->addAttachment(attached.get());

    node->subAttachment(other.get());

    EXPECT_TRUE(node->findAttachment(GeoPositions3f::getClassType()) == NullFC);
    EXPECT_EQ(attached.get().getRefCount(), 1);
    EXPECT_EQ(other.get().getRefCount(), 1);
}

TEST_F(AttachmentContainerTest, TakingTheNameOfNullIsLoggedAndIgnored)
{
    osg::setName(NodePtr(), static_cast<const Char8*>(nullptr));

    EXPECT_THAT(StandardError::take(), ::testing::Not(::testing::IsEmpty()));
}

TEST_F(AttachmentContainerTest, AnotherUntypedPointerReplacesTheFirst)
{
    const auto node = hold(Node::create());
    int first = 0;
    int second = 0;
    osg::setVoidP(node.get(), &first);

    osg::setVoidP(node.get(), &second);

    EXPECT_TRUE(osg::getVoidP(node.get()) == &second);
    EXPECT_TRUE(osg::getVoidP(NodePtr()) == nullptr);
}

TEST_F(AttachmentContainerTest, AttachingAPointerToNullIsLoggedAndIgnored)
{
    int value = 0;

    osg::setVoidP(NodePtr(), &value);

    EXPECT_THAT(StandardError::take(), ::testing::Not(::testing::IsEmpty()));
}

} // namespace
