// SPDX-License-Identifier: MIT
#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/RecordingContext.h>

#include "Support/NotificationTexts.h"
#include "Support/TemporaryFolder.h"
#include "Support/UserInput.h"

#include "Viewer/Session/Settings.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/MainWindow.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/InteractionManager.h>
#include <Interaction/NodeSelectionModel.h>

#include <QAction>
#include <QDialog>
#include <QDockWidget>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PresenterModeTest : public ::testing::Test {
protected:
    PresenterModeTest()
        : m_window(m_session)
    {
        // Docks of every kind: at a side, below another one as a tab, away from the window, not shown.
        for (QDockWidget** dock : {&m_left, &m_tab, &m_floating, &m_hidden}) {
            *dock = new QDockWidget(&m_window);
            (*dock)->setObjectName(QStringLiteral("dock%1").arg(reinterpret_cast<quintptr>(dock)));
            m_window.addDockWidget(Qt::LeftDockWidgetArea, *dock);
        }
        m_window.tabifyDockWidget(m_left, m_tab);
        m_floating->setFloating(true);
        m_hidden->hide();
        m_window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
        m_window.resize(900, 700);
        viewport().setFocus();
        QCoreApplication::processEvents();
    }

    viewer::Viewport& viewport() { return m_window.getViewport(); }
    bool isGated() { return m_session.getInteractionManager().getPresenterMode(); }

    void enter()
    {
        QTest::keyClick(&viewport(), Qt::Key_F11);
        QCoreApplication::processEvents();
        ASSERT_TRUE(isGated());
    }

    void expectAsBefore()
    {
        EXPECT_FALSE(isGated());
        EXPECT_FALSE(m_window.isFullScreen());
        EXPECT_TRUE(m_window.menuBar()->isVisible());
        EXPECT_TRUE(m_window.statusBar()->isVisible());
        EXPECT_TRUE(toolBar()->isVisible());
        EXPECT_FALSE(m_left->isHidden());
        EXPECT_FALSE(m_tab->isHidden());
        EXPECT_TRUE(m_floating->isVisible());
        EXPECT_TRUE(m_floating->isFloating());
        EXPECT_TRUE(m_hidden->isHidden());
        EXPECT_THAT(m_window.tabifiedDockWidgets(m_left), ElementsAre(m_tab));
        EXPECT_FALSE(m_window.getAction("presenter")->isChecked());
        EXPECT_THAT(notices(), IsEmpty());
    }

    // The events in a log, without movements of the camera: another size of the window is another picture.
    static std::vector<std::string> eventsIn(CallLog& log)
    {
        std::vector<std::string> events = log.take();
        const auto isMovement = [](const std::string& call) { return call.find("cameraMoved") != std::string::npos; };
        events.erase(std::remove_if(events.begin(), events.end(), isMovement), events.end());
        return events;
    }

    QToolBar* toolBar() { return m_window.findChild<QToolBar*>(QStringLiteral("toolBar")); }

    static std::vector<std::string> notices() { return getNotificationTexts("presenter"); }

    viewer::ViewerSession m_session;
    viewer::MainWindow m_window;
    QDockWidget* m_left = nullptr;
    QDockWidget* m_tab = nullptr;
    QDockWidget* m_floating = nullptr;
    QDockWidget* m_hidden = nullptr;
};

TEST_F(PresenterModeTest, NothingButTheViewIsLeftAndAWordAboutTheWayBack)
{
    enter();

    EXPECT_TRUE(m_window.isFullScreen());
    EXPECT_FALSE(m_window.menuBar()->isVisible());
    EXPECT_FALSE(m_window.statusBar()->isVisible());
    EXPECT_FALSE(toolBar()->isVisible());
    for (const QDockWidget* dock : {m_left, m_tab, m_floating, m_hidden}) {
        EXPECT_FALSE(dock->isVisible());
    }
    EXPECT_TRUE(viewport().isVisible());
    EXPECT_TRUE(viewport().hasFocus());
    EXPECT_TRUE(m_window.getAction("presenter")->isChecked());
    EXPECT_THAT(notices(), ElementsAre("Presenter mode: F11 or Esc ends it"));
}

TEST_F(PresenterModeTest, KeysDoNothing)
{
    enter();

    QTest::keyClick(&viewport(), Qt::Key_D);
    QTest::keyClick(&viewport(), Qt::Key_F1);
    QTest::keyClick(&viewport(), Qt::Key_O, Qt::ControlModifier);
    QTest::keyClick(&viewport(), Qt::Key_F, Qt::ControlModifier);

    for (const QDockWidget* dock : m_window.findChildren<QDockWidget*>()) {
        EXPECT_FALSE(dock->isVisible());
    }
    EXPECT_FALSE(m_session.isDark());
    EXPECT_TRUE(m_window.findChildren<QDialog*>().empty());
}

TEST_F(PresenterModeTest, TheKeyThatEnteredItLeavesItAndAllIsAsBefore)
{
    const QSize size = m_window.size();
    enter();

    QTest::keyClick(&viewport(), Qt::Key_F11);
    QCoreApplication::processEvents();

    expectAsBefore();
    EXPECT_EQ(m_window.size(), size);
    QTest::keyClick(&viewport(), Qt::Key_D);
    EXPECT_TRUE(m_session.isDark());
    for (const QAction* action : m_window.actions()) {
        EXPECT_TRUE(action->isEnabled());
    }
    enter();
}

TEST_F(PresenterModeTest, EscapeLeavesItAndNothingElse)
{
    CallLog log;
    RecordingContext context(log, "context", interaction::InteractionContext::Overlay);
    m_session.getInteractionManager().addContext(&context);
    enter();
    log.clear();

    QTest::keyClick(&viewport(), Qt::Key_Escape);
    QCoreApplication::processEvents();

    expectAsBefore();
    EXPECT_THAT(eventsIn(log), IsEmpty());
    m_session.getInteractionManager().removeContext(&context);
}

TEST_F(PresenterModeTest, OutsideTheModeEscapeBelongsToTheTools)
{
    CallLog log;
    RecordingContext context(log, "context", interaction::InteractionContext::Overlay);
    m_session.getInteractionManager().addContext(&context);
    log.clear();

    QTest::keyPress(&viewport(), Qt::Key_Escape);

    EXPECT_THAT(eventsIn(log), ElementsAre("context.triggerEvent(qt-key:16777216, press)"));
    QTest::keyRelease(&viewport(), Qt::Key_Escape);
    m_session.getInteractionManager().removeContext(&context);
}

TEST_F(PresenterModeTest, NoKeyStaysActiveWhoseReleaseIsHeldBack)
{
    CallLog log;
    RecordingContext context(log, "context", interaction::InteractionContext::Overlay);
    m_session.getInteractionManager().addContext(&context);
    log.clear();

    QTest::keyPress(&viewport(), Qt::Key_D);
    QTest::keyPress(&viewport(), Qt::Key_F11);
    QCoreApplication::processEvents();
    ASSERT_TRUE(isGated());

    EXPECT_THAT(eventsIn(log),
                ElementsAre("context.triggerEvent(view:dark, start)", "context.triggerEvent(view:presenter, start)",
                            "context.triggerEvent(view:dark, stop)", "context.triggerEvent(view:dark, trigger)",
                            "context.triggerEvent(view:presenter, stop)",
                            "context.triggerEvent(view:presenter, trigger)"));
    m_session.getInteractionManager().removeContext(&context);
}

TEST_F(PresenterModeTest, AKeyThatIsHeldDoesNotLeaveItAtOnce)
{
    QTest::keyPress(&viewport(), Qt::Key_F11);
    QCoreApplication::processEvents();
    for (int i = 0; i < 3; ++i) {
        // Through the shortcuts of the window first, as the platform does it.
        qt_handleKeyEvent(m_window.windowHandle(), QEvent::KeyPress, Qt::Key_F11, Qt::NoModifier, QString(), true);
    }

    EXPECT_TRUE(isGated());
}

TEST_F(PresenterModeTest, TheMouseSelectsAndTurnsTheView)
{
    const TemporaryFolder folder;
    m_window.open(folder.write("plate.obj", "o plate\nv -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\nf 1 2 3 4\n"));
    enter();
    UserInput user(viewport());
    const QPoint middle = viewport().rect().center();

    user.click(middle);
    EXPECT_EQ(m_session.getSelection().getSelection().size(), 1U);

    const osg::Matrix before = m_session.getCamera().getWorldToClip();
    user.drag(middle, middle + QPoint(80, 0), Qt::RightButton);
    EXPECT_NE(m_session.getCamera().getWorldToClip(), before);
}

TEST_F(PresenterModeTest, AnotherKeyOfTheCommandLeavesItToo)
{
    m_session.getBindings().setKey("presenter", {Qt::Key_F21, Qt::ControlModifier});
    QTest::keyClick(&viewport(), Qt::Key_F21, Qt::ControlModifier);
    QCoreApplication::processEvents();
    ASSERT_TRUE(isGated());
    EXPECT_THAT(notices(), ElementsAre("Presenter mode: Ctrl+F21 or Esc ends it"));

    QTest::keyClick(&viewport(), Qt::Key_F11);
    EXPECT_TRUE(isGated());
    QTest::keyClick(&viewport(), Qt::Key_F21, Qt::ControlModifier);
    EXPECT_FALSE(isGated());

    m_session.getBindings().setKey("presenter", {});
    m_session.sendCommand("presenter");
    QCoreApplication::processEvents();
    EXPECT_THAT(notices(), ElementsAre("Presenter mode: Esc ends it"));
}

TEST(PresenterModeEndTest, TheEndOfTheWindowLetsTheKeysThrough)
{
    viewer::ViewerSession session;
    {
        viewer::MainWindow window(session);
        window.show();
        session.sendCommand("presenter");
        QCoreApplication::processEvents();
        EXPECT_TRUE(session.getInteractionManager().getPresenterMode());
    }
    EXPECT_FALSE(session.getInteractionManager().getPresenterMode());
}

TEST(PresenterModeEndTest, AWindowThatIsClosedInTheModeIsRememberedAsItWasBefore)
{
    const TemporaryFolder folder;
    const QString file = QString::fromStdString(folder.path("koviewer.ini"));
    for (int start = 0; start < 2; ++start) {
        SCOPED_TRACE(start);
        viewer::Settings settings(file);
        viewer::ViewerSession session;
        viewer::MainWindow window(session);
        window.useSettings(settings);
        if (start == 0) {
            window.setGeometry(40, 50, 700, 500);
        }
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));

        EXPECT_EQ(window.geometry(), QRect(40, 50, 700, 500));
        EXPECT_TRUE(window.findChild<QToolBar*>(QStringLiteral("toolBar"))->isVisible());
        session.sendCommand("presenter");
        QCoreApplication::processEvents();
        EXPECT_TRUE(window.isFullScreen());
        window.close();
    }
}

} // namespace

} // namespace quon::testing
