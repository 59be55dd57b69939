#include "platform/foundation/WeakSet.h"

#include <QtCore/QList>

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <new>

namespace {

using kovalin::platform::WeakSet;

struct Observer {
    explicit Observer(int observerNumber)
        : number(observerNumber)
    {
    }
    virtual ~Observer() = default;

    int number;
};

using Numbers = QList<int>;

Numbers visited(WeakSet<Observer>& set)
{
    Numbers numbers;
    set.forEach([&](Observer& observer) { numbers.append(observer.number); });
    return numbers;
}

TEST(WeakSet, IsEmptyAtFirst)
{
    WeakSet<Observer> set;
    EXPECT_TRUE(set.isEmpty());
    EXPECT_EQ(set.count(), 0);
    EXPECT_EQ(visited(set), Numbers());
}

TEST(WeakSet, VisitsItsObserversInTheOrderTheyCame)
{
    WeakSet<Observer> set;
    const auto one = std::make_shared<Observer>(1);
    const auto two = std::make_shared<Observer>(2);
    set.add(two);
    set.add(one);
    EXPECT_EQ(set.count(), 2);
    EXPECT_FALSE(set.isEmpty());
    EXPECT_EQ(visited(set), Numbers({2, 1}));
}

TEST(WeakSet, HoldsAnObserverOnce)
{
    WeakSet<Observer> set;
    const auto one = std::make_shared<Observer>(1);
    set.add(one);
    set.add(one);
    EXPECT_EQ(set.count(), 1);
    set.remove(one);
    EXPECT_TRUE(set.isEmpty());
}

TEST(WeakSet, IgnoresNullAndStrangers)
{
    WeakSet<Observer> set;
    const auto one = std::make_shared<Observer>(1);
    const auto stranger = std::make_shared<Observer>(2);
    set.add(one);
    set.add(nullptr);
    set.remove(static_cast<const Observer*>(nullptr));
    set.remove(std::shared_ptr<Observer>());
    set.remove(stranger);
    EXPECT_EQ(visited(set), Numbers({1}));
}

TEST(WeakSet, TakesObserversOfDerivedTypes)
{
    struct Loud : Observer {
        using Observer::Observer;
    };
    WeakSet<Observer> set;
    const auto loud = std::make_shared<Loud>(7);
    set.add(loud);
    EXPECT_EQ(visited(set), Numbers({7}));
    set.remove(loud.get());
    EXPECT_TRUE(set.isEmpty());
}

TEST(WeakSet, KeepsNobodyAlive)
{
    WeakSet<Observer> set;
    auto one = std::make_shared<Observer>(1);
    const std::weak_ptr<Observer> watch = one;
    set.add(one);
    one.reset();
    EXPECT_TRUE(watch.expired());
    EXPECT_TRUE(set.isEmpty());
    EXPECT_EQ(visited(set), Numbers());
}

TEST(WeakSet, SweepsDeadEntries)
{
    // A deleter lives in the control block, which goes when no entry refers to it any more.
    static int blocksAlive = 0;
    struct CountingDeleter {
        CountingDeleter() { ++blocksAlive; }
        CountingDeleter(const CountingDeleter&) { ++blocksAlive; }
        ~CountingDeleter() { --blocksAlive; }
        void operator()(const Observer* observer) const { delete observer; }
    };
    WeakSet<Observer> set;
    for (int number = 0; number < 100; ++number) {
        set.add(std::shared_ptr<Observer>(new Observer(number), CountingDeleter()));
        EXPECT_LE(blocksAlive, 2);
    }
    EXPECT_EQ(visited(set), Numbers());
    EXPECT_EQ(blocksAlive, 0);
}

TEST(WeakSet, TakesANewObserverAtTheAddressOfADeadOne)
{
    alignas(Observer) std::byte storage[sizeof(Observer)];
    const auto makeInStorage = [&storage](int number) {
        return std::shared_ptr<Observer>(new (storage) Observer(number),
                                         [](Observer* observer) { observer->~Observer(); });
    };
    WeakSet<Observer> set;
    auto first = makeInStorage(1);
    set.add(first);
    const Observer* const address = first.get();
    first.reset();

    const auto second = makeInStorage(2);
    ASSERT_EQ(second.get(), address);
    EXPECT_TRUE(set.isEmpty());
    set.remove(second);
    set.add(second);
    EXPECT_EQ(visited(set), Numbers({2}));
}

TEST(WeakSet, DoesNotVisitAnObserverAddedDuringTheWalk)
{
    WeakSet<Observer> set;
    const auto one = std::make_shared<Observer>(1);
    const auto two = std::make_shared<Observer>(2);
    set.add(one);
    Numbers numbers;
    set.forEach([&](Observer& observer) {
        numbers.append(observer.number);
        set.add(two);
    });
    EXPECT_EQ(numbers, Numbers({1}));
    EXPECT_EQ(visited(set), Numbers({1, 2}));
}

TEST(WeakSet, DoesNotVisitAnObserverRemovedBeforeItsTurn)
{
    WeakSet<Observer> set;
    const auto one = std::make_shared<Observer>(1);
    const auto two = std::make_shared<Observer>(2);
    const auto three = std::make_shared<Observer>(3);
    for (const auto& observer : {one, two, three}) {
        set.add(observer);
    }
    Numbers numbers;
    set.forEach([&](Observer& observer) {
        numbers.append(observer.number);
        set.remove(one);
        set.remove(two);
    });
    EXPECT_EQ(numbers, Numbers({1, 3}));
    EXPECT_EQ(visited(set), Numbers({3}));
}

TEST(WeakSet, CountsAnObserverThatLeftAndCameBackDuringTheWalkAsNew)
{
    WeakSet<Observer> set;
    const auto one = std::make_shared<Observer>(1);
    const auto two = std::make_shared<Observer>(2);
    set.add(one);
    set.add(two);
    Numbers numbers;
    set.forEach([&](Observer& observer) {
        numbers.append(observer.number);
        set.remove(two);
        set.add(two);
    });
    EXPECT_EQ(numbers, Numbers({1}));
    EXPECT_EQ(visited(set), Numbers({1, 2}));
}

TEST(WeakSet, HoldsTheLivingUntilTheWalkEnds)
{
    WeakSet<Observer> set;
    auto one = std::make_shared<Observer>(1);
    auto two = std::make_shared<Observer>(2);
    const std::weak_ptr<Observer> watchOne = one;
    const std::weak_ptr<Observer> watchTwo = two;
    set.add(one);
    set.add(two);
    Numbers numbers;
    set.forEach([&](Observer& observer) {
        one.reset();
        two.reset();
        numbers.append(observer.number);
        EXPECT_FALSE(watchOne.expired());
        EXPECT_FALSE(watchTwo.expired());
    });
    EXPECT_EQ(numbers, Numbers({1, 2}));
    EXPECT_TRUE(watchOne.expired());
    EXPECT_TRUE(watchTwo.expired());
    EXPECT_TRUE(set.isEmpty());
}

TEST(WeakSet, AllowsAWalkInsideAWalk)
{
    WeakSet<Observer> set;
    const auto one = std::make_shared<Observer>(1);
    const auto two = std::make_shared<Observer>(2);
    const auto three = std::make_shared<Observer>(3);
    set.add(one);
    set.add(two);
    Numbers outer;
    Numbers inner;
    set.forEach([&](Observer& observer) {
        outer.append(observer.number);
        set.add(three);
        set.forEach([&](Observer& innerObserver) {
            inner.append(innerObserver.number);
            set.remove(two);
        });
    });
    EXPECT_EQ(outer, Numbers({1}));
    EXPECT_EQ(inner, Numbers({1, 3}));
}

TEST(WeakSet, MayBeDestroyedDuringAWalk)
{
    auto set = std::make_unique<WeakSet<Observer>>();
    const auto one = std::make_shared<Observer>(1);
    const auto two = std::make_shared<Observer>(2);
    set->add(one);
    set->add(two);
    Numbers numbers;
    set->forEach([&](Observer& observer) {
        numbers.append(observer.number);
        set.reset();
    });
    EXPECT_EQ(numbers, Numbers({1}));
}

TEST(WeakSet, MayBeDestroyedDuringAWalkInsideAWalk)
{
    auto set = std::make_unique<WeakSet<Observer>>();
    const auto one = std::make_shared<Observer>(1);
    const auto two = std::make_shared<Observer>(2);
    set->add(one);
    set->add(two);
    Numbers numbers;
    set->forEach([&](Observer& observer) {
        numbers.append(observer.number);
        set->forEach([&](Observer& innerObserver) {
            numbers.append(innerObserver.number);
            set.reset();
        });
    });
    EXPECT_EQ(numbers, Numbers({1, 1}));
}

TEST(WeakSet, LetsAnObserverLeaveInItsDestructor)
{
    struct Leaving : Observer {
        Leaving(int observerNumber, WeakSet<Observer>& home)
            : Observer(observerNumber)
            , set(home)
        {
        }
        ~Leaving() override { set.remove(this); }
        Leaving(const Leaving&) = delete;
        Leaving& operator=(const Leaving&) = delete;

        WeakSet<Observer>& set;
    };
    WeakSet<Observer> set;
    auto leaving = std::make_shared<Leaving>(1, set);
    const auto staying = std::make_shared<Observer>(2);
    set.add(leaving);
    set.add(staying);
    set.forEach([&](Observer&) { leaving.reset(); });
    EXPECT_EQ(visited(set), Numbers({2}));
}

TEST(WeakSet, StaysUsableWhenAVisitThrows)
{
    WeakSet<Observer> set;
    const auto one = std::make_shared<Observer>(1);
    set.add(one);
    EXPECT_THROW(set.forEach([](Observer&) { throw std::bad_alloc(); }), std::bad_alloc);
    EXPECT_EQ(one.use_count(), 1);
    EXPECT_EQ(visited(set), Numbers({1}));
}

} // namespace
