// SPDX-License-Identifier: MIT
#include "Support/TemporaryFolder.h"
#include "Support/UserInput.h"

#include "Viewer/Model/ViewerError.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/MainWindow.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/NodeSelectionModel.h>
#include <SceneUtilities/NodeUtils.h>

#include <QAction>
#include <QLabel>
#include <QStatusBar>
#include <QTextBrowser>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace quon::testing {

namespace {

using ::testing::Contains;
using ::testing::HasSubstr;

// The offscreen platform has windows but no OpenGL: what the window draws is not looked at here.
class MainWindowTest : public ::testing::Test {
protected:
    MainWindowTest()
        : m_window(m_session)
    {
        m_window.show();
        m_model = m_folder.write("plate.obj", "o plate\nv -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\nf 1 2 3 4\n");
    }

    std::vector<std::string> statusTexts() const
    {
        std::vector<std::string> texts;
        for (const QLabel* label : m_window.statusBar()->findChildren<QLabel*>()) {
            texts.push_back(label->text().toStdString());
        }
        return texts;
    }

    QAction* action(const QString& text) const
    {
        const QList<QAction*> actions = m_window.findChildren<QAction*>();
        const auto found = std::find_if(actions.begin(), actions.end(),
                                        [&](const QAction* candidate) { return candidate->text() == text; });
        return found == actions.end() ? nullptr : *found;
    }

    TemporaryFolder m_folder;
    std::string m_model;
    viewer::ViewerSession m_session;
    viewer::MainWindow m_window;
};

TEST_F(MainWindowTest, AModelGivesTheWindowItsTitleAndTheStatusBarItsSize)
{
    m_window.open(m_model);

    EXPECT_EQ(m_window.windowTitle(), QStringLiteral("plate.obj - koviewer"));
    EXPECT_THAT(statusTexts(), Contains("1 parts"));
    EXPECT_NE(m_session.getModel(), osg::NullFC);
}

TEST_F(MainWindowTest, AModelThatCannotBeReadLeavesTheOldOne)
{
    m_window.open(m_model);
    const osg::NodePtr model = m_session.getModel();

    EXPECT_THROW(m_window.open(m_folder.path("none.obj")), viewer::ViewerError);

    EXPECT_EQ(m_session.getModel(), model);
    EXPECT_EQ(m_window.windowTitle(), QStringLiteral("plate.obj - koviewer"));
}

TEST_F(MainWindowTest, TheKeyHelpListsWhatTheRegistryHolds)
{
    const std::string help = m_window.findChild<QTextBrowser*>()->toPlainText().toStdString();

    EXPECT_THAT(help, HasSubstr("Esc"));
    EXPECT_THAT(help, HasSubstr("Lock or unlock the selected parts"));
    EXPECT_THAT(help, HasSubstr("Ctrl+Left button"));
    EXPECT_THAT(help, HasSubstr("Wheel"));
}

TEST_F(MainWindowTest, TheViewportTakesClicksAndKeysAndHoveringNamesThePart)
{
    m_window.open(m_model);
    m_session.getCamera().setStandardView("front");
    UserInput user(m_window.getViewport());
    const QPoint middle = m_window.getViewport().rect().center();

    user.click(middle);
    EXPECT_EQ(m_session.getSelection().getSelection().size(), 1U);
    EXPECT_THAT(statusTexts(), Contains("plate"));

    user.leave();
    EXPECT_THAT(statusTexts(), ::testing::Not(Contains("plate")));
    user.type(Qt::Key_Escape);
    EXPECT_TRUE(m_session.getSelection().getSelection().empty());
}

TEST_F(MainWindowTest, TheToolBarTurnsTheView)
{
    m_window.open(m_model);
    const osg::Matrix before = m_session.getCamera().getWorldToClip();

    ASSERT_NE(action(QStringLiteral("Top")), nullptr);
    action(QStringLiteral("Top"))->trigger();

    EXPECT_NE(m_session.getCamera().getWorldToClip(), before);
}

} // namespace

} // namespace quon::testing
