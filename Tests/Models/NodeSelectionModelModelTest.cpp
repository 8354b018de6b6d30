// SPDX-License-Identifier: MIT
#include "NodeSelectionModelModel.h"

#include <Interaction/NodeSelectionModel.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/ObjectNames.h>
#include <InteractionTesting/RecordingVisualisation.h>
#include <InteractionTesting/SceneBuilder.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using quon::interaction::NodeSelectionModel;
using quon::testing::CallLog;
using quon::testing::ModelCoverage;
using quon::testing::ModelOperation;
using quon::testing::ModelStep;
using quon::testing::NodeRef;
using quon::testing::NodeSelectionModelModel;
using quon::testing::ObjectNames;
using quon::testing::RecordingVisualisation;
using quon::testing::model::requireSame;

constexpr std::size_t nodeCount = 6; // with null
constexpr std::size_t visualisationCount = 3;

// Names are most of what a sequence takes: each is made once.
const std::string& nameOf(int node)
{
    static std::vector<std::string> names = {"null"};
    const auto index = static_cast<std::size_t>(node);
    while (names.size() <= index) {
        names.push_back("n" + std::to_string(names.size()));
    }
    return names[index];
}

std::string nameOf(const NodeSelectionModelModel::Nodes& nodes)
{
    std::string names = "selected";
    for (const int node : nodes) {
        (names += ' ') += nameOf(node);
    }
    return names;
}

class Driver {
public:
    using Operation = ModelOperation<Driver>;

    static const std::vector<Operation>& operations()
    {
        static const std::vector<Operation> all = {{"addNode", 12, &Driver::addNode},
                                                   {"addNodes", 8, &Driver::addNodes},
                                                   {"removeNode", 8, &Driver::removeNode},
                                                   {"removeNodes", 6, &Driver::removeNodes},
                                                   {"updateNode", 4, &Driver::updateNode},
                                                   {"clearSelection", 2, &Driver::clearSelection},
                                                   {"setSelection of a node", 3, &Driver::setSelectionOfNode},
                                                   {"setSelection of nodes", 4, &Driver::setSelectionOfNodes},
                                                   {"addVisualisation", 5, &Driver::addVisualisation},
                                                   {"removeVisualisation", 5, &Driver::removeVisualisation},
                                                   {"updateVisualisation", 3, &Driver::updateVisualisation},
                                                   {"updateVisualisations", 3, &Driver::updateVisualisations},
                                                   {"change from inside the next operation", 8, &Driver::react},
                                                   {"node destroyed by the scene", 1, &Driver::destroyNode},
                                                   {"copied", 1, &Driver::copy},
                                                   {"moved", 1, &Driver::move}};
        return all;
    }

    static std::vector<std::string> branches()
    {
        std::vector<std::string> names = NodeSelectionModelModel::branches();
        names.emplace_back("selection changed from inside");
        return names;
    }

    explicit Driver(ModelCoverage& coverage)
        : m_coverage(coverage)
        , m_model(
              "model",
              [this](int visualisation, const std::string& operation, int node) {
                  noteExpected(visualisation, operation, node);
              },
              coverage)
    {
        for (NodeRef& node : m_nodes) {
            node = quon::testing::makeNode(osg::Group::create());
        }
        // Numbers in the order of handles, null first.
        std::sort(m_nodes.begin(), m_nodes.end(),
                  [](const NodeRef& left, const NodeRef& right) { return left.get() < right.get(); });
        m_handles.emplace_back(osg::NullFC);
        for (const NodeRef& node : m_nodes) {
            m_names.add(node.get(), nameOf(static_cast<int>(m_handles.size())));
            m_handles.push_back(node.get());
        }
        for (std::size_t index = 0; index < visualisationCount; ++index) {
            m_visualisations.push_back(
                std::make_unique<RecordingVisualisation>(m_log, m_names, visualisationName(index)));
            m_visualisations.back()->onCall(
                [this](const std::string&, const osg::NodePtr&) { noteSelectionAndReact(); });
        }
    }

    void compare()
    {
        requireSame("the calls", m_log.take(), m_expectedLog.take());
        requireSame("the selection", selection(), m_model.getSelection());
        requireSame("the name", m_library->getName(), m_model.getName());
        for (const NodeRef& node : m_nodes) {
            // A selection holds nothing.
            requireSame("the count of a node", osg::getRefCount(node.get()), node == osg::NullFC ? 0 : 1);
        }
    }

    void finish()
    {
        m_library.reset();
        requireSame("the calls", m_log.take(), std::vector<std::string>());
    }

private:
    using Change = std::function<void(NodeSelectionModel*, NodeSelectionModelModel*)>;

    static std::string visualisationName(std::size_t index) { return "v" + std::to_string(index); }

    NodeSelectionModelModel::Nodes selection() const
    {
        NodeSelectionModelModel::Nodes numbers;
        numbers.reserve(m_library->getSelection().size());
        for (const osg::NodePtr& node : m_library->getSelection()) {
            numbers.push_back(numberOf(node));
        }
        return numbers;
    }

    int numberOf(const osg::NodePtr& node) const
    {
        return static_cast<int>(std::find(m_handles.begin(), m_handles.end(), node) - m_handles.begin());
    }

    // From inside each call of a visualisation the two sides read the selection, and change it when their turn comes.

    void noteSelectionAndReact()
    {
        m_log.add(nameOf(selection()));
        if (++m_calls == m_reactionAt) {
            m_reaction(m_library.get(), nullptr);
        }
    }

    void noteExpected(int visualisation, const std::string& operation, int node)
    {
        const std::string name = visualisationName(static_cast<std::size_t>(visualisation));
        if (node < 0) {
            m_expectedLog.call(name, operation);
        } else {
            m_expectedLog.call(name, operation, nameOf(node));
        }
        m_expectedLog.add(nameOf(m_model.getSelection()));
        if (++m_expectedCalls == m_reactionAt) {
            m_coverage.see("selection changed from inside");
            m_reaction(nullptr, &m_model);
        }
    }

    // One side after the other: an operation is for the library or for the model.
    void carryOut(const Change& change)
    {
        m_calls = 0;
        change(m_library.get(), nullptr);
        m_expectedCalls = 0;
        change(nullptr, &m_model);
        m_reactionAt = 0;
    }

    std::vector<osg::NodePtr> handlesOf(const std::vector<int>& numbers) const
    {
        std::vector<osg::NodePtr> handles;
        handles.reserve(numbers.size());
        for (const int number : numbers) {
            handles.push_back(m_handles[static_cast<std::size_t>(number)]);
        }
        return handles;
    }

    // None to four nodes, repetitions included.
    static std::vector<int> nodesOf(const ModelStep& step)
    {
        std::vector<int> nodes;
        const std::size_t count = step.pick(0, 5);
        for (std::size_t index = 1; index <= count; ++index) {
            nodes.push_back(nodeOf(step, index));
        }
        return nodes;
    }

    static int nodeOf(const ModelStep& step, std::size_t index)
    {
        return static_cast<int>(step.pick(index, nodeCount));
    }

    static Change changeOf(std::size_t kind, const ModelStep& step, const Driver& driver)
    {
        const int node = nodeOf(step, 1);
        const std::vector<int> nodes = nodesOf(step);
        const osg::NodePtr handle = driver.m_handles[static_cast<std::size_t>(node)];
        const std::vector<osg::NodePtr> handles = driver.handlesOf(nodes);
        // Sometimes the very handle that the set has, which the operation may destroy.
        const bool fromSet = step.pick(5, 4) == 0;
        const auto argument = [handle, fromSet](const NodeSelectionModel& library) -> const osg::NodePtr& {
            const auto selected = library.getSelection().find(handle);
            return fromSet && selected != library.getSelection().end() ? *selected : handle;
        };
        switch (kind) {
        case 0:
            return [=](auto* library, auto* model) {
                library != nullptr ? library->addNode(argument(*library)) : model->addNode(node);
            };
        case 1:
            return [=](auto* library, auto* model) {
                library != nullptr ? library->addNodes(handles) : model->addNodes(nodes);
            };
        case 2:
            return [=](auto* library, auto* model) {
                library != nullptr ? library->removeNode(argument(*library)) : model->removeNode(node);
            };
        case 3:
            return [=](auto* library, auto* model) {
                library != nullptr ? library->removeNodes(handles) : model->removeNodes(nodes);
            };
        case 4:
            return [=](auto* library, auto* model) {
                library != nullptr ? library->updateNode(argument(*library)) : model->updateNode(node);
            };
        case 5:
            return [=](auto* library, auto* model) {
                library != nullptr ? library->clearSelection() : model->clearSelection();
            };
        case 6:
            return [=](auto* library, auto* model) {
                library != nullptr ? library->setSelection(argument(*library)) : model->setSelection(node);
            };
        case 7:
            return [=](auto* library, auto* model) {
                library != nullptr ? library->setSelection(handles) : model->setSelection(nodes);
            };
        default:
            return [=](auto* library, auto* model) {
                library != nullptr ? library->updateVisualisations() : model->updateVisualisations();
            };
        }
    }

    void addNode(const ModelStep& step) { carryOut(changeOf(0, step, *this)); }
    void addNodes(const ModelStep& step) { carryOut(changeOf(1, step, *this)); }
    void removeNode(const ModelStep& step) { carryOut(changeOf(2, step, *this)); }
    void removeNodes(const ModelStep& step) { carryOut(changeOf(3, step, *this)); }
    void updateNode(const ModelStep& step) { carryOut(changeOf(4, step, *this)); }
    void clearSelection(const ModelStep& step) { carryOut(changeOf(5, step, *this)); }
    void setSelectionOfNode(const ModelStep& step) { carryOut(changeOf(6, step, *this)); }
    void setSelectionOfNodes(const ModelStep& step) { carryOut(changeOf(7, step, *this)); }
    void updateVisualisations(const ModelStep& step) { carryOut(changeOf(8, step, *this)); }

    // While the selection is replayed into a visualisation nobody changes it: what the rest hears is not said.
    void addVisualisation(const ModelStep& step)
    {
        m_reactionAt = 0;
        const std::size_t index = step.pick(0, visualisationCount);
        m_library->addVisualisation(m_visualisations[index].get());
        m_model.addVisualisation(static_cast<int>(index));
    }

    void removeVisualisation(const ModelStep& step)
    {
        const std::size_t index = step.pick(0, visualisationCount);
        carryOut([&](auto* library, auto* model) {
            library != nullptr ? library->removeVisualisation(m_visualisations[index].get())
                               : model->removeVisualisation(static_cast<int>(index));
        });
    }

    void updateVisualisation(const ModelStep& step)
    {
        const std::size_t index = step.pick(0, visualisationCount);
        carryOut([&](auto* library, auto* model) {
            library != nullptr ? library->updateVisualisation(m_visualisations[index].get())
                               : model->updateVisualisation(static_cast<int>(index));
        });
    }

    void react(const ModelStep& step)
    {
        // What the numbers make of a change is independent of when it comes.
        ModelStep change = step;
        std::rotate(change.numbers.begin(), change.numbers.begin() + 1, change.numbers.end());
        m_reaction = changeOf(step.pick(5, 9), change, *this);
        m_reactionAt = 1 + step.pick(0, 5);
    }

    void destroyNode(const ModelStep& step)
    {
        // The handle stays what it is: stale, and compared by its address.
        m_nodes[step.pick(0, m_nodes.size())] = NodeRef();
    }

    void copy(const ModelStep&) { m_library = std::make_unique<NodeSelectionModel>(*m_library); }
    void move(const ModelStep&) { m_library = std::make_unique<NodeSelectionModel>(std::move(*m_library)); }

    ModelCoverage& m_coverage;
    CallLog m_log;
    CallLog m_expectedLog;
    ObjectNames m_names;
    std::array<NodeRef, nodeCount - 1> m_nodes;
    std::vector<osg::NodePtr> m_handles;
    std::vector<std::unique_ptr<RecordingVisualisation>> m_visualisations;
    Change m_reaction;
    std::size_t m_reactionAt = 0;
    std::size_t m_calls = 0;
    std::size_t m_expectedCalls = 0;
    std::unique_ptr<NodeSelectionModel> m_library = std::make_unique<NodeSelectionModel>("model");
    NodeSelectionModelModel m_model;
};

TEST(NodeSelectionModelModelTest, AnySequenceOfCallsMatchesTheModel)
{
    quon::testing::runModel<Driver>();
}

} // namespace
