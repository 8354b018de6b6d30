// SPDX-License-Identifier: MIT
#include "ToolInteractionContextModel.h"
#include "InteractionManagerModel.h"
#include "ModelReactions.h"

#include <Interaction/AbstractInteractionTool.h>
#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/ToolInteractionContext.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/ObjectNames.h>
#include <InteractionTesting/RecordingNotificationListener.h>
#include <InteractionTesting/RecordingPicker.h>

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using quon::interaction::AbstractInteractionTool;
using quon::interaction::InteractionEvent;
using quon::interaction::InteractionManager;
using quon::interaction::Picker;
using quon::interaction::ToolInteractionContext;
using quon::testing::AbstractInteractionToolModel;
using quon::testing::CallLog;
using quon::testing::EventModel;
using quon::testing::InteractionManagerModel;
using quon::testing::ModelCoverage;
using quon::testing::ModelOperation;
using quon::testing::ModelReactions;
using quon::testing::ModelStep;
using quon::testing::NotificationsModel;
using quon::testing::ObjectNames;
using quon::testing::RecordingNotificationListener;
using quon::testing::RecordingPicker;
using quon::testing::ToolInteractionContextModel;
using quon::testing::model::requireSame;

constexpr std::size_t contextCount = 2;
constexpr std::size_t toolCount = 3;

const std::vector<std::string> modes = {"measure", "measure", "move", ""};
const std::vector<std::string> hints = {"select", "toggle", "", "Select", "select ", "a:b", std::string("select\0", 7)};
const std::vector<std::string> toolCategories = {"tool", "Tool", "", "mode"};
const std::vector<std::string> modeCategories = {"mode", "modes", "", "tool"};
const std::vector<std::string> eventNames = {"start",     "stop",  "trigger", "process", "hover",
                                             "stopHover", "press", "Start",   ""};
const std::vector<std::string> descriptions = {"", "described", "otherwise"};

std::string nameOfContext(int context)
{
    return context == 0 ? "null" : "c" + std::to_string(context);
}

/** What both sides of a tool share. */
struct ToolWorld {
    std::string name;
    std::optional<bool> answer; ///< in place of that of the base
    std::function<void(const std::string& operation)> onCall;
    std::function<std::string(const ToolInteractionContext* context)> nameOf;
};

/** Logs every call of a context, then does what the base does. */
class LoggedTool final : public AbstractInteractionTool {
public:
    LoggedTool(CallLog& log, const ToolWorld& world)
        : m_log(log)
        , m_world(world)
    {}

    bool setToolMode(ToolInteractionContext* context, const std::string& mode) override
    {
        log("setToolMode", context, mode);
        return answer("setToolMode", AbstractInteractionTool::setToolMode(context, mode));
    }

    void activateTool(ToolInteractionContext* context) override
    {
        m_log.call(m_world.name, "activateTool", m_world.nameOf(context));
        AbstractInteractionTool::activateTool(context);
        m_world.onCall("activateTool");
    }

    void deactivateTool(ToolInteractionContext* context) override
    {
        m_log.call(m_world.name, "deactivateTool", m_world.nameOf(context));
        AbstractInteractionTool::deactivateTool(context);
        m_world.onCall("deactivateTool");
    }

    bool isActive() const override
    {
        m_log.call(m_world.name, "isActive");
        return AbstractInteractionTool::isActive();
    }

    bool startTool(ToolInteractionContext* context, const std::string& hint) override
    {
        log("startTool", context, hint);
        return answer("event", AbstractInteractionTool::startTool(context, hint));
    }

    bool processTool(ToolInteractionContext* context, const std::string& hint) override
    {
        log("processTool", context, hint);
        return answer("event", AbstractInteractionTool::processTool(context, hint));
    }

    bool stopTool(ToolInteractionContext* context, const std::string& hint) override
    {
        log("stopTool", context, hint);
        return answer("event", AbstractInteractionTool::stopTool(context, hint));
    }

    bool triggerTool(ToolInteractionContext* context, const std::string& hint) override
    {
        log("triggerTool", context, hint);
        return answer("event", AbstractInteractionTool::triggerTool(context, hint));
    }

    bool hoverTool(ToolInteractionContext* context, const std::string& hint) override
    {
        log("hoverTool", context, hint);
        return answer("event", AbstractInteractionTool::hoverTool(context, hint));
    }

    bool stopHoverTool(ToolInteractionContext* context, const std::string& hint) override
    {
        log("stopHoverTool", context, hint);
        return answer("event", AbstractInteractionTool::stopHoverTool(context, hint));
    }

    bool isPickHint(const std::string& hint) const override
    {
        m_log.call(m_world.name, "isPickHint");
        return AbstractInteractionTool::isPickHint(hint);
    }

private:
    void log(const std::string& operation, const ToolInteractionContext* context, const std::string& argument)
    {
        m_log.call(m_world.name, operation, m_world.nameOf(context), argument);
    }

    // The answer is that of the moment of the call, whatever happens from inside.
    bool answer(const std::string& operation, bool ofBase)
    {
        const bool answered = m_world.answer.value_or(ofBase);
        m_world.onCall(operation);
        return answered;
    }

    CallLog& m_log;
    const ToolWorld& m_world;
};

/** The same, on the side of the model. */
class LoggedToolModel final : public AbstractInteractionToolModel {
public:
    LoggedToolModel(CallLog& log, const ToolWorld& world, NotificationsModel& notifications, ModelCoverage& coverage)
        : AbstractInteractionToolModel(notifications, coverage)
        , m_log(log)
        , m_world(world)
    {}

    bool setToolMode(int context, const std::string& mode) override
    {
        m_log.call(m_world.name, "setToolMode", nameOfContext(context), mode);
        return answer("setToolMode", AbstractInteractionToolModel::setToolMode(context, mode));
    }

    void activateTool(int context) override
    {
        m_log.call(m_world.name, "activateTool", nameOfContext(context));
        AbstractInteractionToolModel::activateTool(context);
        m_world.onCall("activateTool");
    }

    void deactivateTool(int context) override
    {
        m_log.call(m_world.name, "deactivateTool", nameOfContext(context));
        AbstractInteractionToolModel::deactivateTool(context);
        m_world.onCall("deactivateTool");
    }

    bool carryOut(const std::string& operation, int context, const std::string& hint) override
    {
        m_log.call(m_world.name, operation, nameOfContext(context), hint);
        return answer("event", AbstractInteractionToolModel::carryOut(operation, context, hint));
    }

private:
    bool answer(const std::string& operation, bool ofBase)
    {
        const bool answered = m_world.answer.value_or(ofBase);
        m_world.onCall(operation);
        return answered;
    }

    CallLog& m_log;
    const ToolWorld& m_world;
};

// Final, as what is destroyed through its own class has to be.
class Context final : public ToolInteractionContext {
public:
    using ToolInteractionContext::ToolInteractionContext;
};

class Driver {
public:
    using Operation = ModelOperation<Driver>;

    static const std::vector<Operation>& operations()
    {
        static const std::vector<Operation> all = {{"setTool", 10, &Driver::setTool},
                                                   {"addContext", 7, &Driver::addContext},
                                                   {"removeContext", 6, &Driver::removeContext},
                                                   {"raiseContext", 2, &Driver::raiseContext},
                                                   {"enable and disable", 2, &Driver::enable},
                                                   {"event to the manager", 12, &Driver::triggerManager},
                                                   {"event to a context", 12, &Driver::triggerContext},
                                                   {"startMode", 10, &Driver::startMode},
                                                   {"stopMode", 4, &Driver::stopMode},
                                                   {"contextAdded by somebody else", 2, &Driver::contextAdded},
                                                   {"contextRemoved by somebody else", 2, &Driver::contextRemoved},
                                                   {"description of a tool", 6, &Driver::setToolDescription},
                                                   {"displayDescription of a tool", 4, &Driver::displayToolDescription},
                                                   {"description of a context", 2, &Driver::setDescription},
                                                   {"tool activated by somebody else", 2, &Driver::activateTool},
                                                   {"tool deactivated by somebody else", 2, &Driver::deactivateTool},
                                                   {"operation of a tool by somebody else", 2, &Driver::callTool},
                                                   {"isPickHint", 1, &Driver::isPickHint},
                                                   {"answer of a tool", 6, &Driver::setAnswer},
                                                   {"setToolCategory", 1, &Driver::setToolCategory},
                                                   {"setModeCategory", 1, &Driver::setModeCategory},
                                                   {"setPicker", 1, &Driver::setPicker},
                                                   {"reaction from inside a call", 12, &Driver::react},
                                                   {"tool destroyed and made anew", 3, &Driver::makeAnew}};
        return all;
    }

    static std::vector<std::string> branches()
    {
        std::vector<std::string> names = ToolInteractionContextModel::toolBranches();
        const std::vector<std::string> others = AbstractInteractionToolModel::branches();
        names.insert(names.end(), others.begin(), others.end());
        for (const char* name :
             {"reaction inside activateTool", "reaction inside deactivateTool", "reaction inside setToolMode",
              "reaction inside event", "reaction without a defined result left out"}) {
            names.emplace_back(name);
        }
        return names;
    }

    explicit Driver(ModelCoverage& coverage)
        : m_coverage(coverage)
        , m_managerCoverage(InteractionManagerModel::branches())
        , m_baseCoverage(ToolInteractionContextModel::branches())
        , m_modeCoverage(ToolInteractionContextModel::modeBranches())
        , m_managerModel(1, m_managerCoverage)
    {
        for (std::size_t index = 0; index < toolCount; ++index) {
            m_worlds[index].name = "t" + std::to_string(index + 1);
            m_worlds[index].nameOf = [this](const ToolInteractionContext* context) { return nameOf(context); };
            m_modelWorlds[index] = m_worlds[index];
            m_worlds[index].onCall = [this](const std::string&) { m_reactions.onLibraryCall(); };
            m_modelWorlds[index].onCall = [this](const std::string& operation) {
                m_reactions.onModelCall([&] { return decide(operation); });
            };
            make(index);
        }
        for (std::size_t index = 0; index < contextCount; ++index) {
            m_contexts.push_back(std::make_unique<Context>(ToolInteractionContext::Tool));
            m_contextModels.push_back(std::make_unique<ToolInteractionContextModel>(
                static_cast<int>(index) + 1, m_notifications, 0, m_baseCoverage, m_modeCoverage, coverage));
        }
    }

    void compare()
    {
        requireSame("the calls", m_log.take(), m_expectedLog.take());
        for (std::size_t index = 0; index < contextCount; ++index) {
            const ToolInteractionContext& context = *m_contexts[index];
            const ToolInteractionContextModel& model = *m_contextModels[index];
            requireSame("the tool", numberOf(context.getTool()), numberOf(model.getTool()));
            requireSame("the tool category", context.getToolCategory(), model.getToolCategory());
            requireSame("the mode category", context.getModeCategory(), model.getModeCategory());
            requireSame("the picker", context.getPicker() == m_pickerOfContext[index], true);
            requireSame("active", context.isActive(), model.isActive());
            requireSame("raised", context.isRaised(), model.isRaised());
            requireSame("enabled", context.isEnabled(), model.isEnabled());
        }
        for (std::size_t index = 0; index < toolCount; ++index) {
            requireSame("a tool is active", m_tools[index]->AbstractInteractionTool::isActive(),
                        m_toolModels[index]->isActive());
        }
        requireSame("the notifications", RecordingNotificationListener::getShown(), m_notifications.getShown());
    }

    void finish()
    {
        m_pending.clear();
        for (std::size_t index = 0; index < contextCount; ++index) {
            // Nothing else shows the whole stack of modes.
            for (const std::string& mode : modes) {
                carryOut([&](bool isLibrary) {
                    return isLibrary ? m_contexts[index]->stopMode(mode) : m_contextModels[index]->stopMode(mode);
                });
            }
        }
        compare();
        // The end of a context does not touch its tool.
        m_contexts.clear();
        for (const auto& model : m_contextModels) {
            model->destroy();
        }
        requireSame("the calls", m_log.take(), m_expectedLog.take());
    }

private:
    using Action = ModelReactions::Action;
    using Call = std::function<bool(bool isLibrary)>;

    std::string nameOf(const ToolInteractionContext* context) const
    {
        for (std::size_t index = 0; index < m_contexts.size(); ++index) {
            if (context == m_contexts[index].get()) {
                return nameOfContext(static_cast<int>(index) + 1);
            }
        }
        return context == nullptr ? "null" : "unknown";
    }

    void make(std::size_t index)
    {
        m_tools[index] = std::make_unique<LoggedTool>(m_log, m_worlds[index]);
        m_toolModels[index] =
            std::make_unique<LoggedToolModel>(m_expectedLog, m_modelWorlds[index], m_notifications, m_coverage);
    }

    // From 1; 0 for none.
    std::size_t numberOf(const quon::interaction::InteractionTool* tool) const
    {
        for (std::size_t index = 0; index < toolCount; ++index) {
            if (tool == m_tools[index].get()) {
                return index + 1;
            }
        }
        return tool == nullptr ? 0 : 99;
    }

    std::size_t numberOf(const AbstractInteractionToolModel* tool) const
    {
        for (std::size_t index = 0; index < toolCount; ++index) {
            if (tool == m_toolModels[index].get()) {
                return index + 1;
            }
        }
        return tool == nullptr ? 0 : 99;
    }

    // What a call answers is compared along with the calls.
    Action logged(const Call& call)
    {
        return [this, call](bool isLibrary) {
            const bool result = call(isLibrary);
            (isLibrary ? m_log : m_expectedLog).call("driver", "answered", result);
        };
    }

    void carryOut(const Call& call) { m_reactions.carryOut(logged(call)); }

    Action decide(const std::string& operation)
    {
        if (m_pending.empty()) {
            return {};
        }
        const ModelStep step = m_pending.back();
        m_pending.pop_back();
        const ToolInteractionContextModel& context = *m_contextModels[step.pick(0, contextCount)];
        const std::size_t kind = step.pick(1, kindCount);
        if ((kind == 1 || kind == 2 || kind == 3) &&
            (!m_managerModel.mayChange() || (kind == 2 && !m_managerModel.mayRemove(context)))) {
            m_coverage.see("reaction without a defined result left out");
            return {};
        }
        m_coverage.see("reaction inside " + operation);
        return logged(callOf(step));
    }

    static constexpr std::size_t kindCount = 11;

    // What a tool does from inside, or the host from outside. Modes are stopped often.
    Call callOf(const ModelStep& step)
    {
        const std::size_t index = step.pick(0, contextCount);
        const std::size_t tool = step.pick(2, toolCount + 1);
        const std::string& mode = modes[step.pick(2, modes.size())];
        switch (step.pick(1, kindCount)) {
        case 0:
            return [=](bool isLibrary) {
                isLibrary ? m_contexts[index]->setTool(tool == 0 ? nullptr : m_tools[tool - 1].get())
                          : m_contextModels[index]->setTool(tool == 0 ? nullptr : m_toolModels[tool - 1].get());
                return true;
            };
        case 1:
            return [=](bool isLibrary) {
                isLibrary ? m_manager.addContext(m_contexts[index].get())
                          : m_managerModel.addContext(*m_contextModels[index]);
                return true;
            };
        case 2:
            return [=](bool isLibrary) {
                isLibrary ? m_manager.removeContext(m_contexts[index].get())
                          : m_managerModel.removeContext(*m_contextModels[index]);
                return true;
            };
        case 3:
            return [=](bool isLibrary) {
                isLibrary ? m_manager.raiseContext(m_contexts[index].get())
                          : m_managerModel.raiseContext(*m_contextModels[index]);
                return true;
            };
        case 4:
            return [=](bool isLibrary) {
                return isLibrary ? m_contexts[index]->startMode(mode) : m_contextModels[index]->startMode(mode);
            };
        case 5:
        case 9:
        case 10:
            return [=](bool isLibrary) {
                return isLibrary ? m_contexts[index]->stopMode(mode) : m_contextModels[index]->stopMode(mode);
            };
        case 6: {
            const auto [category, name] = eventOf(step);
            return [=, eventCategory = category, eventName = name](bool isLibrary) {
                return isLibrary
                           ? m_contexts[index]->triggerEvent(&m_manager, InteractionEvent(eventCategory, eventName))
                           : m_contextModels[index]->triggerEvent(1, EventModel(eventCategory, eventName));
            };
        }
        case 7: {
            const std::string& description = descriptions[step.pick(3, descriptions.size())];
            return [=](bool isLibrary) {
                isLibrary ? m_tools[tool % toolCount]->setDescription(description)
                          : m_toolModels[tool % toolCount]->setDescription(description);
                return true;
            };
        }
        default: {
            const std::string& description = descriptions[step.pick(3, descriptions.size())];
            return [=](bool isLibrary) {
                isLibrary ? m_tools[tool % toolCount]->displayDescription(description)
                          : m_toolModels[tool % toolCount]->displayDescription(description);
                return true;
            };
        }
        }
    }

    // Mostly one of the categories that the context listens to.
    std::pair<std::string, std::string> eventOf(const ModelStep& step) const
    {
        const ToolInteractionContextModel& context = *m_contextModels[step.pick(0, contextCount)];
        const std::string& name = eventNames[step.pick(3, eventNames.size())];
        switch (step.pick(4, 8)) {
        case 0:
            return {toolCategories[step.pick(5, toolCategories.size())], name};
        case 1:
        case 2:
        case 3:
            return {context.getModeCategory() + ":" + modes[step.pick(5, modes.size())], name};
        default:
            return {context.getToolCategory() + ":" + hints[step.pick(5, hints.size())], name};
        }
    }

    void carryOutKind(std::uint8_t kind, ModelStep step)
    {
        step.numbers[1] = kind;
        carryOut(callOf(step));
    }

    void setTool(const ModelStep& step) { carryOutKind(0, step); }
    void addContext(const ModelStep& step) { carryOutKind(1, step); }
    void removeContext(const ModelStep& step) { carryOutKind(2, step); }
    void raiseContext(const ModelStep& step) { carryOutKind(3, step); }
    void startMode(const ModelStep& step) { carryOutKind(4, step); }
    void stopMode(const ModelStep& step) { carryOutKind(5, step); }
    void triggerContext(const ModelStep& step) { carryOutKind(6, step); }
    void setToolDescription(const ModelStep& step) { carryOutKind(7, step); }
    void displayToolDescription(const ModelStep& step) { carryOutKind(8, step); }

    void enable(const ModelStep& step)
    {
        carryOut([&](bool isLibrary) {
            if (step.pick(0, 2) == 0) {
                isLibrary ? m_manager.enable() : m_managerModel.enable();
            } else {
                isLibrary ? m_manager.disable() : m_managerModel.disable();
            }
            return true;
        });
    }

    void triggerManager(const ModelStep& step)
    {
        const auto [category, name] = eventOf(step);
        carryOut([this, eventCategory = category, eventName = name](bool isLibrary) {
            return isLibrary ? m_manager.triggerEvent(InteractionEvent(eventCategory, eventName))
                             : m_managerModel.triggerEvent(EventModel(eventCategory, eventName));
        });
    }

    void contextAdded(const ModelStep& step)
    {
        const std::size_t index = step.pick(0, contextCount);
        carryOut([&](bool isLibrary) {
            isLibrary ? m_contexts[index]->contextAdded(nullptr) : m_contextModels[index]->contextAdded(0);
            return true;
        });
    }

    void contextRemoved(const ModelStep& step)
    {
        const std::size_t index = step.pick(0, contextCount);
        carryOut([&](bool isLibrary) {
            isLibrary ? m_contexts[index]->contextRemoved(nullptr) : m_contextModels[index]->contextRemoved(0);
            return true;
        });
    }

    void setDescription(const ModelStep& step)
    {
        const std::size_t index = step.pick(0, contextCount);
        m_contexts[index]->setDescription(descriptions[step.pick(1, descriptions.size())]);
        m_contextModels[index]->setDescription(descriptions[step.pick(1, descriptions.size())]);
    }

    void activateTool(const ModelStep& step)
    {
        const std::size_t index = step.pick(0, toolCount);
        carryOut([&](bool isLibrary) {
            isLibrary ? m_tools[index]->activateTool(nullptr) : m_toolModels[index]->activateTool(0);
            return true;
        });
    }

    void deactivateTool(const ModelStep& step)
    {
        const std::size_t index = step.pick(0, toolCount);
        carryOut([&](bool isLibrary) {
            isLibrary ? m_tools[index]->deactivateTool(nullptr) : m_toolModels[index]->deactivateTool(0);
            return true;
        });
    }

    void callTool(const ModelStep& step)
    {
        const std::size_t index = step.pick(0, toolCount);
        const std::string& hint = hints[step.pick(2, hints.size())];
        carryOut([&](bool isLibrary) {
            LoggedTool& tool = *m_tools[index];
            LoggedToolModel& model = *m_toolModels[index];
            switch (step.pick(1, 3)) {
            case 0:
                return isLibrary ? tool.setToolMode(nullptr, hint) : model.setToolMode(0, hint);
            case 1:
                return isLibrary ? tool.hoverTool(nullptr, hint) : model.carryOut("hoverTool", 0, hint);
            default:
                return isLibrary ? tool.processTool(nullptr, hint) : model.carryOut("processTool", 0, hint);
            }
        });
    }

    void isPickHint(const ModelStep& step)
    {
        const std::string& hint = hints[step.pick(0, hints.size())];
        requireSame("a hint for picking", m_tools[0]->AbstractInteractionTool::isPickHint(hint),
                    m_toolModels[0]->isPickHint(hint));
    }

    void setAnswer(const ModelStep& step)
    {
        static const std::array<std::optional<bool>, 5> answers = {true, true, true, std::nullopt, false};
        const std::size_t index = step.pick(0, toolCount);
        m_worlds[index].answer = answers[step.pick(1, answers.size())];
        m_modelWorlds[index].answer = answers[step.pick(1, answers.size())];
    }

    void setToolCategory(const ModelStep& step)
    {
        const std::size_t index = step.pick(0, contextCount);
        m_contexts[index]->setToolCategory(toolCategories[step.pick(1, toolCategories.size())]);
        m_contextModels[index]->setToolCategory(toolCategories[step.pick(1, toolCategories.size())]);
    }

    void setModeCategory(const ModelStep& step)
    {
        const std::size_t index = step.pick(0, contextCount);
        m_contexts[index]->setModeCategory(modeCategories[step.pick(1, modeCategories.size())]);
        m_contextModels[index]->setModeCategory(modeCategories[step.pick(1, modeCategories.size())]);
    }

    // Nobody calls a picker: it would say so in the log.
    void setPicker(const ModelStep& step)
    {
        const std::size_t index = step.pick(0, contextCount);
        m_pickerOfContext[index] = step.pick(1, 2) == 0 ? nullptr : &m_picker;
        m_contexts[index]->setPicker(m_pickerOfContext[index]);
    }

    void react(const ModelStep& step)
    {
        if (m_pending.size() < 3) {
            m_pending.push_back(step);
        }
    }

    void makeAnew(const ModelStep& step)
    {
        const std::size_t index = step.pick(0, toolCount);
        for (const auto& context : m_contextModels) {
            if (context->getTool() == m_toolModels[index].get()) {
                return;
            }
        }
        m_tools[index].reset();
        m_toolModels[index]->destroy();
        make(index);
    }

    ModelCoverage& m_coverage;
    ModelCoverage m_managerCoverage;
    // What other models announce.
    ModelCoverage m_baseCoverage;
    ModelCoverage m_modeCoverage;
    CallLog m_log;
    CallLog m_expectedLog;
    ObjectNames m_names;
    RecordingNotificationListener m_listener{m_log};
    NotificationsModel m_notifications{m_expectedLog};
    RecordingPicker m_picker{m_log, m_names, "picker"};
    std::array<Picker*, contextCount> m_pickerOfContext = {nullptr, nullptr};
    InteractionManager m_manager;
    InteractionManagerModel m_managerModel;
    std::array<ToolWorld, toolCount> m_worlds;
    std::array<ToolWorld, toolCount> m_modelWorlds;
    std::array<std::unique_ptr<LoggedTool>, toolCount> m_tools;
    std::array<std::unique_ptr<LoggedToolModel>, toolCount> m_toolModels;
    std::vector<std::unique_ptr<Context>> m_contexts;
    std::vector<std::unique_ptr<ToolInteractionContextModel>> m_contextModels;
    ModelReactions m_reactions;
    std::vector<ModelStep> m_pending;
};

TEST(ToolInteractionContextModelTest, AnySequenceOfCallsMatchesTheModel)
{
    quon::testing::runModel<Driver>();
}

} // namespace
