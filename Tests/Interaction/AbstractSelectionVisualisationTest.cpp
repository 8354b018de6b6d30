// SPDX-License-Identifier: MIT
#include <Interaction/AbstractSelectionVisualisation.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/SceneFixture.h>

#include "Support/StandardError.h"

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace quon::interaction {

// Tells when it goes, and with it the node whose core it is.
class WitnessCore;
using WitnessCorePtr = osg::FCPtr<osg::GroupPtr, WitnessCore>;

class WitnessCore : public osg::Group {
public:
    OSG_FIELD_CONTAINER_DECL(WitnessCorePtr)

    std::function<void()> onDestruction;

protected:
    ~WitnessCore() override
    {
        if (onDestruction) {
            onDestruction();
        }
    }

private:
    static osg::FieldContainerType _type;
};

osg::FieldContainerType WitnessCore::_type(
    "WitnessCore", "Group", nullptr, []() -> osg::FieldContainerPtr { return createEmpty(); }, nullptr);

OSG_FIELD_CONTAINER_INL_DEF(WitnessCore, WitnessCorePtr)
OSG_FIELD_CONTAINER_DEF(WitnessCore, WitnessCorePtr)

namespace {

using quon::testing::CallLog;
using quon::testing::SceneFixture;
using quon::testing::StandardError;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using NodeRef = osg::RefPtr<osg::NodePtr>;

constexpr osg::UInt32 allOnes = 0xFFFFFFFF;
constexpr osg::UInt32 nearlyAllOnes = 0xFFFFFFFE;

// Writes every call that goes through the virtual table to the log; its visualisation nodes are plain groups.
class RecordingKind : public AbstractSelectionVisualisation {
public:
    using Names = std::map<osg::UInt32, std::string>;

    RecordingKind(CallLog& log, const Names& names)
        : m_log(log)
        , m_names(names)
    {}

    bool isVisible() const override
    {
        m_log.add("isVisible()");
        return AbstractSelectionVisualisation::isVisible();
    }

    void updateNode(const osg::NodePtr& node) override
    {
        m_log.add("updateNode(" + nameOf(node) + ")");
        if (onUpdateNode) {
            onUpdateNode(node);
        }
        AbstractSelectionVisualisation::updateNode(node);
    }

    osg::NodePtr createVisualisation(const osg::NodePtr& node) override
    {
        m_log.add("createVisualisation(" + nameOf(node) + ")");
        if (onCreate) {
            onCreate(node);
        }
        osg::NodePtr visualisation = prepared;
        if (visualisation == osg::NullFC) {
            visualisation = osg::Node::create();
            visualisation->setCore(osg::Group::create());
        }
        m_created[osg::getContainerId(visualisation)] = nameOf(node);
        return visualisation;
    }

    void removeVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation) override
    {
        m_log.add("removeVisualisation(" + nameOf(node) + ", " + visualisationNameOf(visualisation) + ")");
        if (onRemove) {
            onRemove(node, visualisation);
        }
    }

    void updateVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation) override
    {
        m_log.add("updateVisualisation(" + nameOf(node) + ", " + visualisationNameOf(visualisation) + ")");
        if (onUpdate) {
            onUpdate(node, visualisation);
        }
    }

    bool shouldHaveVisualization(const osg::NodePtr& node) const override
    {
        m_log.add("shouldHaveVisualization(" + nameOf(node) + ")");
        return isWanted;
    }

    // What shouldHaveVisualization() answers.
    bool isWanted = true;
    // What createVisualisation() returns instead of a new node, when set.
    osg::NodePtr prepared;
    std::function<void(const osg::NodePtr&)> onUpdateNode;
    std::function<void(const osg::NodePtr&)> onCreate;
    std::function<void(const osg::NodePtr&, const osg::NodePtr&)> onRemove;
    std::function<void(const osg::NodePtr&, const osg::NodePtr&)> onUpdate;

private:
    std::string nameOf(const osg::NodePtr& node) const
    {
        return node == osg::NullFC ? "null" : m_names.at(osg::getContainerId(node));
    }

    std::string visualisationNameOf(const osg::NodePtr& visualisation) const
    {
        return visualisation == osg::NullFC ? "null"
                                            : "visualisation of " + m_created.at(osg::getContainerId(visualisation));
    }

    CallLog& m_log;
    const Names& m_names;
    std::map<osg::UInt32, std::string> m_created;
};

class AbstractSelectionVisualisationTest : public SceneFixture {
protected:
    AbstractSelectionVisualisationTest()
        : m_a(makeNode("a"))
        , m_b(makeNode("b"))
        , m_c(makeNode("c"))
    {
        takeChanges();
    }

    NodeRef makeNode(const std::string& name)
    {
        NodeRef node(osg::Node::create());
        node->setCore(osg::Group::create());
        m_names[osg::getContainerId(node.get())] = name;
        return node;
    }

    osg::NodePtr root() { return m_visualisation->getVisualisation(); }

    bool isRootShown() { return root()->getTravMask() == allOnes; }

    // The masks with which a node was closed, without the scene graph's own bookkeeping of volumes.
    static std::vector<osg::BitVector> editsOf(const osg::NodePtr& node, const std::vector<Change>& changes)
    {
        std::vector<osg::BitVector> masks;
        for (const Change& change : changes) {
            if (change.first == osg::getContainerId(node) && change.second != osg::Node::VolumeFieldMask) {
                masks.push_back(change.second);
            }
        }
        return masks;
    }

    // Adds a node whose visualisation notes in which state the root is when it goes.
    void addWitnessed(const osg::NodePtr& node)
    {
        const WitnessCorePtr core = WitnessCore::create();
        core->onDestruction = [this] {
            m_childrenWhenGone = root()->getNChildren();
            m_editsWhenGone = editsOf(root(), takeChanges());
        };
        m_visualisation->prepared = osg::Node::create();
        m_visualisation->prepared->setCore(core);
        m_visualisation->addNode(node);
        m_visualisation->prepared = osg::NullFC;
        takeChanges();
    }

    // What a walk has to get through, more than it looks ahead.
    std::vector<NodeRef> addMany(int count)
    {
        std::vector<NodeRef> nodes;
        for (int i = 0; i < count; ++i) {
            nodes.push_back(makeNode(std::to_string(i)));
            m_visualisation->addNode(nodes.back());
        }
        return nodes;
    }

    static bool exists(osg::UInt32 id) { return osg::FieldContainerFactory::the()->getContainer(id) != osg::NullFC; }

    RecordingKind::Names m_names;
    CallLog m_log;
    NodeRef m_a;
    NodeRef m_b;
    NodeRef m_c;
    osg::UInt32 m_childrenWhenGone = 0;
    std::vector<osg::BitVector> m_editsWhenGone;
    std::unique_ptr<RecordingKind> m_visualisation = std::make_unique<RecordingKind>(m_log, m_names);
};

TEST_F(AbstractSelectionVisualisationTest, NewVisualisationIsVisibleAndHasAnEmptyGroupAsItsRoot)
{
    EXPECT_TRUE(m_visualisation->isVisible());
    EXPECT_FALSE(m_visualisation->hasNode(m_a));
    ASSERT_NE(root(), osg::NullFC);
    EXPECT_EQ(root()->getTravMask(), allOnes);
    EXPECT_EQ(root()->getNChildren(), 0U);
    EXPECT_EQ(root()->getParent(), osg::NullFC);
    EXPECT_EQ(root()->getCore()->getTypeId(), osg::Group::getClassTypeId());
}

TEST_F(AbstractSelectionVisualisationTest, TheInstanceHoldsTheOnlyReferenceToItsRoot)
{
    const osg::NodePtr handle = m_visualisation->getVisualisation();

    EXPECT_EQ(handle.getRefCount(), 1);
}

TEST_F(AbstractSelectionVisualisationTest, TheConstructorClosesTheRootOverItsCore)
{
    RecordingKind fresh(m_log, m_names);

    EXPECT_THAT(editsOf(fresh.getVisualisation(), takeChanges()), ElementsAre(osg::Node::CoreFieldMask));
}

TEST_F(AbstractSelectionVisualisationTest, ARootWithAnotherCoreWorksAndKeepsIt)
{
    const osg::GroupPtr core = osg::Group::create();
    root()->setCore(core);

    m_visualisation->addNode(m_a);
    m_visualisation->setVisible(false);
    m_visualisation->setVisible(true);
    m_visualisation->removeNode(m_a);
    m_visualisation->removeAllNodes();

    EXPECT_EQ(root()->getCore(), core);
}

TEST_F(AbstractSelectionVisualisationTest, NullNodesAreIgnored)
{
    const osg::NodePtr none;

    m_visualisation->addNode(none);
    m_visualisation->removeNode(none);
    m_visualisation->AbstractSelectionVisualisation::updateNode(none);

    EXPECT_FALSE(m_visualisation->hasNode(none));
    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_EQ(root()->getNChildren(), 0U);
}

TEST_F(AbstractSelectionVisualisationTest, NullNodesAreIgnoredBesideTrackedOnes)
{
    const osg::NodePtr none;
    m_visualisation->addNode(m_a);
    m_log.clear();
    takeChanges();

    m_visualisation->addNode(none);
    m_visualisation->removeNode(none);
    m_visualisation->AbstractSelectionVisualisation::updateNode(none);

    EXPECT_FALSE(m_visualisation->hasNode(none));
    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(takeChanges(), IsEmpty());
    EXPECT_EQ(root()->getNChildren(), 1U);
}

// Visibility of the whole

TEST_F(AbstractSelectionVisualisationTest, HidingWritesTheMaskOfTheRootAlone)
{
    m_visualisation->addNode(m_a);
    m_log.clear();
    takeChanges();

    m_visualisation->setVisible(false);

    EXPECT_FALSE(m_visualisation->AbstractSelectionVisualisation::isVisible());
    EXPECT_EQ(root()->getTravMask(), 0U);
    EXPECT_EQ(root()->getChild(0)->getTravMask(), allOnes);
    const std::vector<Change> changes = takeChanges();
    EXPECT_THAT(editsOf(root(), changes), ElementsAre(osg::Node::TravMaskFieldMask));
    EXPECT_THAT(editsOf(root()->getChild(0), changes), IsEmpty());
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(AbstractSelectionVisualisationTest, ShowingAVisibleVisualisationChangesAndRefreshesNothing)
{
    m_visualisation->addNode(m_a);
    m_log.clear();
    takeChanges();

    m_visualisation->setVisible(true);

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_F(AbstractSelectionVisualisationTest, HidingAHiddenVisualisationChangesNothing)
{
    m_visualisation->setVisible(false);
    takeChanges();

    m_visualisation->setVisible(false);

    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_F(AbstractSelectionVisualisationTest, APartialMaskOfTheRootCountsAsHidden)
{
    root()->setTravMask(nearlyAllOnes);

    EXPECT_FALSE(m_visualisation->isVisible());
    m_visualisation->setVisible(false);
    EXPECT_EQ(root()->getTravMask(), nearlyAllOnes);
    m_visualisation->setVisible(true);
    EXPECT_EQ(root()->getTravMask(), allOnes);
}

TEST_F(AbstractSelectionVisualisationTest, ShowingUpdatesEveryNodeInAscendingIdOrder)
{
    m_visualisation->addNode(m_c);
    m_visualisation->addNode(m_a);
    m_visualisation->setVisible(false);
    m_visualisation->addNode(m_b);
    m_log.clear();

    m_visualisation->setVisible(true);

    EXPECT_THAT(m_log.calls(),
                ElementsAre("updateNode(a)", "isVisible()", "shouldHaveVisualization(a)",
                            "updateVisualisation(a, visualisation of a)", "updateNode(b)", "isVisible()",
                            "shouldHaveVisualization(b)", "createVisualisation(b)", "updateNode(c)", "isVisible()",
                            "shouldHaveVisualization(c)", "updateVisualisation(c, visualisation of c)"));
}

TEST_F(AbstractSelectionVisualisationTest, ShowingRecordsTheRootBeforeItRefreshes)
{
    m_visualisation->addNode(m_a);
    m_visualisation->setVisible(false);
    osg::UInt32 maskDuringUpdate = 0;
    std::vector<Change> changesBeforeUpdate;
    m_visualisation->onUpdate = [&](const osg::NodePtr&, const osg::NodePtr&) {
        maskDuringUpdate = root()->getTravMask();
        changesBeforeUpdate = takeChanges();
    };
    takeChanges();

    m_visualisation->setVisible(true);

    EXPECT_EQ(maskDuringUpdate, allOnes);
    EXPECT_THAT(editsOf(root(), changesBeforeUpdate), ElementsAre(osg::Node::TravMaskFieldMask));
}

TEST_F(AbstractSelectionVisualisationTest, ShowingReportsEveryDestroyedNodeAndKeepsItsEntry)
{
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_b);
    m_visualisation->isWanted = false;
    m_visualisation->addNode(m_c);
    m_visualisation->isWanted = true;
    m_a = osg::NullFC;
    m_c = osg::NullFC;
    m_log.clear();
    const std::string message = "AbstractSelectionVisualisation::setVisible: invalid node pointer!\n";

    m_visualisation->setVisible(false);
    EXPECT_EQ(StandardError::take(), "");
    m_visualisation->setVisible(true);

    // With a visualisation node (a) and without (c) alike, unlike removeAllNodes().
    EXPECT_EQ(StandardError::take(), message + message);
    EXPECT_THAT(m_log.calls(), ElementsAre("updateNode(b)", "isVisible()", "shouldHaveVisualization(b)",
                                           "updateVisualisation(b, visualisation of b)"));
    EXPECT_EQ(root()->getNChildren(), 2U);
    m_visualisation->setVisible(false);
    m_visualisation->setVisible(true);
    EXPECT_EQ(StandardError::take(), message + message);
}

TEST_F(AbstractSelectionVisualisationTest, AContainerThatIsNoNodeIsReportedLikeADestroyedNode)
{
    // What the handle of a destroyed node leads to when a container of another kind got the node's memory.
    const osg::RefPtr<osg::GroupPtr> group(osg::Group::create());
    const osg::FieldContainerPtr container = group.get();
    m_visualisation->addNode(m_a);
    m_visualisation->setVisible(false);
    m_visualisation->addNode(static_cast<const osg::NodePtr&>(container));
    m_log.clear();

    m_visualisation->setVisible(true);
    EXPECT_EQ(StandardError::take(), "AbstractSelectionVisualisation::setVisible: invalid node pointer!\n");
    m_visualisation->updateAllNodes();
    m_visualisation->removeAllNodes();

    EXPECT_THAT(m_log.calls(),
                ElementsAre("updateNode(a)", "isVisible()", "shouldHaveVisualization(a)",
                            "updateVisualisation(a, visualisation of a)", "isVisible()", "updateNode(a)", "isVisible()",
                            "shouldHaveVisualization(a)", "updateVisualisation(a, visualisation of a)",
                            "removeVisualisation(a, visualisation of a)"));
}

// The states of a tracked node

enum class State { Untracked, Without, Shown, Hidden };

struct StateRow {
    const char* name;
    State before;
    bool isVisible;
    bool isWanted;
    osg::UInt32 nodeMask;
    State after;
    std::vector<std::string> calls;
};

void PrintTo(const StateRow& row, std::ostream* stream)
{
    *stream << row.name;
}

std::string nameOfRow(const ::testing::TestParamInfo<StateRow>& info)
{
    return info.param.name;
}

class NodeStateTest : public AbstractSelectionVisualisationTest, public ::testing::WithParamInterface<StateRow> {
protected:
    // Brings node a into the state before the call that the row is about.
    void arrange()
    {
        switch (GetParam().before) {
        case State::Untracked:
            break;
        case State::Without:
            m_visualisation->isWanted = false;
            m_visualisation->addNode(m_a);
            break;
        case State::Shown:
            m_visualisation->addNode(m_a);
            break;
        case State::Hidden:
            m_a->setTravMask(0);
            m_visualisation->addNode(m_a);
            break;
        }
        m_a->setTravMask(GetParam().nodeMask);
        m_visualisation->isWanted = GetParam().isWanted;
        m_visualisation->setVisible(GetParam().isVisible);
        ASSERT_EQ(state(), GetParam().before);
        m_log.clear();
        takeChanges();
    }

    State state()
    {
        if (!m_visualisation->hasNode(m_a)) {
            EXPECT_EQ(root()->getNChildren(), 0U);
            return State::Untracked;
        }
        if (root()->getNChildren() == 0) {
            return State::Without;
        }
        EXPECT_EQ(root()->getNChildren(), 1U);
        const osg::UInt32 mask = root()->getChild(0)->getTravMask();
        EXPECT_TRUE(mask == allOnes || mask == 0) << mask;
        EXPECT_EQ(root()->getChild(0).getRefCount(), 2) << "one from the entry, one from the root";
        return mask == allOnes ? State::Shown : State::Hidden;
    }
};

using AddNodeTest = NodeStateTest;

TEST_P(AddNodeTest, FollowsTheTable)
{
    arrange();

    m_visualisation->addNode(m_a);

    EXPECT_THAT(m_log.calls(), ::testing::ElementsAreArray(GetParam().calls));
    EXPECT_EQ(state(), GetParam().after);
}

const std::vector<std::string> created = {"isVisible()", "shouldHaveVisualization(a)", "createVisualisation(a)"};
const std::vector<std::string> updated = {"isVisible()", "shouldHaveVisualization(a)",
                                          "updateVisualisation(a, visualisation of a)"};
const std::vector<std::string> refused = {"isVisible()", "shouldHaveVisualization(a)"};
const std::vector<std::string> askedVisible = {"isVisible()"};
const std::vector<std::string> nothing = {};

INSTANTIATE_TEST_SUITE_P(Untracked, AddNodeTest,
                         ::testing::Values(StateRow{"GetsAShownVisualisation", State::Untracked, true, true, allOnes,
                                                    State::Shown, created},
                                           StateRow{"HiddenNodeGetsAHiddenVisualisation", State::Untracked, true, true,
                                                    0, State::Hidden, created},
                                           StateRow{"PartlyMaskedNodeGetsAHiddenVisualisation", State::Untracked, true,
                                                    true, nearlyAllOnes, State::Hidden, created},
                                           StateRow{"FilteredNodeIsOnlyTracked", State::Untracked, true, false, allOnes,
                                                    State::Without, refused},
                                           StateRow{"IsOnlyTrackedWhileAllIsHidden", State::Untracked, false, true,
                                                    allOnes, State::Without, askedVisible}),
                         nameOfRow);

INSTANTIATE_TEST_SUITE_P(
    TrackedWithout, AddNodeTest,
    ::testing::Values(
        StateRow{"GetsAShownVisualisation", State::Without, true, true, allOnes, State::Shown, created},
        StateRow{"HiddenNodeGetsAHiddenVisualisation", State::Without, true, true, 0, State::Hidden, created},
        StateRow{"FilteredNodeStaysAsItIs", State::Without, true, false, allOnes, State::Without, refused},
        StateRow{"StaysAsItIsWhileAllIsHidden", State::Without, false, true, allOnes, State::Without, askedVisible}),
    nameOfRow);

INSTANTIATE_TEST_SUITE_P(
    TrackedShown, AddNodeTest,
    ::testing::Values(
        StateRow{"IsUpdated", State::Shown, true, true, allOnes, State::Shown, updated},
        StateRow{"HiddenNodeIsUpdatedWithItsMaskUntouched", State::Shown, true, true, 0, State::Shown, updated},
        StateRow{"FilteredNodeStaysAsItIs", State::Shown, true, false, allOnes, State::Shown, refused},
        StateRow{"StaysAsItIsWhileAllIsHidden", State::Shown, false, true, allOnes, State::Shown, askedVisible}),
    nameOfRow);

INSTANTIATE_TEST_SUITE_P(
    TrackedHidden, AddNodeTest,
    ::testing::Values(
        StateRow{"ShownNodeIsUpdatedWithItsMaskUntouched", State::Hidden, true, true, allOnes, State::Hidden, updated},
        StateRow{"HiddenNodeIsUpdated", State::Hidden, true, true, 0, State::Hidden, updated},
        StateRow{"FilteredNodeStaysAsItIs", State::Hidden, true, false, allOnes, State::Hidden, refused},
        StateRow{"StaysAsItIsWhileAllIsHidden", State::Hidden, false, true, allOnes, State::Hidden, askedVisible}),
    nameOfRow);

using UpdateNodeTest = NodeStateTest;

TEST_P(UpdateNodeTest, FollowsTheTable)
{
    arrange();

    m_visualisation->AbstractSelectionVisualisation::updateNode(m_a);

    EXPECT_THAT(m_log.calls(), ::testing::ElementsAreArray(GetParam().calls));
    EXPECT_EQ(state(), GetParam().after);
}

INSTANTIATE_TEST_SUITE_P(Untracked, UpdateNodeTest,
                         ::testing::Values(StateRow{"IsNotAdded", State::Untracked, true, true, allOnes,
                                                    State::Untracked, askedVisible},
                                           StateRow{"IsNotAddedWhileAllIsHidden", State::Untracked, false, true,
                                                    allOnes, State::Untracked, askedVisible}),
                         nameOfRow);

INSTANTIATE_TEST_SUITE_P(
    TrackedWithout, UpdateNodeTest,
    ::testing::Values(
        StateRow{"GetsAShownVisualisation", State::Without, true, true, allOnes, State::Shown, created},
        StateRow{"HiddenNodeStaysWithout", State::Without, true, true, 0, State::Without, askedVisible},
        StateRow{"PartlyMaskedNodeStaysWithout", State::Without, true, true, nearlyAllOnes, State::Without,
                 askedVisible},
        StateRow{"FilteredNodeStaysWithout", State::Without, true, false, allOnes, State::Without, refused},
        StateRow{"StaysWithoutWhileAllIsHidden", State::Without, false, true, allOnes, State::Without, askedVisible}),
    nameOfRow);

INSTANTIATE_TEST_SUITE_P(
    TrackedShown, UpdateNodeTest,
    ::testing::Values(StateRow{"IsUpdated", State::Shown, true, true, allOnes, State::Shown, updated},
                      StateRow{"HiddenNodeHidesIt", State::Shown, true, true, 0, State::Hidden, askedVisible},
                      StateRow{"PartlyMaskedNodeHidesIt", State::Shown, true, true, nearlyAllOnes, State::Hidden,
                               askedVisible},
                      StateRow{"FilteredNodeHidesIt", State::Shown, true, false, allOnes, State::Hidden, refused},
                      StateRow{"StaysShownWhileAllIsHidden", State::Shown, false, true, 0, State::Shown, askedVisible}),
    nameOfRow);

INSTANTIATE_TEST_SUITE_P(
    TrackedHidden, UpdateNodeTest,
    ::testing::Values(
        StateRow{"ShownNodeShowsAndUpdatesIt", State::Hidden, true, true, allOnes, State::Shown, updated},
        StateRow{"HiddenNodeLeavesItHidden", State::Hidden, true, true, 0, State::Hidden, askedVisible},
        StateRow{"FilteredNodeLeavesItHidden", State::Hidden, true, false, allOnes, State::Hidden, refused},
        StateRow{"StaysHiddenWhileAllIsHidden", State::Hidden, false, true, allOnes, State::Hidden, askedVisible}),
    nameOfRow);

using RemoveNodeTest = NodeStateTest;

TEST_P(RemoveNodeTest, FollowsTheTable)
{
    arrange();

    m_visualisation->removeNode(m_a);

    EXPECT_THAT(m_log.calls(), ::testing::ElementsAreArray(GetParam().calls));
    EXPECT_EQ(state(), GetParam().after);
    EXPECT_EQ(editsOf(root(), takeChanges()).size(), GetParam().calls.size()) << "edits of the root";
}

const std::vector<std::string> removed = {"removeVisualisation(a, visualisation of a)"};

INSTANTIATE_TEST_SUITE_P(
    Tracked, RemoveNodeTest,
    ::testing::Values(
        StateRow{"UntrackedNodeIsIgnored", State::Untracked, true, true, allOnes, State::Untracked, nothing},
        StateRow{"WithoutVisualisationCallsNoHook", State::Without, true, true, allOnes, State::Untracked, nothing},
        StateRow{"FilteredNodeWithoutVisualisationCallsNoHook", State::Without, true, false, allOnes, State::Untracked,
                 nothing},
        StateRow{"ShownVisualisationIsRemoved", State::Shown, true, true, allOnes, State::Untracked, removed},
        StateRow{"FilteredVisualisationIsRemoved", State::Shown, true, false, allOnes, State::Untracked, removed},
        StateRow{"HiddenVisualisationIsRemoved", State::Hidden, true, true, 0, State::Untracked, removed},
        StateRow{"VisualisationIsRemovedWhileAllIsHidden", State::Shown, false, true, allOnes, State::Untracked,
                 removed}),
    nameOfRow);

// addNode

TEST_F(AbstractSelectionVisualisationTest, AddingAttachesAndThenSetsTheMask)
{
    takeChanges();

    m_visualisation->addNode(m_a);

    const std::vector<Change> changes = takeChanges();
    const osg::NodePtr visualisation = root()->getChild(0);
    EXPECT_THAT(editsOf(root(), changes), ElementsAre(osg::Node::ChildrenFieldMask));
    EXPECT_THAT(editsOf(visualisation, changes), ElementsAre(osg::Node::ParentFieldMask, osg::Node::TravMaskFieldMask));
}

TEST_F(AbstractSelectionVisualisationTest, ANodeIsTrackedOnlyAfterItsVisualisationIsCreated)
{
    bool wasTracked = true;
    m_visualisation->onCreate = [&](const osg::NodePtr& node) { wasTracked = m_visualisation->hasNode(node); };

    m_visualisation->addNode(m_a);

    EXPECT_FALSE(wasTracked);
    EXPECT_TRUE(m_visualisation->hasNode(m_a));
}

TEST_F(AbstractSelectionVisualisationTest, AddingTwiceOnlyUpdatesTheOneVisualisation)
{
    m_visualisation->addNode(m_a);
    const osg::NodePtr visualisation = root()->getChild(0);
    takeChanges();

    m_visualisation->addNode(m_a);

    ASSERT_EQ(root()->getNChildren(), 1U);
    EXPECT_EQ(root()->getChild(0), visualisation);
    EXPECT_EQ(visualisation.getRefCount(), 2);
    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_F(AbstractSelectionVisualisationTest, AddingDoesNotAttachTwiceWhatTheHookPutUnderTheRoot)
{
    const NodeRef first = makeNode("first");
    const NodeRef second = makeNode("second");
    root()->addChild(first);
    root()->addChild(second);
    m_visualisation->prepared = first.get();
    takeChanges();

    m_visualisation->addNode(m_a);

    ASSERT_EQ(root()->getNChildren(), 2U);
    EXPECT_EQ(root()->getChild(0), first);
    EXPECT_EQ(first.get().getRefCount(), 3) << "test, entry, root";
    EXPECT_THAT(editsOf(root(), takeChanges()), IsEmpty());
}

TEST_F(AbstractSelectionVisualisationTest, AddingTakesAVisualisationAwayFromAnotherParent)
{
    const NodeRef elsewhere = makeNode("elsewhere");
    const NodeRef visualisation = makeNode("reused");
    elsewhere->addChild(visualisation);
    m_visualisation->prepared = visualisation.get();

    m_visualisation->addNode(m_a);

    EXPECT_EQ(elsewhere->getNChildren(), 0U);
    ASSERT_EQ(root()->getNChildren(), 1U);
    EXPECT_EQ(root()->getChild(0), visualisation);
}

TEST_F(AbstractSelectionVisualisationTest, AReferenceOfTheSubclassIsNeitherAdoptedNorReleased)
{
    osg::NodePtr own = osg::Node::create();
    osg::addRefCP(own);
    m_visualisation->prepared = own;

    m_visualisation->addNode(m_a);
    EXPECT_EQ(own.getRefCount(), 3);
    m_visualisation->removeNode(m_a);
    EXPECT_EQ(own.getRefCount(), 1);

    m_visualisation->prepared = osg::NullFC;
    osg::subRefCP(own);
}

TEST_F(AbstractSelectionVisualisationTest, ACreatingHookMayAddOtherNodes)
{
    m_visualisation->onCreate = [&](const osg::NodePtr& node) {
        if (node == m_b) {
            m_visualisation->addNode(m_a);
            m_visualisation->addNode(m_c);
        }
    };

    m_visualisation->addNode(m_b);

    EXPECT_TRUE(m_visualisation->hasNode(m_a));
    EXPECT_TRUE(m_visualisation->hasNode(m_b));
    EXPECT_TRUE(m_visualisation->hasNode(m_c));
    EXPECT_EQ(root()->getNChildren(), 3U);
}

TEST_F(AbstractSelectionVisualisationTest, ACreatingHookMayRemoveOtherNodes)
{
    m_visualisation->addNode(m_b);
    m_visualisation->onCreate = [&](const osg::NodePtr& node) {
        if (node == m_a) {
            m_visualisation->removeNode(m_b);
        }
    };

    m_visualisation->addNode(m_a);

    EXPECT_TRUE(m_visualisation->hasNode(m_a));
    EXPECT_FALSE(m_visualisation->hasNode(m_b));
    EXPECT_EQ(root()->getNChildren(), 1U);
    // What is tracked next has nothing of it.
    m_visualisation->setVisible(false);
    m_visualisation->addNode(m_c);
    m_log.clear();
    m_visualisation->setVisible(true);
    EXPECT_THAT(m_log.calls(), ElementsAre("updateNode(a)", "isVisible()", "shouldHaveVisualization(a)",
                                           "updateVisualisation(a, visualisation of a)", "updateNode(c)", "isVisible()",
                                           "shouldHaveVisualization(c)", "createVisualisation(c)"));
}

TEST_F(AbstractSelectionVisualisationTest, ACreatingHookMayRemoveSomeOfTheNodesThatFollow)
{
    m_visualisation->addNode(m_b);
    m_visualisation->addNode(m_c);
    m_visualisation->onCreate = [&](const osg::NodePtr&) { m_visualisation->removeNode(m_b); };

    m_visualisation->addNode(m_a);

    EXPECT_TRUE(m_visualisation->hasNode(m_a));
    EXPECT_FALSE(m_visualisation->hasNode(m_b));
    EXPECT_TRUE(m_visualisation->hasNode(m_c));
    EXPECT_EQ(root()->getNChildren(), 2U);
}

TEST_F(AbstractSelectionVisualisationTest, ACreatingHookMayRemoveOthersOfANodeThatIsTracked)
{
    m_visualisation->isWanted = false;
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_b);
    m_visualisation->isWanted = true;
    m_visualisation->onCreate = [&](const osg::NodePtr&) { m_visualisation->removeNode(m_b); };

    m_visualisation->addNode(m_a);

    EXPECT_TRUE(m_visualisation->hasNode(m_a));
    EXPECT_FALSE(m_visualisation->hasNode(m_b));
    EXPECT_EQ(root()->getNChildren(), 1U);
}

TEST_F(AbstractSelectionVisualisationTest, ACreatingHookMayRemoveAllNodes)
{
    m_visualisation->addNode(m_b);
    m_visualisation->addNode(m_c);
    m_visualisation->onCreate = [&](const osg::NodePtr&) { m_visualisation->removeAllNodes(); };

    m_visualisation->addNode(m_a);

    EXPECT_TRUE(m_visualisation->hasNode(m_a));
    EXPECT_FALSE(m_visualisation->hasNode(m_b));
    EXPECT_FALSE(m_visualisation->hasNode(m_c));
    EXPECT_EQ(root()->getNChildren(), 1U);
}

TEST_F(AbstractSelectionVisualisationTest, ANodeThatItsCreatingHookRemovesIsAddedAllTheSame)
{
    m_visualisation->isWanted = false;
    m_visualisation->addNode(m_a);
    m_visualisation->isWanted = true;
    m_visualisation->onCreate = [&](const osg::NodePtr& node) { m_visualisation->removeNode(node); };

    m_visualisation->addNode(m_a);

    EXPECT_TRUE(m_visualisation->hasNode(m_a));
    EXPECT_EQ(root()->getNChildren(), 1U);
}

// updateNode

TEST_F(AbstractSelectionVisualisationTest, UpdatingAttachesANewVisualisationAndThenSetsItsMask)
{
    m_visualisation->isWanted = false;
    m_visualisation->addNode(m_a);
    m_visualisation->isWanted = true;
    takeChanges();

    m_visualisation->updateNode(m_a);

    const std::vector<Change> changes = takeChanges();
    const osg::NodePtr visualisation = root()->getChild(0);
    EXPECT_THAT(editsOf(root(), changes), ElementsAre(osg::Node::ChildrenFieldMask));
    EXPECT_THAT(editsOf(visualisation, changes), ElementsAre(osg::Node::ParentFieldMask, osg::Node::TravMaskFieldMask));
}

TEST_F(AbstractSelectionVisualisationTest, UpdatingAnUntrackedNodeLeavesTheTrackedOnes)
{
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_c);
    m_log.clear();
    takeChanges();

    m_visualisation->updateNode(m_b);

    EXPECT_THAT(m_log.calls(), ElementsAre("updateNode(b)", "isVisible()"));
    EXPECT_THAT(takeChanges(), IsEmpty());
    EXPECT_FALSE(m_visualisation->hasNode(m_b));
}

TEST_F(AbstractSelectionVisualisationTest, AnUpdatingHookMayAddOtherNodes)
{
    m_visualisation->addNode(m_b);
    m_visualisation->onUpdate = [&](const osg::NodePtr& node, const osg::NodePtr&) {
        if (node == m_b) {
            m_visualisation->addNode(m_a);
            m_visualisation->addNode(m_c);
        }
    };
    m_log.clear();

    m_visualisation->updateAllNodes();

    // The walk meets those with greater ids.
    EXPECT_THAT(m_log.calls(),
                ElementsAre("isVisible()", "updateNode(b)", "isVisible()", "shouldHaveVisualization(b)",
                            "updateVisualisation(b, visualisation of b)", "isVisible()", "shouldHaveVisualization(a)",
                            "createVisualisation(a)", "isVisible()", "shouldHaveVisualization(c)",
                            "createVisualisation(c)", "updateNode(c)", "isVisible()", "shouldHaveVisualization(c)",
                            "updateVisualisation(c, visualisation of c)"));
    EXPECT_EQ(root()->getNChildren(), 3U);
}

TEST_F(AbstractSelectionVisualisationTest, AnUpdatingHookMayRemoveItsNodeAndOthers)
{
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_b);
    m_visualisation->addNode(m_c);
    m_visualisation->onUpdate = [&](const osg::NodePtr& node, const osg::NodePtr&) {
        if (node == m_a) {
            m_visualisation->removeNode(m_a);
            m_visualisation->removeNode(m_b);
        }
    };
    m_log.clear();

    m_visualisation->updateAllNodes();

    EXPECT_THAT(m_log.calls(),
                ElementsAre("isVisible()", "updateNode(a)", "isVisible()", "shouldHaveVisualization(a)",
                            "updateVisualisation(a, visualisation of a)", "removeVisualisation(a, visualisation of a)",
                            "removeVisualisation(b, visualisation of b)", "updateNode(c)", "isVisible()",
                            "shouldHaveVisualization(c)", "updateVisualisation(c, visualisation of c)"));
    EXPECT_FALSE(m_visualisation->hasNode(m_a));
    EXPECT_EQ(root()->getNChildren(), 1U);
}

TEST_F(AbstractSelectionVisualisationTest, AnUpdatingHookMayRemoveAllNodes)
{
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_b);
    m_visualisation->onUpdate = [&](const osg::NodePtr&, const osg::NodePtr&) { m_visualisation->removeAllNodes(); };
    m_log.clear();

    m_visualisation->updateAllNodes();

    EXPECT_THAT(m_log.calls(),
                ElementsAre("isVisible()", "updateNode(a)", "isVisible()", "shouldHaveVisualization(a)",
                            "updateVisualisation(a, visualisation of a)", "removeVisualisation(a, visualisation of a)",
                            "removeVisualisation(b, visualisation of b)"));
    EXPECT_EQ(root()->getNChildren(), 0U);
}

TEST_F(AbstractSelectionVisualisationTest, AnUpdatingHookMayRemoveNodesWhileAllAreShown)
{
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_b);
    m_visualisation->addNode(m_c);
    m_visualisation->setVisible(false);
    m_visualisation->onUpdate = [&](const osg::NodePtr& node, const osg::NodePtr&) {
        m_visualisation->removeNode(node);
        m_visualisation->removeNode(m_b);
    };
    m_log.clear();

    m_visualisation->setVisible(true);

    EXPECT_THAT(m_log.calls(),
                ElementsAre("updateNode(a)", "isVisible()", "shouldHaveVisualization(a)",
                            "updateVisualisation(a, visualisation of a)", "removeVisualisation(a, visualisation of a)",
                            "removeVisualisation(b, visualisation of b)", "updateNode(c)", "isVisible()",
                            "shouldHaveVisualization(c)", "updateVisualisation(c, visualisation of c)",
                            "removeVisualisation(c, visualisation of c)"));
    EXPECT_EQ(root()->getNChildren(), 0U);
}

TEST_F(AbstractSelectionVisualisationTest, AnUpdatingHookMayRemoveEverySecondOfManyNodes)
{
    const std::vector<NodeRef> nodes = addMany(40);
    std::vector<std::size_t> turns;
    m_visualisation->onUpdate = [&](const osg::NodePtr& node, const osg::NodePtr&) {
        for (std::size_t i = 0; i < 40; ++i) {
            if (nodes[i] == node) {
                turns.push_back(i);
                m_visualisation->removeNode(nodes[(i + 1) % 40]);
            }
        }
    };

    m_visualisation->updateAllNodes();

    ASSERT_EQ(turns.size(), 20U);
    for (std::size_t i = 0; i < 20; ++i) {
        EXPECT_EQ(turns[i], 2 * i);
    }
    EXPECT_EQ(root()->getNChildren(), 20U);
}

TEST_F(AbstractSelectionVisualisationTest, AnUpdatingHookMayChangeAnotherVisualisation)
{
    RecordingKind other(m_log, m_names);
    for (const NodeRef& node : {m_a, m_b, m_c}) {
        m_visualisation->addNode(node);
        other.addNode(node);
    }
    m_visualisation->onUpdate = [&](const osg::NodePtr& node, const osg::NodePtr&) {
        other.updateAllNodes();
        if (node == m_a) {
            other.removeNode(m_b);
        } else {
            other.removeAllNodes();
        }
    };
    m_log.clear();

    m_visualisation->updateAllNodes();

    const auto updatesOf = [](const std::string& name) {
        return std::vector<std::string>{"updateNode(" + name + ")", "isVisible()",
                                        "shouldHaveVisualization(" + name + ")",
                                        "updateVisualisation(" + name + ", visualisation of " + name + ")"};
    };
    const auto removalOf = [](const std::string& name) {
        return std::vector<std::string>{"removeVisualisation(" + name + ", visualisation of " + name + ")"};
    };
    const std::vector<std::string> asked{"isVisible()"};
    std::vector<std::string> expected;
    for (const auto& calls :
         {asked, updatesOf("a"), asked, updatesOf("a"), updatesOf("b"), updatesOf("c"), removalOf("b"), updatesOf("b"),
          asked, updatesOf("a"), updatesOf("c"), removalOf("a"), removalOf("c"), updatesOf("c"), asked}) {
        expected.insert(expected.end(), calls.begin(), calls.end());
    }
    EXPECT_EQ(m_log.calls(), expected);
    EXPECT_EQ(root()->getNChildren(), 3U);
}

TEST_F(AbstractSelectionVisualisationTest, AWalkInsideAWalkMayEndWithAnException)
{
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_b);
    m_visualisation->addNode(m_c);
    bool isInside = false;
    m_visualisation->onUpdate = [&](const osg::NodePtr& node, const osg::NodePtr&) {
        if (isInside) {
            if (node == m_b) {
                throw std::runtime_error("no update");
            }
        } else if (node == m_a) {
            isInside = true;
            EXPECT_THROW(m_visualisation->updateAllNodes(), std::runtime_error);
            isInside = false;
        }
    };
    m_log.clear();

    m_visualisation->updateAllNodes();

    const std::vector<std::string> calls = m_log.calls();
    ASSERT_EQ(calls.size(), 22U);
    EXPECT_EQ(calls[13], "updateVisualisation(b, visualisation of b)") << "the last of the walk inside";
    EXPECT_EQ(calls[17], "updateVisualisation(b, visualisation of b)");
    EXPECT_EQ(calls[21], "updateVisualisation(c, visualisation of c)");
}

TEST_F(AbstractSelectionVisualisationTest, AnUpdateThatCreatesMayRemoveOtherNodes)
{
    m_visualisation->isWanted = false;
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_b);
    m_visualisation->addNode(m_c);
    m_visualisation->isWanted = true;
    m_visualisation->onCreate = [&](const osg::NodePtr& node) {
        if (node == m_b) {
            m_visualisation->removeNode(m_a);
            m_visualisation->removeNode(m_c);
        }
    };

    m_visualisation->updateNode(m_b);

    EXPECT_TRUE(m_visualisation->hasNode(m_b));
    EXPECT_EQ(root()->getNChildren(), 1U);
    m_log.clear();
    m_visualisation->updateAllNodes();
    EXPECT_THAT(m_log.calls(), ElementsAre("isVisible()", "updateNode(b)", "isVisible()", "shouldHaveVisualization(b)",
                                           "updateVisualisation(b, visualisation of b)"));
}

TEST_F(AbstractSelectionVisualisationTest, WhatIsCreatedInAnUpdateIsOfTheNodeThatItsHookTookOutAndAddedAgain)
{
    m_visualisation->isWanted = false;
    m_visualisation->addNode(m_a);
    m_visualisation->isWanted = true;
    m_visualisation->onCreate = [&](const osg::NodePtr& node) {
        if (node == m_a) {
            m_visualisation->isWanted = false;
            m_visualisation->removeNode(m_a);
            // Where the entry of the other node was.
            m_visualisation->addNode(m_b);
            m_visualisation->addNode(m_a);
            m_visualisation->isWanted = true;
        }
    };

    m_visualisation->updateNode(m_a);

    EXPECT_EQ(root()->getNChildren(), 1U);
    m_log.clear();
    m_visualisation->updateAllNodes();
    EXPECT_THAT(m_log.calls(), ElementsAre("isVisible()", "updateNode(a)", "isVisible()", "shouldHaveVisualization(a)",
                                           "updateVisualisation(a, visualisation of a)", "updateNode(b)", "isVisible()",
                                           "shouldHaveVisualization(b)", "createVisualisation(b)"));
    EXPECT_EQ(root()->getNChildren(), 2U);
}

TEST_F(AbstractSelectionVisualisationTest, WhatIsCreatedInAnUpdateGoesWithTheNodeThatItsHookRemoves)
{
    m_visualisation->isWanted = false;
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_b);
    m_visualisation->isWanted = true;
    osg::UInt32 createdId = 0;
    m_visualisation->onCreate = [&](const osg::NodePtr& node) {
        if (node == m_a) {
            m_visualisation->removeNode(node);
        }
    };
    m_visualisation->onRemove = [&](const osg::NodePtr&, const osg::NodePtr& visualisation) {
        createdId = osg::getContainerId(visualisation);
    };
    m_log.clear();

    m_visualisation->updateAllNodes();

    EXPECT_THAT(m_log.calls(),
                ElementsAre("isVisible()", "updateNode(a)", "isVisible()", "shouldHaveVisualization(a)",
                            "createVisualisation(a)", "removeVisualisation(a, visualisation of a)", "updateNode(b)",
                            "isVisible()", "shouldHaveVisualization(b)", "createVisualisation(b)"));
    EXPECT_FALSE(m_visualisation->hasNode(m_a));
    EXPECT_EQ(root()->getNChildren(), 1U);
    EXPECT_FALSE(exists(createdId));
}

TEST_F(AbstractSelectionVisualisationTest, AnUpdatingHookMayUpdateOthersAndAll)
{
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_b);
    bool isFirst = true;
    m_visualisation->onUpdateNode = [&](const osg::NodePtr& node) {
        if (isFirst && node == m_a) {
            isFirst = false;
            m_visualisation->AbstractSelectionVisualisation::updateNode(m_b);
            m_visualisation->updateAllNodes();
            m_visualisation->AbstractSelectionVisualisation::updateNode(m_c);
        }
    };
    m_log.clear();

    m_visualisation->updateAllNodes();

    EXPECT_THAT(m_log.calls(),
                ElementsAre("isVisible()", "updateNode(a)", //
                            "isVisible()", "shouldHaveVisualization(b)", "updateVisualisation(b, visualisation of b)",
                            "isVisible()", "updateNode(a)", "isVisible()", "shouldHaveVisualization(a)",
                            "updateVisualisation(a, visualisation of a)", "updateNode(b)", "isVisible()",
                            "shouldHaveVisualization(b)", "updateVisualisation(b, visualisation of b)", //
                            "isVisible()",                                                              //
                            "isVisible()", "shouldHaveVisualization(a)", "updateVisualisation(a, visualisation of a)",
                            "updateNode(b)", "isVisible()", "shouldHaveVisualization(b)",
                            "updateVisualisation(b, visualisation of b)"));
}

TEST_F(AbstractSelectionVisualisationTest, UpdatingAllLeavesNothingBehind)
{
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_b);
    m_visualisation->updateAllNodes();
    m_visualisation->onUpdate = [&](const osg::NodePtr& node, const osg::NodePtr&) {
        if (node == m_b) {
            throw std::runtime_error("no update");
        }
    };
    EXPECT_THROW(m_visualisation->updateAllNodes(), std::runtime_error);
    m_visualisation->removeNode(m_b);
    m_log.clear();

    m_visualisation->updateNode(m_b);

    EXPECT_THAT(m_log.calls(), ElementsAre("updateNode(b)", "isVisible()"));
}

TEST_F(AbstractSelectionVisualisationTest, AVisualisationInThePlaceOfAnOlderOneKnowsNothingOfItsNodes)
{
    std::optional<RecordingKind> inPlace;
    inPlace.emplace(m_log, m_names);
    inPlace->addNode(m_a);
    inPlace->updateAllNodes();
    inPlace.emplace(m_log, m_names);
    m_log.clear();

    inPlace->updateNode(m_a);

    EXPECT_THAT(m_log.calls(), ElementsAre("updateNode(a)", "isVisible()"));
}

TEST_F(AbstractSelectionVisualisationTest, UpdatingAShownVisualisationDoesNotWriteItsMask)
{
    m_visualisation->addNode(m_a);
    takeChanges();

    m_visualisation->updateNode(m_a);

    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_F(AbstractSelectionVisualisationTest, UpdatingAHiddenNodeTwiceWritesTheMaskOnce)
{
    m_visualisation->addNode(m_a);
    const osg::NodePtr visualisation = root()->getChild(0);
    m_a->setTravMask(0);
    takeChanges();

    m_visualisation->updateNode(m_a);
    EXPECT_THAT(editsOf(visualisation, takeChanges()), ElementsAre(osg::Node::TravMaskFieldMask));
    m_visualisation->updateNode(m_a);
    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_F(AbstractSelectionVisualisationTest, UpdatingShowsTheVisualisationBeforeItRefits)
{
    m_a->setTravMask(0);
    m_visualisation->addNode(m_a);
    m_a->setTravMask(allOnes);
    takeChanges();
    osg::UInt32 maskDuringUpdate = 0;
    std::vector<osg::BitVector> editsBeforeUpdate;
    m_visualisation->onUpdate = [&](const osg::NodePtr&, const osg::NodePtr& visualisation) {
        maskDuringUpdate = visualisation->getTravMask();
        editsBeforeUpdate = editsOf(visualisation, takeChanges());
    };

    m_visualisation->updateNode(m_a);

    EXPECT_EQ(maskDuringUpdate, allOnes);
    EXPECT_THAT(editsBeforeUpdate, ElementsAre(osg::Node::TravMaskFieldMask));
}

TEST_F(AbstractSelectionVisualisationTest, APartlyMaskedVisualisationIsShownAgain)
{
    m_visualisation->addNode(m_a);
    root()->getChild(0)->setTravMask(nearlyAllOnes);

    m_visualisation->updateNode(m_a);

    EXPECT_EQ(root()->getChild(0)->getTravMask(), allOnes);
}

TEST_F(AbstractSelectionVisualisationTest, APartlyMaskedVisualisationOfAHiddenNodeKeepsItsMask)
{
    m_visualisation->addNode(m_a);
    root()->getChild(0)->setTravMask(nearlyAllOnes);
    m_a->setTravMask(0);

    m_visualisation->updateNode(m_a);

    EXPECT_EQ(root()->getChild(0)->getTravMask(), nearlyAllOnes);
}

TEST_F(AbstractSelectionVisualisationTest, UpdatingAttachesWithoutALookAtTheParent)
{
    const NodeRef first = makeNode("first");
    const NodeRef second = makeNode("second");
    root()->addChild(first);
    root()->addChild(second);
    m_visualisation->setVisible(false);
    m_visualisation->addNode(m_a);
    m_visualisation->prepared = first.get();
    first->setTravMask(0);

    m_visualisation->setVisible(true);

    // Unlike addNode(): attached once more, it moves to the end.
    ASSERT_EQ(root()->getNChildren(), 2U);
    EXPECT_EQ(root()->getChild(0), second);
    EXPECT_EQ(root()->getChild(1), first);
    EXPECT_EQ(first.get().getRefCount(), 3) << "test, entry, root";
    EXPECT_EQ(first->getTravMask(), allOnes);
}

TEST_F(AbstractSelectionVisualisationTest, NodesAddedWhileHiddenGetTheirVisualisationWhenAllIsShown)
{
    m_b->setTravMask(0);
    m_visualisation->setVisible(false);
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_b);
    EXPECT_TRUE(m_visualisation->hasNode(m_a));
    EXPECT_EQ(root()->getNChildren(), 0U);

    m_visualisation->setVisible(true);

    // The hidden node b stays without.
    EXPECT_TRUE(m_visualisation->hasNode(m_b));
    EXPECT_EQ(root()->getNChildren(), 1U);
}

// updateAllNodes

TEST_F(AbstractSelectionVisualisationTest, UpdatingAllGoesInAscendingIdOrder)
{
    m_visualisation->addNode(m_b);
    m_visualisation->addNode(m_c);
    m_visualisation->addNode(m_a);
    m_log.clear();

    m_visualisation->updateAllNodes();

    EXPECT_THAT(m_log.calls(),
                ElementsAre("isVisible()", "updateNode(a)", "isVisible()", "shouldHaveVisualization(a)",
                            "updateVisualisation(a, visualisation of a)", "updateNode(b)", "isVisible()",
                            "shouldHaveVisualization(b)", "updateVisualisation(b, visualisation of b)", "updateNode(c)",
                            "isVisible()", "shouldHaveVisualization(c)", "updateVisualisation(c, visualisation of c)"));
}

TEST_F(AbstractSelectionVisualisationTest, UpdatingAllDoesNothingWhileHidden)
{
    m_visualisation->addNode(m_a);
    m_visualisation->setVisible(false);
    m_log.clear();

    m_visualisation->updateAllNodes();

    EXPECT_THAT(m_log.calls(), ElementsAre("isVisible()"));
}

TEST_F(AbstractSelectionVisualisationTest, UpdatingAllSkipsDestroyedNodesSilentlyAndKeepsTheirEntries)
{
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_b);
    m_a = osg::NullFC;
    m_log.clear();

    m_visualisation->updateAllNodes();

    EXPECT_THAT(m_log.calls(), ElementsAre("isVisible()", "updateNode(b)", "isVisible()", "shouldHaveVisualization(b)",
                                           "updateVisualisation(b, visualisation of b)"));
    EXPECT_EQ(StandardError::take(), "");
    EXPECT_EQ(root()->getNChildren(), 2U);
    m_visualisation->setVisible(false);
    m_visualisation->setVisible(true);
    EXPECT_EQ(StandardError::take(), "AbstractSelectionVisualisation::setVisible: invalid node pointer!\n");
}

// removeNode

TEST_F(AbstractSelectionVisualisationTest, TheRemovingHookSeesTheVisualisationUnderTheRootAndTracked)
{
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_b);
    osg::NodePtr parent;
    osg::Int32 references = 0;
    bool wasTracked = false;
    m_visualisation->onRemove = [&](const osg::NodePtr& node, const osg::NodePtr& visualisation) {
        parent = visualisation->getParent();
        references = visualisation.getRefCount();
        wasTracked = m_visualisation->hasNode(node);
    };

    m_visualisation->removeNode(m_a);

    EXPECT_EQ(parent, root());
    EXPECT_EQ(references, 2);
    EXPECT_TRUE(wasTracked);
    EXPECT_FALSE(m_visualisation->hasNode(m_a));
    EXPECT_TRUE(m_visualisation->hasNode(m_b));
    EXPECT_EQ(root()->getNChildren(), 1U);
}

TEST_F(AbstractSelectionVisualisationTest, RemovingDetachesAndDestroysTheVisualisation)
{
    m_visualisation->addNode(m_a);
    const osg::UInt32 id = osg::getContainerId(root()->getChild(0));
    takeChanges();

    m_visualisation->removeNode(m_a);

    EXPECT_FALSE(exists(id));
    EXPECT_EQ(root()->getNChildren(), 0U);
    EXPECT_THAT(editsOf(root(), takeChanges()), ElementsAre(osg::Node::ChildrenFieldMask));
}

TEST_F(AbstractSelectionVisualisationTest, RemovingReleasesTheVisualisationAfterTheRootIsClosed)
{
    addWitnessed(m_a);
    m_visualisation->addNode(m_b);
    takeChanges();

    m_visualisation->removeNode(m_a);

    EXPECT_EQ(m_childrenWhenGone, 1U);
    EXPECT_THAT(m_editsWhenGone, ElementsAre(osg::Node::ChildrenFieldMask));
}

TEST_F(AbstractSelectionVisualisationTest, RemovingAnUntrackedNodeLeavesTheTrackedOnes)
{
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_c);
    m_log.clear();
    takeChanges();

    m_visualisation->removeNode(m_b);

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(takeChanges(), IsEmpty());
    EXPECT_TRUE(m_visualisation->hasNode(m_a));
    EXPECT_FALSE(m_visualisation->hasNode(m_b));
    EXPECT_TRUE(m_visualisation->hasNode(m_c));
}

TEST_F(AbstractSelectionVisualisationTest, AVisualisationThatTheHostTookAwayIsStillTakenFromTheRoot)
{
    m_visualisation->addNode(m_a);
    const osg::UInt32 id = osg::getContainerId(root()->getChild(0));
    root()->subChild(root()->getChild(0));
    m_log.clear();

    m_visualisation->removeNode(m_a);

    EXPECT_THAT(m_log.calls(), ElementsAre("removeVisualisation(a, visualisation of a)"));
    EXPECT_NE(StandardError::take(), "") << "the scene graph warns of it";
    EXPECT_FALSE(m_visualisation->hasNode(m_a));
    EXPECT_FALSE(exists(id));
}

TEST_F(AbstractSelectionVisualisationTest, ARemovingHookMayAddOtherNodes)
{
    m_visualisation->addNode(m_b);
    m_visualisation->onRemove = [&](const osg::NodePtr&, const osg::NodePtr&) {
        m_visualisation->addNode(m_a);
        m_visualisation->addNode(m_c);
    };

    m_visualisation->removeNode(m_b);

    EXPECT_TRUE(m_visualisation->hasNode(m_a));
    EXPECT_FALSE(m_visualisation->hasNode(m_b));
    EXPECT_TRUE(m_visualisation->hasNode(m_c));
    EXPECT_EQ(root()->getNChildren(), 2U);
}

TEST_F(AbstractSelectionVisualisationTest, RemovingLeavesTheCallersHandleAlone)
{
    std::set<osg::NodePtr> selection = {m_a.get()};
    m_visualisation->addNode(*selection.begin());

    m_visualisation->removeNode(*selection.begin());

    EXPECT_EQ(*selection.begin(), m_a);
}

TEST_F(AbstractSelectionVisualisationTest, AVisualisationNodeMayBeSelectedItself)
{
    m_visualisation->addNode(m_a);
    osg::NodePtr visualisation = root()->getChild(0);
    const osg::UInt32 id = osg::getContainerId(visualisation);
    m_names[id] = "visualisation of a";
    m_visualisation->addNode(visualisation);
    m_visualisation->addNode(root()->getChild(0));
    EXPECT_EQ(root()->getNChildren(), 2U);

    m_visualisation->removeNode(m_a);

    EXPECT_NE(visualisation, osg::NullFC) << "a stale handle, but left alone";
    EXPECT_FALSE(exists(id));
    m_visualisation->updateAllNodes();
    m_visualisation->removeAllNodes();
    EXPECT_EQ(StandardError::take(),
              "AbstractSelectionVisualisation::removeAllNodes: invalid node pointer (" + std::to_string(id) + ")!\n");
}

// removeAllNodes

TEST_F(AbstractSelectionVisualisationTest, RemovingAllCallsTheHooksInAscendingIdOrderAndClearsTheRootOnce)
{
    m_visualisation->addNode(m_c);
    m_visualisation->addNode(m_a);
    m_visualisation->isWanted = false;
    m_visualisation->addNode(m_b);
    m_log.clear();
    takeChanges();
    std::vector<osg::UInt32> childrenDuringHooks;
    std::vector<bool> trackedDuringHooks;
    m_visualisation->onRemove = [&](const osg::NodePtr& node, const osg::NodePtr& visualisation) {
        EXPECT_EQ(visualisation->getParent(), root());
        childrenDuringHooks.push_back(root()->getNChildren());
        trackedDuringHooks.push_back(m_visualisation->hasNode(node));
    };

    m_visualisation->removeAllNodes();

    EXPECT_THAT(m_log.calls(), ElementsAre("removeVisualisation(a, visualisation of a)",
                                           "removeVisualisation(c, visualisation of c)"));
    EXPECT_THAT(childrenDuringHooks, ElementsAre(2U, 2U));
    EXPECT_THAT(trackedDuringHooks, ElementsAre(true, true));
    EXPECT_EQ(root()->getNChildren(), 0U);
    EXPECT_FALSE(m_visualisation->hasNode(m_a));
    EXPECT_FALSE(m_visualisation->hasNode(m_b));
    EXPECT_FALSE(m_visualisation->hasNode(m_c));
    EXPECT_THAT(editsOf(root(), takeChanges()), ElementsAre(osg::Node::ChildrenFieldMask));
}

TEST_F(AbstractSelectionVisualisationTest, RemovingAllDestroysTheVisualisations)
{
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_b);
    const osg::UInt32 first = osg::getContainerId(root()->getChild(0));
    const osg::UInt32 second = osg::getContainerId(root()->getChild(1));

    m_visualisation->removeAllNodes();

    EXPECT_FALSE(exists(first));
    EXPECT_FALSE(exists(second));
}

TEST_F(AbstractSelectionVisualisationTest, RemovingAllReleasesTheVisualisationsAfterTheRootIsClosed)
{
    addWitnessed(m_a);
    m_visualisation->addNode(m_b);
    takeChanges();
    std::vector<osg::Int32> references;
    m_visualisation->onRemove = [&](const osg::NodePtr&, const osg::NodePtr& visualisation) {
        references.push_back(visualisation.getRefCount());
    };

    m_visualisation->removeAllNodes();

    EXPECT_THAT(references, ElementsAre(2, 2)) << "entry, root";
    EXPECT_EQ(m_childrenWhenGone, 0U);
    EXPECT_THAT(m_editsWhenGone, ElementsAre(osg::Node::ChildrenFieldMask));
}

TEST_F(AbstractSelectionVisualisationTest, NodesAddedWhileAllAreRemovedGoWithThem)
{
    m_visualisation->addNode(m_b);
    m_visualisation->onRemove = [&](const osg::NodePtr& node, const osg::NodePtr&) {
        if (node == m_b) {
            m_visualisation->addNode(m_a);
            m_visualisation->addNode(m_c);
        }
    };
    m_log.clear();

    m_visualisation->removeAllNodes();

    // The walk meets those with greater ids only.
    EXPECT_THAT(m_log.calls(),
                ElementsAre("removeVisualisation(b, visualisation of b)", "isVisible()", "shouldHaveVisualization(a)",
                            "createVisualisation(a)", "isVisible()", "shouldHaveVisualization(c)",
                            "createVisualisation(c)", "removeVisualisation(c, visualisation of c)"));
    EXPECT_EQ(root()->getNChildren(), 0U);
    EXPECT_FALSE(m_visualisation->hasNode(m_a));
    EXPECT_FALSE(m_visualisation->hasNode(m_c));
}

TEST_F(AbstractSelectionVisualisationTest, RemovingAllTakesEveryChildOfTheRoot)
{
    const NodeRef foreign = makeNode("foreign");
    root()->addChild(foreign);

    m_visualisation->removeAllNodes();

    EXPECT_EQ(root()->getNChildren(), 0U);
    EXPECT_EQ(foreign->getParent(), osg::NullFC);
    EXPECT_EQ(foreign.get().getRefCount(), 1);
}

TEST_F(AbstractSelectionVisualisationTest, RemovingAllOfNothingStillClosesTheRoot)
{
    takeChanges();

    m_visualisation->removeAllNodes();

    EXPECT_THAT(editsOf(root(), takeChanges()), ElementsAre(osg::Node::ChildrenFieldMask));
}

TEST_F(AbstractSelectionVisualisationTest, RemovingAllWorksWhileHidden)
{
    m_visualisation->addNode(m_a);
    m_visualisation->setVisible(false);
    m_log.clear();

    m_visualisation->removeAllNodes();

    EXPECT_THAT(m_log.calls(), ElementsAre("removeVisualisation(a, visualisation of a)"));
    EXPECT_EQ(root()->getNChildren(), 0U);
    EXPECT_FALSE(isRootShown());
}

TEST_F(AbstractSelectionVisualisationTest, RemovingAllReportsTheIdOfADestroyedNodeThatHasAVisualisation)
{
    const osg::UInt32 id = osg::getContainerId(m_b.get());
    m_visualisation->addNode(m_a);
    m_visualisation->addNode(m_b);
    m_visualisation->isWanted = false;
    m_visualisation->addNode(m_c);
    m_b = osg::NullFC;
    m_c = osg::NullFC;
    m_log.clear();

    m_visualisation->removeAllNodes();

    // Not a word about c, which had no visualisation node, unlike setVisible().
    EXPECT_EQ(StandardError::take(),
              "AbstractSelectionVisualisation::removeAllNodes: invalid node pointer (" + std::to_string(id) + ")!\n");
    EXPECT_THAT(m_log.calls(), ElementsAre("removeVisualisation(a, visualisation of a)"));
    EXPECT_EQ(root()->getNChildren(), 0U);
    EXPECT_FALSE(m_visualisation->hasNode(m_a));
    m_visualisation->setVisible(false);
    m_visualisation->setVisible(true);
    EXPECT_EQ(StandardError::take(), "") << "no entry is left";
}

// Destruction

TEST_F(AbstractSelectionVisualisationTest, DestructionCallsNoHookAndLeavesTheRootToTheHost)
{
    const NodeRef host(root());
    m_visualisation->addNode(m_a);
    const osg::NodePtr visualisation = root()->getChild(0);
    m_log.clear();
    takeChanges();

    m_visualisation.reset();

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_EQ(host.get().getRefCount(), 1);
    ASSERT_EQ(host->getNChildren(), 1U);
    EXPECT_EQ(host->getChild(0), visualisation);
    EXPECT_EQ(visualisation.getRefCount(), 1);
    EXPECT_THAT(takeChanges(), IsEmpty());
}

TEST_F(AbstractSelectionVisualisationTest, DestructionDestroysWhatNobodyElseHolds)
{
    m_visualisation->addNode(m_a);
    const osg::UInt32 rootId = osg::getContainerId(root());
    const osg::UInt32 visualisationId = osg::getContainerId(root()->getChild(0));

    m_visualisation.reset();

    EXPECT_FALSE(exists(rootId));
    EXPECT_FALSE(exists(visualisationId));
}

// The default filter

class PlainVisualisation : public AbstractSelectionVisualisation {
public:
    osg::NodePtr createVisualisation(const osg::NodePtr&) override { return osg::Node::create(); }
    void removeVisualisation(const osg::NodePtr&, const osg::NodePtr&) override {}
    void updateVisualisation(const osg::NodePtr&, const osg::NodePtr&) override {}
};

TEST_F(AbstractSelectionVisualisationTest, EveryNodeShouldHaveAVisualisationByDefault)
{
    PlainVisualisation plain;

    EXPECT_TRUE(plain.shouldHaveVisualization(m_a));
    EXPECT_TRUE(plain.shouldHaveVisualization(osg::NodePtr()));
    plain.addNode(m_a);
    EXPECT_EQ(plain.getVisualisation()->getNChildren(), 1U);
}

} // namespace

} // namespace quon::interaction
