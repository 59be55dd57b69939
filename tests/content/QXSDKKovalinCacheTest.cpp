#include "content/QXSDKKovalinCache.h"

#include "platform/dispatch/ThreadCheck.h"
#include "platform/store/ImageStore.h"
#include "support/LoopbackServer.h"
#include "support/RecordingMetricsQueue.h"
#include "support/ScriptedLoginClient.h"
#include "support/WaitFor.h"
#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"

#include <QtCore/QBuffer>
#include <QtCore/QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <random>
#include <set>
#include <thread>

using namespace kovalin::platform;
using namespace kovalin::test;

namespace {

QByteArray png(QRgb color)
{
    QImage image(4, 4, QImage::Format_ARGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

/// A callback that counts its calls, and what they brought.
struct Waiter {
    std::atomic<int> calls = 0;
    std::atomic<int> pictures = 0;
    std::atomic<QRgb> color = 0;
    KovalinImageCallbackPtr callback = std::make_shared<const KovalinImageCallback>([this](const QImage& image) {
        EXPECT_FALSE(isMainThread());
        if (!image.isNull()) {
            ++pictures;
            color = image.pixel(0, 0);
        }
        ++calls;
    });

    [[nodiscard]] bool isCalled() const
    {
        return waitFor([this] { return calls > 0; });
    }
};

class RecordingActionObserver final : public QXSDKKovalinCacheActionObserver {
public:
    void kovalinCacheDidAddCallback(const KovalinImageCallbackPtr&, const QUrl&) override { ++added; }
    void kovalinCacheDidRemoveCallback(const KovalinImageCallbackPtr&, const QUrl&) override { ++removed; }
    std::atomic<int> added = 0;
    std::atomic<int> removed = 0;
};

class QXSDKKovalinCacheTest : public testing::Test {
protected:
    QXSDKKovalinCacheTest()
    {
        server.script("/red.png", ScriptedAnswer::ok(png(qRgb(255, 0, 0))));
        server.script("/held.png", ScriptedAnswer::held(png(qRgb(0, 0, 255))));
    }
    /// A job that a cache still has holds the observer, and uses the logger.
    ~QXSDKKovalinCacheTest() override
    {
        cache.reset();
        EXPECT_TRUE(waitFor([this] { return observer.use_count() == 1; }));
    }

    [[nodiscard]] std::shared_ptr<QXSDKKovalinCache> newCache() const
    {
        return QXSDKKovalinCache::create(std::make_shared<ImageStore>(QStringLiteral("pictures"), folder.path()),
                                         *logger, observer);
    }
    [[nodiscard]] QUrl url(const char* path) const { return server.url(QString::fromLatin1(path)); }

    /// The jobs that the cache was given so far have run.
    void drain() const
    {
        Waiter waiter;
        cache->fetchKovalinWithURL(url("/red.png"), waiter.callback);
        ASSERT_TRUE(waiter.isCalled());
    }
    /// Blocks until a store over the same files has the picture: it is written in the background.
    void waitForTheFile(const char* path) const
    {
        const QString key = url(path).toString();
        std::thread([&] {
            ImageStore store(QStringLiteral("pictures"), folder.path());
            while (store.objectForKey(key).isNull()) {
                std::this_thread::yield();
            }
        }).join();
    }
    /// How often was counted under the name, after a flush.
    qint64 counted(const QString& name)
    {
        const auto marks = [this] {
            return std::ranges::count_if(
                metrics->counts(), [](const auto& count) { return count.first.endsWith(QStringLiteral(":mark")); });
        };
        const auto before = marks();
        logger->pushToQueue();
        logger->addCount(1, QStringLiteral("mark"));
        logger->pushToQueue();
        EXPECT_TRUE(waitFor([&] { return marks() > before; }));
        qint64 sum = 0;
        for (const auto& [full, count] : metrics->counts()) {
            sum += full.endsWith(QStringLiteral(":kovalin:") + name) ? count : 0;
        }
        return sum;
    }

    /// Holds up the cache's queue while it lives: a callback for a stored picture doesn't return.
    class HeldQueue final {
    public:
        explicit HeldQueue(const QXSDKKovalinCacheTest& test)
        {
            test.drain(); // the picture is stored
            test.cache->fetchKovalinWithURL(
                test.url("/red.png"), std::make_shared<const KovalinImageCallback>([state = _state](const QImage&) {
                    state->hasBegun = true;
                    while (!state->mayEnd) {
                        std::this_thread::yield();
                    }
                }));
            EXPECT_TRUE(waitFor([this] { return _state->hasBegun.load(); }));
        }
        ~HeldQueue() { _state->mayEnd = true; }
        HeldQueue(const HeldQueue&) = delete;
        HeldQueue& operator=(const HeldQueue&) = delete;

    private:
        struct State {
            std::atomic<bool> hasBegun = false;
            std::atomic<bool> mayEnd = false;
        };
        const std::shared_ptr<State> _state = std::make_shared<State>();
    };

    InstalledLoginClient login;
    InstalledMetricsQueue metrics;
    QTemporaryDir folder;
    LoopbackServer server;
    std::unique_ptr<QXSDKKovalinOperationalMetricsLogger> logger =
        std::make_unique<QXSDKKovalinOperationalMetricsLogger>(QStringLiteral("1.2.3"));
    std::shared_ptr<RecordingActionObserver> observer = std::make_shared<RecordingActionObserver>();
    std::shared_ptr<QXSDKKovalinCache> cache = newCache();
};

TEST_F(QXSDKKovalinCacheTest, DownloadsAPictureAndKeepsIt)
{
    Waiter first;
    cache->fetchKovalinWithURL(url("/red.png"), first.callback);
    ASSERT_TRUE(first.isCalled());
    EXPECT_EQ(first.color, qRgb(255, 0, 0));
    Waiter second;
    cache->fetchKovalinWithURL(url("/red.png"), second.callback);
    ASSERT_TRUE(second.isCalled());
    EXPECT_EQ(second.color, qRgb(255, 0, 0));
    EXPECT_EQ(server.requests().size(), 1U);

    waitForTheFile("/red.png");
    cache = newCache(); // a new start over the same files
    Waiter third;
    cache->fetchKovalinWithURL(url("/red.png"), third.callback);
    ASSERT_TRUE(third.isCalled());
    EXPECT_EQ(third.color, qRgb(255, 0, 0));
    EXPECT_EQ(server.requests().size(), 1U);
    EXPECT_EQ(counted(QStringLiteral("imageload:solovalin")), 3) << "a download and two hits";
    EXPECT_EQ(counted(QStringLiteral("request:solovalin:200")), 1);
    EXPECT_EQ(observer->added, 0) << "nobody joined";
}

TEST_F(QXSDKKovalinCacheTest, JoinsTenFetchesInOneDownload)
{
    std::vector<std::unique_ptr<Waiter>> waiters;
    for (int i = 0; i < 10; ++i) {
        waiters.push_back(std::make_unique<Waiter>());
        cache->fetchKovalinWithURL(url("/held.png"), waiters.back()->callback);
    }
    ASSERT_TRUE(waitFor([this] { return observer->added == 9; }));
    server.waitForHeld(1);
    server.release("/held.png");
    for (const auto& waiter : waiters) {
        ASSERT_TRUE(waiter->isCalled());
    }
    drain();
    for (const auto& waiter : waiters) {
        EXPECT_EQ(waiter->calls, 1);
        EXPECT_EQ(waiter->color, qRgb(0, 0, 255));
    }
    EXPECT_EQ(server.requests().size(), 2U) << "one, and that of the drain";
    EXPECT_EQ(counted(QStringLiteral("imageload:solovalin")), 2) << "those who joined don't count";
}

TEST_F(QXSDKKovalinCacheTest, HoldsACallbackOnceThatIsGivenTwice)
{
    Waiter waiter;
    cache->fetchKovalinWithURL(url("/held.png"), waiter.callback);
    cache->fetchKovalinWithURL(url("/held.png"), waiter.callback);
    server.waitForHeld(1);
    server.release("/held.png");
    ASSERT_TRUE(waiter.isCalled());
    drain();
    EXPECT_EQ(waiter.calls, 1);
}

TEST_F(QXSDKKovalinCacheTest, GoesOnForTheOtherWhenOneOfTwoCancels)
{
    Waiter staying;
    Waiter leaving;
    cache->fetchKovalinWithURL(url("/held.png"), leaving.callback);
    cache->fetchKovalinWithURL(url("/held.png"), staying.callback);
    cache->cancelKovalinFetch(leaving.callback, url("/held.png"));
    ASSERT_TRUE(waitFor([this] { return observer->removed == 1; }));
    server.waitForHeld(1);
    server.release("/held.png");
    ASSERT_TRUE(staying.isCalled());
    EXPECT_EQ(staying.color, qRgb(0, 0, 255));
    EXPECT_EQ(leaving.calls, 0);
}

TEST_F(QXSDKKovalinCacheTest, EndsTheDownloadWhenTheLastOneCancels)
{
    Waiter waiter;
    cache->fetchKovalinWithURL(url("/held.png"), waiter.callback);
    server.waitForHeld(1);
    cache->cancelKovalinFetch(waiter.callback, url("/held.png"));
    // The answer is held still: what ends is the request.
    ASSERT_TRUE(waitFor([this] { return counted(QStringLiteral("imageload:solovalin")) == 1; }));
    EXPECT_EQ(counted(QStringLiteral("request:solovalin:200")), 0);
    EXPECT_EQ(waiter.calls, 0);
}

TEST_F(QXSDKKovalinCacheTest, GivesTheCancelledRequestsFailureToWhoeverComesRightAfterwards)
{
    Waiter cancelled;
    Waiter next;
    cache->fetchKovalinWithURL(url("/held.png"), cancelled.callback);
    server.waitForHeld(1);
    {
        const HeldQueue queue(*this); // so that nothing comes between the two
        cache->cancelKovalinFetch(cancelled.callback, url("/held.png"));
        cache->fetchKovalinWithURL(url("/held.png"), next.callback);
    }
    ASSERT_TRUE(next.isCalled());
    EXPECT_EQ(next.pictures, 0);
    EXPECT_EQ(cancelled.calls, 0);
    // The download that it began goes on for nobody, and is kept.
    server.waitForHeld(2);
    server.release("/held.png");
    ASSERT_TRUE(waitFor([this] { return counted(QStringLiteral("request:solovalin:200")) == 2; }))
        << "and the red one's";
    waitForTheFile("/held.png"); // it is counted before it is stored
    Waiter later;
    cache->fetchKovalinWithURL(url("/held.png"), later.callback);
    ASSERT_TRUE(later.isCalled());
    EXPECT_EQ(later.pictures, 1);
    EXPECT_EQ(server.requests().size(), 3U);
}

TEST_F(QXSDKKovalinCacheTest, IgnoresACancelThatComesTooLateOrFromNobody)
{
    Waiter waiter;
    cache->fetchKovalinWithURL(url("/red.png"), waiter.callback);
    ASSERT_TRUE(waiter.isCalled());
    cache->cancelKovalinFetch(waiter.callback, url("/red.png"));
    drain();
    EXPECT_EQ(observer->removed, 0);
    EXPECT_EQ(waiter.calls, 1);
}

TEST_F(QXSDKKovalinCacheTest, GivesNothingWhereTheDownloadFails)
{
    server.script("/closed.png", ScriptedAnswer::closed());
    Waiter waiter;
    cache->fetchKovalinWithURL(url("/closed.png"), waiter.callback);
    ASSERT_TRUE(waiter.isCalled());
    EXPECT_EQ(waiter.pictures, 0);
    EXPECT_EQ(counted(QStringLiteral("imageload:solovalin")), 1) << "a failed one counts";
    server.script("/closed.png", ScriptedAnswer::ok(png(qRgb(1, 2, 3))));
    Waiter again;
    cache->fetchKovalinWithURL(url("/closed.png"), again.callback);
    ASSERT_TRUE(again.isCalled());
    EXPECT_EQ(again.pictures, 1) << "the next fetch starts anew";
}

TEST_F(QXSDKKovalinCacheTest, GivesNothingForWhatIsNoPictureAndKeepsIt)
{
    server.script("/text.png", ScriptedAnswer::ok("no picture"));
    for (std::size_t requests = 1; requests <= 2; ++requests) {
        Waiter waiter;
        cache->fetchKovalinWithURL(url("/text.png"), waiter.callback);
        ASSERT_TRUE(waiter.isCalled());
        EXPECT_EQ(waiter.pictures, 0);
        EXPECT_EQ(server.requests().size(), requests) << "nothing was stored";
    }
    EXPECT_EQ(counted(QStringLiteral("request:solovalin:200")), 2);
}

TEST_F(QXSDKKovalinCacheTest, TakesAPictureUnderAnyStatus)
{
    server.script("/404.png", ScriptedAnswer::withStatus(404, png(qRgb(9, 9, 9))));
    Waiter waiter;
    cache->fetchKovalinWithURL(url("/404.png"), waiter.callback);
    ASSERT_TRUE(waiter.isCalled());
    EXPECT_EQ(waiter.pictures, 1);
    EXPECT_EQ(counted(QStringLiteral("request:solovalin:404")), 1);
}

TEST_F(QXSDKKovalinCacheTest, FailsForAnAddressThatIsNone)
{
    for (const char* const bad : {"", "nonsense", "ftp://127.0.0.1/a.png", "http://"}) {
        Waiter waiter;
        cache->fetchKovalinWithURL(QUrl(QString::fromLatin1(bad)), waiter.callback);
        ASSERT_TRUE(waiter.isCalled()) << bad;
        EXPECT_EQ(waiter.pictures, 0);
    }
}

TEST_F(QXSDKKovalinCacheTest, EmptiesTheStoreAtAnUnlinkButForDownloadsUnderWay)
{
    Waiter before;
    Waiter underWay;
    cache->fetchKovalinWithURL(url("/red.png"), before.callback);
    ASSERT_TRUE(before.isCalled());
    cache->fetchKovalinWithURL(url("/held.png"), underWay.callback);
    server.waitForHeld(1);
    login->unlink();
    drainMainQueue();
    drain();
    EXPECT_EQ(server.requests().size(), 3U) << "the red one was gone";
    server.release("/held.png");
    ASSERT_TRUE(underWay.isCalled());
    EXPECT_EQ(underWay.pictures, 1);
    Waiter after;
    cache->fetchKovalinWithURL(url("/held.png"), after.callback);
    ASSERT_TRUE(after.isCalled());
    EXPECT_EQ(server.requests().size(), 3U) << "it was stored all the same";
}

TEST_F(QXSDKKovalinCacheTest, NeverCallsThoseWhoWaitWhenItIsGone)
{
    Waiter waiter;
    cache->fetchKovalinWithURL(url("/held.png"), waiter.callback);
    server.waitForHeld(1);
    cache.reset();
    ASSERT_TRUE(waitFor([this] { return observer.use_count() == 1; })) << "a job may still have it";
    server.release("/held.png");
    // The session has dealt with the answer once it has brought another one.
    cache = newCache();
    drain();
    EXPECT_EQ(waiter.calls, 0);
}

TEST_F(QXSDKKovalinCacheTest, CallsEachWaiterOnceUnlessItCancelsHoweverManyThreadsThereAre)
{
    constexpr unsigned urls = 500;
    constexpr std::size_t fetches = 10'000;
    constexpr std::size_t threads = 4;
    const QByteArray picture = png(qRgb(7, 7, 7));
    for (unsigned i = 0; i < urls; ++i) {
        server.script(QByteArray("/p") + QByteArray::number(i), ScriptedAnswer::ok(picture));
    }
    std::vector<std::unique_ptr<Waiter>> waiters(fetches);
    std::vector<unsigned> urlOf(fetches, 0);
    std::vector<char> isCancelled(fetches, 0);
    for (auto& waiter : waiters) {
        waiter = std::make_unique<Waiter>();
    }
    std::vector<std::thread> workers;
    for (std::size_t thread = 0; thread < threads; ++thread) {
        workers.emplace_back([&, thread] {
            std::mt19937 random(static_cast<unsigned>(thread));
            for (std::size_t i = thread; i < fetches; i += threads) {
                urlOf[i] = static_cast<unsigned>(random()) % urls;
                const QUrl picked = server.url(QStringLiteral("/p%1").arg(urlOf[i]));
                cache->fetchKovalinWithURL(picked, waiters[i]->callback);
                // Pictures with an even number are wanted by all who come.
                if (urlOf[i] % 2 == 1 && random() % 3 == 0) {
                    isCancelled[i] = 1;
                    cache->cancelKovalinFetch(waiters[i]->callback, picked);
                }
            }
        });
    }
    for (auto& worker : workers) {
        worker.join();
    }
    for (std::size_t i = 0; i < fetches; ++i) {
        if (isCancelled[i] == 0) {
            ASSERT_TRUE(waiters[i]->isCalled()) << i;
        }
    }
    drain();
    std::set<unsigned> wanted;
    for (std::size_t i = 0; i < fetches; ++i) {
        EXPECT_LE(waiters[i]->calls, 1) << i;
        if (urlOf[i] % 2 == 0) {
            EXPECT_EQ(waiters[i]->pictures, 1) << i;
            wanted.insert(urlOf[i]);
        }
    }
    std::map<unsigned, int> downloads;
    for (const ReceivedRequest& request : server.requests()) {
        ++downloads[request.target.startsWith("/p") ? request.target.sliced(2).toUInt() : urls];
    }
    for (const unsigned url : wanted) {
        EXPECT_EQ(downloads[url], 1) << url;
    }
    // Each fetch joined others, or counts as one load: the last one here is that of `drain`.
    EXPECT_TRUE(waitFor([&] {
        return counted(QStringLiteral("imageload:solovalin")) + observer->added == static_cast<qint64>(fetches) + 1;
    }));
}

TEST_F(QXSDKKovalinCacheTest, DownloadsEachWantedPictureOnce)
{
    constexpr int urls = 50;
    const QByteArray picture = png(qRgb(7, 7, 7));
    std::vector<std::unique_ptr<Waiter>> waiters;
    for (int i = 0; i < urls; ++i) {
        server.script(QByteArray("/p") + QByteArray::number(i), ScriptedAnswer::ok(picture));
    }
    for (int i = 0; i < urls * 20; ++i) {
        waiters.push_back(std::make_unique<Waiter>());
        cache->fetchKovalinWithURL(server.url(QStringLiteral("/p%1").arg(i % urls)), waiters.back()->callback);
    }
    for (const auto& waiter : waiters) {
        ASSERT_TRUE(waiter->isCalled());
        EXPECT_EQ(waiter->pictures, 1);
    }
    EXPECT_EQ(server.requests().size(), static_cast<std::size_t>(urls));
}

} // namespace
