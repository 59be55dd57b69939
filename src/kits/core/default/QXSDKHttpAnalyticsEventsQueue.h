#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "kits/core/QXSDKAnalyticsEventsQueue.h"

#include <QtCore/QString>
#include <QtCore/QtGlobal>

#include <memory>

namespace kovalin::kits {
class AnalyticsOutbox;
} // namespace kovalin::kits

/// Where an HTTP analytics queue keeps what it hasn't brought away yet. A value.
struct QXSDKHttpAnalyticsEventsOptions {
    /// The folder of its file "qxsdk-analytics-events.sqlite", made when it is needed; empty for the caches directory.
    QString folder = {};
};

/// The analytics queue that comes with the kit. It posts events to "/events" below the `apiBaseUrl` of the client setup, in
/// batches, as "application/x-protobuf":
///
///     message EventBatch {
///       string batch_id = 1;             // a UUID
///       uint64 dropped = 2;              // how many were lost since the last batch that was taken
///       repeated ServerEvent events = 3; // in the order in which they were added
///     }
///     message ServerEvent {
///       string event_id = 1;   // a UUID
///       int64 time_millis = 2; // when it was added, since 1970
///       ServerEventData data = 3;
///     }
///
/// Who sends it says each event itself, in the "client_id" of what all kits' events have in common.
///
/// - A batch leaves with 100 events or 64 KiB, or 30 seconds after its first event. Any status of 2xx takes it; 4xx but 408
///   and 429 gives it up, which counts its events as dropped. Anything else, and having no client setup, is tried again: after
///   2.5 to 5 seconds, doubled with each failure up to 15 minutes, and not before the server's "Retry-After", of which up to an
///   hour is granted.
/// - An event is on disk half a second after it was added, and from then on survives the death of the process. One that may
///   have arrived is posted again with the same id where that isn't certain.
/// - It keeps 2 MiB, 5000 events and those of 7 days at the most, and drops the oldest beyond that. A file that is damaged is
///   begun anew; without a file it works from memory.
/// - While `isAnalyticsEnabled` of the client setup is false it takes nothing, keeps nothing and posts nothing. What it had is
///   erased, on disk too, when that begins, and when the queue is made: also for an opt-out that was taken back before.
///
/// Any thread; adding is an append, and a wake-up where the queue sleeps, however much is kept. Lifetime: what hasn't been posted when it is destroyed, or
/// when the application object dies, stays on disk for the next one; that waits for no server and for no repetition.
class QXSDKKOVALINKIT_EXPORT QXSDKHttpAnalyticsEventsQueue final : public QXSDKAnalyticsEventsQueue {
public:
    explicit QXSDKHttpAnalyticsEventsQueue(const QXSDKHttpAnalyticsEventsOptions& options = {});
    ~QXSDKHttpAnalyticsEventsQueue() override;
    Q_DISABLE_COPY_MOVE(QXSDKHttpAnalyticsEventsQueue)

    void addEvent(const QXSDKServerEvent& event) override;

private:
    const std::shared_ptr<kovalin::kits::AnalyticsOutbox> _outbox;
};
