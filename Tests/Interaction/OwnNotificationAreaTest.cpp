// SPDX-License-Identifier: MIT
#include <Interaction/AbstractInteractionContext.h>
#include <Interaction/AbstractInteractionTool.h>

#include <Notification/NotificationManager.h>
#include <Notification/TextNotification.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A notification area of our own in place of the host's, as a host with services of its own brings one: it need not
// ignore null as the host's does.

namespace {

std::vector<std::string> removed;

} // namespace

void quon::notification::NotificationManager::removeNotification(Notification* notification)
{
    removed.push_back(notification != nullptr ? notification->getName() : "null");
}

namespace {

using quon::interaction::AbstractInteractionContext;
using quon::interaction::AbstractInteractionTool;

class Context : public AbstractInteractionContext {
public:
    Context()
        : AbstractInteractionContext(Tool)
    {}
};

class Tool : public AbstractInteractionTool {};

class OwnNotificationAreaTest : public ::testing::Test {
protected:
    OwnNotificationAreaTest() { removed.clear(); }
};

TEST_F(OwnNotificationAreaTest, AContextRemovesOnlyWhatItShows)
{
    {
        Context context;
        context.contextAdded(nullptr);
        context.contextRaised(nullptr);
        context.disabled(nullptr);
        context.enabled(nullptr);
        context.setDescription("");
        context.contextLowered(nullptr);
        context.contextRemoved(nullptr);
    }
    EXPECT_THAT(removed, IsEmpty());

    {
        Context context;
        context.setDescription("shown");
        context.contextAdded(nullptr);
        context.contextRaised(nullptr);
        EXPECT_THAT(removed, IsEmpty());
    }
    EXPECT_THAT(removed, ElementsAre("context"));
}

TEST_F(OwnNotificationAreaTest, AToolRemovesOnlyWhatItShows)
{
    {
        Tool tool;
        tool.activateTool(nullptr);
        tool.setDescription("");
        tool.deactivateTool(nullptr);
        tool.deactivateTool(nullptr);
    }
    EXPECT_THAT(removed, IsEmpty());

    {
        Tool tool;
        tool.setDescription("shown");
        tool.activateTool(nullptr);
        EXPECT_THAT(removed, IsEmpty());
    }
    EXPECT_THAT(removed, ElementsAre("tool"));
}

} // namespace
