#include "kovalin-backend/Endpoints.h"

#include "kovalin-backend/ContentFolder.h"

#include <optional>
#include <utility>

namespace kovalin::backend {

namespace {

constexpr int notFound = 404;
constexpr int methodNotAllowed = 405;
constexpr int internalServerError = 500;

bool isPlaceholder(const QString& piece)
{
    return piece.startsWith(u'<');
}

/// What stands for the placeholders; absent when the path is another one.
std::optional<QList<QString>> match(const QList<QString>& pattern, const QList<QString>& path)
{
    if (pattern.size() != path.size()) {
        return std::nullopt;
    }
    QList<QString> parts;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        if (isPlaceholder(pattern[i])) {
            parts.append(path[i]);
        } else if (pattern[i] != path[i]) {
            return std::nullopt;
        }
    }
    return parts;
}

} // namespace

Endpoints::Endpoints(std::function<void(const QString& fault)> faultFound)
    : _faultFound(std::move(faultFound))
{
}

void Endpoints::add(const QByteArray& method, const QString& path, Handler handler)
{
    _endpoints.push_back({method, path.mid(1).split(u'/'), std::move(handler)});
}

Answer Endpoints::answer(const Request& request) const
{
    const QList<QString> path = request.pathParts();
    QByteArray otherMethod;
    for (const Endpoint& endpoint : _endpoints) {
        const auto parts = match(endpoint.path, path);
        if (parts && endpoint.method == request.method) {
            return _ask(endpoint, request, *parts);
        }
        if (parts) {
            otherMethod = endpoint.method;
        }
    }
    if (otherMethod.isEmpty()) {
        return Answer::text(notFound, QStringLiteral("There is nothing at %1").arg(QString::fromUtf8(request.path)));
    }
    Answer answer = Answer::text(
        methodNotAllowed,
        QStringLiteral("%1 takes %2 only").arg(QString::fromUtf8(request.path), QString::fromLatin1(otherMethod)));
    answer.headers.emplaceBack(QByteArrayLiteral("Allow"), otherMethod);
    return answer;
}

Answer Endpoints::_ask(const Endpoint& endpoint, const Request& request, const QList<QString>& parts) const
{
    try {
        return endpoint.handler(request, parts);
    } catch (const ContentFault& fault) {
        const QString text = QString::fromUtf8(fault.what());
        if (_faultFound) {
            _faultFound(text);
        }
        return Answer::text(internalServerError, text);
    }
}

} // namespace kovalin::backend
