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

    /// `faultFound` is told the text of each ContentFault that a handler throws; may be empty.
    explicit Endpoints(std::function<void(const QString& fault)> faultFound);

    /// Adds an address. `path` is made of pieces as they stand and placeholders in angle brackets, as
    /// "/content/models/<name>"; a placeholder stands for exactly one piece.
    void add(const QByteArray& method, const QString& path, Handler handler);

    /// The answer of the handler for the request; 404 where there is none, 405 where there is one for another method,
    /// and 500 where the content is at fault.
    [[nodiscard]] Answer answer(const Request& request) const;

private:
    struct Endpoint {
        QByteArray method;
        QList<QString> path;
        Handler handler;
    };

    [[nodiscard]] Answer _ask(const Endpoint& endpoint, const Request& request, const QList<QString>& parts) const;

    const std::function<void(const QString&)> _faultFound;
    std::vector<Endpoint> _endpoints;
};

} // namespace kovalin::backend
