#include "content/QXSDKKovalinCache.h"

#include "content/ContentLog.h"
#include "kits/login/QXSDKLoginClient.h"
#include "platform/dispatch/SerialQueue.h"
#include "platform/foundation/Clock.h"
#include "platform/foundation/Guarded.h"
#include "platform/foundation/Log.h"
#include "platform/net/UrlSession.h"
#include "platform/store/DecodeImage.h"
#include "platform/store/ImageStore.h"
#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"

#include <QtCore/QHash>
#include <QtCore/QList>

#include <utility>

using namespace kovalin::platform;

namespace {

/// One download in twenty is measured.
constexpr float downloadSampleRate = 0.05F;
/// What a picture costs of the memory level's limit, which so is a count.
constexpr qsizetype costOfAnImage = 1;
/// A sticker has some ten kilobytes; an answer above this is no sticker, and fails.
constexpr qsizetype maxPictureBytes = qsizetype(16) * 1024 * 1024;

QString absoluteString(const QUrl& url)
{
    return QString::fromLatin1(url.toEncoded());
}

} // namespace

QXSDKKovalinCacheActionObserver::~QXSDKKovalinCacheActionObserver() = default;

class QXSDKKovalinCache::State final : public std::enable_shared_from_this<State> {
public:
    State(const std::shared_ptr<PINCache>& cache, QXSDKKovalinOperationalMetricsLogger& metricsLogger,
          const std::shared_ptr<QXSDKKovalinCacheActionObserver>& observer)
        : _cache(cache)
        , _observer(observer)
        , _metricsLogger(metricsLogger)
    {
    }

    void fetch(const QUrl& url, const KovalinImageCallbackPtr& completion)
    {
        queue.assertOnQueue();
        if (const auto waiting = _callbacks.find(url); waiting != _callbacks.end()) {
            join(*waiting, url, completion);
            return;
        }
        const QString key = absoluteString(url);
        if (const QImage image = _cache->objectForKey(key); !image.isNull()) {
            (*completion)(image);
            _metricsLogger.addCount(1, QStringLiteral("imageload:solovalin"));
            return;
        }
        // As it has always been spelled: whoever searches logs knows it so.
        KOVALIN_LOG_DEBUG(kovalinContent, QStringLiteral("Kovalin does not exist in cache, fething ") + key);
        _callbacks.insert(url, {completion});
        download(url);
    }

    void cancel(const KovalinImageCallbackPtr& completion, const QUrl& url)
    {
        queue.assertOnQueue();
        const auto waiting = _callbacks.find(url);
        if (waiting == _callbacks.end()) {
            return;
        }
        waiting->removeOne(completion);
        if (_observer) {
            _observer->kovalinCacheDidRemoveCallback(completion, url);
        }
        if (!waiting->isEmpty()) {
            return;
        }
        KOVALIN_LOG_DEBUG(kovalinContent, QStringLiteral("Cancelling request for ") + absoluteString(url));
        _callbacks.erase(waiting);
        // The entry goes when the task has ended.
        if (const auto task = _tasks.with([&url](const Tasks& tasks) { return tasks.value(url); })) {
            task->cancel();
        }
    }

    void clear()
    {
        queue.assertOnQueue();
        _cache->removeAllObjects();
    }

    SerialQueue queue{QStringLiteral("com.vole.connect.QXSDKKovalinCache")};

private:
    /// Each once, in the order in which they came.
    using Callbacks = QList<KovalinImageCallbackPtr>;
    using Tasks = QHash<QUrl, std::shared_ptr<DataTask>>;

    void join(Callbacks& waiting, const QUrl& url, const KovalinImageCallbackPtr& completion)
    {
        KOVALIN_LOG_DEBUG(kovalinContent,
                          QStringLiteral("Adding request for %1 to callback set").arg(absoluteString(url)));
        if (!waiting.contains(completion)) {
            waiting.append(completion);
        }
        if (_observer) {
            _observer->kovalinCacheDidAddCallback(completion, url);
        }
    }

    void download(const QUrl& url)
    {
        const double start = currentTimeSeconds();
        const auto task =
            UrlSession::shared().dataTask({.url = url, .maxAnswerBytes = maxPictureBytes},
                                          [weakSelf = weak_from_this(), url,
                                           start](const QByteArray& data, const std::optional<UrlResponse>& response,
                                                  const std::optional<UrlError>& error) {
                                              if (const auto self = weakSelf.lock()) {
                                                  self->downloadDidEnd(url, start, data, response, error);
                                              }
                                          });
        _tasks.with([&](Tasks& tasks) { tasks.insert(url, task); });
        task->resume();
    }

    /// On the session's thread.
    void downloadDidEnd(const QUrl& url, double start, const QByteArray& data,
                        const std::optional<UrlResponse>& response, const std::optional<UrlError>& error)
    {
        // The last reference to the task must not go under the mutex.
        static_cast<void>(_tasks.with([&url](Tasks& tasks) { return tasks.take(url); }));
        if (response) {
            _metricsLogger.addCount(1, QStringLiteral("request:solovalin:") + QString::number(response->statusCode));
        }
        _metricsLogger.addLatencyFromTime(start, QStringLiteral("request:solovalin"), downloadSampleRate);
        _metricsLogger.addCount(1, QStringLiteral("imageload:solovalin"));
        if (error) {
            KOVALIN_LOG_WARNING(
                kovalinContent,
                QStringLiteral("Image download error for %1: %2").arg(absoluteString(url), error->text));
            _notifyDownloadFailureForURL(url);
            return;
        }
        queue.async([self = shared_from_this(), url, data] {
            const QImage image = decodeImage(data);
            self->_cache->setObject({image, data}, absoluteString(url), costOfAnImage);
            self->_notifyDownloadCompleteForURL(url, image);
        });
    }

    void _notifyDownloadFailureForURL(const QUrl& url) { _notifyDownloadCompleteForURL(url, {}); }

    /// Calls and drops those that wait.
    void _notifyDownloadCompleteForURL(const QUrl& url, const QImage& image)
    {
        queue.async([self = shared_from_this(), url, image] {
            for (const auto& callback : self->_callbacks.take(url)) {
                (*callback)(image);
            }
        });
    }

    const std::shared_ptr<PINCache> _cache;
    const std::shared_ptr<QXSDKKovalinCacheActionObserver> _observer;
    QXSDKKovalinOperationalMetricsLogger& _metricsLogger;
    QHash<QUrl, Callbacks> _callbacks; // the queue only; an entry stands for a download that is wanted
    Guarded<Tasks> _tasks;             // the queue puts them in, the session's thread takes them out
};

std::shared_ptr<QXSDKKovalinCache> QXSDKKovalinCache::shared()
{
    // Never destroyed, since queues may still run when statics are.
    static const auto& cache = *new auto([] {
        auto store = std::make_shared<ImageStore>(QStringLiteral("QXSDKKovalinKit"));
        store->diskCache().setByteLimit(kQXSDKKovalinDiskCacheByteLimit);
        store->memoryCache().setCostLimit(kQXSDKKovalinMemCacheMaxCount);
        return create(store, QXSDKKovalinOperationalMetricsLogger::shared(), nullptr);
    }());
    return cache;
}

std::shared_ptr<QXSDKKovalinCache>
QXSDKKovalinCache::create(const std::shared_ptr<PINCache>& cache, QXSDKKovalinOperationalMetricsLogger& metricsLogger,
                          const std::shared_ptr<QXSDKKovalinCacheActionObserver>& observer)
{
    const std::shared_ptr<QXSDKKovalinCache> made(
        new QXSDKKovalinCache(std::make_shared<State>(cache, metricsLogger, observer)));
    QXSDKLoginClient::addLoginStatusObserver(made);
    return made;
}

QXSDKKovalinCache::QXSDKKovalinCache(const std::shared_ptr<State>& state)
    : _state(state)
{
}

QXSDKKovalinCache::~QXSDKKovalinCache() = default;

void QXSDKKovalinCache::fetchKovalinWithURL(const QUrl& url, const KovalinImageCallbackPtr& completion)
{
    _state->queue.async([state = _state, url, completion] { state->fetch(url, completion); });
}

void QXSDKKovalinCache::cancelKovalinFetch(const KovalinImageCallbackPtr& completion, const QUrl& url)
{
    _state->queue.async([state = _state, url, completion] { state->cancel(completion, url); });
}

void QXSDKKovalinCache::qxsdkLoginDidUnlink()
{
    _clearCache();
}

void QXSDKKovalinCache::_clearCache()
{
    KOVALIN_LOG_DEBUG(kovalinContent, QStringLiteral("Clearing disk cache"));
    _state->queue.async([state = _state] { state->clear(); });
}
