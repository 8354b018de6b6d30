// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneFixture.h>

#include <SceneUtilities/NodeUtils.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSimpleAttachments.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

using ::testing::Contains;
using ::testing::IsEmpty;

namespace {

class NodeUtilsTest : public quon::testing::SceneFixture {
protected:
    osg::RefPtr<osg::NodePtr> m_node{osg::Node::create()};
};

TEST_F(NodeUtilsTest, ANewNodeHasNoName)
{
    EXPECT_EQ(NodeUtils::getName(m_node), "");
    EXPECT_FALSE(NodeUtils::isNameGivenByProgram(m_node));
}

TEST_F(NodeUtilsTest, NamesANodeAndNotesThatTheProgramDid)
{
    NodeUtils::setName(m_node, "root", true);

    EXPECT_EQ(NodeUtils::getName(m_node), "root");
    EXPECT_TRUE(NodeUtils::isNameGivenByProgram(m_node));
}

TEST_F(NodeUtilsTest, ANameOfTheUserReplacesThatOfTheProgram)
{
    NodeUtils::setName(m_node, "root", true);

    NodeUtils::setName(m_node, "engine", false);

    EXPECT_EQ(NodeUtils::getName(m_node), "engine");
    EXPECT_FALSE(NodeUtils::isNameGivenByProgram(m_node));
}

TEST_F(NodeUtilsTest, SharesTheNameWithTheSceneGraph)
{
    NodeUtils::setName(m_node, "engine", false);
    EXPECT_STREQ(osg::getName(m_node.get()), "engine");

    osg::setName(m_node.get(), "piston");
    EXPECT_EQ(NodeUtils::getName(m_node), "piston");
}

TEST_F(NodeUtilsTest, TakesItsOwnNameAsArgument)
{
    NodeUtils::setName(m_node, "engine", false);

    NodeUtils::setName(m_node, osg::getName(m_node.get()), true);

    EXPECT_EQ(NodeUtils::getName(m_node), "engine");
}

TEST_F(NodeUtilsTest, KeepsBytesBeyondAscii)
{
    const std::string name = "Zylinder \xC3\xA4 \xFF";

    NodeUtils::setName(m_node, name, false);

    EXPECT_EQ(NodeUtils::getName(m_node), name);
}

TEST_F(NodeUtilsTest, RecordsTheChangeOfTheAttachments)
{
    takeChanges();

    NodeUtils::setName(m_node, "engine", false);

    EXPECT_THAT(takeChanges(),
                Contains(Change(osg::getContainerId(m_node.get()), osg::AttachmentContainer::AttachmentsFieldMask)));
}

TEST_F(NodeUtilsTest, ANameOfTheUserNeedsNoMark)
{
    const std::size_t before = quon::testing::countLiveContainers();

    NodeUtils::setName(m_node, "engine", false);

    EXPECT_EQ(quon::testing::countLiveContainers(), before + 1);
}

TEST_F(NodeUtilsTest, IgnoresNullAndAnswersEmptyForIt)
{
    const osg::NodePtr null;
    takeChanges();

    NodeUtils::setName(null, "engine", true);

    EXPECT_EQ(NodeUtils::getName(null), "");
    EXPECT_FALSE(NodeUtils::isNameGivenByProgram(null));
    EXPECT_THAT(takeChanges(), IsEmpty());
}

} // namespace
