// SPDX-License-Identifier: MIT
#include <InteractionTesting/CallLog.h>

#include <Notification/NotificationManager.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

using quon::notification::Notification;
using quon::notification::NotificationListener;
using quon::notification::NotificationManager;
using quon::notification::TextNotification;
using quon::testing::CallLog;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

std::string describe(const Notification* notification)
{
    const auto* text = dynamic_cast<const TextNotification*>(notification);
    return notification->getName() + ": " + (text != nullptr ? text->getText() : "?");
}

class RecordingListener : public NotificationListener {
public:
    RecordingListener(CallLog& log, const std::string& name)
        : m_log(log)
        , m_name(name)
    {}

    void notificationAdded(Notification* notification) override
    {
        m_log.call(m_name, "added", describe(notification));
        run(onAdded, notification);
    }

    void notificationChanged(Notification* notification) override
    {
        m_log.call(m_name, "changed", describe(notification));
        run(onChanged, notification);
    }

    void notificationRemoved(Notification* notification) override
    {
        m_log.call(m_name, "removed", describe(notification));
        run(onRemoved, notification);
    }

    using Reaction = std::function<void(Notification*)>;
    Reaction onAdded;
    Reaction onChanged;
    Reaction onRemoved;

private:
    static void run(const Reaction& reaction, Notification* notification)
    {
        if (reaction) {
            reaction(notification);
        }
    }

    CallLog& m_log;
    std::string m_name;
};

class NotificationManagerTest : public ::testing::Test {
protected:
    bool has(const Notification* notification) const
    {
        const auto& all = m_manager.getNotifications();
        return std::find(all.begin(), all.end(), notification) != all.end();
    }

    CallLog m_log;
    NotificationManager m_manager;
    RecordingListener m_first{m_log, "first"};
    RecordingListener m_second{m_log, "second"};
};

TEST_F(NotificationManagerTest, SharesOneInstanceInTheProcess)
{
    NotificationManager* instance = NotificationManager::getInstance();

    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(NotificationManager::getInstance(), instance);
    EXPECT_THAT(instance->getNotifications(), IsEmpty());
}

TEST_F(NotificationManagerTest, CreatesANotificationWithNameAndText)
{
    TextNotification* notification = m_manager.createTextNotification("tool", "Pick a part");

    ASSERT_NE(notification, nullptr);
    EXPECT_EQ(notification->getName(), "tool");
    EXPECT_EQ(notification->getText(), "Pick a part");
}

TEST_F(NotificationManagerTest, ListsNotificationsInOrderOfCreation)
{
    Notification* first = m_manager.createTextNotification("z", "one");
    Notification* second = m_manager.createTextNotification("a", "two");
    Notification* third = m_manager.createTextNotification("m", "three");

    EXPECT_THAT(m_manager.getNotifications(), ElementsAre(first, second, third));
}

TEST_F(NotificationManagerTest, CreatesANotificationOfItsOwnForEqualNameAndText)
{
    Notification* first = m_manager.createTextNotification("tool", "Pick a part");
    Notification* second = m_manager.createTextNotification("tool", "Pick a part");

    EXPECT_NE(first, second);
    EXPECT_THAT(m_manager.getNotifications(), ElementsAre(first, second));
}

TEST_F(NotificationManagerTest, RemovingKeepsTheOrderOfTheRest)
{
    Notification* first = m_manager.createTextNotification("tool", "one");
    Notification* second = m_manager.createTextNotification("tool", "two");
    Notification* third = m_manager.createTextNotification("tool", "three");

    m_manager.removeNotification(second);

    EXPECT_THAT(m_manager.getNotifications(), ElementsAre(first, third));
}

TEST_F(NotificationManagerTest, IgnoresRemovalOfNull)
{
    Notification* notification = m_manager.createTextNotification("tool", "one");
    m_manager.addListener(&m_first);

    m_manager.removeNotification(nullptr);

    EXPECT_THAT(m_manager.getNotifications(), ElementsAre(notification));
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(NotificationManagerTest, IgnoresRemovalOfAnotherManagersNotification)
{
    NotificationManager other;
    Notification* foreign = other.createTextNotification("tool", "foreign");
    m_manager.addListener(&m_first);

    m_manager.removeNotification(foreign);

    EXPECT_THAT(other.getNotifications(), ElementsAre(foreign));
    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(NotificationManagerTest, IgnoresRemovalOfARemovedNotification)
{
    Notification* notification = m_manager.createTextNotification("tool", "one");
    m_manager.removeNotification(notification);
    m_manager.addListener(&m_first);

    m_manager.removeNotification(notification);

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(NotificationManagerTest, TellsListenersInOrderOfAddition)
{
    m_manager.addListener(&m_second);
    m_manager.addListener(&m_first);

    TextNotification* notification = m_manager.createTextNotification("tool", "one");
    notification->setText("two");
    m_manager.removeNotification(notification);

    EXPECT_THAT(m_log.calls(),
                ElementsAre("second.added(tool: one)", "first.added(tool: one)", "second.changed(tool: two)",
                            "first.changed(tool: two)", "second.removed(tool: two)", "first.removed(tool: two)"));
}

TEST_F(NotificationManagerTest, HasANotificationAlreadyWhenItTellsOfItsAddition)
{
    bool there = false;
    m_first.onAdded = [&](Notification* notification) { there = has(notification); };
    m_manager.addListener(&m_first);

    m_manager.createTextNotification("tool", "one");

    EXPECT_TRUE(there);
}

TEST_F(NotificationManagerTest, HasANotificationNoMoreWhenItTellsOfItsRemoval)
{
    bool there = true;
    m_first.onRemoved = [&](Notification* notification) { there = has(notification); };
    m_manager.addListener(&m_first);

    m_manager.removeNotification(m_manager.createTextNotification("tool", "one"));

    EXPECT_FALSE(there);
}

TEST_F(NotificationManagerTest, IgnoresSecondRemovalAndTextsWhileItTellsOfTheRemoval)
{
    m_first.onRemoved = [&](Notification* notification) {
        m_manager.removeNotification(notification);
        static_cast<TextNotification*>(notification)->setText("too late");
    };
    m_manager.addListener(&m_first);
    m_manager.addListener(&m_second);

    m_manager.removeNotification(m_manager.createTextNotification("tool", "one"));

    EXPECT_THAT(m_log.calls(), ElementsAre("first.added(tool: one)", "second.added(tool: one)",
                                           "first.removed(tool: one)", "second.removed(tool: too late)"));
}

TEST_F(NotificationManagerTest, ReturnsNullForANotificationThatAListenerRemovedAtOnce)
{
    m_first.onAdded = [&](Notification* notification) { m_manager.removeNotification(notification); };
    m_manager.addListener(&m_first);

    TextNotification* notification = m_manager.createTextNotification("tool", "one");

    EXPECT_EQ(notification, nullptr);
    EXPECT_THAT(m_manager.getNotifications(), IsEmpty());
}

TEST_F(NotificationManagerTest, TellsNobodyElseOfTheAdditionOfANotificationRemovedAtOnce)
{
    m_first.onAdded = [&](Notification* notification) { m_manager.removeNotification(notification); };
    m_manager.addListener(&m_first);
    m_manager.addListener(&m_second);

    m_manager.createTextNotification("tool", "one");

    EXPECT_THAT(m_log.calls(),
                ElementsAre("first.added(tool: one)", "first.removed(tool: one)", "second.removed(tool: one)"));
}

TEST_F(NotificationManagerTest, SurvivesAListenerThatRemovesTheNotificationThatChanged)
{
    m_first.onChanged = [&](Notification* notification) { m_manager.removeNotification(notification); };
    m_manager.addListener(&m_first);
    m_manager.addListener(&m_second);
    TextNotification* notification = m_manager.createTextNotification("tool", "one");
    m_log.clear();

    notification->setText("two");

    EXPECT_THAT(m_log.calls(),
                ElementsAre("first.changed(tool: two)", "first.removed(tool: two)", "second.removed(tool: two)"));
}

TEST_F(NotificationManagerTest, AListenerMayRemoveItselfWhileItIsTold)
{
    m_first.onAdded = [&](Notification*) { m_manager.removeListener(&m_first); };
    m_manager.addListener(&m_first);
    m_manager.addListener(&m_second);

    m_manager.removeNotification(m_manager.createTextNotification("tool", "one"));

    EXPECT_THAT(m_log.calls(),
                ElementsAre("first.added(tool: one)", "second.added(tool: one)", "second.removed(tool: one)"));
}

TEST_F(NotificationManagerTest, DoesNotTellAListenerThatAnotherOneRemovedMeanwhile)
{
    m_first.onAdded = [&](Notification*) { m_manager.removeListener(&m_second); };
    m_manager.addListener(&m_first);
    m_manager.addListener(&m_second);

    m_manager.createTextNotification("tool", "one");

    EXPECT_THAT(m_log.calls(), ElementsAre("first.added(tool: one)"));
}

TEST_F(NotificationManagerTest, TellsAListenerAddedMeanwhileFromTheNextTimeOn)
{
    m_first.onAdded = [&](Notification*) { m_manager.addListener(&m_second); };
    m_manager.addListener(&m_first);

    m_manager.removeNotification(m_manager.createTextNotification("tool", "one"));

    EXPECT_THAT(m_log.calls(),
                ElementsAre("first.added(tool: one)", "first.removed(tool: one)", "second.removed(tool: one)"));
}

TEST_F(NotificationManagerTest, DestroysWhatIsLeftWithoutTellingListeners)
{
    {
        NotificationManager manager;
        manager.addListener(&m_first);
        manager.createTextNotification("tool", "left");
        m_log.clear();
    }

    EXPECT_THAT(m_log.calls(), IsEmpty());
}

TEST_F(NotificationManagerTest, AListenerNeedsToAnswerOnlyWhatItWantsToKnow)
{
    class IdleListener : public NotificationListener {};
    IdleListener idle;
    m_manager.addListener(&idle);
    m_manager.addListener(&m_first);

    TextNotification* notification = m_manager.createTextNotification("tool", "one");
    notification->setText("two");
    m_manager.removeNotification(notification);

    EXPECT_THAT(m_log.take(),
                ElementsAre("first.added(tool: one)", "first.changed(tool: two)", "first.removed(tool: two)"));
    m_manager.removeListener(&idle);
}

} // namespace
