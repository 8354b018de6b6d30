// SPDX-License-Identifier: MIT
#include "Viewer/Window/LoadProgress.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <QtTest>

#include <gtest/gtest.h>

namespace quon::testing {

namespace {

using viewer::LoadProgress;

class LoadProgressTest : public ::testing::Test {
protected:
    LoadProgressTest()
        : m_progress(new LoadProgress(&m_window))
        , m_bar(m_progress->findChild<QProgressBar*>())
    {
        (new QVBoxLayout(&m_window))->addWidget(m_progress);
        m_window.show();
    }

    QWidget m_window;
    LoadProgress* m_progress;
    QProgressBar* m_bar;
};

TEST_F(LoadProgressTest, ItSaysWhatIsBeingDoneAndHowMuchOfItIs)
{
    EXPECT_FALSE(m_progress->isVisible());

    m_progress->showProgress(QStringLiteral("Reading engine.glb"), 0.25);

    EXPECT_TRUE(m_progress->isVisible());
    EXPECT_EQ(m_progress->findChild<QLabel*>()->text(), QStringLiteral("Reading engine.glb"));
    EXPECT_EQ(m_bar->value() * 4, m_bar->maximum());
    EXPECT_GT(m_bar->maximum(), 0);
}

TEST_F(LoadProgressTest, WhereNobodyKnowsTheBarIsBusy)
{
    m_progress->showProgress(QStringLiteral("Reading engine.glb"), -1);
    EXPECT_EQ(m_bar->maximum(), 0);

    m_progress->showProgress(QStringLiteral("Preparing engine.glb"), 1);
    EXPECT_GT(m_bar->maximum(), 0);
    EXPECT_EQ(m_bar->value(), m_bar->maximum());
}

TEST_F(LoadProgressTest, ALongNameDoesNotWidenTheWindow)
{
    m_progress->showProgress(QStringLiteral("Reading a.obj"), 0);
    const int width = m_progress->minimumSizeHint().width();

    m_progress->showProgress(QString(500, QLatin1Char('x')), 0);

    EXPECT_EQ(m_progress->minimumSizeHint().width(), width);
}

TEST_F(LoadProgressTest, TheButtonAsksToCancel)
{
    QSignalSpy cancelled(m_progress, &LoadProgress::cancelRequested);
    m_progress->showProgress(QStringLiteral("Reading engine.glb"), 0);

    QTest::mouseClick(m_progress->findChild<QPushButton*>(), Qt::LeftButton);

    EXPECT_EQ(cancelled.count(), 1);
}

} // namespace

} // namespace quon::testing
