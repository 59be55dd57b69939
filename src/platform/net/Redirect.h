#pragma once

#include "platform/net/UrlError.h"
#include "platform/net/UrlRequest.h"

#include <QtCore/QByteArray>

#include <variant>

namespace kovalin::platform {

/// Whether an answer of this status sends the client elsewhere, if it has a "Location". Any thread.
[[nodiscard]] bool isRedirectStatus(int statusCode);

/// The request that follows `request`, which was answered with the redirect `statusCode` to `location`; or why it must
/// not be followed. Any thread.
[[nodiscard]] std::variant<UrlRequest, UrlError> followRedirect(UrlRequest request, int statusCode,
                                                                const QByteArray& location);

} // namespace kovalin::platform
