#include "platform/net/Redirect.h"

#include <QtCore/QString>

#include <algorithm>
#include <array>
#include <utility>

namespace kovalin::platform {

namespace {

constexpr std::array kCredentials = {"Authorization", "Cookie", "Proxy-Authorization"};
constexpr std::array kBodyHeaders = {"Content-Type", "Content-Length", "Content-Encoding", "Content-Language"};

template <std::size_t size>
void removeHeaders(UrlRequest& request, const std::array<const char*, size>& names)
{
    request.headers.removeIf([&names](const auto& header) {
        return std::ranges::any_of(
            names, [&header](const char* name) { return header.first.compare(name, Qt::CaseInsensitive) == 0; });
    });
}

int portOf(const QUrl& url)
{
    return url.port(url.scheme() == QStringLiteral("https") ? 443 : 80);
}

bool isSameServer(const QUrl& one, const QUrl& other)
{
    return one.scheme() == other.scheme() && one.host() == other.host() && portOf(one) == portOf(other);
}

} // namespace

bool isRedirectStatus(int statusCode)
{
    return (statusCode >= 301 && statusCode <= 303) || statusCode == 307 || statusCode == 308;
}

std::variant<UrlRequest, UrlError> followRedirect(UrlRequest request, int statusCode, const QByteArray& location)
{
    const QUrl from = request.url;
    request.url = from.resolved(QUrl::fromEncoded(location));
    const QString scheme = request.url.scheme();
    const bool isSecure = scheme == QStringLiteral("https");
    if (!isSecure && (from.scheme() == QStringLiteral("https") || scheme != QStringLiteral("http"))) {
        return UrlError{UrlError::Kind::UnsafeRedirect,
                        QStringLiteral("A redirect from %1 to less safe: %2")
                            .arg(from.toDisplayString(), request.url.toDisplayString())};
    }
    if (auto defect = defectOf(request)) {
        return *std::move(defect);
    }
    if (statusCode <= 303 && request.method == UrlRequest::Method::Post) {
        request.method = UrlRequest::Method::Get;
        request.body.clear();
        removeHeaders(request, kBodyHeaders);
    }
    if (!isSameServer(from, request.url)) {
        removeHeaders(request, kCredentials);
    }
    return request;
}

} // namespace kovalin::platform
