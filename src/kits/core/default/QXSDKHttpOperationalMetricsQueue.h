#pragma once

#include "QXSDKKovalinKit/Export.h"
#include "kits/core/QXSDKOperationalMetricsQueue.h"

#include <QtCore/QString>
#include <QtCore/QtGlobal>

#include <memory>

namespace kovalin::kits {
class Outbox;
} // namespace kovalin::kits

/// Where an HTTP metrics queue keeps what it hasn't brought away yet. A value.
struct QXSDKHttpOperationalMetricsOptions {
    /// The folder of its file "qxsdk-operational-metrics.sqlite", made when it is needed; empty for the caches directory.
    QString folder = {};
};

/// The metrics queue that comes with the kit. It posts metrics to "/metrics" below the `apiBaseUrl` of the client setup, in
/// batches:
///
///     {"client_id": …, "batch_id": "<uuid>", "dropped": n, "entries": [
///         {"id": "<uuid>", "type": "count", "name": …, "value": n, "time": milliseconds since 1970},
///         {"id": "<uuid>", "type": "latency", "name": …, "milliseconds": x, "time": milliseconds since 1970}]}
///
/// "time" is when the metric was added, "dropped" how many were lost since the last batch that was taken.
///
/// - A batch leaves with 100 entries or 64 KiB, or 30 seconds after its first entry. Any status of 2xx takes it; 4xx but 408
///   and 429 gives it up, which counts its entries as dropped. Anything else, and having no client setup, is tried again: after
///   2.5 to 5 seconds, doubled with each failure up to 15 minutes, and not before the server's "Retry-After", of which up to an
///   hour is granted.
/// - A metric is on disk half a second after it was added, and from then on survives the death of the process. One that may
///   have arrived is posted again with the same id where that isn't certain.
/// - It keeps 1 MiB, 5000 metrics and those of 7 days at the most, and drops the oldest beyond that. A file that is damaged is
///   begun anew; without a file it works from memory.
///
/// Any thread; adding takes a few microseconds. Lifetime: what hasn't been posted when it is destroyed, or when the application
/// object dies, stays on disk for the next one.
class QXSDKKOVALINKIT_EXPORT QXSDKHttpOperationalMetricsQueue final : public QXSDKOperationalMetricsQueue {
public:
    explicit QXSDKHttpOperationalMetricsQueue(const QXSDKHttpOperationalMetricsOptions& options = {});
    ~QXSDKHttpOperationalMetricsQueue() override;
    Q_DISABLE_COPY_MOVE(QXSDKHttpOperationalMetricsQueue)

    void addCount(qint64 count, const QString& name) override;

    /// A latency that is negative, since the clock was set, or no number is dropped with a line in the log.
    void addLatencyFromTime(double startTime, const QString& name) override;

    /// Forgets all metrics that were added before, on disk too: for somebody who doesn't want to be measured any more. What is
    /// being posted may arrive, but isn't posted again.
    void erase();

private:
    const std::unique_ptr<kovalin::kits::Outbox> _outbox;
};
