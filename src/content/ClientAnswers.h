#pragma once

#include "kits/core/QXSDKError.h"

#include <QtCore/QHash>
#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QString>

#include <optional>

// What the backend's answers say. Any thread. A step through null or through a value of another type counts as absent.

/// 401 for an entry of "errors" that tells of a failed validation, 500 for any other and for none.
[[nodiscard]] int QXSDKKovalinClientGraphQLErrorCode(const QJsonValue& entry);

/// The "kovalin" objects in a value of "users", by the user's external id; absent unless the value is an array. Elements without
/// an id or without such an object are left out.
[[nodiscard]] std::optional<QHash<QString, QJsonObject>> QXSDKKovalinClientDictFromUsers(const QJsonValue& users);

/// What the first entry of an answer's "errors" tells; a server's error without a description where there is none.
[[nodiscard]] QXSDKError errorIn(const QJsonObject& response);

/// Whether an answer has an entry in "errors".
[[nodiscard]] bool hasErrors(const QJsonObject& response);
