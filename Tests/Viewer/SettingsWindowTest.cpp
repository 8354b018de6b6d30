// SPDX-License-Identifier: MIT
#include "Support/NotificationTexts.h"
#include "Support/TemporaryFolder.h"

#include "Viewer/Session/Settings.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/KeyField.h"
#include "Viewer/Window/MainWindow.h"
#include "Viewer/Window/ShortcutsDialog.h"
#include "Viewer/Window/Viewport.h"

#include <QToolBar>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace quon::testing {

namespace {

using ::testing::Contains;
using ::testing::IsEmpty;
using viewer::KeyBinding;

// A viewer from its start to its end, with settings in a file of its own.
class Viewer {
public:
    explicit Viewer(const QString& file)
        : m_settings(file)
        , m_window(m_session)
    {
        m_window.useSettings(m_settings);
        m_window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
    }

    viewer::ViewerSession& session() { return m_session; }
    viewer::MainWindow& window() { return m_window; }
    viewer::Viewport& viewport() { return m_window.getViewport(); }

    static std::vector<std::string> problems() { return getNotificationTexts("settings"); }

private:
    viewer::Settings m_settings;
    viewer::ViewerSession m_session;
    viewer::MainWindow m_window;
};

class SettingsWindowTest : public ::testing::Test {
protected:
    QString file() const { return QString::fromStdString(m_folder.path("koviewer.ini")); }

    // Ends the viewer that runs, if any, and starts another one.
    Viewer& start()
    {
        m_viewer.reset();
        m_viewer.emplace(file());
        return *m_viewer;
    }

    TemporaryFolder m_folder;
    std::optional<Viewer> m_viewer;
};

TEST_F(SettingsWindowTest, AKeyThatTheUserChangesIsThereAtTheNextStart)
{
    Viewer& first = start();
    QTest::keyClick(&first.viewport(), Qt::Key_F1);
    auto* dialog = first.window().findChild<viewer::ShortcutsDialog*>();
    ASSERT_NE(dialog, nullptr);
    auto* list = dialog->findChild<QTreeWidget*>("list");
    for (QTreeWidgetItemIterator each(list); *each != nullptr; ++each) {
        if ((*each)->text(0) == QStringLiteral("Dark background")) {
            list->setCurrentItem(*each);
        }
    }
    QTest::keyClick(dialog->findChild<viewer::KeyField*>("key"), Qt::Key_F21);

    Viewer& second = start();
    EXPECT_EQ(second.session().getBindings().getKey("dark"), (KeyBinding{Qt::Key_F21, 0}));
    EXPECT_FALSE(second.session().isDark());
    QTest::keyClick(&second.viewport(), Qt::Key_D);
    EXPECT_FALSE(second.session().isDark());
    QTest::keyClick(&second.viewport(), Qt::Key_F21);
    EXPECT_TRUE(second.session().isDark());
}

TEST_F(SettingsWindowTest, WhatLightsUpAndWhatARectangleSelectsAreAsTheyWereLeft)
{
    for (const char* name : {"preselection", "visible-only"}) {
        const auto isOn = [&](Viewer& viewer) { return viewer.session().getCommands().isChecked(name); };
        const bool standard = isOn(start());

        m_viewer->session().sendCommand(name);
        EXPECT_EQ(isOn(start()), !standard) << name;

        m_viewer->session().sendCommand(name);
        EXPECT_EQ(isOn(start()), standard) << name;
    }
}

TEST_F(SettingsWindowTest, TheBackgroundIsAsItWasLeft)
{
    QTest::keyClick(&start().viewport(), Qt::Key_D);
    EXPECT_TRUE(start().session().isDark());

    QTest::keyClick(&m_viewer->viewport(), Qt::Key_D);
    EXPECT_FALSE(start().session().isDark());
}

TEST_F(SettingsWindowTest, TheWindowIsAsItWasLeft)
{
    Viewer& first = start();
    first.window().setGeometry(40, 50, 700, 500);
    QToolBar* bar = first.window().findChild<QToolBar*>(QStringLiteral("toolBar"));
    ASSERT_NE(bar, nullptr);
    bar->hide();

    Viewer& second = start();
    EXPECT_EQ(second.window().geometry(), QRect(40, 50, 700, 500));
    EXPECT_TRUE(second.window().findChild<QToolBar*>(QStringLiteral("toolBar"))->isHidden());
}

TEST_F(SettingsWindowTest, TheWindowIsKeptWithoutWaitingForItsEnd)
{
    Viewer& first = start();
    first.window().setGeometry(40, 50, 700, 500);

    EXPECT_TRUE(QTest::qWaitFor([&] { return m_folder.read("koviewer.ini").find("geometry") != std::string::npos; }));
}

TEST_F(SettingsWindowTest, NonsenseIsToldAndTheRestCounts)
{
    m_folder.write("koviewer.ini", "[keys]\nhide=Klingon\nfit=F21\n[window]\n"
                                   "geometry=@ByteArray(narrow)\nstate=@ByteArray(open)\n");

    Viewer& viewer = start();

    EXPECT_THAT(viewer.problems(),
                ::testing::ElementsAre(file().toStdString() + ": ignored keys/hide, window/geometry, window/state"));
    EXPECT_EQ(viewer.session().getBindings().getKey("fit"), (KeyBinding{Qt::Key_F21, 0}));
    EXPECT_EQ(viewer.session().getBindings().getKey("hide"), (KeyBinding{Qt::Key_H, 0}));
}

TEST_F(SettingsWindowTest, GoodSettingsAreNotTalkedAbout)
{
    QTest::keyClick(&start().viewport(), Qt::Key_D);

    EXPECT_THAT(start().problems(), IsEmpty());
}

} // namespace

} // namespace quon::testing
