// SPDX-License-Identifier: MIT
#include "Support/TemporaryFolder.h"

#include "Viewer/Window/RecentFiles.h"
#include "Viewer/Window/RecentFilesMenu.h"

#include <QAction>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RecentFilesMenuTest : public ::testing::Test {
protected:
    RecentFilesMenuTest()
        : m_menu(m_files)
        , m_one(QString::fromStdString(m_folder.write("one.obj", "v 0 0 0\n")))
        , m_two(QString::fromStdString(m_folder.write("two & a half.obj", "v 0 0 0\n")))
    {
        m_files.add(m_one);
        m_files.add(m_two);
        QObject::connect(&m_menu, &viewer::RecentFilesMenu::fileChosen,
                         [this](const QString& file) { m_chosen.push_back(file.toStdString()); });
    }

    std::vector<std::string> texts() const
    {
        std::vector<std::string> all;
        for (const QAction* action : m_menu.actions()) {
            if (!action->isSeparator()) {
                all.push_back(action->text().toStdString());
            }
        }
        return all;
    }

    void click(const int entry)
    {
        m_menu.popup(QPoint(0, 0));
        QTest::mouseClick(&m_menu, Qt::LeftButton, Qt::NoModifier,
                          m_menu.actionGeometry(m_menu.actions().at(entry)).center());
        QCoreApplication::processEvents();
    }

    TemporaryFolder m_folder;
    viewer::RecentFiles m_files;
    viewer::RecentFilesMenu m_menu;
    QString m_one;
    QString m_two;
    std::vector<std::string> m_chosen;
};

TEST_F(RecentFilesMenuTest, ListsTheFilesWithTheNewestFirst)
{
    EXPECT_THAT(texts(), ElementsAre("&1  two && a half.obj", "&2  one.obj", "Clear the list"));
    EXPECT_EQ(m_menu.actions().front()->toolTip(), m_two);
    EXPECT_EQ(m_menu.title(), QStringLiteral("Open &recent"));
}

TEST_F(RecentFilesMenuTest, AClickAsksForTheFile)
{
    click(1);

    EXPECT_THAT(m_chosen, ElementsAre(m_one.toStdString()));
}

TEST_F(RecentFilesMenuTest, AFileThatIsGoneIsMarkedWhenTheMenuOpens)
{
    std::remove(m_one.toStdString().c_str());

    m_menu.popup(QPoint(0, 0));
    EXPECT_THAT(texts(), ElementsAre("&1  two && a half.obj", "&2  one.obj (no longer there)", "Clear the list"));
    m_menu.hide();
    click(1);

    EXPECT_THAT(m_chosen, ElementsAre(m_one.toStdString()));
}

TEST_F(RecentFilesMenuTest, TheListCanBeCleared)
{
    click(3);

    EXPECT_THAT(m_files.getFiles(), IsEmpty());
    EXPECT_THAT(texts(), ElementsAre("No files yet"));
    EXPECT_FALSE(m_menu.actions().front()->isEnabled());
}

} // namespace

} // namespace quon::testing
