// SPDX-License-Identifier: MIT
#include "Support/DrawnScene.h"
#include "Support/TemporaryFolder.h"

#include "Viewer/Model/ViewerError.h"
#include "Viewer/Script/OutputFolder.h"
#include "Viewer/Script/Script.h"
#include "Viewer/Script/ScriptRunner.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/NodeSelectionModel.h>
#include <SceneUtilities/NodeUtils.h>

#include <QImage>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;

class ScriptRunnerTest : public ::testing::Test {
protected:
    ScriptRunnerTest()
        : m_viewport(m_session, viewer::Viewport::Target::Pictures)
        , m_output(m_folder.path("pictures"))
        , m_runner(m_session, m_viewport, &m_output)
    {
        m_viewport.show();
        const auto part = [](const char* name, const float left, const float size) {
            const osg::NodePtr node = makeNode(
                makeBox(osg::Pnt3f(left, 0, 0), osg::Pnt3f(left + size, size, 1), makePlainMaterial({1, 0, 0})));
            NodeUtils::setName(node, name, false);
            return node;
        };
        m_small = part("small", 0, 1);
        m_large = part("large", 4, 3);
        m_session.setModel(makeGroup({m_small, m_large}));
    }

    void run(const std::string& text)
    {
        m_runner.run(viewer::Script::parse("size 300 200\nview front\n" + text, "file"));
    }

    std::string runAndFail(const std::string& text)
    {
        try {
            run(text);
            return {};
        } catch (const viewer::ViewerError& error) {
            return error.what();
        }
    }

    const std::set<osg::NodePtr>& selection() { return m_session.getSelection().getSelection(); }

    TemporaryFolder m_folder;
    viewer::ViewerSession m_session;
    viewer::Viewport m_viewport;
    viewer::OutputFolder m_output;
    viewer::ScriptRunner m_runner;
    osg::NodePtr m_small;
    osg::NodePtr m_large;
};

TEST_F(ScriptRunnerTest, SizeResizesTheViewport)
{
    run("size 120 80");

    EXPECT_EQ(m_viewport.size(), QSize(120, 80));
    EXPECT_EQ(m_session.getCamera().getViewportWidth(), 120);
}

TEST_F(ScriptRunnerTest, PartsAreClickedByNameAndByVisibleArea)
{
    run("click-part small");
    EXPECT_THAT(selection(), ElementsAre(m_small));

    run("click-visible 1");
    EXPECT_THAT(selection(), ElementsAre(m_large));

    run("click-visible 2 ctrl");
    EXPECT_EQ(selection().size(), 2U);

    run("click 2 2");
    EXPECT_TRUE(selection().empty());
}

TEST_F(ScriptRunnerTest, KeysDragsAndTheWheelReachTheViewport)
{
    run("click-part small\nkey H");
    EXPECT_EQ(m_small->getTravMask(), 0U);

    const osg::Matrix before = m_session.getCamera().getWorldToClip();
    m_runner.run(viewer::Script::parse("drag 100 100 150 100 right", "file"));
    const osg::Matrix turned = m_session.getCamera().getWorldToClip();
    EXPECT_NE(turned, before);
    m_runner.run(viewer::Script::parse("wheel 100 100 2", "file"));
    EXPECT_NE(m_session.getCamera().getWorldToClip(), turned);
}

TEST_F(ScriptRunnerTest, ThePressThatLosesTheFocusSelectsNothing)
{
    run("click-part small\nkey Escape\npress 150 100\nfocusout\nrelease 150 100\nleave");

    EXPECT_TRUE(selection().empty());
}

TEST_F(ScriptRunnerTest, AKeyMayBeHeldAndReleasedLater)
{
    run("click-part small\nkeypress Escape\nkeyrelease Escape");

    EXPECT_TRUE(selection().empty());
}

TEST_F(ScriptRunnerTest, AnEmptyGroupStandsAtAFractionOfTheModel)
{
    run("add-empty-group \"a group\" 0.5 1 0\ntoggle-node \"a group\"");

    ASSERT_EQ(selection().size(), 1U);
    const osg::NodePtr group = *selection().begin();
    EXPECT_EQ(NodeUtils::getName(group), "a group");
    EXPECT_EQ(osg::Pnt3f(group->getToWorld()[3][0], group->getToWorld()[3][1], group->getToWorld()[3][2]),
              osg::Pnt3f(3.5F, 3, 0));

    run("toggle-node \"a group\"");
    EXPECT_TRUE(selection().empty());
}

TEST_F(ScriptRunnerTest, PicturesAreNumberedAndOfTheSizeOfTheViewport)
{
    run("shot first\nclick-part large\nshot second");

    const QImage first(QString::fromStdString(m_folder.path("pictures/01-first.png")));
    const QImage second(QString::fromStdString(m_folder.path("pictures/02-second.png")));
    EXPECT_EQ(first.size(), QSize(300, 200));
    EXPECT_EQ(second.size(), QSize(300, 200));
    EXPECT_NE(first, second);
}

TEST_F(ScriptRunnerTest, TheSameScriptGivesTheSamePicture)
{
    run("shot first\nview iso\nview front\nshot second");

    EXPECT_EQ(m_folder.read("pictures/01-first.png"), m_folder.read("pictures/02-second.png"));
}

TEST_F(ScriptRunnerTest, WhatCannotBeDoneIsReportedWithItsLine)
{
    EXPECT_EQ(runAndFail("click-part nobody"), "file:3: no part is named 'nobody'");
    EXPECT_EQ(runAndFail("\ntoggle-node nobody"), "file:4: no node is named 'nobody'");
    EXPECT_EQ(runAndFail("click-visible 3"), "file:3: only 2 parts are to be seen");
    EXPECT_EQ(runAndFail("click-part small\nkey H\nclick-part small"), "file:5: part 'small' is not to be seen");
    EXPECT_EQ(runAndFail("click-part large\nkey H\nclick-visible 1"), "file:5: no part is to be seen");
}

TEST_F(ScriptRunnerTest, AnOptionalCommandThatCannotBeDoneIsPassedOver)
{
    run("try click-part nobody\nclick-part small\ntry click-visible 3 ctrl");

    EXPECT_THAT(selection(), ElementsAre(m_small));
}

TEST_F(ScriptRunnerTest, APictureThatCannotBeWrittenIsReportedAndLeavesNothing)
{
    std::filesystem::remove_all(m_folder.path("pictures"));
    m_folder.write("pictures", "a file in the way");

    const std::string error = runAndFail("shot first");

    EXPECT_THAT(error,
                ::testing::StartsWith("file:3: " + m_folder.path("pictures/01-first.png") + ": cannot be written: "));
}

TEST_F(ScriptRunnerTest, NodesAreFoundByPathAndByName)
{
    run("select /0 large");
    EXPECT_THAT(selection(), ::testing::UnorderedElementsAre(m_small, m_large));
    run("select\nselect-more large\nhide /0\nlock /1");
    EXPECT_THAT(selection(), ElementsAre(m_large));
    EXPECT_EQ(m_small->getTravMask(), 0U);
    EXPECT_TRUE(viewer::SceneEditor::isLocked(m_large));
    run("show /0\nunlock large\ndeselect /1\nisolate /1");
    EXPECT_THAT(selection(), ::testing::IsEmpty());
    EXPECT_EQ(m_small->getTravMask(), 0U);
    EXPECT_FALSE(viewer::SceneEditor::isLocked(m_large));
    run("show-all");
    EXPECT_NE(m_small->getTravMask(), 0U);

    EXPECT_EQ(runAndFail("hide nobody"), "file:3: no node is named 'nobody'");
}

TEST_F(ScriptRunnerTest, CommandsSwitchesAndEventsGoThroughTheManager)
{
    run("switch dark on\nswitch dark on");
    EXPECT_TRUE(m_session.isDark());
    run("command dark");
    EXPECT_FALSE(m_session.isDark());
    run("event view:dark start");
    EXPECT_TRUE(m_session.isDark());
    run("click-part small\nforget-history\ncommand undo");
    EXPECT_THAT(selection(), ElementsAre(m_small));
    run("command select-none\ncommand undo");
    EXPECT_THAT(selection(), ElementsAre(m_small));
}

TEST_F(ScriptRunnerTest, AfterExactNothingIsAddedToWhatTheScriptSays)
{
    // A move between press and release would make the click a drag.
    const std::string clickOnSmall = "view front\nclick-part small\nselect\nmove 5 5\n";
    run(clickOnSmall + "press 8 8\nrelease 150 100");
    const QPoint pointer(static_cast<int>(m_session.getPicker().getPointer()[0]),
                         static_cast<int>(m_session.getPicker().getPointer()[1]));
    EXPECT_EQ(pointer, QPoint(150, 100));

    int moves = 0;
    class MoveCount : public QObject {
    public:
        explicit MoveCount(int& count)
            : m_count(count)
        {}
        bool eventFilter(QObject*, QEvent* event) override
        {
            m_count += event->type() == QEvent::MouseMove ? 1 : 0;
            return false;
        }

    private:
        int& m_count;
    } counter(moves);
    m_viewport.installEventFilter(&counter);
    run("press 1 1\nrelease 2 2\nmove 2 2\nmove 2 2");
    EXPECT_EQ(moves, 2);
    moves = 0;
    run("exact\npress 1 1\nrelease 2 2\nmove 2 2\nmove 2 2");
    EXPECT_EQ(moves, 2);
    moves = 0;
    run("press 7 7\nrelease 8 8");
    EXPECT_EQ(moves, 0);
}

TEST_F(ScriptRunnerTest, WhatIsNotAsExpectedIsADivergence)
{
    const auto diverge = [&](const std::string& text) {
        try {
            run(text);
        } catch (const viewer::DivergenceError& error) {
            return std::string(error.what());
        }
        return std::string();
    };

    EXPECT_EQ(diverge("select /0 /1\nexpect-selection 2\nexpect-model 2\nexpect-hidden 0\nexpect-locked 0"), "");
    EXPECT_EQ(diverge("select /0\nexpect-selection 2"), "file:4: the selection is 1 part where the recording had 2");
    EXPECT_EQ(diverge("select /0 /1\nexpect-selection 0"),
              "file:4: the selection is 2 parts where the recording had 0");
    EXPECT_EQ(diverge("select /0\nexpect-selection 1 1"),
              "file:4: the selection is 1 other part than in the recording");
    EXPECT_EQ(diverge("expect-model 3"), "file:3: the model has 2 parts where the recording had 3");
    EXPECT_EQ(diverge("expect-model 2 1"), "file:3: the model has 2 other parts than in the recording");
    EXPECT_EQ(diverge("expect-hidden 1"), "file:3: the model has 0 hidden nodes where the recording had 1");
    EXPECT_EQ(diverge("lock /0\nexpect-locked 0"), "file:4: the model has 1 locked node where the recording had 0");
    EXPECT_EQ(diverge("hide /0/7"), "file:3: the model has no node '/0/7'");
    EXPECT_EQ(diverge("try expect-model 3\ntry hide /9"), "");
}

TEST_F(ScriptRunnerTest, AFingerSelectsAndTwoFingersZoom)
{
    run("click-part small\nselect");
    const auto pointer = [&] {
        const osg::Pnt2f& place = m_session.getPicker().getPointer();
        return std::to_string(static_cast<int>(place[0])) + " " + std::to_string(static_cast<int>(place[1]));
    };
    const std::string place = pointer();

    run("touch " + place + "\ntouch");
    EXPECT_THAT(selection(), ElementsAre(m_small));

    const double distance = m_session.getCamera().getPose().distance;
    run("touch 100 100\ntouch 100 100 140 100\ntouch 90 100 150 100\ntouch 70 100 170 100\ntouch");
    EXPECT_LT(m_session.getCamera().getPose().distance, distance);
    EXPECT_THAT(selection(), ElementsAre(m_small));
    run("touch");
}

TEST_F(ScriptRunnerTest, SetsAreRecalledChangedRenamedAndDeleted)
{
    const auto names = [&] {
        std::vector<std::string> all;
        for (const auto& set : m_session.getSets().getAll()) {
            all.push_back(set.name.toStdString() + " " + std::to_string(set.size));
        }
        return all;
    };

    run("select /0\ncommand new-set\nselect /1\ncommand new-set");
    EXPECT_THAT(names(), ElementsAre("Set 1 1", "Set 2 1"));
    run("set recall \"set 1\"");
    EXPECT_THAT(selection(), ElementsAre(m_small));
    run("set add \"Set 2\"");
    EXPECT_EQ(selection().size(), 2U);
    run("set replace \"Set 1\"\nset rename \"Set 1\" both");
    EXPECT_THAT(names(), ElementsAre("both 2", "Set 2 1"));
    run("set difference both \"Set 2\"\nset recall both");
    EXPECT_THAT(selection(), ElementsAre(m_small));
    run("set union \"Set 2\"");
    EXPECT_THAT(names(), ElementsAre("both 1", "Set 2 2"));
    run("set intersection \"Set 2\" both");
    EXPECT_THAT(names(), ElementsAre("both 1", "Set 2 1"));
    run("set delete both");
    EXPECT_THAT(names(), ElementsAre("Set 2 1"));

    EXPECT_EQ(runAndFail("set recall both"), "file:3: no set is named 'both'");
    EXPECT_EQ(runAndFail("set union \"Set 2\" both"), "file:3: no set is named 'both'");
    EXPECT_EQ(runAndFail("set rename \"Set 2\" \" \""), "file:3: a set cannot be named ' '");
}

TEST_F(ScriptRunnerTest, OtherModelsAreShownByWhoeverCanOpenThem)
{
    EXPECT_EQ(runAndFail("open model.glb"), "file:3: another model cannot be opened here");
    std::vector<std::string> opened;
    m_runner.setOpener([&](const std::string& file, const int partCount) {
        opened.push_back(file + ":" + std::to_string(partCount));
    });

    run("open model.glb\ngenerate 12");

    EXPECT_THAT(opened, ElementsAre("model.glb:0", ":12"));
}

TEST_F(ScriptRunnerTest, AReportIsOneLineOnStandardOutput)
{
    ::testing::internal::CaptureStdout();
    run("report here");

    EXPECT_THAT(::testing::internal::GetCapturedStdout(),
                ::testing::MatchesRegex("here containers [0-9]+ resident [0-9]+ allocated [0-9]+ files [0-9]+\n"));
}

TEST_F(ScriptRunnerTest, PicturesNeedAFolder)
{
    viewer::ScriptRunner runner(m_session, m_viewport, nullptr);

    EXPECT_THROW(runner.run(viewer::Script::parse("shot here", "file")), viewer::ViewerError);
}

TEST(OutputFolderTest, AFolderIsMadeWhereItIsMissing)
{
    const TemporaryFolder folder;

    const viewer::OutputFolder output(folder.path("a/b/c"));

    EXPECT_TRUE(std::filesystem::is_directory(folder.path("a/b/c")));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path("a/b/c")));
}

TEST(OutputFolderTest, AFileInThePlaceOfTheFolderIsReported)
{
    const TemporaryFolder folder;
    const std::string file = folder.write("file", "content");

    try {
        const viewer::OutputFolder output(file);
        FAIL();
    } catch (const viewer::ViewerError& error) {
        EXPECT_THAT(error.what(), ::testing::StartsWith(file + ": "));
    }
    EXPECT_EQ(folder.read("file"), "content");
}

TEST(OutputFolderTest, AReadOnlyFileSystemIsReported)
{
    // Even the superuser cannot make files here.
    EXPECT_THROW(viewer::OutputFolder("/proc/self/pictures"), viewer::ViewerError);
    EXPECT_THROW(viewer::OutputFolder("/proc/self"), viewer::ViewerError);
}

} // namespace

} // namespace quon::testing
