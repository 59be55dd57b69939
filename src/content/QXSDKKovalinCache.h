#pragma once

#include "content/QXSDKKovalinCacheActionObserver.h"
#include "kits/login/QXSDKLoginStatusObserver.h"

#include <QtCore/QUrl>

#include <memory>

class QXSDKKovalinOperationalMetricsLogger;

namespace kovalin::platform {
class PINCache;
} // namespace kovalin::platform

/// The pictures of stickers by their address: from memory, from disk, or downloaded. All who want one picture at a time wait for one
/// download, which lives as long as anybody wants it.
///
/// Any thread. Lifetime: may go at any time; the callbacks of downloads under way are never called then.
class QXSDKKovalinCache final : public QXSDKLoginStatusObserver {
public:
    /// The size of the disk level.
    static constexpr qint64 kQXSDKKovalinDiskCacheByteLimit = 50LL * 1024 * 1024;
    /// How many pictures the memory level holds.
    static constexpr qsizetype kQXSDKKovalinMemCacheMaxCount = 50;

    /// The instance of the process, made on first use and never destroyed, over the store "QXSDKKovalinKit" in the caches directory.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinCache> shared();

    /// A cache over a store, told of the login status. The logger must outlive it and the jobs that it was given, which
    /// hold `observer`; that one may be null.
    [[nodiscard]] static std::shared_ptr<QXSDKKovalinCache>
    create(const std::shared_ptr<kovalin::platform::PINCache>& cache,
           QXSDKKovalinOperationalMetricsLogger& metricsLogger,
           const std::shared_ptr<QXSDKKovalinCacheActionObserver>& observer);
    ~QXSDKKovalinCache() override;
    Q_DISABLE_COPY_MOVE(QXSDKKovalinCache)

    /// Gets the picture. The callback, known by its pointer, which must not be null, runs on the cache's queue, which it must not
    /// block: exactly once, or never after it was cancelled. A picture that can't be had, or has more than 16 MiB, is null.
    void fetchKovalinWithURL(const QUrl& url, const KovalinImageCallbackPtr& completion);

    /// Takes the callback away from those that wait for the picture; nothing where it doesn't wait. The last one to leave ends
    /// the download.
    void cancelKovalinFetch(const KovalinImageCallbackPtr& completion, const QUrl& url);

    /// Empties the store. Downloads under way go on, and are stored.
    void qxsdkLoginDidUnlink() override;

private:
    class State;

    explicit QXSDKKovalinCache(const std::shared_ptr<State>& state);
    void _clearCache();

    const std::shared_ptr<State> _state;
};
