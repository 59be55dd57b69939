#pragma once

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QString>

#include <functional>
#include <memory>

QT_BEGIN_NAMESPACE
class QTcpServer;
class QTcpSocket;
QT_END_NAMESPACE

/// Waits on 127.0.0.1, at a port that the system chooses, for the browser to come back from the authentication service. Speaks as
/// much HTTP as that takes; what else comes is refused, and it goes on waiting.
///
/// Main thread only. The browser is answered with one page, whatever the redirect says; the answer goes out even where this
/// object is gone by then.
class RedirectListener final {
public:
    /// The query of the redirect, decoded. Where a name comes twice, its first value.
    using Parameters = QHash<QString, QString>;
    using Arrived = std::function<void(const Parameters& parameters)>;

    /// `arrived` is called at most once, from the event loop; it may destroy this object.
    explicit RedirectListener(Arrived arrived);
    ~RedirectListener();
    Q_DISABLE_COPY_MOVE(RedirectListener)

    /// Where the browser has to be sent; empty where there is no port to listen at.
    [[nodiscard]] QString redirectUri() const;

private:
    void _connected();
    void _read(QTcpSocket* socket);
    void _answer(QTcpSocket* socket, const QByteArray& head);

    Arrived _arrived; // null once called
    const std::unique_ptr<QTcpServer> _server;
    QObject _context; // what connections to this object end with
};
