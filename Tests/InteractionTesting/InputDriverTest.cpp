// SPDX-License-Identifier: MIT
#include <InteractionTesting/InputDriver.h>

#include <Interaction/InteractionManager.h>
#include <Interaction/QtEventMapper.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/CallMatchers.h>
#include <InteractionTesting/ObjectNames.h>
#include <InteractionTesting/RecordingContext.h>
#include <InteractionTesting/RecordingPicker.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class InputDriverTest : public ::testing::Test {
protected:
    InputDriverTest()
    {
        m_mapper.setInteractionManager(&m_manager);
        m_manager.addContext(&m_context);
        m_log.clear();
    }

    ~InputDriverTest() override
    {
        m_context.setHook(nullptr); // refers to what the test had
        m_manager.removeContext(&m_context);
    }

    void bind(const Qt::MouseButton button, const int modifiers, const std::string& category)
    {
        m_mapper.addMouseMapping(button, modifiers, category, QString());
    }

    void bindKey(const int key, const int modifiers, const std::string& category)
    {
        m_mapper.addKeyboardMapping(key, modifiers, category, QString());
    }

    /** The text of the mistake that @p action throws. */
    static std::string getMistake(const std::function<void()>& action)
    {
        try {
            action();
        } catch (const std::logic_error& mistake) {
            return mistake.what();
        }
        return "no mistake";
    }

    CallLog m_log;
    RecordingContext m_context{m_log, "context"};
    interaction::InteractionManager m_manager;
    interaction::QtEventMapper m_mapper;
    InputDriver m_driver{m_mapper};
};

TEST_F(InputDriverTest, HoldsNothingAtFirst)
{
    EXPECT_EQ(m_driver.getPosition(), QPointF(0, 0));
    EXPECT_EQ(m_driver.getButtons(), Qt::NoButton);
    EXPECT_EQ(m_driver.getModifiers(), Qt::NoModifier);
}

TEST_F(InputDriverTest, MovementWithoutButtonHovers)
{
    bind(Qt::LeftButton, Qt::NoModifier, "tool:select");

    m_driver.move(QPointF(10, 20));
    m_driver.hover(QPointF(11, 20));
    m_driver.leave();

    EXPECT_EQ(m_driver.getPosition(), QPointF(11, 20));
    EXPECT_THAT(m_log,
                CallsOf("context", "pointerMoved(10, 20)", "triggerEvent(tool:select, hover)", "pointerMoved(11, 20)",
                        "triggerEvent(tool:select, hover)", "triggerEvent(tool:select, stopHover)"));
}

TEST_F(InputDriverTest, MovementWithAButtonDrags)
{
    bind(Qt::RightButton, Qt::NoModifier, "navigate:orbit");

    m_driver.press(Qt::RightButton);
    m_driver.move(QPointF(10, 20));
    EXPECT_EQ(m_driver.getButtons(), Qt::RightButton);
    m_driver.release(Qt::RightButton);

    EXPECT_EQ(m_driver.getButtons(), Qt::NoButton);
    EXPECT_THAT(m_log,
                Calls("context.triggerEvent(navigate:orbit, start)", "context.pointerMoved(10, 20)",
                      "context.triggerEvent(navigate:orbit, process)", "context.triggerEvent(navigate:orbit, stop)",
                      "context.triggerEvent(navigate:orbit, trigger)"));
}

TEST_F(InputDriverTest, EventsCarryAllButtonsThatAreHeld)
{
    const int both = static_cast<int>(Qt::LeftButton) | static_cast<int>(Qt::RightButton);
    bind(static_cast<Qt::MouseButton>(both), Qt::NoModifier, "navigate:zoom");

    m_driver.press(Qt::LeftButton);
    m_driver.move(QPointF(1, 1));
    EXPECT_THAT(m_log.take(), Calls("context.pointerMoved(1, 1)"));

    m_driver.press(Qt::RightButton);
    m_driver.move(QPointF(2, 2));
    EXPECT_THAT(m_log.take(), Calls("context.pointerMoved(2, 2)", "context.triggerEvent(navigate:zoom, process)"));

    m_driver.release(Qt::LeftButton);
    m_driver.move(QPointF(3, 3));
    EXPECT_THAT(m_log, Calls("context.pointerMoved(3, 3)"));
}

TEST_F(InputDriverTest, ClickPressesAndReleases)
{
    bind(Qt::LeftButton, Qt::NoModifier, "tool:select");

    m_driver.click();

    EXPECT_THAT(m_log, CallsOf("context", "triggerEvent(tool:select, start)", "triggerEvent(tool:select, stop)",
                               "triggerEvent(tool:select, trigger)"));
}

TEST_F(InputDriverTest, DoubleClickIsTwoClicksForTheMapper)
{
    bind(Qt::LeftButton, Qt::NoModifier, "tool:select");
    m_driver.click();
    const auto one = m_log.take();

    m_driver.doubleClick();

    auto two = one;
    two.insert(two.end(), one.begin(), one.end());
    EXPECT_EQ(m_log.calls(), two);
    EXPECT_EQ(m_driver.getButtons(), Qt::NoButton);
}

TEST_F(InputDriverTest, DragGoesThereInTwoSteps)
{
    bind(Qt::MiddleButton, Qt::NoModifier, "navigate:pan");
    m_driver.move(QPointF(10, 20));
    m_log.clear();

    m_driver.drag(QPointF(30, 60), Qt::MiddleButton);

    EXPECT_EQ(m_driver.getPosition(), QPointF(30, 60));
    EXPECT_THAT(m_log, CallsOf("context", "triggerEvent(navigate:pan, start)", "pointerMoved(20, 40)",
                               "triggerEvent(navigate:pan, process)", "pointerMoved(30, 60)",
                               "triggerEvent(navigate:pan, process)", "triggerEvent(navigate:pan, stop)",
                               "triggerEvent(navigate:pan, trigger)"));
}

TEST_F(InputDriverTest, TellsWhetherTheMapperConsumed)
{
    bind(Qt::LeftButton, Qt::NoModifier, "tool:select");
    EXPECT_FALSE(m_driver.move(QPointF(1, 1)));
    EXPECT_FALSE(m_driver.click());
    EXPECT_FALSE(m_driver.doubleClick());
    EXPECT_FALSE(m_driver.drag(QPointF(5, 5)));
    EXPECT_FALSE(m_driver.leave());

    m_context.setConsuming(true);
    EXPECT_TRUE(m_driver.move(QPointF(2, 2)));
    EXPECT_TRUE(m_driver.click());
    EXPECT_TRUE(m_driver.doubleClick());
    EXPECT_TRUE(m_driver.drag(QPointF(6, 6)));
    EXPECT_TRUE(m_driver.leave());
    EXPECT_FALSE(m_driver.click(Qt::RightButton));
}

TEST_F(InputDriverTest, GesturesAreConsumedWhenAnyOfTheirEventsIs)
{
    bind(Qt::LeftButton, Qt::NoModifier, "tool:select");
    for (const std::string verb : {"start", "stop"}) {
        m_context.setHook([&](const std::string&) {
            m_context.setConsuming(m_log.calls().back() == "context.triggerEvent(tool:select, " + verb + ")");
        });
        EXPECT_TRUE(m_driver.click()) << verb;
        EXPECT_TRUE(m_driver.doubleClick()) << verb;
        EXPECT_TRUE(m_driver.drag(QPointF(5, 5))) << verb;
    }
}

TEST_F(InputDriverTest, PointerIsReportedInWholePixels)
{
    m_driver.move(QPointF(10.6, 20.4));
    m_driver.move(QPointF(11.2, 20.1));

    EXPECT_THAT(m_log, Calls("context.pointerMoved(11, 20)"));
}

TEST_F(InputDriverTest, PickerKnowsThePlaceBeforeTheContextsDo)
{
    const ObjectNames names;
    RecordingPicker picker(m_log, names, "picker");
    m_driver.move(QPointF(1, 2));

    m_driver.setPicker(&picker);
    EXPECT_EQ(picker.getPointer(), osg::Pnt2f(1, 2));

    osg::Pnt2f known;
    m_context.setHook([&](const std::string&) { known = picker.getPointer(); });
    m_driver.move(QPointF(10.6, 20.4));
    EXPECT_EQ(known, osg::Pnt2f(11, 20));
    m_driver.move(QPointF(-2.5, 20.5));
    EXPECT_EQ(known, osg::Pnt2f(-2, 21));
    EXPECT_THAT(m_log, CallsInOrder("context.pointerMoved(11, 20)", "context.pointerMoved(-2, 21)"));

    m_driver.setPicker(nullptr);
    m_driver.move(QPointF(50, 60));
    EXPECT_EQ(picker.getPointer(), osg::Pnt2f(-2, 21));
}

TEST_F(InputDriverTest, KeysOfModifiersChangeTheEventsThatFollow)
{
    bind(Qt::LeftButton, Qt::ControlModifier, "tool:toggle");

    m_driver.click();
    m_driver.pressKey(Qt::Key_Control);
    EXPECT_EQ(m_driver.getModifiers(), Qt::ControlModifier);
    m_driver.click();
    m_driver.releaseKey(Qt::Key_Control);
    EXPECT_EQ(m_driver.getModifiers(), Qt::NoModifier);
    m_driver.click();

    // 16777249 is Qt::Key_Control; its own modifier is told with its press and no longer with its release.
    EXPECT_THAT(m_log, CallsOf("context", "triggerEvent(qt-key:ctrl+16777249, press)",
                               "triggerEvent(tool:toggle, start)", "triggerEvent(tool:toggle, stop)",
                               "triggerEvent(tool:toggle, trigger)", "triggerEvent(qt-key:ctrl+16777249, release)"));
}

TEST_F(InputDriverTest, ModifiersAreHeldWithoutAKeyToo)
{
    bind(Qt::LeftButton, Qt::ControlModifier | Qt::ShiftModifier, "tool:add");

    m_driver.setModifiers(Qt::ControlModifier | Qt::ShiftModifier);
    m_driver.press();
    m_driver.setModifiers(Qt::NoModifier);
    m_driver.move(QPointF(1, 1));
    m_driver.release();

    EXPECT_THAT(m_log, CallsOf("context", "triggerEvent(tool:add, start)", "pointerMoved(1, 1)",
                               "triggerEvent(tool:add, stop)", "triggerEvent(tool:add, trigger)"));
}

TEST_F(InputDriverTest, KeyIsHeldUntilItIsReleased)
{
    bindKey(Qt::Key_M, Qt::NoModifier, "mode:measure");

    m_driver.pressKey(Qt::Key_M);
    EXPECT_THAT(m_log.take(),
                Calls("context.triggerEvent(mode:measure, start)", "context.triggerEvent(qt-key:77, press)"));
    m_driver.releaseKey(Qt::Key_M);
    EXPECT_THAT(m_log, Calls("context.triggerEvent(mode:measure, stop)", "context.triggerEvent(mode:measure, trigger)",
                             "context.triggerEvent(qt-key:77, release)"));
}

TEST_F(InputDriverTest, RepeatedKeyIsConsumedAndSendsNothing)
{
    bindKey(Qt::Key_M, Qt::NoModifier, "mode:measure");
    m_driver.pressKey(Qt::Key_M);
    m_log.clear();

    EXPECT_TRUE(m_driver.repeatKey(Qt::Key_M));
    EXPECT_TRUE(m_driver.repeatKey(Qt::Key_M));

    EXPECT_THAT(m_log, NoCalls());
    EXPECT_FALSE(m_driver.releaseKey(Qt::Key_M));
    EXPECT_THAT(m_log, CallsInOrder("context.triggerEvent(mode:measure, stop)"));
}

TEST_F(InputDriverTest, RepeatedModifierStaysHeld)
{
    m_driver.pressKey(Qt::Key_Shift);
    m_driver.repeatKey(Qt::Key_Shift);

    EXPECT_EQ(m_driver.getModifiers(), Qt::ShiftModifier);
}

TEST_F(InputDriverTest, TypedKeyComesBetweenTheKeysOfItsModifiers)
{
    bindKey(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier, "view:select-none");
    m_context.setHook([this](const std::string&) {
        m_context.setConsuming(m_log.calls().back() == "context.triggerEvent(view:select-none, start)");
    });

    EXPECT_TRUE(m_driver.typeKey(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier));

    // 16777248 is Qt::Key_Shift, 16777249 Qt::Key_Control.
    EXPECT_THAT(m_log,
                CallsOf("context", "triggerEvent(qt-key:shift+16777248, press)",
                        "triggerEvent(qt-key:ctrl+shift+16777249, press)", "triggerEvent(view:select-none, start)",
                        "triggerEvent(view:select-none, stop)", "triggerEvent(view:select-none, trigger)",
                        "triggerEvent(qt-key:ctrl+shift+16777249, release)",
                        "triggerEvent(qt-key:shift+16777248, release)"));
    EXPECT_EQ(m_driver.getModifiers(), Qt::NoModifier);
}

TEST_F(InputDriverTest, TypedKeyLeavesWhatIsHeldAsItIs)
{
    m_driver.setModifiers(Qt::ControlModifier);

    EXPECT_FALSE(m_driver.typeKey(Qt::Key_A, Qt::ControlModifier));

    EXPECT_EQ(m_driver.getModifiers(), Qt::ControlModifier);
    EXPECT_THAT(m_log,
                CallsOf("context", "triggerEvent(qt-key:ctrl+65, press)", "triggerEvent(qt-key:ctrl+65, release)"));
}

TEST_F(InputDriverTest, LosingTheFocusEndsWhatIsPendingAndLeavesTheHandsWhereTheyAre)
{
    bind(Qt::LeftButton, Qt::NoModifier, "tool:select");
    m_driver.press();
    m_driver.pressKey(Qt::Key_Shift);
    m_log.clear();

    m_driver.loseFocus();

    EXPECT_THAT(m_log.take(),
                Calls("context.triggerEvent(tool:select, stop)", "context.triggerEvent(tool:select, trigger)",
                      "context.triggerEvent(qt-key:shift+16777248, release)"));
    EXPECT_EQ(m_driver.getButtons(), Qt::LeftButton);
    EXPECT_EQ(m_driver.getModifiers(), Qt::ShiftModifier);
    m_driver.release();
    m_driver.releaseKey(Qt::Key_Shift);
    EXPECT_THAT(m_log, NoCalls());
}

TEST_F(InputDriverTest, WhatNoHandCanDoIsAMistakeOfTheTest)
{
    EXPECT_EQ(getMistake([this] { m_driver.release(); }), "InputDriver cannot release left, which is not held");
    EXPECT_EQ(getMistake([this] { m_driver.releaseKey(Qt::Key_Escape); }),
              "InputDriver cannot release the key Esc, which is not held");
    EXPECT_EQ(getMistake([this] { m_driver.repeatKey(Qt::Key_A); }),
              "InputDriver cannot repeat the key A, which is not held");

    m_driver.press(Qt::RightButton);
    m_driver.pressKey(Qt::Key_Control);
    m_log.clear();
    EXPECT_EQ(getMistake([this] { m_driver.press(Qt::RightButton); }),
              "InputDriver cannot press right, which is held already");
    EXPECT_EQ(getMistake([this] { m_driver.pressKey(Qt::Key_Control); }),
              "InputDriver cannot press the key Ctrl, which is held already");
    m_driver.setModifiers(Qt::AltModifier);
    EXPECT_EQ(getMistake([this] { m_driver.pressKey(Qt::Key_Alt); }),
              "InputDriver cannot press the key Alt, which is held already");
    EXPECT_EQ(getMistake([this] { m_driver.hover(QPointF(1, 1)); }), "InputDriver cannot hover while a button is held");
    EXPECT_THAT(m_log, NoCalls());
}

TEST_F(InputDriverTest, PlaysAScript)
{
    bind(Qt::LeftButton, Qt::NoModifier, "tool:select");
    bindKey(Qt::Key_A, Qt::ControlModifier, "view:select-all");

    m_driver.play("move 10 20; press left; move 40 20; release left; key Ctrl+A");

    EXPECT_THAT(m_log, CallsOf("context", "pointerMoved(10, 20)", "triggerEvent(tool:select, hover)",
                               "triggerEvent(tool:select, start)", "pointerMoved(40, 20)",
                               "triggerEvent(tool:select, process)", "triggerEvent(tool:select, stop)",
                               "triggerEvent(tool:select, trigger)", "triggerEvent(qt-key:ctrl+16777249, press)",
                               "triggerEvent(view:select-all, start)", "triggerEvent(qt-key:ctrl+65, press)",
                               "triggerEvent(view:select-all, stop)", "triggerEvent(view:select-all, trigger)",
                               "triggerEvent(qt-key:ctrl+65, release)", "triggerEvent(qt-key:ctrl+16777249, release)"));
}

TEST_F(InputDriverTest, ScriptDoesWhatTheOperationsDo)
{
    bind(Qt::LeftButton, Qt::NoModifier, "tool:select");
    bind(Qt::RightButton, Qt::ShiftModifier, "navigate:pan");
    m_driver.hover(QPointF(1, 1));
    m_driver.click();
    m_driver.doubleClick();
    m_driver.setModifiers(Qt::ShiftModifier);
    m_driver.drag(QPointF(9, 9), Qt::RightButton);
    m_driver.setModifiers(Qt::NoModifier);
    m_driver.leave();
    m_driver.pressKey(Qt::Key_Space);
    m_driver.repeatKey(Qt::Key_Space);
    m_driver.releaseKey(Qt::Key_Space);
    m_driver.press();
    m_driver.loseFocus();
    m_driver.release();
    m_driver.move(QPointF(0, 0));
    const auto expected = m_log.take();

    m_driver.play("hover 1 1; click; doubleclick; modifiers shift; drag 9 9 right; modifiers none; leave; "
                  "keypress Space; repeat Space; keyrelease Space; press; losefocus; release; move 0 0");

    EXPECT_EQ(m_log.calls(), expected);
}

TEST_F(InputDriverTest, ScriptTellsOfEachCommandWhetherItWasConsumed)
{
    bind(Qt::LeftButton, Qt::NoModifier, "tool:select");
    m_context.setConsuming(true);

    EXPECT_THAT(m_driver.play("move 1 1; press right; release right; click; modifiers ctrl"),
                ElementsAre(true, false, false, true, false));
    EXPECT_THAT(m_driver.play(""), IsEmpty());
}

TEST_F(InputDriverTest, ScriptWithAMistakeSendsNothing)
{
    EXPECT_THROW(m_driver.play("move 10 20; press lefft"), std::invalid_argument);

    EXPECT_THAT(m_log, NoCalls());
    EXPECT_EQ(m_driver.getPosition(), QPointF(0, 0));
}

TEST_F(InputDriverTest, ScriptStopsAtWhatNoHandCanDo)
{
    EXPECT_EQ(getMistake([this] { m_driver.play("move 10 20; release left; move 30 20"); }),
              "InputDriver cannot release left, which is not held");

    EXPECT_THAT(m_log, Calls("context.pointerMoved(10, 20)"));
}

} // namespace

} // namespace quon::testing
