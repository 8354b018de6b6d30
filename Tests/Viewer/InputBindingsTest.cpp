// SPDX-License-Identifier: MIT
#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/RecordingContext.h>

#include "Viewer/Session/Commands.h"
#include "Viewer/Session/InputBindings.h"

#include <Interaction/InteractionManager.h>
#include <Interaction/QtEventMapper.h>
#include <Shortcut/koShortcut.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QTranslator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::AnyOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using viewer::InputBindings;
using viewer::KeyBinding;

constexpr int Control = Qt::ControlModifier;
constexpr int ControlShift = static_cast<int>(Qt::ControlModifier) | static_cast<int>(Qt::ShiftModifier);
const KeyBinding KeyH{Qt::Key_H, 0};
const KeyBinding KeyF22{Qt::Key_F22, 0};

/** Puts "de:" in front of every text. */
class MarkingTranslator : public QTranslator {
public:
    QString translate(const char*, const char* source, const char*, int) const override
    {
        return QStringLiteral("de:") + QString::fromUtf8(source);
    }
    bool isEmpty() const override { return false; }
};

class InputBindingsTest : public ::testing::Test {
protected:
    InputBindingsTest()
        : m_context(m_log, "context")
        , m_bindings(std::make_unique<InputBindings>(m_mapper))
    {
        m_context.setConsuming(true);
        m_manager.addContext(&m_context);
        m_mapper.setInteractionManager(&m_manager);
        m_log.clear();
    }

    ~InputBindingsTest() override
    {
        m_bindings.reset();
        m_manager.removeContext(&m_context);
        EXPECT_TRUE(koShortcut::getEntries().empty());
    }

    void press(const int key, const Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        const QKeyEvent event(QEvent::KeyPress, key, modifiers);
        m_mapper.keyPressed(&event);
    }

    void release(const int key, const Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        const QKeyEvent event(QEvent::KeyRelease, key, modifiers);
        m_mapper.keyReleased(&event);
    }

    // What a press of a key sends.
    std::vector<std::string> eventsOf(const int key, const Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        m_log.clear();
        press(key, modifiers);
        std::vector<std::string> events = m_log.take();
        release(key, modifiers);
        m_log.clear();
        return events;
    }

    // The descriptions under which a key is registered, in order.
    static std::vector<std::string> descriptionsOf(const KeyBinding& key)
    {
        std::vector<std::string> descriptions;
        for (const koShortcut::Entry& entry : koShortcut::getEntries()) {
            if (entry.kind == koShortcut::Key && entry.code == key.key && entry.modifiers == key.modifiers) {
                descriptions.push_back(entry.description.toStdString());
            }
        }
        return descriptions;
    }

    static std::vector<std::string> registeredTexts()
    {
        std::vector<std::string> texts;
        for (const koShortcut::Entry& entry : koShortcut::getEntries()) {
            texts.push_back((entry.group + "/" + koShortcut::toText(entry) + ": " + entry.description).toStdString());
        }
        return texts;
    }

    CallLog m_log;
    interaction::InteractionManager m_manager;
    interaction::QtEventMapper m_mapper;
    RecordingContext m_context;
    std::unique_ptr<InputBindings> m_bindings;
};

TEST_F(InputBindingsTest, EveryCommandHasItsDefaultKeyInTheMapperAndTheRegistry)
{
    for (const viewer::Command& command : viewer::Command::getAll()) {
        const KeyBinding key = m_bindings->getKey(command.name);
        EXPECT_EQ(key, (KeyBinding{command.key, command.modifiers}));
        if (!key.isNone()) {
            EXPECT_THAT(eventsOf(key.key, Qt::KeyboardModifiers(key.modifiers)),
                        ElementsAre("context.triggerEvent(" + command.getCategory() + ", start)"));
            EXPECT_THAT(descriptionsOf(key), ElementsAre(command.getDescription().toStdString()));
        }
    }
    EXPECT_TRUE(m_bindings->getChangedKeys().empty());
    EXPECT_TRUE(m_bindings->getKey("none").isNone());
}

TEST_F(InputBindingsTest, AnotherKeyTakesThePlaceOfTheOldOne)
{
    m_bindings->setKey("hide", {Qt::Key_F21, Control});

    EXPECT_EQ(m_bindings->getKey("hide"), (KeyBinding{Qt::Key_F21, Control}));
    EXPECT_EQ(InputBindings::getDefaultKey("hide"), KeyH);
    EXPECT_THAT(eventsOf(Qt::Key_F21, Qt::ControlModifier), ElementsAre("context.triggerEvent(view:hide, start)"));
    EXPECT_THAT(eventsOf(Qt::Key_H), Each(StartsWith("context.triggerEvent(qt-key:")));
    EXPECT_THAT(descriptionsOf(KeyH), IsEmpty());
    EXPECT_THAT(descriptionsOf({Qt::Key_F21, Control}), ElementsAre("Hide the selected parts"));
}

TEST_F(InputBindingsTest, ACommandCanDoWithoutAKey)
{
    m_bindings->setKey("hide", {});

    EXPECT_THAT(eventsOf(Qt::Key_H), Each(StartsWith("context.triggerEvent(qt-key:")));
    EXPECT_THAT(descriptionsOf(KeyH), IsEmpty());
    EXPECT_EQ(m_bindings->getChangedKeys().count("hide"), 1U);
}

TEST_F(InputBindingsTest, TheRegistryKeepsTheRightOneOfTwoEqualKeys)
{
    const std::vector<std::string> before = registeredTexts();

    m_bindings->setKey("fit", KeyH);
    EXPECT_THAT(descriptionsOf(KeyH), ElementsAre("Hide the selected parts", "Fit the model into the view"));
    EXPECT_THAT(eventsOf(Qt::Key_H),
                ElementsAre("context.triggerEvent(view:hide, start)", "context.triggerEvent(view:fit, start)"));

    // The older of the two goes: the registry by itself would take out the newer one.
    m_bindings->setKey("hide", KeyF22);
    EXPECT_THAT(descriptionsOf(KeyH), ElementsAre("Fit the model into the view"));
    EXPECT_THAT(descriptionsOf(KeyF22), ElementsAre("Hide the selected parts"));

    m_bindings->restoreAllKeys();
    EXPECT_EQ(registeredTexts(), before);
}

TEST_F(InputBindingsTest, ACommandGetsItsDefaultKeyBackAloneOrWithAllOthers)
{
    m_bindings->setKey("hide", KeyF22);
    m_bindings->setKey("fit", {});
    m_bindings->setKey("lock", {Qt::Key_F24, ControlShift});

    m_bindings->restoreKey("hide");
    EXPECT_EQ(m_bindings->getKey("hide"), KeyH);
    EXPECT_EQ(m_bindings->getChangedKeys().size(), 2U);

    m_bindings->restoreAllKeys();
    EXPECT_TRUE(m_bindings->getChangedKeys().empty());
    EXPECT_THAT(eventsOf(Qt::Key_F), ElementsAre("context.triggerEvent(view:fit, start)"));
}

TEST_F(InputBindingsTest, ChangedKeysCanBeTakenOverWithoutWhatIsUnknownOrDefault)
{
    m_bindings->setKey("lock", KeyF22);

    m_bindings->setChangedKeys({{"hide", {Qt::Key_F21, 0}}, {"explode", {Qt::Key_F23, 0}}, {"fit", {Qt::Key_F, 0}}});

    EXPECT_THAT(m_bindings->getChangedKeys(),
                ElementsAre(std::pair<const std::string, KeyBinding>("hide", {Qt::Key_F21, 0})));
    EXPECT_EQ(m_bindings->getKey("lock"), InputBindings::getDefaultKey("lock"));
    EXPECT_THAT(eventsOf(Qt::Key_F23), Each(StartsWith("context.triggerEvent(qt-key:")));
}

TEST_F(InputBindingsTest, ChangesAreToldBeforeAndAfterAndOnlyWhenThereAreAny)
{
    std::vector<std::string> told;
    QObject::connect(m_bindings.get(), &InputBindings::aboutToChange, [&] {
        told.push_back("about to change " + m_bindings->getKey("hide").toPortableText().toStdString());
    });
    QObject::connect(m_bindings.get(), &InputBindings::changed,
                     [&] { told.push_back("changed " + m_bindings->getKey("hide").toPortableText().toStdString()); });

    m_bindings->setKey("hide", KeyF22);
    EXPECT_THAT(told, ElementsAre("about to change H", "changed F22"));

    told.clear();
    m_bindings->setKey("hide", KeyF22);
    m_bindings->setKey("explode", KeyF22);
    m_bindings->restoreKey("fit");
    m_bindings->setChangedKeys({{"hide", KeyF22}});
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(InputBindingsTest, AKeyThatIsDownCanBeEndedBeforeItsBindingGoes)
{
    QObject::connect(m_bindings.get(), &InputBindings::aboutToChange, [&] { m_mapper.resetEvents(); });
    press(Qt::Key_H);
    m_log.clear();

    m_bindings->setKey("hide", KeyF22);

    EXPECT_THAT(m_log.take(),
                ElementsAre("context.triggerEvent(view:hide, stop)", "context.triggerEvent(view:hide, trigger)"));
    release(Qt::Key_H);
    EXPECT_THAT(m_log.take(), IsEmpty());
}

TEST_F(InputBindingsTest, AnotherLanguageLeavesNoEntryOfTheOldOneBehind)
{
    int argumentCount = 1;
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(argumentCount, arguments);
    const std::size_t count = koShortcut::getEntries().size();
    m_bindings->setKey("hide", KeyF22);
    MarkingTranslator translator;

    m_bindings->remove();
    EXPECT_THAT(registeredTexts(), IsEmpty());
    QCoreApplication::installTranslator(&translator);
    m_bindings->retranslate();

    EXPECT_EQ(koShortcut::getEntries().size(), count);
    EXPECT_THAT(registeredTexts(), Each(AnyOf(StartsWith("de:Interaction/"), StartsWith("de:Fixed keys/"))));
    EXPECT_THAT(descriptionsOf(KeyF22), ElementsAre("de:Hide the selected parts"));
    EXPECT_THAT(eventsOf(Qt::Key_F22), ElementsAre("context.triggerEvent(view:hide, start)"));

    m_bindings->remove();
    QCoreApplication::removeTranslator(&translator);
    m_bindings->retranslate();
    EXPECT_THAT(registeredTexts(), Each(AnyOf(StartsWith("Interaction/"), StartsWith("Fixed keys/"))));
}

struct PortableCase {
    const char* text;
    KeyBinding key;
    bool isValid;
};

const PortableCase PortableCases[] = {
    {"", {}, true},
    {"H", {Qt::Key_H, 0}, true},
    {"Ctrl+Shift+Z", {Qt::Key_Z, ControlShift}, true},
    {"Esc", {Qt::Key_Escape, 0}, true},
    {"Tab", {Qt::Key_Tab, 0}, true},
    {"F24", {Qt::Key_F24, 0}, true},
    {"Ctrl++", {Qt::Key_Plus, Control}, true},
    {"Klingon", {}, false},
    {"Ctrl+", {}, false},
    {"Meta+H", {}, false},
    {"Num+1", {}, false},
    {"H, I", {}, false},
    {"42 43", {}, false},
};

TEST(KeyBindingTest, AKeyIsReadFromTheTextThatIsWrittenForIt)
{
    for (const PortableCase& each : PortableCases) {
        SCOPED_TRACE(each.text);
        bool isValid = !each.isValid;
        const KeyBinding key = KeyBinding::fromPortableText(QString::fromLatin1(each.text), isValid);

        EXPECT_EQ(isValid, each.isValid);
        EXPECT_EQ(key, each.key);
        if (each.isValid) {
            EXPECT_EQ(key.toPortableText(), QString::fromLatin1(each.text));
        }
    }
}

} // namespace

} // namespace quon::testing
