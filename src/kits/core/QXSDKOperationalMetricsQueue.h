#pragma once

#include "QXSDKKovalinKit/Export.h"

#include <QtCore/QString>

#include <memory>

/// Takes operational metrics and brings them where they are collected. Any thread; both operations return without waiting for
/// that.
///
/// What it does is a host's to decide: it installs an implementation of its own, or the one that comes with the kit.
class QXSDKKOVALINKIT_EXPORT QXSDKOperationalMetricsQueue {
public:
    virtual ~QXSDKOperationalMetricsQueue();

    /// Something happened `count` times. `name` is the full name, with the library's prefix.
    virtual void addCount(qint64 count, const QString& name) = 0;

    /// Something took from `startTime`, in seconds since 1970, until now: measuring the end is this operation's task. `name`
    /// is the full name, with the library's prefix.
    virtual void addLatencyFromTime(double startTime, const QString& name) = 0;

    /// The queue that is installed for the process; never null. Before one is installed, it is one that forgets what it is
    /// given. Any thread.
    [[nodiscard]] static std::shared_ptr<QXSDKOperationalMetricsQueue> sharedInstance();

    /// Installs a queue; null takes it away. Any thread; a metric on its way reaches the old queue or the new one.
    static void setSharedInstance(std::shared_ptr<QXSDKOperationalMetricsQueue> queue);
};
