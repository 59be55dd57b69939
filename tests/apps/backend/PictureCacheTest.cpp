#include "kovalin-backend/PictureCache.h"

#include "platform/dispatch/Gate.h"
#include "platform/dispatch/MainQueue.h"
#include "support/WaitFor.h"

#include <gtest/gtest.h>

#include <atomic>

namespace kovalin::backend {
namespace {

class PictureCacheOnMainThread : public testing::Test {
protected:
    void find(const QByteArray& key)
    {
        cache->find(
            key,
            [this, key] {
                mayDraw.wait();
                ++drawings;
                return QByteArray("drawn " + key);
            },
            [this](const QByteArray& picture) { given.append(picture); });
    }

    test::Gate mayDraw;
    std::atomic<int> drawings = 0;
    QList<QByteArray> given; // main thread only
    std::shared_ptr<PictureCache> cache =
        std::make_shared<PictureCache>([](std::function<void()> job) { platform::dispatchMain(std::move(job)); });
};

TEST_F(PictureCacheOnMainThread, DrawsElsewhereAndOnceForAllThatWait)
{
    for (const char* key : {"a", "b", "a", "a"}) {
        find(key);
    }
    test::drainMainQueue();
    EXPECT_TRUE(given.isEmpty());
    mayDraw.open();
    ASSERT_TRUE(test::waitFor([this] { return given.size() == 4; }));
    EXPECT_EQ(given, (QList<QByteArray>{"drawn a", "drawn a", "drawn a", "drawn b"}));
    EXPECT_EQ(drawings, 2);
}

TEST_F(PictureCacheOnMainThread, KeepsWhatWasDrawn)
{
    mayDraw.open();
    find("a");
    ASSERT_TRUE(test::waitFor([this] { return given.size() == 1; }));
    find("a");
    EXPECT_EQ(given.size(), 2);
    EXPECT_EQ(drawings, 1);
}

TEST_F(PictureCacheOnMainThread, MayGoWhileSomethingIsDrawn)
{
    test::Gate isDrawing;
    test::Gate isGone;
    cache->find(
        "a",
        [&isDrawing, this, gone = test::whenDestroyed([&isGone] { isGone.open(); })] {
            isDrawing.open();
            mayDraw.wait();
            return QByteArray("x");
        },
        [this](const QByteArray& picture) { given.append(picture); });
    find("b");
    isDrawing.wait();
    cache.reset();
    mayDraw.open();
    isGone.wait();
    test::drainMainQueue();
    EXPECT_TRUE(given.isEmpty());
    EXPECT_EQ(drawings, 0);
}

} // namespace
} // namespace kovalin::backend
