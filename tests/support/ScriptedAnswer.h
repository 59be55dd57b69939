#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>

#include <cstddef>
#include <optional>
#include <utility>

namespace kovalin::test {

using HttpHeaders = QList<std::pair<QByteArray, QByteArray>>;

/// A request as it arrived.
struct ReceivedRequest {
    QByteArray method;
    QByteArray target; // as sent: path and query, percent-encoded
    HttpHeaders headers = {};
    QByteArray body = {};
    std::size_t connection = 0; // counted from 0

    /// The value of the header `name`, whatever the case of either; absent if there is none.
    [[nodiscard]] std::optional<QByteArray> header(const QByteArray& name) const;
};

/// What the server does with a request.
struct ScriptedAnswer {
    /// What the connection does once `sentBytes` of the body are out.
    enum class End { KeepAlive, Close, Silence };
    /// Where the answer stops until `LoopbackServer::release`.
    enum class Hold { Never, BeforeHead, BeforeBody, MidBody };

    int status = 200;
    HttpHeaders headers = {}; // "Content-Length" is added unless it stands here
    QByteArray body = {};
    bool hasLength = true;
    std::optional<QByteArray> raw = std::nullopt;      // goes out instead of a head and a body
    std::optional<qsizetype> sentBytes = std::nullopt; // how much of the body goes out, if not all
    End end = End::KeepAlive;
    Hold hold = Hold::Never;

    /// Status line and headers, with the empty line behind them.
    [[nodiscard]] QByteArray head() const;

    [[nodiscard]] static ScriptedAnswer ok(QByteArray body);
    [[nodiscard]] static ScriptedAnswer withStatus(int status, QByteArray body = {});
    [[nodiscard]] static ScriptedAnswer redirect(QByteArray location, int status = 302);
    /// Announces all of `body`, sends `sentBytes` of it and closes.
    [[nodiscard]] static ScriptedAnswer cut(QByteArray body, qsizetype sentBytes);
    /// `bytes` as they are, then the connection closes.
    [[nodiscard]] static ScriptedAnswer garbage(QByteArray bytes);
    /// Reads the request and closes.
    [[nodiscard]] static ScriptedAnswer closed();
    /// Reads the request and says nothing, until the server's end.
    [[nodiscard]] static ScriptedAnswer never();
    /// An answer that stops at `hold` until the path is released.
    [[nodiscard]] static ScriptedAnswer held(QByteArray body, Hold hold = Hold::BeforeHead);
};

} // namespace kovalin::test
