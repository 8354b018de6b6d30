// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneBuilder.h>
#include <InteractionTesting/SceneFixture.h>

#include "Viewer/Session/SelectionKeeper.h"

#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/NodeSelectionModel.h>

#include <OpenSG/OSGGroup.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SelectionKeeperTest : public SceneFixture {
protected:
    SelectionKeeperTest()
        : m_root(makeNode(osg::Group::create()))
        , m_selection("selection")
        , m_keeper(m_selection)
    {
        m_first = addChild(m_root.get(), osg::Group::create());
        m_second = addChild(m_root.get(), osg::Group::create());
        viewer::SceneChanges::take();
    }

    void destroyFirst() { m_root->subChild(m_first); }

    NodeRef m_root;
    osg::NodePtr m_first;
    osg::NodePtr m_second;
    interaction::NodeSelectionModel m_selection;
    viewer::SelectionKeeper m_keeper;
};

TEST_F(SelectionKeeperTest, ADestroyedNodeLeavesTheSelectionAndTheOthersStay)
{
    m_selection.setSelection({m_first, m_second});
    destroyFirst();

    EXPECT_TRUE(m_keeper.sceneChanged(viewer::SceneChanges::take()));

    EXPECT_THAT(m_selection.getSelection(), ElementsAre(m_second));
    EXPECT_TRUE(m_keeper.hasNode(m_second));
    EXPECT_FALSE(m_keeper.sceneChanged(viewer::SceneChanges::take()));
}

TEST_F(SelectionKeeperTest, NodesThatWereNotSelectedChangeNothing)
{
    m_selection.setSelection({m_first, m_second});
    m_selection.removeNode(m_first);
    destroyFirst();

    EXPECT_FALSE(m_keeper.sceneChanged(viewer::SceneChanges::take()));

    EXPECT_THAT(m_selection.getSelection(), ElementsAre(m_second));
}

TEST_F(SelectionKeeperTest, TheLastNodeLeavesAnEmptySelection)
{
    m_selection.addNode(osg::NodePtr());
    m_selection.setSelection(m_first);
    destroyFirst();

    EXPECT_TRUE(m_keeper.sceneChanged(viewer::SceneChanges::take()));

    EXPECT_THAT(m_selection.getSelection(), IsEmpty());
}

TEST_F(SelectionKeeperTest, ANodeThatIsAddedTwiceIsKeptOnceAndTheRestStaysWhenOneLeaves)
{
    m_keeper.addNode(m_first);
    m_keeper.addNode(m_first);
    m_keeper.addNode(m_second);
    m_keeper.addNode(m_root.get());
    m_keeper.removeNode(m_first);
    m_keeper.removeNode(m_first);

    EXPECT_FALSE(m_keeper.hasNode(m_first));
    EXPECT_TRUE(m_keeper.hasNode(m_second));
    EXPECT_TRUE(m_keeper.hasNode(m_root.get()));
    m_keeper.removeNode(m_root.get());
    EXPECT_TRUE(m_keeper.hasNode(m_second));

    m_keeper.removeAllNodes();
    EXPECT_FALSE(m_keeper.hasNode(m_second));
    m_keeper.removeNode(m_second);
}

TEST_F(SelectionKeeperTest, AKeeperThatComesLaterKnowsWhatIsSelected)
{
    m_selection.setSelection({m_first, m_second});
    viewer::SelectionKeeper late(m_selection);

    EXPECT_TRUE(late.hasNode(m_first));
    EXPECT_FALSE(late.hasNode(m_root.get()));
    EXPECT_FALSE(late.hasNode(osg::NullFC));
}

} // namespace

} // namespace quon::testing
