#include "platform/dispatch/MainQueue.h"
#include "platform/store/ImageStore.h"
#include "platform/store/StoreTesting.h"

#include <QtGui/QGuiApplication>

#include <gtest/gtest.h>

#include <optional>

namespace kovalin::platform {
namespace {

using test::contains;
using test::Gate;
using test::picture;
using test::whenDestroyed;

int argumentCount = 1;
char programName[] = "platform_store_shutdown_tests";
char* arguments[] = {programName, nullptr};

/// An application object for the length of a scope.
class ScopedApplication final {
private:
    const QGuiApplication _application{argumentCount, arguments};
};

class StoreShutdown : public testing::Test {
protected:
    const test::Folder folder{};
    std::optional<ImageStore> store;
    const QString key = QStringLiteral("key");
};

TEST_F(StoreShutdown, WorksAgainUnderEachLaterApplication)
{
    store.emplace(QStringLiteral("pictures"), folder.path());
    for (quint32 round = 0; round < 3; ++round) {
        const ScopedApplication application;
        store->memoryCache().setCostLimit(0);
        store->setObject(picture(round), key, 1);
        EXPECT_TRUE(test::isSame(test::objectIn(*store, key), test::noise(round)));
    }
}

TEST_F(StoreShutdown, LeavesTheMemoryLevelWithoutAnApplication)
{
    {
        const ScopedApplication application;
        store.emplace(QStringLiteral("pictures"), folder.path());
    }
    store->setObject(picture(1), key, 1);
    EXPECT_FALSE(store->objectForKey(key).isNull());
    EXPECT_TRUE(store->objectForKey(QStringLiteral("other")).isNull());
    store->removeAllObjects();
    EXPECT_TRUE(store->objectForKey(key).isNull());
    store.reset();
}

TEST_F(StoreShutdown, FreesAJobThatReadsWhileTheApplicationDies)
{
    SerialQueue queue(QStringLiteral("late"));
    Gate started;
    Gate closing;
    bool isFound = true;
    {
        const ScopedApplication application;
        store.emplace(QStringLiteral("pictures"), folder.path());
        queue.async([&] {
            started.open();
            closing.wait();
            isFound = !store->objectForKey(key).isNull();
            store->removeAllObjects();
        });
        // Dropped when the application's end has begun, and waits for running jobs only after that.
        dispatchMain([token = whenDestroyed([&closing] { closing.open(); })] {});
        started.wait();
    }
    EXPECT_FALSE(isFound);
}

TEST_F(StoreShutdown, EndsWithOperationsPending)
{
    for (quint32 round = 0; round < 5; ++round) {
        const ScopedApplication application;
        store.emplace(QStringLiteral("pictures"), folder.path());
        for (quint32 i = 0; i < 50; ++i) {
            store->setObject(picture(i), QString::number(i), 1);
        }
    }
    const ScopedApplication application{};
    store.emplace(QStringLiteral("pictures"), folder.path());
    store->setObject(picture(1), key, 1);
    store->memoryCache().setCostLimit(0);
    EXPECT_TRUE(contains(*store, key));
}

} // namespace
} // namespace kovalin::platform

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
