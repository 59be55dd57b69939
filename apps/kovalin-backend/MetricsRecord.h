#pragma once

#include "kovalin-backend/MetricsBatch.h"
#include "kovalin-backend/RecentIds.h"

#include <QtCore/QJsonObject>
#include <QtCore/QList>

#include <cstddef>
#include <mutex>

namespace kovalin::backend {

/// The metrics that were taken. A value.
struct TakenMetrics {
    qint64 batches = 0; // requests, those with repeats alone too
    qint64 count = 0;   // entries, each counted once
    qint64 repeats = 0; // entries that came again

    /// The latest of them, in order.
    QList<MetricsEntry> entries = {};

    /// {"batches":n,"repeats":n,"count":n,"entries":[…]}
    [[nodiscard]] QJsonObject toJson() const;
};

/// Takes metrics, each entry once. Any thread.
class MetricsRecord final {
public:
    /// So many of the latest entries are kept: a server may run for weeks.
    static constexpr qsizetype kMostKept = 10'000;

    /// So many of the latest entries are known again when they are repeated, which is soon if at all.
    static constexpr std::size_t kMostIdsKept = 100'000;

    /// Takes a batch; what came before is dropped and counted as a repeat. Gives for each entry, in order, whether it
    /// was new.
    QList<bool> take(const QList<MetricsEntry>& batch);

    [[nodiscard]] TakenMetrics taken() const;

private:
    mutable std::mutex _mutex;
    TakenMetrics _taken;          // guarded by _mutex
    RecentIds _ids{kMostIdsKept}; // guarded by _mutex; of the entries
};

} // namespace kovalin::backend
