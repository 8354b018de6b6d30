// SPDX-License-Identifier: MIT
#include "Faults/EveryFailure.h"

#include <Interaction/AbstractInteractionContext.h>
#include <Interaction/AbstractInteractionTool.h>
#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/MultimodeInteractionContext.h>
#include <Interaction/QtEventMapper.h>
#include <Interaction/ToolInteractionContext.h>

#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>
#include <Shortcut/koShortcut.h>

#include <QKeyEvent>
#include <QMouseEvent>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace quon::interaction {

namespace {

using notification::NotificationListener;
using notification::NotificationManager;
using notification::TextNotification;
using quon::testing::EveryFailure;
using quon::testing::FaultCount;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Longer than what a string keeps without memory of its own.
const std::string longText = "a text of more than fifteen characters";
const std::string otherText = "another text of more than fifteen characters";
const std::string longMode = "a mode with a long name, for example this one";
const std::string otherMode = "another mode with a long name, for example this";

class CountOfFaults : public ::testing::Environment {
    void TearDown() override
    {
        const FaultCount& count = FaultCount::instance();
        std::printf("%zu operations, %zu allocations that failed\n", count.operations, count.faults);
    }
};

const ::testing::Environment* const countOfFaults = ::testing::AddGlobalTestEnvironment(new CountOfFaults);

std::vector<std::string> shownTexts()
{
    std::vector<std::string> texts;
    for (const notification::Notification* shown : NotificationManager::getInstance()->getNotifications()) {
        texts.push_back(static_cast<const TextNotification*>(shown)->getText());
    }
    return texts;
}

// A view of the notifications: what it heard of is what there is.
class View : public NotificationListener {
public:
    View() { NotificationManager::getInstance()->addListener(this); }
    // Some notifications stay on purpose when what showed them is gone: not those of one attempt for the next.
    ~View() override
    {
        NotificationManager& manager = *NotificationManager::getInstance();
        manager.removeListener(this);
        while (!manager.getNotifications().empty()) {
            manager.removeNotification(manager.getNotifications().front());
        }
    }
    View(const View&) = delete;
    View& operator=(const View&) = delete;

    void notificationAdded(notification::Notification*) override { ++m_count; }
    void notificationRemoved(notification::Notification*) override { --m_count; }

    std::size_t count() const { return m_count; }

private:
    std::size_t m_count = 0;
};

class Context final : public MultimodeInteractionContext {
public:
    explicit Context(PreferredPosition position = Tool)
        : MultimodeInteractionContext(position)
    {}
    bool selectMode(const std::string& mode) override
    {
        selected = mode;
        return true;
    }

    std::string selected;
};

class Tool final : public AbstractInteractionTool {
public:
    bool setToolMode(ToolInteractionContext*, const std::string& mode) override
    {
        m_mode = mode;
        return true;
    }
    bool startTool(ToolInteractionContext*, const std::string& hint) override { return take("start", hint); }
    bool processTool(ToolInteractionContext*, const std::string& hint) override { return take("process", hint); }
    bool stopTool(ToolInteractionContext*, const std::string& hint) override { return take("stop", hint); }
    bool triggerTool(ToolInteractionContext*, const std::string& hint) override { return take("trigger", hint); }
    bool hoverTool(ToolInteractionContext*, const std::string& hint) override { return take("hover", hint); }
    bool stopHoverTool(ToolInteractionContext*, const std::string& hint) override { return take("stopHover", hint); }

    const std::string& last() const { return m_last; }
    const std::string& mode() const { return m_mode; }

private:
    bool take(const std::string& verb, const std::string& hint)
    {
        m_last = verb + ':' + hint;
        return true;
    }

    std::string m_last;
    std::string m_mode;
};

// A manager with two contexts that show texts, the first one on top, and a view of the notifications.
struct Stack {
    Stack()
    {
        top.setDescription(longText);
        below.setDescription(otherText);
        third.setDescription("third: " + longText);
        manager.addContext(&below);
        manager.addContext(&top);
    }
    ~Stack()
    {
        manager.removeContext(&third);
        manager.removeContext(&top);
        manager.removeContext(&below);
    }

    View view;
    InteractionManager manager;
    Context top{InteractionContext::Modal};
    Context below{InteractionContext::Tool};
    Context third{InteractionContext::Overlay};
};

void expectAllShown(const Stack& stack)
{
    EXPECT_EQ(stack.view.count(), shownTexts().size());
}

struct Nothing {};

TEST(AllocationFailureTest, AnEventIsWholeOrNotThere)
{
    EveryFailure<std::unique_ptr<InteractionEvent>>("InteractionEvent()", [](auto& event) {
        event = std::make_unique<InteractionEvent>(longText + ':' + otherText, otherText);
    }).leaving([](auto& event) {
          EXPECT_EQ(event, nullptr);
      }).give([](auto& event) { EXPECT_EQ(event->getHint(), otherText); });
}

TEST(AllocationFailureTest, TheInstancesAreMadeLater)
{
    EveryFailure<Nothing>("InteractionManager::getInstance()", [](Nothing&) {
        InteractionManager::getInstance();
    }).give([](Nothing&) { EXPECT_NE(InteractionManager::getInstance(), nullptr); });
}

TEST(AllocationFailureTest, AContextThatCouldNotBeAddedIsAddedByARepetition)
{
    EveryFailure<Stack>("addContext()", [](Stack& stack) { stack.manager.addContext(&stack.third); })
        .leaving([](Stack& stack) {
            // Either nothing was done, or the context is in the stack and only its text is missing.
            EXPECT_NE(stack.third.isActive(), stack.top.isRaised());
            expectAllShown(stack);
        })
        .repairedBy([](Stack& stack) {
            stack.manager.removeContext(&stack.third);
            stack.manager.addContext(&stack.third);
        })
        .give([](Stack& stack) {
            EXPECT_TRUE(stack.third.isRaised());
            EXPECT_FALSE(stack.top.isRaised());
            EXPECT_THAT(shownTexts(), ElementsAre("third: " + longText));
            expectAllShown(stack);
        });
}

TEST(AllocationFailureTest, ABuriedContextIsAddedAsAWhole)
{
    EveryFailure<Stack>("addContext() below", [](Stack& stack) {
        stack.third.setPreferredPosition(InteractionContext::Background);
        stack.manager.addContext(&stack.third);
    }).leaving([](Stack& stack) {
          EXPECT_FALSE(stack.third.isActive());
      }).give([](Stack& stack) { EXPECT_TRUE(stack.third.isActive()); });
}

TEST(AllocationFailureTest, RaisingIsRepairedByRemovingAndAdding)
{
    EveryFailure<Stack>("raiseContext()", [](Stack& stack) { stack.manager.raiseContext(&stack.below); })
        .leaving([](Stack& stack) {
            EXPECT_TRUE(stack.below.isRaised());
            EXPECT_FALSE(stack.top.isRaised());
        })
        .repairedBy([](Stack& stack) {
            stack.manager.removeContext(&stack.below);
            stack.manager.addContext(&stack.below);
            stack.manager.raiseContext(&stack.below);
        })
        .give([](Stack& stack) {
            EXPECT_THAT(shownTexts(), ElementsAre(otherText));
            expectAllShown(stack);
        });
}

TEST(AllocationFailureTest, ARemovedContextIsGoneAndOnlyTheTextOfTheNextMayBeMissing)
{
    EveryFailure<Stack>("removeContext()", [](Stack& stack) { stack.manager.removeContext(&stack.top); })
        .leaving([](Stack& stack) {
            EXPECT_FALSE(stack.top.isActive());
            EXPECT_TRUE(stack.below.isRaised());
        })
        .repairedBy([](Stack& stack) { stack.below.setDescription(otherText); })
        .give([](Stack& stack) {
            EXPECT_THAT(shownTexts(), ElementsAre(otherText));
            expectAllShown(stack);
        });
}

TEST(AllocationFailureTest, EnablingIsRepairedByDisablingAndEnabling)
{
    struct Disabled : Stack {
        Disabled() { manager.disable(); }
    };
    EveryFailure<Disabled>("enable()", [](Disabled& stack) { stack.manager.enable(); })
        .repairedBy([](Disabled& stack) {
            stack.manager.disable();
            stack.manager.enable();
        })
        .give([](Disabled& stack) {
            EXPECT_THAT(shownTexts(), ::testing::UnorderedElementsAre(longText, otherText));
            expectAllShown(stack);
        });
}

TEST(AllocationFailureTest, WhatOnlyTellsOrTakesAwayNeedsNoMemory)
{
    EveryFailure<Stack>("disable()", [](Stack& stack) { stack.manager.disable(); }).isNeverFelt().give([](Stack&) {
        EXPECT_THAT(shownTexts(), IsEmpty());
    });
    EveryFailure<Stack>("removeContext(), below the top",
                        [](Stack& stack) { stack.manager.removeContext(&stack.below); })
        .isNeverFelt()
        .give([](Stack& stack) { EXPECT_FALSE(stack.below.isActive()); });
    EveryFailure<Stack>("pointerMoved()", [](Stack& stack) { stack.manager.pointerMoved(osg::Pnt2f(1.0F, 2.0F)); })
        .isNeverFelt()
        .give([](Stack&) {});
    EveryFailure<Stack>("cameraMoved()", [](Stack& stack) { stack.manager.cameraMoved(osg::Matrix()); })
        .isNeverFelt()
        .give([](Stack&) {});
    EveryFailure<Stack>("setPresenterMode()", [](Stack& stack) { stack.manager.setPresenterMode(true); })
        .isNeverFelt()
        .give([](Stack& stack) { EXPECT_TRUE(stack.manager.getPresenterMode()); });
    const InteractionEvent event(longText, otherText);
    EveryFailure<Stack>("triggerEvent()", [&event](Stack& stack) { stack.manager.triggerEvent(event); })
        .isNeverFelt()
        .give([](Stack&) {});
    EveryFailure<Stack>("setPreferredPosition()",
                        [](Stack& stack) { stack.top.setPreferredPosition(InteractionContext::Overlay); })
        .isNeverFelt()
        .give([](Stack& stack) { EXPECT_EQ(stack.top.getPreferredPosition(), InteractionContext::Overlay); });
    struct Shown {
        Shown()
            : context(std::make_unique<Context>())
        {
            context->contextRaised(nullptr);
            context->setDescription(longText);
        }
        View view;
        std::unique_ptr<Context> context;
    };
    EveryFailure<Shown>("contextLowered()", [](Shown& shown) { shown.context->contextLowered(nullptr); })
        .isNeverFelt()
        .give([](Shown& shown) { EXPECT_EQ(shown.view.count(), 0U); });
    EveryFailure<Shown>("contextRemoved()", [](Shown& shown) { shown.context->contextRemoved(nullptr); })
        .isNeverFelt()
        .give([](Shown& shown) { EXPECT_EQ(shown.view.count(), 0U); });
    EveryFailure<Shown>("~AbstractInteractionContext()", [](Shown& shown) { shown.context.reset(); })
        .isNeverFelt()
        .give([](Shown& shown) { EXPECT_EQ(shown.view.count(), 0U); });
}

TEST(AllocationFailureTest, AContextIsMadeOrNotThere)
{
    EveryFailure<std::unique_ptr<Context>>("MultimodeInteractionContext()", [](auto& context) {
        context = std::make_unique<Context>();
    }).give([](auto& context) { EXPECT_EQ(context->getModeCategory(), "mode"); });
    struct ToolContext final : ToolInteractionContext {
        ToolContext()
            : ToolInteractionContext(InteractionContext::Tool)
        {}
    };
    EveryFailure<std::unique_ptr<ToolContext>>("ToolInteractionContext()", [](auto& context) {
        context = std::make_unique<ToolContext>();
    }).give([](auto& context) { EXPECT_EQ(context->getToolCategory(), "tool"); });
    EveryFailure<std::unique_ptr<Tool>>("AbstractInteractionTool()", [](auto& tool) {
        tool = std::make_unique<Tool>();
    }).give([](auto& tool) { EXPECT_FALSE(tool->isActive()); });
}

TEST(AllocationFailureTest, ADescriptionIsShownByARepetition)
{
    EveryFailure<Stack>("setDescription(), changed", [](Stack& stack) {
        stack.top.setDescription("new: " + otherText + longText);
    }).give([](Stack& stack) {
        EXPECT_THAT(shownTexts(), ElementsAre("new: " + otherText + longText));
        expectAllShown(stack);
    });
    struct Bare {
        Bare() { context.contextRaised(nullptr); }
        View view;
        Context context;
    };
    EveryFailure<Bare>("setDescription(), first", [](Bare& bare) {
        bare.context.setDescription(longText);
    }).give([](Bare& bare) {
        EXPECT_THAT(shownTexts(), ElementsAre(longText));
        EXPECT_EQ(bare.view.count(), 1U);
    });
    EveryFailure<Stack>("getDescription()", [](Stack& stack) { stack.top.getDescription(); }).give([](Stack& stack) {
        EXPECT_EQ(stack.top.getDescription(), longText);
    });
    EveryFailure<Bare>("contextRaised()", [](Bare& bare) {
        bare.context.setDescription(std::string());
        bare.context.contextLowered(nullptr);
        bare.context.setDescription(longText);
        bare.context.contextRaised(nullptr);
    }).give([](Bare& bare) { EXPECT_EQ(bare.view.count(), 1U); });
}

// Modes and tools.

struct Modes {
    Modes()
    {
        manager.addContext(&context);
        context.startMode(otherMode);
    }
    ~Modes() { manager.removeContext(&context); }

    InteractionManager manager;
    Context context;
};

TEST(AllocationFailureTest, AModeIsStartedAndOnTheStackOrNeither)
{
    const auto expectStarted = [](Modes& modes) {
        EXPECT_EQ(modes.context.selected, longMode);
        EXPECT_TRUE(modes.context.stopMode(longMode));
        EXPECT_EQ(modes.context.selected, otherMode);
    };
    const InteractionEvent event("mode:" + longMode, "start");
    EveryFailure<Modes>("startMode()", [](Modes& modes) { modes.context.startMode(longMode); })
        .leaving([](Modes& modes) {
            EXPECT_EQ(modes.context.selected, otherMode);
            EXPECT_FALSE(modes.context.stopMode(longMode));
        })
        .give(expectStarted);
    EveryFailure<Modes>("triggerEvent(), start of a mode", [&event](Modes& modes) {
        modes.manager.triggerEvent(event);
    }).give(expectStarted);
    EveryFailure<Modes>("setModeCategory()", [](Modes& modes) {
        modes.context.setModeCategory(longText);
    }).leaving([](Modes& modes) {
          EXPECT_EQ(modes.context.getModeCategory(), "mode");
      }).give([](Modes& modes) { EXPECT_EQ(modes.context.getModeCategory(), longText); });
}

TEST(AllocationFailureTest, AModeIsStoppedOrStaysCurrent)
{
    struct Nested : Modes {
        Nested()
        {
            context.startMode(longMode);
            context.selected.reserve(100);
        }
    };
    EveryFailure<Nested>("stopMode()", [](Nested& modes) {
        modes.context.stopMode(longMode);
    }).leaving([](Nested& modes) {
          EXPECT_EQ(modes.context.selected, longMode);
      }).give([](Nested& modes) {
        EXPECT_EQ(modes.context.selected, otherMode);
        EXPECT_FALSE(modes.context.stopMode(longMode));
    });
    EveryFailure<Nested>("stopMode(), not current", [](Nested& modes) { modes.context.stopMode(otherMode); })
        .isNeverFelt()
        .give([](Nested& modes) { EXPECT_EQ(modes.context.selected, longMode); });
    EveryFailure<Nested>("contextRemoved(), with modes", [](Nested& modes) { modes.context.contextRemoved(nullptr); })
        .isNeverFelt()
        .give([](Nested& modes) { EXPECT_EQ(modes.context.selected, ""); });
}

struct Tools {
    Tools()
    {
        tool.setDescription(longText);
        manager.addContext(&context);
    }
    ~Tools()
    {
        context.setTool(nullptr);
        manager.removeContext(&context);
    }

    View view;
    InteractionManager manager;
    Tool tool;
    ToolInteractionContext context{InteractionContext::Tool};
};

struct ActiveTool : Tools {
    ActiveTool() { context.setTool(&tool); }
};

TEST(AllocationFailureTest, AToolWhoseTextIsMissingIsSetAgain)
{
    EveryFailure<Tools>("setTool()", [](Tools& tools) { tools.context.setTool(&tools.tool); })
        .leaving([](Tools& tools) { EXPECT_EQ(tools.context.getTool(), &tools.tool); })
        .repairedBy([](Tools& tools) {
            tools.context.setTool(nullptr);
            tools.context.setTool(&tools.tool);
        })
        .give([](Tools& tools) {
            EXPECT_TRUE(tools.tool.isActive());
            EXPECT_THAT(shownTexts(), ElementsAre(longText));
            EXPECT_EQ(tools.view.count(), 1U);
        });
    EveryFailure<ActiveTool>("setTool(null)", [](ActiveTool& tools) { tools.context.setTool(nullptr); })
        .isNeverFelt()
        .give([](ActiveTool& tools) {
            EXPECT_FALSE(tools.tool.isActive());
            EXPECT_EQ(tools.view.count(), 0U);
        });
}

TEST(AllocationFailureTest, TextsOfToolsAreShownByARepetition)
{
    EveryFailure<ActiveTool>("AbstractInteractionTool::setDescription()", [](ActiveTool& tools) {
        tools.tool.setDescription(longText + otherText);
    }).give([](ActiveTool&) { EXPECT_THAT(shownTexts(), ElementsAre(longText + otherText)); });
    EveryFailure<Tools>("displayDescription()", [](Tools& tools) {
        tools.tool.displayDescription(otherText);
    }).give([](Tools& tools) {
        EXPECT_THAT(shownTexts(), ElementsAre(otherText));
        EXPECT_EQ(tools.view.count(), 1U);
        tools.tool.displayDescription(std::string());
    });
    EveryFailure<Tools>("setToolCategory()", [](Tools& tools) {
        tools.context.setToolCategory(longText);
    }).leaving([](Tools& tools) {
          EXPECT_EQ(tools.context.getToolCategory(), "tool");
      }).give([](Tools& tools) { EXPECT_EQ(tools.context.getToolCategory(), longText); });
    EveryFailure<Tools>("isPickHint()", [](Tools& tools) { EXPECT_FALSE(tools.tool.isPickHint(longText)); })
        .isNeverFelt()
        .give([](Tools&) {});
    EveryFailure<ActiveTool>("contextRemoved(), with a tool",
                             [](ActiveTool& tools) { tools.manager.removeContext(&tools.context); })
        .isNeverFelt()
        .give([](ActiveTool& tools) { EXPECT_FALSE(tools.tool.isActive()); });
}

TEST(AllocationFailureTest, EventsOfToolsAreSentAgain)
{
    for (const char* verb : {"start", "process", "stop", "trigger", "hover", "stopHover"}) {
        const InteractionEvent event("tool:" + longText, verb);
        EveryFailure<ActiveTool>(std::string("triggerEvent(), ") + verb, [&event](ActiveTool& tools) {
            EXPECT_TRUE(tools.manager.triggerEvent(event));
        }).give([verb](ActiveTool& tools) { EXPECT_EQ(tools.tool.last(), verb + (':' + longText)); });
    }
}

// The mapper.

// Keeps what it was sent without asking for memory while it is sent.
class Listener : public AbstractInteractionContext {
public:
    Listener()
        : AbstractInteractionContext(Tool)
    {
        verbs.reserve(64);
    }
    bool triggerEvent(InteractionManager*, const InteractionEvent& event) override
    {
        verbs.push_back(event.getEvent()[0]);
        verbs.push_back(event.getEvent()[2]);
        verbs.push_back(' ');
        return event.getEvent() != "press" && consumes;
    }

    std::string verbs;
    bool consumes = true;
};

// Verbs read "sa" start, "so" stop, "ti" trigger, "po" process, "hv" hover, "pe" press, "rl" release.
struct Mapping {
    Mapping()
    {
        koShortcut::clear();
        manager.addContext(&context);
        mapper.setInteractionManager(&manager);
        mapper.addKeyboardMapping(Qt::Key_A, 0, longText, QString());
        mapper.addMouseMapping(Qt::LeftButton, 0, otherText, QString());
        // Whatever there is of groups and texts is there already.
        mapper.addKeyboardMapping(Qt::Key_Z, 0, longText, "warm");
        mapper.removeKeyboardMapping(Qt::Key_Z, 0);
    }
    ~Mapping()
    {
        mapper.setInteractionManager(nullptr);
        manager.removeContext(&context);
        koShortcut::clear();
    }

    static QKeyEvent key(QEvent::Type type, int code, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        return {type, code, modifiers};
    }
    static QMouseEvent mouse(QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        return {type, QPointF(3, 4), QPointF(3, 4), QPointF(3, 4), button, buttons, Qt::NoModifier};
    }

    QString description{"a description"};
    QKeyEvent pressA{key(QEvent::KeyPress, Qt::Key_A)};
    QKeyEvent releaseA{key(QEvent::KeyRelease, Qt::Key_A)};
    QKeyEvent pressB{key(QEvent::KeyPress, Qt::Key_B)};
    QKeyEvent releaseB{key(QEvent::KeyRelease, Qt::Key_B)};
    // With a name that needs memory.
    QKeyEvent pressC{key(QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier)};
    QKeyEvent releaseC{key(QEvent::KeyRelease, Qt::Key_C)};
    QMouseEvent pressLeft{mouse(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton)};
    QMouseEvent releaseLeft{mouse(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton)};
    QMouseEvent dragLeft{mouse(QEvent::MouseMove, Qt::NoButton, Qt::LeftButton)};
    QMouseEvent hover{mouse(QEvent::MouseMove, Qt::NoButton, Qt::NoButton)};
    InteractionManager manager;
    Listener context;
    QtEventMapper mapper;
};

TEST(AllocationFailureTest, AStartThatWasSentIsEnded)
{
    EveryFailure<Mapping>("keyPressed(), bound", [](Mapping& mapping) {
        mapping.mapper.keyPressed(&mapping.pressA);
    }).leaving([](Mapping& mapping) {
          EXPECT_EQ(mapping.context.verbs, "");
      }).give([](Mapping& mapping) {
        mapping.mapper.resetEvents();
        EXPECT_EQ(mapping.context.verbs, "sa so ti ");
    });
    EveryFailure<Mapping>("mousePressed()", [](Mapping& mapping) {
        mapping.mapper.mousePressed(&mapping.pressLeft);
    }).leaving([](Mapping& mapping) {
          EXPECT_EQ(mapping.context.verbs, "");
      }).give([](Mapping& mapping) {
        mapping.mapper.resetEvents();
        EXPECT_EQ(mapping.context.verbs, "sa so ti ");
    });
}

TEST(AllocationFailureTest, APressThatWasSentIsReleased)
{
    EveryFailure<Mapping>("keyPressed(), unbound", [](Mapping& mapping) {
        mapping.mapper.keyPressed(&mapping.pressB);
    }).leaving([](Mapping& mapping) {
          EXPECT_EQ(mapping.context.verbs, "");
      }).give([](Mapping& mapping) {
        mapping.mapper.keyReleased(&mapping.releaseB);
        EXPECT_EQ(mapping.context.verbs, "pe rl ");
    });
}

TEST(AllocationFailureTest, ARepeatedReleaseEndsWhatIsLeft)
{
    struct Held : Mapping {
        Held()
        {
            context.consumes = false;
            mapper.keyPressed(&pressA);
            mapper.keyPressed(&pressA);
            mapper.keyPressed(&pressB);
            mapper.keyPressed(&pressC);
            mapper.keyPressed(&pressC);
            mapper.mousePressed(&pressLeft);
            context.verbs.clear();
        }
    };
    EveryFailure<Held>("keyReleased(), bound", [](Held& mapping) {
        mapping.mapper.keyReleased(&mapping.releaseA);
    }).give([](Held& mapping) { EXPECT_EQ(mapping.context.verbs, "so ti rl rl "); });
    EveryFailure<Held>("keyReleased(), unbound", [](Held& mapping) {
        mapping.mapper.keyReleased(&mapping.releaseB);
    }).give([](Held& mapping) { EXPECT_EQ(mapping.context.verbs, "rl "); });
    EveryFailure<Held>("keyReleased(), unbound with modifiers", [](Held& mapping) {
        mapping.mapper.keyReleased(&mapping.releaseC);
    }).give([](Held& mapping) { EXPECT_EQ(mapping.context.verbs, "rl rl "); });
    EveryFailure<Held>("mouseReleased()", [](Held& mapping) {
        mapping.mapper.mouseReleased(&mapping.releaseLeft);
    }).give([](Held& mapping) { EXPECT_EQ(mapping.context.verbs, "so ti "); });
    EveryFailure<Held>("resetEvents()", [](Held& mapping) { mapping.mapper.resetEvents(); }).give([](Held& mapping) {
        EXPECT_EQ(mapping.context.verbs, "so ti so ti rl rl rl rl rl ");
    });
}

TEST(AllocationFailureTest, MovesAreSentAgain)
{
    EveryFailure<Mapping>("mouseMoved(), dragging", [](Mapping& mapping) {
        mapping.mapper.mouseMoved(&mapping.dragLeft, true);
    }).leaving([](Mapping& mapping) {
          EXPECT_EQ(mapping.context.verbs, "");
      }).give([](Mapping& mapping) { EXPECT_EQ(mapping.context.verbs, "po "); });
    EveryFailure<Mapping>("mouseMoved(), hovering", [](Mapping& mapping) {
        mapping.mapper.mouseMoved(&mapping.hover, false);
    }).leaving([](Mapping& mapping) {
          EXPECT_EQ(mapping.context.verbs, "");
      }).give([](Mapping& mapping) { EXPECT_EQ(mapping.context.verbs, "hv "); });
    EveryFailure<Mapping>("hoverStopped()", [](Mapping& mapping) {
        mapping.mapper.hoverStopped(nullptr);
    }).give([](Mapping& mapping) { EXPECT_EQ(mapping.context.verbs, "so "); });
    EveryFailure<Nothing>("qtKeyEventToString()", [](Nothing&) {
        QtEventMapper::qtKeyEventToString(Qt::Key_unknown, 0x7fffffff);
    }).give([](Nothing&) { EXPECT_EQ(QtEventMapper::qtKeyEventToString(65, 0), "65"); });
}

TEST(AllocationFailureTest, ABindingIsThereOnceAfterItWasRemovedAndAddedAgain)
{
    const auto add = [](Mapping& mapping) {
        mapping.mapper.addKeyboardMapping(Qt::Key_B, 0, longText, mapping.description);
    };
    EveryFailure<Mapping>("addKeyboardMapping()", add)
        .repairedBy([&add](Mapping& mapping) {
            mapping.mapper.removeKeyboardMapping(Qt::Key_B, 0, longText);
            add(mapping);
        })
        .give([](Mapping& mapping) {
            mapping.mapper.keyPressed(&mapping.pressB);
            EXPECT_EQ(mapping.context.verbs, "sa ");
            EXPECT_EQ(koShortcut::getEntries().size(), 1U);
        });
    const auto addButton = [](Mapping& mapping) {
        mapping.mapper.addMouseMapping(Qt::RightButton, 0, longText, mapping.description);
    };
    EveryFailure<Mapping>("addMouseMapping()", addButton)
        .repairedBy([&addButton](Mapping& mapping) {
            mapping.mapper.removeMouseMapping(Qt::RightButton, 0, longText);
            addButton(mapping);
        })
        .give([](Mapping& mapping) {
            mapping.mapper.hoverStopped(nullptr);
            EXPECT_EQ(mapping.context.verbs, "so so ");
            EXPECT_EQ(koShortcut::getEntries().size(), 1U);
        });
}

TEST(AllocationFailureTest, ABindingThatCouldNotBeAddedFromInsideAnEventIsNotThere)
{
    class Adder : public AbstractInteractionContext {
    public:
        explicit Adder(QtEventMapper& target)
            : AbstractInteractionContext(Tool)
            , mapper(target)
        {}
        bool triggerEvent(InteractionManager*, const InteractionEvent& event) override
        {
            if (event.getEvent() == "start" && !isDone) {
                mapper.addKeyboardMapping(Qt::Key_A, 0, otherText, QString());
                isDone = true;
            }
            starts += event.getEvent() == "start" ? 1 : 0;
            return true;
        }
        QtEventMapper& mapper;
        bool isDone = false;
        int starts = 0;
    };
    struct Inside : Mapping {
        Inside()
        {
            manager.removeContext(&context);
            manager.addContext(&adder);
        }
        ~Inside() { manager.removeContext(&adder); }
        Adder adder{mapper};
    };
    EveryFailure<Inside>("addKeyboardMapping(), from inside", [](Inside& inside) {
        inside.mapper.keyPressed(&inside.pressA);
    }).give([](Inside& inside) {
        EXPECT_EQ(inside.adder.starts, 1);
        inside.mapper.keyPressed(&inside.pressA);
        EXPECT_EQ(inside.adder.starts, 3);
    });
}

TEST(AllocationFailureTest, BindingsAreRemovedWithoutMemory)
{
    struct Bound : Mapping {
        Bound()
        {
            mapper.addKeyboardMapping(Qt::Key_B, 0, longText, description);
            mapper.addMouseMapping(Qt::RightButton, 0, longText, description);
        }
    };
    const auto expectEntries = [](std::size_t count) {
        return [count](Bound&) { EXPECT_EQ(koShortcut::getEntries().size(), count); };
    };
    EveryFailure<Bound>("removeKeyboardMapping()",
                        [](Bound& bound) { bound.mapper.removeKeyboardMapping(Qt::Key_B, 0, longText); })
        .isNeverFelt()
        .give(expectEntries(1));
    EveryFailure<Bound>("removeKeyboardMapping(), every category",
                        [](Bound& bound) { bound.mapper.removeKeyboardMapping(Qt::Key_B, 0); })
        .isNeverFelt()
        .give(expectEntries(1));
    EveryFailure<Bound>("removeMouseMapping()",
                        [](Bound& bound) { bound.mapper.removeMouseMapping(Qt::RightButton, 0, longText); })
        .isNeverFelt()
        .give(expectEntries(1));
    EveryFailure<Bound>("removeMouseMapping(), every category",
                        [](Bound& bound) { bound.mapper.removeMouseMapping(Qt::RightButton, 0); })
        .isNeverFelt()
        .give(expectEntries(1));
    EveryFailure<Mapping>("setInteractionManager()",
                          [](Mapping& mapping) { mapping.mapper.setInteractionManager(nullptr); })
        .isNeverFelt()
        .give([](Mapping&) {});
}

} // namespace

} // namespace quon::interaction
