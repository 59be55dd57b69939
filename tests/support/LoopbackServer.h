#pragma once

#include "support/ScriptedAnswer.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtNetwork/QSslConfiguration>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace kovalin::platform {
class ThreadQueue;
} // namespace kovalin::platform

namespace kovalin::test {

/// An HTTP/1.1 server on 127.0.0.1, at a port that the system chooses, on a thread of its own. What it says at a path is
/// set before; a path without a script answers 404. Any thread.
///
/// Needs an application object when it is made; the death of that object ends it too.
class LoopbackServer final {
public:
    /// With `tls` it speaks https; the configuration holds its certificate and key.
    explicit LoopbackServer(std::optional<QSslConfiguration> tls = std::nullopt);
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    /// The address of `path`, which begins with "/".
    [[nodiscard]] QUrl url(const QString& path) const;

    /// Scripts `path`, as it stands in a request before "?"; a later script replaces it.
    void script(const QByteArray& path, ScriptedAnswer answer);

    /// Lets held answers at `path` go on, and those to come.
    void release(const QByteArray& path);

    /// What arrived, in order.
    [[nodiscard]] std::vector<ReceivedRequest> requests() const;

    /// Blocks until `count` requests or more have arrived.
    void waitForRequests(std::size_t count) const;

    /// Blocks until `count` answers or more have stopped at their hold, all paths together.
    void waitForHeld(std::size_t count) const;

    /// Stops listening; connections that are open stay.
    void stopListening();

private:
    class Script;
    class Connection;
    class Listener;

    const std::shared_ptr<Script> _script;
    const std::shared_ptr<std::unique_ptr<Listener>> _listener; // what it holds: the server's thread only
    const std::unique_ptr<platform::ThreadQueue> _queue;
    const bool _isSecure;
    quint16 _port = 0;
};

} // namespace kovalin::test
