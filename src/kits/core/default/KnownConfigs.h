#pragma once

#include "kits/core/QXSDKDynamicConfig.h"

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QtGlobal>

#include <chrono>
#include <memory>

namespace kovalin::kits {

/// Whom configurations are for, and where they come from.
struct ConfigSource {
    QString clientId;
    QString apiBaseUrl;

    /// That of the client setup. Any thread.
    [[nodiscard]] static ConfigSource current();

    friend bool operator==(const ConfigSource&, const ConfigSource&) = default;
};

/// The last good answer. Immutable once made; any thread.
struct KnownConfigs {
    ConfigSource source;
    qint64 fetchedAt = 0; ///< milliseconds since 1970
    std::chrono::milliseconds ttl{0};
    QJsonObject values; ///< by name
    QHash<QString, std::shared_ptr<const QXSDKDynamicConfig>> configs;

    /// Whether they needn't be fetched again at `now`, in milliseconds since 1970: they are younger than their time to live,
    /// and not from the future.
    [[nodiscard]] bool areFresh(qint64 now) const { return now >= fetchedAt && now - fetchedAt < ttl.count(); }
};

using KnownConfigsPtr = std::shared_ptr<const KnownConfigs>;

/// What a server's answer says: {"ttlSeconds": 3600, "configs": {"name": {…}, …}}. A configuration that is no object is left out;
/// the time to live is an hour where it isn't told, and between a minute and a week. Null for what is no such answer. Any
/// thread.
[[nodiscard]] KnownConfigsPtr configsInAnswer(const QByteArray& answer, const ConfigSource& source, qint64 fetchedAt);

/// What is stored of them: an object with "format", 1, "clientId", "apiBaseUrl", "fetchedAt", "ttlSeconds" and "configs". Any
/// thread.
[[nodiscard]] QByteArray storedForm(const KnownConfigs& known);

/// What was stored; null for anything else. Any thread.
[[nodiscard]] KnownConfigsPtr configsInStoredForm(const QByteArray& content);

} // namespace kovalin::kits
