#pragma once

#include "kits/core/default/OutboxEntry.h"

#include <QtCore/QByteArray>

namespace kovalin::kits {

/// The body that posts a batch of analytics events, in protobuf. An entry's bytes are a "ServerEventData", which goes along
/// unread. Any thread.
///
///     EventBatch    1 batch_id     string, the UUID of the batch
///                   2 dropped      varint
///                   3 events       repeated ServerEvent, in their order
///     ServerEvent   1 event_id     string, the UUID of the entry
///                   2 time_millis  varint, milliseconds since 1970
///                   3 data         ServerEventData
[[nodiscard]] QByteArray analyticsBody(const OutboxBatch& batch);

} // namespace kovalin::kits
