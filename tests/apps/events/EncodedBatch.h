#pragma once

#include <QtCore/QByteArray>

namespace kovalin::test {

// Both take an `EventBatch` in protobuf's text form and give its bytes. They throw std::runtime_error where it isn't
// one.

/// By the .proto file of the format, of which a number that is 0 and a text that is empty aren't written.
[[nodiscard]] QByteArray encodedBatch(const QByteArray& text);

/// By later_events.proto, which has what the format doesn't.
[[nodiscard]] QByteArray encodedLaterBatch(const QByteArray& text);

/// An event for `encodedBatch` and `encodedLaterBatch`, whose data is given as text.
[[nodiscard]] QByteArray eventText(const QByteArray& id, const QByteArray& data);

/// A sticker that was chosen, as the data of an event.
[[nodiscard]] QByteArray shareText(const QByteArray& stickerId);

/// The id of batches that tests send, which is a UUID.
inline constexpr const char* kBatchId = "2f1e0ffb-2f83-4a6a-9d9c-3b6b5f7c0d11";

/// A batch with this id, of events by `eventText`.
[[nodiscard]] QByteArray batchText(const QByteArray& events);

} // namespace kovalin::test
