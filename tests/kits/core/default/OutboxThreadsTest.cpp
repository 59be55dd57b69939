#include "kits/core/default/OutboxFixture.h"

#include <atomic>
#include <set>
#include <thread>

namespace kovalin::test {
namespace {

using OutboxThreads = OutboxFixture;

constexpr int kThreads = 4;
constexpr int kEntries = 300;

/// Adds from several threads at once.
void addFromManyThreads(kits::Outbox& outbox)
{
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&outbox, thread] {
            for (int i = 0; i < kEntries; ++i) {
                outbox.add(QByteArray::number(thread) + ' ' + QByteArray::number(i));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST_F(OutboxThreads, PostEachEntryOnceAndInTheOrderOfEachThread)
{
    answer(ScriptedAnswer::withStatus(200));
    auto large = options();
    large.limits = {.maxBytes = 1'000'000, .maxEntries = 10'000, .maxAge = std::chrono::hours(1)};
    large.batch.maxEntries = 50;
    large.batch.maxBytes = 100'000;
    outbox.emplace(large);
    addFromManyThreads(*outbox);
    server.waitForRequests(kThreads * kEntries / 50);
    EXPECT_TRUE(isOnDisk({}));

    std::set<QString> ids;
    std::vector<std::vector<int>> numbers(kThreads);
    for (const PostedBatch& batch : posted()) {
        EXPECT_EQ(batch.dropped, 0);
        ids.insert(batch.ids.begin(), batch.ids.end());
        for (const std::string& entry : batch.entries) {
            numbers.at(static_cast<std::size_t>(entry[0] - '0')).push_back(std::stoi(entry.substr(2)));
        }
    }
    EXPECT_EQ(ids.size(), kThreads * kEntries);
    for (const auto& ofThread : numbers) {
        EXPECT_EQ(ofThread.size(), kEntries);
        EXPECT_TRUE(std::ranges::is_sorted(ofThread));
    }
}

TEST_F(OutboxThreads, AccountForEveryEntryWhereManyAreDropped)
{
    answer(ScriptedAnswer::withStatus(200));
    open();
    addFromManyThreads(*outbox);
    close();
    std::set<QString> ids;
    qint64 told = 0;
    for (const PostedBatch& batch : posted()) {
        ids.insert(batch.ids.begin(), batch.ids.end());
        told += batch.dropped;
    }
    // What was on its way at the end may have arrived, and lies on disk all the same.
    const StoredOutbox stored = storedAt(path());
    const std::size_t posts = ids.size();
    ids.insert(stored.ids.begin(), stored.ids.end());
    const auto isTwice = posts + static_cast<std::size_t>(stored.ids.size()) > ids.size();
    const qint64 last = isTwice ? posted().back().dropped : 0;
    EXPECT_EQ(static_cast<qint64>(ids.size()) + told - last + stored.dropped, kThreads * kEntries);
}

TEST_F(OutboxThreads, EraseWhileOthersAdd)
{
    answer(ScriptedAnswer::withStatus(200));
    open();
    std::atomic<bool> isOver = false;
    std::thread eraser([&] {
        while (!isOver) {
            outbox->erase();
        }
    });
    addFromManyThreads(*outbox);
    isOver = true;
    eraser.join();
    outbox->erase();
    settle();
    EXPECT_TRUE(isOnDisk({}));
    EXPECT_EQ(storedAt(path()).dropped, 0);
}

TEST_F(OutboxThreads, EndInEveryState)
{
    for (const int status : {200, 400, 500}) {
        answer(ScriptedAnswer::withStatus(status));
        for (int entries = 0; entries < 12; ++entries) {
            open();
            for (int i = 0; i < entries; ++i) {
                add({"x"});
            }
            if (entries % 2 == 0) {
                settle();
            }
            outbox.reset();
        }
    }
    EXPECT_TRUE(waitFor([this] { return delays.pending().empty(); }));
}

} // namespace
} // namespace kovalin::test
