// SPDX-License-Identifier: MIT
#include <InteractionTesting/SceneBuilder.h>
#include <InteractionTesting/SceneFixture.h>

#include "Viewer/Session/SceneEditor.h"
#include "Viewer/Window/SceneTreeModel.h"
#include "Viewer/Window/SceneTreeSelection.h"

#include <Interaction/NodeSelectionModel.h>
#include <SceneUtilities/NodeUtils.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>

#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using viewer::SceneTreeModel;
using Nodes = std::vector<osg::NodePtr>;

class SceneTreeSelectionTest : public SceneFixture {
protected:
    SceneTreeSelectionTest()
        : m_root(makeNode(osg::Group::create()))
        , m_scene("test")
        , m_editor(m_scene)
        , m_selection(m_tree, m_editor, m_scene)
        , m_changes(&m_selection, &QItemSelectionModel::selectionChanged)
        , m_edits(&m_selection, &viewer::SceneTreeSelection::edited)
    {
        NodeUtils::setName(m_root, "machine", false);
        m_editor.setRoot(m_root);
    }

    /** A tree with a root and so many parts below it. */
    Nodes showParts(const int count)
    {
        Nodes parts;
        for (int i = 0; i < count; ++i) {
            parts.push_back(addChild(m_root, osg::Group::create()));
            NodeUtils::setName(parts.back(), "part " + std::to_string(i), false);
        }
        m_tree.setRoot(m_root);
        return parts;
    }

    void select(const Nodes& nodes, QItemSelectionModel::SelectionFlags command)
    {
        m_selection.select(m_tree.getRanges(m_tree.getRows(std::set<osg::NodePtr>(nodes.begin(), nodes.end()))),
                           command);
    }

    int countSteps() const { return m_editor.getHistory().count(); }

    std::set<osg::NodePtr> selectedRows() const
    {
        std::set<osg::NodePtr> nodes;
        for (const int row : m_tree.getRows(m_selection.selection())) {
            nodes.insert(m_tree.getNode(row));
        }
        return nodes;
    }

    NodeRef m_root;
    interaction::NodeSelectionModel m_scene;
    viewer::SceneEditor m_editor;
    SceneTreeModel m_tree;
    viewer::SceneTreeSelection m_selection;
    QSignalSpy m_changes;
    QSignalSpy m_edits;
};

TEST_F(SceneTreeSelectionTest, RowsThatAreSelectedReplaceTheSelectionOfTheSceneInOneStep)
{
    const Nodes parts = showParts(4);
    m_editor.select({parts[3]});

    select({parts[0], parts[1]}, QItemSelectionModel::ClearAndSelect);

    EXPECT_THAT(m_scene.getSelection(), UnorderedElementsAre(parts[0], parts[1]));
    EXPECT_EQ(countSteps(), 2);
    EXPECT_EQ(m_edits.count(), 1);
}

TEST_F(SceneTreeSelectionTest, RowsAreAddedAndTakenOutInOneStepEach)
{
    const Nodes parts = showParts(4);

    select({parts[0], parts[1]}, QItemSelectionModel::Select);
    EXPECT_THAT(m_scene.getSelection(), UnorderedElementsAre(parts[0], parts[1]));
    EXPECT_EQ(countSteps(), 1);

    select({parts[1]}, QItemSelectionModel::Deselect);
    EXPECT_THAT(m_scene.getSelection(), ElementsAre(parts[0]));
    EXPECT_EQ(countSteps(), 2);

    select({parts[0], parts[2], parts[3]}, QItemSelectionModel::Toggle);
    EXPECT_THAT(m_scene.getSelection(), UnorderedElementsAre(parts[2], parts[3]));
    EXPECT_EQ(countSteps(), 3);
    EXPECT_EQ(m_edits.count(), 3);
}

TEST_F(SceneTreeSelectionTest, SelectingWhatIsSelectedIsNoStep)
{
    const Nodes parts = showParts(2);
    m_editor.select({parts[0]});
    m_selection.showScene();

    select({parts[0]}, QItemSelectionModel::ClearAndSelect);
    select({parts[0]}, QItemSelectionModel::Select);
    m_selection.select(QModelIndex(), QItemSelectionModel::Select);

    EXPECT_EQ(countSteps(), 1);
    EXPECT_EQ(m_edits.count(), 0);
}

TEST_F(SceneTreeSelectionTest, ClearingTheRowsClearsTheScene)
{
    const Nodes parts = showParts(2);
    select(parts, QItemSelectionModel::ClearAndSelect);

    m_selection.clearSelection();

    EXPECT_THAT(m_scene.getSelection(), IsEmpty());
}

TEST_F(SceneTreeSelectionTest, TheSceneSelectsRowsWithOneChangeAndNoEdit)
{
    const Nodes parts = showParts(4);
    m_editor.select({parts[0], parts[1], parts[3], m_root});

    EXPECT_TRUE(m_selection.showScene());

    EXPECT_EQ(selectedRows(), m_scene.getSelection());
    EXPECT_EQ(m_selection.selection().size(), 3);
    EXPECT_EQ(m_changes.count(), 1);
    EXPECT_EQ(m_edits.count(), 0);
    EXPECT_EQ(countSteps(), 1);
}

TEST_F(SceneTreeSelectionTest, RowsThatAreSelectedAlreadyAreNotSelectedAgain)
{
    const Nodes parts = showParts(4);
    // Two ranges that touch: the same rows as one.
    select({parts[0]}, QItemSelectionModel::Select);
    select({parts[1]}, QItemSelectionModel::Select);
    m_changes.clear();

    EXPECT_FALSE(m_selection.showScene());

    EXPECT_EQ(m_changes.count(), 0);
}

TEST_F(SceneTreeSelectionTest, AHundredThousandNeighboursAreOneRangeAndOneChange)
{
    const Nodes parts = showParts(100000);
    m_editor.select(parts);

    m_selection.showScene();

    EXPECT_EQ(m_selection.selection().size(), 1);
    EXPECT_EQ(m_selection.selection().first().height(), 100000);
    EXPECT_EQ(m_changes.count(), 1);

    m_editor.select({});
    m_selection.showScene();
    EXPECT_TRUE(m_selection.selection().isEmpty());
    EXPECT_EQ(m_changes.count(), 2);
}

TEST_F(SceneTreeSelectionTest, EverySecondRowIsARangeOfItsOwn)
{
    const Nodes parts = showParts(100000);
    Nodes even;
    Nodes odd;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        (i % 2 == 0 ? even : odd).push_back(parts[i]);
    }

    m_editor.select(even);
    m_selection.showScene();
    EXPECT_EQ(m_selection.selection().size(), 50000);
    EXPECT_EQ(m_changes.count(), 1);

    // Not compared range by range: cleared first.
    m_editor.select(odd);
    m_selection.showScene();
    EXPECT_EQ(m_selection.selection().size(), 50000);
    EXPECT_EQ(m_changes.count(), 3);
    EXPECT_EQ(selectedRows(), m_scene.getSelection());

    m_editor.select({});
    m_selection.showScene();
    EXPECT_EQ(m_changes.count(), 4);
}

TEST_F(SceneTreeSelectionTest, ResetsOfTheTreeLeaveTheSceneAlone)
{
    const Nodes parts = showParts(3);
    select({parts[1]}, QItemSelectionModel::ClearAndSelect);

    m_tree.setRoot(m_root);

    EXPECT_TRUE(m_selection.selection().isEmpty());
    EXPECT_THAT(m_scene.getSelection(), ElementsAre(parts[1]));
    m_selection.showScene();
    EXPECT_EQ(selectedRows(), m_scene.getSelection());
}

TEST_F(SceneTreeSelectionTest, SelectedNodesThatTheFilterLeavesOutStayUnlessTheyAreReplaced)
{
    const Nodes parts = showParts(4);
    m_editor.select({parts[3]});
    m_tree.setFilter(QStringLiteral("part 1"));
    m_selection.showScene();
    EXPECT_TRUE(m_selection.selection().isEmpty());

    select({parts[1]}, QItemSelectionModel::Toggle);
    EXPECT_THAT(m_scene.getSelection(), UnorderedElementsAre(parts[1], parts[3]));

    select({parts[1]}, QItemSelectionModel::ClearAndSelect);
    EXPECT_THAT(m_scene.getSelection(), ElementsAre(parts[1]));
}

} // namespace

} // namespace quon::testing
