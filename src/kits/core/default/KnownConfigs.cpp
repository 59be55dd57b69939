#include "kits/core/default/KnownConfigs.h"

#include "kits/core/QXSDKClientSetup.h"
#include "platform/foundation/Json.h"

#include <QtCore/QJsonDocument>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace kovalin::kits {

using platform::jsonNumber;
using platform::jsonObject;
using platform::jsonString;

namespace {

constexpr double kFormat = 1;

constexpr double kUsualTtlSeconds = 3600;
constexpr double kShortestTtlSeconds = 60;           // a server that means "now" isn't asked at every step
constexpr double kLongestTtlSeconds = 7 * 24 * 3600; // a slip of the pen doesn't last for years

// Beyond it a double skips whole numbers. It is some 285 000 years.
constexpr double kLatestTime = 9'007'199'254'740'992;

KnownConfigsPtr configsIn(const QJsonObject& object, ConfigSource source, qint64 fetchedAt)
{
    const auto values = jsonObject(object, u"configs");
    if (!values) {
        return nullptr;
    }
    const auto known = std::make_shared<KnownConfigs>();
    known->source = std::move(source);
    known->fetchedAt = fetchedAt;
    const double ttl = std::clamp(jsonNumber(object, u"ttlSeconds").value_or(kUsualTtlSeconds), kShortestTtlSeconds,
                                  kLongestTtlSeconds);
    known->ttl = std::chrono::milliseconds(static_cast<qint64>(ttl * 1000));
    for (auto entry = values->constBegin(); entry != values->constEnd(); ++entry) {
        if (entry.value().isObject()) {
            known->values.insert(entry.key(), entry.value());
            known->configs.insert(entry.key(), std::make_shared<const QXSDKDynamicConfig>(entry.value().toObject()));
        }
    }
    return known;
}

} // namespace

ConfigSource ConfigSource::current()
{
    const auto setup = QXSDKClientSetup::shared();
    return {.clientId = setup->clientId, .apiBaseUrl = setup->apiBaseUrl};
}

KnownConfigsPtr configsInAnswer(const QByteArray& answer, const ConfigSource& source, qint64 fetchedAt)
{
    return configsIn(QJsonDocument::fromJson(answer).object(), source, fetchedAt);
}

QByteArray storedForm(const KnownConfigs& known)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("format"), kFormat},
                                     {QStringLiteral("clientId"), known.source.clientId},
                                     {QStringLiteral("apiBaseUrl"), known.source.apiBaseUrl},
                                     {QStringLiteral("fetchedAt"), known.fetchedAt},
                                     {QStringLiteral("ttlSeconds"), static_cast<double>(known.ttl.count()) / 1000},
                                     {QStringLiteral("configs"), known.values}})
        .toJson(QJsonDocument::Compact);
}

KnownConfigsPtr configsInStoredForm(const QByteArray& content)
{
    const QJsonObject object = QJsonDocument::fromJson(content).object();
    auto clientId = jsonString(object, u"clientId");
    auto apiBaseUrl = jsonString(object, u"apiBaseUrl");
    const auto fetchedAt = jsonNumber(object, u"fetchedAt");
    const bool isOurs = jsonNumber(object, u"format") == kFormat && jsonNumber(object, u"ttlSeconds") && clientId &&
                        apiBaseUrl && fetchedAt && std::abs(*fetchedAt) <= kLatestTime;
    if (!isOurs) {
        return nullptr;
    }
    return configsIn(object, {.clientId = std::move(*clientId), .apiBaseUrl = std::move(*apiBaseUrl)},
                     static_cast<qint64>(*fetchedAt));
}

} // namespace kovalin::kits
