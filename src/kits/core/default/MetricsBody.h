#pragma once

#include "kits/core/default/OutboxEntry.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QtGlobal>

namespace kovalin::kits {

// What operational metrics look like on their way, in JSON. Any thread.
//
//     {"client_id": …, "batch_id": "<uuid>", "dropped": n, "entries": [
//         {"id": "<uuid>", "type": "count", "name": …, "value": n, "time": milliseconds since 1970},
//         {"id": "<uuid>", "type": "latency", "name": …, "milliseconds": x, "time": milliseconds since 1970}]}

/// The bytes of a count's entry: what stands above, but for the id.
[[nodiscard]] QByteArray countEntry(qint64 count, const QString& name, qint64 time);

/// The bytes of a latency's entry, of a finite number of milliseconds.
[[nodiscard]] QByteArray latencyEntry(double milliseconds, const QString& name, qint64 time);

/// The body that posts a batch of them.
[[nodiscard]] QByteArray metricsBody(const OutboxBatch& batch, const QString& clientId);

} // namespace kovalin::kits
