#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include "support/ManualClock.h"
#include "support/QtPrinting.h"

#include <QtCore/QUuid>

#include <gtest/gtest.h>

using namespace kovalin::test;
using namespace std::chrono_literals;

namespace {

class Observer final : public QXSDKKovalinStickerPickerSessionManagerObserver {
public:
    explicit Observer(const QXSDKKovalinStickerPickerSessionManager& manager)
        : _manager(manager)
    {
    }
    void sessionDidStart() override { ++starts; }
    void sessionDidEnd() override
    {
        ++ends;
        timeAtEnd = _manager.sessionTime();
    }
    int starts = 0;
    int ends = 0;
    qint64 timeAtEnd = -1;

private:
    const QXSDKKovalinStickerPickerSessionManager& _manager;
};

class QXSDKKovalinStickerPickerSessionManagerTest : public testing::Test {
protected:
    QXSDKKovalinStickerPickerSessionManagerTest() { manager.registerWeakObserver(observer); }

    void span(std::chrono::milliseconds length)
    {
        manager.didBecomeActive();
        clock.advance(length);
        manager.willResignActive();
    }

    ManualClock clock{1'600'000'000'000ms};
    QXSDKKovalinStickerPickerSessionManager manager;
    std::shared_ptr<Observer> observer = std::make_shared<Observer>(manager);
};

TEST_F(QXSDKKovalinStickerPickerSessionManagerTest, HasNoIdAndCountsFrom1970BeforeItStarts)
{
    EXPECT_FALSE(manager.sessionId());
    EXPECT_FALSE(manager.isActive());
    EXPECT_EQ(manager.sessionTime(), 1'600'000'000'000);
}

TEST_F(QXSDKKovalinStickerPickerSessionManagerTest, StartsUnderARandomId)
{
    manager.didBecomeActive();
    EXPECT_TRUE(manager.isActive());
    ASSERT_TRUE(manager.sessionId());
    const QUuid id(*manager.sessionId());
    EXPECT_EQ(id.version(), QUuid::Random);
    EXPECT_EQ(manager.sessionId()->size(), 36);
    EXPECT_EQ(observer->starts, 1);
    clock.advance(5s);
    EXPECT_EQ(manager.sessionTime(), 5000);
}

TEST_F(QXSDKKovalinStickerPickerSessionManagerTest, KeepsTheIdAfterTheEndAndTellsTheFinalTime)
{
    span(7s);
    EXPECT_FALSE(manager.isActive());
    EXPECT_TRUE(manager.sessionId());
    EXPECT_EQ(observer->ends, 1);
    EXPECT_EQ(observer->timeAtEnd, 7000);
    clock.advance(1h);
    EXPECT_EQ(manager.sessionTime(), 7000);
}

TEST_F(QXSDKKovalinStickerPickerSessionManagerTest, ResumesWithinFifteenSeconds)
{
    span(3s);
    const auto id = manager.sessionId();
    clock.advance(14'999ms);
    manager.didBecomeActive();
    EXPECT_EQ(manager.sessionId(), id);
    EXPECT_EQ(observer->starts, 2);
    clock.advance(4s);
    EXPECT_EQ(manager.sessionTime(), 7000) << "both spans, without the gap";
}

TEST_F(QXSDKKovalinStickerPickerSessionManagerTest, BeginsAnewAfterFifteenSeconds)
{
    span(3s);
    const auto id = manager.sessionId();
    clock.advance(15s);
    manager.didBecomeActive();
    EXPECT_NE(manager.sessionId(), id);
    clock.advance(4s);
    EXPECT_EQ(manager.sessionTime(), 4000);
}

TEST_F(QXSDKKovalinStickerPickerSessionManagerTest, SumsUpThreeSpans)
{
    span(1s);
    const auto id = manager.sessionId();
    clock.advance(10s);
    span(2s);
    clock.advance(10s);
    span(4s);
    EXPECT_EQ(manager.sessionId(), id);
    EXPECT_EQ(manager.sessionTime(), 7000);
}

TEST_F(QXSDKKovalinStickerPickerSessionManagerTest, DropsEarlierSpansWithTheirSession)
{
    span(1s);
    clock.advance(1s);
    span(2s);
    clock.advance(20s);
    span(4s);
    EXPECT_EQ(manager.sessionTime(), 4000);
}

TEST_F(QXSDKKovalinStickerPickerSessionManagerTest, AddsNothingForAnEmptySpan)
{
    span(0ms);
    clock.advance(1s);
    span(2s);
    EXPECT_EQ(manager.sessionTime(), 2000);
}

TEST_F(QXSDKKovalinStickerPickerSessionManagerTest, ResumesWhereTheClockWasSetBack)
{
    span(3s);
    const auto id = manager.sessionId();
    clock.set(1'500'000'000'000ms);
    manager.didBecomeActive();
    EXPECT_EQ(manager.sessionId(), id);
}

TEST_F(QXSDKKovalinStickerPickerSessionManagerTest, IgnoresCallsThatDontMatch)
{
    manager.willResignActive();
    EXPECT_EQ(observer->ends, 0);
    manager.didBecomeActive();
    const auto id = manager.sessionId();
    clock.advance(1s);
    manager.didBecomeActive();
    EXPECT_EQ(observer->starts, 1);
    EXPECT_EQ(manager.sessionId(), id);
    EXPECT_EQ(manager.sessionTime(), 1000);
    manager.willResignActive();
    manager.willResignActive();
    EXPECT_EQ(observer->ends, 1);
}

TEST_F(QXSDKKovalinStickerPickerSessionManagerTest, HoldsObserversWeaklyAndLetsThemLeave)
{
    const auto leaving = std::make_shared<Observer>(manager);
    manager.registerWeakObserver(leaving);
    manager.deregisterWeakObserver(leaving);
    observer.reset();
    manager.didBecomeActive();
    EXPECT_EQ(leaving->starts, 0);
}

} // namespace
