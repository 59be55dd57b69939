#include "platform/store/ImageStore.h"
#include "platform/store/StoreTesting.h"

#include <SQLiteCpp/Database.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <list>
#include <memory>
#include <vector>

namespace kovalin::platform {
namespace {

using test::finish;
using test::isSame;

constexpr int threads = 6;
constexpr int numbers = 12; // of pictures

class StoreThreads : public testing::Test {
protected:
    StoreThreads()
    {
        for (int i = 0; i < numbers; ++i) {
            samples.push_back(test::picture(static_cast<quint32>(i)));
        }
        for (int i = 0; i < threads; ++i) {
            queues.emplace_back(QStringLiteral("user"));
        }
    }

    std::shared_ptr<ImageStore> open()
    {
        return std::make_shared<ImageStore>(QStringLiteral("pictures"), folder.path());
    }

    void finishAll()
    {
        for (SerialQueue& queue : queues) {
            finish(queue);
        }
    }

    const test::Folder folder{};
    std::vector<EncodedImage> samples;
    std::list<SerialQueue> queues;
};

TEST_F(StoreThreads, UseOneStoreAtOnce)
{
    const auto store = open();
    store->memoryCache().setCostLimit(3);
    std::atomic<int> wrong = 0;
    int thread = 0;
    for (SerialQueue& queue : queues) {
        ++thread;
        for (int round = 0; round < 60; ++round) {
            queue.async([&, number = static_cast<std::size_t>(round * thread % numbers), round] {
                const QString key = QString::number(number);
                if (round % 3 == 0) {
                    store->setObject(samples[number], key, 1);
                } else if (round == 50) {
                    store->removeAllObjects();
                } else if (const QImage found = store->objectForKey(key); !found.isNull()) {
                    wrong += isSame(found, samples[number].image) ? 0 : 1;
                }
                if (round % 20 == 7) {
                    store->memoryCache().setCostLimit(round % 5);
                    store->diskCache().setByteLimit(5'000 + round * 100);
                }
            });
        }
    }
    finishAll();
    EXPECT_EQ(wrong, 0);
}

TEST_F(StoreThreads, KeepToTheDiskLimitAtEveryMoment)
{
    constexpr qint64 limit = 10'000;
    const auto store = open();
    store->diskCache().setByteLimit(limit);
    test::finishStoring(*store);
    std::atomic<int> running = threads;
    for (SerialQueue& queue : queues) {
        queue.async([&] {
            for (int round = 0; round < 80; ++round) {
                const auto number = static_cast<std::size_t>(round % numbers);
                store->setObject(samples[number], QString::number(number), 1);
            }
            --running;
        });
    }
    const SQLite::Database other(folder.path(QStringLiteral("pictures.sqlite")).toStdString(), SQLite::OPEN_READONLY,
                                 1000);
    qint64 most = 0;
    for (bool isLast = false; !isLast;) {
        isLast = running == 0;
        if (isLast) {
            test::finishStoring(*store);
        }
        SQLite::Statement total(other, "SELECT coalesce(sum(length(bytes)), 0) FROM content");
        ASSERT_TRUE(total.executeStep());
        most = std::max<qint64>(most, total.getColumn(0).getInt64());
    }
    finishAll();
    EXPECT_LE(most, limit);
    EXPECT_GT(most, limit / 2);
}

TEST_F(StoreThreads, MayLetGoOfTheStoreWithOperationsPending)
{
    for (int round = 0; round < 10; ++round) {
        auto store = open();
        for (SerialQueue& queue : queues) {
            queue.async([store, this] {
                store->setObject(samples[0], QStringLiteral("0"), 1);
                static_cast<void>(store->objectForKey(QStringLiteral("absent")));
            });
        }
        store.reset();
    }
    finishAll();
    EXPECT_TRUE(isSame(test::objectIn(*open(), QStringLiteral("0")), samples[0].image));
}

TEST_F(StoreThreads, FindWhatWasStoredBeforeTheStoreWent)
{
    {
        const auto store = open();
        for (std::size_t i = 0; i < numbers; ++i) {
            store->setObject(samples[i], QString::number(i), 1);
        }
    }
    const auto store = open();
    for (std::size_t i = 0; i < numbers; ++i) {
        // The one before may not have closed its file yet, but each picture is there sooner or later.
        while (!isSame(test::objectIn(*store, QString::number(i)), samples[i].image)) {
        }
    }
}

TEST_F(StoreThreads, FindNothingOnceAllWasRemovedWhileOthersRead)
{
    const auto store = open();
    for (int round = 0; round < 20; ++round) {
        store->memoryCache().setCostLimit(0);
        store->setObject(samples[0], QStringLiteral("0"), 1);
        store->memoryCache().setCostLimit(50);
        for (SerialQueue& queue : queues) {
            queue.async([&] { static_cast<void>(store->objectForKey(QStringLiteral("0"))); });
        }
        test::removeAll(*store);
        finishAll();
        EXPECT_TRUE(store->objectForKey(QStringLiteral("0")).isNull());
        EXPECT_FALSE(test::contains(*store, QStringLiteral("0")));
    }
}

} // namespace
} // namespace kovalin::platform
