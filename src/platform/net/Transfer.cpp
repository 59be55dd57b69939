#include "platform/net/Transfer.h"

#include "platform/net/OneWayBody.h"
#include "platform/net/Redirect.h"

#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QNetworkRequest>

#include <algorithm>
#include <chrono>
#include <utility>
#include <variant>

namespace kovalin::platform {

namespace {

constexpr int kMostRedirects = 20;

// QTimer counts milliseconds in an int.
constexpr std::chrono::milliseconds kLongestTimeout = std::chrono::days(24);

// What is taken off a reply at once, so that a body that unpacks to gigabytes is met in pieces and given up in time.
constexpr qsizetype kPieceBytes = qsizetype(64) * 1024;

// What Qt may hold of a body before it stops reading from the server: a handler that blocks doesn't fill the memory.
constexpr qint64 kReadAheadBytes = qint64(1024) * 1024;

// Whether there is an answer, though Qt calls some an error.
bool isAnswer(QNetworkReply::NetworkError error, int statusCode)
{
    switch (error) {
    case QNetworkReply::NoError:
        return true;
    case QNetworkReply::ContentReSendError:
        // For these Qt wants the body back at its start, which ours refuses, before it hands out the redirect.
        return statusCode == 307 || statusCode == 308;
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::ProxyAuthenticationRequiredError:
        return statusCode >= 400;
    default:
        // The errors that are named for what a server may answer.
        return statusCode >= 400 &&
               ((error >= QNetworkReply::ContentAccessDenied && error <= QNetworkReply::UnknownContentError) ||
                (error >= QNetworkReply::InternalServerError && error <= QNetworkReply::UnknownServerError));
    }
}

UrlError::Kind kindOf(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::ContentReSendError: // It broke, and a body isn't sent twice.
    case QNetworkReply::OperationCanceledError:
        return UrlError::Kind::ConnectionLost;
    case QNetworkReply::HostNotFoundError:
        return UrlError::Kind::HostNotFound;
    case QNetworkReply::TimeoutError:
        return UrlError::Kind::TimedOut;
    case QNetworkReply::SslHandshakeFailedError:
        return UrlError::Kind::TlsFailed;
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::UnknownNetworkError:
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyConnectionClosedError:
    case QNetworkReply::ProxyNotFoundError:
    case QNetworkReply::ProxyTimeoutError:
    case QNetworkReply::ProxyAuthenticationRequiredError:
    case QNetworkReply::UnknownProxyError:
        return UrlError::Kind::CannotConnect;
    default:
        return UrlError::Kind::Other;
    }
}

std::optional<qint64> announcedBytes(const QNetworkReply& reply)
{
    bool isNumber = false;
    const qint64 bytes = reply.rawHeader(QByteArrayLiteral("Content-Length")).toLongLong(&isNumber);
    return isNumber ? std::optional(bytes) : std::nullopt;
}

// Qt overlooks a cut when the end of the connection arrives together with the last bytes. What was packed can't be
// counted any more.
bool isCut(const QNetworkReply& reply, int statusCode, qsizetype received)
{
    const bool hasBody = statusCode != 204 && statusCode != 304;
    return hasBody && !reply.hasRawHeader(QByteArrayLiteral("Content-Encoding")) &&
           announcedBytes(reply).value_or(0) > received;
}

TransferOutcome failure(UrlError::Kind kind, const QString& text)
{
    return {.error = UrlError{kind, text}};
}

} // namespace

Transfer::Transfer(QNetworkAccessManager& manager, std::optional<QSslConfiguration> tls, UrlRequest request)
    : _manager(manager)
    , _tls(std::move(tls))
    , _request(std::move(request))
{
    _idleTimer.setSingleShot(true);
    _idleTimer.setInterval(std::clamp(_request.idleTimeout, std::chrono::milliseconds(1), kLongestTimeout));
    connect(&_idleTimer, &QTimer::timeout, this, [this] {
        end(failure(UrlError::Kind::TimedOut,
                    QStringLiteral("Nothing came from %1 for %2 ms")
                        .arg(_request.url.toDisplayString(), QString::number(_idleTimer.interval()))));
    });
}

Transfer::~Transfer() = default;

void Transfer::start(std::function<void(TransferOutcome)> ended)
{
    _ended = std::move(ended);
    _send();
}

void Transfer::end(TransferOutcome outcome)
{
    if (const auto ended = std::exchange(_ended, nullptr)) {
        _idleTimer.stop();
        _dropReply();
        ended(std::move(outcome));
    }
}

void Transfer::_send()
{
    const QNetworkRequest request = _networkRequest();
    if (_request.method == UrlRequest::Method::Post) {
        auto* const body = new OneWayBody(_request.body, this);
        _reply = _manager.post(request, body);
        body->setParent(_reply);
    } else {
        _reply = _manager.get(request);
    }
    _reply->setReadBufferSize(kReadAheadBytes);
    connect(_reply, &QNetworkReply::metaDataChanged, this, &Transfer::_headCame);
    connect(_reply, &QNetworkReply::readyRead, this, &Transfer::_bytesCame);
    connect(_reply, &QNetworkReply::uploadProgress, &_idleTimer, [this] { _idleTimer.start(); });
    connect(_reply, &QNetworkReply::finished, this, &Transfer::_replyEnded);
    _idleTimer.start();
}

QNetworkRequest Transfer::_networkRequest() const
{
    QNetworkRequest request(_request.url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    if (_tls) {
        request.setSslConfiguration(*_tls);
    }
    if (_request.method == UrlRequest::Method::Post) {
        request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/x-www-form-urlencoded"));
        // Both keep Qt from reading the body into a buffer of its own, which could be sent again.
        request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
        request.setHeader(QNetworkRequest::ContentLengthHeader, _request.body.size());
    }
    for (const auto& [name, value] : _request.headers) {
        request.setRawHeader(name, value);
    }
    return request;
}

void Transfer::_headCame()
{
    _idleTimer.start();
    const std::optional<qint64> announced = announcedBytes(*_reply);
    if (announced > _request.maxAnswerBytes) {
        end(failure(UrlError::Kind::TooLarge, QStringLiteral("The answer of %1 has %2 bytes, more than %3")
                                                  .arg(_request.url.toDisplayString())
                                                  .arg(*announced)
                                                  .arg(_request.maxAnswerBytes)));
    }
}

void Transfer::_bytesCame()
{
    _idleTimer.start();
    while (_reply != nullptr && _reply->bytesAvailable() > 0) {
        const QByteArray piece = _reply->read(kPieceBytes);
        if (piece.isEmpty()) {
            return;
        }
        if (piece.size() > _request.maxAnswerBytes - _data.size()) {
            end(failure(UrlError::Kind::TooLarge, QStringLiteral("The answer of %1 has more than %2 bytes")
                                                      .arg(_request.url.toDisplayString())
                                                      .arg(_request.maxAnswerBytes)));
            return;
        }
        _data += piece;
    }
}

void Transfer::_replyEnded()
{
    _bytesCame();
    if (_reply == nullptr) {
        return; // The last bytes were too many.
    }
    const int statusCode = _reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (!isAnswer(_reply->error(), statusCode)) {
        end(failure(kindOf(_reply->error()),
                    QStringLiteral("%1: %2").arg(_request.url.toDisplayString(), _reply->errorString())));
        return;
    }
    const QByteArray location = _reply->rawHeader(QByteArrayLiteral("Location"));
    if (isRedirectStatus(statusCode) && !location.isEmpty()) {
        _follow(statusCode, location);
        return;
    }
    if (isCut(*_reply, statusCode, _data.size())) {
        end(failure(UrlError::Kind::ConnectionLost,
                    QStringLiteral("%1: The connection closed before the end of the answer")
                        .arg(_request.url.toDisplayString())));
        return;
    }
    UrlResponse response{.statusCode = statusCode, .headers = _reply->rawHeaderPairs(), .url = _request.url};
    end({.data = std::move(_data), .response = std::move(response)});
}

void Transfer::_follow(int statusCode, const QByteArray& location)
{
    auto next = followRedirect(std::move(_request), statusCode, location);
    if (const auto* const error = std::get_if<UrlError>(&next)) {
        end({.error = *error});
        return;
    }
    _request = std::get<UrlRequest>(std::move(next));
    if (++_redirects > kMostRedirects) {
        end(failure(UrlError::Kind::TooManyRedirects,
                    QStringLiteral("More than %1 redirects, the last to %2")
                        .arg(QString::number(kMostRedirects), _request.url.toDisplayString())));
        return;
    }
    _dropReply();
    _data.clear();
    _send();
}

void Transfer::_dropReply()
{
    if (QNetworkReply* const reply = std::exchange(_reply, nullptr)) {
        // Nothing of it is heard any more, not even the end that abort() tells at once.
        reply->disconnect(this);
        reply->disconnect(&_idleTimer);
        reply->abort();
        // We may be inside of one of its signals.
        reply->deleteLater();
    }
}

} // namespace kovalin::platform
