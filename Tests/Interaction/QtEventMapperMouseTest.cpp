// SPDX-License-Identifier: MIT
#include "QtEventMapperFixture.h"

#include "Support/AllocationCount.h"

#include <cstddef>
#include <string>
#include <vector>

using quon::interaction::InteractionManager;
using quon::interaction::QtEventMapper;
using quon::testing::getAllocationCount;
using quon::testing::nameOfModifiers;
using quon::testing::QtEventMapperFixture;
using quon::testing::RecordingContext;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class QtEventMapperMouseTest : public QtEventMapperFixture {
protected:
    void bind(Qt::MouseButton button, int modifiers, const std::string& category)
    {
        m_mapper.addMouseMapping(button, modifiers, category, QString());
    }

    static Qt::MouseButton combination(int buttons) { return static_cast<Qt::MouseButton>(buttons); }
};

TEST_F(QtEventMapperMouseTest, APressADragAReleaseAHoverAndALeaveGiveTheirEventsInOrder)
{
    bind(Qt::LeftButton, none, "C");

    press(Qt::LeftButton, none, QPointF(10, 20));
    EXPECT_THAT(m_log.take(), ElementsAre(pointer(10, 20), sent("C", "start")));

    drag(Qt::LeftButton, none, QPointF(15, 20));
    EXPECT_THAT(m_log.take(), ElementsAre(pointer(15, 20), sent("C", "process")));

    release(Qt::LeftButton, none, QPointF(15, 20));
    EXPECT_THAT(m_log.take(), ElementsAre(sent("C", "stop"), sent("C", "trigger")));

    hover(none, QPointF(16, 20));
    EXPECT_THAT(m_log.take(), ElementsAre(pointer(16, 20), sent("C", "hover")));

    leave();
    EXPECT_THAT(m_log.take(), ElementsAre(sent("C", "stopHover")));

    release(Qt::LeftButton, none, QPointF(16, 20));
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

// The pointer

TEST_F(QtEventMapperMouseTest, AFirstEventAtTheOriginReportsNoMovement)
{
    hover(none, QPointF(0, 0));
    EXPECT_THAT(m_log.take(), IsEmpty());

    hover(none, QPointF(1, 0));
    hover(none, QPointF(0, 0));
    EXPECT_THAT(m_log.calls(), ElementsAre(pointer(1, 0), pointer(0, 0)));
}

TEST_F(QtEventMapperMouseTest, AnUnchangedPositionIsNotReportedAgain)
{
    press(Qt::LeftButton, none, QPointF(7, 8));
    drag(Qt::LeftButton, none, QPointF(7, 8));
    release(Qt::LeftButton, none, QPointF(7, 8));
    hover(none, QPointF(7, 8));

    EXPECT_THAT(m_log.calls(), ElementsAre(pointer(7, 8)));
}

TEST_F(QtEventMapperMouseTest, AChangeOfOneCoordinateIsReported)
{
    hover(none, QPointF(7, 0));
    hover(none, QPointF(7, 8));
    hover(none, QPointF(6, 8));

    EXPECT_THAT(m_log.calls(), ElementsAre(pointer(7, 0), pointer(7, 8), pointer(6, 8)));
}

TEST_F(QtEventMapperMouseTest, EachOfThreeOperationsReportsThePointerWithoutAnyBinding)
{
    press(Qt::LeftButton, none, QPointF(1, 1));
    drag(Qt::LeftButton, none, QPointF(2, 2));
    release(Qt::LeftButton, none, QPointF(3, 3));
    hover(none, QPointF(4, 4));

    EXPECT_THAT(m_log.calls(), ElementsAre(pointer(1, 1), pointer(2, 2), pointer(3, 3), pointer(4, 4)));
}

TEST_F(QtEventMapperMouseTest, ALeaveDoesNotReadTheEvent)
{
    bind(Qt::LeftButton, none, "C");

    m_mapper.hoverStopped(nullptr);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "stopHover")));
}

TEST_F(QtEventMapperMouseTest, ADisabledManagerHearsOfThePointerOnly)
{
    bind(Qt::LeftButton, none, "C");
    consumeEverything();
    m_manager.disable();
    m_log.clear();

    EXPECT_FALSE(press(Qt::LeftButton, none, QPointF(5, 6)));
    EXPECT_THAT(m_log.take(), ElementsAre(pointer(5, 6)));

    m_manager.enable();
    m_log.clear();
    EXPECT_TRUE(release(Qt::LeftButton, none, QPointF(5, 6)));
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "stop"), sent("C", "trigger")));
}

struct RoundingRow {
    std::string name;
    QPointF position;
    int x;
    int y;
};

void PrintTo(const RoundingRow& row, std::ostream* stream)
{
    *stream << row.position.x() << ", " << row.position.y();
}

class QtEventMapperRoundingTest : public QtEventMapperFixture, public ::testing::WithParamInterface<RoundingRow> {};

TEST_P(QtEventMapperRoundingTest, ReportsTheNearestPixelAndHalvesTowardsPositiveInfinity)
{
    const RoundingRow& row = GetParam();

    hover(none, row.position);

    EXPECT_THAT(m_log.calls(), ElementsAre(pointer(row.x, row.y)));
}

INSTANTIATE_TEST_SUITE_P(Rows, QtEventMapperRoundingTest,
                         ::testing::Values(RoundingRow{"Down", QPointF(1.25, 2.49), 1, 2},
                                           RoundingRow{"Up", QPointF(1.75, 2.51), 2, 3},
                                           RoundingRow{"Halves", QPointF(0.5, 2.5), 1, 3},
                                           RoundingRow{"NegativeHalves", QPointF(-1.5, -2.5), -1, -2},
                                           RoundingRow{"Negative", QPointF(-1.25, -2.75), -1, -3}),
                         [](const ::testing::TestParamInfo<RoundingRow>& row) { return row.param.name; });

TEST_F(QtEventMapperMouseTest, AMovementWithinAPixelIsNone)
{
    hover(none, QPointF(0.4, -0.5));
    hover(none, QPointF(10.0, 10.0));
    hover(none, QPointF(10.4, 9.5));

    EXPECT_THAT(m_log.calls(), ElementsAre(pointer(10, 10)));
}

// Modifiers

class QtEventMapperMouseModifierTest : public QtEventMapperFixture, public ::testing::WithParamInterface<int> {
protected:
    QtEventMapperMouseModifierTest()
    {
        for (const int modifiers : {none, shift, control, alt, shift | control, shift | alt, control | alt,
                                    shift | control | alt, shift | meta, meta, keypad, groupSwitch}) {
            m_mapper.addMouseMapping(Qt::LeftButton, modifiers, nameOfModifiers(modifiers), QString());
        }
    }

    static std::string expectedCategory() { return nameOfModifiers(GetParam() & (shift | control | alt)); }
};

TEST_P(QtEventMapperMouseModifierTest, APressStartsTheBindingWithExactlyTheseOfShiftControlAndAlt)
{
    press(Qt::LeftButton, GetParam());

    EXPECT_THAT(m_log.calls(), ElementsAre(sent(expectedCategory(), "start")));
}

TEST_P(QtEventMapperMouseModifierTest, ADragProcessesTheBindingWithExactlyTheseOfShiftControlAndAlt)
{
    drag(Qt::LeftButton, GetParam());

    EXPECT_THAT(m_log.calls(), ElementsAre(sent(expectedCategory(), "process")));
}

TEST_P(QtEventMapperMouseModifierTest, AHoverReachesTheBindingWithExactlyTheseOfShiftControlAndAlt)
{
    hover(GetParam());

    EXPECT_THAT(m_log.calls(), ElementsAre(sent(expectedCategory(), "hover")));
}

TEST_P(QtEventMapperMouseModifierTest, AReleaseDoesNotLookAtModifiers)
{
    press(Qt::LeftButton, control);
    m_log.clear();

    release(Qt::LeftButton, GetParam());

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("Control", "stop"), sent("Control", "trigger")));
}

INSTANTIATE_TEST_SUITE_P(
    Held, QtEventMapperMouseModifierTest,
    ::testing::Values(0, static_cast<int>(Qt::ShiftModifier), static_cast<int>(Qt::ControlModifier),
                      static_cast<int>(Qt::AltModifier), static_cast<int>(Qt::ShiftModifier | Qt::ControlModifier),
                      static_cast<int>(Qt::ShiftModifier | Qt::AltModifier),
                      static_cast<int>(Qt::ControlModifier | Qt::AltModifier),
                      static_cast<int>(Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier),
                      static_cast<int>(Qt::MetaModifier), static_cast<int>(Qt::KeypadModifier),
                      static_cast<int>(Qt::GroupSwitchModifier), static_cast<int>(Qt::ShiftModifier | Qt::MetaModifier),
                      static_cast<int>(Qt::ControlModifier | Qt::KeypadModifier | Qt::GroupSwitchModifier)),
    [](const ::testing::TestParamInfo<int>& held) { return nameOfModifiers(held.param); });

TEST_F(QtEventMapperMouseTest, ABindingWithoutModifiersDoesNotFireWhileModifiersAreHeld)
{
    bind(Qt::LeftButton, none, "plain");
    consumeEverything();

    EXPECT_FALSE(press(Qt::LeftButton, shift));
    EXPECT_FALSE(drag(Qt::LeftButton, shift));
    EXPECT_FALSE(hover(shift));
    EXPECT_FALSE(release(Qt::LeftButton, shift));

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(QtEventMapperMouseTest, ABindingWithMetaNeverFires)
{
    bind(Qt::LeftButton, meta, "meta");
    bind(Qt::LeftButton, shift | meta, "shift and meta");

    press(Qt::LeftButton, meta);
    press(Qt::LeftButton, shift | meta);
    drag(Qt::LeftButton, meta);
    hover(meta);

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

// Presses and releases

TEST_F(QtEventMapperMouseTest, APressStartsEachMatchingBindingOfTheButtonInTableOrder)
{
    bind(Qt::LeftButton, none, "b");
    bind(Qt::RightButton, none, "right");
    bind(Qt::LeftButton, shift, "shift");
    bind(Qt::LeftButton, none, "a");

    press(Qt::LeftButton);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("b", "start"), sent("a", "start")));
}

TEST_F(QtEventMapperMouseTest, AReleaseEndsActiveBindingsOfTheButtonInTableOrderWhateverTheirModifiers)
{
    bind(Qt::LeftButton, shift, "shift");
    bind(Qt::LeftButton, control, "control");
    bind(Qt::LeftButton, none, "plain");
    press(Qt::LeftButton);
    press(Qt::LeftButton, shift);
    m_log.clear();

    release(Qt::LeftButton, alt);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("shift", "stop"), sent("shift", "trigger"), sent("plain", "stop"),
                                           sent("plain", "trigger")));
}

TEST_F(QtEventMapperMouseTest, AnUnconsumedStartMakesTheCategoryActiveAllTheSame)
{
    bind(Qt::LeftButton, none, "C");

    EXPECT_FALSE(press(Qt::LeftButton));
    EXPECT_FALSE(release(Qt::LeftButton));

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "start"), sent("C", "stop"), sent("C", "trigger")));
}

TEST_F(QtEventMapperMouseTest, AReleaseWithoutAPressSendsNothing)
{
    bind(Qt::LeftButton, none, "C");
    consumeEverything();

    EXPECT_FALSE(release(Qt::LeftButton));

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(QtEventMapperMouseTest, UnmappedButtonsAreIgnored)
{
    bind(Qt::LeftButton, none, "C");
    consumeEverything();

    EXPECT_FALSE(press(Qt::RightButton));
    EXPECT_FALSE(drag(Qt::RightButton));
    EXPECT_FALSE(release(Qt::RightButton));

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(QtEventMapperMouseTest, ACategorySharedByTwoButtonsEndsWithTheFirstRelease)
{
    bind(Qt::LeftButton, none, "C");
    bind(Qt::RightButton, none, "C");

    press(Qt::LeftButton);
    press(Qt::RightButton);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("C", "start"), sent("C", "start")));

    release(Qt::LeftButton);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("C", "stop"), sent("C", "trigger")));

    EXPECT_FALSE(release(Qt::RightButton));
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(QtEventMapperMouseTest, ACategorySharedByTwoBindingsOfAButtonStartsTwiceAndEndsOnce)
{
    bind(Qt::LeftButton, none, "C");
    bind(Qt::LeftButton, none, "C");
    bind(Qt::LeftButton, shift, "C");

    press(Qt::LeftButton);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("C", "start"), sent("C", "start")));

    release(Qt::LeftButton);
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "stop"), sent("C", "trigger")));
}

TEST_F(QtEventMapperMouseTest, AReleaseOfAnotherButtonEndsACategoryThatThisButtonStarted)
{
    bind(Qt::LeftButton, none, "C");
    bind(Qt::RightButton, shift, "C");
    press(Qt::LeftButton);
    m_log.clear();

    release(Qt::RightButton);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "stop"), sent("C", "trigger")));
}

TEST_F(QtEventMapperMouseTest, ASecondPressStartsAnActiveCategoryAgainAndOneReleaseEndsIt)
{
    bind(Qt::LeftButton, none, "C");

    press(Qt::LeftButton);
    press(Qt::LeftButton);
    release(Qt::LeftButton);
    release(Qt::LeftButton);

    EXPECT_THAT(m_log.calls(),
                ElementsAre(sent("C", "start"), sent("C", "start"), sent("C", "stop"), sent("C", "trigger")));
}

TEST_F(QtEventMapperMouseTest, ABindingRemovedWhileActiveIsEndedByAResetOnly)
{
    bind(Qt::LeftButton, none, "C");
    press(Qt::LeftButton);
    m_mapper.removeMouseMapping(Qt::LeftButton, none, "C");
    m_log.clear();

    EXPECT_FALSE(release(Qt::LeftButton));
    EXPECT_THAT(m_log.take(), IsEmpty());

    m_mapper.resetEvents();
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "stop"), sent("C", "trigger")));
}

TEST_F(QtEventMapperMouseTest, ABindingAddedBackWhileActiveIsEndedByTheRelease)
{
    bind(Qt::LeftButton, none, "C");
    press(Qt::LeftButton);
    m_mapper.removeMouseMapping(Qt::LeftButton, none);
    bind(Qt::LeftButton, control, "C");
    m_log.clear();

    release(Qt::LeftButton);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "stop"), sent("C", "trigger")));
}

TEST_F(QtEventMapperMouseTest, AKeyDoesNotEndWhatAButtonStarted)
{
    bind(Qt::LeftButton, none, "C");
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "C", QString());
    press(Qt::LeftButton);
    m_log.clear();

    releaseKey(Qt::Key_A);

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

// Drags and hovers

TEST_F(QtEventMapperMouseTest, ADragWithTwoButtonsReachesOnlyBindingsToTheValueOfBoth)
{
    bind(Qt::LeftButton, none, "left");
    bind(Qt::RightButton, none, "right");
    bind(combination(Qt::LeftButton | Qt::RightButton), none, "both");
    bind(combination(Qt::LeftButton | Qt::MiddleButton), none, "other two");
    press(Qt::RightButton);
    press(Qt::LeftButton);
    m_log.clear();

    drag(Qt::LeftButton | Qt::RightButton);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("both", "process")));

    release(Qt::RightButton);
    drag(Qt::LeftButton);
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("right", "stop"), sent("right", "trigger"), sent("left", "process")));
}

TEST_F(QtEventMapperMouseTest, AChangeOfModifiersPausesTheProcessButNotTheEnd)
{
    bind(Qt::LeftButton, none, "plain");
    bind(Qt::LeftButton, shift, "shift");
    press(Qt::LeftButton);
    m_log.clear();

    drag(Qt::LeftButton, shift);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("shift", "process")));

    drag(Qt::LeftButton, control);
    EXPECT_THAT(m_log.take(), IsEmpty());

    release(Qt::LeftButton, shift);
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("plain", "stop"), sent("plain", "trigger")));
}

TEST_F(QtEventMapperMouseTest, ADragNeedsNoPress)
{
    bind(Qt::LeftButton, none, "C");
    consumeEverything();

    EXPECT_TRUE(drag(Qt::LeftButton));
    EXPECT_FALSE(release(Qt::LeftButton));

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "process")));
}

TEST_F(QtEventMapperMouseTest, ADragLooksUpTheHeldButtonsAndNotTheOneOfTheEvent)
{
    bind(Qt::LeftButton, none, "left");
    bind(Qt::RightButton, none, "right");
    const QMouseEvent event = mouseEvent(QEvent::MouseMove, QPointF(), Qt::LeftButton, Qt::RightButton, none);

    m_mapper.mouseMoved(&event, true);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("right", "process")));
}

TEST_F(QtEventMapperMouseTest, WhetherAMoveIsADragIsTheHostsWord)
{
    bind(Qt::NoButton, none, "no button");
    bind(Qt::LeftButton, none, "left");
    const QMouseEvent held = mouseEvent(QEvent::MouseMove, QPointF(), Qt::NoButton, Qt::LeftButton, none);

    m_mapper.mouseMoved(&held, false);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("no button", "hover"), sent("left", "hover")));

    drag(Qt::NoButton);
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("no button", "process")));
}

TEST_F(QtEventMapperMouseTest, AHoverReachesBindingsOfEveryButtonInTableOrderEachWithItsOwnEvent)
{
    bind(Qt::MiddleButton, none, "C");
    bind(Qt::LeftButton, none, "D");
    bind(Qt::LeftButton, shift, "shift");
    bind(Qt::LeftButton, none, "C");
    bind(Qt::RightButton, none, "C");

    hover();

    EXPECT_THAT(m_log.calls(),
                ElementsAre(sent("D", "hover"), sent("C", "hover"), sent("C", "hover"), sent("C", "hover")));
}

TEST_F(QtEventMapperMouseTest, ALeaveReachesBindingsOfEveryModifier)
{
    bind(Qt::LeftButton, none, "plain");
    bind(Qt::LeftButton, shift, "shift");
    bind(Qt::RightButton, meta, "meta");

    leave();

    EXPECT_THAT(m_log.calls(),
                ElementsAre(sent("plain", "stopHover"), sent("shift", "stopHover"), sent("meta", "stopHover")));
}

TEST_F(QtEventMapperMouseTest, MovesAndLeavesDoNotEndWhatIsActive)
{
    bind(Qt::LeftButton, none, "C");
    press(Qt::LeftButton);
    hover();
    leave();
    drag(Qt::LeftButton);
    m_log.clear();

    release(Qt::LeftButton);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "stop"), sent("C", "trigger")));
}

// Results

struct ResultRow {
    std::string name;
    std::string category;
    std::string verb;
};

void PrintTo(const ResultRow& row, std::ostream* stream)
{
    *stream << row.category << " " << row.verb;
}

class QtEventMapperMouseResultTest : public QtEventMapperFixture, public ::testing::WithParamInterface<ResultRow> {};

TEST_P(QtEventMapperMouseResultTest, OneConsumedEventMakesTheResultTrueAndAllOthersAreSent)
{
    const ResultRow& row = GetParam();
    for (const char* category : {"a", "b", "c"}) {
        m_mapper.addMouseMapping(Qt::LeftButton, none, category, QString());
    }
    consume(row.category, row.verb);

    EXPECT_EQ(press(Qt::LeftButton), row.verb == "start");
    EXPECT_EQ(drag(Qt::LeftButton), row.verb == "process");
    EXPECT_EQ(release(Qt::LeftButton), row.verb == "stop" || row.verb == "trigger");
    EXPECT_EQ(hover(), row.verb == "hover");
    EXPECT_EQ(leave(), row.verb == "stopHover");

    EXPECT_THAT(m_log.calls(),
                ElementsAre(sent("a", "start"), sent("b", "start"), sent("c", "start"), sent("a", "process"),
                            sent("b", "process"), sent("c", "process"), sent("a", "stop"), sent("a", "trigger"),
                            sent("b", "stop"), sent("b", "trigger"), sent("c", "stop"), sent("c", "trigger"),
                            sent("a", "hover"), sent("b", "hover"), sent("c", "hover"), sent("a", "stopHover"),
                            sent("b", "stopHover"), sent("c", "stopHover")));
}

INSTANTIATE_TEST_SUITE_P(Consumed, QtEventMapperMouseResultTest,
                         ::testing::Values(ResultRow{"FirstStart", "a", "start"}, ResultRow{"LastStart", "c", "start"},
                                           ResultRow{"FirstProcess", "a", "process"},
                                           ResultRow{"LastProcess", "c", "process"},
                                           ResultRow{"FirstStop", "a", "stop"},
                                           ResultRow{"FirstTrigger", "a", "trigger"},
                                           ResultRow{"LastStop", "c", "stop"}, ResultRow{"LastTrigger", "c", "trigger"},
                                           ResultRow{"FirstHover", "a", "hover"}, ResultRow{"LastHover", "c", "hover"},
                                           ResultRow{"FirstStopHover", "a", "stopHover"},
                                           ResultRow{"LastStopHover", "c", "stopHover"}, ResultRow{"Nothing", "", ""}),
                         [](const ::testing::TestParamInfo<ResultRow>& row) { return row.param.name; });

// Calls from inside an event

TEST_F(QtEventMapperMouseTest, ABindingRemovedByItsOwnStartIsActiveAndTheOthersAreStarted)
{
    bind(Qt::LeftButton, none, "a");
    bind(Qt::LeftButton, none, "b");
    during(sent("a", "start"), [this] { m_mapper.removeMouseMapping(Qt::LeftButton, none, "a"); });

    press(Qt::LeftButton);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("a", "start"), sent("b", "start")));

    release(Qt::LeftButton);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("b", "stop"), sent("b", "trigger")));

    m_mapper.resetEvents();
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("a", "stop"), sent("a", "trigger")));
}

TEST_F(QtEventMapperMouseTest, ABindingRemovedByAnEarlierStartIsNotStarted)
{
    bind(Qt::LeftButton, none, "a");
    bind(Qt::LeftButton, none, "b");
    bind(Qt::LeftButton, none, "c");
    bind(Qt::RightButton, none, "right");
    during(sent("a", "start"), [this] { m_mapper.removeMouseMapping(Qt::LeftButton, none, "b"); });
    press(Qt::LeftButton);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("a", "start"), sent("c", "start")));

    during(sent("c", "start"), [this] { m_mapper.removeMouseMapping(Qt::RightButton, none); });
    press(Qt::LeftButton);
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("a", "start"), sent("c", "start")));
}

struct RemovalRow {
    std::string name;
    std::string verb;
};

void PrintTo(const RemovalRow& row, std::ostream* stream)
{
    *stream << row.verb;
}

class QtEventMapperMouseRemovalTest : public QtEventMapperFixture, public ::testing::WithParamInterface<RemovalRow> {
protected:
    void send(const std::string& verb)
    {
        if (verb == "start") {
            press(Qt::LeftButton);
        } else if (verb == "process") {
            drag(Qt::LeftButton);
        } else if (verb == "hover") {
            hover();
        } else if (verb == "stopHover") {
            leave();
        } else {
            release(Qt::LeftButton);
        }
    }
};

TEST_P(QtEventMapperMouseRemovalTest, AContextMayRemoveAllBindingsFromInsideAnEvent)
{
    const std::string& verb = GetParam().verb;
    // Too long for a small string: a dangling name would be seen.
    const std::string first = "first with a name that needs memory of its own";
    m_mapper.addMouseMapping(Qt::LeftButton, none, first, QString());
    m_mapper.addMouseMapping(Qt::LeftButton, none, "second", QString());
    m_mapper.addMouseMapping(Qt::RightButton, none, "third", QString());
    press(Qt::LeftButton);
    m_log.clear();
    during(sent(first, verb), [this] {
        m_mapper.removeMouseMapping(Qt::LeftButton, none);
        m_mapper.removeMouseMapping(Qt::RightButton, none);
    });

    send(verb);

    if (verb == "stop" || verb == "trigger") {
        EXPECT_THAT(m_log.take(), ElementsAre(sent(first, "stop"), sent(first, "trigger")));
    } else {
        EXPECT_THAT(m_log.take(), ElementsAre(sent(first, verb)));
    }
    leave();
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_P(QtEventMapperMouseRemovalTest, ABindingAddedFromInsideAnEventTakesPartFromTheNextOperationOn)
{
    const std::string& verb = GetParam().verb;
    const bool reachesAllButtons = verb == "hover" || verb == "stopHover";
    m_mapper.addMouseMapping(Qt::LeftButton, none, "first", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, none, "second", QString());
    m_mapper.addMouseMapping(Qt::RightButton, none, "third", QString());
    // Active, so that a release would end it.
    m_mapper.addMouseMapping(Qt::MiddleButton, none, "added", QString());
    press(Qt::LeftButton);
    press(Qt::MiddleButton);
    m_mapper.removeMouseMapping(Qt::MiddleButton, none);
    m_log.clear();
    during(sent("first", verb), [this] {
        m_mapper.addMouseMapping(Qt::LeftButton, none, "added", QString());
        m_mapper.addMouseMapping(Qt::LeftButton, none, "added", QString());
        m_mapper.addMouseMapping(Qt::RightButton, none, "added", QString());
    });

    send(verb);

    std::vector<std::string> expected;
    for (const std::string category : {"first", "second", "third"}) {
        if (verb == "stop" || verb == "trigger") {
            expected.push_back(sent(category, "stop"));
            expected.push_back(sent(category, "trigger"));
        } else {
            expected.push_back(sent(category, verb));
        }
        if (category == "second" && !reachesAllButtons) {
            break;
        }
    }
    EXPECT_EQ(m_log.take(), expected);
    release(Qt::LeftButton);
    EXPECT_THAT(m_log.calls(), ::testing::IsSupersetOf({sent("added", "stop"), sent("added", "trigger")}));
}

TEST_P(QtEventMapperMouseRemovalTest, AContextThatAddsABindingWithEveryEventDoesNotKeepTheWalkGoing)
{
    const std::string& verb = GetParam().verb;
    int bindingCount = 0;
    const auto addBinding = [&] {
        m_mapper.addMouseMapping(Qt::LeftButton, none, "added " + std::to_string(++bindingCount), QString());
    };
    m_context.setHook([&](const std::string&) { addBinding(); });
    addBinding();
    addBinding();
    press(Qt::LeftButton);

    send(verb);
    m_context.setHook(nullptr);

    EXPECT_LT(bindingCount, 100);
}

INSTANTIATE_TEST_SUITE_P(Inside, QtEventMapperMouseRemovalTest,
                         ::testing::Values(RemovalRow{"Start", "start"}, RemovalRow{"Process", "process"},
                                           RemovalRow{"Stop", "stop"}, RemovalRow{"Trigger", "trigger"},
                                           RemovalRow{"Hover", "hover"}, RemovalRow{"StopHover", "stopHover"}),
                         [](const ::testing::TestParamInfo<RemovalRow>& row) { return row.param.name; });

TEST_F(QtEventMapperMouseTest, AToolMayReplaceItsBindingWithTheCategoryOfTheEvent)
{
    bind(Qt::LeftButton, none, "C");
    during(sent("C", "start"), [this] {
        m_mapper.removeMouseMapping(Qt::LeftButton, none);
        bind(Qt::LeftButton, shift, "C");
    });

    press(Qt::LeftButton);
    release(Qt::LeftButton);
    hover();
    hover(shift);

    EXPECT_THAT(m_log.calls(),
                ElementsAre(sent("C", "start"), sent("C", "stop"), sent("C", "trigger"), sent("C", "hover")));
}

TEST_F(QtEventMapperMouseTest, ABindingReplacedDuringAMoveOfAllButtonsDoesNotDisturbTheWalk)
{
    bind(Qt::LeftButton, none, "left");
    bind(Qt::MiddleButton, none, "middle");
    bind(Qt::RightButton, none, "right");
    during(sent("left", "hover"), [this] {
        m_mapper.removeMouseMapping(Qt::LeftButton, none);
        m_mapper.removeMouseMapping(Qt::RightButton, none);
        bind(Qt::LeftButton, none, "left again");
    });

    hover();
    EXPECT_THAT(m_log.take(), ElementsAre(sent("left", "hover"), sent("middle", "hover")));

    hover();
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("left again", "hover"), sent("middle", "hover")));
}

TEST_F(QtEventMapperMouseTest, ABindingAddedAndRemovedFromInsideAnEventLeavesNoTrace)
{
    bind(Qt::LeftButton, none, "a");
    bind(Qt::MiddleButton, none, "b");
    during(sent("a", "hover"), [this] {
        bind(Qt::LeftButton, none, "added");
        bind(Qt::RightButton, none, "added");
        m_mapper.removeMouseMapping(Qt::LeftButton, none, "added");
        m_mapper.removeMouseMapping(Qt::RightButton, none, "added");
        bind(Qt::RightButton, none, "added again");
    });

    hover();
    EXPECT_THAT(m_log.take(), ElementsAre(sent("a", "hover"), sent("b", "hover")));

    hover();
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("a", "hover"), sent("added again", "hover"), sent("b", "hover")));
}

TEST_F(QtEventMapperMouseTest, AMoveToTheSamePlaceFromInsideTheReportOfTheMoveIsNotReportedAgain)
{
    during(pointer(5, 6), [this] { hover(none, QPointF(5, 6)); });

    hover(none, QPointF(5, 6));

    EXPECT_THAT(m_log.calls(), ElementsAre(pointer(5, 6)));
}

TEST_F(QtEventMapperMouseTest, BindingAKeyFromInsideAnEventOfTheMouseDoesNotDisturbTheOthers)
{
    bind(Qt::LeftButton, none, "a");
    bind(Qt::LeftButton, none, "b");
    during(sent("a", "start"), [this] { m_mapper.addKeyboardMapping(Qt::Key_A, none, "key", QString()); });

    press(Qt::LeftButton);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("a", "start"), sent("b", "start")));

    consumeEverything();
    pressKey(Qt::Key_A);
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("key", "start")));
}

TEST_F(QtEventMapperMouseTest, AResetInsideAStartComesTooEarlyForItsCategory)
{
    bind(Qt::LeftButton, none, "a");
    bind(Qt::LeftButton, none, "b");
    during(sent("b", "start"), [this] { m_mapper.resetEvents(); });

    press(Qt::LeftButton);
    EXPECT_THAT(m_log.take(),
                ElementsAre(sent("a", "start"), sent("b", "start"), sent("a", "stop"), sent("a", "trigger")));

    release(Qt::LeftButton);
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("b", "stop"), sent("b", "trigger")));
}

TEST_F(QtEventMapperMouseTest, ACategoryIsActiveUntilTheTriggerOfItsReleaseHasReturned)
{
    bind(Qt::LeftButton, none, "a");
    bind(Qt::LeftButton, none, "b");
    press(Qt::LeftButton);
    m_log.clear();
    during(sent("a", "trigger"), [this] { m_mapper.resetEvents(); });

    release(Qt::LeftButton);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("a", "stop"), sent("a", "trigger"), sent("a", "stop"),
                                           sent("a", "trigger"), sent("b", "stop"), sent("b", "trigger")));
}

TEST_F(QtEventMapperMouseTest, AReleaseFromInsideAReleaseEndsWhatIsLeft)
{
    bind(Qt::LeftButton, none, "left");
    bind(Qt::RightButton, none, "right");
    press(Qt::LeftButton);
    press(Qt::RightButton);
    m_log.clear();
    during(sent("left", "stop"), [this] { release(Qt::RightButton); });

    release(Qt::LeftButton);
    release(Qt::RightButton);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("left", "stop"), sent("right", "stop"), sent("right", "trigger"),
                                           sent("left", "trigger")));
}

TEST_F(QtEventMapperMouseTest, AResetFromInsideAResetEndsNothingTwice)
{
    for (const char* category : {"a", "b", "c"}) {
        bind(Qt::LeftButton, none, category);
    }
    press(Qt::LeftButton);
    pressKey(Qt::Key_A);
    m_log.clear();
    during(sent("a", "stop"), [this] { m_mapper.resetEvents(); });

    m_mapper.resetEvents();
    m_mapper.resetEvents();

    EXPECT_THAT(m_log.calls(),
                ElementsAre(sent("a", "stop"), sent("b", "stop"), sent("b", "trigger"), sent("c", "stop"),
                            sent("c", "trigger"), sent("qt-key:65", "release"), sent("a", "trigger")));
}

TEST_F(QtEventMapperMouseTest, AResetReachesWhatIsStartedFromInsideForACategoryStillToCome)
{
    bind(Qt::LeftButton, none, "b");
    bind(Qt::RightButton, none, "c");
    press(Qt::LeftButton);
    m_log.clear();
    during(sent("b", "trigger"), [this] { press(Qt::RightButton); });

    m_mapper.resetEvents();
    EXPECT_THAT(m_log.take(), ElementsAre(sent("b", "stop"), sent("b", "trigger"), sent("c", "start"),
                                          sent("c", "stop"), sent("c", "trigger")));

    EXPECT_FALSE(release(Qt::RightButton));
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(QtEventMapperMouseTest, AResetForgetsWhatIsStartedFromInsideForACategoryThatHadItsTurn)
{
    bind(Qt::LeftButton, none, "b");
    bind(Qt::RightButton, none, "a");
    press(Qt::LeftButton);
    m_log.clear();
    during(sent("b", "trigger"), [this] {
        press(Qt::LeftButton);
        press(Qt::RightButton);
    });

    m_mapper.resetEvents();
    release(Qt::LeftButton);
    release(Qt::RightButton);
    m_mapper.resetEvents();

    EXPECT_THAT(m_log.calls(),
                ElementsAre(sent("b", "stop"), sent("b", "trigger"), sent("b", "start"), sent("a", "start")));
}

TEST_F(QtEventMapperMouseTest, AContextMayEndCategoriesStillToComeFromInsideAReset)
{
    bind(Qt::LeftButton, none, "a");
    bind(Qt::RightButton, none, "b");
    bind(Qt::MiddleButton, none, "c");
    press(Qt::LeftButton);
    press(Qt::RightButton);
    press(Qt::MiddleButton);
    m_log.clear();
    during(sent("a", "stop"), [this] {
        release(Qt::LeftButton);
        release(Qt::RightButton);
    });

    m_mapper.resetEvents();

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("a", "stop"), sent("b", "stop"), sent("b", "trigger"),
                                           sent("a", "trigger"), sent("c", "stop"), sent("c", "trigger")));
}

TEST_F(QtEventMapperMouseTest, UnbindingTheManagerFromInsideAnEventEndsTheOperation)
{
    bind(Qt::LeftButton, none, "a");
    bind(Qt::LeftButton, none, "b");
    consumeEverything();
    during(sent("a", "start"), [this] { m_mapper.setInteractionManager(nullptr); });
    EXPECT_TRUE(press(Qt::LeftButton));

    m_mapper.setInteractionManager(&m_manager);
    during(sent("a", "stop"), [this] { m_mapper.setInteractionManager(nullptr); });
    EXPECT_TRUE(release(Qt::LeftButton));

    m_mapper.setInteractionManager(&m_manager);
    during(pointer(1, 1), [this] { m_mapper.setInteractionManager(nullptr); });
    EXPECT_FALSE(press(Qt::LeftButton, none, QPointF(1, 1)));

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("a", "start"), sent("a", "stop"), pointer(1, 1)));
}

TEST_F(QtEventMapperMouseTest, ChangingTheManagerFromInsideAnEventSendsTheRestToTheNewOne)
{
    InteractionManager otherManager;
    RecordingContext otherContext(m_log, "other");
    otherManager.addContext(&otherContext);
    bind(Qt::LeftButton, none, "a");
    bind(Qt::LeftButton, none, "b");
    m_log.clear();
    during(sent("a", "start"), [&] { m_mapper.setInteractionManager(&otherManager); });

    press(Qt::LeftButton);

    EXPECT_THAT(m_log.take(), ElementsAre(sent("a", "start"), "other.triggerEvent(b, start)"));
    otherManager.removeContext(&otherContext);
}

TEST_F(QtEventMapperMouseTest, TwoMappersMayUnbindEachOther)
{
    const QMouseEvent event = mouseEvent(QEvent::MouseButtonPress, QPointF(), Qt::LeftButton, Qt::LeftButton, none);
    QtEventMapper other = m_mapper;
    for (const char* category : {"a", "b"}) {
        bind(Qt::LeftButton, none, category);
        other.addMouseMapping(Qt::LeftButton, none, category, QString());
    }
    during(sent("a", "start"), [&] {
        m_log.add("nested");
        other.mousePressed(&event);
        other.removeMouseMapping(Qt::LeftButton, none);
    });

    press(Qt::LeftButton);
    leave();

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("a", "start"), "nested", sent("a", "start"), sent("b", "start"),
                                           sent("b", "start"), sent("a", "stopHover"), sent("b", "stopHover")));
}

// Allocations

TEST_F(QtEventMapperMouseTest, AfterTheFirstPressShortCategoriesAllocateNothing)
{
    InteractionManager managerWithoutContexts;
    m_mapper.setInteractionManager(&managerWithoutContexts);
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        for (const int modifiers : {none, shift, control}) {
            bind(button, modifiers, "navigate:orbit");
            bind(button, modifiers, "select");
            bind(button, modifiers, "tool:measure");
        }
    }
    const auto pressDragAndRelease = [this] {
        press(Qt::LeftButton, none, QPointF(1, 1));
        drag(Qt::LeftButton, none, QPointF(2, 2));
        release(Qt::LeftButton, none, QPointF(2, 2));
        hover(none, QPointF(3, 3));
        leave();
    };
    pressDragAndRelease();
    const std::size_t allocationCount = getAllocationCount();

    pressDragAndRelease();

    EXPECT_EQ(getAllocationCount(), allocationCount);
}

TEST_F(QtEventMapperMouseTest, StartsOfActiveCategoriesDoNotMakeLaterOnesAllocate)
{
    InteractionManager managerWithoutContexts;
    m_mapper.setInteractionManager(&managerWithoutContexts);
    bind(Qt::LeftButton, none, "left");
    bind(Qt::RightButton, none, "right");
    const auto pressAndReleaseBoth = [this] {
        press(Qt::LeftButton);
        press(Qt::RightButton);
        release(Qt::LeftButton);
        release(Qt::RightButton);
    };
    pressAndReleaseBoth();
    const std::size_t allocationCount = getAllocationCount();

    // More often than memory is kept for.
    for (int count = 0; count < 20; ++count) {
        press(Qt::LeftButton);
        press(Qt::LeftButton);
        release(Qt::LeftButton);
    }
    pressAndReleaseBoth();

    EXPECT_EQ(getAllocationCount(), allocationCount);
}

} // namespace
