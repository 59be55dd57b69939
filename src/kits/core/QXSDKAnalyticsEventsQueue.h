#pragma once

#include "QXSDKKovalinKit/Export.h"

#include <QtCore/QByteArray>

#include <memory>

/// An event on its way to the analytics servers. A value.
struct QXSDKServerEvent {
    QByteArray serverEventData; ///< A "ServerEventData" message of protobuf.
};

/// Takes analytics events and brings them where they are collected. Any thread; adding returns without waiting for that.
///
/// What it does is a host's to decide: it installs an implementation of its own, or the one that comes with the kit.
class QXSDKKOVALINKIT_EXPORT QXSDKAnalyticsEventsQueue {
public:
    virtual ~QXSDKAnalyticsEventsQueue();

    virtual void addEvent(const QXSDKServerEvent& event) = 0;

    /// The queue that is installed for the process; never null. Before one is installed, it is one that forgets what it is
    /// given. Any thread.
    [[nodiscard]] static std::shared_ptr<QXSDKAnalyticsEventsQueue> sharedInstance();

    /// Installs a queue; null takes it away. Any thread; an event on its way reaches the old queue or the new one.
    static void setSharedInstance(std::shared_ptr<QXSDKAnalyticsEventsQueue> queue);
};
