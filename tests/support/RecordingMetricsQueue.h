#pragma once

#include "kits/core/QXSDKOperationalMetricsQueue.h"

#include <QtCore/QString>

#include <mutex>
#include <utility>
#include <vector>

namespace kovalin::test {

/// Keeps what it is given, in order. Any thread.
class RecordingMetricsQueue final : public QXSDKOperationalMetricsQueue {
public:
    using Count = std::pair<QString, qint64>;
    using Latency = std::pair<QString, double>;

    void addCount(qint64 count, const QString& name) override
    {
        const std::scoped_lock lock(_mutex);
        _counts.emplace_back(name, count);
    }
    void addLatencyFromTime(double startTime, const QString& name) override
    {
        const std::scoped_lock lock(_mutex);
        _latencies.emplace_back(name, startTime);
    }

    [[nodiscard]] std::vector<Count> counts() const
    {
        const std::scoped_lock lock(_mutex);
        return _counts;
    }
    [[nodiscard]] std::vector<Latency> latencies() const
    {
        const std::scoped_lock lock(_mutex);
        return _latencies;
    }

private:
    mutable std::mutex _mutex;
    std::vector<Count> _counts;
    std::vector<Latency> _latencies;
};

/// The process's metrics queue is a recording one for as long as this lives, and none after it.
class InstalledMetricsQueue final {
public:
    InstalledMetricsQueue() { QXSDKOperationalMetricsQueue::setSharedInstance(_queue); }
    ~InstalledMetricsQueue() { QXSDKOperationalMetricsQueue::setSharedInstance(nullptr); }
    InstalledMetricsQueue(const InstalledMetricsQueue&) = delete;
    InstalledMetricsQueue& operator=(const InstalledMetricsQueue&) = delete;

    [[nodiscard]] const RecordingMetricsQueue* operator->() const { return _queue.get(); }

private:
    std::shared_ptr<RecordingMetricsQueue> _queue = std::make_shared<RecordingMetricsQueue>();
};

} // namespace kovalin::test
