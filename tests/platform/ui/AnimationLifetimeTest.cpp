#include "platform/ui/Animation.h"
#include "support/ManualAnimationDriver.h"
#include "support/ViewTest.h"

#include <QtCore/QPointer>

#include <thread>

using namespace kovalin::platform;
using namespace std::chrono_literals;
using kovalin::test::drainMainQueue;
using kovalin::test::waitFor;

namespace {

class AnimationLifetimeTest : public kovalin::test::ViewTest {
protected:
    kovalin::test::ManualAnimationDriver time;
};

TEST_F(AnimationLifetimeTest, aViewMayGoOnTheWay)
{
    auto view = addView({0, 0, 40, 40});
    const QPointer<View> item = view.get();
    int completions = 0;
    animate(
        100ms, 0ms, [&] { view->setAlpha(0); }, [&] { ++completions; });
    time.step(50ms);
    view->removeFromSuperview();
    view.reset();
    time.step(10ms);
    drainMainQueue();
    EXPECT_TRUE(item.isNull());
    EXPECT_EQ(completions, 1);
}

TEST_F(AnimationLifetimeTest, aViewInAHostsItemMayGoOnTheWay)
{
    auto view = makeView<View>();
    view->setParentItem(window().contentItem());
    int completions = 0;
    animate(
        100ms, 0ms, [&] { view->setAlpha(0); }, [&] { ++completions; });
    time.step(50ms);
    view.reset();
    drainMainQueue();
    EXPECT_EQ(completions, 1);
    time.step(50ms);
}

TEST_F(AnimationLifetimeTest, aViewMayGoOnAnotherThreadOnTheWay)
{
    auto view = makeView<View>();
    view->setParentItem(window().contentItem());
    const QPointer<View> item = view.get();
    int completions = 0;
    animate(
        100ms, 0ms, [&] { view->setAlpha(0); }, [&] { ++completions; });
    time.step(50ms);
    std::thread([view = std::move(view)]() mutable { view.reset(); }).join();
    time.step(10ms);
    EXPECT_TRUE(waitFor([&] { return item.isNull() && completions == 1; }));
}

TEST_F(AnimationLifetimeTest, aTickMayTakeOtherViewsAway)
{
    const auto first = addView({0, 0, 40, 40});
    auto second = addView({0, 0, 40, 40});
    const QPointer<View> item = second.get();
    animate(100ms, 0ms, [&] {
        first->setFrame({100, 0, 40, 40});
        second->setFrame({100, 0, 40, 40});
    });
    QObject::connect(first.get(), &QQuickItem::xChanged, first.get(), [&] {
        if (second) {
            second->removeFromSuperview();
            second.reset();
        }
    });
    time.step(50ms);
    drainMainQueue();
    EXPECT_TRUE(item.isNull());
    time.step(50ms);
    EXPECT_EQ(first->x(), 100);
}

TEST_F(AnimationLifetimeTest, aCompletionMayTakeItsViewAwayAndAnimateAnother)
{
    auto view = addView({0, 0, 40, 40});
    const auto other = addView({0, 0, 40, 40});
    animate(
        100ms, 0ms, [&] { view->setAlpha(0); },
        [&] {
            view->removeFromSuperview();
            view.reset();
            animate(100ms, 0ms, [&] { other->setAlpha(0); });
        });
    time.step(100ms);
    drainMainQueue();
    EXPECT_EQ(view, nullptr);
    time.step(100ms);
    EXPECT_EQ(other->opacity(), 0);
}

TEST_F(AnimationLifetimeTest, whatACompletionHoldsGoesAfterItRan)
{
    const auto view = addView({0, 0, 40, 40});
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> seen = held;
    animate(
        100ms, 0ms, [&] { view->setAlpha(0); }, [held = std::move(held)] {});
    EXPECT_FALSE(seen.expired());
    time.step(100ms);
    drainMainQueue();
    EXPECT_TRUE(seen.expired());
}

} // namespace
