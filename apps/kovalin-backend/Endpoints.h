#pragma once

#include "kovalin-backend/Answer.h"
#include "kovalin-backend/Request.h"

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

#include <functional>
#include <vector>

namespace kovalin::backend {

/// What the server usually answers, address by address. One thread.
class Endpoints final {
public:
    /// `parts` are the decoded pieces of the path that stand for the placeholders, in order. May throw ContentFault.
    using Handler = std::function<Answer(const Request& request, const QList<QString>& parts)>;

    /// Takes the answer to one request; to be called once, on the server's thread.
    using Done = std::function<void(const Answer& answer)>;

    /// As `Handler`, for what takes a while: calls `done` now or later. When it throws, it mustn't have kept `done`.
    using LateHandler = std::function<void(const Request& request, const QList<QString>& parts, const Done& done)>;

    /// `faultFound` is told the text of each ContentFault that a handler throws; may be empty.
    explicit Endpoints(std::function<void(const QString& fault)> faultFound);

    /// Adds an address. `path` is made of pieces as they stand and placeholders in angle brackets, as
    /// "/content/models/<name>"; a placeholder stands for exactly one piece.
    void add(const QByteArray& method, const QString& path, Handler handler);
    void addLate(const QByteArray& method, const QString& path, LateHandler handler);

    /// Gives the answer of the handler for the request; 404 where there is none, 405 where there is one for another method, and
    /// 500 where the content is at fault.
    void answer(const Request& request, const Done& done) const;

private:
    struct Endpoint {
        QByteArray method;
        QList<QString> path;
        LateHandler handler;
    };

    void _ask(const Endpoint& endpoint, const Request& request, const QList<QString>& parts, const Done& done) const;

    const std::function<void(const QString&)> _faultFound;
    std::vector<Endpoint> _endpoints;
};

} // namespace kovalin::backend
