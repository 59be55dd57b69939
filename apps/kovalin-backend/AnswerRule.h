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

    /// "ok", "503", "503 retry-after 7", "delay 250", "garbage", "cut", "nothing" or "refuse"; what is wrong with it
    /// otherwise.
    [[nodiscard]] static std::variant<AnswerRule, QString> fromText(QByteArrayView text);

    [[nodiscard]] static AnswerRule withStatus(int status, std::optional<int> retryAfterSeconds = std::nullopt);
    [[nodiscard]] static AnswerRule delayed(std::chrono::milliseconds delay);

    friend bool operator==(const AnswerRule&, const AnswerRule&) = default;
};

/// A path with its rule.
struct PathRule {
    /// As in a request before "?"; with "*" at its end it means all paths that begin so.
    QByteArray path;
    AnswerRule rule;

    /// "PATH RULE", as "/api/configs 503"; what is wrong with it otherwise, in one line.
    [[nodiscard]] static std::variant<PathRule, QString> fromText(QByteArrayView text);
};

} // namespace kovalin::backend
