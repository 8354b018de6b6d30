// SPDX-License-Identifier: MIT
#include "InteractionManagerModel.h"
#include "AbstractInteractionContextModel.h"
#include "ModelReactions.h"

#include <Interaction/AbstractInteractionContext.h>
#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/RecordingNotificationListener.h>
#include <InteractionTesting/SceneBuilder.h>

#include <OpenSG/OSGConfig.h>

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNode.h>

#include <array>
#include <climits>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using quon::interaction::AbstractInteractionContext;
using quon::interaction::InteractionEvent;
using quon::interaction::InteractionManager;
using quon::testing::AbstractInteractionContextModel;
using quon::testing::CallLog;
using quon::testing::EventModel;
using quon::testing::InteractionManagerModel;
using quon::testing::ModelCoverage;
using quon::testing::ModelOperation;
using quon::testing::ModelReactions;
using quon::testing::ModelStep;
using quon::testing::NodeRef;
using quon::testing::NotificationsModel;
using quon::testing::RecordingNotificationListener;
using quon::testing::model::requireSame;

constexpr std::size_t contextCount = 5;
constexpr std::size_t managerCount = 2;

const std::vector<int> positions = {0, -200, 100, 0, 100, -1, 1, INT_MIN, INT_MAX};
const std::vector<std::string> descriptions = {"", "described", "otherwise"};
const std::vector<std::string> categories = {"tool", "tool:hint", "a:b:c", ":x", "x:", ""};
const std::vector<std::string> eventNames = {"start", "stop:now", ""};

// What a context may be in when it reacts; the rare ones several times.
const std::vector<std::string> contextOperations = {
    "triggerEvent",   "pointerMoved",   "contextLowered", "contextLowered", "contextLowered", "contextRaised",
    "contextLowered", "contextRemoved", "enabled",        "disabled",       "cameraMoved",    "contextAdded"};

/** What both sides of a context share. */
struct ContextWorld {
    std::string name;
    bool isConsuming = false;
    /// Called from inside each call, after it had its effect: with the name of the operation.
    std::function<void(const std::string& operation)> onCall;
    std::function<std::string(const InteractionManager* manager)> nameOf;
};

/** Logs every call of the manager, then does what the base does. */
class LoggedContext final : public AbstractInteractionContext {
public:
    LoggedContext(CallLog& log, const ContextWorld& world, int position)
        : AbstractInteractionContext(static_cast<PreferredPosition>(position))
        , m_log(log)
        , m_world(world)
    {}

    void enabled(InteractionManager* manager) override
    {
        log("enabled", manager);
        AbstractInteractionContext::enabled(manager);
        m_world.onCall("enabled");
    }

    void disabled(InteractionManager* manager) override
    {
        log("disabled", manager);
        AbstractInteractionContext::disabled(manager);
        m_world.onCall("disabled");
    }

    void contextAdded(InteractionManager* manager) override
    {
        log("contextAdded", manager);
        AbstractInteractionContext::contextAdded(manager);
        m_world.onCall("contextAdded");
    }

    void contextRemoved(InteractionManager* manager) override
    {
        log("contextRemoved", manager);
        AbstractInteractionContext::contextRemoved(manager);
        m_world.onCall("contextRemoved");
    }

    void contextRaised(InteractionManager* manager) override
    {
        log("contextRaised", manager);
        AbstractInteractionContext::contextRaised(manager);
        m_world.onCall("contextRaised");
    }

    void contextLowered(InteractionManager* manager) override
    {
        log("contextLowered", manager);
        AbstractInteractionContext::contextLowered(manager);
        m_world.onCall("contextLowered");
    }

    void pointerMoved(const osg::Pnt2f& position) override
    {
        m_log.call(m_world.name, "pointerMoved", position[0], position[1]);
        AbstractInteractionContext::pointerMoved(position);
        m_world.onCall("pointerMoved");
    }

    void cameraMoved(const osg::Matrix& camera) override
    {
        m_log.call(m_world.name, "cameraMoved", camera[3][0], camera[3][1], camera[3][2]);
        AbstractInteractionContext::cameraMoved(camera);
        m_world.onCall("cameraMoved");
    }

    bool triggerEvent(InteractionManager* manager, const InteractionEvent& event) override
    {
        m_log.call(m_world.name, "triggerEvent", m_world.nameOf(manager), event.getCategory(), event.getEvent(),
                   event.getTool(), event.getHint());
        const bool taken = AbstractInteractionContext::triggerEvent(manager, event);
        m_world.onCall("triggerEvent");
        return taken || m_world.isConsuming;
    }

    PreferredPosition getPreferredPosition() const override
    {
        m_log.call(m_world.name, "getPreferredPosition");
        return AbstractInteractionContext::getPreferredPosition();
    }

    // A manager asks none of these.
    bool isRaised() const override { return log("isRaised"), AbstractInteractionContext::isRaised(); }
    bool isActive() const override { return log("isActive"), AbstractInteractionContext::isActive(); }
    bool isEnabled() const override { return log("isEnabled"), AbstractInteractionContext::isEnabled(); }
    InteractionManager* getInteractionManager() const override
    {
        return log("getInteractionManager"), AbstractInteractionContext::getInteractionManager();
    }

private:
    void log(const std::string& query) const { m_log.call(m_world.name, query); }

    void log(const std::string& operation, const InteractionManager* manager) const
    {
        m_log.call(m_world.name, operation, m_world.nameOf(manager));
    }

    CallLog& m_log;
    const ContextWorld& m_world;
};

std::string nameOfManager(int manager)
{
    return manager == 0 ? "null" : "m" + std::to_string(manager);
}

/** The same, on the side of the model. */
class LoggedContextModel final : public AbstractInteractionContextModel {
public:
    LoggedContextModel(CallLog& log, const ContextWorld& world, NotificationsModel& notifications, int position,
                       ModelCoverage& coverage)
        : AbstractInteractionContextModel(notifications, position, coverage)
        , m_log(log)
        , m_world(world)
    {}

    void enabled(int manager) override
    {
        log("enabled", manager);
        AbstractInteractionContextModel::enabled(manager);
        m_world.onCall("enabled");
    }

    void disabled(int manager) override
    {
        log("disabled", manager);
        AbstractInteractionContextModel::disabled(manager);
        m_world.onCall("disabled");
    }

    void contextAdded(int manager) override
    {
        log("contextAdded", manager);
        AbstractInteractionContextModel::contextAdded(manager);
        m_world.onCall("contextAdded");
    }

    void contextRemoved(int manager) override
    {
        log("contextRemoved", manager);
        AbstractInteractionContextModel::contextRemoved(manager);
        m_world.onCall("contextRemoved");
    }

    void contextRaised(int manager) override
    {
        log("contextRaised", manager);
        AbstractInteractionContextModel::contextRaised(manager);
        m_world.onCall("contextRaised");
    }

    void contextLowered(int manager) override
    {
        log("contextLowered", manager);
        AbstractInteractionContextModel::contextLowered(manager);
        m_world.onCall("contextLowered");
    }

    void pointerMoved(int x, int y) override
    {
        m_log.call(m_world.name, "pointerMoved", x, y);
        m_world.onCall("pointerMoved");
    }

    void cameraMoved(int x, int y, int z) override
    {
        m_log.call(m_world.name, "cameraMoved", x, y, z);
        m_world.onCall("cameraMoved");
    }

    bool triggerEvent(int manager, const EventModel& event) override
    {
        m_log.call(m_world.name, "triggerEvent", nameOfManager(manager), event.category, event.name, event.tool,
                   event.hint);
        m_world.onCall("triggerEvent");
        return m_world.isConsuming;
    }

    int getPreferredPosition() override
    {
        m_log.call(m_world.name, "getPreferredPosition");
        return AbstractInteractionContextModel::getPreferredPosition();
    }

private:
    void log(const std::string& operation, int manager) { m_log.call(m_world.name, operation, nameOfManager(manager)); }

    CallLog& m_log;
    const ContextWorld& m_world;
};

class Driver {
public:
    using Operation = ModelOperation<Driver>;

    static const std::vector<Operation>& operations()
    {
        static const std::vector<Operation> all = {{"addContext", 16, &Driver::addContext},
                                                   {"raiseContext", 8, &Driver::raiseContext},
                                                   {"removeContext", 9, &Driver::removeContext},
                                                   {"pointerMoved", 4, &Driver::pointerMoved},
                                                   {"cameraMoved", 2, &Driver::cameraMoved},
                                                   {"triggerEvent", 8, &Driver::triggerEvent},
                                                   {"enable", 6, &Driver::enable},
                                                   {"disable", 6, &Driver::disable},
                                                   {"setVisualisationRoot", 2, &Driver::setVisualisationRoot},
                                                   {"setPresenterMode", 1, &Driver::setPresenterMode},
                                                   {"consuming", 4, &Driver::setConsuming},
                                                   {"setPreferredPosition", 4, &Driver::setPreferredPosition},
                                                   {"setDescription", 8, &Driver::setDescription},
                                                   {"direct call", 4, &Driver::callDirectly},
                                                   {"reaction from inside a call", 14, &Driver::react},
                                                   {"destroyed and made anew", 2, &Driver::makeAnew}};
        return all;
    }

    static std::vector<std::string> branches()
    {
        std::vector<std::string> names = AbstractInteractionContextModel::branches();
        const std::vector<std::string> others = InteractionManagerModel::branches();
        names.insert(names.end(), others.begin(), others.end());
        for (const std::string& operation : contextOperations) {
            names.push_back("reaction inside " + operation);
        }
        names.emplace_back("reaction without a defined result left out");
        return names;
    }

    explicit Driver(ModelCoverage& coverage)
        : m_coverage(coverage)
    {
        for (std::size_t index = 0; index < managerCount; ++index) {
            m_managerModels.push_back(std::make_unique<InteractionManagerModel>(static_cast<int>(index) + 1, coverage));
        }
        for (std::size_t index = 0; index < contextCount; ++index) {
            m_worlds[index].name = std::string(1, static_cast<char>('A' + index));
            m_worlds[index].nameOf = [this](const InteractionManager* manager) { return nameOf(manager); };
            m_modelWorlds[index] = m_worlds[index];
            m_worlds[index].onCall = [this](const std::string&) { m_reactions.onLibraryCall(); };
            m_modelWorlds[index].onCall = [this, index](const std::string& operation) {
                m_reactions.onModelCall([&] { return decide(index, operation); });
            };
            make(index, 0);
        }
        for (NodeRef& root : m_roots) {
            root = quon::testing::makeNode(osg::Group::create());
        }
        requireSame("the instance", InteractionManager::getInstance() == InteractionManager::getInstance(), true);
    }

    void compare()
    {
        requireSame("the calls", m_log.take(), m_expectedLog.take());
        for (std::size_t index = 0; index < contextCount; ++index) {
            const AbstractInteractionContext& context = *m_contexts[index];
            const AbstractInteractionContextModel& model = *m_contextModels[index];
            requireSame("raised", context.AbstractInteractionContext::isRaised(), model.isRaised());
            requireSame("active", context.AbstractInteractionContext::isActive(), model.isActive());
            requireSame("enabled", context.AbstractInteractionContext::isEnabled(), model.isEnabled());
            requireSame("the manager", nameOf(context.AbstractInteractionContext::getInteractionManager()),
                        nameOfManager(model.getInteractionManager()));
            requireSame("the description", context.getDescription(), model.getDescription());
            requireSame("the position", static_cast<int>(context.AbstractInteractionContext::getPreferredPosition()),
                        model.getPosition());
        }
        requireSame("the notifications", RecordingNotificationListener::getShown(), m_notifications.getShown());
        compareSettings();
    }

    void finish()
    {
        // Nothing else shows the order of the whole stack.
        m_pending.clear();
        for (std::size_t index = 0; index < managerCount; ++index) {
            m_reactions.carryOut([&](bool isLibrary) {
                isLibrary ? m_managers[index].pointerMoved(osg::Pnt2f(1, 2))
                          : m_managerModels[index]->pointerMoved(1, 2);
            });
        }
        compare();
    }

private:
    using Action = ModelReactions::Action;

    struct Reaction {
        std::size_t context;
        std::string operation;
        ModelStep action;
    };

    std::string nameOf(const InteractionManager* manager) const
    {
        for (std::size_t index = 0; index < managerCount; ++index) {
            if (manager == &m_managers[index]) {
                return nameOfManager(static_cast<int>(index) + 1);
            }
        }
        return manager == nullptr ? "null" : "unknown";
    }

    void make(std::size_t index, int position)
    {
        m_contexts[index] = std::make_unique<LoggedContext>(m_log, m_worlds[index], position);
        m_contextModels[index] = std::make_unique<LoggedContextModel>(m_expectedLog, m_modelWorlds[index],
                                                                      m_notifications, position, m_coverage);
    }

    void compareSettings()
    {
        for (std::size_t index = 0; index < managerCount; ++index) {
            const osg::NodePtr root = m_managers[index].getVisualisationRoot();
            const std::size_t expected = m_rootOfManager[index];
            requireSame("the visualisation root",
                        expected == 0 ? root == osg::NullFC : root == m_roots[expected - 1].get(), true);
            requireSame("presenter mode", m_managers[index].getPresenterMode(), m_isPresenting[index]);
        }
        for (std::size_t root = 0; root < m_roots.size(); ++root) {
            int count = 1;
            for (const std::size_t held : m_rootOfManager) {
                count += held == root + 1 ? 1 : 0;
            }
            requireSame("the count of a visualisation root", osg::getRefCount(m_roots[root].get()), count);
        }
    }

    // Left out is what has no defined result at that place.
    Action decide(std::size_t context, const std::string& operation)
    {
        for (std::size_t index = 0; index < m_pending.size(); ++index) {
            if (m_pending[index].context == context && m_pending[index].operation == operation) {
                const ModelStep step = m_pending[index].action;
                m_pending.erase(m_pending.begin() + static_cast<std::ptrdiff_t>(index));
                m_coverage.see(isDefined(step) ? "reaction inside " + operation
                                               : "reaction without a defined result left out");
                return isDefined(step) ? actionOf(step) : Action();
            }
        }
        return {};
    }

    static std::size_t managerOf(const ModelStep& step) { return step.isRare(5, 60) ? 1 : 0; }
    static std::size_t contextOf(const ModelStep& step) { return step.pick(0, contextCount); }

    bool isDefined(const ModelStep& step) const
    {
        const InteractionManagerModel& manager = *m_managerModels[managerOf(step)];
        const std::size_t kind = step.pick(1, 8);
        return kind > 2 || (manager.mayChange() && (kind != 2 || manager.mayRemove(*m_contextModels[contextOf(step)])));
    }

    // What a context does from inside, or the host from outside.
    Action actionOf(const ModelStep& step)
    {
        InteractionManager* const manager = &m_managers[managerOf(step)];
        InteractionManagerModel* const model = m_managerModels[managerOf(step)].get();
        const std::size_t context = contextOf(step);
        switch (step.pick(1, 8)) {
        case 0:
            return [=](bool isLibrary) {
                isLibrary ? manager->addContext(m_contexts[context].get())
                          : model->addContext(*m_contextModels[context]);
            };
        case 1:
            return [=](bool isLibrary) {
                isLibrary ? manager->raiseContext(m_contexts[context].get())
                          : model->raiseContext(*m_contextModels[context]);
            };
        case 2:
            return [=](bool isLibrary) {
                isLibrary ? manager->removeContext(m_contexts[context].get())
                          : model->removeContext(*m_contextModels[context]);
            };
        case 3:
            return [=](bool isLibrary) { isLibrary ? manager->enable() : model->enable(); };
        case 4:
            return [=](bool isLibrary) { isLibrary ? manager->disable() : model->disable(); };
        case 5:
            return [=](bool isLibrary) {
                isLibrary ? manager->pointerMoved(osg::Pnt2f(7, -8)) : model->pointerMoved(7, -8);
            };
        case 6: {
            const std::string& category = categories[step.pick(2, categories.size())];
            const std::string& name = eventNames[step.pick(3, eventNames.size())];
            return [=](bool isLibrary) {
                CallLog& log = isLibrary ? m_log : m_expectedLog;
                const bool taken = isLibrary ? manager->triggerEvent(InteractionEvent(category, name))
                                             : model->triggerEvent(EventModel(category, name));
                log.call("manager", "took", taken);
            };
        }
        default: {
            const std::string& description = descriptions[step.pick(2, descriptions.size())];
            return [=](bool isLibrary) {
                isLibrary ? m_contexts[context]->setDescription(description)
                          : m_contextModels[context]->setDescription(description);
            };
        }
        }
    }

    void carryOutKind(std::uint8_t kind, ModelStep step)
    {
        step.numbers[1] = kind;
        m_reactions.carryOut(actionOf(step));
    }

    void addContext(const ModelStep& step) { carryOutKind(0, step); }
    void raiseContext(const ModelStep& step) { carryOutKind(1, step); }
    void removeContext(const ModelStep& step) { carryOutKind(2, step); }
    void enable(const ModelStep& step) { carryOutKind(3, step); }
    void disable(const ModelStep& step) { carryOutKind(4, step); }
    void pointerMoved(const ModelStep& step) { carryOutKind(5, step); }
    void triggerEvent(const ModelStep& step) { carryOutKind(6, step); }
    void setDescription(const ModelStep& step) { carryOutKind(7, step); }

    void cameraMoved(const ModelStep& step)
    {
        const std::array<int, 3> place = {static_cast<int>(step.pick(0, 3)), static_cast<int>(step.pick(1, 3)), -5};
        m_reactions.carryOut([&](bool isLibrary) {
            osg::Matrix camera;
            camera.setTranslate(static_cast<float>(place[0]), static_cast<float>(place[1]),
                                static_cast<float>(place[2]));
            isLibrary ? m_managers[managerOf(step)].cameraMoved(camera)
                      : m_managerModels[managerOf(step)]->cameraMoved(place[0], place[1], place[2]);
        });
    }

    void setVisualisationRoot(const ModelStep& step)
    {
        const std::size_t root = step.pick(0, m_roots.size() + 1);
        m_rootOfManager[managerOf(step)] = root;
        m_managers[managerOf(step)].setVisualisationRoot(root == 0 ? osg::NodePtr() : m_roots[root - 1].get());
    }

    void setPresenterMode(const ModelStep& step)
    {
        m_isPresenting[managerOf(step)] = step.pick(0, 2) == 1;
        m_managers[managerOf(step)].setPresenterMode(step.pick(0, 2) == 1);
    }

    void setConsuming(const ModelStep& step)
    {
        m_worlds[contextOf(step)].isConsuming = step.pick(1, 3) == 1;
        m_modelWorlds[contextOf(step)].isConsuming = step.pick(1, 3) == 1;
    }

    void setPreferredPosition(const ModelStep& step)
    {
        const int position = positions[step.pick(1, positions.size())];
        m_contexts[contextOf(step)]->setPreferredPosition(
            static_cast<AbstractInteractionContext::PreferredPosition>(position));
        m_contextModels[contextOf(step)]->setPreferredPosition(position);
    }

    // A context is told by somebody else, who names no manager.
    void callDirectly(const ModelStep& step)
    {
        const std::size_t context = contextOf(step);
        m_reactions.carryOut([&](bool isLibrary) {
            LoggedContext& library = *m_contexts[context];
            LoggedContextModel& model = *m_contextModels[context];
            switch (step.pick(1, 6)) {
            case 0:
                return isLibrary ? library.contextRaised(nullptr) : model.contextRaised(0);
            case 1:
                return isLibrary ? library.contextLowered(nullptr) : model.contextLowered(0);
            case 2:
                return isLibrary ? library.enabled(nullptr) : model.enabled(0);
            case 3:
                return isLibrary ? library.disabled(nullptr) : model.disabled(0);
            case 4:
                return isLibrary ? library.contextAdded(nullptr) : model.contextAdded(0);
            default:
                return isLibrary ? library.contextRemoved(nullptr) : model.contextRemoved(0);
            }
        });
    }

    void react(const ModelStep& step)
    {
        if (m_pending.size() < 6) {
            ModelStep action = step;
            // What is done depends on other numbers than where it is done; often it is done to the context itself.
            action.numbers = {step.pick(4, 2) == 1 ? step.numbers[0] : step.numbers[2],
                              step.numbers[3],
                              step.numbers[2],
                              step.numbers[4],
                              step.numbers[4],
                              step.numbers[5]};
            m_pending.push_back({contextOf(step), contextOperations[step.pick(1, contextOperations.size())], action});
        }
    }

    void makeAnew(const ModelStep& step)
    {
        const std::size_t context = contextOf(step);
        for (const auto& manager : m_managerModels) {
            if (manager->has(*m_contextModels[context])) {
                return;
            }
        }
        m_contexts[context].reset();
        m_contextModels[context]->destroy();
        make(context, positions[step.pick(1, positions.size())]);
    }

    ModelCoverage& m_coverage;
    CallLog m_log;
    CallLog m_expectedLog;
    RecordingNotificationListener m_listener{m_log};
    NotificationsModel m_notifications{m_expectedLog};
    std::array<NodeRef, 2> m_roots;
    std::array<InteractionManager, managerCount> m_managers;
    std::vector<std::unique_ptr<InteractionManagerModel>> m_managerModels;
    std::array<std::size_t, managerCount> m_rootOfManager = {0, 0};
    std::array<bool, managerCount> m_isPresenting = {false, false};
    std::array<ContextWorld, contextCount> m_worlds;
    std::array<ContextWorld, contextCount> m_modelWorlds;
    std::array<std::unique_ptr<LoggedContext>, contextCount> m_contexts;
    std::array<std::unique_ptr<LoggedContextModel>, contextCount> m_contextModels;
    ModelReactions m_reactions;
    std::vector<Reaction> m_pending;
};

TEST(InteractionManagerModelTest, AnySequenceOfCallsMatchesTheModel)
{
    quon::testing::runModel<Driver>();
}

} // namespace
