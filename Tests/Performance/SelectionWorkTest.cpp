// SPDX-License-Identifier: MIT
#include "Support/AllocationCount.h"

#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/HighlightSelectionVisualisation.h>
#include <Interaction/NodeSelectionModel.h>
#include <Interaction/SelectionVisualisation.h>

#include <InteractionTesting/SceneBuilder.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGThread.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <vector>

// What changing a selection takes, counted for so many nodes, for twice as many and for ten times as many: per node it
// must be the same. Nothing here looks at a clock.
namespace {

using quon::interaction::BoxSelectionVisualisation;
using quon::interaction::HighlightSelectionVisualisation;
using quon::interaction::NodeSelectionModel;
using quon::interaction::SelectionVisualisation;
using quon::testing::addChild;
using quon::testing::getAllocationCount;
using quon::testing::makeExtent;
using quon::testing::makeNode;
using quon::testing::makeTranslation;
using quon::testing::NodeRef;

using Nodes = std::vector<osg::NodePtr>;

constexpr std::size_t few = 200;

// A list that grows by doubling asks for memory now and then, whatever it holds.
constexpr std::ptrdiff_t allocationsOfGrowth = 40;

struct Work {
    std::ptrdiff_t allocations = 0;
    // Entries of the change list.
    std::ptrdiff_t created = 0;
    std::ptrdiff_t destroyed = 0;
    std::ptrdiff_t referenced = 0;
    std::ptrdiff_t released = 0;
    std::ptrdiff_t changed = 0;
    // Of any operation of a visualisation.
    std::ptrdiff_t calls = 0;
};

std::ostream& operator<<(std::ostream& stream, const Work& work)
{
    return stream << work.allocations << " allocations, " << work.created << " created, " << work.destroyed
                  << " destroyed, " << work.referenced << " referenced, " << work.released << " released, "
                  << work.changed << " changed, " << work.calls << " calls";
}

/** Counts the calls of a model. */
class CountingVisualisation final : public SelectionVisualisation {
public:
    mutable std::size_t calls = 0;

    void setVisible(bool /*visible*/) override { ++calls; }
    bool isVisible() const override { return ++calls != 0; }
    osg::NodePtr getVisualisation() override
    {
        ++calls;
        return osg::NullFC;
    }
    void addNode(const osg::NodePtr& /*node*/) override { ++calls; }
    void removeNode(const osg::NodePtr& /*node*/) override { ++calls; }
    void updateNode(const osg::NodePtr& /*node*/) override { ++calls; }
    bool hasNode(const osg::NodePtr& /*node*/) const override { return ++calls != 0; }
    void updateAllNodes() override { ++calls; }
    void removeAllNodes() override { ++calls; }
};

/** Counts the calls of the base that ask for a box or leave one. */
class CountingBoxes final : public BoxSelectionVisualisation {
public:
    std::size_t calls = 0;

    osg::NodePtr createVisualisation(const osg::NodePtr& node) override
    {
        ++calls;
        return BoxSelectionVisualisation::createVisualisation(node);
    }
    void removeVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation) override
    {
        ++calls;
        BoxSelectionVisualisation::removeVisualisation(node, visualisation);
    }
    void updateVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation) override
    {
        ++calls;
        BoxSelectionVisualisation::updateVisualisation(node, visualisation);
    }
    bool shouldHaveVisualization(const osg::NodePtr& node) const override
    {
        ++const_cast<std::size_t&>(calls);
        return BoxSelectionVisualisation::shouldHaveVisualization(node);
    }
};

/** Counts those of the highlight. */
class CountingHighlights final : public HighlightSelectionVisualisation {
public:
    std::size_t calls = 0;

    osg::NodePtr createVisualisation(const osg::NodePtr& node) override
    {
        ++calls;
        return HighlightSelectionVisualisation::createVisualisation(node);
    }
    void removeVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation) override
    {
        ++calls;
        HighlightSelectionVisualisation::removeVisualisation(node, visualisation);
    }
    void updateVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation) override
    {
        ++calls;
        HighlightSelectionVisualisation::updateVisualisation(node, visualisation);
    }
};

/** Nodes with boxes of their own, and everything that can show that they are selected. */
class Selected {
public:
    explicit Selected(const std::size_t count)
        : m_root(makeNode(osg::Group::create()))
    {
        m_model.addVisualisation(&m_calls);
        m_model.addVisualisation(&m_boxes);
        m_model.addVisualisation(&m_highlights);
        for (std::size_t i = 0; i < count; ++i) {
            const auto place = static_cast<float>(2 * i);
            m_transforms.push_back(makeTranslation(place, 0, 0));
            const osg::NodePtr group = addChild(m_root, m_transforms.back());
            nodes.push_back(addChild(group, makeExtent(osg::Pnt3f(0, 0, 0), osg::Pnt3f(1, 1, 1))));
        }
        backward.assign(nodes.rbegin(), nodes.rend());
        shuffled = nodes;
        std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(17));
    }

    ~Selected() { m_model.clearSelection(); }

    Nodes nodes;
    Nodes backward;
    Nodes shuffled;

    NodeSelectionModel& model() { return m_model; }
    BoxSelectionVisualisation& boxes() { return m_boxes; }

    /** Moves every node. */
    void move()
    {
        for (std::size_t i = 0; i < m_transforms.size(); ++i) {
            quon::testing::setTranslation(m_transforms[i], static_cast<float>(2 * i), 5, 0);
        }
    }

    std::size_t getCalls() const { return m_calls.calls + m_boxes.calls + m_highlights.calls; }

    osg::UInt32 countShown()
    {
        return m_boxes.getVisualisation()->getNChildren() + m_highlights.getVisualisation()->getNChildren();
    }

private:
    NodeRef m_root;
    std::vector<osg::TransformPtr> m_transforms;
    NodeSelectionModel m_model{"selection"};
    CountingVisualisation m_calls;
    CountingBoxes m_boxes;
    CountingHighlights m_highlights;
};

void selectAll(Selected& selected)
{
    selected.model().setSelection(selected.nodes);
}

void selectAllAndClear(Selected& selected)
{
    selectAll(selected);
    selected.model().clearSelection();
}

struct Operation {
    std::string name;
    std::function<void(Selected&)> prepare;
    std::function<void(Selected&)> work;
    bool leavesAllSelected;
};

void PrintTo(const Operation& operation, std::ostream* stream)
{
    *stream << operation.name;
}

template <class Change>
std::function<void(Selected&)> forEachOf(Nodes Selected::*nodes, const Change& change)
{
    return [nodes, change](Selected& selected) {
        for (const osg::NodePtr& node : selected.*nodes) {
            (selected.model().*change)(node);
        }
    };
}

std::vector<Operation> operations()
{
    const auto nothing = [](Selected&) {};
    const auto remove = &NodeSelectionModel::removeNode;
    const auto removeTogether = [](Nodes Selected::*nodes) {
        return [nodes](Selected& selected) { selected.model().removeNodes(selected.*nodes); };
    };
    return {
        {"addNode", nothing, forEachOf(&Selected::nodes, &NodeSelectionModel::addNode), true},
        {"addNodeInRandomOrder", nothing, forEachOf(&Selected::shuffled, &NodeSelectionModel::addNode), true},
        {"addNodes", nothing, [](Selected& selected) { selected.model().addNodes(selected.nodes); }, true},
        {"setSelection", nothing, selectAll, true},
        {"setSelectionWithRecycledBoxes", selectAllAndClear, selectAll, true},
        {"setSelectionOfTheSame", selectAll, selectAll, true},
        {"removeNodeForward", selectAll, forEachOf(&Selected::nodes, remove), false},
        {"removeNodeBackward", selectAll, forEachOf(&Selected::backward, remove), false},
        {"removeNodeInRandomOrder", selectAll, forEachOf(&Selected::shuffled, remove), false},
        {"removeNodesForward", selectAll, removeTogether(&Selected::nodes), false},
        {"removeNodesBackward", selectAll, removeTogether(&Selected::backward), false},
        {"removeNodesInRandomOrder", selectAll, removeTogether(&Selected::shuffled), false},
        {"clearSelection", selectAll, [](Selected& selected) { selected.model().clearSelection(); }, false},
        {"updateNode", selectAll, forEachOf(&Selected::nodes, &NodeSelectionModel::updateNode), true},
        {"updateVisualisationsUnchanged", selectAll,
         [](Selected& selected) { selected.model().updateVisualisations(); }, true},
        {"updateVisualisationsMoved",
         [](Selected& selected) {
             selectAll(selected);
             selected.move();
         },
         [](Selected& selected) { selected.model().updateVisualisations(); }, true},
        {"hideAndShow", selectAll,
         [](Selected& selected) {
             selected.boxes().setVisible(false);
             selected.boxes().setVisible(true);
         },
         true},
        {"addVisualisationToASelection",
         [](Selected& selected) {
             selectAll(selected);
             selected.model().removeVisualisation(&selected.boxes());
             // No box fits the node that it is used again for.
             selected.move();
         },
         [](Selected& selected) { selected.model().addVisualisation(&selected.boxes()); }, true},
    };
}

class SelectionWorkTest : public ::testing::TestWithParam<Operation> {
protected:
    ~SelectionWorkTest() override { osg::Thread::getCurrentChangeList()->clearAll(); }

    static Work measure(const std::size_t count)
    {
        Selected selected(count);
        GetParam().prepare(selected);
        osg::ChangeList* const changes = osg::Thread::getCurrentChangeList();
        changes->clearAll();
        const std::size_t allocationsBefore = getAllocationCount();
        const std::size_t callsBefore = selected.getCalls();

        GetParam().work(selected);

        Work work;
        work.allocations = static_cast<std::ptrdiff_t>(getAllocationCount() - allocationsBefore);
        work.calls = static_cast<std::ptrdiff_t>(selected.getCalls() - callsBefore);
        work.created = static_cast<std::ptrdiff_t>(changes->sizeCreated());
        work.destroyed = static_cast<std::ptrdiff_t>(changes->sizeDestroyed());
        work.referenced = static_cast<std::ptrdiff_t>(changes->sizeAddRefd());
        work.released = static_cast<std::ptrdiff_t>(changes->sizeSubRefd());
        work.changed = static_cast<std::ptrdiff_t>(changes->sizeChanged());
        const std::size_t left = GetParam().leavesAllSelected ? count : 0;
        EXPECT_EQ(selected.model().getSelection().size(), left);
        EXPECT_EQ(selected.countShown(), 2 * left);
        return work;
    }
};

TEST_P(SelectionWorkTest, IsProportionalToTheNumberOfNodes)
{
    // What is made once in a process is there then, and what an earlier selection leaves is enough for all.
    measure(10 * few);
    const Work once = measure(few);
    const Work twice = measure(2 * few);
    const Work tenfold = measure(10 * few);

    // What is done once for all nodes is in each of the three and drops out.
    const auto expected = [&](std::ptrdiff_t Work::*count) { return twice.*count + 8 * (twice.*count - once.*count); };
    EXPECT_EQ(tenfold.created, expected(&Work::created));
    EXPECT_EQ(tenfold.destroyed, expected(&Work::destroyed));
    EXPECT_EQ(tenfold.referenced, expected(&Work::referenced));
    EXPECT_EQ(tenfold.released, expected(&Work::released));
    EXPECT_EQ(tenfold.changed, expected(&Work::changed));
    EXPECT_EQ(tenfold.calls, expected(&Work::calls));
    EXPECT_LE(tenfold.allocations, expected(&Work::allocations) + allocationsOfGrowth);
    RecordProperty("work", ::testing::PrintToString(tenfold));
}

INSTANTIATE_TEST_SUITE_P(Operations, SelectionWorkTest, ::testing::ValuesIn(operations()),
                         [](const auto& operation) { return operation.param.name; });

} // namespace
