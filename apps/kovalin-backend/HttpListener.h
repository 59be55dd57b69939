#pragma once

#include "kovalin-backend/Exchange.h"

#include <QtCore/QString>
#include <QtHttpServer/QAbstractHttpServer>

#include <functional>

namespace kovalin::backend {

/// Listens on 127.0.0.1 and hands over each request once it has arrived whole. The server's thread only.
///
/// Qt's HTTP server accepts and reads. Answers go out through the connection itself: Qt's own way of answering sends
/// whole answers alone.
class HttpListener final : public QAbstractHttpServer {
public:
    struct Handlers {
        std::function<void(Exchange exchange)> requestCame;
        std::function<void()> requestTooLarge; ///< may be empty
    };

    explicit HttpListener(Handlers handlers);

    /// At `port`, or where that is 0 at one that the system chooses. Once. Gives what keeps it from listening, empty
    /// when it listens.
    [[nodiscard]] QString listen(quint16 port);

    /// 0 while it doesn't listen.
    [[nodiscard]] quint16 port();

protected:
    bool handleRequest(const QHttpServerRequest& request, QTcpSocket* socket) override;
    void missingHandler(const QHttpServerRequest& request, QTcpSocket* socket) override;

private:
    const Handlers _handlers;
};

} // namespace kovalin::backend
