#include "kits/core/QXSDKAnalyticsEventsQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;

class RecordingQueue final : public QXSDKAnalyticsEventsQueue {
public:
    void addEvent(const QXSDKServerEvent& event) override { events.push_back(event.serverEventData); }

    std::vector<QByteArray> events;
};

TEST(QXSDKAnalyticsEventsQueue, ForgetsEverythingWhileNoneIsInstalled)
{
    const auto queue = QXSDKAnalyticsEventsQueue::sharedInstance();
    ASSERT_NE(queue, nullptr);
    queue->addEvent({.serverEventData = "a"});
    EXPECT_EQ(QXSDKAnalyticsEventsQueue::sharedInstance(), queue);
}

TEST(QXSDKAnalyticsEventsQueue, IsTheOneThatAHostInstalled)
{
    const auto first = std::make_shared<RecordingQueue>();
    const auto second = std::make_shared<RecordingQueue>();
    QXSDKAnalyticsEventsQueue::setSharedInstance(first);
    QXSDKAnalyticsEventsQueue::sharedInstance()->addEvent({.serverEventData = "a"});
    QXSDKAnalyticsEventsQueue::setSharedInstance(second);
    QXSDKAnalyticsEventsQueue::sharedInstance()->addEvent({.serverEventData = "b"});
    QXSDKAnalyticsEventsQueue::setSharedInstance(nullptr);
    QXSDKAnalyticsEventsQueue::sharedInstance()->addEvent({.serverEventData = "c"});
    EXPECT_THAT(first->events, ElementsAre("a"));
    EXPECT_THAT(second->events, ElementsAre("b"));
}

TEST(QXSDKAnalyticsEventsQueue, LivesAsLongAsSomebodyUsesIt)
{
    auto queue = std::make_shared<RecordingQueue>();
    const std::weak_ptr<RecordingQueue> weak = queue;
    QXSDKAnalyticsEventsQueue::setSharedInstance(std::move(queue));
    auto used = QXSDKAnalyticsEventsQueue::sharedInstance();
    QXSDKAnalyticsEventsQueue::setSharedInstance(nullptr);
    EXPECT_FALSE(weak.expired());
    used.reset();
    EXPECT_TRUE(weak.expired());
}

} // namespace
