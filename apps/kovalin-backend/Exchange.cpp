#include "kovalin-backend/Exchange.h"

#include <QtNetwork/QTcpSocket>

#include <utility>

namespace kovalin::backend {

Exchange::Exchange(Request request, QTcpSocket* socket)
    : _request(std::move(request))
    , _socket(socket)
{
}

QTcpSocket* Exchange::socket() const
{
    return _socket;
}

void Exchange::send(const Answer& answer) const
{
    if (!_socket) {
        return;
    }
    _socket->write(answer.head());
    _socket->write(answer.body);
    if (_request.header("Connection").value_or("").compare("close", Qt::CaseInsensitive) == 0) {
        _socket->disconnectFromHost();
    }
}

void Exchange::sendHalf(const Answer& answer) const
{
    if (!_socket) {
        return;
    }
    const QByteArray head = answer.head();
    if (answer.body.isEmpty()) {
        _socket->write(head.first(head.size() / 2));
    } else {
        _socket->write(head);
        _socket->write(answer.body.first(answer.body.size() / 2));
    }
    _socket->disconnectFromHost(); // once what is written has gone out
}

void Exchange::close() const
{
    if (_socket) {
        _socket->abort();
    }
}

} // namespace kovalin::backend
