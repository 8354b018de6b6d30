// SPDX-License-Identifier: MIT
#include "QtEventMapperFixture.h"

#include <Shortcut/koShortcut.h>

#include <QCoreApplication>
#include <QTranslator>

#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using quon::interaction::InputMapping;
using quon::interaction::InteractionManager;
using quon::interaction::QtEventMapper;
using quon::testing::QtEventMapperFixture;
using quon::testing::RecordingContext;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class QtEventMapperTest : public QtEventMapperFixture {
protected:
    QtEventMapperTest() { koShortcut::clear(); }
    ~QtEventMapperTest() override { koShortcut::clear(); }

    static std::vector<std::string> registeredShortcuts()
    {
        std::vector<std::string> texts;
        for (const koShortcut::Entry& entry : koShortcut::getEntries()) {
            texts.push_back(entry.group.toStdString() + (entry.kind == koShortcut::Key ? " key " : " button ") +
                            std::to_string(entry.code) + " " + quon::testing::nameOfModifiers(entry.modifiers) + ": " +
                            entry.description.toStdString());
        }
        return texts;
    }
};

// The mapper itself

TEST_F(QtEventMapperTest, IsAPlainClassThatCanBeCopied)
{
    EXPECT_FALSE(std::is_polymorphic_v<QtEventMapper>);
    EXPECT_TRUE(std::is_copy_constructible_v<QtEventMapper>);
    EXPECT_TRUE(std::is_copy_assignable_v<QtEventMapper>);
}

TEST_F(QtEventMapperTest, InputMappingHoldsCodeModifiersAndCategoryInThisOrder)
{
    const InputMapping mapping{Qt::Key_A, shift, "select"};

    EXPECT_EQ(mapping.code, Qt::Key_A);
    EXPECT_EQ(mapping.modifiers, shift);
    EXPECT_EQ(mapping.category, "select");
}

TEST_F(QtEventMapperTest, WithoutManagerEveryInputIsAnsweredWithFalseAndNothingIsRemembered)
{
    m_mapper.setInteractionManager(nullptr);
    m_mapper.addMouseMapping(Qt::LeftButton, none, "orbit", "Orbit");
    m_mapper.addKeyboardMapping(Qt::Key_R, none, "reset", "Reset");
    consumeEverything();

    EXPECT_FALSE(press(Qt::LeftButton, none, QPointF(3, 4)));
    EXPECT_FALSE(drag(Qt::LeftButton, none, QPointF(3, 4)));
    EXPECT_FALSE(release(Qt::LeftButton, none, QPointF(3, 4)));
    EXPECT_FALSE(hover(none, QPointF(3, 4)));
    EXPECT_FALSE(leave());
    EXPECT_FALSE(pressKey(Qt::Key_R));
    EXPECT_FALSE(pressKey(Qt::Key_R, none, true));
    EXPECT_FALSE(releaseKey(Qt::Key_R));
    EXPECT_FALSE(releaseKey(Qt::Key_R, none, true));
    m_mapper.setInteractionManager(&m_manager);
    m_mapper.resetEvents();
    EXPECT_THAT(m_log.take(), IsEmpty());

    hover(none, QPointF(3, 4));

    EXPECT_THAT(m_log.calls(), ElementsAre(pointer(3, 4), sent("orbit", "hover")));
}

TEST_F(QtEventMapperTest, ANewMapperHasNoManager)
{
    const QMouseEvent event = mouseEvent(QEvent::MouseButtonPress, QPointF(1, 1), Qt::LeftButton, Qt::LeftButton, none);
    QtEventMapper mapper;
    mapper.addMouseMapping(Qt::LeftButton, none, "orbit", QString());

    EXPECT_FALSE(mapper.mousePressed(&event));
}

TEST_F(QtEventMapperTest, ANewMapperHasNoBindings)
{
    EXPECT_FALSE(press(Qt::LeftButton));
    EXPECT_FALSE(hover());
    EXPECT_FALSE(leave());
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(QtEventMapperTest, BindingsAndPendingEventsSurviveAChangeOfTheManager)
{
    InteractionManager otherManager;
    RecordingContext otherContext(m_log, "other");
    otherManager.addContext(&otherContext);
    m_mapper.addMouseMapping(Qt::LeftButton, none, "orbit", QString());
    press(Qt::LeftButton);
    m_log.clear();

    m_mapper.setInteractionManager(&otherManager);
    release(Qt::LeftButton);

    EXPECT_THAT(m_log.take(), ElementsAre("other.triggerEvent(orbit, stop)", "other.triggerEvent(orbit, trigger)"));
    otherManager.removeContext(&otherContext);
}

TEST_F(QtEventMapperTest, SettingTheManagerCallsNobody)
{
    m_mapper.addMouseMapping(Qt::LeftButton, none, "orbit", QString());
    press(Qt::LeftButton);
    pressKey(Qt::Key_A);
    m_log.clear();

    m_mapper.setInteractionManager(nullptr);
    m_mapper.setInteractionManager(&m_manager);

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(QtEventMapperTest, ACopyHasItsOwnBindingsAndPendingEvents)
{
    const QMouseEvent event = mouseEvent(QEvent::MouseButtonRelease, QPointF(), Qt::LeftButton, Qt::NoButton, none);
    m_mapper.addMouseMapping(Qt::LeftButton, none, "orbit", QString());
    press(Qt::LeftButton);
    QtEventMapper copy = m_mapper;
    m_mapper.removeMouseMapping(Qt::LeftButton, none);
    m_log.clear();

    release(Qt::LeftButton);
    EXPECT_THAT(m_log.take(), IsEmpty());

    copy.mouseReleased(&event);
    EXPECT_THAT(m_log.take(), ElementsAre(sent("orbit", "stop"), sent("orbit", "trigger")));

    m_mapper.resetEvents();
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("orbit", "stop"), sent("orbit", "trigger")));
}

TEST_F(QtEventMapperTest, DestroyingAMapperNeitherUnregistersItsBindingsNorEndsWhatIsPending)
{
    const QMouseEvent event = mouseEvent(QEvent::MouseButtonPress, QPointF(), Qt::LeftButton, Qt::LeftButton, none);
    {
        QtEventMapper mapper;
        mapper.setInteractionManager(&m_manager);
        mapper.addMouseMapping(Qt::LeftButton, none, "orbit", "Orbit");
        mapper.mousePressed(&event);
        m_log.clear();
    }

    EXPECT_THAT(m_log.calls(), IsEmpty());
    EXPECT_THAT(registeredShortcuts(), ElementsAre("Interaction button 1 None: Orbit"));
}

// The tables

TEST_F(QtEventMapperTest, BindingsOfOneKeyFireInTheOrderOfTheirAddition)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "third by name", QString());
    m_mapper.addKeyboardMapping(Qt::Key_B, none, "other key", QString());
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "second by name", QString());
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "first by name", QString());
    consumeEverything();

    pressKey(Qt::Key_A);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("third by name", "start"), sent("second by name", "start"),
                                           sent("first by name", "start")));
}

TEST_F(QtEventMapperTest, ABindingAddedAfterARemovalGoesBehindThoseThatStayed)
{
    m_mapper.addMouseMapping(Qt::LeftButton, none, "a", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, none, "b", QString());
    m_mapper.removeMouseMapping(Qt::LeftButton, none, "a");
    m_mapper.addMouseMapping(Qt::LeftButton, none, "a", QString());

    press(Qt::LeftButton);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("b", "start"), sent("a", "start")));
}

TEST_F(QtEventMapperTest, TablesAreOrderedByButtonFirst)
{
    m_mapper.addMouseMapping(Qt::MiddleButton, none, "middle", QString());
    m_mapper.addMouseMapping(Qt::RightButton, none, "right 1", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, none, "left", QString());
    m_mapper.addMouseMapping(Qt::RightButton, none, "right 2", QString());
    m_mapper.addMouseMapping(static_cast<Qt::MouseButton>(0x80000000), none, "negative", QString());

    leave();

    EXPECT_THAT(m_log.calls(),
                ElementsAre(sent("negative", "stopHover"), sent("left", "stopHover"), sent("right 1", "stopHover"),
                            sent("right 2", "stopHover"), sent("middle", "stopHover")));
}

TEST_F(QtEventMapperTest, ABindingAddedTwiceFiresTwice)
{
    m_mapper.addMouseMapping(Qt::LeftButton, none, "orbit", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, none, "orbit", QString());

    press(Qt::LeftButton);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("orbit", "start"), sent("orbit", "start")));
}

TEST_F(QtEventMapperTest, RemovingABindingRemovesAllEqualOnes)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "select", QString());
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "other", QString());
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "select", QString());
    consumeEverything();

    m_mapper.removeKeyboardMapping(Qt::Key_A, none, "select");
    pressKey(Qt::Key_A);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("other", "start")));
}

TEST_F(QtEventMapperTest, RemovingWithoutCategoryRemovesEveryCategoryOfExactlyTheseModifiers)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, shift, "a", QString());
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "plain", QString());
    m_mapper.addKeyboardMapping(Qt::Key_A, shift, "b", QString());
    m_mapper.addKeyboardMapping(Qt::Key_A, shift | control, "control", QString());
    m_mapper.addKeyboardMapping(Qt::Key_B, shift, "other key", QString());
    consumeEverything();

    m_mapper.removeKeyboardMapping(Qt::Key_A, shift);
    pressKey(Qt::Key_A, shift);
    pressKey(Qt::Key_A, shift | control);
    pressKey(Qt::Key_B, shift);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("plain", "start"), sent("plain", "start"), sent("control", "start"),
                                           sent("other key", "start")));
}

TEST_F(QtEventMapperTest, RemovingAMouseBindingLeavesOtherCategoriesInPlace)
{
    m_mapper.addMouseMapping(Qt::LeftButton, none, "orbit", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, none, "zoom", QString());

    m_mapper.removeMouseMapping(Qt::LeftButton, none, "orbit");
    press(Qt::LeftButton);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("zoom", "start")));
}

TEST_F(QtEventMapperTest, RemovingMouseBindingsWithoutCategoryLeavesOtherModifiersAndButtons)
{
    m_mapper.addMouseMapping(Qt::LeftButton, none, "orbit", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, control, "control", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, none, "zoom", QString());
    m_mapper.addMouseMapping(Qt::RightButton, none, "right", QString());

    m_mapper.removeMouseMapping(Qt::LeftButton, none);
    leave();

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("control", "stopHover"), sent("right", "stopHover")));
}

TEST_F(QtEventMapperTest, CategoriesAreComparedByteForByteOnRemoval)
{
    using namespace std::string_literals;
    m_mapper.addMouseMapping(Qt::LeftButton, none, "Orbit", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, none, "orbit:", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, none, "orbi", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, none, "orbit\0"s, QString());
    m_mapper.addMouseMapping(Qt::LeftButton, none, "", QString());

    m_mapper.removeMouseMapping(Qt::LeftButton, none, "orbit");
    leave();
    EXPECT_EQ(m_log.take().size(), 5U);

    m_mapper.removeMouseMapping(Qt::LeftButton, none, "orbit\0"s);
    m_mapper.removeMouseMapping(Qt::LeftButton, none, "");
    leave();
    EXPECT_THAT(m_log.calls(),
                ElementsAre(sent("Orbit", "stopHover"), sent("orbit:", "stopHover"), sent("orbi", "stopHover")));
}

TEST_F(QtEventMapperTest, RemovingAnUnknownBindingChangesNothing)
{
    m_mapper.removeMouseMapping(Qt::LeftButton, none);
    m_mapper.removeMouseMapping(Qt::LeftButton, none, "orbit");
    m_mapper.removeKeyboardMapping(Qt::Key_A, none);
    m_mapper.removeKeyboardMapping(Qt::Key_A, none, "select");
    m_mapper.addMouseMapping(Qt::RightButton, none, "orbit", QString());

    m_mapper.removeMouseMapping(Qt::LeftButton, none, "orbit");
    m_mapper.removeMouseMapping(Qt::RightButton, shift, "orbit");
    m_mapper.removeMouseMapping(Qt::MiddleButton, none);
    press(Qt::RightButton);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("orbit", "start")));
}

TEST_F(QtEventMapperTest, KeysAndButtonsOfTheSameNumberAreKeptApart)
{
    m_mapper.addKeyboardMapping(1, none, "key", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, none, "button", QString());
    consumeEverything();

    m_mapper.removeKeyboardMapping(1, none);
    press(Qt::LeftButton);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("button", "start")));
}

TEST_F(QtEventMapperTest, AnyNumberIsAcceptedAsKey)
{
    const int smallest = std::numeric_limits<int>::min();
    const int largest = std::numeric_limits<int>::max();
    m_mapper.addKeyboardMapping(smallest, none, "smallest", QString());
    m_mapper.addKeyboardMapping(largest, none, "largest", QString());
    consumeEverything();

    pressKey(smallest);
    pressKey(largest);
    m_mapper.removeKeyboardMapping(largest, none);
    releaseKey(largest);
    releaseKey(smallest);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("smallest", "start"), sent("largest", "start"),
                                           sent("smallest", "stop"), sent("smallest", "trigger")));
}

TEST_F(QtEventMapperTest, AnEmptyCategoryIsACategoryLikeAnyOther)
{
    m_mapper.addMouseMapping(Qt::LeftButton, none, "", QString());

    press(Qt::LeftButton);
    release(Qt::LeftButton);

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("", "start"), sent("", "stop"), sent("", "trigger")));
}

// The shortcut registry

TEST_F(QtEventMapperTest, ABindingWithADescriptionIsRegistered)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, shift, "select", "Select");
    m_mapper.addMouseMapping(Qt::RightButton, control | alt, "orbit", "Orbit");

    EXPECT_THAT(registeredShortcuts(),
                ElementsAre("Interaction key 65 Shift: Select", "Interaction button 2 ControlAlt: Orbit"));
}

TEST_F(QtEventMapperTest, ABindingWithoutADescriptionWorksUnregistered)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "null", QString());
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "empty", "");
    m_mapper.addMouseMapping(Qt::LeftButton, none, "button", QString());
    consumeEverything();

    pressKey(Qt::Key_A);
    press(Qt::LeftButton);

    EXPECT_THAT(registeredShortcuts(), IsEmpty());
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("null", "start"), sent("empty", "start"), sent("button", "start")));
}

TEST_F(QtEventMapperTest, ADescriptionOfBlanksIsNotEmpty)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "select", " ");

    EXPECT_THAT(registeredShortcuts(), ElementsAre("Interaction key 65 None:  "));
}

TEST_F(QtEventMapperTest, ABindingThatCanNeverFireIsRegisteredAllTheSame)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, meta | shift, "select", "Select");
    m_mapper.addMouseMapping(Qt::LeftButton, keypad, "orbit", "Orbit");

    EXPECT_THAT(registeredShortcuts(),
                ElementsAre("Interaction key 65 ShiftMeta: Select", "Interaction button 1 Keypad: Orbit"));
}

TEST_F(QtEventMapperTest, ARemovedBindingLeavesTheRegistry)
{
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "select", "Select");
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "select", "Select again");
    m_mapper.addKeyboardMapping(Qt::Key_A, shift, "select", "Select with shift");
    m_mapper.addMouseMapping(Qt::LeftButton, none, "orbit", "Orbit");

    m_mapper.removeKeyboardMapping(Qt::Key_A, none, "select");
    EXPECT_THAT(registeredShortcuts(),
                ElementsAre("Interaction key 65 Shift: Select with shift", "Interaction button 1 None: Orbit"));

    m_mapper.removeMouseMapping(Qt::LeftButton, none);
    EXPECT_THAT(registeredShortcuts(), ElementsAre("Interaction key 65 Shift: Select with shift"));
}

TEST_F(QtEventMapperTest, RemovingAnUnregisteredBindingTakesAnEqualRegistrationOfAnotherOut)
{
    // The registration belongs to another binding of the key: the mapper keeps no record of which ones it registered.
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "described", "Described");
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "silent", QString());

    m_mapper.removeKeyboardMapping(Qt::Key_A, none, "silent");

    EXPECT_THAT(registeredShortcuts(), IsEmpty());
}

// Removes a second binding when it hears that a shortcut left the registry.
class UnbindingListener : public koShortcut::Listener {
public:
    explicit UnbindingListener(std::function<void()> action)
        : m_action(std::move(action))
    {
        koShortcut::addListener(this);
    }

    ~UnbindingListener() override { koShortcut::removeListener(this); }

    void entryRemoved(const koShortcut::Entry&) override { m_action(); }

private:
    std::function<void()> m_action;
};

TEST_F(QtEventMapperTest, AListenerOfTheRegistryMayRemoveTheSameBindings)
{
    for (const char* category : {"a", "b", "c"}) {
        m_mapper.addKeyboardMapping(Qt::Key_A, none, category, "Described");
    }
    m_mapper.addKeyboardMapping(Qt::Key_B, none, "other key", QString());
    const UnbindingListener listener([this] { m_mapper.removeKeyboardMapping(Qt::Key_A, none); });
    consumeEverything();

    m_mapper.removeKeyboardMapping(Qt::Key_A, none);
    pressKey(Qt::Key_A);
    pressKey(Qt::Key_B);

    EXPECT_THAT(registeredShortcuts(), IsEmpty());
    EXPECT_THAT(m_log.calls(), ElementsAre(sent("qt-key:65", "press"), sent("other key", "start")));
}

TEST_F(QtEventMapperTest, AListenerOfTheRegistryMayRemoveTheNextBinding)
{
    m_mapper.addMouseMapping(Qt::LeftButton, none, "a", "A");
    m_mapper.addMouseMapping(Qt::LeftButton, shift, "next", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, none, "b", QString());
    m_mapper.addMouseMapping(Qt::LeftButton, shift, "last", QString());
    const UnbindingListener listener([this] { m_mapper.removeMouseMapping(Qt::LeftButton, shift, "next"); });

    m_mapper.removeMouseMapping(Qt::LeftButton, none);
    leave();

    EXPECT_THAT(m_log.calls(), ElementsAre(sent("last", "stopHover")));
}

// Translates what the mapper asks for, and nothing else.
class GermanTranslator : public QTranslator {
public:
    QString translate(const char* context, const char* sourceText, const char* disambiguation, int n) const override
    {
        const bool isAskedFor = qstrcmp(context, "QtEventMapper") == 0 && qstrcmp(sourceText, "Interaction") == 0 &&
                                disambiguation == nullptr && n == -1;
        return isAskedFor ? QStringLiteral("Bedienung") : QString();
    }

    bool isEmpty() const override { return false; }
};

TEST_F(QtEventMapperTest, ATranslatorInstalledLaterChangesTheGroupOfLaterRegistrationsOnly)
{
    int argumentCount = 1;
    char name[] = "QtEventMapperTest";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(argumentCount, arguments);
    GermanTranslator translator;
    m_mapper.addKeyboardMapping(Qt::Key_A, none, "a", "before");
    m_mapper.addMouseMapping(Qt::LeftButton, none, "l", "before");

    QCoreApplication::installTranslator(&translator);
    m_mapper.addKeyboardMapping(Qt::Key_B, none, "b", "after");
    m_mapper.addMouseMapping(Qt::RightButton, none, "r", "after");

    EXPECT_THAT(registeredShortcuts(),
                ElementsAre("Interaction key 65 None: before", "Interaction button 1 None: before",
                            "Bedienung key 66 None: after", "Bedienung button 2 None: after"));

    // The group of the removal is today's as well: what was registered under the other one stays.
    m_mapper.removeKeyboardMapping(Qt::Key_A, none);
    m_mapper.removeKeyboardMapping(Qt::Key_B, none);
    m_mapper.removeMouseMapping(Qt::LeftButton, none, "l");
    m_mapper.removeMouseMapping(Qt::RightButton, none, "r");

    EXPECT_THAT(registeredShortcuts(),
                ElementsAre("Interaction key 65 None: before", "Interaction button 1 None: before"));
    QCoreApplication::removeTranslator(&translator);
}

// The text form of keys

struct KeyTextRow {
    std::string name;
    int key;
    int modifiers;
    std::string text;
};

void PrintTo(const KeyTextRow& row, std::ostream* stream)
{
    *stream << row.text;
}

class QtEventMapperKeyTextTest : public ::testing::TestWithParam<KeyTextRow> {};

TEST_P(QtEventMapperKeyTextTest, NamesControlAltAndShiftBeforeTheDecimalKeyCode)
{
    const KeyTextRow& row = GetParam();

    EXPECT_EQ(QtEventMapper::qtKeyEventToString(row.key, row.modifiers), row.text);
}

constexpr int shift = static_cast<int>(Qt::ShiftModifier);
constexpr int control = static_cast<int>(Qt::ControlModifier);
constexpr int alt = static_cast<int>(Qt::AltModifier);
constexpr int meta = static_cast<int>(Qt::MetaModifier);
constexpr int keypad = static_cast<int>(Qt::KeypadModifier);
constexpr int groupSwitch = static_cast<int>(Qt::GroupSwitchModifier);

INSTANTIATE_TEST_SUITE_P(
    Rows, QtEventMapperKeyTextTest,
    ::testing::Values(KeyTextRow{"PlainA", Qt::Key_A, 0, "65"}, KeyTextRow{"Escape", Qt::Key_Escape, 0, "16777216"},
                      KeyTextRow{"ControlA", Qt::Key_A, control, "ctrl+65"},
                      KeyTextRow{"AltA", Qt::Key_A, alt, "alt+65"}, KeyTextRow{"ShiftA", Qt::Key_A, shift, "shift+65"},
                      KeyTextRow{"ControlShiftA", Qt::Key_A, control | shift, "ctrl+shift+65"},
                      KeyTextRow{"ControlAltA", Qt::Key_A, control | alt, "ctrl+alt+65"},
                      KeyTextRow{"AltShiftOneDropsMeta", 49, shift | alt | meta, "alt+shift+49"},
                      KeyTextRow{"AllThree", Qt::Key_A, control | alt | shift, "ctrl+alt+shift+65"},
                      KeyTextRow{"ForeignModifiersAreDropped", Qt::Key_A, meta | keypad | groupSwitch, "65"},
                      KeyTextRow{"EveryBit", Qt::Key_A, -1, "ctrl+alt+shift+65"},
                      KeyTextRow{"ShiftKeyItself", Qt::Key_Shift, shift, "shift+16777248"},
                      KeyTextRow{"Unknown", Qt::Key_unknown, 0, "33554431"}, KeyTextRow{"Zero", 0, 0, "0"},
                      KeyTextRow{"Negative", -1, control, "ctrl+-1"},
                      KeyTextRow{"Smallest", std::numeric_limits<int>::min(), 0, "-2147483648"},
                      KeyTextRow{"Largest", std::numeric_limits<int>::max(), 0, "2147483647"}),
    [](const ::testing::TestParamInfo<KeyTextRow>& row) { return row.param.name; });

} // namespace
