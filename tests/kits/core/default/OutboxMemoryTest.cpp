#include "kits/core/default/OutboxMemory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

namespace kovalin::kits {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr OutboxLimits limits{.maxBytes = 100, .maxEntries = 5, .maxAge = 1s};
constexpr BatchLimits batches{.maxEntries = 3, .maxBytes = 50, .longestWait = 1s};

OutboxEntry entry(const std::string& text, qint64 time = 0)
{
    return {.id = QUuid::createUuid(), .time = time, .bytes = QByteArray::fromStdString(text)};
}

std::vector<std::string> textsOf(const std::vector<OutboxEntry>& entries)
{
    std::vector<std::string> texts;
    for (const OutboxEntry& kept : entries) {
        texts.push_back(kept.bytes.toStdString());
    }
    return texts;
}

/// Memory with these entries, none of them stored.
OutboxMemory memoryWith(const std::vector<std::string>& texts)
{
    OutboxMemory memory(limits);
    for (const std::string& text : texts) {
        memory.add(entry(text));
    }
    return memory;
}

TEST(OutboxMemory, DropsTheOldestBeyondItsCount)
{
    const OutboxMemory memory = memoryWith({"1", "2", "3", "4", "5", "6", "7"});
    EXPECT_EQ(memory.count(), 5U);
    EXPECT_EQ(memory.bytes(), 5);
    EXPECT_EQ(memory.dropped(), 2U);
    EXPECT_THAT(textsOf(memory.changes().added), ElementsAre("3", "4", "5", "6", "7"));
}

TEST(OutboxMemory, DropsTheOldestBeyondItsBytes)
{
    OutboxMemory memory = memoryWith({std::string(40, 'a'), std::string(40, 'b'), std::string(21, 'c')});
    EXPECT_EQ(memory.bytes(), 61);
    EXPECT_EQ(memory.dropped(), 1U);
    memory.add(entry(std::string(101, 'd'))); // alone too large: nothing else goes for it
    EXPECT_EQ(memory.count(), 2U);
    EXPECT_EQ(memory.bytes(), 61);
    EXPECT_EQ(memory.dropped(), 2U);
}

TEST(OutboxMemory, DropsWhatIsOverItsAgeWhereverItStands)
{
    OutboxMemory memory(limits);
    memory.add(entry("future", 10'000));
    memory.add(entry("old", 1000));
    memory.add(entry("young", 1001));
    memory.dropOld(2001);
    EXPECT_THAT(textsOf(memory.changes().added), ElementsAre("future", "young"));
    EXPECT_EQ(memory.dropped(), 1U);
}

TEST(OutboxMemory, FormsBatchesOfTheOldestWithinTheirLimits)
{
    OutboxMemory memory = memoryWith({"1", "2", "3", "4"});
    EXPECT_THAT(textsOf(memory.takeOut(batches).entries), ElementsAre("1", "2", "3"));
    memory.batchArrived();
    EXPECT_THAT(textsOf(memory.takeOut(batches).entries), ElementsAre("4"));
    memory.batchArrived();
    EXPECT_TRUE(memory.isEmpty());
    EXPECT_EQ(memory.bytes(), 0);
    EXPECT_EQ(memory.dropped(), 0U);

    OutboxMemory large = memoryWith({std::string(60, 'a'), std::string(20, 'b'), std::string(20, 'c')});
    EXPECT_EQ(large.takeOut(batches).entries.size(), 1U); // one it always has
    large.batchArrived();
    EXPECT_EQ(large.takeOut(batches).entries.size(), 2U);
}

TEST(OutboxMemory, NeverDropsWhatIsOut)
{
    OutboxMemory memory = memoryWith({"1", "2", "3", "4"});
    static_cast<void>(memory.takeOut(batches));
    for (const char* const text : {"5", "6", "7"}) {
        memory.add(entry(text));
    }
    memory.dropOld(1'000'000);
    EXPECT_EQ(memory.count(), 3U);
    EXPECT_EQ(memory.dropped(), 4U);
    memory.batchReturned();
    EXPECT_THAT(textsOf(memory.takeOut(batches).entries), ElementsAre("1", "2", "3"));
    memory.batchReturned();
    memory.dropOld(1'000'000);
    EXPECT_TRUE(memory.isEmpty());
    EXPECT_EQ(memory.dropped(), 7U);
}

TEST(OutboxMemory, TellsOfDroppedOnesUntilABatchArrived)
{
    OutboxMemory memory = memoryWith({"1", "2", "3", "4", "5", "6"});
    EXPECT_EQ(memory.takeOut(batches).dropped, 1U);
    memory.batchReturned();
    EXPECT_EQ(memory.takeOut(batches).dropped, 1U);
    memory.countDropped(2); // meanwhile
    memory.batchArrived();
    EXPECT_EQ(memory.dropped(), 2U);
    EXPECT_EQ(memory.takeOut(batches).dropped, 2U);
    memory.batchRefused();
    EXPECT_EQ(memory.dropped(), 4U);
    EXPECT_TRUE(memory.isEmpty());
}

TEST(OutboxMemory, GivesABatchItsIdAgainOnlyWhileItIsTheSame)
{
    OutboxMemory memory = memoryWith({"1", "2", "3", "4"});
    const QUuid id = memory.takeOut(batches).id;
    memory.batchReturned();
    EXPECT_EQ(memory.takeOut(batches).id, id);
    memory.batchReturned();
    memory.countDropped(1);
    const QUuid other = memory.takeOut(batches).id;
    EXPECT_NE(other, id);
    memory.batchArrived();
    EXPECT_NE(memory.takeOut(batches).id, other);
}

TEST(OutboxMemory, TellsTheStoreOnlyWhatItLacks)
{
    OutboxMemory memory = memoryWith({"1", "2"});
    const auto ids = memory.changes().added;
    memory.changesStored();
    EXPECT_FALSE(memory.hasChanges());
    EXPECT_TRUE(memory.changes().isEmpty());

    for (const char* const text : {"3", "4", "5", "6"}) {
        memory.add(entry(text));
    }
    auto changes = memory.changes();
    EXPECT_THAT(textsOf(changes.added), ElementsAre("3", "4", "5", "6"));
    EXPECT_THAT(changes.removed, ElementsAre(ids[0].id));
    EXPECT_EQ(changes.dropped, 1);
    memory.changesStored();

    static_cast<void>(memory.takeOut(batches));
    memory.batchArrived();
    changes = memory.changes();
    EXPECT_THAT(changes.added, IsEmpty());
    EXPECT_EQ(changes.removed.size(), 3U);
    EXPECT_EQ(changes.dropped, -1);
}

TEST(OutboxMemory, NeverTellsTheStoreOfWhatCameAndWent)
{
    OutboxMemory memory = memoryWith({"1"});
    static_cast<void>(memory.takeOut(batches));
    memory.batchArrived();
    EXPECT_FALSE(memory.hasChanges());
    EXPECT_TRUE(memory.changes().isEmpty());
}

TEST(OutboxMemory, TellsTheStoreEverythingWhenThatLostIt)
{
    OutboxMemory memory = memoryWith({"1", "2", "3", "4", "5", "6"});
    memory.changesStored();
    memory.nothingStored();
    EXPECT_TRUE(memory.hasChanges());
    const auto changes = memory.changes();
    EXPECT_THAT(textsOf(changes.added), ElementsAre("2", "3", "4", "5", "6"));
    EXPECT_THAT(changes.removed, IsEmpty());
    EXPECT_EQ(changes.dropped, 1);
    memory.changesStored();
    EXPECT_FALSE(memory.hasChanges());
}

TEST(OutboxMemory, PutsWhatTheStoreHeldBeforeWhatIsHere)
{
    OutboxMemory memory = memoryWith({"new"});
    memory.restore({entry("1"), entry("2")}, 3);
    EXPECT_EQ(memory.dropped(), 3U);
    EXPECT_THAT(textsOf(memory.changes().added), ElementsAre("new"));
    EXPECT_EQ(memory.changes().dropped, 0);
    EXPECT_THAT(textsOf(memory.takeOut(batches).entries), ElementsAre("1", "2", "new"));
}

TEST(OutboxMemory, KeepsItsLimitsForWhatTheStoreHeld)
{
    OutboxMemory memory = memoryWith({"new"});
    std::vector<OutboxEntry> stored;
    for (int i = 0; i < 10; ++i) {
        stored.push_back(entry(std::to_string(i)));
    }
    memory.restore(stored, 0);
    EXPECT_EQ(memory.count(), 5U);
    EXPECT_EQ(memory.dropped(), 6U);
    EXPECT_EQ(memory.changes().removed.size(), 6U);
    memory.changesStored();
    EXPECT_FALSE(memory.hasChanges());
}

TEST(OutboxMemory, PutsWhatTheStoreHeldBehindWhatIsOut)
{
    OutboxMemory memory = memoryWith({"out"});
    static_cast<void>(memory.takeOut(batches));
    memory.restore({entry("1")}, 0);
    memory.batchArrived();
    EXPECT_THAT(textsOf(memory.takeOut(batches).entries), ElementsAre("1"));
}

TEST(OutboxMemory, ForgetsEverything)
{
    OutboxMemory memory = memoryWith({"1", "2", "3", "4", "5", "6"});
    memory.changesStored();
    static_cast<void>(memory.takeOut(batches));
    memory.clear();
    EXPECT_TRUE(memory.isEmpty());
    EXPECT_FALSE(memory.hasChanges());
    EXPECT_EQ(memory.dropped(), 0U);
    memory.add(entry("7"));
    EXPECT_EQ(memory.bytes(), 1);
    EXPECT_THAT(textsOf(memory.takeOut(batches).entries), ElementsAre("7"));
}

} // namespace
} // namespace kovalin::kits
