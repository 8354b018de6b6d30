// SPDX-License-Identifier: MIT
#include "Viewer/Window/ScriptPlayer.h"
#include "Viewer/Model/AssemblyGenerator.h"
#include "Viewer/Script/Script.h"
#include "Viewer/Script/ScriptRunner.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/MainWindow.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/NodeSelectionModel.h>
#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>

#include <QApplication>
#include <QLineEdit>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The offscreen platform has windows but no OpenGL: what the window draws is not looked at here.
class ScriptPlayerTest : public ::testing::Test {
protected:
    ScriptPlayerTest()
        : m_window(m_session)
        , m_player(m_window.getPlayer())
    {
        m_window.show();
        m_player.setPace(0);
        QObject::connect(&m_player, &viewer::ScriptPlayer::finished, [this] { ++m_finished; });
        QObject::connect(&m_player, &viewer::ScriptPlayer::failed, [this](const viewer::ViewerError& error) {
            const bool diverged = dynamic_cast<const viewer::DivergenceError*>(&error) != nullptr;
            m_failures.push_back((diverged ? "diverged: " : "") + std::string(error.what()));
        });
    }

    void setModel()
    {
        const osg::RefPtr<osg::NodePtr> model = viewer::AssemblyGenerator::generate(20);
        m_session.setModel(model.get());
    }

    void play(const std::string& text) { m_player.play(viewer::Script::parse(text, "file")); }

    bool waitForEnd()
    {
        return QTest::qWaitFor([this] { return m_finished > 0 || !m_failures.empty(); });
    }

    viewer::ViewerSession m_session;
    viewer::MainWindow m_window;
    viewer::ScriptPlayer& m_player;
    int m_finished = 0;
    std::vector<std::string> m_failures;
};

TEST_F(ScriptPlayerTest, TheScriptIsPlayedInTheWindowAndHandsOver)
{
    setModel();

    const QSize window = m_window.size();
    QSize played;
    m_session.getCommands().setCommand("fit", {[&] { played = m_window.getViewport().size(); }, {}, {}});

    play("size 500 400\ncommand fit\nclick-visible 1\nexpect-selection 1\ncommand dark");
    EXPECT_TRUE(m_player.isPlaying());
    ASSERT_TRUE(waitForEnd());

    EXPECT_THAT(m_failures, IsEmpty());
    EXPECT_EQ(m_finished, 1);
    EXPECT_FALSE(m_player.isPlaying());
    EXPECT_EQ(played, QSize(500, 400));
    EXPECT_EQ(m_window.size(), window);
    EXPECT_TRUE(m_session.isDark());
    QTest::keyClick(&m_window.getViewport(), Qt::Key_D);
    EXPECT_FALSE(m_session.isDark());
}

TEST_F(ScriptPlayerTest, ItWaitsForAModel)
{
    play("command dark");
    QApplication::processEvents();
    QApplication::processEvents();
    EXPECT_FALSE(m_session.isDark());

    setModel();
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(m_session.isDark());
}

TEST_F(ScriptPlayerTest, TheUsersInputWaitsUntilTheEnd)
{
    setModel();

    const osg::Pnt2f pointer = m_session.getPicker().getPointer();
    play("fit\nfit\nfit");
    QTest::mouseClick(&m_window.getViewport(), Qt::LeftButton, Qt::NoModifier, m_window.getViewport().rect().center());
    QTest::keyClick(&m_window.getViewport(), Qt::Key_D);
    ASSERT_TRUE(waitForEnd());

    EXPECT_FALSE(m_session.isDark());
    EXPECT_EQ(m_session.getPicker().getPointer(), pointer);
}

TEST_F(ScriptPlayerTest, WhereTheUserGoesMeanwhileLeavesTheScriptAlone)
{
    setModel();
    m_window.activateWindow();
    m_window.getViewport().setFocus();
    bool hadFocus = false;
    int parts = 0;
    m_session.getCommands().setCommand("fit", {[&] {
                                                   hadFocus = m_window.getViewport().hasFocus();
                                                   m_window.findChild<QLineEdit*>(QStringLiteral("search"))->setFocus();
                                                   QEvent leave(QEvent::Leave);
                                                   QApplication::sendEvent(&m_window.getViewport(), &leave);
                                               },
                                               {},
                                               {}});
    m_session.getCommands().setCommand(
        "dark", {[&] { parts = static_cast<int>(m_session.getSelection().getSelection().size()); }, {}, {}});

    // To the left: whatever the rectangle touches.
    play("exact\nsize 500 400\npress 490 390 shift\nmove 5 5 shift\ncommand fit\nrelease 5 5 shift\ncommand dark\n"
         "press 10 10 shift\nmove 490 390 shift\nfocusout\nrelease 490 390 shift\nexpect-selection 20");
    ASSERT_TRUE(waitForEnd());

    EXPECT_TRUE(hadFocus);
    EXPECT_FALSE(m_window.getViewport().hasFocus());
    EXPECT_EQ(parts, 20);
    // The script's own ones arrive all the same.
    EXPECT_THAT(m_failures, IsEmpty());
}

TEST_F(ScriptPlayerTest, EscapeEndsTheScript)
{
    setModel();
    m_player.setPace(100000);

    play("fit\ncommand dark");
    QTest::keyClick(&m_window.getViewport(), Qt::Key_Escape);
    ASSERT_TRUE(waitForEnd());

    EXPECT_EQ(m_finished, 1);
    EXPECT_FALSE(m_session.isDark());
    EXPECT_FALSE(m_player.isPlaying());
}

TEST_F(ScriptPlayerTest, WhatGoesAnotherWayIsReportedAndEndsTheScript)
{
    setModel();

    play("fit\nexpect-model 21\ncommand dark");
    ASSERT_TRUE(waitForEnd());
    EXPECT_THAT(m_failures, ElementsAre("diverged: file:2: the model has 20 parts where the recording had 21"));
    EXPECT_FALSE(m_session.isDark());
    m_failures.clear();

    play("click-part nobody");
    ASSERT_TRUE(waitForEnd());
    EXPECT_THAT(m_failures, ElementsAre("file:1: no part is named 'nobody'"));
}

TEST_F(ScriptPlayerTest, AnotherScriptTakesThePlaceOfTheFirst)
{
    setModel();

    play("command dark\ncommand dark\ncommand dark");
    play("fit");
    ASSERT_TRUE(waitForEnd());

    EXPECT_EQ(m_finished, 1);
    EXPECT_FALSE(m_session.isDark());
    for (const notification::Notification* entry :
         notification::NotificationManager::getInstance()->getNotifications()) {
        EXPECT_THAT(dynamic_cast<const notification::TextNotification&>(*entry).getText(),
                    ::testing::Not(::testing::StartsWith("Replaying")));
    }
}

} // namespace

} // namespace quon::testing
