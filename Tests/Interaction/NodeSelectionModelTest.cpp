// SPDX-License-Identifier: MIT
#include <Interaction/NodeSelectionModel.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/ObjectNames.h>
#include <InteractionTesting/RecordingVisualisation.h>
#include <InteractionTesting/SceneFixture.h>

#include "Support/StandardError.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace quon::testing {

namespace {

using interaction::NodeSelectionModel;
using interaction::SelectionVisualisation;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class NodeSelectionModelTest : public SceneFixture {
protected:
    NodeSelectionModelTest()
        : m_model("selection")
        , m_first(m_log, m_names, "first")
        , m_second(m_log, m_names, "second")
    {
        for (int index = 0; index < 4; ++index) {
            m_nodes.emplace_back(osg::Node::create());
        }
        // By handle, so that the names sort as the set does.
        std::sort(m_nodes.begin(), m_nodes.end(), [](const auto& left, const auto& right) {
            return std::less<osg::NodePtr>()(left.get(), right.get());
        });
        m_names.add(a(), "a");
        m_names.add(b(), "b");
        m_names.add(c(), "c");
        m_names.add(d(), "d");
    }

    osg::NodePtr a() const { return m_nodes[0].get(); }
    osg::NodePtr b() const { return m_nodes[1].get(); }
    osg::NodePtr c() const { return m_nodes[2].get(); }
    osg::NodePtr d() const { return m_nodes[3].get(); }

    void attachBoth()
    {
        m_model.addVisualisation(&m_first);
        m_model.addVisualisation(&m_second);
        m_log.clear();
    }

    void select(const std::vector<osg::NodePtr>& nodes)
    {
        for (const osg::NodePtr& node : nodes) {
            m_model.addNode(node);
        }
        m_log.clear();
    }

    std::string selection() const
    {
        return m_names.of(std::vector<osg::NodePtr>(m_model.getSelection().begin(), m_model.getSelection().end()));
    }

    // Writes what the model reads from inside each call of the first visualisation.
    void readBackFromInsideTheFirst()
    {
        m_first.onCall([this](const std::string&, const osg::NodePtr&) { m_log.add(selection()); });
    }

    CallLog m_log;
    ObjectNames m_names;
    std::vector<osg::RefPtr<osg::NodePtr>> m_nodes;
    NodeSelectionModel m_model;
    RecordingVisualisation m_first;
    RecordingVisualisation m_second;
};

// Construction and value semantics.

TEST_F(NodeSelectionModelTest, NewModelHasItsNameAndNothingElse)
{
    std::string name = "hover";
    NodeSelectionModel model(name);
    name = "changed";

    model.updateVisualisations();

    EXPECT_EQ(model.getName(), "hover");
    EXPECT_THAT(model.getSelection(), IsEmpty());
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(NodeSelectionModelTest, NameMayBeTakenOutOfAnotherModel)
{
    const NodeSelectionModel model(m_model.getName());

    EXPECT_EQ(model.getName(), "selection");
}

TEST_F(NodeSelectionModelTest, CopyHasTheSelectionAndTheVisualisationsAndIsFilledSilently)
{
    attachBoth();
    select({a()});

    NodeSelectionModel copy(m_model);
    EXPECT_THAT(m_log.take(), IsEmpty());
    copy.addNode(b());

    EXPECT_EQ(copy.getName(), "selection");
    EXPECT_THAT(copy.getSelection(), ElementsAre(a(), b()));
    EXPECT_EQ(selection(), "[a]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.addNode(b)", "second.addNode(b)"));
}

TEST_F(NodeSelectionModelTest, MovingTakesEverythingAlongAndCallsNoVisualisation)
{
    static_assert(std::is_nothrow_move_constructible_v<NodeSelectionModel>);
    attachBoth();
    select({b(), a()});

    NodeSelectionModel moved(std::move(m_model));
    NodeSelectionModel assigned("other");
    assigned = std::move(moved);
    EXPECT_THAT(m_log.take(), IsEmpty());
    assigned.updateVisualisations();

    EXPECT_EQ(assigned.getName(), "selection");
    EXPECT_THAT(assigned.getSelection(), ElementsAre(a(), b()));
    EXPECT_THAT(m_log.calls(), ElementsAre("first.updateAllNodes()", "second.updateAllNodes()"));
}

TEST_F(NodeSelectionModelTest, DestructionCallsNoVisualisation)
{
    {
        NodeSelectionModel model("short-lived");
        model.addVisualisation(&m_first);
        model.addNode(a());
        m_log.clear();
    }

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(m_first.shownNodes(), ElementsAre(a()));
}

// addNode

TEST_F(NodeSelectionModelTest, AddNodeSelectsAndReportsInTheOrderOfAttachment)
{
    attachBoth();

    m_model.addNode(a());

    EXPECT_EQ(selection(), "[a]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.addNode(a)", "second.addNode(a)"));
}

TEST_F(NodeSelectionModelTest, AddNodeOfASelectedNodeReportsAnUpdateOnly)
{
    attachBoth();
    select({a()});

    m_model.addNode(a());

    EXPECT_EQ(selection(), "[a]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.updateNode(a)", "second.updateNode(a)"));
}

TEST_F(NodeSelectionModelTest, AddNodeInsertsBeforeItReports)
{
    attachBoth();
    readBackFromInsideTheFirst();

    m_model.addNode(a());

    EXPECT_THAT(m_log.calls(), ElementsAre("first.addNode(a)", "[a]", "second.addNode(a)"));
}

TEST_F(NodeSelectionModelTest, SelectionIsInTheOrderOfHandles)
{
    m_model.addNode(c());
    m_model.addNode(a());
    m_model.addNode(d());
    m_model.addNode(b());

    EXPECT_THAT(m_model.getSelection(), ElementsAre(a(), b(), c(), d()));
}

TEST_F(NodeSelectionModelTest, NullIsSelectedAndReportedLikeAnyNodeAndSortsFirst)
{
    attachBoth();
    select({b()});

    m_model.addNode(osg::NullFC);
    m_model.addNode(osg::NullFC);

    EXPECT_EQ(selection(), "[null b]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.addNode(null)", "second.addNode(null)", "first.updateNode(null)",
                                           "second.updateNode(null)"));
}

TEST_F(NodeSelectionModelTest, SelectingTakesNoReference)
{
    m_model.addNode(a());
    EXPECT_EQ(a().getRefCount(), 1);

    m_model.removeNode(a());
    EXPECT_EQ(a().getRefCount(), 1);
}

// addNodes

TEST_F(NodeSelectionModelTest, AddNodesReportsEachNodeToEachVisualisationInTheOrderOfTheVector)
{
    attachBoth();

    m_model.addNodes({c(), a(), b()});

    EXPECT_EQ(selection(), "[a b c]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.addNode(c)", "second.addNode(c)", "first.addNode(a)",
                                           "second.addNode(a)", "first.addNode(b)", "second.addNode(b)"));
}

TEST_F(NodeSelectionModelTest, AddNodesStopsBehindTheFirstNodeThatIsSelectedAlready)
{
    attachBoth();
    select({b()});

    m_model.addNodes({a(), b(), c()});

    EXPECT_EQ(selection(), "[a b]");
    EXPECT_THAT(m_log.calls(),
                ElementsAre("first.addNode(a)", "second.addNode(a)", "first.updateNode(b)", "second.updateNode(b)"));
}

TEST_F(NodeSelectionModelTest, AddNodesStopsAtANodeThatItSelectedItself)
{
    attachBoth();

    m_model.addNodes({a(), a(), b()});

    EXPECT_EQ(selection(), "[a]");
    EXPECT_THAT(m_log.calls(),
                ElementsAre("first.addNode(a)", "second.addNode(a)", "first.updateNode(a)", "second.updateNode(a)"));
}

TEST_F(NodeSelectionModelTest, AddNodesInsertsEachNodeJustBeforeItsReport)
{
    attachBoth();
    readBackFromInsideTheFirst();

    m_model.addNodes({b(), a()});

    EXPECT_THAT(m_log.calls(), ElementsAre("first.addNode(b)", "[b]", "second.addNode(b)", "first.addNode(a)", "[a b]",
                                           "second.addNode(a)"));
}

TEST_F(NodeSelectionModelTest, AddNodesOfAnEmptyVectorDoesNothing)
{
    attachBoth();
    select({a()});

    m_model.addNodes({});

    EXPECT_EQ(selection(), "[a]");
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

// removeNode, removeNodes

TEST_F(NodeSelectionModelTest, RemoveNodeReportsWhileTheNodeIsStillSelected)
{
    attachBoth();
    select({a(), b()});
    readBackFromInsideTheFirst();

    m_model.removeNode(a());

    EXPECT_EQ(selection(), "[b]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeNode(a)", "[a b]", "second.removeNode(a)"));
}

TEST_F(NodeSelectionModelTest, RemoveNodeOfAnUnselectedNodeCallsNothing)
{
    attachBoth();
    m_model.removeNode(a());
    select({b()});

    m_model.removeNode(a());
    m_model.removeNode(osg::NullFC);

    EXPECT_EQ(selection(), "[b]");
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(NodeSelectionModelTest, RemoveNodeOfNullWorksLikeThatOfAnyNode)
{
    attachBoth();
    select({osg::NullFC, a()});

    m_model.removeNode(osg::NullFC);

    EXPECT_EQ(selection(), "[a]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeNode(null)", "second.removeNode(null)"));
}

TEST_F(NodeSelectionModelTest, RemoveNodesSkipsUnselectedNodesAndReachesTheEnd)
{
    attachBoth();
    select({a(), b(), c()});

    m_model.removeNodes({c(), d(), a(), c()});

    EXPECT_EQ(selection(), "[b]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeNode(c)", "second.removeNode(c)", "first.removeNode(a)",
                                           "second.removeNode(a)"));
}

TEST_F(NodeSelectionModelTest, RemoveNodesErasesEachNodeAfterItsReport)
{
    attachBoth();
    select({a(), b()});
    readBackFromInsideTheFirst();

    m_model.removeNodes({b(), a()});

    EXPECT_EQ(selection(), "[]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeNode(b)", "[a b]", "second.removeNode(b)",
                                           "first.removeNode(a)", "[a]", "second.removeNode(a)"));
}

// updateNode

TEST_F(NodeSelectionModelTest, UpdateNodeReachesEachVisualisation)
{
    attachBoth();
    select({a()});

    m_model.updateNode(a());

    EXPECT_EQ(selection(), "[a]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.updateNode(a)", "second.updateNode(a)"));
}

TEST_F(NodeSelectionModelTest, UpdateNodeOfAnUnselectedNodeStillReachesEachVisualisation)
{
    attachBoth();

    m_model.updateNode(a());
    m_model.updateNode(osg::NullFC);

    EXPECT_EQ(selection(), "[]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.updateNode(a)", "second.updateNode(a)", "first.updateNode(null)",
                                           "second.updateNode(null)"));
}

// clearSelection, setSelection

TEST_F(NodeSelectionModelTest, ClearSelectionEmptiesTheSetBeforeItReports)
{
    attachBoth();
    select({a(), b()});
    readBackFromInsideTheFirst();

    m_model.clearSelection();

    EXPECT_EQ(selection(), "[]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeAllNodes()", "[]", "second.removeAllNodes()"));
}

TEST_F(NodeSelectionModelTest, ClearSelectionReportsEvenWhenNothingIsSelected)
{
    attachBoth();

    m_model.clearSelection();

    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeAllNodes()", "second.removeAllNodes()"));
}

TEST_F(NodeSelectionModelTest, ClearSelectionWithoutVisualisationsEmptiesTheSet)
{
    select({a(), b()});

    m_model.clearSelection();

    EXPECT_THAT(m_model.getSelection(), IsEmpty());
}

// More elements than are kept for the next selection.
TEST_F(NodeSelectionModelTest, AHugeSelectionIsClearedAndMadeAgain)
{
    std::vector<osg::RefPtr<osg::NodePtr>> owners;
    std::vector<osg::NodePtr> nodes;
    for (int count = 0; count < 100001; ++count) {
        owners.emplace_back(osg::Node::create());
        nodes.push_back(owners.back().get());
    }
    m_model.setSelection(nodes);
    EXPECT_EQ(m_model.getSelection().size(), nodes.size());

    m_model.clearSelection();
    EXPECT_THAT(m_model.getSelection(), IsEmpty());

    m_model.setSelection(nodes);
    EXPECT_EQ(m_model.getSelection().size(), nodes.size());
}

TEST_F(NodeSelectionModelTest, SetSelectionOfANodeClearsTheVisualisationsBeforeTheSet)
{
    attachBoth();
    select({a(), b()});
    readBackFromInsideTheFirst();

    m_model.setSelection(c());

    EXPECT_EQ(selection(), "[c]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeAllNodes()", "[a b]", "second.removeAllNodes()",
                                           "first.addNode(c)", "[c]", "second.addNode(c)"));
}

TEST_F(NodeSelectionModelTest, SetSelectionOfTheSelectedNodeClearsAndAddsItAgain)
{
    attachBoth();
    select({a()});

    m_model.setSelection(a());

    EXPECT_EQ(selection(), "[a]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeAllNodes()", "second.removeAllNodes()", "first.addNode(a)",
                                           "second.addNode(a)"));
}

TEST_F(NodeSelectionModelTest, SetSelectionOfNullSelectsNull)
{
    attachBoth();
    select({a()});

    m_model.setSelection(osg::NodePtr());

    EXPECT_EQ(selection(), "[null]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeAllNodes()", "second.removeAllNodes()", "first.addNode(null)",
                                           "second.addNode(null)"));
}

TEST_F(NodeSelectionModelTest, SetSelectionOfNodesClearsTheVisualisationsBeforeTheSet)
{
    attachBoth();
    select({a(), d()});
    readBackFromInsideTheFirst();

    m_model.setSelection(std::vector<osg::NodePtr>{c(), b()});

    EXPECT_EQ(selection(), "[b c]");
    EXPECT_THAT(m_log.calls(),
                ElementsAre("first.removeAllNodes()", "[a d]", "second.removeAllNodes()", "first.addNode(c)", "[c]",
                            "second.addNode(c)", "first.addNode(b)", "[b c]", "second.addNode(b)"));
}

TEST_F(NodeSelectionModelTest, SetSelectionReportsANodeListedTwiceTwice)
{
    attachBoth();

    m_model.setSelection(std::vector<osg::NodePtr>{a(), a(), b()});

    EXPECT_EQ(selection(), "[a b]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeAllNodes()", "second.removeAllNodes()", "first.addNode(a)",
                                           "second.addNode(a)", "first.addNode(a)", "second.addNode(a)",
                                           "first.addNode(b)", "second.addNode(b)"));
}

TEST_F(NodeSelectionModelTest, SetSelectionOfAnEmptyVectorDeselectsEverything)
{
    attachBoth();
    select({a()});
    readBackFromInsideTheFirst();

    m_model.setSelection(std::vector<osg::NodePtr>());

    EXPECT_EQ(selection(), "[]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeAllNodes()", "[a]", "second.removeAllNodes()"));
}

// Attaching and detaching.

TEST_F(NodeSelectionModelTest, AddVisualisationClearsItAndReplaysTheSelectionInTheOrderOfHandles)
{
    m_model.addVisualisation(&m_second);
    select({c(), osg::NullFC, a(), b()});

    m_model.addVisualisation(&m_first);

    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeAllNodes()", "first.addNode(null)", "first.addNode(a)",
                                           "first.addNode(b)", "first.addNode(c)"));
}

TEST_F(NodeSelectionModelTest, AddVisualisationMakesItShowExactlyTheSelection)
{
    m_first.addNode(d());
    select({a(), b()});

    m_model.addVisualisation(&m_first);

    EXPECT_THAT(m_first.shownNodes(), ElementsAre(a(), b()));
}

TEST_F(NodeSelectionModelTest, AddVisualisationAttachesBeforeItReplays)
{
    select({a()});
    m_first.onCall([this](const std::string& operation, const osg::NodePtr&) {
        if (operation == "removeAllNodes") {
            m_model.updateVisualisations();
        }
    });

    m_model.addVisualisation(&m_first);

    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeAllNodes()", "first.updateAllNodes()", "first.addNode(a)"));
}

TEST_F(NodeSelectionModelTest, VisualisationAttachedTwiceIsCalledTwice)
{
    select({a()});

    m_model.addVisualisation(&m_first);
    m_model.addVisualisation(&m_second);
    m_model.addVisualisation(&m_first);
    EXPECT_THAT(m_log.take(), ElementsAre("first.removeAllNodes()", "first.addNode(a)", "second.removeAllNodes()",
                                          "second.addNode(a)", "first.removeAllNodes()", "first.addNode(a)"));
    m_model.addNode(b());

    EXPECT_THAT(m_log.calls(), ElementsAre("first.addNode(b)", "second.addNode(b)", "first.addNode(b)"));
}

TEST_F(NodeSelectionModelTest, RemoveVisualisationErasesTheFirstEntryAndKeepsTheOrder)
{
    RecordingVisualisation third(m_log, m_names, "third");
    m_model.addVisualisation(&m_first);
    m_model.addVisualisation(&m_second);
    m_model.addVisualisation(&m_first);
    m_model.addVisualisation(&third);
    select({a()});

    m_model.removeVisualisation(&m_first);
    EXPECT_THAT(m_log.take(), ElementsAre("first.removeAllNodes()"));
    m_model.updateNode(a());

    EXPECT_THAT(m_log.calls(), ElementsAre("second.updateNode(a)", "first.updateNode(a)", "third.updateNode(a)"));
}

TEST_F(NodeSelectionModelTest, RemovedVisualisationHearsNothingMore)
{
    attachBoth();
    select({a()});

    m_model.removeVisualisation(&m_first);
    m_model.addNode(b());

    EXPECT_EQ(selection(), "[a b]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeAllNodes()", "second.addNode(b)"));
}

TEST_F(NodeSelectionModelTest, RemoveVisualisationClearsOneThatWasNeverAttached)
{
    m_model.addVisualisation(&m_second);
    select({a()});

    m_model.removeVisualisation(&m_first);
    EXPECT_THAT(m_log.take(), ElementsAre("first.removeAllNodes()"));
    m_model.updateVisualisations();

    EXPECT_THAT(m_log.calls(), ElementsAre("second.updateAllNodes()"));
}

TEST_F(NodeSelectionModelTest, RemoveVisualisationClearsBeforeItDetaches)
{
    attachBoth();
    m_first.onCall([this](const std::string& operation, const osg::NodePtr&) {
        if (operation == "removeAllNodes") {
            m_model.updateVisualisations();
        }
    });

    m_model.removeVisualisation(&m_first);

    EXPECT_THAT(m_log.calls(),
                ElementsAre("first.removeAllNodes()", "first.updateAllNodes()", "second.updateAllNodes()"));
}

TEST_F(NodeSelectionModelTest, UpdateVisualisationRefreshesOneWhetherAttachedOrNot)
{
    m_model.addVisualisation(&m_second);
    select({a()});

    m_model.updateVisualisation(&m_second);
    m_model.updateVisualisation(&m_first);
    EXPECT_THAT(m_log.take(), ElementsAre("second.updateAllNodes()", "first.updateAllNodes()"));
    m_model.updateVisualisations();

    EXPECT_EQ(selection(), "[a]");
    EXPECT_THAT(m_log.calls(), ElementsAre("second.updateAllNodes()")) << "still the only one attached";
}

TEST_F(NodeSelectionModelTest, UpdateVisualisationsRefreshesEachEntry)
{
    attachBoth();
    m_model.addVisualisation(&m_first);
    m_log.clear();

    m_model.updateVisualisations();

    EXPECT_THAT(m_log.calls(),
                ElementsAre("first.updateAllNodes()", "second.updateAllNodes()", "first.updateAllNodes()"));
}

// Arguments that refer into the model's own data.

TEST_F(NodeSelectionModelTest, NodeOfItsOwnSelectionMayBeRemoved)
{
    attachBoth();
    select({a(), b()});

    m_model.removeNode(*m_model.getSelection().begin());

    EXPECT_EQ(selection(), "[b]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeNode(a)", "second.removeNode(a)"));
}

TEST_F(NodeSelectionModelTest, NodeOfItsOwnSelectionMayBecomeTheSelection)
{
    attachBoth();
    select({a(), b()});

    m_model.setSelection(*m_model.getSelection().rbegin());

    EXPECT_EQ(selection(), "[b]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeAllNodes()", "second.removeAllNodes()", "first.addNode(b)",
                                           "second.addNode(b)"));
}

TEST_F(NodeSelectionModelTest, NodeOfItsOwnSelectionMayBeAddedAndUpdated)
{
    attachBoth();
    select({a()});

    m_model.addNode(*m_model.getSelection().begin());
    m_model.updateNode(*m_model.getSelection().begin());

    EXPECT_EQ(selection(), "[a]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.updateNode(a)", "second.updateNode(a)", "first.updateNode(a)",
                                           "second.updateNode(a)"));
}

// Visualisations that change the selection from inside a call.

TEST_F(NodeSelectionModelTest, NodeMayBeDeselectedFromInsideItsOwnRemoval)
{
    attachBoth();
    select({a(), b()});
    bool inside = false;
    m_first.onCall([this, &inside](const std::string& operation, const osg::NodePtr& node) {
        if (operation == "removeNode" && !inside) {
            inside = true;
            m_model.removeNode(node);
        }
    });

    m_model.removeNode(*m_model.getSelection().begin());

    EXPECT_EQ(selection(), "[b]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeNode(a)", "first.removeNode(a)", "second.removeNode(a)",
                                           "second.removeNode(a)"));
}

TEST_F(NodeSelectionModelTest, NodeMayBeReplacedFromInsideItsOwnRemoval)
{
    m_model.addVisualisation(&m_first);
    select({a()});
    bool inside = false;
    m_first.onCall([this, &inside](const std::string& operation, const osg::NodePtr& node) {
        if (operation == "removeNode" && !inside) {
            inside = true;
            m_model.removeNode(node);
            // Likely to take the memory that the first handle had in the set.
            m_model.addNode(d());
        }
    });

    m_model.removeNode(*m_model.getSelection().begin());

    EXPECT_EQ(selection(), "[d]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeNode(a)", "first.removeNode(a)", "first.addNode(d)"));
}

TEST_F(NodeSelectionModelTest, SelectionMayBeReplacedFromInsideAnUpdateOfItsOwnNode)
{
    attachBoth();
    select({a()});
    m_first.onCall([this](const std::string& operation, const osg::NodePtr&) {
        if (operation == "updateNode") {
            m_model.clearSelection();
            // Likely to take the memory that the first handle had in the set.
            m_model.addNode(d());
        }
    });

    m_model.updateNode(*m_model.getSelection().begin());

    EXPECT_EQ(selection(), "[d]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.updateNode(a)", "first.removeAllNodes()", "second.removeAllNodes()",
                                           "first.addNode(d)", "second.addNode(d)", "second.updateNode(a)"));
}

TEST_F(NodeSelectionModelTest, SelectionMayBeReplacedFromInsideTheStartOfAReplacement)
{
    m_model.addVisualisation(&m_first);
    select({a()});
    bool inside = false;
    m_first.onCall([this, &inside](const std::string& operation, const osg::NodePtr&) {
        if (operation == "removeAllNodes" && !inside) {
            inside = true;
            m_model.clearSelection();
            m_model.addNode(d());
        }
    });

    m_model.setSelection(*m_model.getSelection().begin());

    EXPECT_EQ(selection(), "[a]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.removeAllNodes()", "first.removeAllNodes()", "first.addNode(d)",
                                           "first.addNode(a)"));
}

TEST_F(NodeSelectionModelTest, SelectionMayBeClearedFromInsideAnUpdateOfItsOwnNode)
{
    attachBoth();
    select({a(), b()});
    m_first.onCall([this](const std::string& operation, const osg::NodePtr&) {
        if (operation == "updateNode") {
            m_model.clearSelection();
        }
    });

    m_model.updateNode(*m_model.getSelection().begin());

    EXPECT_EQ(selection(), "[]");
    EXPECT_THAT(m_log.calls(), ElementsAre("first.updateNode(a)", "first.removeAllNodes()", "second.removeAllNodes()",
                                           "second.updateNode(a)"));
}

TEST_F(NodeSelectionModelTest, SelectionMayChangeWhileItIsReplayed)
{
    select({a(), b(), c()});
    m_first.onCall([this](const std::string& operation, const osg::NodePtr& node) {
        if (operation == "addNode" && node == a()) {
            m_model.removeNode(a());
            m_model.removeNode(b());
            m_model.addNode(d());
        }
    });

    m_model.addVisualisation(&m_first);

    EXPECT_EQ(selection(), "[c d]");
    EXPECT_THAT(m_first.shownNodes(), ElementsAre(c(), d()));
    EXPECT_THAT(m_log.calls(),
                ElementsAre("first.removeAllNodes()", "first.addNode(a)", "first.removeNode(a)", "first.removeNode(b)",
                            "first.addNode(d)", "first.addNode(c)", "first.addNode(d)"));
}

// Nodes that the scene destroys.

TEST_F(NodeSelectionModelTest, DestroyedNodeStaysSelectedAsAStaleHandle)
{
    attachBoth();
    const osg::NodePtr stale = d();
    select({stale, a()});

    m_nodes.pop_back();

    EXPECT_EQ(m_model.getSelection().count(stale), 1u);
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(NodeSelectionModelTest, DestroyedNodeMayBeHandledLikeAnyOther)
{
    attachBoth();
    const osg::NodePtr stale = d();
    select({stale});
    m_nodes.pop_back();

    m_model.addNode(stale);
    m_model.updateNode(stale);
    m_model.removeNode(stale);

    EXPECT_THAT(m_model.getSelection(), IsEmpty());
    EXPECT_THAT(m_log.calls(), ElementsAre("first.updateNode(d)", "second.updateNode(d)", "first.updateNode(d)",
                                           "second.updateNode(d)", "first.removeNode(d)", "second.removeNode(d)"));
}

// Any sequence of calls against a plain model of what they do.

class ReferenceModel {
public:
    explicit ReferenceModel(CallLog& log)
        : m_log(log)
    {}

    void addNode(const std::string& node) { report(m_nodes.insert(node).second ? "addNode" : "updateNode", node); }

    void addNodes(const std::vector<std::string>& nodes)
    {
        for (const std::string& node : nodes) {
            const bool wasSelected = m_nodes.count(node) != 0;
            addNode(node);
            if (wasSelected) {
                return;
            }
        }
    }

    void removeNodes(const std::vector<std::string>& nodes)
    {
        for (const std::string& node : nodes) {
            if (m_nodes.erase(node) != 0) {
                report("removeNode", node);
            }
        }
    }

    void updateNode(const std::string& node) { report("updateNode", node); }

    void setSelection(const std::vector<std::string>& nodes)
    {
        reportAll("removeAllNodes");
        m_nodes.clear();
        for (const std::string& node : nodes) {
            m_nodes.insert(node);
            report("addNode", node);
        }
    }

    void attach(const std::string& visualisation)
    {
        m_visualisations.push_back(visualisation);
        m_log.call(visualisation, "removeAllNodes");
        for (const std::string& node : m_nodes) {
            m_log.call(visualisation, "addNode", node);
        }
    }

    void detach(const std::string& visualisation)
    {
        m_log.call(visualisation, "removeAllNodes");
        for (std::size_t index = 0; index < m_visualisations.size(); ++index) {
            if (m_visualisations[index] == visualisation) {
                m_visualisations.erase(m_visualisations.begin() + static_cast<std::ptrdiff_t>(index));
                return;
            }
        }
    }

    void updateAll() { reportAll("updateAllNodes"); }

    const std::set<std::string>& nodes() const { return m_nodes; }

private:
    void report(const std::string& operation, const std::string& node)
    {
        for (const std::string& visualisation : m_visualisations) {
            m_log.call(visualisation, operation, node);
        }
    }

    void reportAll(const std::string& operation)
    {
        for (const std::string& visualisation : m_visualisations) {
            m_log.call(visualisation, operation);
        }
    }

    CallLog& m_log;
    std::set<std::string> m_nodes;
    std::vector<std::string> m_visualisations;
};

TEST_F(NodeSelectionModelTest, AnySequenceOfCallsMatchesTheReferenceModel)
{
    const std::vector<osg::NodePtr> allNodes = {a(), b(), c(), d()};

    const bool holds = rc::check("log and selection are those of the reference model", [&] {
        CallLog log;
        RecordingVisualisation first(log, m_names, "first");
        RecordingVisualisation second(log, m_names, "second");
        NodeSelectionModel model("model");
        CallLog expectedLog;
        ReferenceModel reference(expectedLog);

        const auto steps = *rc::gen::container<std::vector<std::pair<int, std::vector<std::size_t>>>>(
            rc::gen::pair(rc::gen::inRange(0, 12),
                          rc::gen::container<std::vector<std::size_t>>(rc::gen::inRange<std::size_t>(0, 4))));
        for (const auto& [operation, indices] : steps) {
            std::vector<osg::NodePtr> nodes;
            std::vector<std::string> names;
            for (const std::size_t index : indices) {
                nodes.push_back(allNodes[index]);
                names.push_back(m_names.of(allNodes[index]));
            }
            const osg::NodePtr node = nodes.empty() ? a() : nodes.front();
            const std::string name = m_names.of(node);
            RecordingVisualisation* visualisation = nodes.size() % 2 == 0 ? &first : &second;
            const std::string visualisationName = nodes.size() % 2 == 0 ? "first" : "second";

            switch (operation) {
            case 0:
                model.addNode(node);
                reference.addNode(name);
                break;
            case 1:
                model.addNodes(nodes);
                reference.addNodes(names);
                break;
            case 2:
                model.removeNode(node);
                reference.removeNodes({name});
                break;
            case 3:
                model.removeNodes(nodes);
                reference.removeNodes(names);
                break;
            case 4:
                model.updateNode(node);
                reference.updateNode(name);
                break;
            case 5:
                model.clearSelection();
                reference.setSelection({});
                break;
            case 6:
                model.setSelection(node);
                reference.setSelection({name});
                break;
            case 7:
                model.setSelection(nodes);
                reference.setSelection(names);
                break;
            case 8:
                model.addVisualisation(visualisation);
                reference.attach(visualisationName);
                break;
            case 9:
                model.removeVisualisation(visualisation);
                reference.detach(visualisationName);
                break;
            case 10:
                model.updateVisualisation(visualisation);
                expectedLog.call(visualisationName, "updateAllNodes");
                break;
            default:
                model.updateVisualisations();
                reference.updateAll();
                break;
            }
        }

        RC_ASSERT(log.calls() == expectedLog.calls());
        std::vector<std::string> selected;
        for (const osg::NodePtr& node : model.getSelection()) {
            selected.push_back(m_names.of(node));
        }
        RC_ASSERT(selected == std::vector<std::string>(reference.nodes().begin(), reference.nodes().end()));
    });

    // The checker tells the seed and the counterexample on standard error.
    const std::string report = StandardError::take();
    EXPECT_TRUE(holds) << report;
}

} // namespace

} // namespace quon::testing
