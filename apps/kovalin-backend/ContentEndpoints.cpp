#include "kovalin-backend/ContentEndpoints.h"

#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

namespace kovalin::backend {

namespace {

constexpr int notFound = 404;

/// Less than any version when the client has none.
qint64 clientVersion(const Request& request)
{
    constexpr qint64 none = -1;
    bool isNumber = false;
    const qint64 version =
        request.queryValue(QStringLiteral("client_cached_version")).value_or(QString()).toLongLong(&isNumber);
    return isNumber && version >= 0 ? version : none;
}

QString modelUrl(const QUrl& baseUrl, const QString& name, qint32 version)
{
    return QStringLiteral("%1/content/models/%2/%3")
        .arg(baseUrl.toString(), QString::fromLatin1(QUrl::toPercentEncoding(name)), QString::number(version));
}

Answer modelStatus(const ContentFolder& content, const QUrl& baseUrl, const Request& request, const QString& name)
{
    const auto versions = content.modelVersions(name);
    if (!versions) {
        return Answer::text(notFound, QStringLiteral("There is no model \"%1\"").arg(name));
    }
    if (versions->isEmpty()) {
        return Answer::json({{QStringLiteral("shouldUpdate"), false}});
    }
    const qint32 newest = versions->last();
    return Answer::json({{QStringLiteral("shouldUpdate"), newest > clientVersion(request)},
                         {QStringLiteral("modelUrl"), modelUrl(baseUrl, name, newest)},
                         {QStringLiteral("modelVersion"), newest}});
}

Answer modelDownload(const ContentFolder& content, const QString& name, const QString& version)
{
    auto model = content.model(name, version);
    return model ? Answer::bytes(std::move(*model))
                 : Answer::text(notFound,
                                QStringLiteral("There is no version \"%1\" of a model \"%2\"").arg(version, name));
}

} // namespace

void addContentEndpoints(Endpoints& endpoints, const std::shared_ptr<const ContentFolder>& content, const QUrl& baseUrl)
{
    const QByteArray get = QByteArrayLiteral("GET");
    endpoints.add(get, QStringLiteral("/content/models/<name>"),
                  [content, baseUrl](const Request& request, const QList<QString>& parts) {
                      return modelStatus(*content, baseUrl, request, parts[0]);
                  });
    endpoints.add(
        get, QStringLiteral("/content/models/<name>/<version>"),
        [content](const Request&, const QList<QString>& parts) { return modelDownload(*content, parts[0], parts[1]); });
    endpoints.add(get, QStringLiteral("/api/configs"),
                  [content](const Request&, const QList<QString>&) { return Answer::json(content->configs()); });
}

} // namespace kovalin::backend
