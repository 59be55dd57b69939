#pragma once

#include "kovalin-backend/Answer.h"

#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <functional>

namespace kovalin::backend {

/// A connection that counts what comes of a request. The server's thread only.
class Connection final : public QTcpSocket {
public:
    using QTcpSocket::QTcpSocket;

    qint64 requestBytes = 0;
};

/// Accepts connections, and keeps a request that is larger than any may be from piling up in memory: Qt's HTTP server
/// reads a request to its end, however long, before anybody sees it. The server's thread only.
class ConnectionServer final : public QTcpServer {
public:
    /// `tooLarge` is told of each request that was broken off; may be empty.
    explicit ConnectionServer(std::function<void()> tooLarge);

    /// To be called with each request that was read: the next one on its connection counts from 0.
    static void requestRead(QTcpSocket* socket);

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    void _bytesCame(Connection& connection) const;

    const std::function<void()> _tooLarge;
};

} // namespace kovalin::backend
