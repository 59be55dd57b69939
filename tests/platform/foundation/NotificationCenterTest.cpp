#include "platform/foundation/NotificationCenter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using kovalin::platform::NotificationCenter;
using testing::ElementsAre;
using testing::IsEmpty;

const QString one = QStringLiteral("one");
const QString two = QStringLiteral("two");

std::vector<std::string> heard;

struct Observer {
    explicit Observer(std::string observerName)
        : name(std::move(observerName))
    {
    }
    void hear()
    {
        heard.push_back(name);
        if (onHear) {
            onHear();
        }
    }
    void hearOther() { heard.push_back(name + " other"); }

    std::string name;
    std::function<void()> onHear;
};

class NotificationCenterTest : public testing::Test {
protected:
    NotificationCenterTest() { heard.clear(); }

    NotificationCenter center;
    std::shared_ptr<Observer> a = std::make_shared<Observer>("a");
    std::shared_ptr<Observer> b = std::make_shared<Observer>("b");
};

TEST_F(NotificationCenterTest, HasTwoCentresThatDontHearEachOther)
{
    auto& kits = NotificationCenter::qxsdkCenter();
    ASSERT_NE(&NotificationCenter::defaultCenter(), &kits);
    ASSERT_EQ(&NotificationCenter::qxsdkCenter(), &kits);
    kits.addObserver(a, &Observer::hear, one);
    NotificationCenter::defaultCenter().postNotificationName(one);
    EXPECT_THAT(heard, IsEmpty());
    kits.postNotificationName(one);
    EXPECT_THAT(heard, ElementsAre("a"));
    kits.removeObserver(a);
}

TEST_F(NotificationCenterTest, CallsTheObserversOfANameInTheOrderInWhichTheyCame)
{
    center.addObserver(b, &Observer::hear, one);
    center.addObserver(a, &Observer::hear, one);
    center.addObserver(a, &Observer::hearOther, two);
    center.postNotificationName(one);
    EXPECT_THAT(heard, ElementsAre("b", "a"));
    heard.clear();
    center.postNotificationName(two);
    center.postNotificationName(QStringLiteral("three"));
    EXPECT_THAT(heard, ElementsAre("a other"));
}

TEST_F(NotificationCenterTest, CallsAnObserverOnceForEachTimeThatItWasAdded)
{
    center.addObserver(a, &Observer::hear, one);
    center.addObserver(a, &Observer::hearOther, one);
    center.addObserver(a, &Observer::hear, one);
    center.postNotificationName(one);
    EXPECT_THAT(heard, ElementsAre("a", "a other", "a"));
}

TEST_F(NotificationCenterTest, TakesAnObserverAwayFromAllNames)
{
    center.addObserver(a, &Observer::hear, one);
    center.addObserver(a, &Observer::hear, two);
    center.addObserver(b, &Observer::hear, one);
    center.removeObserver(a);
    center.removeObserver(a);
    center.removeObserver(std::shared_ptr<Observer>());
    center.postNotificationName(one);
    center.postNotificationName(two);
    EXPECT_THAT(heard, ElementsAre("b"));
}

TEST_F(NotificationCenterTest, IgnoresNull)
{
    center.addObserver(std::shared_ptr<Observer>(), &Observer::hear, one);
    center.postNotificationName(one);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(NotificationCenterTest, KeepsNoObserverAlive)
{
    center.addObserver(a, &Observer::hear, one);
    const std::weak_ptr<Observer> watch = a;
    a.reset();
    EXPECT_TRUE(watch.expired());
    center.postNotificationName(one);
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(NotificationCenterTest, AnObserverThatIsDroppedDuringAPostIsStillCalled)
{
    a->onHear = [this] {
        b.reset();
    };
    center.addObserver(a, &Observer::hear, one);
    center.addObserver(b, &Observer::hear, one);
    center.postNotificationName(one);
    center.postNotificationName(one);
    EXPECT_THAT(heard, ElementsAre("a", "b", "a"));
}

TEST_F(NotificationCenterTest, AnObserverThatIsRemovedDuringAPostIsntCalledAnyMore)
{
    a->onHear = [this] {
        center.removeObserver(b);
    };
    center.addObserver(a, &Observer::hear, one);
    center.addObserver(b, &Observer::hear, one);
    center.postNotificationName(one);
    EXPECT_THAT(heard, ElementsAre("a"));
}

TEST_F(NotificationCenterTest, AnObserverThatIsAddedDuringAPostIsCalledTheNextTime)
{
    a->onHear = [this] {
        a->onHear = nullptr;
        center.addObserver(b, &Observer::hear, one);
    };
    center.addObserver(a, &Observer::hear, one);
    center.postNotificationName(one);
    EXPECT_THAT(heard, ElementsAre("a"));
    center.postNotificationName(one);
    EXPECT_THAT(heard, ElementsAre("a", "a", "b"));
}

TEST_F(NotificationCenterTest, AnObserverMayPostAndRemoveItself)
{
    a->onHear = [this] {
        a->onHear = nullptr;
        center.postNotificationName(two);
        center.removeObserver(a);
    };
    center.addObserver(a, &Observer::hear, one);
    center.addObserver(b, &Observer::hearOther, two);
    center.postNotificationName(one);
    center.postNotificationName(one);
    EXPECT_THAT(heard, ElementsAre("a", "b other"));
}

TEST_F(NotificationCenterTest, CallsOnThePostingThread)
{
    std::thread::id thread;
    a->onHear = [&thread] {
        thread = std::this_thread::get_id();
    };
    center.addObserver(a, &Observer::hear, one);
    std::thread poster([this] { center.postNotificationName(one); });
    const auto posted = poster.get_id();
    poster.join();
    EXPECT_EQ(thread, posted);
}

TEST(NotificationCenterThreads, MayBeUsedFromAnyThreadAtAnyTime)
{
    struct Counter {
        void count() { ++calls; }
        std::atomic<int> calls = 0;
    };
    NotificationCenter center;
    const auto steady = std::make_shared<Counter>();
    center.addObserver(steady, &Counter::count, one);
    constexpr int rounds = 500;
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&center] {
            for (int round = 0; round < rounds; ++round) {
                const auto brief = std::make_shared<Counter>();
                center.addObserver(brief, &Counter::count, one);
                center.postNotificationName(one);
                EXPECT_GE(brief->calls, 1);
                if (round % 2 == 0) {
                    center.removeObserver(brief);
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(steady->calls, 3 * rounds);
}

} // namespace
