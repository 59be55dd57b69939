#include "kovalin-backend/Answer.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QMetaEnum>
#include <QtHttpServer/QHttpServerResponder>

namespace kovalin::backend {

namespace {

constexpr int noContent = 204;
constexpr int notModified = 304;

bool hasBody(int status)
{
    return status != noContent && status != notModified;
}

/// For people; a client goes by the number. Qt's own table of reasons stops the program at a number that it doesn't
/// have, and lacks such usual ones as 429.
QByteArray nameOf(int status)
{
    using Status = QHttpServerResponder::StatusCode;
    const char* name = QMetaEnum::fromType<Status>().valueToKey(status);
    return name ? QByteArray(name) : QByteArrayLiteral("Status");
}

Answer withType(int status, const QByteArray& type, QByteArray body)
{
    return {.status = status, .headers = {{QByteArrayLiteral("Content-Type"), type}}, .body = std::move(body)};
}

} // namespace

QByteArray Answer::head() const
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + ' ' + nameOf(status) + "\r\n";
    for (const auto& [name, value] : headers) {
        head += name + ": " + value + "\r\n";
    }
    if (hasBody(status)) {
        head += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    }
    return head + "\r\n";
}

Answer Answer::empty(int status)
{
    return {.status = status};
}

Answer Answer::text(int status, const QString& line)
{
    return withType(status, QByteArrayLiteral("text/plain; charset=utf-8"), (line + u'\n').toUtf8());
}

Answer Answer::plain(int status)
{
    return hasBody(status) ? text(status, QString::number(status) + u' ' + QString::fromLatin1(nameOf(status)))
                           : empty(status);
}

Answer Answer::json(const QJsonObject& object)
{
    return json(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

Answer Answer::json(QByteArray document)
{
    return withType(200, QByteArrayLiteral("application/json"), std::move(document));
}

Answer Answer::bytes(QByteArray bytes)
{
    return withType(200, QByteArrayLiteral("application/octet-stream"), std::move(bytes));
}

Answer Answer::png(QByteArray picture)
{
    return withType(200, QByteArrayLiteral("image/png"), std::move(picture));
}

} // namespace kovalin::backend
