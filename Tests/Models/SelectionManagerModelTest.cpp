// SPDX-License-Identifier: MIT
#include "SelectionManagerModel.h"

#include <Interaction/NodeSelectionModel.h>
#include <Interaction/SelectionManager.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/ObjectNames.h>
#include <InteractionTesting/RecordingVisualisation.h>
#include <InteractionTesting/SceneBuilder.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

using quon::interaction::NodeSelectionModel;
using quon::interaction::SelectionManager;
using quon::testing::CallLog;
using quon::testing::ModelCoverage;
using quon::testing::ModelOperation;
using quon::testing::ModelStep;
using quon::testing::NodeRef;
using quon::testing::ObjectNames;
using quon::testing::RecordingVisualisation;
using quon::testing::SelectionManagerModel;
using quon::testing::model::requireSame;

// Compared byte by byte, beyond a zero and beyond what fits into a short string.
const std::vector<std::string> names = {"a",
                                        "A",
                                        "",
                                        "ab",
                                        std::string("a\0b", 3),
                                        std::string("a\0c", 3),
                                        "a selection with quite a long name",
                                        "a selection with quite a long Name"};

class Driver {
public:
    using Operation = ModelOperation<Driver>;

    static const std::vector<Operation>& operations()
    {
        static const std::vector<Operation> all = {{"createSelectionModel", 6, &Driver::create},
                                                   {"getSelectionModel", 4, &Driver::get},
                                                   {"removeSelectionModel", 4, &Driver::remove},
                                                   {"model used", 3, &Driver::use}};
        return all;
    }

    static std::vector<std::string> branches() { return SelectionManagerModel::branches(); }

    explicit Driver(ModelCoverage& coverage)
        : m_model(coverage)
    {
        requireSame("the instance", SelectionManager::getInstance() == SelectionManager::getInstance(), true);
    }

    void compare()
    {
        requireSame("the calls", m_log.take(), std::vector<std::string>());
        for (const auto& [number, known] : m_known) {
            // A model stays where it is, and what it is.
            requireSame("the address of a model", m_library->getSelectionModel(known.name) == known.model, true);
            requireSame("the name of a model", known.model->getName(), known.name);
            requireSame("the selection of a model", known.model->getSelection().size(), known.selected);
        }
    }

    void finish()
    {
        m_library.reset();
        requireSame("the calls", m_log.take(), std::vector<std::string>());
        requireSame("the count of a selected node", osg::getRefCount(m_node.get()), 1);
    }

private:
    struct Known {
        NodeSelectionModel* model;
        std::string name;
        std::size_t selected; ///< number of selected nodes
    };

    // The number of a model that the library answered with; -1 for one that is not known.
    int numberOf(const NodeSelectionModel* model) const
    {
        if (model == nullptr) {
            return 0;
        }
        for (const auto& [number, known] : m_known) {
            if (known.model == model) {
                return number;
            }
        }
        return -1;
    }

    void create(const ModelStep& step)
    {
        const std::string& name = names[step.pick(0, names.size())];
        NodeSelectionModel* const created = m_library->createSelectionModel(name);
        const int number = m_model.createSelectionModel(name);
        if (m_known.count(number) == 1) {
            requireSame("the model", numberOf(created), number);
            return;
        }
        // New: at an address of its own, empty, and nobody listens to it.
        requireSame("the model", numberOf(created), -1);
        requireSame("the selection of a new model", created->getSelection().size(), std::size_t(0));
        created->updateVisualisations();
        m_known[number] = {created, name, 0};
    }

    void get(const ModelStep& step)
    {
        const std::string& name = names[step.pick(0, names.size())];
        requireSame("the model", numberOf(m_library->getSelectionModel(name)), m_model.getSelectionModel(name));
    }

    void remove(const ModelStep& step)
    {
        if (step.isRare(1, 30)) {
            NodeSelectionModel foreign("a");
            m_library->removeSelectionModel(step.pick(2, 2) == 0 ? nullptr : &foreign);
            m_model.removeSelectionModel(step.pick(2, 2) == 0 ? 0 : -1);
        } else if (!m_known.empty()) {
            const auto known = std::next(m_known.begin(), static_cast<long>(step.pick(0, m_known.size())));
            m_library->removeSelectionModel(known->second.model);
            m_model.removeSelectionModel(known->first);
            requireSame("the model is there", m_model.has(known->first), false);
            requireSame("the removed model", m_library->getSelectionModel(known->second.name) == nullptr, true);
            m_known.erase(known);
        }
    }

    // Gives a model a node and a visualisation, which hear nothing of its end.
    void use(const ModelStep& step)
    {
        if (!m_known.empty()) {
            const auto known = std::next(m_known.begin(), static_cast<long>(step.pick(0, m_known.size())));
            known->second.model->addVisualisation(&m_visualisation);
            known->second.model->addNode(m_node);
            known->second.selected = 1;
            m_log.clear();
        }
    }

    CallLog m_log;
    ObjectNames m_names;
    RecordingVisualisation m_visualisation{m_log, m_names, "visualisation"};
    NodeRef m_node = quon::testing::makeNode(osg::Group::create());
    std::unique_ptr<SelectionManager> m_library = std::make_unique<SelectionManager>();
    SelectionManagerModel m_model;
    std::map<int, Known> m_known;
};

TEST(SelectionManagerModelTest, AnySequenceOfCallsMatchesTheModel)
{
    quon::testing::runModel<Driver>();
}

} // namespace
