// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include <SceneUtilities/NodeUtils.h>
#include <SceneUtilities/koNodeUtils.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSFSysTypes.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

using ::testing::Contains;
using ::testing::IsEmpty;

namespace {

class koNodeUtilsTest : public quon::testing::SceneFixture {
protected:
    osg::UInt32 idOf(const osg::RefPtr<osg::NodePtr>& node) const { return osg::getContainerId(node.get()); }

    static std::size_t liveContainers() { return quon::testing::countLiveContainers(); }

    osg::RefPtr<osg::NodePtr> m_node{osg::Node::create()};
};

TEST_F(koNodeUtilsTest, ANewNodeIsEditableAndNotAuxiliary)
{
    EXPECT_TRUE(koNodeUtils::isEditable(m_node));
    EXPECT_FALSE(koNodeUtils::isAuxiliaryNode(m_node));
}

TEST_F(koNodeUtilsTest, MarksANodeAuxiliaryAndTakesTheMarkOffAgain)
{
    koNodeUtils::setIsAuxiliaryNode(m_node, true);
    EXPECT_TRUE(koNodeUtils::isAuxiliaryNode(m_node));

    koNodeUtils::setIsAuxiliaryNode(m_node, false);
    EXPECT_FALSE(koNodeUtils::isAuxiliaryNode(m_node));
}

TEST_F(koNodeUtilsTest, LocksANodeAndUnlocksItAgain)
{
    koNodeUtils::setIsEditable(m_node, false);
    EXPECT_FALSE(koNodeUtils::isEditable(m_node));

    koNodeUtils::setIsEditable(m_node, true);
    EXPECT_TRUE(koNodeUtils::isEditable(m_node));
}

TEST_F(koNodeUtilsTest, TheMarksOfANodeDoNotDisturbEachOther)
{
    koNodeUtils::setIsAuxiliaryNode(m_node, true);
    koNodeUtils::setIsEditable(m_node, false);
    NodeUtils::setName(m_node, "part", true);

    koNodeUtils::setIsAuxiliaryNode(m_node, false);

    EXPECT_FALSE(koNodeUtils::isAuxiliaryNode(m_node));
    EXPECT_FALSE(koNodeUtils::isEditable(m_node));
    EXPECT_TRUE(NodeUtils::isNameGivenByProgram(m_node));
    EXPECT_EQ(NodeUtils::getName(m_node), "part");
}

TEST_F(koNodeUtilsTest, ANodeUnderALockedAncestorIsLockedToo)
{
    const osg::NodePtr child = osg::Node::create();
    const osg::NodePtr grandchild = osg::Node::create();
    const osg::NodePtr sibling = osg::Node::create();
    m_node->addChild(child);
    m_node->addChild(sibling);
    child->addChild(grandchild);

    koNodeUtils::setIsEditable(child, false);

    EXPECT_TRUE(koNodeUtils::isEditable(m_node));
    EXPECT_TRUE(koNodeUtils::isEditable(sibling));
    EXPECT_FALSE(koNodeUtils::isEditable(child));
    EXPECT_FALSE(koNodeUtils::isEditable(grandchild));
}

TEST_F(koNodeUtilsTest, UnlockingANodeDoesNotLiftTheLockOfAnAncestor)
{
    const osg::NodePtr child = osg::Node::create();
    m_node->addChild(child);
    koNodeUtils::setIsEditable(m_node, false);

    koNodeUtils::setIsEditable(child, true);

    EXPECT_FALSE(koNodeUtils::isEditable(child));
}

TEST_F(koNodeUtilsTest, ANodeKeepsItsOwnLockWhenTheAncestorIsUnlocked)
{
    const osg::NodePtr child = osg::Node::create();
    m_node->addChild(child);
    koNodeUtils::setIsEditable(m_node, false);
    koNodeUtils::setIsEditable(child, false);

    koNodeUtils::setIsEditable(m_node, true);

    EXPECT_FALSE(koNodeUtils::isEditable(child));
    EXPECT_TRUE(koNodeUtils::isEditable(m_node));
}

TEST_F(koNodeUtilsTest, ANodeLeavesTheLockOfItsAncestorWithIt)
{
    const osg::RefPtr<osg::NodePtr> child(osg::Node::create());
    m_node->addChild(child);
    koNodeUtils::setIsEditable(m_node, false);

    m_node->subChild(child);

    EXPECT_TRUE(koNodeUtils::isEditable(child));
}

TEST_F(koNodeUtilsTest, AnAuxiliaryNodeDoesNotMakeItsChildrenAuxiliary)
{
    const osg::NodePtr child = osg::Node::create();
    m_node->addChild(child);

    koNodeUtils::setIsAuxiliaryNode(m_node, true);

    EXPECT_FALSE(koNodeUtils::isAuxiliaryNode(child));
}

TEST_F(koNodeUtilsTest, IgnoresNullAndAnswersFalseForIt)
{
    const osg::NodePtr null;
    takeChanges();

    koNodeUtils::setIsAuxiliaryNode(null, true);
    koNodeUtils::setIsEditable(null, false);

    EXPECT_FALSE(koNodeUtils::isAuxiliaryNode(null));
    EXPECT_FALSE(koNodeUtils::isEditable(null));
    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_F(koNodeUtilsTest, RecordsOneChangeOfTheAttachmentsForEachChangedMark)
{
    takeChanges();

    koNodeUtils::setIsEditable(m_node, false);
    const std::vector<Change> locked = takeChanges();
    koNodeUtils::setIsEditable(m_node, true);
    const std::vector<Change> unlocked = takeChanges();

    const Change expected(idOf(m_node), osg::AttachmentContainer::AttachmentsFieldMask);
    EXPECT_THAT(locked, Contains(expected).Times(1));
    EXPECT_THAT(unlocked, Contains(expected).Times(1));
}

TEST_F(koNodeUtilsTest, DefaultValuesCreateAndRecordNothing)
{
    takeChanges();
    const std::size_t before = liveContainers();

    koNodeUtils::setIsEditable(m_node, true);
    koNodeUtils::setIsAuxiliaryNode(m_node, false);

    EXPECT_EQ(liveContainers(), before);
    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_F(koNodeUtilsTest, SettingAMarkAgainRecordsNothing)
{
    koNodeUtils::setIsEditable(m_node, false);
    takeChanges();

    koNodeUtils::setIsEditable(m_node, false);

    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_F(koNodeUtilsTest, AllMarksOfANodeShareOneAttachmentThatGoesWithTheLast)
{
    const std::size_t before = liveContainers();

    koNodeUtils::setIsEditable(m_node, false);
    koNodeUtils::setIsAuxiliaryNode(m_node, true);
    EXPECT_EQ(liveContainers(), before + 1);

    koNodeUtils::setIsEditable(m_node, true);
    EXPECT_EQ(liveContainers(), before + 1);

    koNodeUtils::setIsAuxiliaryNode(m_node, false);
    EXPECT_EQ(liveContainers(), before);
}

TEST_F(koNodeUtilsTest, TheMarksDieWithTheirNode)
{
    const std::size_t before = liveContainers();
    {
        const osg::RefPtr<osg::NodePtr> node(osg::Node::create());
        koNodeUtils::setIsEditable(node, false);
        ASSERT_EQ(liveContainers(), before + 2);
    }

    EXPECT_EQ(liveContainers(), before);
}

TEST_F(koNodeUtilsTest, AShallowCopyStartsWithTheMarksOfTheOriginalAndHasItsOwnFromThenOn)
{
    koNodeUtils::setIsEditable(m_node, false);
    const osg::RefPtr<osg::NodePtr> copy(osg::NodePtr::dcast(m_node->shallowCopy()));
    ASSERT_FALSE(koNodeUtils::isEditable(copy));

    koNodeUtils::setIsAuxiliaryNode(copy, true);
    koNodeUtils::setIsEditable(m_node, true);

    EXPECT_TRUE(koNodeUtils::isEditable(m_node));
    EXPECT_FALSE(koNodeUtils::isAuxiliaryNode(m_node));
    EXPECT_FALSE(koNodeUtils::isEditable(copy));
    EXPECT_TRUE(koNodeUtils::isAuxiliaryNode(copy));
}

TEST_F(koNodeUtilsTest, TakingTheLastMarkOffACopyLeavesTheOriginalMarked)
{
    koNodeUtils::setIsEditable(m_node, false);
    const osg::RefPtr<osg::NodePtr> copy(osg::NodePtr::dcast(m_node->shallowCopy()));

    koNodeUtils::setIsEditable(copy, true);

    EXPECT_TRUE(koNodeUtils::isEditable(copy));
    EXPECT_FALSE(koNodeUtils::isEditable(m_node));
}

TEST_F(koNodeUtilsTest, AnswersForAHundredThousandNodesInAFlatAndADeepScene)
{
    constexpr int count = 100000;
    osg::NodePtr deepest = m_node;
    for (int i = 0; i < 1000; ++i) {
        const osg::NodePtr node = osg::Node::create();
        deepest->addChild(node);
        deepest = node;
    }
    for (int i = 0; i < count; ++i) {
        m_node->addChild(osg::Node::create());
    }

    int editable = 0;
    for (osg::UInt32 i = 0; i < m_node->getNChildren(); ++i) {
        editable += koNodeUtils::isEditable(m_node->getChild(i)) ? 1 : 0;
    }
    EXPECT_EQ(editable, count + 1);
    EXPECT_TRUE(koNodeUtils::isEditable(deepest));

    koNodeUtils::setIsEditable(m_node, false);
    EXPECT_FALSE(koNodeUtils::isEditable(deepest));
}

TEST_F(koNodeUtilsTest, TheMarksAreAFieldOfTheirAttachment)
{
    koNodeUtils::setIsEditable(m_node, false);
    const osg::FieldContainerType* const type = osg::FieldContainerFactory::the()->findType("koHostMarks");
    ASSERT_NE(type, nullptr);
    const osg::AttachmentPtr attachment = m_node->findAttachment(type->getGroupId());
    ASSERT_TRUE(attachment != osg::NullFC);

    auto* const marks = static_cast<osg::SFUInt32*>(attachment->getField("marks"));

    ASSERT_NE(marks, nullptr);
    EXPECT_NE(marks->getValue(), 0U);
    marks->setValue(0);
    EXPECT_TRUE(koNodeUtils::isEditable(m_node));
}

} // namespace
