#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QString>

#include <variant>

namespace kovalin::backend {

/// One operational metric, as a client sent it. A value.
struct MetricsEntry {
    enum class Kind { Count, Latency };

    QString clientId = {};
    QString batchId = {};
    /// Tells it from all other entries; a client sends it again with the entry when an answer got lost.
    QString id = {};
    Kind kind = Kind::Count;
    QString name = {};
    qint64 value = 0;        // of a count
    double milliseconds = 0; // of a latency
    qint64 timeMillis = 0;   // since 1970

    [[nodiscard]] QJsonObject toJson() const;

    friend bool operator==(const MetricsEntry&, const MetricsEntry&) = default;
};

/// The body of a request that brings metrics.
///
/// {"client_id":…,"batch_id":"<uuid>","entries":[{"id":…,"type":"count","name":…,"value":n,"time":ms} |
/// {"id":…,"type":"latency","name":…,"milliseconds":x,"time":ms},…]}: texts, and integers but for the milliseconds;
/// the id is not empty. Gives the entries in order, or in one line what is wrong with the first part that is wrong.
/// Any thread.
[[nodiscard]] std::variant<QList<MetricsEntry>, QString> readMetricsBatch(const QByteArray& body);

} // namespace kovalin::backend
