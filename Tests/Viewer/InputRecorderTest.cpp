// SPDX-License-Identifier: MIT
#include "Support/DrawnScene.h"
#include "Support/TemporaryFolder.h"
#include "Support/UserInput.h"

#include "Viewer/Model/AssemblyGenerator.h"
#include "Viewer/Model/NodePath.h"
#include "Viewer/Model/ViewerError.h"
#include "Viewer/Script/InputRecorder.h"
#include "Viewer/Script/Script.h"
#include "Viewer/Script/ScriptRunner.h"
#include "Viewer/Session/QtVersions.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/InteractionEvent.h>
#include <Interaction/InteractionManager.h>
#include <Interaction/NodeSelectionModel.h>
#include <SceneUtilities/NodeUtils.h>

#include <QApplication>
#include <QImage>
#include <QNativeGestureEvent>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

/** A session with a viewport for pictures. */
class Stage {
public:
    Stage()
        : viewport(session, viewer::Viewport::Target::Pictures)
        , user(viewport)
    {
        viewport.resize(320, 240);
        viewport.show();
    }

    void generate(const int partCount)
    {
        const osg::RefPtr<osg::NodePtr> model = viewer::AssemblyGenerator::generate(partCount);
        session.setModel(model.get());
    }

    viewer::NodeDigest getSelection()
    {
        return viewer::NodeDigest::of(session.getModel(), session.getSelection().getSelection());
    }

    viewer::ViewerSession session;
    viewer::Viewport viewport;
    UserInput user;
};

/** Notes each event as the comments of a recording do. */
class EventLog : public viewer::InteractionTraceListener {
public:
    void eventTraced(const viewer::TracedEvent& event) override
    {
        const bool consumed = event.outcome == viewer::TracedEvent::Outcome::Consumed;
        events.push_back((event.depth > 0 ? "> " : "") + event.category + " " + event.verb + " (" +
                         (consumed ? event.consumer : "nobody") + ")");
    }

    std::vector<std::string> events;
};

class InputRecorderTest : public ::testing::Test {
protected:
    InputRecorderTest()
        : m_file(m_folder.path("recording.txt"))
        , m_stage(std::make_unique<Stage>())
    {}

    void record()
    {
        m_recorder = std::make_unique<viewer::InputRecorder>(m_file);
        m_recorder->start(m_stage->session, m_stage->viewport, "the model");
        m_skipped = lines().size();
    }

    void setSmallModel()
    {
        const auto part = [](const char* name, const float left) {
            const osg::NodePtr node =
                makeNode(makeBox(osg::Pnt3f(left, 0, 0), osg::Pnt3f(left + 2, 2, 1), makePlainMaterial({1, 0, 0})));
            NodeUtils::setName(node, name, false);
            return node;
        };
        m_left = part("left", 0);
        m_right = part("right", 4);
        m_stage->session.setModel(makeGroup({m_left, m_right}));
        m_stage->session.getCamera().setStandardView("front");
    }

    std::vector<std::string> lines() const
    {
        std::vector<std::string> result;
        std::istringstream stream(m_folder.read("recording.txt"));
        for (std::string line; std::getline(stream, line);) {
            result.push_back(line);
        }
        return result;
    }

    // The lines after the beginning, without their comments.
    std::vector<std::string> commands() const
    {
        std::vector<std::string> result = lines();
        result.erase(result.begin(), result.begin() + static_cast<std::ptrdiff_t>(m_skipped));
        for (std::string& line : result) {
            line = line.substr(0, line.find("  #"));
        }
        return result;
    }

    // What the comments of events say, in order.
    std::vector<std::string> recordedEvents() const
    {
        std::vector<std::string> result;
        for (const std::string& line : lines()) {
            const std::size_t comment = line.find("  # ");
            if (comment == std::string::npos || line.find(" (", comment) == std::string::npos) {
                continue; // the comment names nodes
            }
            for (std::size_t begin = comment + 4; begin < line.size();) {
                const std::size_t end = std::min(line.find(", ", begin), line.size());
                result.push_back(line.substr(begin, end - begin));
                begin = end + 2;
            }
        }
        return result;
    }

    void replay(Stage& stage) const
    {
        viewer::ScriptRunner(stage.session, stage.viewport, nullptr).run(viewer::Script::load(m_file));
    }

    TemporaryFolder m_folder;
    std::string m_file;
    std::unique_ptr<Stage> m_stage;
    std::unique_ptr<viewer::InputRecorder> m_recorder;
    std::size_t m_skipped = 0;
    osg::NodePtr m_left;
    osg::NodePtr m_right;
};

TEST_F(InputRecorderTest, TheBeginningNamesTheModelTheSizeAndTheNumberOfParts)
{
    setSmallModel();
    record();

    const auto written = lines();
    EXPECT_THAT(written, Contains("# Model: the model"));
    EXPECT_THAT(written, Contains("size 320 240"));
    EXPECT_THAT(written, Contains(StartsWith("expect-model 2 ")));
    EXPECT_THAT(written, Contains("switch overlay on"));
}

TEST_F(InputRecorderTest, AViewThatIsSqueezedOutHasASizeThatScriptsKnow)
{
    setSmallModel();
    record();

    m_stage->viewport.resize(0, 90);
    m_recorder->stop();

    EXPECT_EQ(m_stage->viewport.width(), 0);
    EXPECT_THAT(lines(), Contains("size 1 90"));
    EXPECT_NO_THROW(viewer::Script::load(m_file));
}

TEST_F(InputRecorderTest, TheLongestTurnOfTheWheelOfAScriptIsOneThatScriptsKnow)
{
    setSmallModel();
    record();

    viewer::ScriptRunner(m_stage->session, m_stage->viewport, nullptr)
        .run(viewer::Script::parse("wheel 10 20 -1000", "script"));
    m_recorder->stop();

    EXPECT_THAT(lines(), Contains(StartsWith("scroll 10 20 0 -120000 ")));
    EXPECT_NO_THROW(viewer::Script::load(m_file));
}

TEST_F(InputRecorderTest, EachQtEventIsALineWithTheEventsThatItBecame)
{
    setSmallModel();
    record();

    m_stage->user.press(QPoint(10, 20));
    m_stage->user.move(QPoint(11, 20));
    m_stage->user.release(QPoint(11, 20));
    m_stage->user.pressKey(Qt::Key_Tab, Qt::ControlModifier);
    m_stage->user.releaseKey(Qt::Key_Tab);
    m_stage->user.turnWheel(QPoint(5, 6), -120);
    m_stage->user.loseFocus();

    auto written = lines();
    written.erase(written.begin(), written.begin() + static_cast<std::ptrdiff_t>(m_skipped));
    ASSERT_EQ(written.size(), 7U);
    EXPECT_EQ(written[0], "press 10 20  # tool:select start (tools)");
    EXPECT_EQ(written[1], "move 11 20  # tool:select process (tools)");
    EXPECT_EQ(written[2], "release 11 20  # tool:select stop (tools), tool:select trigger (tools)");
    EXPECT_EQ(written[3], "keypress Tab ctrl  # qt-key:ctrl+16777217 press (nobody)");
    EXPECT_EQ(written[4], "keyrelease Tab  # qt-key:ctrl+16777217 release (nobody)");
    EXPECT_THAT(written[5], StartsWith("scroll 5 6 0 -120 0 0 none  # tool:select hover"));
    EXPECT_THAT(written[6], StartsWith("focusout"));
}

TEST_F(InputRecorderTest, ButtonsModifiersRepeatsAndDoublePressesAreKept)
{
    setSmallModel();
    record();

    m_stage->user.press(QPoint(10, 20), Qt::BackButton, Qt::ShiftModifier | Qt::AltModifier);
    m_stage->user.release(QPoint(10, 20), Qt::BackButton);
    m_stage->user.doubleClick(QPoint(10, 20), Qt::MiddleButton);
    m_stage->user.release(QPoint(10, 20), Qt::MiddleButton);
    m_stage->user.pressKey(Qt::Key_unknown, Qt::NoModifier, true);
    m_stage->user.leave();

    EXPECT_THAT(commands(), ElementsAre("press 10 20 back shift alt", "release 10 20 back", "doublepress 10 20 middle",
                                        "release 10 20 middle", "keypress 0x01ffffff repeat", "leave"));
}

TEST_F(InputRecorderTest, ButtonsThatWereReleasedElsewhereAreNoted)
{
    setSmallModel();
    record();

    m_stage->user.press(QPoint(10, 20), Qt::RightButton);
    UserInput another(m_stage->viewport);
    another.move(QPoint(30, 20));
    another.press(QPoint(30, 20), Qt::MiddleButton);

    EXPECT_THAT(commands(), ElementsAre("press 10 20 right", "held", "move 30 20", "press 30 20 middle"));
}

TEST_F(InputRecorderTest, AChangeOfTheSelectionIsExpectedRightAfterItsLine)
{
    setSmallModel();
    record();

    m_stage->user.click(QPoint(60, 120));
    m_stage->user.type(Qt::Key_H);

    const auto written = commands();
    ASSERT_EQ(written.size(), 7U);
    EXPECT_EQ(written[2], "release 60 120");
    EXPECT_THAT(written[3], StartsWith("expect-selection 1 "));
    EXPECT_EQ(written[4], "keypress H");
    EXPECT_THAT(written[5], StartsWith("expect-hidden 1 "));
    EXPECT_EQ(written[6], "keyrelease H");
    EXPECT_THAT(lines(), Contains(AllOf(StartsWith("expect-selection 1 "), HasSubstr("# left"))));
}

TEST_F(InputRecorderTest, CommandsEventsAndEditsFromElsewhereAreLines)
{
    setSmallModel();
    record();
    viewer::ViewerSession& session = m_stage->session;

    session.getEditor().select({m_left, m_right});
    session.processSceneChanges();
    session.sendCommand("lock");
    session.getInteractionManager().triggerEvent({"navigate:zoom-in", "trigger"});
    session.getEditor().hide({m_right});
    session.processSceneChanges();
    session.sendCommand("undo");

    const auto written = commands();
    ASSERT_EQ(written.size(), 9U);
    EXPECT_EQ(written[0], "select /0 /1");
    EXPECT_THAT(written[1], StartsWith("expect-selection 2 "));
    EXPECT_EQ(written[2], "command lock");
    EXPECT_THAT(written[3], StartsWith("expect-locked 2 "));
    EXPECT_EQ(written[4], "event \"navigate:zoom-in\" \"trigger\"");
    EXPECT_EQ(written[5], "hide /1");
    EXPECT_THAT(written[6], StartsWith("expect-hidden 1 "));
    EXPECT_EQ(written[7], "command undo");
    EXPECT_EQ(written[8], "expect-hidden 0 0000000000000000");
}

TEST_F(InputRecorderTest, AGroupThatAScriptAddsIsThereWhenTheRecordingIsReplayed)
{
    setSmallModel();
    record();
    const auto script = viewer::Script::parse("add-empty-group \"empty group\" 0.25 1.5 -2\n"
                                              "toggle-node \"empty group\"\n",
                                              "script.txt");
    viewer::ScriptRunner(m_stage->session, m_stage->viewport, nullptr).run(script);
    const osg::Matrix place = m_stage->session.findNode("empty group")->getToWorld();
    const viewer::NodeDigest selection = m_stage->getSelection();
    m_recorder.reset();

    ASSERT_GE(commands().size(), 2U);
    EXPECT_EQ(commands()[0], "add-empty-group \"empty group\" 0.25 1.5 -2");
    EXPECT_EQ(commands()[1], "select-more /2");
    m_stage.reset();
    m_stage = std::make_unique<Stage>();
    setSmallModel();
    replay(*m_stage);

    EXPECT_EQ(m_stage->getSelection(), selection);
    const osg::NodePtr group = m_stage->session.findNode("empty group");
    ASSERT_NE(group, osg::NullFC);
    EXPECT_TRUE(group->getToWorld().equals(place, 1e-5F));
}

TEST_F(InputRecorderTest, EditsWithinAGestureAreNoLinesAndTheirOutcomeIsExpectedAtTheEnd)
{
    setSmallModel();
    record();
    viewer::SceneEditor& editor = m_stage->session.getEditor();

    m_stage->user.press(QPoint(3, 3));
    editor.beginGesture();
    editor.select({m_left});
    m_stage->session.processSceneChanges();
    m_stage->user.move(QPoint(4, 4));
    editor.endGesture();
    m_stage->user.move(QPoint(5, 5));

    const auto written = commands();
    ASSERT_EQ(written.size(), 4U);
    EXPECT_EQ(written[1], "move 4 4");
    EXPECT_THAT(written[2], StartsWith("expect-selection 1 "));
    EXPECT_EQ(written[3], "move 5 5");
}

TEST_F(InputRecorderTest, ALineIsInTheFileBeforeItsEventIsHandled)
{
    setSmallModel();
    record();
    std::string seen;
    m_stage->session.getCommands().setCommand("dark", {[&] { seen = m_folder.read("recording.txt"); }, {}, {}});

    m_stage->user.pressKey(Qt::Key_D);

    EXPECT_THAT(seen, ::testing::EndsWith("\nkeypress D"));
}

TEST_F(InputRecorderTest, TheEventsOfACommandThatSendsEventsAreMarked)
{
    setSmallModel();
    m_stage->session.getCommands().setCommand(
        "dark", {[&] {
                     m_stage->session.getInteractionManager().triggerEvent({"inner", "start"});
                 },
                 {},
                 {}});
    record();

    m_stage->session.sendCommand("dark");

    EXPECT_EQ(lines().back(), "command dark  # view:dark start (commands), > inner start (nobody), view:dark stop "
                              "(commands), view:dark trigger (commands)");
}

TEST_F(InputRecorderTest, AnEventWithinAnotherIsALineOfItsOwnAndNoCommentIsLost)
{
    setSmallModel();
    m_stage->session.getCommands().setCommand("dark", {[&] { m_stage->viewport.resize(100, 90); }, {}, {}});
    record();

    m_stage->user.pressKey(Qt::Key_D);

    auto written = lines();
    written.erase(written.begin(), written.begin() + static_cast<std::ptrdiff_t>(m_skipped));
    EXPECT_THAT(written, ElementsAre("keypress D", "size 100 90", "# view:dark start (commands)"));
}

TEST_F(InputRecorderTest, ANativeGestureIsRecordedAndReplayed)
{
    setSmallModel();
    record();

    const QPointF place(10.5, 20);
    QNativeGestureEvent event = viewer::QtVersions::makeGesture(Qt::ZoomNativeGesture, place, place, place, 0.125);
    QApplication::sendEvent(&m_stage->viewport, &event);

    EXPECT_THAT(commands(), ElementsAre("gesture zoom 10.5 20 0.125"));
}

TEST_F(InputRecorderTest, PresenterModeIsNotedBecauseItHoldsKeysBack)
{
    setSmallModel();
    record();
    interaction::InteractionManager& manager = m_stage->session.getInteractionManager();

    manager.setPresenterMode(true);
    m_stage->user.type(Qt::Key_D);
    manager.setPresenterMode(false);
    m_stage->user.type(Qt::Key_D);

    EXPECT_THAT(commands(), ElementsAre("presenter on", "keypress D", "keyrelease D", "presenter off", "keypress D",
                                        "keyrelease D"));
}

TEST_F(InputRecorderTest, ACameraThatMovesWithoutInputIsALine)
{
    setSmallModel();
    record();

    m_stage->session.getCamera().orbit(3, 4);
    m_stage->user.press(QPoint(3, 3));
    m_stage->session.sendCommand("iso");
    m_stage->user.release(QPoint(3, 3));

    const auto written = commands();
    ASSERT_EQ(written.size(), 4U);
    EXPECT_THAT(written[0], StartsWith("camera "));
    EXPECT_EQ(written[1], "press 3 3");
    EXPECT_EQ(written[2], "command iso");
    EXPECT_EQ(written[3], "release 3 3");
}

TEST_F(InputRecorderTest, AnotherModelEndsTheRecording)
{
    setSmallModel();
    record();
    int ended = 0;
    QObject::connect(m_recorder.get(), &viewer::InputRecorder::ended, [&] { ++ended; });

    m_stage->generate(3);
    m_stage->user.click(QPoint(10, 10));

    EXPECT_EQ(ended, 1);
    EXPECT_FALSE(m_recorder->isRecording());
    EXPECT_FALSE(m_stage->session.getTrace().isListening());
    EXPECT_EQ(m_stage->viewport.getInputObserver(), nullptr);
    EXPECT_EQ(m_recorder->getError(), "");
    EXPECT_EQ(lines().back(), "# another model is opened: the recording ends");
}

TEST_F(InputRecorderTest, NothingIsWrittenAfterTheEndAndTheSessionGoesOn)
{
    setSmallModel();
    record();
    m_stage->user.click(QPoint(60, 120));
    m_recorder->stop();
    const auto written = lines();

    m_stage->user.click(QPoint(2, 2));
    m_stage->session.getEditor().select({m_right});
    m_stage->session.processSceneChanges();

    EXPECT_EQ(lines(), written);
}

TEST_F(InputRecorderTest, AFileThatCannotBeWrittenIsNamed)
{
    try {
        const viewer::InputRecorder recorder(m_folder.path("none/recording.txt"));
        FAIL();
    } catch (const viewer::ViewerError& error) {
        EXPECT_THAT(error.what(), StartsWith(m_folder.path("none/recording.txt") + ": cannot be written: "));
    }
}

TEST_F(InputRecorderTest, AFullDiskEndsTheRecordingAndIsReported)
{
    setSmallModel();
    m_recorder = std::make_unique<viewer::InputRecorder>("/dev/full");
    int ended = 0;
    QObject::connect(m_recorder.get(), &viewer::InputRecorder::ended, [&] { ++ended; });

    m_recorder->start(m_stage->session, m_stage->viewport, "the model");
    m_stage->user.click(QPoint(60, 120));
    QApplication::processEvents();

    EXPECT_EQ(ended, 1);
    EXPECT_FALSE(m_recorder->isRecording());
    EXPECT_THAT(m_recorder->getError(), StartsWith("/dev/full: cannot be written: "));
}

TEST_F(InputRecorderTest, ARecordingThatBeginsInTheMiddleBringsTheStateAlong)
{
    setSmallModel();
    m_stage->session.sendCommand("dark");
    m_stage->user.drag(QPoint(10, 10), QPoint(60, 47), Qt::RightButton);
    m_stage->session.getEditor().select({m_left});
    m_stage->session.getEditor().setLocked({m_left}, true);
    m_stage->session.getEditor().hide({m_right});
    m_stage->session.processSceneChanges();
    record();
    m_stage->user.type(Qt::Key_U);
    m_recorder->stop();
    const viewer::NodeDigest selection = m_stage->getSelection();
    const QImage picture = m_stage->viewport.grabScene();

    m_stage.reset();
    m_stage = std::make_unique<Stage>();
    setSmallModel();
    replay(*m_stage);

    EXPECT_TRUE(m_stage->session.isDark());
    EXPECT_EQ(m_stage->getSelection(), selection);
    EXPECT_EQ(m_stage->viewport.grabScene(), picture);
    EXPECT_FALSE(m_stage->session.getSelection().getSelection().empty());
}

/** A user who does anything at all. */
class RandomUser {
public:
    RandomUser(Stage& stage, const unsigned seed)
        : m_stage(stage)
        , m_random(seed)
    {}

    void act()
    {
        static const std::vector<int> keys{Qt::Key_H, Qt::Key_U, Qt::Key_I,      Qt::Key_L,      Qt::Key_B, Qt::Key_O,
                                           Qt::Key_F, Qt::Key_1, Qt::Key_2,      Qt::Key_4,      Qt::Key_D, Qt::Key_Z,
                                           Qt::Key_A, Qt::Key_N, Qt::Key_Escape, Qt::Key_PageUp, Qt::Key_Q};
        switch (number(0, 9)) {
        case 0:
        case 1:
        case 2:
            m_stage.user.click(place(), modifiers());
            break;
        case 3:
            m_stage.user.drag(place(), place(), button(), modifiers());
            break;
        case 4:
            m_stage.user.turnWheel(place(), number(-300, 300));
            break;
        case 5:
            m_stage.user.pressKey(keys[static_cast<std::size_t>(number(0, static_cast<int>(keys.size()) - 1))],
                                  modifiers(), number(0, 5) == 0);
            break;
        case 6:
            m_stage.user.releaseKey(keys[static_cast<std::size_t>(number(0, static_cast<int>(keys.size()) - 1))]);
            break;
        case 7:
            m_stage.user.press(place(), button(), modifiers());
            m_stage.user.move(place(), modifiers());
            break;
        case 8:
            actElsewhere();
            break;
        default:
            if (number(0, 1) == 0) {
                m_stage.user.leave();
            } else {
                m_stage.user.loseFocus();
            }
            break;
        }
    }

private:
    int number(const int smallest, const int largest)
    {
        return smallest + static_cast<int>(m_random() % static_cast<unsigned>(largest - smallest + 1));
    }

    QPoint place() { return QPoint(number(-5, 325), number(-5, 245)); }

    Qt::MouseButton button()
    {
        static const Qt::MouseButton buttons[] = {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton, Qt::BackButton};
        return buttons[number(0, 3)];
    }

    Qt::KeyboardModifiers modifiers()
    {
        static const Qt::KeyboardModifiers all[] = {Qt::NoModifier, Qt::NoModifier, Qt::ControlModifier,
                                                    Qt::ShiftModifier};
        return all[number(0, 3)];
    }

    osg::NodePtr part()
    {
        osg::NodePtr node = m_stage.session.getModel();
        while (node->getNChildren() > 0 && number(0, 3) != 0) {
            node = node->getChild(static_cast<osg::UInt32>(number(0, static_cast<int>(node->getNChildren()) - 1)));
        }
        return node;
    }

    void actElsewhere()
    {
        viewer::SceneEditor& editor = m_stage.session.getEditor();
        switch (number(0, 7)) {
        case 0:
            m_stage.session.sendCommand("undo");
            break;
        case 1:
            m_stage.session.sendCommand("redo");
            break;
        case 2:
            editor.select({part(), part()});
            break;
        case 3:
            editor.toggle(part());
            break;
        case 4:
            editor.hide({part()});
            break;
        case 5:
            editor.show({part()});
            break;
        case 6:
            editor.setLocked({part()}, number(0, 1) == 0);
            break;
        default:
            m_stage.viewport.resize(number(100, 320), number(100, 240));
            break;
        }
        m_stage.session.processSceneChanges();
    }

    Stage& m_stage;
    std::mt19937 m_random;
};

class InputRecorderRoundTripTest : public InputRecorderTest, public ::testing::WithParamInterface<unsigned> {};

TEST_P(InputRecorderRoundTripTest, AReplayHasTheSameSelectionThePictureAndTheEvents)
{
    constexpr int Parts = 40;
    constexpr int Actions = 120;
    m_stage->generate(Parts);
    record();
    RandomUser user(*m_stage, GetParam());
    for (int i = 0; i < Actions; ++i) {
        user.act();
    }
    m_recorder->stop();
    const viewer::NodeDigest selection = m_stage->getSelection();
    const QImage picture = m_stage->viewport.grabScene();
    const osg::Matrix camera = m_stage->session.getCamera().getWorldToClip();
    m_stage.reset();

    EventLog log;
    Stage again;
    again.generate(Parts);
    again.session.getTrace().addListener(&log);
    replay(again);
    again.session.getTrace().removeListener(&log);

    EXPECT_EQ(log.events, recordedEvents());
    EXPECT_GT(log.events.size(), 100U);
    EXPECT_EQ(again.getSelection(), selection);
    EXPECT_EQ(again.session.getCamera().getWorldToClip(), camera);
    EXPECT_EQ(again.viewport.grabScene(), picture);
}

INSTANTIATE_TEST_SUITE_P(Seeds, InputRecorderRoundTripTest, ::testing::Range(1U, 7U),
                         [](const auto& row) { return "Seed" + std::to_string(row.param); });

} // namespace

} // namespace quon::testing
