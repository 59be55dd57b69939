#include "platform/foundation/SharedWeakSet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <new>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using kovalin::platform::SharedWeakSet;
using testing::ElementsAre;
using testing::IsEmpty;

struct Observer {
    explicit Observer(int observerNumber)
        : number(observerNumber)
    {
    }

    int number;
    std::atomic<int> visits = 0;
};

std::vector<int> visited(SharedWeakSet<Observer>& set)
{
    std::vector<int> numbers;
    set.forEach([&](const Observer& observer) { numbers.push_back(observer.number); });
    return numbers;
}

class SharedWeakSetTest : public testing::Test {
protected:
    SharedWeakSet<Observer> set;
    std::shared_ptr<Observer> one = std::make_shared<Observer>(1);
    std::shared_ptr<Observer> two = std::make_shared<Observer>(2);
    std::shared_ptr<Observer> three = std::make_shared<Observer>(3);
};

TEST_F(SharedWeakSetTest, VisitsInTheOrderOfAdding)
{
    EXPECT_THAT(visited(set), IsEmpty());
    set.add(two);
    set.add(one);
    set.add(two);
    set.add(nullptr);
    EXPECT_THAT(visited(set), ElementsAre(2, 1));
}

TEST_F(SharedWeakSetTest, RemovesAndIgnoresStrangers)
{
    set.add(one);
    set.add(two);
    set.remove(three.get());
    set.remove(nullptr);
    set.remove(one.get());
    EXPECT_THAT(visited(set), ElementsAre(2));
    set.add(one);
    EXPECT_THAT(visited(set), ElementsAre(2, 1));
}

TEST_F(SharedWeakSetTest, KeepsNobodyAlive)
{
    set.add(one);
    const std::weak_ptr<Observer> watch = one;
    one.reset();
    EXPECT_TRUE(watch.expired());
    EXPECT_THAT(visited(set), IsEmpty());
}

TEST_F(SharedWeakSetTest, TakesANewObserverAtTheAddressOfADeadOne)
{
    alignas(Observer) std::byte storage[sizeof(Observer)];
    const auto makeInStorage = [&storage](int number) {
        return std::shared_ptr<Observer>(new (storage) Observer(number), [](Observer* gone) { gone->~Observer(); });
    };
    auto first = makeInStorage(1);
    set.add(first);
    first.reset();
    const auto second = makeInStorage(2);
    set.remove(second.get());
    set.add(second);
    EXPECT_THAT(visited(set), ElementsAre(2));
}

TEST_F(SharedWeakSetTest, AWalkVisitsWhoWasThereWhenItBegan)
{
    set.add(one);
    set.add(two);
    std::vector<int> numbers;
    set.forEach([&](const Observer& observer) {
        numbers.push_back(observer.number);
        set.add(three);
        two.reset();
    });
    EXPECT_THAT(numbers, ElementsAre(1, 2));
    EXPECT_THAT(visited(set), ElementsAre(1, 3));
}

TEST_F(SharedWeakSetTest, AWalkLeavesOutWhoIsRemovedBeforeItsTurn)
{
    set.add(one);
    set.add(two);
    set.add(three);
    std::vector<int> numbers;
    set.forEach([&](const Observer& observer) {
        numbers.push_back(observer.number);
        set.remove(two.get());
        set.add(two);
    });
    EXPECT_THAT(numbers, ElementsAre(1, 3));
}

TEST_F(SharedWeakSetTest, WalksInsideAWalk)
{
    set.add(one);
    set.add(two);
    int visits = 0;
    set.forEach([&](const Observer&) { set.forEach([&](const Observer&) { ++visits; }); });
    EXPECT_EQ(visits, 4);
}

TEST_F(SharedWeakSetTest, AnExceptionEndsAWalkAndNothingElse)
{
    set.add(one);
    set.add(two);
    EXPECT_THROW(set.forEach([](const Observer&) { throw std::runtime_error("stop"); }), std::runtime_error);
    EXPECT_THAT(visited(set), ElementsAre(1, 2));
}

TEST_F(SharedWeakSetTest, AnObserverMayLeaveInItsDestructor)
{
    struct Leaving {
        SharedWeakSet<Leaving>& set;
        ~Leaving() { set.remove(this); }
    };
    SharedWeakSet<Leaving> leavingSet;
    std::shared_ptr<Leaving> observer(new Leaving{leavingSet});
    leavingSet.add(observer);
    leavingSet.forEach([&](const Leaving&) { observer.reset(); });
    int visits = 0;
    leavingSet.forEach([&](const Leaving&) { ++visits; });
    EXPECT_EQ(visits, 0);
}

TEST_F(SharedWeakSetTest, MayBeUsedFromAnyThreadAtAnyTime)
{
    set.add(one);
    constexpr int rounds = 500;
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([this, i] {
            for (int round = 0; round < rounds; ++round) {
                const auto brief = std::make_shared<Observer>(i);
                set.add(brief);
                set.forEach([](Observer& observer) { ++observer.visits; });
                EXPECT_GE(brief->visits, 1);
                if (round % 2 == 0) {
                    set.remove(brief.get());
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(one->visits, 3 * rounds);
    EXPECT_THAT(visited(set), ElementsAre(1));
}

} // namespace
