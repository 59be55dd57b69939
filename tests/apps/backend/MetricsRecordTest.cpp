#include "kovalin-backend/MetricsRecord.h"

#include <gtest/gtest.h>

namespace kovalin::backend {
namespace {

MetricsEntry entryWithId(qsizetype id)
{
    MetricsEntry entry;
    entry.id = QString::number(id);
    return entry;
}

TEST(MetricsRecord, KeepsTheLatestEntriesAndCountsAll)
{
    MetricsRecord record;
    constexpr qsizetype more = 7;
    QList<MetricsEntry> batch;
    for (qsizetype i = 0; i < MetricsRecord::kMostKept + more; ++i) {
        batch.append(entryWithId(i));
    }
    EXPECT_FALSE(record.take(batch).contains(false));
    const TakenMetrics taken = record.taken();
    EXPECT_EQ(taken.count, MetricsRecord::kMostKept + more);
    ASSERT_EQ(taken.entries.size(), MetricsRecord::kMostKept);
    EXPECT_EQ(taken.entries.first().id, QString::number(more));

    EXPECT_EQ(record.take({entryWithId(0)}), QList<bool>{false}) << "known, though not kept";
    EXPECT_EQ(record.taken().repeats, 1);
}

} // namespace
} // namespace kovalin::backend
