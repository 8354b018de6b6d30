// SPDX-License-Identifier: MIT
#include "MultimodeInteractionContextModel.h"
#include "ModelReactions.h"

#include <Interaction/InteractionEvent.h>
#include <Interaction/MultimodeInteractionContext.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/RecordingNotificationListener.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using quon::interaction::InteractionEvent;
using quon::interaction::MultimodeInteractionContext;
using quon::testing::CallLog;
using quon::testing::EventModel;
using quon::testing::ModelCoverage;
using quon::testing::ModelOperation;
using quon::testing::ModelReactions;
using quon::testing::ModelStep;
using quon::testing::MultimodeInteractionContextModel;
using quon::testing::NotificationsModel;
using quon::testing::RecordingNotificationListener;
using quon::testing::model::requireSame;

// Compared byte by byte, beyond a zero.
const std::vector<std::string> modes = {"measure", "move", "", "a:b", std::string("a\0b", 3), std::string("a\0c", 3)};
const std::vector<std::string> categories = {"mode", "Mode", "", "mode ", "modes"};
const std::vector<std::string> eventNames = {"start", "stop", "Start", "trigger", ""};

/** Logs what it is to select, and refuses what both sides refuse. */
class LoggedContext final : public MultimodeInteractionContext {
public:
    LoggedContext(CallLog& log, const std::set<std::string>& refused, std::function<void()> onCall)
        : MultimodeInteractionContext(Tool)
        , m_log(log)
        , m_refused(refused)
        , m_onCall(std::move(onCall))
    {}

    bool selectMode(const std::string& mode) override
    {
        m_log.call("context", "selectMode", mode);
        const bool accepted = m_refused.count(mode) == 0;
        m_onCall();
        return accepted;
    }

private:
    CallLog& m_log;
    const std::set<std::string>& m_refused;
    std::function<void()> m_onCall;
};

/** The same, on the side of the model. */
class LoggedContextModel final : public MultimodeInteractionContextModel {
public:
    LoggedContextModel(CallLog& log, const std::set<std::string>& refused, std::function<void()> onCall,
                       NotificationsModel& notifications, ModelCoverage& baseCoverage, ModelCoverage& coverage)
        : MultimodeInteractionContextModel(notifications, 0, baseCoverage, coverage)
        , m_log(log)
        , m_refused(refused)
        , m_onCall(std::move(onCall))
    {}

    bool selectMode(const std::string& mode) override
    {
        m_log.call("context", "selectMode", mode);
        const bool accepted = m_refused.count(mode) == 0;
        m_onCall();
        return accepted;
    }

private:
    CallLog& m_log;
    const std::set<std::string>& m_refused;
    std::function<void()> m_onCall;
};

class Driver {
public:
    using Operation = ModelOperation<Driver>;

    static const std::vector<Operation>& operations()
    {
        static const std::vector<Operation> all = {
            {"startMode", 10, &Driver::startMode},          {"stopMode", 8, &Driver::stopMode},
            {"triggerEvent", 10, &Driver::triggerEvent},    {"contextAdded", 2, &Driver::contextAdded},
            {"contextRemoved", 3, &Driver::contextRemoved}, {"contextRaised", 2, &Driver::contextRaised},
            {"setDescription", 1, &Driver::setDescription}, {"setModeCategory", 2, &Driver::setModeCategory},
            {"modes refused", 3, &Driver::refuse},          {"reaction from inside a call", 5, &Driver::react}};
        return all;
    }

    static std::vector<std::string> branches()
    {
        std::vector<std::string> names = MultimodeInteractionContextModel::modeBranches();
        for (const char* name : {"mode started from inside", "mode stopped from inside", "removed from inside"}) {
            names.emplace_back(name);
        }
        return names;
    }

    explicit Driver(ModelCoverage& coverage)
        : m_coverage(coverage)
        , m_baseCoverage(MultimodeInteractionContextModel::branches())
        , m_model(
              m_expectedLog, m_refused, [this] { m_reactions.onModelCall([this] { return decide(); }); },
              m_notifications, m_baseCoverage, coverage)
    {}

    void compare()
    {
        requireSame("the calls", m_log.take(), m_expectedLog.take());
        requireSame("the mode category", m_library->getModeCategory(), m_model.getModeCategory());
        requireSame("active", m_library->isActive(), m_model.isActive());
        requireSame("raised", m_library->isRaised(), m_model.isRaised());
        requireSame("the notifications", RecordingNotificationListener::getShown(), m_notifications.getShown());
    }

    void finish()
    {
        // Nothing else shows the whole stack: which modes there are, and in which order they become current.
        m_pending.clear();
        m_refused.clear();
        for (const std::string& mode : modes) {
            carryOut([&](bool isLibrary) { return isLibrary ? m_library->stopMode(mode) : m_model.stopMode(mode); });
        }
        compare();
        requireSame("modes left in the model", m_model.getModes().size(), std::size_t(0));
    }

private:
    using Call = std::function<bool(bool isLibrary)>;

    // What a call answers is compared along with the calls.
    ModelReactions::Action logged(const Call& call)
    {
        return [this, call](bool isLibrary) {
            const bool result = call(isLibrary);
            (isLibrary ? m_log : m_expectedLog).call("context", "answered", result);
        };
    }

    void carryOut(const Call& call) { m_reactions.carryOut(logged(call)); }

    ModelReactions::Action decide()
    {
        if (m_pending.empty()) {
            return {};
        }
        const ModelStep step = m_pending.back();
        m_pending.pop_back();
        const std::string& mode = modes[step.pick(0, modes.size())];
        switch (step.pick(1, 5)) {
        case 0:
        case 1:
            m_coverage.see("mode started from inside");
            return logged(
                [=](bool isLibrary) { return isLibrary ? m_library->startMode(mode) : m_model.startMode(mode); });
        case 2:
        case 3:
            m_coverage.see("mode stopped from inside");
            return logged(
                [=](bool isLibrary) { return isLibrary ? m_library->stopMode(mode) : m_model.stopMode(mode); });
        default:
            m_coverage.see("removed from inside");
            return logged([=](bool isLibrary) {
                isLibrary ? m_library->contextRemoved(nullptr) : m_model.contextRemoved(0);
                return true;
            });
        }
    }

    void startMode(const ModelStep& step)
    {
        const std::string& mode = modes[step.pick(0, modes.size())];
        carryOut([&](bool isLibrary) { return isLibrary ? m_library->startMode(mode) : m_model.startMode(mode); });
    }

    void stopMode(const ModelStep& step)
    {
        const std::string& mode = modes[step.pick(0, modes.size())];
        carryOut([&](bool isLibrary) { return isLibrary ? m_library->stopMode(mode) : m_model.stopMode(mode); });
    }

    void triggerEvent(const ModelStep& step)
    {
        // Mostly the category that the context has at the moment, now and then without a hint.
        const std::string tool =
            step.pick(0, 4) == 3 ? categories[step.pick(1, categories.size())] : m_model.getModeCategory();
        const std::string category = step.isRare(2, 20) ? tool : tool + ":" + modes[step.pick(2, modes.size())];
        const std::string& name = eventNames[step.pick(3, eventNames.size())];
        carryOut([&](bool isLibrary) {
            return isLibrary ? m_library->triggerEvent(nullptr, InteractionEvent(category, name))
                             : m_model.triggerEvent(0, EventModel(category, name));
        });
    }

    void contextAdded(const ModelStep&)
    {
        m_library->contextAdded(nullptr);
        m_model.contextAdded(0);
    }

    void contextRemoved(const ModelStep&)
    {
        carryOut([this](bool isLibrary) {
            isLibrary ? m_library->contextRemoved(nullptr) : m_model.contextRemoved(0);
            return true;
        });
    }

    void contextRaised(const ModelStep& step)
    {
        if (step.pick(0, 2) == 0) {
            m_library->contextRaised(nullptr);
            m_model.contextRaised(0);
        } else {
            m_library->contextLowered(nullptr);
            m_model.contextLowered(0);
        }
    }

    void setDescription(const ModelStep& step)
    {
        const std::string text = step.pick(0, 3) == 0 ? "" : "described";
        m_library->setDescription(text);
        m_model.setDescription(text);
    }

    void setModeCategory(const ModelStep& step)
    {
        m_library->setModeCategory(categories[step.pick(0, categories.size())]);
        m_model.setModeCategory(categories[step.pick(0, categories.size())]);
    }

    void refuse(const ModelStep& step)
    {
        const std::string& mode = modes[step.pick(0, modes.size())];
        if (step.pick(1, 2) == 1) {
            m_refused.insert(mode);
        } else {
            m_refused.erase(mode);
        }
    }

    void react(const ModelStep& step)
    {
        if (m_pending.size() < 3) {
            m_pending.push_back(step);
        }
    }

    ModelCoverage& m_coverage;
    ModelCoverage m_baseCoverage;
    CallLog m_log;
    CallLog m_expectedLog;
    RecordingNotificationListener m_listener{m_log};
    NotificationsModel m_notifications{m_expectedLog};
    std::set<std::string> m_refused;
    ModelReactions m_reactions;
    std::vector<ModelStep> m_pending;
    std::unique_ptr<LoggedContext> m_library =
        std::make_unique<LoggedContext>(m_log, m_refused, [this] { m_reactions.onLibraryCall(); });
    LoggedContextModel m_model;
};

TEST(MultimodeInteractionContextModelTest, AnySequenceOfCallsMatchesTheModel)
{
    quon::testing::runModel<Driver>();
}

} // namespace
