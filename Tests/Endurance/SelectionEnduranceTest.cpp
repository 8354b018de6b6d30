// SPDX-License-Identifier: MIT
#include <InteractionTesting/LiveContainers.h>
#include <InteractionTesting/SceneBuilder.h>

#include "Viewer/Model/ModelLoader.h"
#include "Viewer/Model/NodeWalk.h"
#include "Viewer/Script/ProcessReport.h"

#include <Interaction/BoxSelectionVisualisation.h>
#include <Interaction/HighlightSelectionVisualisation.h>
#include <Interaction/NodeSelectionModel.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGThread.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <string>
#include <type_traits>
#include <vector>

namespace quon::testing {

namespace {

using interaction::BoxSelectionVisualisation;
using interaction::HighlightSelectionVisualisation;
using interaction::NodeSelectionModel;

// Until everything that is kept for later is there.
constexpr int WarmUpRounds = 3;

int getRounds()
{
    const char* const rounds = std::getenv("KOINTERACTION_ENDURANCE_ROUNDS");
    return rounds == nullptr ? 1000 : std::atoi(rounds);
}

// The scene graph gives no id twice. It keeps a pointer for each so many of them, in a list that doubles when it is
// full.
constexpr std::size_t IdsOfPointer = 1024;

// What malloc() takes for the smallest block. A block may be larger than asked for by a little, and freed blocks that a
// thread keeps for itself count as taken: two equal states differ by some hundred bytes. What every second round
// leaves, in however small a block, is more than that after a thousand.
constexpr std::size_t SmallestBlock = 4 * sizeof(void*);

/** What there is of a model and of the process at a moment. */
struct Holdings {
    std::size_t containers = 0;
    osg::Int64 references = 0; ///< of the model's nodes and cores
    std::size_t bytes = 0;     ///< of the heap
    osg::UInt32 newestId = 0;  ///< of a container
};

/** A model of a real machine, all of whose nodes are selected and deselected by the library alone. */
template <class Visualisation>
class SelectionEnduranceTest : public ::testing::Test {
protected:
    SelectionEnduranceTest()
        : m_model(viewer::ModelLoader().load(KO_ENGINE_MODEL))
        , m_scene(makeNode(osg::Group::create()))
        , m_selection("selection")
    {
        viewer::walkNodes(m_model.root.get(), [this](const osg::NodePtr& node) {
            m_nodes.push_back(node);
            return true;
        });
        attach(m_model.root.get());
        attach(m_visualisation.getVisualisation());
        m_selection.addVisualisation(&m_visualisation);
    }

    ~SelectionEnduranceTest() override { m_selection.removeVisualisation(&m_visualisation); }

    Holdings look() const
    {
        // What a host does once a frame.
        osg::Thread::getCurrentChangeList()->clearAll();
        Holdings holdings;
        holdings.containers = countLiveContainers();
        for (const osg::NodePtr& node : m_nodes) {
            holdings.references += node.getRefCount() + node->getCore().getRefCount();
        }
        holdings.newestId = osg::getContainerId(makeNode(osg::Group::create()).get());
        holdings.bytes = viewer::ProcessReport::take().allocated;
        osg::Thread::getCurrentChangeList()->clearAll();
        return holdings;
    }

    void selectAndDeselect()
    {
        m_selection.setSelection(m_nodes);
        m_selection.clearSelection();
        osg::Thread::getCurrentChangeList()->clearAll();
    }

    viewer::LoadedModel m_model;
    NodeRef m_scene;
    Visualisation m_visualisation;
    NodeSelectionModel m_selection;
    std::vector<osg::NodePtr> m_nodes;

private:
    void attach(const osg::NodePtr& node)
    {
        beginEditCP(m_scene, osg::Node::ChildrenFieldMask);
        m_scene->addChild(node);
        endEditCP(m_scene, osg::Node::ChildrenFieldMask);
    }
};

using Visualisations = ::testing::Types<BoxSelectionVisualisation, HighlightSelectionVisualisation>;

class VisualisationName {
public:
    template <class Visualisation>
    static std::string GetName(int /*index*/)
    {
        return std::is_same_v<Visualisation, BoxSelectionVisualisation> ? "Boxes" : "Wireframe";
    }
};

TYPED_TEST_SUITE(SelectionEnduranceTest, Visualisations, VisualisationName);

TYPED_TEST(SelectionEnduranceTest, SelectingAWholeModelManyTimesLeavesWhatThereWas)
{
    for (int round = 0; round < WarmUpRounds; ++round) {
        this->selectAndDeselect();
    }
    // Looking takes memory of its own, once.
    this->look();
    const Holdings before = this->look();

    for (int round = 0; round < getRounds(); ++round) {
        this->selectAndDeselect();
    }

    const Holdings after = this->look();
    EXPECT_EQ(after.containers, before.containers);
    EXPECT_EQ(after.references, before.references);
    const std::size_t pointers = 2 * sizeof(void*) * (after.newestId / IdsOfPointer + 1);
    EXPECT_LT(after.bytes, before.bytes + pointers + SmallestBlock * static_cast<std::size_t>(getRounds()) / 2);
}

} // namespace

} // namespace quon::testing
