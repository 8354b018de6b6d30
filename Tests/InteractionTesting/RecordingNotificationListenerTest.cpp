// SPDX-License-Identifier: MIT
#include <InteractionTesting/RecordingNotificationListener.h>

#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>

#include <InteractionTesting/CallLog.h>
#include <InteractionTesting/CallMatchers.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quon::testing {

namespace {

using notification::NotificationManager;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(RecordingNotificationListenerTest, WritesWhatHappensInTheArea)
{
    CallLog log;
    const RecordingNotificationListener listener(log);

    auto* hint = NotificationManager::getInstance()->createTextNotification("hint", "Click a part");
    hint->setText("Click another one");
    EXPECT_THAT(RecordingNotificationListener::getShown(), ElementsAre("hint: Click another one"));
    NotificationManager::getInstance()->removeNotification(hint);

    EXPECT_THAT(log, Calls("notifications.added(hint, Click a part)", "notifications.changed(hint, Click another one)",
                           "notifications.removed(hint, Click another one)"));
    EXPECT_THAT(RecordingNotificationListener::getShown(), IsEmpty());
}

TEST(RecordingNotificationListenerTest, ClearsTheAreaAtItsEndAndListensNoMore)
{
    CallLog log;
    {
        const RecordingNotificationListener listener(log);
        NotificationManager::getInstance()->createTextNotification("first", "one");
        NotificationManager::getInstance()->createTextNotification("second", "two");
        log.clear();
    }

    EXPECT_THAT(RecordingNotificationListener::getShown(), IsEmpty());
    EXPECT_THAT(log, NoCalls());
}

TEST(RecordingNotificationListenerTest, HookRunsAfterTheEntryWasWritten)
{
    CallLog log;
    RecordingNotificationListener listener(log);
    std::vector<std::string> seen;
    listener.setHook([&](const std::string& operation) {
        seen.push_back(operation + " behind " + log.calls().back());
        listener.setHook(nullptr);
    });

    auto* hint = NotificationManager::getInstance()->createTextNotification("hint", "one");
    hint->setText("two");

    EXPECT_THAT(seen, ElementsAre("added behind notifications.added(hint, one)"));
}

} // namespace

} // namespace quon::testing
