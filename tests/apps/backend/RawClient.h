#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QUrl>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QTcpSocket>

namespace kovalin::test {

/// A connection on which a test says what no proper client would. One thread.
class RawClient final {
public:
    explicit RawClient(const QUrl& server)
    {
        _socket.connectToHost(QHostAddress::LocalHost, static_cast<quint16>(server.port()));
        _socket.waitForConnected(capMillis);
    }

    void send(const QByteArray& bytes)
    {
        _socket.write(bytes);
        while (_socket.bytesToWrite() > 0 && _socket.waitForBytesWritten(capMillis)) {
        }
    }

    /// What came until the other side closed.
    [[nodiscard]] QByteArray readToEnd()
    {
        while (_socket.waitForReadyRead(capMillis)) {
        }
        return _socket.readAll();
    }

    /// What came up to `end`, with it; all there was where the other side closed before.
    [[nodiscard]] QByteArray readTo(const QByteArray& end)
    {
        QByteArray bytes;
        while (!bytes.contains(end) && (_socket.bytesAvailable() > 0 || _socket.waitForReadyRead(capMillis))) {
            bytes += _socket.readAll();
        }
        return bytes;
    }

private:
    static constexpr int capMillis = 60'000; // against a hang alone

    QTcpSocket _socket;
};

} // namespace kovalin::test
