#include "support/RecordingMetricsQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using kovalin::test::RecordingMetricsQueue;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

TEST(QXSDKOperationalMetricsQueue, ForgetsEverythingWhileNoneIsInstalled)
{
    const auto queue = QXSDKOperationalMetricsQueue::sharedInstance();
    ASSERT_NE(queue, nullptr);
    queue->addCount(1, QStringLiteral("name"));
    queue->addLatencyFromTime(1.5, QStringLiteral("name"));
    EXPECT_EQ(QXSDKOperationalMetricsQueue::sharedInstance(), queue);
}

TEST(QXSDKOperationalMetricsQueue, IsTheOneThatAHostInstalled)
{
    const auto first = std::make_shared<RecordingMetricsQueue>();
    const auto second = std::make_shared<RecordingMetricsQueue>();
    QXSDKOperationalMetricsQueue::setSharedInstance(first);
    QXSDKOperationalMetricsQueue::sharedInstance()->addCount(2, QStringLiteral("a"));
    QXSDKOperationalMetricsQueue::setSharedInstance(second);
    QXSDKOperationalMetricsQueue::sharedInstance()->addLatencyFromTime(1.5, QStringLiteral("b"));
    QXSDKOperationalMetricsQueue::setSharedInstance(nullptr);
    QXSDKOperationalMetricsQueue::sharedInstance()->addCount(3, QStringLiteral("c"));
    EXPECT_THAT(first->counts(), ElementsAre(Pair(QStringLiteral("a"), 2)));
    EXPECT_THAT(first->latencies(), IsEmpty());
    EXPECT_THAT(second->counts(), IsEmpty());
    EXPECT_THAT(second->latencies(), ElementsAre(Pair(QStringLiteral("b"), 1.5)));
}

TEST(QXSDKOperationalMetricsQueue, LivesAsLongAsSomebodyUsesIt)
{
    auto queue = std::make_shared<RecordingMetricsQueue>();
    const std::weak_ptr<RecordingMetricsQueue> weak = queue;
    QXSDKOperationalMetricsQueue::setSharedInstance(std::move(queue));
    auto used = QXSDKOperationalMetricsQueue::sharedInstance();
    QXSDKOperationalMetricsQueue::setSharedInstance(nullptr);
    EXPECT_FALSE(weak.expired());
    used.reset();
    EXPECT_TRUE(weak.expired());
}

} // namespace
