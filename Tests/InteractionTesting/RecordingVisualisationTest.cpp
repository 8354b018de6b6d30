// SPDX-License-Identifier: MIT
#include <InteractionTesting/RecordingVisualisation.h>

#include <Interaction/NodeSelectionModel.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/CallMatchers.h>
#include <InteractionTesting/ObjectNames.h>
#include <InteractionTesting/SceneBuilder.h>
#include <InteractionTesting/SceneFixture.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RecordingVisualisationTest : public SceneFixture {
protected:
    RecordingVisualisationTest() { m_names.add(m_wheel.get(), "wheel"); }

    NodeRef m_wheel = makeNode(osg::Group::create());
    CallLog m_log;
    ObjectNames m_names;
    RecordingVisualisation m_marks{m_log, m_names, "marks"};
};

TEST_F(RecordingVisualisationTest, WritesWhatASelectionTellsIt)
{
    interaction::NodeSelectionModel selection("selection");
    selection.addVisualisation(&m_marks);
    m_log.clear();

    selection.addNode(m_wheel.get());
    selection.updateNode(m_wheel.get());
    selection.removeNode(m_wheel.get());

    EXPECT_THAT(m_log, CallsInOrder("marks.addNode(wheel)", "marks.updateNode(wheel)", "marks.removeNode(wheel)"));
    selection.removeVisualisation(&m_marks);
}

TEST_F(RecordingVisualisationTest, KeepsWhatItWouldShow)
{
    m_marks.addNode(m_wheel.get());
    EXPECT_THAT(m_marks.shownNodes(), ElementsAre(m_wheel.get()));
    EXPECT_TRUE(m_marks.hasNode(m_wheel.get()));

    m_marks.removeNode(m_wheel.get());
    EXPECT_FALSE(m_marks.hasNode(m_wheel.get()));

    m_marks.addNode(m_wheel.get());
    m_marks.removeAllNodes();
    EXPECT_THAT(m_marks.shownNodes(), IsEmpty());
}

TEST_F(RecordingVisualisationTest, DrawsNothing)
{
    EXPECT_EQ(m_marks.getVisualisation(), osg::NullFC);
}

TEST_F(RecordingVisualisationTest, IsShownAndHiddenAsAWhole)
{
    EXPECT_TRUE(m_marks.isVisible());
    m_marks.setVisible(false);
    EXPECT_FALSE(m_marks.isVisible());

    EXPECT_THAT(m_log, CallsOf("marks", "isVisible()", "setVisible(false)", "isVisible()"));
}

TEST_F(RecordingVisualisationTest, ObserverRunsAfterTheEntryWasWritten)
{
    std::vector<std::string> seen;
    m_marks.onCall([&](const std::string& operation, const osg::NodePtr& node) {
        seen.push_back(operation + " " + m_names.of(node) + " behind " + m_log.calls().back());
    });

    m_marks.addNode(m_wheel.get());
    m_marks.updateAllNodes();

    EXPECT_THAT(seen, ElementsAre("addNode wheel behind marks.addNode(wheel)",
                                  "updateAllNodes null behind marks.updateAllNodes()"));
}

} // namespace

} // namespace quon::testing
