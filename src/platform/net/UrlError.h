#pragma once

#include <QtCore/QString>

namespace kovalin::platform {

/// Why there is no answer. A value. An answer with a status of 400 and more is an answer.
struct UrlError {
    enum class Kind {
        Cancelled,        ///< By `cancel`, or since the session or the application object went.
        TimedOut,         ///< No byte for as long as the request allows.
        CannotConnect,    ///< Refused, unreachable, or a proxy's fault.
        HostNotFound,     ///< The name of the host doesn't resolve.
        ConnectionLost,   ///< Before or in the midst of the answer; also a body shorter than its "Content-Length". Qt
                          ///< may not tell it of a body that is chunked or packed.
        TooLarge,         ///< The body is longer than the request allows.
        UnsafeRedirect,   ///< From https to http, or to what is neither.
        TooManyRedirects, ///< More than 20.
        TlsFailed,        ///< No secure connection, such as for want of a trusted certificate.
        BadUrl,           ///< Not an http or https URL with a host.
        Other,            ///< Anything else: see the text.
    };

    Kind kind = Kind::Other;

    /// For people and logs, in English; never empty.
    QString text;

    friend bool operator==(const UrlError&, const UrlError&) = default;
};

/// The kind's name, as "TimedOut". Any thread.
[[nodiscard]] const char* nameOf(UrlError::Kind kind);

} // namespace kovalin::platform
