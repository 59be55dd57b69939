#pragma once

#include "events/EventBatch.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <variant>

namespace kovalin::analytics {

/// The longest batch that is read, in bytes. A client's are a thousandth of it.
inline constexpr qsizetype kMostBatchBytes = qsizetype(64) * 1024 * 1024;

/// Reads an `EventBatch` of analytics_events.proto.
///
/// Gives all that is in it, also what the format doesn't declare; or in one line what keeps it from being read: bytes
/// that are no message, a text that isn't UTF-8, more than `kMostBatchBytes`, more than `wireFault` lets through, or no
/// "batch_id". Ids are taken as they are. Never writes to a standard stream. Any thread.
[[nodiscard]] std::variant<EventBatch, QString> readEventBatch(const QByteArray& bytes);

} // namespace kovalin::analytics
