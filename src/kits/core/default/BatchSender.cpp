#include "kits/core/default/BatchSender.h"

#include "kits/core/default/RetryAfter.h"
#include "platform/foundation/Clock.h"
#include "platform/net/UrlSession.h"

#include <utility>

namespace kovalin::kits {

namespace {

constexpr int httpRequestTimeout = 408;
constexpr int httpTooManyRequests = 429;

SendOutcome::Kind kindOf(int statusCode)
{
    const int family = statusCode / 100;
    if (family == 2) {
        return SendOutcome::Kind::Arrived;
    }
    if (family == 4 && statusCode != httpRequestTimeout && statusCode != httpTooManyRequests) {
        return SendOutcome::Kind::Refused;
    }
    return SendOutcome::Kind::Failed;
}

} // namespace

SendOutcome outcomeOf(const QUrl& asked, const std::optional<platform::UrlResponse>& response,
                      const std::optional<platform::UrlError>& error, qint64 now)
{
    if (error || !response) {
        return {.reason = error ? error->text : QString()};
    }
    if (response->url != asked) {
        return {.reason = QStringLiteral("The answer came from %1").arg(response->url.toDisplayString())};
    }
    SendOutcome outcome{.kind = kindOf(response->statusCode)};
    if (outcome.kind != SendOutcome::Kind::Arrived) {
        outcome.reason =
            QStringLiteral("%1 answered %2").arg(asked.toDisplayString(), QString::number(response->statusCode));
    }
    if (outcome.kind == SendOutcome::Kind::Failed) {
        outcome.retryAfter =
            retryAfterIn(response->header(QByteArrayLiteral("Retry-After")).value_or(QByteArray()), now);
    }
    return outcome;
}

BatchSender::~BatchSender()
{
    cancel();
}

void BatchSender::send(platform::UrlRequest request, Completion completion)
{
    cancel();
    const QUrl asked = request.url;
    _task = platform::UrlSession::shared().dataTask(
        std::move(request), [asked, completion = std::move(completion)](
                                const QByteArray&, const std::optional<platform::UrlResponse>& response,
                                const std::optional<platform::UrlError>& error) {
            completion(outcomeOf(asked, response, error, platform::currentTimeMillis()));
        });
    _task->resume();
}

void BatchSender::cancel()
{
    if (const auto task = std::exchange(_task, nullptr)) {
        task->cancel();
    }
}

} // namespace kovalin::kits
