#pragma once

#include "kovalin-backend/MetricsBatch.h"

#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QSet>
#include <QtCore/QString>

#include <mutex>

namespace kovalin::backend {

/// The metrics that were taken, in order. A value.
struct TakenMetrics {
    qint64 batches = 0; // requests, those with repeats alone too
    qint64 repeats = 0; // entries that came again
    QList<MetricsEntry> entries = {};

    /// {"batches":n,"repeats":n,"count":n,"entries":[…]}
    [[nodiscard]] QJsonObject toJson() const;
};

/// Takes metrics, each entry once. Any thread.
class MetricsRecord final {
public:
    /// Takes a batch; what came before is dropped and counted as a repeat. Gives for each entry, in order, whether it
    /// was new.
    QList<bool> take(const QList<MetricsEntry>& batch);

    [[nodiscard]] TakenMetrics taken() const;

private:
    mutable std::mutex _mutex;
    TakenMetrics _taken; // guarded by _mutex
    QSet<QString> _ids;  // guarded by _mutex; of the entries
};

} // namespace kovalin::backend
