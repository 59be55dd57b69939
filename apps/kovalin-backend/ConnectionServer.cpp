#include "kovalin-backend/ConnectionServer.h"

#include "kovalin-backend/SizeLimit.h"

#include <utility>

namespace kovalin::backend {

namespace {

constexpr int payloadTooLarge = 413;

/// Answers 413 and has the HTTP server see nothing more of the connection. What still comes is read and thrown away:
/// where a connection is closed with bytes unread the client may never see the answer.
void breakOff(Connection& connection)
{
    QObject::disconnect(&connection, &QTcpSocket::readyRead, nullptr, nullptr);
    if (connection.isTransactionStarted()) {
        connection.commitTransaction();
    }
    const auto discard = [socket = &connection] {
        socket->readAll();
    };
    discard();
    QObject::connect(&connection, &QTcpSocket::readyRead, &connection, discard);
    Answer answer = Answer::plain(payloadTooLarge);
    answer.headers.emplaceBack(QByteArrayLiteral("Connection"), QByteArrayLiteral("close"));
    connection.write(answer.head());
    connection.write(answer.body);
}

} // namespace

ConnectionServer::ConnectionServer(std::function<void()> tooLarge)
    : _tooLarge(std::move(tooLarge))
{
}

void ConnectionServer::requestRead(QTcpSocket* socket)
{
    static_cast<Connection*>(socket)->requestBytes = 0;
}

void ConnectionServer::incomingConnection(qintptr descriptor)
{
    auto* const connection = new Connection(this);
    if (!connection->setSocketDescriptor(descriptor)) {
        delete connection;
        return;
    }
    // Comes before the HTTP server's own, which is connected later, and so sees what that hasn't read yet.
    connect(connection, &QTcpSocket::readyRead, this, [this, connection] { _bytesCame(*connection); });
    addPendingConnection(connection);
}

void ConnectionServer::_bytesCame(Connection& connection) const
{
    connection.requestBytes += connection.bytesAvailable();
    if (connection.requestBytes > kMostRequestBytes) {
        breakOff(connection);
        if (_tooLarge) {
            _tooLarge();
        }
    }
}

} // namespace kovalin::backend
