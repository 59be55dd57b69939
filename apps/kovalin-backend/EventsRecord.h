#pragma once

#include "events/EventBatch.h"
#include "kovalin-backend/RecentIds.h"

#include <QtCore/QJsonObject>
#include <QtCore/QList>

#include <cstddef>
#include <mutex>

namespace kovalin::backend {

/// The analytics events that were taken. A value.
struct TakenEvents {
    qint64 batches = 0;  // requests, those with repeats alone too
    qint64 received = 0; // events, each counted once
    qint64 repeats = 0;  // events that came again
    quint64 dropped = 0; // what the clients told that they lost, each batch counted once

    /// The latest of those received, in order.
    QList<analytics::Event> events = {};

    /// {"batches":n,"received":n,"repeats":n,"dropped":n,"events":[…]}
    [[nodiscard]] QJsonObject toJson() const;
};

/// Takes analytics events, each once. Any thread.
class EventsRecord final {
public:
    /// So many of the latest events are kept, and so many bytes as they were on the wire: a server may run for weeks.
    static constexpr qsizetype kMostKept = 10'000;
    static constexpr qsizetype kMostBytesKept = qsizetype(8) * 1024 * 1024;

    /// So many of the latest events and batches are known again when they are repeated, which is soon if at all.
    static constexpr std::size_t kMostIdsKept = 100'000;

    /// Takes a batch; events that came before are dropped and counted as repeats. Gives for each event, in order,
    /// whether it was new.
    QList<bool> take(const analytics::EventBatch& batch);

    [[nodiscard]] TakenEvents taken() const;

private:
    mutable std::mutex _mutex;
    TakenEvents _taken;                // guarded by _mutex
    qsizetype _bytes = 0;              // guarded by _mutex; of the events that are kept
    RecentIds _eventIds{kMostIdsKept}; // guarded by _mutex
    RecentIds _batchIds{kMostIdsKept}; // guarded by _mutex
};

} // namespace kovalin::backend
