#include "learned_search/generated-src/IdentityCache.h"

#include "learned_search/generated-src/CacheHandle.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>

using djinni::CacheHandle;
using djinni::IdentityCache;

namespace {

/// What stands for a number.
struct Stand {
    Stand(const IdentityCache::Enrolment& enrolment, const std::shared_ptr<int>& number)
        : handle(enrolment, number)
    {
    }
    /// Runs `onEnd` when it is dead for all others, but its handle hasn't yet taken its entry out.
    ~Stand()
    {
        if (onEnd) {
            onEnd();
        }
    }

    CacheHandle<int, int> handle;
    std::function<void()> onEnd;
};

/// Stands for a number too, under a key of its own.
struct OtherStand {
    OtherStand(const IdentityCache::Enrolment& enrolment, const std::shared_ptr<int>& number)
        : handle(enrolment, number)
    {
    }

    CacheHandle<OtherStand, int> handle;
};

struct Failing {
    Failing(const IdentityCache::Enrolment&, const std::shared_ptr<int>&) { throw std::runtime_error("no such thing"); }
};

class IdentityCacheTest : public testing::Test {
protected:
    std::shared_ptr<IdentityCache> cache = std::make_shared<IdentityCache>();
    std::shared_ptr<int> number = std::make_shared<int>(7);

    std::shared_ptr<Stand> stand() { return cache->objectFor<int, Stand>(number); }
};

} // namespace

TEST_F(IdentityCacheTest, GivesTheSameObjectWhileItLives)
{
    const auto first = stand();

    EXPECT_EQ(stand(), first);
    EXPECT_EQ(first->handle.object(), number);
    EXPECT_EQ(cache->count(), 1U);
}

TEST_F(IdentityCacheTest, GivesDifferentObjectsForDifferentOnes)
{
    EXPECT_NE(stand(), (cache->objectFor<int, Stand>(std::make_shared<int>(7))));
}

TEST_F(IdentityCacheTest, KeepsTypesAtOneAddressApart)
{
    const auto first = stand();

    const auto other = cache->objectFor<OtherStand, OtherStand>(number);

    EXPECT_EQ(other->handle.object(), number);
    EXPECT_EQ(cache->count(), 2U);
    EXPECT_EQ(stand(), first);
    EXPECT_EQ((cache->objectFor<OtherStand, OtherStand>(number)), other);
}

TEST_F(IdentityCacheTest, HoldsNothingAlive)
{
    auto object = stand();
    const std::weak_ptr<Stand> alive = object;
    const std::weak_ptr<int> numberAlive = number;
    number.reset();
    EXPECT_FALSE(numberAlive.expired()) << "the object holds it";

    object.reset();

    EXPECT_TRUE(alive.expired());
    EXPECT_TRUE(numberAlive.expired());
    EXPECT_EQ(cache->count(), 0U);
}

TEST_F(IdentityCacheTest, ReplacesADeadEntry)
{
    auto old = stand();
    const Stand* const oldAddress = old.get();
    std::shared_ptr<Stand> fresh;
    old->onEnd = [&] {
        EXPECT_EQ(cache->count(), 1U) << "the dead entry is still there";
        fresh = stand();
    };

    old.reset();

    ASSERT_TRUE(fresh);
    EXPECT_NE(fresh.get(), oldAddress);
}

TEST_F(IdentityCacheTest, KeepsAFreshEntryWhenTheRemovalOfTheOldOneComesLate)
{
    auto old = stand();
    std::shared_ptr<Stand> fresh;
    old->onEnd = [&] {
        fresh = stand();
    };

    old.reset(); // enters the fresh one first, then removes the old one

    EXPECT_EQ(cache->count(), 1U);
    EXPECT_EQ(stand(), fresh);
    fresh.reset();
    EXPECT_EQ(cache->count(), 0U);
}

TEST_F(IdentityCacheTest, RemovesOnlyWhatIsDead)
{
    const auto object = stand();

    cache->remove({typeid(int), number.get()});
    cache->remove({typeid(int), nullptr});

    EXPECT_EQ(cache->count(), 1U);
    EXPECT_EQ(stand(), object);
}

TEST_F(IdentityCacheTest, LivesAsLongAsWhatIsEntered)
{
    const std::weak_ptr<IdentityCache> alive = cache;
    auto first = stand();
    auto second = cache->objectFor<int, Stand>(std::make_shared<int>(9));

    cache.reset();
    EXPECT_FALSE(alive.expired());
    first.reset();
    EXPECT_FALSE(alive.expired());
    second.reset();
    EXPECT_TRUE(alive.expired());
}

TEST_F(IdentityCacheTest, StaysUsableWhenAnObjectCannotBeMade)
{
    EXPECT_THROW(static_cast<void>(cache->objectFor<int, Failing>(number)), std::runtime_error);

    EXPECT_EQ(cache->count(), 0U);
    EXPECT_TRUE(stand());
}

TEST(IdentityCaches, AreOneOfEachKindForTheProcess)
{
    EXPECT_EQ(djinni::wrapperCache(), djinni::wrapperCache());
    EXPECT_EQ(djinni::proxyCache(), djinni::proxyCache());
    EXPECT_NE(djinni::wrapperCache(), djinni::proxyCache());
}
