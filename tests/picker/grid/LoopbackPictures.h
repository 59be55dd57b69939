#pragma once

#include "content/QXSDKKovalinCache.h"
#include "platform/store/ImageStore.h"
#include "support/LoopbackServer.h"
#include "support/RecordingMetricsQueue.h"
#include "support/SamplePictures.h"
#include "support/ScriptedLoginClient.h"
#include "support/WaitFor.h"
#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"

#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>

namespace kovalin::test {

/// A picture cache over a store of its own, and the server that it downloads from.
class LoopbackPictures final {
public:
    /// Counts who joins and leaves waiting for a picture.
    class Observer final : public QXSDKKovalinCacheActionObserver {
    public:
        void kovalinCacheDidAddCallback(const KovalinImageCallbackPtr&, const QUrl&) override { ++added; }
        void kovalinCacheDidRemoveCallback(const KovalinImageCallbackPtr&, const QUrl&) override { ++removed; }
        std::atomic<int> added = 0;
        std::atomic<int> removed = 0;
    };

    LoopbackPictures() { script("/drain", Qt::black); }
    ~LoopbackPictures()
    {
        cache.reset();
        // A job that the cache still has holds the observer, and uses the logger.
        EXPECT_TRUE(waitFor([this] { return observer.use_count() == 1; }));
    }
    LoopbackPictures(const LoopbackPictures&) = delete;
    LoopbackPictures& operator=(const LoopbackPictures&) = delete;

    [[nodiscard]] QUrl url(const char* path) const { return server.url(QString::fromLatin1(path)); }

    /// Has the server answer with a picture of one colour, or hold that answer until `server.release`. A path without a
    /// script gives no picture.
    void script(const char* path, const QColor& color, QSize size = QSize(16, 16))
    {
        server.script(path, ScriptedAnswer::ok(encoded(plain(color, size))));
    }
    void hold(const char* path, const QColor& color)
    {
        server.script(path, ScriptedAnswer::held(encoded(plain(color))));
    }

    /// How often the path was asked for.
    [[nodiscard]] qsizetype requestsOf(const char* path) const
    {
        const auto requests = server.requests();
        return std::ranges::count_if(requests, [&](const ReceivedRequest& request) { return request.target == path; });
    }

    /// The cache has done what it was given so far, and the main queue what came of that.
    void drain() const
    {
        std::atomic<bool> isDone = false;
        cache->fetchKovalinWithURL(url("/drain"),
                                   std::make_shared<const KovalinImageCallback>([&](const QImage&) { isDone = true; }));
        ASSERT_TRUE(waitFor([&] { return isDone.load(); }));
        drainMainQueue();
    }

    /// Blocks until the cache has called those who wait for the picture by now, while the main queue stands still.
    class Joined final {
    public:
        Joined(const LoopbackPictures& pictures, const char* path)
        {
            pictures.cache->fetchKovalinWithURL(pictures.url(path),
                                                std::make_shared<const KovalinImageCallback>(
                                                    [isCalled = _isCalled](const QImage&) { isCalled->store(true); }));
        }
        void wait() const
        {
            while (!_isCalled->load()) {
                std::this_thread::yield();
            }
        }

    private:
        std::shared_ptr<std::atomic<bool>> _isCalled = std::make_shared<std::atomic<bool>>(false);
    };

    LoopbackServer server;
    const std::shared_ptr<Observer> observer = std::make_shared<Observer>();

private:
    InstalledLoginClient _login;
    InstalledMetricsQueue _metrics;
    QTemporaryDir _folder;
    const std::unique_ptr<QXSDKKovalinOperationalMetricsLogger> _logger =
        std::make_unique<QXSDKKovalinOperationalMetricsLogger>(QStringLiteral("1.2.3"));

public:
    std::shared_ptr<QXSDKKovalinCache> cache = QXSDKKovalinCache::create(
        std::make_shared<platform::ImageStore>(QStringLiteral("pictures"), _folder.path()), *_logger, observer);
};

/// What a fixture of views derives from first, since its views hold the cache.
struct WithLoopbackPictures {
    LoopbackPictures pictures;
};

} // namespace kovalin::test
