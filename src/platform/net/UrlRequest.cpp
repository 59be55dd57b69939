#include "platform/net/UrlRequest.h"

#include <QtCore/QString>

#include <algorithm>
#include <string_view>

namespace kovalin::platform {

namespace {

// What a header's name is made of (RFC 9110, "token").
bool isToken(const QByteArray& name)
{
    static constexpr std::string_view kMarks = "!#$%&'*+-.^_`|~";
    return !name.isEmpty() && std::ranges::all_of(name, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               kMarks.find(c) != std::string_view::npos;
    });
}

// A line break would begin a header, or a request, that nobody asked for.
bool isHeaderValue(const QByteArray& value)
{
    return std::ranges::none_of(value, [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
}

} // namespace

std::optional<UrlError> defectOf(const UrlRequest& request)
{
    const QString scheme = request.url.scheme();
    if (!request.url.isValid() || request.url.host().isEmpty() ||
        (scheme != QStringLiteral("http") && scheme != QStringLiteral("https"))) {
        return UrlError{UrlError::Kind::BadUrl,
                        QStringLiteral("Not an http or https URL: \"%1\"").arg(request.url.toDisplayString())};
    }
    for (const auto& [name, value] : request.headers) {
        if (!isToken(name) || !isHeaderValue(value)) {
            return UrlError{UrlError::Kind::Other,
                            QStringLiteral("Not a header: \"%1\"").arg(QString::fromLatin1(name.toPercentEncoding()))};
        }
    }
    return std::nullopt;
}

} // namespace kovalin::platform
