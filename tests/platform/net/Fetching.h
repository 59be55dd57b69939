#pragma once

#include "platform/net/UrlSession.h"

#include <QtCore/QByteArray>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace kovalin::test {

/// What a task ended with.
struct TaskEnd {
    QByteArray data;
    std::optional<platform::UrlResponse> response;
    std::optional<platform::UrlError> error;

    /// The kind of the error's name, or "" where there is none.
    [[nodiscard]] std::string kind() const { return error ? platform::nameOf(error->kind) : ""; }
    [[nodiscard]] int status() const { return response ? response->statusCode : 0; }
};

/// Takes the end of one task and counts how often it came. Copies share it. Any thread.
class TaskEndBox final {
public:
    [[nodiscard]] platform::DataHandler handler() const
    {
        return [shared = _shared](const QByteArray& data, const std::optional<platform::UrlResponse>& response,
                                  const std::optional<platform::UrlError>& error) {
            const std::lock_guard lock(shared->mutex);
            shared->end = {data, response, error};
            ++shared->count;
            shared->changed.notify_all();
        };
    }

    /// Blocks until the task has ended.
    [[nodiscard]] TaskEnd wait() const
    {
        std::unique_lock lock(_shared->mutex);
        _shared->changed.wait(lock, [this] { return _shared->count > 0; });
        return _shared->end;
    }

    [[nodiscard]] int count() const
    {
        const std::lock_guard lock(_shared->mutex);
        return _shared->count;
    }

private:
    struct Shared {
        std::mutex mutex;
        std::condition_variable changed;
        TaskEnd end;
        int count = 0;
    };

    std::shared_ptr<Shared> _shared = std::make_shared<Shared>();
};

/// Options of a session that no proxy in the environment disturbs.
[[nodiscard]] inline platform::UrlSessionOptions withoutProxy()
{
    return {.proxy = platform::UrlSessionOptions::Proxy::None};
}

/// Sends `request` and waits for the end.
[[nodiscard]] inline TaskEnd fetch(platform::UrlSession& session, platform::UrlRequest request)
{
    const TaskEndBox box;
    session.dataTask(std::move(request), box.handler())->resume();
    return box.wait();
}

} // namespace kovalin::test
