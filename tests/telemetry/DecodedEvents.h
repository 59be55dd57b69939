#pragma once

#include <QtCore/QByteArray>

#include <string>
#include <utility>
#include <vector>

namespace kovalin::test {

/// The fields of a message down to those that hold no message: the names on the way to each, joined with ".", and its
/// value as text. In the order in which protoc prints them: by number, unknown ones last, with their number for a name.
/// Fields of 0 and empty texts are left out, as the format has it; a message in which nothing is left stands as "{}".
using DecodedFields = std::vector<std::pair<std::string, std::string>>;

/// A "ServerEventData" message, read by protoc, which shares no code with what wrote it, after the description of the
/// events on the wire. Throws std::runtime_error when it is none.
[[nodiscard]] DecodedFields decodedEvent(const QByteArray& serverEventData);

/// The same for each of several, in one run of protoc.
[[nodiscard]] std::vector<DecodedFields> decodedEvents(const std::vector<QByteArray>& serverEventData);

} // namespace kovalin::test
