#include "kovalin-backend/AnswerRule.h"

#include "kovalin-backend/FirstWord.h"

#include <QtCore/QList>

#include <array>
#include <limits>
#include <utility>

namespace kovalin::backend {

namespace {

using namespace std::chrono_literals;
using Kind = AnswerRule::Kind;

constexpr int lowestStatus = 200; // below it another answer has to follow
constexpr int highestStatus = 599;
constexpr std::chrono::milliseconds longestDelay = 24h;
constexpr qsizetype longestQuote = 80;

constexpr std::array<std::pair<QByteArrayView, Kind>, 5> rulesOfOneWord{{{"ok", Kind::Usual},
                                                                         {"garbage", Kind::Garbage},
                                                                         {"cut", Kind::Cut},
                                                                         {"nothing", Kind::Nothing},
                                                                         {"refuse", Kind::Refuse}}};

std::optional<int> numberIn(const QByteArray& text, int lowest, int highest)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    const bool hasDigitsOnly = !text.startsWith('+') && !text.startsWith('-');
    return isNumber && hasDigitsOnly && number >= lowest && number <= highest ? std::optional(number) : std::nullopt;
}

QString quoted(QByteArrayView text)
{
    return u'"' + QString::fromUtf8(text.first(std::min(text.size(), longestQuote))) + u'"';
}

std::optional<AnswerRule> ruleOf(const QList<QByteArray>& words)
{
    if (words.size() == 1) {
        for (const auto& [word, kind] : rulesOfOneWord) {
            if (words[0] == word) {
                return AnswerRule{.kind = kind};
            }
        }
    }
    if (words.size() == 2 && words[0] == "with") {
        return AnswerRule::withQuery(words[1]);
    }
    if (words.size() == 2 && words[0] == "delay") {
        const auto delay = numberIn(words[1], 0, static_cast<int>(longestDelay.count()));
        return delay ? std::optional(AnswerRule::delayed(std::chrono::milliseconds(*delay))) : std::nullopt;
    }
    const auto status = numberIn(words.value(0), lowestStatus, highestStatus);
    if (!status || (words.size() != 1 && words.size() != 3)) {
        return std::nullopt;
    }
    if (words.size() == 1) {
        return AnswerRule::withStatus(*status);
    }
    const auto seconds = numberIn(words[2], 0, std::numeric_limits<int>::max());
    return words[1] == "retry-after" && seconds ? std::optional(AnswerRule::withStatus(*status, seconds))
                                                : std::nullopt;
}

} // namespace

AnswerRule AnswerRule::withStatus(int status, std::optional<int> retryAfterSeconds)
{
    return {.kind = Kind::Status, .status = status, .retryAfterSeconds = retryAfterSeconds};
}

AnswerRule AnswerRule::delayed(std::chrono::milliseconds delay)
{
    return {.kind = Kind::Delay, .delay = delay};
}

AnswerRule AnswerRule::withQuery(QByteArray query)
{
    return {.kind = Kind::With, .query = std::move(query)};
}

AnswerRule AnswerRule::withBody(QByteArray json)
{
    return {.kind = Kind::Body, .body = std::move(json)};
}

std::variant<AnswerRule, QString> AnswerRule::fromText(QByteArrayView text)
{
    const auto [word, rest] = firstWord(text.toByteArray());
    if (word == "body" && !rest.isEmpty()) {
        return withBody(rest);
    }
    if (auto rule = ruleOf(text.toByteArray().simplified().split(' '))) {
        return *rule;
    }
    return quoted(text) +
           QStringLiteral(" is no rule: ok, a status from 200 to 599 with or without retry-after SECONDS, "
                          "delay MS up to a day, with QUERY, body JSON, garbage, cut, nothing or refuse");
}

std::variant<PathRule, QString> PathRule::fromText(QByteArrayView text)
{
    const auto [path, ruleText] = firstWord(text.toByteArray());
    if (!path.startsWith('/') || path.contains('?')) {
        return quoted(path) + QStringLiteral(" is no path: it begins with \"/\" and has no \"?\"");
    }
    auto rule = AnswerRule::fromText(ruleText);
    if (auto* fault = std::get_if<QString>(&rule)) {
        return std::move(*fault);
    }
    return PathRule{path, std::get<AnswerRule>(rule)};
}

} // namespace kovalin::backend
