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

namespace quon::testing {

namespace {

using ::testing::ElementsAre;

class ScriptRunnerTest : public ::testing::Test {
protected:
    ScriptRunnerTest()
        : m_viewport(m_session, viewer::Viewport::Target::Pictures)
        , m_output(m_folder.path("pictures"))
        , m_runner(m_session, m_viewport, m_output)
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
    EXPECT_THROW(viewer::OutputFolder("/sys"), viewer::ViewerError);
}

} // namespace

} // namespace quon::testing
