#include "kits/core/default/OutboxFixture.h"

namespace kovalin::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// What an outbox drops.
class OutboxLimits : public OutboxFixture {
protected:
    /// Each batch's dropped ones, what arrived, what is left and what it counts as dropped: all that was ever added.
    [[nodiscard]] qint64 accountedFor(std::size_t arrivedBatches) const
    {
        const auto batches = posted();
        qint64 sum = 0;
        for (std::size_t i = batches.size() - arrivedBatches; i < batches.size(); ++i) {
            sum += batches[i].dropped + static_cast<qint64>(batches[i].entries.size());
        }
        const StoredOutbox stored = storedAt(path());
        return sum + stored.dropped + static_cast<qint64>(stored.entries.size());
    }
};

TEST_F(OutboxLimits, DropsTheOldestBeyondItsCountAndTellsOfThem)
{
    answer(ScriptedAnswer::withStatus(500));
    open();
    add({"a", "b", "c", "d", "e"});
    server.waitForRequests(1);
    delays.waitForPending(1);
    for (int i = 0; i < 25; ++i) {
        add({std::to_string(i)});
    }
    write();
    EXPECT_EQ(onDisk().size(), 20U);
    EXPECT_EQ(onDisk().front(), "5");
    EXPECT_EQ(storedAt(path()).dropped, 10);
    EXPECT_EQ(accountedFor(0), 30);

    answer(ScriptedAnswer::withStatus(200));
    advance(8s);
    EXPECT_EQ(batch(2).dropped, 10);
    EXPECT_EQ(batch(5).dropped, 0);
    EXPECT_TRUE(isOnDisk({}));
    EXPECT_EQ(accountedFor(4), 30);
}

TEST_F(OutboxLimits, DropsTheOldestBeyondItsBytes)
{
    answer(ScriptedAnswer::withStatus(500));
    open();
    add({std::string(400, 'a')});
    server.waitForRequests(1);
    delays.waitForPending(1);
    add({std::string(300, 'b'), std::string(300, 'c'), std::string(1, 'd')});
    write();
    EXPECT_THAT(onDisk(), ElementsAre(std::string(300, 'b'), std::string(300, 'c'), "d"));
    EXPECT_EQ(accountedFor(0), 4);
    add({std::string(1001, 'e')}); // alone too large: nothing else goes for it
    settle();
    advance(500ms);
    EXPECT_EQ(accountedFor(0), 5);
}

TEST_F(OutboxLimits, DropsWhatIsOverItsAge)
{
    answer(ScriptedAnswer::withStatus(200));
    open();
    add({"a", "b"});
    write();
    clock.advance(1h); // asleep: no delay passes
    add({"c"});
    settle();
    delays.advance(30s);
    EXPECT_THAT(batch(1).entries, ElementsAre("c"));
    EXPECT_EQ(batch(1).dropped, 2);
    EXPECT_TRUE(isOnDisk({}));
    EXPECT_EQ(accountedFor(1), 3);
}

TEST_F(OutboxLimits, DropsWhatGotTooOldBetweenTwoRuns)
{
    open();
    add({"a", "b"});
    close();
    clock.advance(30min);
    open();
    add({"c"});
    close();
    clock.advance(31min);
    open();
    settle();
    write();
    EXPECT_THAT(onDisk(), ElementsAre("c"));
    EXPECT_EQ(storedAt(path()).dropped, 2);
}

TEST_F(OutboxLimits, KeepsWhatComesFromTheFuture)
{
    open();
    add({"a"});
    close();
    clock.advance(-24h * 365);
    open();
    write();
    EXPECT_THAT(onDisk(), ElementsAre("a"));
}

TEST_F(OutboxLimits, KeepsTheCountOfDroppedOnesThroughARestart)
{
    answer(ScriptedAnswer::withStatus(400));
    open();
    add({"a", "b", "c", "d", "e"});
    server.waitForRequests(1);
    EXPECT_TRUE(waitFor([&] { return storedAt(path()).dropped == 5; }));
    close();
    answer(ScriptedAnswer::withStatus(200));
    open();
    add({"f"});
    settle();
    advance(30s);
    EXPECT_EQ(batch(2).dropped, 5);
    EXPECT_TRUE(waitFor([&] { return storedAt(path()).dropped == 0; }));
}

TEST_F(OutboxLimits, PostsNothingForDroppedOnesAlone)
{
    open();
    add({std::string(1001, 'x')});
    settle();
    advance(30s);
    EXPECT_THAT(posted(), IsEmpty());
    EXPECT_EQ(storedAt(path()).dropped, 1);
}

TEST_F(OutboxLimits, CountsWhatIsDroppedBeforeTheQueueComesToIt)
{
    open();
    Gate gate;
    outbox->queue()->async([&gate] { gate.wait(); });
    for (int i = 0; i < 50; ++i) {
        add({std::to_string(i)});
    }
    answer(ScriptedAnswer::withStatus(200));
    gate.open();
    server.waitForRequests(4);
    EXPECT_TRUE(isOnDisk({}));
    EXPECT_EQ(posted().front().dropped, 30);
    EXPECT_EQ(accountedFor(4), 50);
}

} // namespace
} // namespace kovalin::test
