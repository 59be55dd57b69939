#include "kovalin-backend/Request.h"

#include <QtCore/QUrl>
#include <QtCore/QUrlQuery>

namespace kovalin::backend {

QByteArray Request::target() const
{
    return query.isEmpty() ? path : QByteArray(path + '?' + query);
}

std::optional<QByteArray> Request::header(const QByteArray& name) const
{
    for (const auto& [key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0) {
            return value;
        }
    }
    return std::nullopt;
}

std::optional<QString> Request::queryValue(const QString& name) const
{
    const QUrlQuery values(QString::fromUtf8(query));
    return values.hasQueryItem(name) ? std::optional(values.queryItemValue(name, QUrl::FullyDecoded)) : std::nullopt;
}

QList<QString> Request::pathParts() const
{
    QList<QString> parts;
    for (const QByteArray& part : path.mid(1).split('/')) {
        parts.append(QString::fromUtf8(QByteArray::fromPercentEncoding(part)));
    }
    return parts;
}

} // namespace kovalin::backend
