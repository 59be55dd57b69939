#pragma once

#include "platform/net/DataTask.h"
#include "platform/net/UrlRequest.h"

#include <QtNetwork/QSslConfiguration>

#include <memory>
#include <optional>

namespace kovalin::platform {

/// How a session reaches the network.
struct UrlSessionOptions {
    enum class Proxy { System, None };

    Proxy proxy = Proxy::System;

    /// Absent: Qt's default, with the system's certificates.
    std::optional<QSslConfiguration> tls = std::nullopt;
};

/// HTTP requests over one `QNetworkAccessManager` on a thread of the session's own, where all handlers run. Any thread.
///
/// - Redirects are followed, at most 20 and never to less safe: from https to https alone, never to what isn't http. A
///   POST becomes a GET but after 307 and 308, and credentials in headers stay with the server that they were for.
/// - Nothing is kept from one request for the next but open connections: no cookies, no cache, no passwords.
/// - A POST is sent once; a GET whose connection breaks before the answer begins is tried again, at most three times.
/// - An answer, whatever its status, is no failure.
///
/// Lifetime: the thread starts with the first task. Destroying the session, on any thread, cancels what is under way and
/// what is resumed later; the handlers still run, and the thread ends with the last task.
///
/// Shutdown: when the application object dies everything is cancelled, and what is resumed from then on ends cancelled
/// at once, so that jobs which wait for an answer can end; then the thread ends. Under a later application object the
/// session works again. Tasks that are resumed before the first one start with it.
class UrlSession final {
public:
    /// The session of the process, made on first use and never destroyed.
    [[nodiscard]] static UrlSession& shared();

    explicit UrlSession(UrlSessionOptions options = {});
    ~UrlSession();
    UrlSession(const UrlSession&) = delete;
    UrlSession& operator=(const UrlSession&) = delete;

    /// A task which does nothing until it is resumed. What `handler` is given, when and where, tells `DataTask`.
    [[nodiscard]] std::shared_ptr<DataTask> dataTask(UrlRequest request, DataHandler handler);

private:
    const std::shared_ptr<SessionWorker> _worker;
    const std::shared_ptr<ThreadQueue> _queue;
};

} // namespace kovalin::platform
