#pragma once

#include "platform/dispatch/SerialQueue.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QString>

#include <memory>

/// Collects the library's operational metrics under short names. Counts are summed up and leave at the next flush; latencies
/// leave at once. Both go to the shared QXSDKOperationalMetricsQueue under the library's prefix.
///
/// Any thread. Lifetime: may go while counts are on their way; what was flushed before still leaves.
class QXSDKKovalinOperationalMetricsLogger final {
public:
    /// The one instance of the process, made on first use and never destroyed, with the library's own version.
    [[nodiscard]] static QXSDKKovalinOperationalMetricsLogger& shared();

    /// `bundleVersion` is the version that names are prefixed with: "1.2.3" gives "1_2_3:kovalin:".
    explicit QXSDKKovalinOperationalMetricsLogger(const QString& bundleVersion);
    Q_DISABLE_COPY_MOVE(QXSDKKovalinOperationalMetricsLogger)

    /// Adds to what is counted under the name, for the next flush. Costs one queued append.
    void addCount(qint64 count, const QString& name);

    /// Something took from `startTime`, in seconds since 1970, until now. Passed on, on the caller's thread: it may overtake
    /// counts that were given before.
    void addLatencyFromTime(double startTime, const QString& name);

    /// The same for a share of all calls, drawn by chance: 0 lets none pass and 1 all. In steps of a hundredth.
    void addLatencyFromTime(double startTime, const QString& name, float sampleRate);

    /// Flushes: passes on the sum of each name, if it is positive, and begins anew. Sums that aren't positive are dropped.
    /// Counts that are never flushed are lost with the process.
    void pushToQueue();

private:
    /// The counts not yet flushed, in the order of arrival. Touched on the queue alone.
    using Counters = QHash<QString, QList<qint64>>;

    const QString _prefix;
    const std::shared_ptr<Counters> _counters = std::make_shared<Counters>();
    kovalin::platform::SerialQueue _dispatchQueue;
};
