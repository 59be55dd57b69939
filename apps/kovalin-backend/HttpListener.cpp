#include "kovalin-backend/HttpListener.h"

#include "kovalin-backend/ConnectionServer.h"
#include "kovalin-backend/SizeLimit.h"

#include <QtCore/QMetaEnum>
#include <QtHttpServer/QHttpServerRequest>
#include <QtNetwork/QHostAddress>

#include <memory>
#include <utility>

namespace kovalin::backend {

namespace {

constexpr int payloadTooLarge = 413;

Request requestFrom(const QHttpServerRequest& received)
{
    const QMetaEnum methods = QMetaEnum::fromType<QHttpServerRequest::Method>();
    Request request{.method = QByteArray(methods.valueToKey(static_cast<int>(received.method()))).toUpper(),
                    .path = received.url().path(QUrl::FullyEncoded).toLatin1(),
                    .query = received.url().query(QUrl::FullyEncoded).toLatin1(),
                    .body = received.body()};
    const auto headers = received.headers();
    for (const auto& [name, value] : headers) {
        request.headers.emplaceBack(name, value);
    }
    return request;
}

} // namespace

HttpListener::HttpListener(Handlers handlers)
    : _handlers(std::move(handlers))
{
}

QString HttpListener::listen(quint16 port)
{
    auto server = std::make_unique<ConnectionServer>(_handlers.requestTooLarge);
    if (!server->listen(QHostAddress::LocalHost, port)) {
        return server->errorString();
    }
    bind(server.release()); // takes it
    return {};
}

quint16 HttpListener::port()
{
    return serverPorts().value(0);
}

bool HttpListener::handleRequest(const QHttpServerRequest& request, QTcpSocket* socket)
{
    ConnectionServer::requestRead(socket);
    Exchange exchange(requestFrom(request), socket);
    if (exchange.request().body.size() > kMostBodyBytes) {
        exchange.send(Answer::plain(payloadTooLarge));
        if (_handlers.requestTooLarge) {
            _handlers.requestTooLarge();
        }
    } else {
        _handlers.requestCame(std::move(exchange));
    }
    return true;
}

void HttpListener::missingHandler(const QHttpServerRequest&, QTcpSocket*) {}

} // namespace kovalin::backend
