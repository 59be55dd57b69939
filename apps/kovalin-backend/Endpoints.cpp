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
    addLate(method, path,
            [handler = std::move(handler)](const Request& request, const QList<QString>& parts, const Done& done) {
                done(handler(request, parts));
            });
}

void Endpoints::addLate(const QByteArray& method, const QString& path, LateHandler handler)
{
    _endpoints.push_back({method, path.mid(1).split(u'/'), std::move(handler)});
}

void Endpoints::answer(const Request& request, const Done& done) const
{
    const QList<QString> path = request.pathParts();
    QByteArray otherMethod;
    for (const Endpoint& endpoint : _endpoints) {
        const auto parts = match(endpoint.path, path);
        if (parts && endpoint.method == request.method) {
            _ask(endpoint, request, *parts, done);
            return;
        }
        if (parts) {
            otherMethod = endpoint.method;
        }
    }
    if (otherMethod.isEmpty()) {
        done(Answer::text(notFound, QStringLiteral("There is nothing at %1").arg(QString::fromUtf8(request.path))));
        return;
    }
    Answer answer = Answer::text(
        methodNotAllowed,
        QStringLiteral("%1 takes %2 only").arg(QString::fromUtf8(request.path), QString::fromLatin1(otherMethod)));
    answer.headers.emplaceBack(QByteArrayLiteral("Allow"), otherMethod);
    done(answer);
}

void Endpoints::_ask(const Endpoint& endpoint, const Request& request, const QList<QString>& parts,
                     const Done& done) const
{
    try {
        endpoint.handler(request, parts, done);
    } catch (const ContentFault& fault) {
        const QString text = QString::fromUtf8(fault.what());
        if (_faultFound) {
            _faultFound(text);
        }
        done(Answer::text(internalServerError, text));
    }
}

} // namespace kovalin::backend
