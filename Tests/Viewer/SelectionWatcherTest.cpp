// SPDX-License-Identifier: MIT
#include "Viewer/Session/SelectionWatcher.h"

#include "Viewer/Model/SceneChanges.h"

#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/NodeSelectionModel.h>

#include "Support/DrawnScene.h"

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGThread.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace quon::testing {

namespace {

using viewer::SceneChanges;
using viewer::SelectionWatcher;

class SelectionWatcherTest : public ::testing::Test {
protected:
    SelectionWatcherTest()
    {
        m_selection.addVisualisation(&m_boxes);
        m_selection.addVisualisation(&m_watcher);
    }
    ~SelectionWatcherTest() override
    {
        m_selection.removeVisualisation(&m_watcher);
        m_selection.removeVisualisation(&m_boxes);
    }

    interaction::NodeSelectionModel m_selection{"parts"};
    interaction::BoxSelectionVisualisation m_boxes;
    SelectionWatcher m_watcher;
};

TEST_F(SelectionWatcherTest, ToldOfEachKindOfChangeOnce)
{
    const osg::RefPtr<osg::NodePtr> node(makeGroup());
    m_watcher.takeChanged();
    EXPECT_FALSE(m_watcher.takeChanged());

    m_selection.addNode(node);
    EXPECT_TRUE(m_watcher.takeChanged());
    EXPECT_FALSE(m_watcher.takeChanged());
    m_selection.removeNode(node);
    EXPECT_TRUE(m_watcher.takeChanged());
    m_selection.clearSelection();
    EXPECT_TRUE(m_watcher.takeChanged());
    m_selection.updateVisualisations();
    EXPECT_FALSE(m_watcher.takeChanged());
}

TEST_F(SelectionWatcherTest, ManyNewBoxesDoNotFillTheListOfChangesAndAreTakenAllTheSame)
{
    std::vector<osg::RefPtr<osg::NodePtr>> owners;
    std::vector<osg::NodePtr> nodes;
    for (int i = 0; i < 9000; ++i) {
        owners.emplace_back(makeGroup());
        nodes.push_back(owners.back().get());
    }
    SceneChanges::take();

    m_selection.addNodes(nodes);

    EXPECT_LT(osg::Thread::getCurrentChangeList()->sizeChanged(), 4000U * 50U);
    const SceneChanges changes = SceneChanges::take();
    std::set<osg::UInt32> changed;
    for (const auto& [id, mask] : changes.getChanged()) {
        changed.insert(id);
    }
    const osg::NodePtr root = m_boxes.getVisualisation();
    ASSERT_EQ(root->getNChildren(), nodes.size());
    for (osg::UInt32 i = 0; i < root->getNChildren(); ++i) {
        EXPECT_EQ(changed.count(osg::getContainerId(root->getChild(i))), 1U) << i;
    }
    EXPECT_EQ(changed.count(osg::getContainerId(root)), 1U);
    m_selection.clearSelection();
}

} // namespace

} // namespace quon::testing
