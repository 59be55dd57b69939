#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QList>
#include <QtCore/QString>

#include <optional>

namespace kovalin::analytics {

/// A field that the format doesn't declare, or declares with another wire type. A value.
struct UnknownField {
    /// Below the event or the batch, the message that holds it: "data.kovalin_kit_share"; empty for the event or the
    /// batch itself. Of a repeated field's messages, "search_terms#1" is the first.
    QString in = {};
    int number = 0;
    int wireType = 0; // as it stands on the wire: 0, 1, 2, 3 or 5
    /// A number, exact; above the greatest qint64 a text of its digits. Of wire type 2: a text where the bytes are
    /// UTF-8, else {"hex":…}. Of a group: the list of its fields.
    QJsonValue value = {};

    /// {"in":…,"number":n,"wire_type":n,"value":…}
    [[nodiscard]] QJsonObject toJson() const;

    friend bool operator==(const UnknownField&, const UnknownField&) = default;
};

/// One analytics event, as a client sent it. A value.
struct Event {
    /// Of the batch with which it came.
    QString batchId = {};
    /// Tells it from all other events; empty where there is none, which a client doesn't send.
    QString id = {};
    qint64 timeMillis = 0; // since 1970

    /// Which field of the event's data is set, such as "kovalin_kit_share". Empty where none is that the format
    /// declares. An event has one; of several, all names in the order of their numbers, with "+" between.
    QString name = {};

    /// That field's message, by the names of its fields; what isn't on the wire isn't there, and what is there as 0 or
    /// "" is. Empty where no field is set; of several, their messages by name. Absent for an event without data.
    std::optional<QJsonObject> fields = {};

    QList<UnknownField> unknown = {};

    qsizetype size = 0; // bytes on the wire

    /// {"batch_id":…,"event_id":…,"time_millis":n,"event":…,"fields":…}, null for an absence, and "unknown":[…] where
    /// there is something unknown.
    [[nodiscard]] QJsonObject toJson() const;

    /// For people, on one line: the name or "(none)", and the fields and what is unknown as JSON.
    [[nodiscard]] QString toText() const;
};

/// Events that came together, in the order in which they were logged. A value.
struct EventBatch {
    QString id = {};
    quint64 dropped = 0; // events that the client lost before this batch
    QList<Event> events = {};
    QList<UnknownField> unknown = {}; // beside the events

    /// {"batch_id":…,"dropped":n,"count":n}, and "unknown":[…] where there is something unknown; without the events.
    [[nodiscard]] QJsonObject headToJson() const;
};

/// Exact: above the greatest qint64, which is as far as JSON's integers go here, a text of the digits.
[[nodiscard]] QJsonValue jsonNumber(quint64 number);

} // namespace kovalin::analytics
