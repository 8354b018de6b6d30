// SPDX-License-Identifier: MIT
#include "Viewer/Window/MessageBar.h"

#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtTest>

#include <gtest/gtest.h>

namespace quon::testing {

namespace {

using viewer::MessageBar;

class MessageBarTest : public ::testing::Test {
protected:
    MessageBarTest()
        : m_bar(new MessageBar(&m_window))
    {
        (new QVBoxLayout(&m_window))->addWidget(m_bar);
        m_window.show();
    }

    QToolButton* button(const char* name) const { return m_bar->findChild<QToolButton*>(QLatin1String(name)); }

    QLabel* details() const { return m_bar->findChild<QLabel*>(QStringLiteral("messageLines")); }

    QWidget m_window;
    MessageBar* m_bar;
};

TEST_F(MessageBarTest, ItIsThereAsLongAsThereIsAMessage)
{
    EXPECT_FALSE(m_bar->isVisible());

    m_bar->showMessage(MessageBar::Kind::Error, QStringLiteral("Nothing works."));
    EXPECT_TRUE(m_bar->isVisible());
    EXPECT_EQ(m_bar->getText(), QStringLiteral("Nothing works."));
    EXPECT_FALSE(button("messageDetails")->isVisible());

    QTest::mouseClick(button("messageClose"), Qt::LeftButton);
    EXPECT_FALSE(m_bar->isVisible());
}

TEST_F(MessageBarTest, DetailsAreShownOnRequest)
{
    m_bar->showMessage(MessageBar::Kind::Warning, QStringLiteral("Half of it works."),
                       {QStringLiteral("This does not."), QStringLiteral("Nor does that.")});
    EXPECT_FALSE(details()->isVisible());

    QTest::mouseClick(button("messageDetails"), Qt::LeftButton);
    EXPECT_TRUE(details()->isVisible());
    EXPECT_EQ(details()->text(), QStringLiteral("This does not.\nNor does that."));
    EXPECT_EQ(button("messageDetails")->text(), QStringLiteral("Hide details"));

    m_bar->showMessage(MessageBar::Kind::Note, QStringLiteral("All is well."));
    EXPECT_FALSE(details()->isVisible());
    EXPECT_EQ(button("messageDetails")->text(), QStringLiteral("Show details"));
}

TEST_F(MessageBarTest, ItIsReachedWithTheTabKeyAndClosedWithEscape)
{
    m_bar->showMessage(MessageBar::Kind::Note, QStringLiteral("All is well."));
    button("messageClose")->setFocus(Qt::TabFocusReason);

    QTest::keyClick(button("messageClose"), Qt::Key_Escape);

    EXPECT_FALSE(m_bar->isVisible());
}

TEST_F(MessageBarTest, MarkupIsShownAsItIs)
{
    m_bar->showMessage(MessageBar::Kind::Note, QStringLiteral("<b>bold</b>.obj"));

    for (const QLabel* label : m_bar->findChildren<QLabel*>()) {
        if (!label->text().isEmpty()) {
            EXPECT_EQ(label->textFormat(), Qt::PlainText);
        }
    }
}

} // namespace

} // namespace quon::testing
