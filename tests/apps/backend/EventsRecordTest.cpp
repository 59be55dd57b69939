#include "kovalin-backend/EventsRecord.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <limits>
#include <thread>
#include <vector>

namespace kovalin::test {
namespace {

using analytics::Event;
using analytics::EventBatch;
using backend::EventsRecord;

/// `count` events of `size` bytes whose ids are numbers from `first` on.
EventBatch batchOf(qsizetype first, qsizetype count, qsizetype size = 1)
{
    EventBatch batch{.id = QStringLiteral("batch %1").arg(first)};
    for (qsizetype i = 0; i < count; ++i) {
        batch.events.append(Event{.id = QString::number(first + i), .size = size});
    }
    return batch;
}

TEST(EventsRecord, TellsWhichEventsAreNew)
{
    EventsRecord record;
    EXPECT_EQ(record.take(batchOf(1, 2)), (QList{true, true}));
    EXPECT_EQ(record.take(batchOf(2, 2)), (QList{false, true}));
    EXPECT_EQ(record.take(batchOf(4, 0)), QList<bool>());
    EXPECT_EQ(record.taken().batches, 3);
}

TEST(EventsRecord, KeepsTheLatestEventsAndCountsAll)
{
    EventsRecord record;
    record.take(batchOf(0, 7));
    record.take(batchOf(7, EventsRecord::kMostKept));
    const auto taken = record.taken();
    EXPECT_EQ(taken.received, EventsRecord::kMostKept + 7);
    ASSERT_EQ(taken.events.size(), EventsRecord::kMostKept);
    EXPECT_EQ(taken.events.front().id, QStringLiteral("7"));
    EXPECT_EQ(record.take(batchOf(0, 1)), QList{false}); // known, though it isn't kept
}

TEST(EventsRecord, KeepsNoMoreBytesThanItMay)
{
    EventsRecord record;
    record.take(batchOf(0, 3, EventsRecord::kMostBytesKept / 2));
    EXPECT_EQ(record.taken().events.size(), 2);
    record.take(batchOf(3, 1, 1));
    EXPECT_EQ(record.taken().events.size(), 2);
    EXPECT_EQ(record.taken().events.front().id, QStringLiteral("2"));
    record.take(batchOf(4, 1, EventsRecord::kMostBytesKept + 1));
    EXPECT_TRUE(record.taken().events.isEmpty());
    EXPECT_EQ(record.taken().received, 5);
}

TEST(EventsRecord, KnowsTheLatestIdsAlone)
{
    EventsRecord record;
    constexpr auto most = static_cast<qsizetype>(EventsRecord::kMostIdsKept);
    record.take(batchOf(0, most));
    EXPECT_EQ(record.take(batchOf(0, 1)), QList{false});
    record.take(batchOf(most, 1));
    EXPECT_EQ(record.take(batchOf(1, 1)), QList{false});
    EXPECT_EQ(record.take(batchOf(0, 1)), QList{true});
}

TEST(EventsRecord, CountsWhatABatchSaysIsDroppedOnce)
{
    EventsRecord record;
    EventBatch batch = batchOf(0, 1);
    batch.dropped = 5;
    record.take(batch);
    record.take(batch);
    EXPECT_EQ(record.taken().dropped, 5U);
    batch.id = QStringLiteral("other");
    batch.dropped = std::numeric_limits<quint64>::max();
    record.take(batch);
    EXPECT_EQ(record.taken().dropped, std::numeric_limits<quint64>::max());
}

TEST(EventsRecord, TakesEachEventOnceFromManyThreads)
{
    EventsRecord record;
    constexpr int threadCount = 8;
    constexpr int eventCount = 500;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&record] {
            for (int event = 0; event < eventCount; ++event) {
                record.take(batchOf(event, 1));
                static_cast<void>(record.taken());
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(record.taken().batches, threadCount * eventCount);
    EXPECT_EQ(record.taken().received, eventCount);
    EXPECT_EQ(record.taken().repeats, (threadCount - 1) * eventCount);
    EXPECT_EQ(record.taken().events.size(), eventCount);
}

} // namespace
} // namespace kovalin::test
