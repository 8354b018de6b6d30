// SPDX-License-Identifier: MIT
#include "Viewer/Window/StartPage.h"
#include "Viewer/Window/RecentFiles.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quon::testing {

namespace {

using ::testing::ElementsAre;
using viewer::StartPage;

class StartPageTest : public ::testing::Test {
protected:
    StartPageTest()
        : m_page(m_files)
    {
        m_page.resize(600, 500);
        m_page.show();
    }

    // What can be pressed, from top to bottom.
    std::vector<std::string> buttons() const
    {
        std::vector<std::string> texts;
        for (const QPushButton* button : m_page.findChildren<QPushButton*>()) {
            if (button->isVisible()) {
                texts.push_back(button->text().toStdString());
            }
        }
        return texts;
    }

    QPushButton* button(const QString& text) const
    {
        for (QPushButton* button : m_page.findChildren<QPushButton*>()) {
            if (button->text() == text) {
                return button;
            }
        }
        return nullptr;
    }

    viewer::RecentFiles m_files;
    StartPage m_page;
};

TEST_F(StartPageTest, OffersToOpenAndToGenerate)
{
    QSignalSpy open(&m_page, &StartPage::openRequested);
    QSignalSpy assembly(&m_page, &StartPage::assemblyRequested);
    EXPECT_THAT(buttons(), ElementsAre("&Open...", "&Generate an assembly"));
    EXPECT_EQ(button(QStringLiteral("&Open..."))->toolTip(), QStringLiteral("Choose a file (Ctrl+O)"));

    QTest::mouseClick(button(QStringLiteral("&Open...")), Qt::LeftButton);
    EXPECT_EQ(open.count(), 1);
    QTest::mouseClick(button(QStringLiteral("&Generate an assembly")), Qt::LeftButton);
    EXPECT_EQ(assembly.count(), 1);
}

TEST_F(StartPageTest, OffersTheNewestOfTheRecentFiles)
{
    for (int i = 1; i <= 7; ++i) {
        m_files.add(QStringLiteral("/a/model %1 & more.obj").arg(i));
    }
    QSignalSpy chosen(&m_page, &StartPage::fileChosen);

    EXPECT_THAT(buttons(),
                ElementsAre("&Open...", "&Generate an assembly", "model 7 && more.obj", "model 6 && more.obj",
                            "model 5 && more.obj", "model 4 && more.obj", "model 3 && more.obj"));
    QTest::mouseClick(button(QStringLiteral("model 6 && more.obj")), Qt::LeftButton);
    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(chosen.front().front().toString(), QStringLiteral("/a/model 6 & more.obj"));

    m_files.clear();
    EXPECT_THAT(buttons(), ElementsAre("&Open...", "&Generate an assembly"));
}

TEST_F(StartPageTest, EverythingIsReachedAndPressedWithTheKeyboard)
{
    m_files.add(QStringLiteral("/a/model.obj"));
    QCoreApplication::processEvents();
    QSignalSpy open(&m_page, &StartPage::openRequested);
    QSignalSpy assembly(&m_page, &StartPage::assemblyRequested);
    QSignalSpy chosen(&m_page, &StartPage::fileChosen);
    m_page.activateWindow();
    m_page.setFocus();
    const auto press = [&] { QTest::keyClick(m_page.focusWidget(), Qt::Key_Return); };

    press();
    EXPECT_EQ(open.count(), 1);
    QTest::keyClick(m_page.focusWidget(), Qt::Key_Tab);
    press();
    EXPECT_EQ(assembly.count(), 1);
    QTest::keyClick(m_page.focusWidget(), Qt::Key_Tab);
    press();
    EXPECT_EQ(chosen.count(), 1);
}

TEST_F(StartPageTest, AFileThatIsDraggedOverItShows)
{
    const QImage before = m_page.grab().toImage();

    m_page.setDropExpected(true);
    EXPECT_NE(m_page.grab().toImage(), before);
    m_page.setDropExpected(false);
    EXPECT_EQ(m_page.grab().toImage(), before);
}

} // namespace

} // namespace quon::testing
