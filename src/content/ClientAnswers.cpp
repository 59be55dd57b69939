#include "content/ClientAnswers.h"

#include "platform/foundation/Json.h"

#include <QtCore/QJsonArray>

using namespace kovalin::platform;

namespace {

QJsonValue firstError(const QJsonObject& response)
{
    return jsonArray(response, u"errors").value_or(QJsonArray()).at(0);
}

} // namespace

int QXSDKKovalinClientGraphQLErrorCode(const QJsonValue& entry)
{
    const bool isInvalid = jsonString(entry.toObject(), u"errorType") == QStringLiteral("ValidationError");
    return isInvalid ? 401 : 500;
}

std::optional<QHash<QString, QJsonObject>> QXSDKKovalinClientDictFromUsers(const QJsonValue& users)
{
    if (!users.isArray()) {
        return std::nullopt;
    }
    const QJsonArray array = users.toArray();
    QHash<QString, QJsonObject> kovalinByUser;
    kovalinByUser.reserve(array.size());
    for (const QJsonValue& element : array) {
        const QJsonObject user = element.toObject();
        const QString externalId = jsonString(user, u"externalId").value_or(QString());
        const auto kovalin = jsonObject(user, u"kovalin");
        if (!externalId.isEmpty() && kovalin) {
            kovalinByUser.insert(externalId, *kovalin);
        }
    }
    return kovalinByUser;
}

QXSDKError errorIn(const QJsonObject& response)
{
    const QJsonValue entry = firstError(response);
    return errorWithStatusCode(QXSDKKovalinClientGraphQLErrorCode(entry),
                               jsonString(entry.toObject(), u"errorType").value_or(QString()), QString());
}

bool hasErrors(const QJsonObject& response)
{
    return !jsonArray(response, u"errors").value_or(QJsonArray()).isEmpty();
}
