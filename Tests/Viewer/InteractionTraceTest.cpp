// SPDX-License-Identifier: MIT
#include "Support/AllocationCount.h"

#include "Viewer/Tools/InteractionTrace.h"
#include "Viewer/Tools/Traced.h"

#include <Interaction/AbstractInteractionContext.h>
#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using interaction::InteractionEvent;
using interaction::InteractionManager;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using viewer::InteractionTrace;
using viewer::Traced;
using viewer::TracedEvent;

/** Consumes the events of one category, and does something else while it is asked. */
class AnsweringContext : public interaction::AbstractInteractionContext {
public:
    explicit AnsweringContext(const PreferredPosition position, std::string category = {})
        : AbstractInteractionContext(position)
        , m_category(std::move(category))
    {}

    bool triggerEvent(InteractionManager* manager, const InteractionEvent& event) override
    {
        if (m_action) {
            m_action(*manager, event);
        }
        return event.getCategory() == m_category;
    }

    void setAction(std::function<void(InteractionManager&, const InteractionEvent&)> action)
    {
        m_action = std::move(action);
    }

private:
    std::string m_category;
    std::function<void(InteractionManager&, const InteractionEvent&)> m_action;
};

/** Writes what it hears as `category verb (consumer)`, indented by the depth. */
class Listener : public viewer::InteractionTraceListener {
public:
    void eventTraced(const TracedEvent& event) override
    {
        const std::string by = event.outcome == TracedEvent::Outcome::Consumed  ? event.consumer
                               : event.outcome == TracedEvent::Outcome::Ignored ? "nobody"
                                                                                : "unknown";
        lines.push_back(std::string(static_cast<std::size_t>(event.depth), '>') + event.category + " " + event.verb +
                        " (" + by + ")");
        events.push_back(event);
    }

    std::vector<std::string> take()
    {
        std::vector<std::string> taken;
        taken.swap(lines);
        return taken;
    }

    std::vector<std::string> lines;
    std::vector<TracedEvent> events;
};

class InteractionTraceTest : public ::testing::Test {
protected:
    using Context = interaction::InteractionContext;

    InteractionTraceTest()
        : m_trace(m_manager)
        , m_tool(m_trace, "tool", Context::Tool, "tool:select")
        , m_background(m_trace, "background", Context::Background, "view:fit")
    {
        m_manager.addContext(&m_background);
        m_manager.addContext(&m_tool);
    }

    ~InteractionTraceTest() override
    {
        m_trace.removeListener(&m_listener);
        m_manager.removeContext(&m_tool);
        m_manager.removeContext(&m_background);
    }

    bool send(const std::string& category, const std::string& verb = "start")
    {
        return m_manager.triggerEvent(InteractionEvent(category, verb));
    }

    std::vector<std::string> stack() const
    {
        std::vector<std::string> names;
        for (const InteractionTrace::StackEntry& entry : m_trace.getStack()) {
            names.push_back(entry.name);
        }
        return names;
    }

    InteractionManager m_manager;
    InteractionTrace m_trace;
    Traced<AnsweringContext> m_tool;
    Traced<AnsweringContext> m_background;
    Listener m_listener;
};

TEST_F(InteractionTraceTest, AnEventIsReportedWithTheContextThatConsumedIt)
{
    m_trace.addListener(&m_listener);

    EXPECT_TRUE(send("tool:select", "start"));
    EXPECT_TRUE(send("view:fit", "start"));
    EXPECT_FALSE(send("tool:other", "hover"));

    EXPECT_THAT(m_listener.take(),
                ElementsAre("tool:select start (tool)", "view:fit start (background)", "tool:other hover (nobody)"));
}

TEST_F(InteractionTraceTest, NumbersRiseAndTimesDoNotRunBackwards)
{
    m_trace.addListener(&m_listener);
    for (int i = 0; i < 3; ++i) {
        send("tool:select");
    }

    ASSERT_EQ(m_listener.events.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        const TracedEvent& event = m_listener.events[i];
        EXPECT_EQ(event.number, i + 1);
        EXPECT_GE(event.duration, 0);
        EXPECT_GE(event.time, i == 0 ? 0 : m_listener.events[i - 1].time + m_listener.events[i - 1].duration);
    }
}

TEST_F(InteractionTraceTest, AnEventSentFromInsideAnotherFollowsItAndIsDeeper)
{
    m_background.setAction([&](InteractionManager& manager, const InteractionEvent& event) {
        if (event.getCategory() == "view:fit") {
            manager.triggerEvent(InteractionEvent("tool:select", "start"));
            manager.triggerEvent(InteractionEvent("nothing", "start"));
        }
    });
    m_trace.addListener(&m_listener);

    send("view:fit");
    send("tool:select", "stop");

    EXPECT_THAT(m_listener.take(), ElementsAre("view:fit start (background)", ">tool:select start (tool)",
                                               ">nothing start (nobody)", "tool:select stop (tool)"));
}

TEST_F(InteractionTraceTest, AnEventThatAContextSendsBeforeItRefusesItsOwnStaysInside)
{
    m_tool.setAction([&](InteractionManager& manager, const InteractionEvent& event) {
        if (event.getCategory() == "view:fit") {
            manager.triggerEvent(InteractionEvent("inner", "start"));
        }
    });
    m_trace.addListener(&m_listener);

    send("view:fit");

    EXPECT_THAT(m_listener.take(), ElementsAre("view:fit start (background)", ">inner start (nobody)"));
}

TEST_F(InteractionTraceTest, AContextThatDoesNotReportIsTakenForUnknown)
{
    AnsweringContext stranger(Context::Modal, "tool:select");
    m_manager.addContext(&stranger);
    m_trace.addListener(&m_listener);

    send("tool:select");
    m_trace.finish();
    EXPECT_THAT(m_listener.take(), ElementsAre("tool:select start (unknown)"));

    // Equal events in a row, for which the same memory is used, are two.
    send("tool:select");
    send("tool:select");
    send("view:fit");
    EXPECT_THAT(m_listener.take(), ElementsAre("tool:select start (unknown)", "tool:select start (unknown)",
                                               "view:fit start (background)"));
    m_manager.removeContext(&stranger);
}

TEST_F(InteractionTraceTest, AnEventThatAContextInFrontOfTheTraceConsumesIsReportedToo)
{
    m_trace.addListener(&m_listener);
    m_manager.raiseContext(&m_tool);

    send("tool:select");
    send("tool:select");
    send("view:fit");

    EXPECT_THAT(m_listener.take(),
                ElementsAre("tool:select start (tool)", "tool:select start (tool)", "view:fit start (background)"));
    EXPECT_THAT(stack(), ElementsAre("tool", "trace, top", "background", "trace, bottom"));
}

TEST_F(InteractionTraceTest, NobodyIsAskedAndNothingReportedWhileTheManagerIsDisabled)
{
    m_trace.addListener(&m_listener);
    m_manager.disable();

    send("tool:select");

    EXPECT_THAT(m_listener.take(), IsEmpty());
}

TEST_F(InteractionTraceTest, TheListeningContextsAreInTheStackOnlyWhileSomebodyListens)
{
    EXPECT_THAT(stack(), ElementsAre("tool", "background"));
    EXPECT_TRUE(m_tool.isRaised());

    m_trace.addListener(&m_listener);
    EXPECT_THAT(stack(), ElementsAre("trace, top", "tool", "background", "trace, bottom"));
    EXPECT_FALSE(m_tool.isRaised());

    m_trace.removeListener(&m_listener);
    EXPECT_FALSE(m_trace.isListening());
    EXPECT_THAT(stack(), ElementsAre("tool", "background"));
    EXPECT_TRUE(m_tool.isRaised());
}

TEST_F(InteractionTraceTest, ASecondListenerHearsTheSameAndAddingOneTwiceChangesNothing)
{
    Listener other;
    m_trace.addListener(&m_listener);
    m_trace.addListener(&m_listener);
    m_trace.addListener(&other);
    m_trace.addListener(nullptr);
    send("tool:select");
    EXPECT_EQ(m_listener.take().size(), 1U);
    EXPECT_EQ(other.take().size(), 1U);

    m_trace.removeListener(&m_listener);
    m_trace.removeListener(&m_listener);
    send("tool:select");
    EXPECT_THAT(m_listener.take(), IsEmpty());
    EXPECT_EQ(other.take().size(), 1U);
    m_trace.removeListener(&other);
    EXPECT_FALSE(m_trace.isListening());
}

TEST_F(InteractionTraceTest, TheTraceMayBeginAndEndWhileAnEventIsHandled)
{
    m_background.setAction([&](InteractionManager& manager, const InteractionEvent& event) {
        if (event.getEvent() == "begin") {
            m_trace.addListener(&m_listener);
            manager.triggerEvent(InteractionEvent("tool:select", "start"));
        } else if (event.getEvent() == "end") {
            m_trace.removeListener(&m_listener);
        } else if (event.getEvent() == "again") {
            m_trace.removeListener(&m_listener);
            m_trace.addListener(&m_listener);
            manager.triggerEvent(InteractionEvent("tool:select", "process"));
        }
    });

    send("view:fit", "begin");
    EXPECT_THAT(m_listener.take(), ElementsAre("tool:select start (tool)"));
    send("view:fit", "again");
    EXPECT_THAT(m_listener.take(), ElementsAre("tool:select process (tool)"));
    send("tool:select", "stop");
    EXPECT_THAT(m_listener.take(), ElementsAre("tool:select stop (tool)"));
    send("view:fit", "end");
    EXPECT_THAT(m_listener.take(), IsEmpty());
    send("tool:select", "trigger");
    EXPECT_THAT(m_listener.take(), IsEmpty());
}

TEST_F(InteractionTraceTest, TheStackFollowsAdditionsRemovalsAndRaising)
{
    Traced<AnsweringContext> modal(m_trace, "modal", Context::Modal);
    Traced<AnsweringContext> second(m_trace, "second tool", Context::Tool);

    m_manager.addContext(&second);
    EXPECT_THAT(stack(), ElementsAre("second tool", "tool", "background"));
    m_manager.addContext(&modal);
    EXPECT_THAT(stack(), ElementsAre("modal", "second tool", "tool", "background"));
    m_manager.raiseContext(&m_background);
    EXPECT_THAT(stack(), ElementsAre("background", "modal", "second tool", "tool"));
    m_manager.removeContext(&modal);
    m_manager.removeContext(&second);
    EXPECT_THAT(stack(), ElementsAre("background", "tool"));
}

TEST_F(InteractionTraceTest, MovementsTellTheOrderThatTheContextsReallyHave)
{
    // The stranger, of which the trace knows nothing, lies at the bottom and decides where a new one goes: below it.
    AnsweringContext stranger(static_cast<Context::PreferredPosition>(-20));
    Traced<AnsweringContext> added(m_trace, "added", static_cast<Context::PreferredPosition>(-10));
    m_manager.addContext(&stranger);
    m_manager.raiseContext(&m_background);
    m_manager.raiseContext(&m_tool);
    m_trace.addListener(&m_listener);
    const auto real = ElementsAre("trace, top", "tool", "background", "added", "trace, bottom");

    m_manager.addContext(&added);
    EXPECT_THAT(stack(), ::testing::Not(real));
    m_manager.pointerMoved(osg::Pnt2f(1, 2));
    EXPECT_THAT(stack(), real);

    m_manager.removeContext(&added);
    m_manager.addContext(&added);
    EXPECT_THAT(stack(), ::testing::Not(real));
    m_manager.cameraMoved(osg::Matrix());
    EXPECT_THAT(stack(), real);
    m_manager.removeContext(&added);
    m_manager.removeContext(&stranger);
}

TEST_F(InteractionTraceTest, WithoutListenersNothingIsAllocated)
{
    const InteractionEvent consumed("view:fit", "start");
    const InteractionEvent ignored("a category that is too long for a short string", "a verb that is too long for one");
    const osg::Matrix camera;
    m_trace.addListener(&m_listener);
    m_trace.removeListener(&m_listener);
    const std::size_t before = getAllocationCount();

    for (int i = 0; i < 100; ++i) {
        m_manager.triggerEvent(consumed);
        m_manager.triggerEvent(ignored);
        m_manager.pointerMoved(osg::Pnt2f(static_cast<float>(i), 0));
        m_manager.cameraMoved(camera);
    }
    EXPECT_EQ(getAllocationCount(), before);

    m_trace.addListener(&m_listener);
    m_manager.triggerEvent(ignored);
    EXPECT_GT(getAllocationCount(), before);
}

} // namespace

} // namespace quon::testing
