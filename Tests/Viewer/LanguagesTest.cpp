// SPDX-License-Identifier: MIT
#include "Support/NotificationTexts.h"
#include "Support/TemporaryFolder.h"

#include "Viewer/Session/Commands.h"
#include "Viewer/Session/InputBindings.h"
#include "Viewer/Session/Settings.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/LanguageMenu.h"
#include "Viewer/Window/Languages.h"
#include "Viewer/Window/MainWindow.h"
#include "Viewer/Window/ShortcutsDialog.h"
#include "Viewer/Window/Viewport.h"

#include <Shortcut/koShortcut.h>

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTreeWidget>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using viewer::Languages;

class LanguagesTest : public ::testing::Test {
protected:
    LanguagesTest()
        : m_settings(QString::fromStdString(m_folder.path("koviewer.ini")))
        , m_window(m_session)
    {
        m_languages.setSession(&m_session);
        m_languages.select("en");
        m_window.useSettings(m_settings);
        m_window.addLanguages(m_languages);
        m_window.show();
        settle();
    }

    // Widgets hear of another language when their turn comes.
    static void settle() { QCoreApplication::processEvents(); }

    // Triggers an entry of the menu of languages.
    void choose(const QString& name)
    {
        for (QAction* action : m_window.findChild<QMenu*>("language")->actions()) {
            if (action->text() == name) {
                action->trigger();
            }
        }
        settle();
    }

    std::vector<std::string> menuTitles()
    {
        std::vector<std::string> titles;
        for (const QAction* action : m_window.menuBar()->actions()) {
            titles.push_back(action->text().remove(QLatin1Char('&')).toStdString());
        }
        return titles;
    }

    static std::set<std::string> groups()
    {
        std::set<std::string> groups;
        for (const koShortcut::Entry& entry : koShortcut::getEntries()) {
            groups.insert(entry.group.toStdString());
        }
        return groups;
    }

    static std::vector<std::string> descriptions()
    {
        std::vector<std::string> descriptions;
        for (const koShortcut::Entry& entry : koShortcut::getEntries()) {
            descriptions.push_back(entry.description.toStdString());
        }
        return descriptions;
    }

    static std::vector<std::string> notifications() { return getNotificationTexts(); }

    TemporaryFolder m_folder;
    viewer::Settings m_settings;
    Languages m_languages;
    viewer::ViewerSession m_session;
    viewer::MainWindow m_window;
};

TEST_F(LanguagesTest, MenusToolTipsStatusBarAndNotificationsChangeAtOnce)
{
    m_window.open(m_folder.write("plate.obj", "o plate\nv -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\nf 1 2 3 4\n"));
    EXPECT_THAT(menuTitles(), Contains("Window"));

    choose("Deutsch");

    EXPECT_THAT(menuTitles(), Contains("Fenster"));
    EXPECT_THAT(menuTitles(), Not(Contains("Window")));
    EXPECT_EQ(m_window.getAction("hide")->text(), QStringLiteral("Ausblenden\tH"));
    EXPECT_EQ(m_window.getAction("select-all")->text(), QStringLiteral("Alles auswählen\tStrg+A"));
    EXPECT_EQ(m_window.getAction("hide")->toolTip(), QStringLiteral("Ausgewählte Teile ausblenden (H)"));
    EXPECT_THAT(notifications(), Contains(::testing::HasSubstr("Nichts ausgewählt")));
    EXPECT_THAT(notifications(), Contains(::testing::HasSubstr("Klicken wählt ein Teil aus")));
    EXPECT_THAT(notifications(), Not(Contains(::testing::HasSubstr("Click"))));

    choose("English");
    EXPECT_THAT(menuTitles(), Contains("Window"));
    EXPECT_EQ(m_window.getAction("select-all")->text(), QStringLiteral("Select all\tCtrl+A"));
    EXPECT_THAT(notifications(), Contains(::testing::HasSubstr("Nothing selected")));
}

TEST_F(LanguagesTest, TheRegistryHoldsTheNewLanguageAndNothingOfTheOldOne)
{
    const std::size_t count = koShortcut::getEntries().size();
    EXPECT_THAT(groups(), Contains("Interaction"));

    choose("Deutsch");
    EXPECT_EQ(koShortcut::getEntries().size(), count);
    EXPECT_THAT(groups(), Contains("Interaktion"));
    EXPECT_THAT(groups(), Contains("Datei"));
    for (const char* english : {"Interaction", "File", "Fixed keys"}) {
        EXPECT_THAT(groups(), Not(Contains(english)));
    }
    EXPECT_THAT(descriptions(), Contains("Ausgewählte Teile ausblenden"));
    EXPECT_THAT(descriptions(), Not(Contains("Hide the selected parts")));

    choose("English");
    EXPECT_EQ(koShortcut::getEntries().size(), count);
    EXPECT_THAT(groups(), Not(Contains("Interaktion")));
    EXPECT_THAT(groups(), Not(Contains("Datei")));
}

TEST_F(LanguagesTest, TheBindingsAreAddedAgainOnce)
{
    const QSignalSpy rebuilt(&m_session.getBindings(), &viewer::InputBindings::changed);

    choose("Deutsch");

    EXPECT_EQ(rebuilt.count(), 1);
}

TEST_F(LanguagesTest, KeysWorkAsBefore)
{
    m_session.getBindings().setKey("dark", {Qt::Key_F21, 0});

    choose("Deutsch");

    QTest::keyClick(&m_window.getViewport(), Qt::Key_F21);
    EXPECT_TRUE(m_session.isDark());
    QTest::keyClick(&m_window.getViewport(), Qt::Key_D);
    EXPECT_TRUE(m_session.isDark());
}

TEST_F(LanguagesTest, TheListOfShortcutsFollowsWhileItIsOpen)
{
    m_session.sendCommand("shortcuts");
    auto* dialog = m_window.findChild<viewer::ShortcutsDialog*>();
    auto* list = dialog->findChild<QTreeWidget*>("list");
    ASSERT_EQ(list->topLevelItem(0)->text(0), QStringLiteral("Interaction"));

    choose("Deutsch");

    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Tastenkürzel"));
    EXPECT_EQ(dialog->findChild<QPushButton*>("close")->text(), QStringLiteral("Schließen"));
    EXPECT_EQ(list->topLevelItem(0)->text(0), QStringLiteral("Interaktion"));
    EXPECT_EQ(list->topLevelItem(0)->child(0)->text(0), QStringLiteral("Bearbeiten"));
    EXPECT_EQ(list->topLevelItem(0)->child(0)->child(0)->text(0), QStringLiteral("Rückgängig"));
    EXPECT_EQ(list->findItems("Interaction", Qt::MatchExactly | Qt::MatchRecursive).size(), 0);
}

TEST_F(LanguagesTest, OneIsSingularInBothLanguages)
{
    const auto summary = [&] {
        std::vector<std::string> texts;
        for (const QLabel* label : m_window.statusBar()->findChildren<QLabel*>()) {
            texts.push_back(label->text().toStdString());
        }
        return texts;
    };
    m_window.open(m_folder.write("plate.obj", "o plate\nv -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\nf 1 2 3 4\n"));

    EXPECT_THAT(summary(), Contains("1 part"));
    choose("Deutsch");
    EXPECT_THAT(summary(), Contains("1 Teil"));
    m_window.showAssembly(20);
    EXPECT_THAT(summary(), Contains("20 Teile"));
    choose("English");
    EXPECT_THAT(summary(), Contains("20 parts"));
}

TEST_F(LanguagesTest, TheChoiceIsMarkedAndKept)
{
    const auto checked = [&] {
        std::vector<std::string> names;
        for (const QAction* action : m_window.findChild<QMenu*>("language")->actions()) {
            if (action->isChecked()) {
                names.push_back(action->text().toStdString());
            }
        }
        return names;
    };
    EXPECT_THAT(checked(), ElementsAre("English"));

    choose("Deutsch");
    EXPECT_THAT(checked(), ElementsAre("Deutsch"));
    EXPECT_EQ(m_settings.getLanguage(), QStringLiteral("de"));
    EXPECT_EQ(m_languages.getSpoken(), "de");

    choose("Systemsprache");
    EXPECT_EQ(m_settings.getLanguage(), QString());
    EXPECT_EQ(m_languages.getSelected(), "");
}

TEST_F(LanguagesTest, WhatTheViewerDoesNotSpeakIsTheLanguageOfTheSystem)
{
    m_languages.select("de");
    m_languages.select("tlh");

    EXPECT_EQ(m_languages.getSelected(), "");
    EXPECT_FALSE(Languages::isKnown("tlh"));
    // The system of the tests has no language.
    EXPECT_EQ(m_languages.getSpoken(), "en");
}

TEST_F(LanguagesTest, ButtonsOfQtSpeakTheLanguageToo)
{
    choose("Deutsch");

    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), QStringLiteral("Abbrechen"));
}

TEST_F(LanguagesTest, NumbersAreWrittenAsTheLanguageDoes)
{
    choose("Deutsch");
    EXPECT_EQ(QLocale().toString(1.5), QStringLiteral("1,5"));

    choose("English");
    EXPECT_EQ(QLocale().toString(1.5), QStringLiteral("1.5"));
}

} // namespace

} // namespace quon::testing
