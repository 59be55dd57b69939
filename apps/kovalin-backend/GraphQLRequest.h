#pragma once

#include "kovalin-backend/Request.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include <optional>

namespace kovalin::backend {

/// What a GraphQL request asks. A value.
struct GraphQLRequest {
    enum class Operation { Avatar, Packs, Users };

    QString query;
    QJsonObject variables = {};

    /// Absent for a document that isn't, word for word, one of those that clients send.
    [[nodiscard]] std::optional<Operation> operation() const;

    /// Absent for what is no such request: no JSON object, no text at "query", or anything but an object or null at "variables".
    [[nodiscard]] static std::optional<GraphQLRequest> fromBody(const QByteArray& body);
};

/// What rules can name behind the path and "#": "avatar", "packs" or "users" for a request of these; empty for any other.
[[nodiscard]] QByteArray operationName(const Request& request);

} // namespace kovalin::backend
