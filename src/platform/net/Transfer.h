#pragma once

#include "platform/net/UrlError.h"
#include "platform/net/UrlRequest.h"
#include "platform/net/UrlResponse.h"

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtNetwork/QSslConfiguration>

#include <functional>
#include <optional>

QT_BEGIN_NAMESPACE
class QNetworkAccessManager;
class QNetworkReply;
class QNetworkRequest;
QT_END_NAMESPACE

namespace kovalin::platform {

/// What a transfer ends with: an error, or data and response.
struct TransferOutcome {
    QByteArray data = {};
    std::optional<UrlResponse> response = std::nullopt;
    std::optional<UrlError> error = std::nullopt;
};

/// One request on its way, through all its redirects. Private to this folder; the session's thread only.
class Transfer final : public QObject {
public:
    Transfer(QNetworkAccessManager& manager, std::optional<QSslConfiguration> tls, UrlRequest request);
    ~Transfer() override;

    /// Sends the request. `ended` is called once, later on or out of `end`; the transfer may then be deleted with
    /// `deleteLater`.
    void start(std::function<void(TransferOutcome)> ended);

    /// Breaks off and ends with `outcome`. Does nothing when it has ended.
    void end(TransferOutcome outcome);

private:
    void _send();
    [[nodiscard]] QNetworkRequest _networkRequest() const;
    void _headCame();
    void _bytesCame();
    void _replyEnded();
    void _follow(int statusCode, const QByteArray& location);
    void _dropReply();

    QNetworkAccessManager& _manager;
    const std::optional<QSslConfiguration> _tls;
    UrlRequest _request;                         // that of the last redirect
    std::function<void(TransferOutcome)> _ended; // null once called
    QNetworkReply* _reply = nullptr;
    QTimer _idleTimer;
    QByteArray _data;
    int _redirects = 0;
};

} // namespace kovalin::platform
