// SPDX-License-Identifier: MIT
#include "AbstractSelectionVisualisationModel.h"
#include "ModelReactions.h"
#include "SceneChanges.h"

#include <Interaction/AbstractSelectionVisualisation.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/SceneBuilder.h>

#include "Support/StandardError.h"

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

using quon::interaction::AbstractSelectionVisualisation;
using quon::testing::AbstractSelectionVisualisationModel;
using quon::testing::CallLog;
using quon::testing::ModelCoverage;
using quon::testing::ModelOperation;
using quon::testing::ModelReactions;
using quon::testing::ModelStep;
using quon::testing::NodeRef;
using quon::testing::SceneChanges;
using quon::testing::StandardError;
using quon::testing::model::requireSame;

constexpr unsigned allOnes = AbstractSelectionVisualisationModel::allOnes;

/** What the next createVisualisation() returns. */
enum class Plan {
    NewNode,
    NewNodeWithOwnReference,
    NodeHandedBackLast,
    NewNodeBelowRoot,
    NewNodeElsewhere,
};

/** What the two sides share: how the hooks behave, and who is who. */
struct World {
    Plan plan = Plan::NewNode;
    std::set<int> refused;                     ///< scene nodes that are filtered out
    std::map<osg::UInt32, int> numbers;        ///< of scene nodes, by container id
    std::map<osg::UInt32, int> visualisations; ///< numbers of visualisation nodes, by container id
    std::map<int, osg::UInt32> ids;            ///< of visualisation nodes
    NodeRef elsewhere = quon::testing::makeNode(osg::Group::create());
    std::function<void()> onLibraryCall;       ///< called from inside each hook
    std::function<void(int node)> onModelCall; ///< the same, on the side of the model

    int numberOf(const osg::NodePtr& node) const
    {
        return node == osg::NullFC ? 0 : numbers.at(osg::getContainerId(node));
    }

    int visualisationOf(const osg::NodePtr& node) const
    {
        const auto number = visualisations.find(osg::getContainerId(node));
        return number != visualisations.end() ? number->second : -1;
    }

    void enter(const osg::NodePtr& visualisation)
    {
        const int number = static_cast<int>(visualisations.size()) + 1;
        visualisations[osg::getContainerId(visualisation)] = number;
        ids[number] = osg::getContainerId(visualisation);
    }
};

std::string nameOf(int node)
{
    return AbstractSelectionVisualisationModel::nodeName(node);
}

std::string visualisationNameOf(int visualisation)
{
    return AbstractSelectionVisualisationModel::visualisationName(visualisation);
}

/** A kind that logs every call that goes through the virtual table. */
class Kind final : public AbstractSelectionVisualisation {
public:
    Kind(CallLog& log, World& world)
        : m_log(log)
        , m_world(world)
    {}

    ~Kind() override
    {
        // What createVisualisation() returned with a reference of its own belongs to the kind.
        for (osg::NodePtr& node : m_owned) {
            osg::subRefCP(node);
        }
    }

    bool isVisible() const override
    {
        m_log.add("isVisible");
        return AbstractSelectionVisualisation::isVisible();
    }

    void updateNode(const osg::NodePtr& node) override
    {
        m_log.call("kind", "updateNode", nameOf(m_world.numberOf(node)));
        AbstractSelectionVisualisation::updateNode(node);
    }

    osg::NodePtr createVisualisation(const osg::NodePtr& node) override
    {
        m_log.call("kind", "createVisualisation", nameOf(m_world.numberOf(node)));
        m_world.onLibraryCall();
        if (m_world.plan == Plan::NodeHandedBackLast && !m_spare.empty()) {
            const osg::NodePtr spare = m_spare.back();
            m_spare.pop_back();
            return spare;
        }
        const osg::NodePtr created = osg::Node::create();
        created->setCore(osg::Group::create());
        m_world.enter(created);
        if (m_world.plan == Plan::NewNodeWithOwnReference || m_world.plan == Plan::NodeHandedBackLast) {
            osg::addRefCP(created);
            m_owned.push_back(created);
        } else if (m_world.plan == Plan::NewNodeBelowRoot) {
            getVisualisation()->addChild(created);
        } else if (m_world.plan == Plan::NewNodeElsewhere) {
            m_world.elsewhere->addChild(created);
        }
        return created;
    }

    void removeVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation) override
    {
        m_log.call("kind", "removeVisualisation", nameOf(m_world.numberOf(node)),
                   visualisationNameOf(m_world.visualisationOf(visualisation)),
                   visualisation->getParent() == getVisualisation(), hasNode(node));
        m_world.onLibraryCall();
        for (const osg::NodePtr& owned : m_owned) {
            if (owned == visualisation) {
                m_spare.push_back(visualisation);
            }
        }
    }

    void updateVisualisation(const osg::NodePtr& node, const osg::NodePtr& visualisation) override
    {
        m_log.call("kind", "updateVisualisation", nameOf(m_world.numberOf(node)),
                   visualisationNameOf(m_world.visualisationOf(visualisation)), visualisation->getTravMask());
        m_world.onLibraryCall();
    }

    bool shouldHaveVisualization(const osg::NodePtr& node) const override
    {
        m_log.call("kind", "shouldHaveVisualization", nameOf(m_world.numberOf(node)));
        return m_world.refused.count(m_world.numberOf(node)) == 0;
    }

private:
    CallLog& m_log;
    World& m_world;
    std::vector<osg::NodePtr> m_owned;
    std::vector<osg::NodePtr> m_spare;
};

/** The same kind, on the side of the model. */
class KindModel final : public AbstractSelectionVisualisationModel {
public:
    KindModel(CallLog& log, const World& world, Scene scene, ModelCoverage& coverage)
        : AbstractSelectionVisualisationModel(std::move(scene), coverage)
        , m_log(log)
        , m_world(world)
    {}

    bool isVisible() override
    {
        m_log.add("isVisible");
        return AbstractSelectionVisualisationModel::isVisible();
    }

    void updateNode(int node) override
    {
        m_log.call("kind", "updateNode", nodeName(node));
        AbstractSelectionVisualisationModel::updateNode(node);
    }

    /** What the host adds below the root by itself. */
    void addForeignChild() { appendToRoot(makeVisualisation()); }

    /** The end of what the kind holds. */
    void releaseOwned()
    {
        for (const int visualisation : m_owned) {
            release(visualisation);
        }
    }

protected:
    int createVisualisation(int node) override
    {
        m_log.call("kind", "createVisualisation", nodeName(node));
        m_world.onModelCall(node);
        if (m_world.plan == Plan::NodeHandedBackLast && !m_spare.empty()) {
            coverage().see("visualisation used again");
            const int spare = m_spare.back();
            m_spare.pop_back();
            return spare;
        }
        const int created = makeVisualisation();
        if (m_world.plan == Plan::NewNodeWithOwnReference || m_world.plan == Plan::NodeHandedBackLast) {
            visualisations()[created].references = 1;
            m_owned.push_back(created);
        } else if (m_world.plan == Plan::NewNodeBelowRoot) {
            appendToRoot(created);
        } else if (m_world.plan == Plan::NewNodeElsewhere) {
            visualisations()[created].references = 1;
            visualisations()[created].isElsewhere = true;
        }
        return created;
    }

    void removeVisualisation(int node, int visualisation) override
    {
        m_log.call("kind", "removeVisualisation", nodeName(node), visualisationName(visualisation),
                   visualisations()[visualisation].isBelowRoot, hasNode(node));
        m_world.onModelCall(node);
        for (const int owned : m_owned) {
            if (owned == visualisation) {
                m_spare.push_back(visualisation);
            }
        }
    }

    void updateVisualisation(int node, int visualisation) override
    {
        m_log.call("kind", "updateVisualisation", nodeName(node), visualisationName(visualisation),
                   visualisations()[visualisation].mask);
        m_world.onModelCall(node);
    }

    bool shouldHaveVisualization(int node) override
    {
        m_log.call("kind", "shouldHaveVisualization", nodeName(node));
        return m_world.refused.count(node) == 0;
    }

private:
    CallLog& m_log;
    const World& m_world;
    std::vector<int> m_owned;
    std::vector<int> m_spare;
};

class Driver {
public:
    using Operation = ModelOperation<Driver>;

    static const std::vector<Operation>& operations()
    {
        static const std::vector<Operation> all = {{"addNode", 24, &Driver::addNode},
                                                   {"removeNode", 10, &Driver::removeNode},
                                                   {"updateNode", 16, &Driver::updateNode},
                                                   {"updateAllNodes", 4, &Driver::updateAllNodes},
                                                   {"removeAllNodes", 2, &Driver::removeAllNodes},
                                                   {"setVisible", 8, &Driver::setVisible},
                                                   {"mask of a scene node", 10, &Driver::setMask},
                                                   {"scene node replaced by another", 3, &Driver::replaceNode},
                                                   {"other plan", 8, &Driver::setPlan},
                                                   {"other filter", 5, &Driver::setFilter},
                                                   {"child added by the host", 1, &Driver::addForeignChild},
                                                   {"mask of the root set by the host", 1, &Driver::setRootMask},
                                                   {"destroyed and made anew", 1, &Driver::makeAnew},
                                                   {"node added from inside a hook", 6, &Driver::react}};
        return all;
    }

    static std::vector<std::string> branches()
    {
        std::vector<std::string> names = AbstractSelectionVisualisationModel::branches();
        names.emplace_back("visualisation used again");
        names.emplace_back("node added from inside");
        return names;
    }

    explicit Driver(ModelCoverage& coverage)
        : m_coverage(coverage)
        , m_world(std::make_unique<World>())
    {
        m_world->onLibraryCall = [this] { m_reactions.onLibraryCall(); };
        m_world->onModelCall = [this](int node) {
            m_insideNodes.push_back(node);
            m_reactions.onModelCall([this] { return decide(); });
            m_insideNodes.pop_back();
        };
        for (std::size_t slot = 0; slot < m_nodes.size(); ++slot) {
            createNode(slot);
        }
        make();
    }

    void compare()
    {
        requireSame("the calls", m_log.take(), m_expectedLog.take());
        requireSame("the changes", takeChanges(), m_model->takeChanges());
        requireSame("standard error", StandardError::take(), withIds(m_model->takeMessages()));
        requireSame("visible", m_kind->AbstractSelectionVisualisation::isVisible(), m_model->getRootMask() == allOnes);
        for (const NodeRef& node : m_nodes) {
            requireSame("tracked", m_kind->hasNode(node), m_model->hasNode(m_world->numberOf(node)));
        }
        requireSame("null tracked", m_kind->hasNode(osg::NullFC), false);
        requireSame("the root's count", osg::getRefCount(m_kind->getVisualisation()), 1);
        compareScene(m_kind->getVisualisation());
    }

    void finish()
    {
        destroy(false);
        m_nodes = {};
        m_world.reset();
        requireSame("containers left behind", m_changes.countMore(), 0L);
    }

private:
    void make()
    {
        m_changes.skip();
        m_kind = std::make_unique<Kind>(m_log, *m_world);
        m_model = std::make_unique<KindModel>(
            m_expectedLog, *m_world,
            AbstractSelectionVisualisationModel::Scene{[this](int node) { return m_alive.count(node) == 1; },
                                                       [this](int node) { return m_masks.at(node); }},
            m_coverage);
        m_root = m_kind->getVisualisation();
        requireSame("the root's core",
                    m_root->getCore() != osg::NullFC &&
                        m_root->getCore()->getType().isDerivedFrom(osg::Group::getClassType()),
                    true);
        compare();
    }

    // Nothing is called and nothing detached: where the host holds the root, what is below stays there.
    void destroy(bool isRootHeld)
    {
        const osg::UInt32 rootId = osg::getContainerId(m_root);
        NodeRef held;
        if (isRootHeld) {
            held = m_root;
        }
        m_kind.reset();
        m_model->destroy(isRootHeld);
        m_model->releaseOwned();
        requireSame("the calls of the destructor", m_log.take(), m_expectedLog.take());
        if (isRootHeld) {
            requireSame("the changes of the destructor", takeChanges(), std::vector<std::string>());
            requireSame("the root's count", osg::getRefCount(held.get()), 1);
            compareScene(m_root);
            held = NodeRef();
            m_model->destroy(false);
        }
        requireSame("the root exists", quon::testing::exists(rootId), false);
        requireSame("visualisation nodes left in the model", m_model->visualisations().size(), std::size_t(0));
        for (const auto& visualisation : m_world->ids) {
            requireSame("a visualisation node exists", quon::testing::exists(visualisation.second), false);
        }
        m_world->visualisations.clear();
        m_world->ids.clear();
    }

    void compareScene(const osg::NodePtr& root)
    {
        requireSame("the root's mask", root->getTravMask(), m_model->getRootMask());
        std::vector<int> children;
        for (osg::UInt32 index = 0; index < root->getNChildren(); ++index) {
            children.push_back(m_world->visualisationOf(root->getChild(index)));
        }
        requireSame("the children of the root", children, m_model->getChildren());
        for (const auto& [number, id] : m_world->ids) {
            const auto expected = m_model->visualisations().find(number);
            const bool isAlive = expected != m_model->visualisations().end();
            requireSame("a visualisation node exists", quon::testing::exists(id), isAlive);
            if (isAlive) {
                const osg::NodePtr node = osg::NodePtr::dcast(osg::FieldContainerFactory::the()->getContainer(id));
                requireSame("the mask of a visualisation node", node->getTravMask(), expected->second.mask);
                requireSame("the count of a visualisation node", osg::getRefCount(node), expected->second.references);
            }
        }
    }

    std::vector<std::string> takeChanges()
    {
        std::vector<std::string> changes;
        for (const SceneChanges::Change& change : m_changes.take()) {
            const auto visualisation = m_world->visualisations.find(change.first);
            std::string name = "container " + std::to_string(change.first);
            if (change.first == osg::getContainerId(m_root)) {
                name = "root";
            } else if (change.first == osg::getContainerId(m_world->elsewhere.get())) {
                name = "elsewhere";
            } else if (visualisation != m_world->visualisations.end()) {
                name = visualisationNameOf(visualisation->second);
            }
            const std::string field = change.second == osg::Node::ChildrenFieldMask   ? "Children"
                                      : change.second == osg::Node::TravMaskFieldMask ? "TravMask"
                                      : change.second == osg::Node::CoreFieldMask
                                          ? "Core"
                                          : "mask " + std::to_string(change.second);
            changes.push_back(name.append(" ").append(field));
        }
        return changes;
    }

    // The model knows no container ids.
    std::string withIds(std::string messages) const
    {
        for (std::size_t start = messages.find("(n"); start != std::string::npos; start = messages.find("(n")) {
            const std::size_t end = messages.find(')', start);
            const int number = std::stoi(messages.substr(start + 2, end - start - 2));
            messages.replace(start + 1, end - start - 1, std::to_string(m_ids.at(number)));
        }
        return messages;
    }

    void createNode(std::size_t slot)
    {
        m_nodes[slot] = quon::testing::makeNode(osg::Group::create());
        const int number = ++m_lastNode;
        m_ids[number] = osg::getContainerId(m_nodes[slot].get());
        m_world->numbers[m_ids[number]] = number;
        m_alive.insert(number);
        m_masks[number] = allOnes;
    }

    // Sometimes none.
    osg::NodePtr nodeOf(const ModelStep& step) const
    {
        return step.isRare(1, 8) ? osg::NodePtr() : m_nodes[step.pick(0, m_nodes.size())].get();
    }

    void addNode(const ModelStep& step)
    {
        m_reactions.carryOut([&](bool isLibrary) {
            isLibrary ? m_kind->addNode(nodeOf(step)) : m_model->addNode(m_world->numberOf(nodeOf(step)));
        });
    }

    void removeNode(const ModelStep& step)
    {
        m_reactions.carryOut([&](bool isLibrary) {
            isLibrary ? m_kind->removeNode(nodeOf(step)) : m_model->removeNode(m_world->numberOf(nodeOf(step)));
        });
    }

    void updateNode(const ModelStep& step)
    {
        m_reactions.carryOut([&](bool isLibrary) {
            isLibrary ? m_kind->updateNode(nodeOf(step)) : m_model->updateNode(m_world->numberOf(nodeOf(step)));
        });
    }

    void updateAllNodes(const ModelStep&)
    {
        m_reactions.carryOut(
            [this](bool isLibrary) { isLibrary ? m_kind->updateAllNodes() : m_model->updateAllNodes(); });
    }

    void removeAllNodes(const ModelStep&)
    {
        m_reactions.carryOut(
            [this](bool isLibrary) { isLibrary ? m_kind->removeAllNodes() : m_model->removeAllNodes(); });
    }

    void setVisible(const ModelStep& step)
    {
        const bool visible = step.pick(0, 3) != 1;
        m_reactions.carryOut(
            [&](bool isLibrary) { isLibrary ? m_kind->setVisible(visible) : m_model->setVisible(visible); });
    }

    void setMask(const ModelStep& step)
    {
        static const std::array<unsigned, 5> masks = {allOnes, allOnes, 0, allOnes - 1, 1};
        const NodeRef& node = m_nodes[step.pick(0, m_nodes.size())];
        node->setTravMask(masks[step.pick(1, masks.size())]);
        m_masks[m_world->numberOf(node)] = masks[step.pick(1, masks.size())];
    }

    void replaceNode(const ModelStep& step)
    {
        const std::size_t slot = step.pick(0, m_nodes.size());
        m_alive.erase(m_world->numberOf(m_nodes[slot]));
        m_nodes[slot] = NodeRef();
        createNode(slot);
        m_changes.skip();
    }

    void setPlan(const ModelStep& step) { m_world->plan = static_cast<Plan>(step.pick(0, 5)); }

    void setFilter(const ModelStep& step)
    {
        const int node = m_world->numberOf(m_nodes[step.pick(0, m_nodes.size())]);
        if (step.pick(1, 2) == 1) {
            m_world->refused.insert(node);
        } else {
            m_world->refused.erase(node);
        }
    }

    void addForeignChild(const ModelStep&)
    {
        const osg::NodePtr child = osg::Node::create();
        m_world->enter(child);
        m_root->addChild(child);
        m_model->addForeignChild();
    }

    void setRootMask(const ModelStep& step)
    {
        static const std::array<unsigned, 4> masks = {allOnes, 2, allOnes - 1, 0};
        m_root->setTravMask(masks[step.pick(0, masks.size())]);
        m_model->setRootMask(masks[step.pick(0, masks.size())]);
    }

    void makeAnew(const ModelStep& step)
    {
        destroy(step.pick(0, 2) == 1);
        make();
    }

    // A hook may add nodes other than those that it is called for.
    ModelReactions::Action decide()
    {
        if (m_pending.empty()) {
            return {};
        }
        const osg::NodePtr node = m_nodes[m_pending.back().pick(0, m_nodes.size())].get();
        const int number = m_world->numberOf(node);
        for (const int inside : m_insideNodes) {
            if (inside == number) {
                return {};
            }
        }
        m_pending.pop_back();
        m_coverage.see("node added from inside");
        return [this, node, number](bool isLibrary) { isLibrary ? m_kind->addNode(node) : m_model->addNode(number); };
    }

    void react(const ModelStep& step)
    {
        if (m_pending.size() < 2) {
            m_pending.push_back(step);
        }
    }

    ModelCoverage& m_coverage;
    SceneChanges m_changes;
    ModelReactions m_reactions;
    std::vector<ModelStep> m_pending;
    std::vector<int> m_insideNodes;
    CallLog m_log;
    CallLog m_expectedLog;
    std::unique_ptr<World> m_world;
    std::array<NodeRef, 5> m_nodes;
    int m_lastNode = 0;
    std::map<int, osg::UInt32> m_ids;
    std::set<int> m_alive;
    std::map<int, unsigned> m_masks;
    std::unique_ptr<Kind> m_kind;
    std::unique_ptr<KindModel> m_model;
    osg::NodePtr m_root;
};

TEST(AbstractSelectionVisualisationModelTest, AnySequenceOfCallsMatchesTheModel)
{
    quon::testing::runModel<Driver>();
}

} // namespace
