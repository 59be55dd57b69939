#include "support/ScriptedAnswer.h"

namespace kovalin::test {

namespace {

std::optional<QByteArray> valueOf(const HttpHeaders& headers, const QByteArray& name)
{
    for (const auto& [key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0) {
            return value;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<QByteArray> ReceivedRequest::header(const QByteArray& name) const
{
    return valueOf(headers, name);
}

ScriptedAnswer ScriptedAnswer::ok(QByteArray body)
{
    return {.body = std::move(body)};
}

ScriptedAnswer ScriptedAnswer::withStatus(int status, QByteArray body)
{
    return {.status = status, .body = std::move(body)};
}

ScriptedAnswer ScriptedAnswer::redirect(QByteArray location, int status)
{
    return {.status = status, .headers = {{"Location", std::move(location)}}};
}

ScriptedAnswer ScriptedAnswer::cut(QByteArray body, qsizetype sentBytes)
{
    return {.body = std::move(body), .sentBytes = sentBytes, .end = End::Close};
}

ScriptedAnswer ScriptedAnswer::garbage(QByteArray bytes)
{
    return {.raw = std::move(bytes), .end = End::Close};
}

ScriptedAnswer ScriptedAnswer::closed()
{
    return {.raw = QByteArray(), .end = End::Close};
}

ScriptedAnswer ScriptedAnswer::never()
{
    return {.raw = QByteArray(), .end = End::Silence};
}

ScriptedAnswer ScriptedAnswer::held(QByteArray body, Hold hold)
{
    return {.body = std::move(body), .hold = hold};
}

QByteArray ScriptedAnswer::head() const
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + " Scripted\r\n";
    for (const auto& [name, value] : headers) {
        head += name + ": " + value + "\r\n";
    }
    if (hasLength && !valueOf(headers, "Content-Length")) {
        head += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    }
    return head + "\r\n";
}

} // namespace kovalin::test
