#include "kits/login/default/RedirectListener.h"

#include "kits/login/default/RedirectPage.h"

#include <QtCore/QUrl>
#include <QtGui/QGuiApplication>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <utility>

namespace {

const QByteArray& redirectPath()
{
    static const QByteArray path = QByteArrayLiteral("/oauth2/redirect");
    return path;
}

// A browser opens a few connections; a redirect has a code of some hundred bytes and a browser's headers.
constexpr qsizetype kMostConnections = 16;
constexpr qint64 kMostHeadBytes = qint64(64) * 1024;

/// Names and values of a query as forms write it: a plus sign is a space.
RedirectListener::Parameters decoded(QByteArray query)
{
    RedirectListener::Parameters parameters;
    const QList<QByteArray> pairs = query.replace('+', ' ').split('&');
    for (const QByteArray& pair : pairs) {
        const qsizetype sign = pair.indexOf('=');
        const QString name = QUrl::fromPercentEncoding(sign < 0 ? pair : pair.first(sign));
        if (!parameters.contains(name)) {
            parameters.insert(name, sign < 0 ? QString() : QUrl::fromPercentEncoding(pair.sliced(sign + 1)));
        }
    }
    return parameters;
}

/// Writes and closes; the socket goes when everything is out.
void send(QTcpSocket* socket, const QByteArray& answer)
{
    socket->write(answer);
    socket->flush();
    socket->disconnectFromHost();
}

} // namespace

RedirectListener::RedirectListener(Arrived arrived)
    : _arrived(std::move(arrived))
    , _server(std::make_unique<QTcpServer>())
{
    // The environment's proxy isn't for what comes from this machine.
    _server->setProxy(QNetworkProxy::NoProxy);
    QObject::connect(_server.get(), &QTcpServer::newConnection, &_context, [this] { _connected(); });
    _server->listen(QHostAddress::LocalHost);
}

RedirectListener::~RedirectListener() = default;

QString RedirectListener::redirectUri() const
{
    if (!_server->isListening()) {
        return {};
    }
    return QStringLiteral("http://127.0.0.1:%1%2")
        .arg(QString::number(_server->serverPort()), QString::fromLatin1(redirectPath()));
}

void RedirectListener::_connected()
{
    while (QTcpSocket* const socket = _server->nextPendingConnection()) {
        if (_server->findChildren<QTcpSocket*>().size() > kMostConnections) {
            socket->abort();
            socket->deleteLater();
            continue;
        }
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        QObject::connect(socket, &QTcpSocket::readyRead, &_context, [this, socket] { _read(socket); });
    }
}

void RedirectListener::_read(QTcpSocket* socket)
{
    const QByteArray received = socket->peek(kMostHeadBytes);
    const qsizetype end = received.indexOf("\r\n\r\n");
    if (end >= 0) {
        socket->disconnect(&_context);
        _answer(socket, received.first(end));
    } else if (received.size() >= kMostHeadBytes) {
        socket->disconnect(&_context);
        send(socket, refusal(QByteArrayLiteral("431 Request Header Fields Too Large")));
    }
}

void RedirectListener::_answer(QTcpSocket* socket, const QByteArray& head)
{
    const QList<QByteArray> line = head.first(head.indexOf('\r') < 0 ? head.size() : head.indexOf('\r')).split(' ');
    const QByteArray target = line.value(1);
    const qsizetype mark = target.indexOf('?');
    if (line.size() != 3 || line.first() != "GET") {
        send(socket, refusal(QByteArrayLiteral("405 Method Not Allowed")));
        return;
    }
    if (mark < 0 || target.first(mark) != redirectPath()) {
        send(socket, refusal(QByteArrayLiteral("404 Not Found")));
        return;
    }
    // The server takes its sockets along; this one stays until its answer is out.
    socket->setParent(nullptr);
    send(socket, redirectPage(QGuiApplication::applicationDisplayName()));
    _server->close();
    if (const Arrived arrived = std::exchange(_arrived, nullptr)) {
        arrived(decoded(target.sliced(mark + 1)));
    }
}
