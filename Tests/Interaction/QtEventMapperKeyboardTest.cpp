// SPDX-License-Identifier: MIT
#include "QtEventMapperFixture.h"

#include <string>
#include <vector>

using quon::interaction::QtEventMapper;
using quon::testing::nameOfModifiers;
using quon::testing::QtEventMapperFixture;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class QtEventMapperKeyboardTest : public QtEventMapperFixture {
protected:
    void bind(int key, int modifiers, const std::string& category)
    {
        m_mapper.addKeyboardMapping(key, modifiers, category, QString());
    }
};

TEST_F(QtEventMapperKeyboardTest, APressARepeatAndAReleaseOfABoundKeyGiveTheirEventsInOrder)
{
    bind(Qt::Key_R, none, "C");
    consumeEverything();

    EXPECT_TRUE(pressKey(Qt::Key_R, shift));
    EXPECT_THAT(m_log.take(), ElementsAre(sent("C", "start")));

    EXPECT_TRUE(pressKey(Qt::Key_R, shift, true));
    EXPECT_THAT(m_log.take(), IsEmpty());

    EXPECT_TRUE(releaseKey(Qt::Key_R));
    EXPECT_THAT(m_log.take(), ElementsAre(sent("C", "stop"), sent("C", "trigger")));

    EXPECT_FALSE(releaseKey(Qt::Key_R));
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(QtEventMapperKeyboardTest, ABoundPressThatNobodyConsumedAlsoGivesTheGenericPressAndItsRelease)
{
    bind(Qt::Key_R, none, "C");

    EXPECT_FALSE(pressKey(Qt::Key_R, shift));
    EXPECT_THAT(m_log.take(), ElementsAre(sent("C", "start"), sent("qt-key:shift+82", "press")));

    EXPECT_FALSE(releaseKey(Qt::Key_R));
    EXPECT_THAT(m_log.take(), ElementsAre(sent("C", "stop"), sent("C", "trigger"), sent("qt-key:shift+82", "release")));

    EXPECT_FALSE(releaseKey(Qt::Key_R));
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(QtEventMapperKeyboardTest, AnUnboundKeyGivesOnlyTheGenericPressAndRelease)
{
    consumeEverything();

    EXPECT_TRUE(pressKey(Qt::Key_A));
    EXPECT_TRUE(releaseKey(Qt::Key_A));

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("qt-key:65", "press"), sent("qt-key:65", "release")));
}

// Matching

TEST_F(QtEventMapperKeyboardTest, ABindingWithoutModifiersFiresWhateverIsHeld)
{
    bind(Qt::Key_R, none, "C1");
    bind(Qt::Key_R, shift, "C2");
    consumeEverything();

    pressKey(Qt::Key_R, shift);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("C1", "start"), sent("C2", "start")));

    pressKey(Qt::Key_R);
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C1", "start")));
}

class QtEventMapperKeyModifierTest : public QtEventMapperFixture, public ::testing::WithParamInterface<int> {
protected:
    QtEventMapperKeyModifierTest() { consumeEverything(); }

    static std::string expectedCategory() { return nameOfModifiers(GetParam() & (shift | control | alt)); }
};

TEST_P(QtEventMapperKeyModifierTest, APressStartsTheBindingWithExactlyTheseOfShiftControlAndAlt)
{
    for (const int modifiers : {shift, control, alt, shift | control, shift | alt, control | alt, shift | control | alt,
                                shift | meta, meta, keypad, groupSwitch}) {
        m_mapper.addKeyboardMapping(Qt::Key_A, modifiers, nameOfModifiers(modifiers), QString());
    }

    pressKey(Qt::Key_A, GetParam());

    if (expectedCategory() == "None") {
        EXPECT_THAT(m_log.calls(), ElementsAre(sent("qt-key:65", "press")));
    } else {
        EXPECT_THAT(m_log.calls(), ElementsAre(sent(expectedCategory(), "start")));
    }
}

TEST_P(QtEventMapperKeyModifierTest, ABindingWithoutModifiersStartsAlways)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "wildcard", QString());

    pressKey(Qt::Key_A, GetParam());

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("wildcard", "start")));
}

TEST_P(QtEventMapperKeyModifierTest, AReleaseDoesNotLookAtModifiers)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, control, "control", QString());
    m_mapper.addKeyboardMapping(Qt::Key_A, shift, "shift", QString());
    pressKey(Qt::Key_A, control);
    m_log.clear();

    releaseKey(Qt::Key_A, GetParam());

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("control", "stop"), sent("control", "trigger")));
}

INSTANTIATE_TEST_SUITE_P(
    Held, QtEventMapperKeyModifierTest,
    ::testing::Values(0, static_cast<int>(Qt::ShiftModifier), static_cast<int>(Qt::ControlModifier),
                      static_cast<int>(Qt::AltModifier), static_cast<int>(Qt::ShiftModifier | Qt::ControlModifier),
                      static_cast<int>(Qt::ShiftModifier | Qt::AltModifier),
                      static_cast<int>(Qt::ControlModifier | Qt::AltModifier),
                      static_cast<int>(Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier),
                      static_cast<int>(Qt::MetaModifier), static_cast<int>(Qt::KeypadModifier),
                      static_cast<int>(Qt::GroupSwitchModifier), static_cast<int>(Qt::ShiftModifier | Qt::MetaModifier),
                      static_cast<int>(Qt::ControlModifier | Qt::KeypadModifier | Qt::GroupSwitchModifier)),
    [](const ::testing::TestParamInfo<int>& held) { return nameOfModifiers(held.param); });

struct ModifierKeyRow {
    std::string name;
    int key;
    int own;
    int other;
};

void PrintTo(const ModifierKeyRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class QtEventMapperModifierKeyTest : public QtEventMapperFixture, public ::testing::WithParamInterface<ModifierKeyRow> {
protected:
    QtEventMapperModifierKeyTest()
    {
        consumeEverything();
        m_mapper.addKeyboardMapping(GetParam().key, GetParam().own, "own", QString());
    }
};

TEST_P(QtEventMapperModifierKeyTest, ABindingWithItsOwnFlagNeverFires)
{
    const int key = GetParam().key;
    const int own = GetParam().own;

    pressKey(key, own);
    pressKey(key, none);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("qt-key:" + QtEventMapper::qtKeyEventToString(key, own), "press"),
                                           sent("qt-key:" + QtEventMapper::qtKeyEventToString(key, none), "press")));
}

TEST_P(QtEventMapperModifierKeyTest, ABindingWithoutModifiersFiresAlthoughTheOwnFlagIsReported)
{
    m_mapper.addKeyboardMapping(GetParam().key, none, "plain", QString());

    pressKey(GetParam().key, GetParam().own);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("plain", "start")));
}

TEST_P(QtEventMapperModifierKeyTest, ABindingWithAnotherModifierFiresWhileThatIsHeld)
{
    m_mapper.addKeyboardMapping(GetParam().key, GetParam().other, "other", QString());
    m_mapper.addKeyboardMapping(GetParam().key, GetParam().own | GetParam().other, "both", QString());

    pressKey(GetParam().key, GetParam().own | GetParam().other);
    pressKey(GetParam().key, GetParam().other);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("other", "start"), sent("other", "start")));
}

INSTANTIATE_TEST_SUITE_P(Keys, QtEventMapperModifierKeyTest,
                         ::testing::Values(ModifierKeyRow{"Shift", Qt::Key_Shift, static_cast<int>(Qt::ShiftModifier),
                                                          static_cast<int>(Qt::ControlModifier)},
                                           ModifierKeyRow{"Control", Qt::Key_Control,
                                                          static_cast<int>(Qt::ControlModifier),
                                                          static_cast<int>(Qt::ShiftModifier)},
                                           ModifierKeyRow{"Alt", Qt::Key_Alt, static_cast<int>(Qt::AltModifier),
                                                          static_cast<int>(Qt::ShiftModifier)}),
                         [](const ::testing::TestParamInfo<ModifierKeyRow>& row) { return row.param.name; });

TEST_F(QtEventMapperKeyboardTest, ABindingWithMetaNeverFires)
{
    bind(Qt::Key_A, meta, "meta");
    bind(Qt::Key_A, meta | shift, "shift and meta");
    bind(Qt::Key_Meta, meta, "meta key");
    consumeEverything();

    pressKey(Qt::Key_A, meta);
    pressKey(Qt::Key_A, meta | shift);
    pressKey(Qt::Key_Meta, meta);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("qt-key:65", "press"), sent("qt-key:shift+65", "press"),
                                           sent("qt-key:16777250", "press")));
}

// Results

TEST_F(QtEventMapperKeyboardTest, OneConsumedStartIsEnoughAndAllOthersAreSent)
{
    bind(Qt::Key_A, none, "a");
    bind(Qt::Key_A, none, "b");
    bind(Qt::Key_A, none, "c");
    consume("a", "start");

    EXPECT_TRUE(pressKey(Qt::Key_A));
    EXPECT_THAT(m_log.take(), ElementsAre(sent("a", "start"), sent("b", "start"), sent("c", "start")));

    consumeNothing();
    consume("c", "start");
    EXPECT_TRUE(pressKey(Qt::Key_A));
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("a", "start"), sent("b", "start"), sent("c", "start")));
}

TEST_F(QtEventMapperKeyboardTest, AConsumedGenericPressMakesTheResultTrue)
{
    bind(Qt::Key_A, none, "C");
    consume("qt-key:65", "press");

    EXPECT_TRUE(pressKey(Qt::Key_A));
}

struct ReleaseRow {
    std::string name;
    std::string category;
    std::string verb;
};

void PrintTo(const ReleaseRow& row, std::ostream* stream)
{
    *stream << row.category << " " << row.verb;
}

class QtEventMapperKeyResultTest : public QtEventMapperFixture, public ::testing::WithParamInterface<ReleaseRow> {};

TEST_P(QtEventMapperKeyResultTest, OneConsumedEventOfAReleaseIsEnoughAndAllOthersAreSent)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "a", QString());
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "b", QString());
    pressKey(Qt::Key_A);
    pressKey(Qt::Key_A, control);
    m_log.clear();
    consume(GetParam().category, GetParam().verb);

    const bool result = releaseKey(Qt::Key_A);

    EXPECT_EQ(result, GetParam().verb != "");
    EXPECT_THAT(m_log.calls(),
                ElementsAre(sent("a", "stop"), sent("a", "trigger"), sent("b", "stop"), sent("b", "trigger"),
                            sent("qt-key:65", "release"), sent("qt-key:ctrl+65", "release")));
}

INSTANTIATE_TEST_SUITE_P(
    Consumed, QtEventMapperKeyResultTest,
    ::testing::Values(ReleaseRow{"FirstStop", "a", "stop"}, ReleaseRow{"FirstTrigger", "a", "trigger"},
                      ReleaseRow{"LastStop", "b", "stop"}, ReleaseRow{"LastTrigger", "b", "trigger"},
                      ReleaseRow{"FirstRelease", "qt-key:65", "release"},
                      ReleaseRow{"LastRelease", "qt-key:ctrl+65", "release"}, ReleaseRow{"Nothing", "", ""}),
    [](const ::testing::TestParamInfo<ReleaseRow>& row) { return row.param.name; });

// Repeats

TEST_F(QtEventMapperKeyboardTest, AutoRepeatsAreSwallowedWhetherBoundOrNot)
{
    bind(Qt::Key_R, none, "C");

    EXPECT_TRUE(pressKey(Qt::Key_R, none, true));
    EXPECT_TRUE(releaseKey(Qt::Key_R, none, true));
    EXPECT_TRUE(pressKey(Qt::Key_A, none, true));
    EXPECT_TRUE(releaseKey(Qt::Key_A, none, true));
    EXPECT_THAT(m_log.take(), IsEmpty());

    EXPECT_FALSE(releaseKey(Qt::Key_R));
    EXPECT_FALSE(releaseKey(Qt::Key_A));
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(QtEventMapperKeyboardTest, TheReleaseOfARepeatEndsNothing)
{
    bind(Qt::Key_R, none, "C");
    pressKey(Qt::Key_R);
    m_log.clear();

    releaseKey(Qt::Key_R, none, true);
    EXPECT_THAT(m_log.take(), IsEmpty());

    releaseKey(Qt::Key_R);
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "stop"), sent("C", "trigger"), sent("qt-key:82", "release")));
}

// Pending categories and presses

TEST_F(QtEventMapperKeyboardTest, ASecondPressStartsAnActiveCategoryAgainAndOneReleaseEndsIt)
{
    bind(Qt::Key_A, none, "C");
    consumeEverything();

    pressKey(Qt::Key_A);
    pressKey(Qt::Key_A);
    releaseKey(Qt::Key_A);
    releaseKey(Qt::Key_A);

    EXPECT_THAT(m_log.calls(),
                ElementsAre(sent("C", "start"), sent("C", "start"), sent("C", "stop"), sent("C", "trigger")));
}

TEST_F(QtEventMapperKeyboardTest, TwoPressesWithoutAReleaseAreReleasedTogetherOldestFirst)
{
    pressKey(Qt::Key_A, shift);
    pressKey(Qt::Key_B);
    pressKey(Qt::Key_A, control);
    pressKey(Qt::Key_A, shift);
    m_log.clear();

    releaseKey(Qt::Key_A);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("qt-key:shift+65", "release"), sent("qt-key:ctrl+65", "release"),
                                          sent("qt-key:shift+65", "release")));

    releaseKey(Qt::Key_A);
    releaseKey(Qt::Key_B);
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("qt-key:66", "release")));
}

TEST_F(QtEventMapperKeyboardTest, TheReleaseNamesTheModifiersOfThePress)
{
    pressKey(Qt::Key_A, control | shift | meta);
    releaseKey(Qt::Key_A, alt);

    EXPECT_THAT(m_log.calls(),
                ElementsAre(sent("qt-key:ctrl+shift+65", "press"), sent("qt-key:ctrl+shift+65", "release")));
}

TEST_F(QtEventMapperKeyboardTest, AGenericPressOfAModifierKeyNamesItsOwnFlag)
{
    pressKey(Qt::Key_Shift, shift);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("qt-key:shift+16777248", "press")));
}

TEST_F(QtEventMapperKeyboardTest, ACategorySharedByTwoKeysEndsWithTheFirstRelease)
{
    bind(Qt::Key_A, none, "C");
    bind(Qt::Key_B, shift, "C");
    consumeEverything();
    pressKey(Qt::Key_A);
    m_log.clear();

    EXPECT_TRUE(releaseKey(Qt::Key_B));
    EXPECT_FALSE(releaseKey(Qt::Key_A));

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "stop"), sent("C", "trigger")));
}

TEST_F(QtEventMapperKeyboardTest, ACategorySharedByTwoBindingsOfAKeyEndsOnce)
{
    bind(Qt::Key_A, none, "C");
    bind(Qt::Key_A, shift, "C");
    consumeEverything();
    pressKey(Qt::Key_A, shift);
    m_log.clear();

    releaseKey(Qt::Key_A);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "stop"), sent("C", "trigger")));
}

TEST_F(QtEventMapperKeyboardTest, AButtonDoesNotEndWhatAKeyStarted)
{
    bind(Qt::Key_A, none, "C");
    m_mapper.addMouseMapping(Qt::LeftButton, none, "C", QString());
    consumeEverything();
    pressKey(Qt::Key_A);
    m_log.clear();

    EXPECT_FALSE(release(Qt::LeftButton));

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(QtEventMapperKeyboardTest, ABindingRemovedWhileActiveIsEndedByAResetOnly)
{
    bind(Qt::Key_A, none, "C");
    consumeEverything();
    pressKey(Qt::Key_A);
    m_mapper.removeKeyboardMapping(Qt::Key_A, none);
    m_log.clear();

    EXPECT_FALSE(releaseKey(Qt::Key_A));
    EXPECT_THAT(m_log.take(), IsEmpty());

    m_mapper.resetEvents();
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "stop"), sent("C", "trigger")));
}

TEST_F(QtEventMapperKeyboardTest, KeysDoNotReportThePointer)
{
    hover(none, QPointF(5, 5));
    m_log.clear();

    pressKey(Qt::Key_A);
    releaseKey(Qt::Key_A);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("qt-key:65", "press"), sent("qt-key:65", "release")));
}

// Control characters

struct ControlCharacterRow {
    std::string name;
    int reported;
    int key;
};

void PrintTo(const ControlCharacterRow& row, std::ostream* stream)
{
    *stream << row.reported << " for " << row.key;
}

class QtEventMapperControlCharacterTest : public QtEventMapperFixture,
                                          public ::testing::WithParamInterface<ControlCharacterRow> {};

TEST_P(QtEventMapperControlCharacterTest, AReleaseEndsTheKeyThatTheCodeStandsFor)
{
    m_mapper.addKeyboardMapping(GetParam().key, none, "C", QString());
    pressKey(GetParam().key);
    m_log.clear();

    releaseKey(GetParam().reported);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "stop"), sent("C", "trigger"),
                                           sent("qt-key:" + std::to_string(GetParam().key), "release")));
}

INSTANTIATE_TEST_SUITE_P(Codes, QtEventMapperControlCharacterTest,
                         ::testing::Values(ControlCharacterRow{"ZeroStays", 0, 0},
                                           ControlCharacterRow{"OneIsA", 1, Qt::Key_A},
                                           ControlCharacterRow{"TwentySixIsZ", 26, Qt::Key_Z},
                                           ControlCharacterRow{"ThirtyOneIsUnderscore", 31, Qt::Key_Underscore},
                                           ControlCharacterRow{"ThirtyTwoStays", 32, Qt::Key_Space},
                                           ControlCharacterRow{"MinusOneStays", -1, -1},
                                           ControlCharacterRow{"AStays", Qt::Key_A, Qt::Key_A}),
                         [](const ::testing::TestParamInfo<ControlCharacterRow>& row) { return row.param.name; });

TEST_F(QtEventMapperKeyboardTest, PressesAreNotNormalisedAndEndWithAResetOnly)
{
    bind(1, none, "control character");
    bind(Qt::Key_A, none, "a");

    pressKey(1, control);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("control character", "start"), sent("qt-key:ctrl+1", "press")));

    EXPECT_FALSE(releaseKey(1, control));
    EXPECT_FALSE(releaseKey(Qt::Key_A, control));
    EXPECT_THAT(m_log.take(), IsEmpty());

    m_mapper.resetEvents();
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("control character", "stop"), sent("control character", "trigger"),
                                           sent("qt-key:ctrl+1", "release")));
}

// Presenter mode

TEST_F(QtEventMapperKeyboardTest, InPresenterModeABoundKeyNeitherStartsNorReleases)
{
    bind(Qt::Key_A, none, "C");
    consumeEverything();
    m_manager.setPresenterMode(true);

    EXPECT_FALSE(pressKey(Qt::Key_A));
    EXPECT_FALSE(pressKey(Qt::Key_A, shift | control | alt));
    EXPECT_FALSE(releaseKey(Qt::Key_A));
    EXPECT_THAT(m_log.take(), IsEmpty());

    m_manager.setPresenterMode(false);
    EXPECT_FALSE(releaseKey(Qt::Key_A));
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(QtEventMapperKeyboardTest, InPresenterModeAReleaseLeavesWhatIsPendingUntilLater)
{
    bind(Qt::Key_A, none, "C");
    pressKey(Qt::Key_A);
    m_manager.setPresenterMode(true);
    m_log.clear();

    EXPECT_FALSE(releaseKey(Qt::Key_A, shift));
    EXPECT_THAT(m_log.take(), IsEmpty());

    m_manager.setPresenterMode(false);
    releaseKey(Qt::Key_A);
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "stop"), sent("C", "trigger"), sent("qt-key:65", "release")));
}

TEST_F(QtEventMapperKeyboardTest, InPresenterModeAnAutoRepeatIsStillSwallowed)
{
    m_manager.setPresenterMode(true);

    EXPECT_TRUE(pressKey(Qt::Key_A, none, true));
    EXPECT_TRUE(releaseKey(Qt::Key_A, none, true));

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

class QtEventMapperPresenterModeTest : public QtEventMapperFixture, public ::testing::WithParamInterface<int> {};

TEST_P(QtEventMapperPresenterModeTest, OnlyUnknownKeysWithShiftControlOrAltPass)
{
    const bool passes = (GetParam() & (shift | control | alt)) != 0;
    m_mapper.addKeyboardMapping(Qt::Key_unknown, none, "C", QString());
    consumeEverything();
    m_manager.setPresenterMode(true);

    EXPECT_EQ(pressKey(Qt::Key_unknown, GetParam()), passes);
    EXPECT_EQ(releaseKey(Qt::Key_unknown, GetParam()), passes);
    EXPECT_FALSE(pressKey(Qt::Key_Escape, GetParam()));
    EXPECT_FALSE(releaseKey(Qt::Key_Escape, GetParam()));

    if (passes) {
        EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "start"), sent("C", "stop"), sent("C", "trigger")));
    } else {
        EXPECT_THAT(m_log.calls(), IsEmpty());
    }
}

TEST_P(QtEventMapperPresenterModeTest, TheGateIsTheSameForTheReleaseOfWhatWasPressedBefore)
{
    const bool passes = (GetParam() & (shift | control | alt)) != 0;
    m_mapper.addKeyboardMapping(Qt::Key_unknown, none, "C", QString());
    consumeEverything();
    pressKey(Qt::Key_unknown);
    m_log.clear();
    m_manager.setPresenterMode(true);

    EXPECT_EQ(releaseKey(Qt::Key_unknown, GetParam()), passes);

    if (passes) {
        EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "stop"), sent("C", "trigger")));
    } else {
        EXPECT_THAT(m_log.calls(), IsEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(Held, QtEventMapperPresenterModeTest,
                         ::testing::Values(0, static_cast<int>(Qt::ShiftModifier),
                                           static_cast<int>(Qt::ControlModifier), static_cast<int>(Qt::AltModifier),
                                           static_cast<int>(Qt::MetaModifier),
                                           static_cast<int>(Qt::KeypadModifier | Qt::GroupSwitchModifier),
                                           static_cast<int>(Qt::ShiftModifier | Qt::MetaModifier)),
                         [](const ::testing::TestParamInfo<int>& held) { return nameOfModifiers(held.param); });

TEST_F(QtEventMapperKeyboardTest, InPresenterModeAnUnboundUnknownKeyTakesTheGenericPath)
{
    m_manager.setPresenterMode(true);

    pressKey(Qt::Key_unknown, alt);
    releaseKey(Qt::Key_unknown, alt);

    EXPECT_THAT(m_log.calls(),
                ElementsAre(sent("qt-key:alt+33554431", "press"), sent("qt-key:alt+33554431", "release")));
}

TEST_F(QtEventMapperKeyboardTest, PresenterModeDoesNotConcernTheMouse)
{
    m_mapper.addMouseMapping(Qt::LeftButton, none, "C", QString());
    m_manager.setPresenterMode(true);

    press(Qt::LeftButton);
    release(Qt::LeftButton);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "start"), sent("C", "stop"), sent("C", "trigger")));
}

// Resets

TEST_F(QtEventMapperKeyboardTest, AResetEndsKeysThenButtonsThenGenericPresses)
{
    bind(Qt::Key_A, none, "C1");
    m_mapper.addMouseMapping(Qt::LeftButton, none, "C2", QString());
    consumeEverything();
    pressKey(Qt::Key_B, alt);
    press(Qt::LeftButton);
    pressKey(Qt::Key_A);
    m_log.clear();

    m_mapper.resetEvents();
    EXPECT_THAT(m_log.take(), ElementsAre(sent("C1", "stop"), sent("C1", "trigger"), sent("C2", "stop"),
                                          sent("C2", "trigger"), sent("qt-key:alt+66", "release")));

    EXPECT_FALSE(releaseKey(Qt::Key_A));
    EXPECT_FALSE(releaseKey(Qt::Key_B));
    EXPECT_FALSE(release(Qt::LeftButton));
    m_mapper.resetEvents();
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(QtEventMapperKeyboardTest, AResetGoesByByteOrderOfCategoriesAndByKeyOldestFirst)
{
    for (const char* category : {"b", "a:b", "\xC3\xA4", "Z", "a", ""}) {
        bind(Qt::Key_A, none, category);
        m_mapper.addMouseMapping(Qt::LeftButton, none, category, QString());
    }
    pressKey(Qt::Key_Escape);
    pressKey(Qt::Key_B, shift);
    pressKey(Qt::Key_B);
    consumeEverything();
    pressKey(Qt::Key_A);
    press(Qt::LeftButton);
    m_log.clear();

    m_mapper.resetEvents();

    std::vector<std::string> expected;
    for (int device = 0; device < 2; ++device) {
        for (const char* category : {"", "Z", "a", "a:b", "b", "\xC3\xA4"}) {
            expected.push_back(sent(category, "stop"));
            expected.push_back(sent(category, "trigger"));
        }
    }
    expected.push_back(sent("qt-key:shift+66", "release"));
    expected.push_back(sent("qt-key:66", "release"));
    expected.push_back(sent("qt-key:16777216", "release"));
    EXPECT_EQ(m_log.calls(), expected);
}

TEST_F(QtEventMapperKeyboardTest, AResetLeavesBindingsAndThePointerAlone)
{
    bind(Qt::Key_A, none, "key");
    m_mapper.addMouseMapping(Qt::LeftButton, none, "button", QString());
    consumeEverything();
    hover(none, QPointF(9, 9));
    m_log.clear();

    m_mapper.resetEvents();
    hover(none, QPointF(9, 9));
    pressKey(Qt::Key_A);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("button", "hover"), sent("key", "start")));
}

TEST_F(QtEventMapperKeyboardTest, AResetInPresenterModeEndsEverythingAllTheSame)
{
    bind(Qt::Key_A, none, "C");
    pressKey(Qt::Key_A);
    m_manager.setPresenterMode(true);
    m_log.clear();

    m_mapper.resetEvents();

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("C", "stop"), sent("C", "trigger"), sent("qt-key:65", "release")));
}

TEST_F(QtEventMapperKeyboardTest, AResetWithNothingPendingNeedsNoManager)
{
    bind(Qt::Key_A, none, "C");
    m_mapper.setInteractionManager(nullptr);

    m_mapper.resetEvents();

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

// Calls from inside an event

TEST_F(QtEventMapperKeyboardTest, AContextMayRemoveAllBindingsFromInsideAStart)
{
    // Too long for a small string: a dangling name would be seen.
    const std::string first = "first with a name that needs memory of its own";
    bind(Qt::Key_A, none, first);
    bind(Qt::Key_A, none, "second");
    bind(Qt::Key_B, none, "other key");
    consumeEverything();
    during(sent(first, "start"), [this] {
        m_mapper.removeKeyboardMapping(Qt::Key_A, none);
        m_mapper.removeKeyboardMapping(Qt::Key_B, none);
    });

    EXPECT_TRUE(pressKey(Qt::Key_A));
    EXPECT_THAT(m_log.take(), ElementsAre(sent(first, "start")));

    m_mapper.resetEvents();
    EXPECT_THAT(m_log.calls(), ElementsAre(sent(first, "stop"), sent(first, "trigger")));
}

TEST_F(QtEventMapperKeyboardTest, AContextMayRemoveAllBindingsFromInsideAStop)
{
    bind(Qt::Key_A, none, "a");
    bind(Qt::Key_A, none, "b");
    consumeEverything();
    pressKey(Qt::Key_A);
    m_log.clear();
    during(sent("a", "stop"), [this] { m_mapper.removeKeyboardMapping(Qt::Key_A, none); });

    releaseKey(Qt::Key_A);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("a", "stop"), sent("a", "trigger")));

    m_mapper.resetEvents();
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("b", "stop"), sent("b", "trigger")));
}

TEST_F(QtEventMapperKeyboardTest, AResetFromInsideAGenericReleaseEndsNothingTwice)
{
    pressKey(Qt::Key_A);
    pressKey(Qt::Key_A, shift);
    pressKey(Qt::Key_B);
    m_log.clear();
    during(sent("qt-key:65", "release"), [this] { m_mapper.resetEvents(); });

    releaseKey(Qt::Key_A);
    releaseKey(Qt::Key_B);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("qt-key:65", "release"), sent("qt-key:66", "release"),
                                           sent("qt-key:shift+65", "release")));
}

TEST_F(QtEventMapperKeyboardTest, AKeyPressedFromInsideItsGenericReleaseStaysPending)
{
    pressKey(Qt::Key_A);
    m_log.clear();
    during(sent("qt-key:65", "release"), [this] { pressKey(Qt::Key_A, alt); });

    releaseKey(Qt::Key_A);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("qt-key:65", "release"), sent("qt-key:alt+65", "press")));

    releaseKey(Qt::Key_A);
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("qt-key:alt+65", "release")));
}

TEST_F(QtEventMapperKeyboardTest, NothingIsPendingAfterAResetFromInsideWhichKeysArePressed)
{
    pressKey(Qt::Key_B);
    pressKey(Qt::Key_D);
    m_log.clear();
    during(sent("qt-key:66", "release"), [this] {
        pressKey(Qt::Key_A);
        pressKey(Qt::Key_B, alt);
        pressKey(Qt::Key_C);
    });

    m_mapper.resetEvents();
    // C was still to come, A and B had their turn.
    EXPECT_THAT(m_log.take(),
                ElementsAre(sent("qt-key:66", "release"), sent("qt-key:65", "press"), sent("qt-key:alt+66", "press"),
                            sent("qt-key:67", "press"), sent("qt-key:67", "release"), sent("qt-key:68", "release")));

    for (const int key : {Qt::Key_A, Qt::Key_B, Qt::Key_C}) {
        EXPECT_FALSE(releaseKey(key));
    }
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(QtEventMapperKeyboardTest, AKeyPressedFromInsideAResetWhenKeysHadTheirTurnStaysActive)
{
    bind(Qt::Key_A, none, "a");
    m_mapper.addMouseMapping(Qt::LeftButton, none, "b", QString());
    press(Qt::LeftButton);
    consume("a", "start");
    m_log.clear();
    during(sent("b", "stop"), [this] { pressKey(Qt::Key_A); });

    m_mapper.resetEvents();
    EXPECT_THAT(m_log.take(), ElementsAre(sent("b", "stop"), sent("a", "start"), sent("b", "trigger")));

    releaseKey(Qt::Key_A);
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("a", "stop"), sent("a", "trigger")));
}

TEST_F(QtEventMapperKeyboardTest, AResetInsideAGenericPressComesTooEarlyForIt)
{
    during(sent("qt-key:65", "press"), [this] { m_mapper.resetEvents(); });

    pressKey(Qt::Key_A);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("qt-key:65", "press")));

    releaseKey(Qt::Key_A);
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("qt-key:65", "release")));
}

TEST_F(QtEventMapperKeyboardTest, AContextMayReleaseKeysFromInsideAReset)
{
    bind(Qt::Key_A, none, "a");
    bind(Qt::Key_B, none, "b");
    pressKey(Qt::Key_A);
    pressKey(Qt::Key_B);
    m_log.clear();
    during(sent("a", "stop"), [this] {
        releaseKey(Qt::Key_A);
        releaseKey(Qt::Key_B);
    });

    m_mapper.resetEvents();

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("a", "stop"), sent("qt-key:65", "release"), sent("b", "stop"),
                                           sent("b", "trigger"), sent("qt-key:66", "release"), sent("a", "trigger")));
}

TEST_F(QtEventMapperKeyboardTest, UnbindingTheManagerFromInsideAnEventEndsTheOperation)
{
    bind(Qt::Key_A, none, "a");
    bind(Qt::Key_A, none, "b");
    during(sent("a", "start"), [this] { m_mapper.setInteractionManager(nullptr); });
    EXPECT_FALSE(pressKey(Qt::Key_A));

    m_mapper.setInteractionManager(&m_manager);
    during(sent("a", "stop"), [this] { m_mapper.setInteractionManager(nullptr); });
    m_mapper.resetEvents();

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("a", "start"), sent("a", "stop")));
}

} // namespace
