#pragma once

#include "kits/core/QXSDKAnalyticsEventsQueue.h"

#include <QtCore/QByteArray>

#include <memory>
#include <mutex>
#include <vector>

namespace kovalin::test {

/// Keeps the events that it is given, in order. Any thread.
class RecordingAnalyticsQueue final : public QXSDKAnalyticsEventsQueue {
public:
    void addEvent(const QXSDKServerEvent& event) override
    {
        const std::scoped_lock lock(_mutex);
        _events.push_back(event.serverEventData);
    }

    /// The "ServerEventData" messages so far.
    [[nodiscard]] std::vector<QByteArray> events() const
    {
        const std::scoped_lock lock(_mutex);
        return _events;
    }

private:
    mutable std::mutex _mutex;
    std::vector<QByteArray> _events;
};

/// The process's analytics queue is a recording one for as long as this lives, and none after it.
class InstalledAnalyticsQueue final {
public:
    InstalledAnalyticsQueue() { QXSDKAnalyticsEventsQueue::setSharedInstance(_queue); }
    ~InstalledAnalyticsQueue() { QXSDKAnalyticsEventsQueue::setSharedInstance(nullptr); }
    InstalledAnalyticsQueue(const InstalledAnalyticsQueue&) = delete;
    InstalledAnalyticsQueue& operator=(const InstalledAnalyticsQueue&) = delete;

    [[nodiscard]] const RecordingAnalyticsQueue* operator->() const { return _queue.get(); }

private:
    std::shared_ptr<RecordingAnalyticsQueue> _queue = std::make_shared<RecordingAnalyticsQueue>();
};

} // namespace kovalin::test
