#pragma once

#include "events/EventBatch.h"
#include "kovalin-backend/MetricsBatch.h"
#include "kovalin-backend/Request.h"

#include <QtCore/QString>

#include <functional>

namespace kovalin::backend {

/// What a backend tells while it runs, on its own thread. Any of them may be empty; none may throw, block, or end the
/// backend.
struct BackendEvents {
    /// A request arrived; its answer comes afterwards. Not told of what lies under "/control/".
    std::function<void(const Request& request)> requestCame;

    /// An entry of metrics arrived; `isNew` is false for one that was there already and is dropped.
    std::function<void(const MetricsEntry& entry, bool isNew)> metricsCame;

    /// An analytics event arrived; `isNew` is false for one that was there already and is dropped.
    std::function<void(const analytics::Event& event, bool isNew)> analyticsEventCame = {};

    /// Something that the backend was given can't be used; one line.
    std::function<void(const QString& fault)> faultFound;
};

} // namespace kovalin::backend
