#pragma once

#include "kovalin-backend/Answer.h"
#include "kovalin-backend/Request.h"

#include <QtCore/QPointer>

QT_BEGIN_NAMESPACE
class QTcpSocket;
QT_END_NAMESPACE

namespace kovalin::backend {

/// A request and the connection that waits for its answer. Copies are the same exchange. The server's thread only.
///
/// Once the connection has gone the operations do nothing.
class Exchange final {
public:
    Exchange(Request request, QTcpSocket* socket);

    [[nodiscard]] const Request& request() const { return _request; }

    /// Null once the connection has gone.
    [[nodiscard]] QTcpSocket* socket() const;

    /// Sends the whole answer. The connection stays for further requests, unless the client wants it closed.
    void send(const Answer& answer) const;

    /// Sends the head, which announces the whole body, and half of the body; of an answer without a body half of the
    /// head. Then closes.
    void sendHalf(const Answer& answer) const;

    /// Closes without a byte.
    void close() const;

private:
    Request _request;
    QPointer<QTcpSocket> _socket;
};

} // namespace kovalin::backend
