#include "kits/core/default/OutboxFixture.h"

namespace kovalin::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

using OutboxErase = OutboxFixture;

TEST_F(OutboxErase, ForgetsWhatIsOnDiskAndInMemory)
{
    open();
    add({"a", "b"});
    write();
    add({"c"});
    outbox->erase();
    settle();
    EXPECT_THAT(onDisk(), IsEmpty());
    EXPECT_THAT(delays.pending(), IsEmpty());
    advance(1h);
    EXPECT_THAT(posted(), IsEmpty());
    close();
    EXPECT_THAT(onDisk(), IsEmpty());
}

TEST_F(OutboxErase, ForgetsWhatAnEarlierRunLeft)
{
    open();
    add({"a", "b"});
    close();
    open();
    outbox->erase();
    settle();
    EXPECT_THAT(onDisk(), IsEmpty());
    advance(1h);
    EXPECT_THAT(posted(), IsEmpty());
}

TEST_F(OutboxErase, KeepsWhatIsAddedAfterwards)
{
    answer(ScriptedAnswer::withStatus(200));
    open();
    Gate gate;
    outbox->queue()->async([&gate] { gate.wait(); });
    add({"a"});
    outbox->erase();
    add({"b"});
    gate.open();
    write();
    EXPECT_THAT(onDisk(), ElementsAre("b"));
    advance(30s);
    EXPECT_THAT(batch(1).entries, ElementsAre("b"));
}

TEST_F(OutboxErase, BreaksOffWhatIsOnItsWayAndNeverPostsItAgain)
{
    answer(ScriptedAnswer::held(""));
    open();
    add({"a", "b", "c", "d", "e"});
    server.waitForHeld(1);
    outbox->erase();
    settle();
    EXPECT_THAT(onDisk(), IsEmpty());
    answer(ScriptedAnswer::withStatus(200));
    server.release("/post");
    advance(1h);
    EXPECT_EQ(posted().size(), 1U);
    add({"f", "g", "h", "i", "j"});
    EXPECT_THAT(batch(2).entries, ElementsAre("f", "g", "h", "i", "j"));
    EXPECT_EQ(batch(2).dropped, 0);
    EXPECT_TRUE(isOnDisk({}));
}

TEST_F(OutboxErase, ComesBeforeABatchThatWasDue)
{
    open();
    add({"a", "b"});
    write();
    Gate gate;
    outbox->queue()->async([&gate] { gate.wait(); });
    delays.advance(30s); // The batch's turn is behind the gate, and before that of the erasure.
    outbox->erase();
    gate.open();
    settle();
    EXPECT_THAT(onDisk(), IsEmpty());
    add({"c", "d", "e", "f", "g"});
    EXPECT_THAT(batch(1).entries, ElementsAre("c", "d", "e", "f", "g"));
}

TEST_F(OutboxErase, EndsARowOfFailures)
{
    answer(ScriptedAnswer::withStatus(500));
    open();
    add({"a", "b", "c", "d", "e"});
    server.waitForRequests(1);
    delays.waitForPending(1);
    outbox->erase();
    settle();
    EXPECT_THAT(delays.pending(), IsEmpty());
    add({"f", "g", "h", "i", "j"});
    server.waitForRequests(2);
    EXPECT_TRUE(waitFor([&] { return delays.pending() == std::vector<std::chrono::nanoseconds>{8s}; }));
}

TEST_F(OutboxErase, ForgetsTheCountOfDroppedOnes)
{
    answer(ScriptedAnswer::withStatus(400));
    open();
    add({"a", "b", "c", "d", "e"});
    server.waitForRequests(1);
    EXPECT_TRUE(waitFor([&] { return storedAt(path()).dropped == 5; }));
    outbox->erase();
    settle();
    EXPECT_EQ(storedAt(path()).dropped, 0);
}

TEST_F(OutboxErase, IsTriedUntilTheDiskCanBeWritten)
{
    open();
    add({"a"});
    write();
    {
        const HeldFile held(path());
        outbox->erase();
        add({"b"});
        settle();
    }
    EXPECT_THAT(onDisk(), ElementsAre("a"));
    answer(ScriptedAnswer::never());
    advance(30s);
    EXPECT_TRUE(isOnDisk({"b"}));
    EXPECT_THAT(batch(1).entries, ElementsAre("b"));
}

TEST_F(OutboxErase, IsDoneWhenTheOutboxGoesRightAfterIt)
{
    open();
    add({"a"});
    write();
    outbox->erase();
    add({"b"});
    close();
    EXPECT_THAT(onDisk(), ElementsAre("b"));
}

} // namespace
} // namespace kovalin::test
