// SPDX-License-Identifier: MIT
#include <Notification/NotificationManager.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

using quon::notification::Notification;
using quon::notification::NotificationListener;
using quon::notification::NotificationManager;
using quon::notification::TextNotification;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class TextNotificationTest : public ::testing::Test, public NotificationListener {
protected:
    TextNotificationTest() { m_manager.addListener(this); }

    void notificationChanged(Notification* notification) override
    {
        ASSERT_EQ(notification, m_notification);
        // What the listener reads back is what it is told about.
        m_textsSeen.push_back(m_notification->getText());
    }

    NotificationManager m_manager;
    TextNotification* m_notification = m_manager.createTextNotification("context", "before");
    std::vector<std::string> m_textsSeen;
};

TEST_F(TextNotificationTest, TakesOverANewTextAndReportsIt)
{
    m_notification->setText("after");

    EXPECT_EQ(m_notification->getText(), "after");
    EXPECT_EQ(m_notification->getName(), "context");
    EXPECT_THAT(m_textsSeen, ElementsAre("after"));
}

TEST_F(TextNotificationTest, DoesNotReportTheTextItHasAlready)
{
    m_notification->setText("before");

    EXPECT_THAT(m_textsSeen, IsEmpty());
}

TEST_F(TextNotificationTest, ReportsEachChangeToAndFro)
{
    m_notification->setText("after");
    m_notification->setText("");
    m_notification->setText("before");

    EXPECT_THAT(m_textsSeen, ElementsAre("after", "", "before"));
}

TEST_F(TextNotificationTest, CreationReportsNoChange)
{
    m_manager.createTextNotification("context", "another");

    EXPECT_THAT(m_textsSeen, IsEmpty());
}

TEST_F(TextNotificationTest, TakesItsOwnTextAsArgument)
{
    m_notification->setText(m_notification->getText());

    EXPECT_EQ(m_notification->getText(), "before");
}

TEST_F(TextNotificationTest, IsDestroyedThroughItsBase)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<Notification>);
}

} // namespace
