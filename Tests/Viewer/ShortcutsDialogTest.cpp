// SPDX-License-Identifier: MIT
#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/RecordingContext.h>

#include "Viewer/Window/ShortcutsDialog.h"

#include "Viewer/Session/Commands.h"
#include "Viewer/Session/ViewerSession.h"
#include "Viewer/Window/KeyField.h"
#include "Viewer/Window/MainWindow.h"
#include "Viewer/Window/ShortcutDelegate.h"
#include "Viewer/Window/Viewport.h"

#include <Interaction/InteractionManager.h>

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using viewer::KeyBinding;
using viewer::ShortcutsDialog;

constexpr int Control = Qt::ControlModifier;

class ShortcutsDialogTest : public ::testing::Test {
protected:
    ShortcutsDialogTest()
        : m_window(m_session)
    {
        m_window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
        m_session.sendCommand("shortcuts");
        m_dialog = m_window.findChild<ShortcutsDialog*>();
        // The offscreen platform activates the main window once more when it gets around to it.
        QCoreApplication::processEvents();
        m_dialog->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(m_dialog));
    }

    viewer::InputBindings& bindings() { return m_session.getBindings(); }

    template <class Widget>
    Widget* child(const char* name) const
    {
        return m_dialog->findChild<Widget*>(QString::fromLatin1(name));
    }

    QTreeWidget* list() const { return child<QTreeWidget>("list"); }
    viewer::KeyField* keyField() const { return child<viewer::KeyField>("key"); }
    std::string conflict() const { return child<QLabel>("conflict")->text().toStdString(); }

    void click(const char* button) const { QTest::mouseClick(child<QAbstractButton>(button), Qt::LeftButton); }

    QTreeWidgetItem* item(const QString& name) const
    {
        for (QTreeWidgetItemIterator each(list()); *each != nullptr; ++each) {
            if ((*each)->text(0) == name && (*each)->childCount() == 0) {
                return *each;
            }
        }
        return nullptr;
    }

    // Clicks on a line of the list.
    void choose(const QString& name) const
    {
        list()->scrollToItem(item(name));
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          list()->visualItemRect(item(name)).center());
    }

    std::string capsOf(const QString& name) const
    {
        return item(name)->data(1, viewer::ShortcutDelegate::CapsRole).toStringList().join("|").toStdString();
    }

    // The headings and lines that are shown, headings with a colon.
    std::vector<std::string> shown() const
    {
        std::vector<std::string> names;
        if (list()->isVisible()) {
            for (QTreeWidgetItemIterator each(list(), QTreeWidgetItemIterator::NotHidden); *each != nullptr; ++each) {
                names.push_back((*each)->text(0).toStdString() + ((*each)->childCount() == 0 ? "" : ":"));
            }
        }
        return names;
    }

    viewer::ViewerSession m_session;
    viewer::MainWindow m_window;
    ShortcutsDialog* m_dialog = nullptr;
};

TEST_F(ShortcutsDialogTest, EverythingInTheRegistryIsListedUnderItsHeading)
{
    bindings().setKey("left", {});

    // Each entry of the registry and the commands without a key.
    int lines = 0;
    for (QTreeWidgetItemIterator each(list(), QTreeWidgetItemIterator::NoChildren); *each != nullptr; ++each) {
        ++lines;
    }
    const auto& commands = viewer::Command::getAll();
    const auto withoutKey = std::count_if(commands.begin(), commands.end(), [&](const viewer::Command& command) {
        return bindings().getKey(command.name).isNone();
    });
    EXPECT_GE(withoutKey, 1);
    EXPECT_EQ(lines, static_cast<int>(koShortcut::getEntries().size()) + withoutKey);
    EXPECT_EQ(item("Hide")->parent()->text(0), QStringLiteral("Edit"));
    EXPECT_EQ(item("Hide")->parent()->parent()->text(0), QStringLiteral("Interaction"));
    EXPECT_EQ(item("Open")->parent()->text(0), QStringLiteral("File"));
    EXPECT_EQ(item("Turn the view")->parent()->text(0), QStringLiteral("Mouse"));
    EXPECT_EQ(capsOf("Redo"), "Ctrl|Shift|Z");
    EXPECT_EQ(capsOf("Quit"), "Ctrl|Q");
    EXPECT_EQ(capsOf("Zoom the view"), "Ctrl|Right button");
    EXPECT_EQ(capsOf("Left"), "");
}

TEST_F(ShortcutsDialogTest, AsManyTimesAsItIsAskedForThereIsOneDialog)
{
    m_session.sendCommand("shortcuts");

    EXPECT_EQ(m_window.findChildren<ShortcutsDialog*>().size(), 1);

    click("close");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(m_window.findChildren<ShortcutsDialog*>().empty());
}

TEST_F(ShortcutsDialogTest, APressInTheKeyFieldBindsTheCommandThatIsChosen)
{
    choose("Hide");
    QTest::mouseClick(keyField(), Qt::LeftButton);
    QTest::keyClick(keyField(), Qt::Key_F21, Qt::ControlModifier);

    EXPECT_EQ(bindings().getKey("hide"), (KeyBinding{Qt::Key_F21, Control}));
    EXPECT_EQ(capsOf("Hide"), "Ctrl|F21");
    EXPECT_EQ(keyField()->text(), QStringLiteral("Ctrl+F21"));
    EXPECT_EQ(m_window.getAction("hide")->text(), QStringLiteral("Hide\tCtrl+F21"));
    EXPECT_EQ(m_window.getAction("hide")->toolTip(), QStringLiteral("Hide the selected parts (Ctrl+F21)"));
    // The line is still chosen, and the tabulator leaves the field again.
    EXPECT_EQ(list()->currentItem(), item("Hide"));
    EXPECT_TRUE(list()->hasFocus());
}

TEST_F(ShortcutsDialogTest, EscapeInTheKeyFieldIsAKeyAndInTheListClosesTheDialog)
{
    choose("Hide");
    keyField()->setFocus();
    QTest::keyClick(keyField(), Qt::Key_Escape);
    EXPECT_EQ(bindings().getKey("hide"), (KeyBinding{Qt::Key_Escape, 0}));
    EXPECT_TRUE(m_dialog->isVisible());
    EXPECT_EQ(conflict(), "Fires in place of 'Leave the tool, or clear the selection'");

    QTest::keyClick(list(), Qt::Key_Escape);
    EXPECT_FALSE(m_dialog->isVisible());
}

TEST_F(ShortcutsDialogTest, AKeyCanBeClearedAndRestored)
{
    choose("Hide");
    EXPECT_FALSE(child<QPushButton>("restore")->isEnabled());
    EXPECT_FALSE(child<QPushButton>("restoreAll")->isEnabled());

    click("clear");
    EXPECT_TRUE(bindings().getKey("hide").isNone());
    EXPECT_EQ(capsOf("Hide"), "");
    EXPECT_FALSE(child<QPushButton>("clear")->isEnabled());

    click("restore");
    EXPECT_EQ(bindings().getKey("hide"), (KeyBinding{Qt::Key_H, 0}));
    EXPECT_EQ(capsOf("Hide"), "H");

    click("clear");
    choose("Isolate");
    click("clear");
    click("restoreAll");
    EXPECT_TRUE(bindings().getChangedKeys().empty());
    EXPECT_EQ(capsOf("Isolate"), "I");
}

TEST_F(ShortcutsDialogTest, AKeyThatIsInUseIsMarkedOnBothAndCanBeTakenFromTheOther)
{
    choose("Isolate");
    keyField()->setFocus();
    QTest::keyClick(keyField(), Qt::Key_H, Qt::ShiftModifier);

    EXPECT_EQ(conflict(), "Also fires 'Hide'");
    EXPECT_EQ(item("Isolate")->toolTip(2), QStringLiteral("Also fires 'Hide'"));
    EXPECT_FALSE(item("Isolate")->icon(2).isNull());
    EXPECT_EQ(item("Hide")->toolTip(2), QStringLiteral("Also fires 'Isolate'"));
    EXPECT_TRUE(item("Undo")->icon(2).isNull());
    EXPECT_EQ(child<QPushButton>("take")->text(), QStringLiteral("Take it from 'Hide'"));

    click("take");
    EXPECT_TRUE(bindings().getKey("hide").isNone());
    EXPECT_EQ(conflict(), "");
    EXPECT_TRUE(item("Isolate")->icon(2).isNull());
    EXPECT_FALSE(child<QPushButton>("take")->isVisible());
}

TEST_F(ShortcutsDialogTest, AKeyOfTheWindowComesBeforeACommand)
{
    choose("Hide");
    keyField()->setFocus();
    QTest::keyClick(keyField(), Qt::Key_O, Qt::ControlModifier);

    // And 'Selection over everything', whose O fires whatever is held.
    EXPECT_EQ(conflict(), "Also fires 'Selection over everything'\n'Open' fires in its place");
    EXPECT_EQ(item("Open")->toolTip(2), QStringLiteral("Fires in place of 'Hide'"));
}

TEST_F(ShortcutsDialogTest, WhatIsNoCommandCannotBeChanged)
{
    for (const char* name : {"Turn the view", "Open", "Leave the tool, or clear the selection"}) {
        choose(name);
        EXPECT_FALSE(keyField()->isEnabled()) << name;
        EXPECT_FALSE(child<QPushButton>("clear")->isEnabled()) << name;
        EXPECT_FALSE(child<QPushButton>("restore")->isEnabled()) << name;
    }
}

TEST_F(ShortcutsDialogTest, TheSearchFindsNamesDescriptionsAndKeys)
{
    QTest::keyClicks(child<QLineEdit>("searchText"), "isolat");
    EXPECT_THAT(shown(), ElementsAre("Interaction:", "Edit:", "Isolate"));

    child<QLineEdit>("searchText")->clear();
    QTest::keyClicks(child<QLineEdit>("searchText"), "HIDDEN PARTS");
    EXPECT_THAT(shown(), ElementsAre("Interaction:", "Edit:", "Show all"));

    child<QLineEdit>("searchText")->clear();
    QTest::keyClicks(child<QLineEdit>("searchText"), "f11");
    EXPECT_THAT(shown(), ElementsAre("Interaction:", "Window:", "Presenter mode"));

    QTest::keyClicks(child<QLineEdit>("searchText"), "xyz");
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(ShortcutsDialogTest, TheSearchByKeyFindsWhatThePressFires)
{
    // One of a window: fires without modifiers only.
    koShortcut::addKey("Plug-in", Qt::Key_O, 0, "Overview");
    QCoreApplication::processEvents();
    const std::size_t all = shown().size();
    click("searchByKey");
    EXPECT_EQ(shown().size(), all);

    QTest::keyClick(child<viewer::KeyField>("searchKey"), Qt::Key_O, Qt::ControlModifier);
    EXPECT_THAT(shown(), ElementsAre("Interaction:", "View:", "Selection over everything", "File:", "Open"));

    QTest::keyClick(child<viewer::KeyField>("searchKey"), Qt::Key_O);
    EXPECT_THAT(shown(), ElementsAre("Interaction:", "View:", "Selection over everything", "Plug-in:", "Overview"));
    koShortcut::subKey("Plug-in", Qt::Key_O, 0);
    QCoreApplication::processEvents();

    click("searchByKey");
    EXPECT_EQ(shown().size(), all - 2);
    EXPECT_TRUE(child<QLineEdit>("searchText")->hasFocus());
}

TEST_F(ShortcutsDialogTest, TheListFollowsTheRegistryAndKeepsTheSearchAndTheLine)
{
    choose("Isolate");
    QTest::keyClicks(child<QLineEdit>("searchText"), "isolat");

    koShortcut::addKey("Plug-in", Qt::Key_F23, 0, "Isolate like a plug-in");
    QCoreApplication::processEvents();

    EXPECT_THAT(shown(), ElementsAre("Interaction:", "Edit:", "Isolate", "Plug-in:", "Isolate like a plug-in"));
    EXPECT_EQ(list()->currentItem(), item("Isolate"));
    koShortcut::subKey("Plug-in", Qt::Key_F23, 0);
    QCoreApplication::processEvents();
    EXPECT_THAT(shown(), Not(Contains("Plug-in:")));
}

TEST_F(ShortcutsDialogTest, AChangeEndsTheKeyThatIsDown)
{
    CallLog log;
    RecordingContext context(log, "context");
    m_session.getInteractionManager().addContext(&context);
    choose("Dark background");
    QTest::keyPress(&m_window.getViewport(), Qt::Key_D);
    log.clear();

    click("clear");

    EXPECT_THAT(log.take(),
                ElementsAre("context.triggerEvent(view:dark, stop)", "context.triggerEvent(view:dark, trigger)"));
    m_session.getInteractionManager().removeContext(&context);
}

} // namespace

} // namespace quon::testing
