// SPDX-License-Identifier: MIT
#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/RecordingContext.h>

#include "Support/TemporaryFolder.h"
#include "Support/UserInput.h"

#include "Viewer/Model/ViewerError.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/MainWindow.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/InteractionManager.h>
#include <Interaction/NodeSelectionModel.h>

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTimer>
#include <QToolButton>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace quon::testing {

namespace {

using ::testing::Contains;

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

TEST_F(MainWindowTest, ACommandShowsItsKeyInTheMenuAndInTheToolTip)
{
    QAction* lock = m_window.getAction("lock");

    ASSERT_NE(lock, nullptr);
    EXPECT_EQ(lock->text(), QStringLiteral("Lock or unlock\tL"));
    EXPECT_EQ(lock->toolTip(), QStringLiteral("Lock or unlock the selected parts (L)"));
    // Keys come through the event mapper: a shortcut of Qt's would take them away from it.
    EXPECT_TRUE(lock->shortcut().isEmpty());
    EXPECT_EQ(m_window.getAction("none"), nullptr);
}

TEST_F(MainWindowTest, ACommandCanBeAskedForWhenItHasSomethingToDo)
{
    m_window.open(m_model);
    EXPECT_FALSE(m_window.getAction("lock")->isEnabled());

    m_session.toggleNode(m_session.findNode("plate"));

    EXPECT_TRUE(m_window.getAction("lock")->isEnabled());
    EXPECT_TRUE(m_window.getAction("overlay")->isChecked());
}

TEST_F(MainWindowTest, UndoAndRedoSayWhatTheyWouldDoAndFollowTheirKeys)
{
    m_window.open(m_model);
    const osg::NodePtr plate = m_session.findNode("plate");
    EXPECT_FALSE(m_window.getAction("undo")->isEnabled());
    EXPECT_EQ(m_window.getAction("undo")->text(), QStringLiteral("Undo\tCtrl+Z"));

    m_session.toggleNode(plate);
    QTest::keyClick(&m_window, Qt::Key_H);
    EXPECT_TRUE(m_window.getAction("undo")->isEnabled());
    EXPECT_EQ(m_window.getAction("undo")->text(), QStringLiteral("Undo Hide 1 parts\tCtrl+Z"));

    QTest::keyClick(&m_window, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(plate->getTravMask(), 0xFFFFFFFFU);
    EXPECT_EQ(m_window.getAction("undo")->text(), QStringLiteral("Undo Select 1 parts\tCtrl+Z"));
    EXPECT_EQ(m_window.getAction("redo")->text(), QStringLiteral("Redo Hide 1 parts\tCtrl+Shift+Z"));

    QTest::keyClick(&m_window, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(m_session.getSelection().getSelection().empty());
    EXPECT_FALSE(m_window.getAction("undo")->isEnabled());

    QTest::keyClick(&m_window, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    m_window.getAction("redo")->trigger();
    EXPECT_EQ(plate->getTravMask(), 0U);
    EXPECT_FALSE(m_window.getAction("redo")->isEnabled());

    m_window.open(m_model);
    EXPECT_FALSE(m_window.getAction("undo")->isEnabled());
}

TEST_F(MainWindowTest, AKeyThatAPanelLeavesAloneGoesToTheViewport)
{
    QLineEdit field(&m_window);
    field.show();
    m_window.open(m_model);
    m_session.toggleNode(m_session.findNode("plate"));

    QTest::keyClick(&m_window, Qt::Key_Escape);
    EXPECT_TRUE(m_session.getSelection().getSelection().empty());

    QTest::keyClick(&field, Qt::Key_D);
    EXPECT_EQ(field.text(), QStringLiteral("d"));
    EXPECT_FALSE(m_session.isDark());
}

TEST_F(MainWindowTest, AKeyThatNobodyConsumesInTheViewportIsNotSentTwice)
{
    CallLog log;
    RecordingContext context(log, "context", interaction::InteractionContext::Overlay);
    m_session.getInteractionManager().addContext(&context);
    EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
    m_window.getViewport().setFocus();
    log.clear();

    QTest::keyClick(&m_window.getViewport(), Qt::Key_F23);

    EXPECT_THAT(log.take(), ::testing::ElementsAre("context.triggerEvent(qt-key:16777286, press)",
                                                   "context.triggerEvent(qt-key:16777286, release)"));
    m_session.getInteractionManager().removeContext(&context);
}

TEST_F(MainWindowTest, TheViewportTakesClicksAndKeysAndHoveringNamesThePart)
{
    m_window.open(m_model);
    m_session.getCamera().setStandardView("front");
    UserInput user(m_window.getViewport());
    const QPoint middle = m_window.getViewport().rect().center();

    user.click(middle);
    m_session.beginFrame();
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

    const auto buttons = m_window.findChildren<QToolButton*>();
    const auto top = std::find_if(buttons.begin(), buttons.end(), [&](const QToolButton* button) {
        return button->defaultAction() == m_window.getAction("top");
    });
    ASSERT_NE(top, buttons.end());
    QTest::mouseClick(*top, Qt::LeftButton);

    EXPECT_NE(m_session.getCamera().getWorldToClip(), before);
}

TEST_F(MainWindowTest, TheHelpMenuSaysWhatProgramThisIs)
{
    QString text;
    // The box keeps its own event loop until somebody closes it.
    QTimer::singleShot(0, &m_window, [&] {
        auto* box = m_window.findChild<QMessageBox*>(QStringLiteral("about"));
        ASSERT_NE(box, nullptr);
        text = box->text() + box->informativeText();
        QTest::keyClick(box, Qt::Key_Escape);
    });
    const QList<QAction*> entries = m_window.menuBar()->actions().last()->menu()->actions();
    m_session.getBindings().setKey("inspector", {Qt::Key_J, Qt::AltModifier});

    entries.last()->trigger();

    EXPECT_THAT(text.toStdString(), ::testing::HasSubstr("koviewer 1."));
    EXPECT_THAT(text.toStdString(), ::testing::HasSubstr("libkoInteraction"));
    EXPECT_THAT(text.toStdString(), ::testing::HasSubstr("The inspector (Alt+J)"));
    EXPECT_EQ(entries.first(), m_window.getAction("shortcuts"));
}

TEST_F(MainWindowTest, MeasurementsAreWrittenInTheUnitOfLengths)
{
    m_window.showAssembly(1);
    m_session.getCamera().setStandardView("front");
    UserInput user(m_window.getViewport());
    const QPoint middle = m_window.getViewport().rect().center();
    user.type(Qt::Key_M);
    user.click(middle);
    user.click(middle + QPoint(20, 0));
    ASSERT_TRUE(m_session.getMeasureTool().isFinished());
    const auto distance = [&] { return m_session.getMeasureTool().getLine().getContent().texts.distance; };
    EXPECT_TRUE(distance().endsWith(QStringLiteral(" m"))) << distance().toStdString();

    m_window.getModelSettings().setLengthUnit(viewer::LengthUnit::Inch);

    EXPECT_TRUE(distance().endsWith(QStringLiteral(" in"))) << distance().toStdString();
}

TEST_F(MainWindowTest, AModelThatIsScaledTakesItsMeasurementAway)
{
    m_window.open(m_model);
    m_session.getCamera().setStandardView("front");
    UserInput user(m_window.getViewport());
    const QPoint middle = m_window.getViewport().rect().center();
    user.type(Qt::Key_M);
    user.click(middle);
    user.click(middle + QPoint(20, 0));
    ASSERT_TRUE(m_session.getMeasureTool().isFinished());

    m_window.getModelSettings().setMetresPerUnit(0.001);

    EXPECT_FALSE(m_session.getMeasureTool().isFinished());
}

} // namespace

} // namespace quon::testing
