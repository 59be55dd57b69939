#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kovalin::test {

struct NamedMessage;

/// A protobuf message as an independent reader, the protobuf compiler's, shows it.
struct DecodedMessage {
    /// In their order. Numbers are decimal; texts stand in quotes, with what isn't ASCII as "\303\244".
    std::vector<std::pair<std::string, std::string>> values;
    /// In their order.
    std::vector<NamedMessage> messages;

    /// The only value of that name, without quotes; absent if there is none or more than one.
    [[nodiscard]] std::optional<std::string> value(const std::string& name) const;

    /// All messages of that name.
    [[nodiscard]] std::vector<DecodedMessage> all(const std::string& name) const;

    /// The only message of that name, or an empty one.
    [[nodiscard]] DecodedMessage one(const std::string& name) const;
};

struct NamedMessage {
    std::string name;
    DecodedMessage message;
};

/// Reads a message of `apps/events/analytics_events.proto`, "EventBatch" for one, in which fields are known by their names;
/// those that the file doesn't know have their numbers for names, and fields of zero aren't shown. Absent for what isn't one.
[[nodiscard]] std::optional<DecodedMessage> decodedEvents(const QString& message, const QByteArray& bytes);

/// Reads fields by their numbers. What may be a message is taken for one. Absent for what isn't protobuf.
[[nodiscard]] std::optional<DecodedMessage> decodedRaw(const QByteArray& bytes);

} // namespace kovalin::test
