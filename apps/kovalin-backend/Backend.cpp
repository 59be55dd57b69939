#include "kovalin-backend/Backend.h"

#include "kovalin-backend/BackendServer.h"
#include "platform/dispatch/ThreadQueue.h"

#include <QtNetwork/QSslConfiguration>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <utility>

namespace kovalin::backend {

namespace {

/// Runs `job` on `queue` and returns once it has run, or was dropped since the application object is gone.
void runOn(platform::ThreadQueue& queue, const std::function<void()>& job)
{
    struct End {
        std::mutex mutex;
        std::condition_variable changed;
        bool isReached = false;
    };
    const auto end = std::make_shared<End>();
    // Goes with the job, whatever becomes of it.
    std::shared_ptr<void> token(nullptr, [end](void*) {
        const std::lock_guard lock(end->mutex);
        end->isReached = true;
        end->changed.notify_all();
    });
    queue.async([job, token = std::move(token)] { job(); });
    std::unique_lock lock(end->mutex);
    end->changed.wait(lock, [&end] { return end->isReached; });
}

std::shared_ptr<const ContentFolder> contentIn(const QString& folder)
{
    try {
        return std::make_shared<const ContentFolder>(folder);
    } catch (const ContentFault& fault) {
        throw BackendError(fault.what());
    }
}

} // namespace

struct Backend::State {
    using Server = std::shared_ptr<std::unique_ptr<BackendServer>>;

    explicit State(std::chrono::seconds accessTokenLife)
        : records(std::make_shared<BackendRecords>(accessTokenLife))
    {
    }

    /// Runs jobs on the queue as long as there is one.
    [[nodiscard]] PictureCache::Post post() const
    {
        return [weak = std::weak_ptr(queue)](std::function<void()> job) {
            if (const auto strong = weak.lock()) {
                strong->async(std::move(job));
            }
        };
    }

    const std::shared_ptr<BackendRecords> records;
    const Server server = std::make_shared<std::unique_ptr<BackendServer>>(); // what it holds: the queue's thread only
    const std::shared_ptr<platform::ThreadQueue> queue = std::make_shared<platform::ThreadQueue>(
        QStringLiteral("Backend"),
        platform::ThreadQueueEvents{.applicationWillEnd = {}, .threadWillEnd = [server = server] {
                                        server->reset();
                                    }});
    QUrl baseUrl;
};

Backend::Backend(BackendOptions options)
    : _state(std::make_unique<State>(options.accessTokenLife))
{
    const auto content = contentIn(options.contentFolder);
    for (const PathRule& rule : options.answers) {
        _state->records->rules.set(rule);
    }
    // Qt's HTTP server loads the TLS library, which keeps memory for the thread that does so. Not for ours: a thread
    // is still giving up such memory when Qt already calls it ended, and a program that ends then would leak it.
    static_cast<void>(QSslConfiguration::defaultConfiguration());
    QString fault;
    runOn(*_state->queue, [this, &options, &content, &fault] {
        *_state->server = std::make_unique<BackendServer>(_state->records, std::move(options.events), _state->post());
        fault = (*_state->server)->start(content, options.port);
        _state->baseUrl = (*_state->server)->baseUrl();
    });
    if (!fault.isEmpty()) {
        throw BackendError(QStringLiteral("port %1: %2").arg(options.port).arg(fault).toStdString());
    }
}

Backend::~Backend()
{
    runOn(*_state->queue, [server = _state->server] { server->reset(); });
}

QUrl Backend::baseUrl() const
{
    return _state->baseUrl;
}

QUrl Backend::url(const QString& path) const
{
    return QUrl(_state->baseUrl.toString() + path);
}

void Backend::setAnswer(const PathRule& rule)
{
    _state->records->rules.set(rule);
    _state->queue->async([server = _state->server] {
        if (*server) {
            (*server)->rulesChanged();
        }
    });
}

std::vector<Request> Backend::requests() const
{
    return _state->records->requests.requests();
}

void Backend::waitForRequests(std::size_t count) const
{
    _state->records->requests.waitFor(count);
}

TakenMetrics Backend::metrics() const
{
    return _state->records->metrics.taken();
}

TakenEvents Backend::events() const
{
    return _state->records->events.taken();
}

void Backend::expireAccessTokens()
{
    _state->records->grants.expireAccessTokens();
}

} // namespace kovalin::backend
