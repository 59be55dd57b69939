#pragma once

#include "platform/net/DataTask.h"
#include "platform/net/UrlRequest.h"

#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtCore/QtGlobal>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace kovalin::kits {

/// What became of a batch that was posted.
struct SendOutcome {
    enum class Kind {
        Arrived, ///< A status of 2xx.
        Refused, ///< A status of 4xx but 408 and 429: the same would be refused again.
        Failed,  ///< Everything else: it may go well later.
    };

    Kind kind = Kind::Failed;
    /// What the server asked for, in a failure.
    std::optional<std::chrono::milliseconds> retryAfter = std::nullopt;
    /// For logs; empty when it arrived.
    QString reason = {};
};

/// What the end of a request to `asked` means, `now` in milliseconds since 1970. An answer that came from elsewhere is a failure
/// whatever its status: it is the page of a network that wants a login first. Any thread.
[[nodiscard]] SendOutcome outcomeOf(const QUrl& asked, const std::optional<platform::UrlResponse>& response,
                                    const std::optional<platform::UrlError>& error, qint64 now);

/// Posts one request at a time. One thread.
class BatchSender final {
public:
    using Completion = std::function<void(const SendOutcome& outcome)>;

    BatchSender() = default;
    /// Cancels.
    ~BatchSender();
    Q_DISABLE_COPY_MOVE(BatchSender)

    /// The completion is called once, on the thread of the shared session, also for a request that is cancelled; only where
    /// there is no application object any more it isn't. An earlier request is cancelled.
    void send(platform::UrlRequest request, Completion completion);

    void cancel();

private:
    std::shared_ptr<platform::DataTask> _task;
};

} // namespace kovalin::kits
