#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayView>
#include <QtCore/QString>

#include <chrono>
#include <optional>
#include <variant>

namespace kovalin::backend {

/// How the server answers at a path. A value.
struct AnswerRule {
    enum class Kind {
        Usual,   ///< As if there were no rule.
        Status,  ///< With a status of its own.
        Delay,   ///< As usual, but later.
        With,    ///< As usual to a request with more in its query.
        Body,    ///< 200 and a JSON document of its own.
        Garbage, ///< 200 and bytes that are neither JSON nor a model, all of them.
        Cut,     ///< Announces the usual answer whole, sends the first half of it and closes.
        Nothing, ///< Reads the request and stays silent; once the path has another rule, that one answers.
        Refuse,  ///< Reads the request and closes.
    };

    Kind kind = Kind::Usual;

    /// Of `Status` only: 200 to 599, and the seconds of a "Retry-After".
    int status = 0;
    std::optional<int> retryAfterSeconds = std::nullopt;

    /// Of `Delay` only: at most a day.
    std::chrono::milliseconds delay = {};

    /// Of `With` only: what stands before the request's own query, percent-encoded, so that it counts for a name in both.
    QByteArray query = {};

    /// Of `Body` only.
    QByteArray body = {};

    /// "ok", "503", "503 retry-after 7", "delay 250", "with auto=deny", "body {}", "garbage", "cut", "nothing" or "refuse"; what
    /// is wrong with it otherwise. A body is all that follows, whatever it is.
    [[nodiscard]] static std::variant<AnswerRule, QString> fromText(QByteArrayView text);

    [[nodiscard]] static AnswerRule withStatus(int status, std::optional<int> retryAfterSeconds = std::nullopt);
    [[nodiscard]] static AnswerRule delayed(std::chrono::milliseconds delay);
    [[nodiscard]] static AnswerRule withQuery(QByteArray query);
    [[nodiscard]] static AnswerRule withBody(QByteArray json);

    friend bool operator==(const AnswerRule&, const AnswerRule&) = default;
};

/// A path with its rule.
struct PathRule {
    /// As in a request before "?"; with "*" at its end it means all paths that begin so. "/api/graphql#packs" means one of the
    /// queries there: "avatar", "packs" or "users".
    QByteArray path;
    AnswerRule rule;

    /// "PATH RULE", as "/api/configs 503"; what is wrong with it otherwise, in one line.
    [[nodiscard]] static std::variant<PathRule, QString> fromText(QByteArrayView text);
};

} // namespace kovalin::backend
