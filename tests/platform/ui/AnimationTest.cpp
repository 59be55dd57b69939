#include "platform/ui/Animation.h"

#include "platform/ui/Spring.h"
#include "support/ManualAnimationDriver.h"
#include "support/ViewTest.h"

using namespace kovalin::platform;
using namespace std::chrono_literals;
using kovalin::test::drainMainQueue;

namespace {

class AnimationTest : public kovalin::test::ViewTest {
protected:
    ~AnimationTest() override { setReducedMotion(false); }

    static QRectF onScreen(const View& view) { return {view.position(), view.size()}; }

    kovalin::test::ManualAnimationDriver time;
    std::shared_ptr<View> view = addView({0, 0, 40, 40}, Qt::red);
};

TEST_F(AnimationTest, aModelValueChangesAtOnceAndTheScreenFollows)
{
    animate(200ms, 0ms, [&] { view->setFrame({100, 0, 80, 40}); });
    EXPECT_EQ(view->frame(), QRectF(100, 0, 80, 40));
    EXPECT_EQ(onScreen(*view), QRectF(0, 0, 40, 40));
    time.step(100ms);
    EXPECT_NEAR(view->x(), 50, 1e-9);
    EXPECT_NEAR(view->width(), 60, 1e-9);
    time.step(100ms);
    EXPECT_EQ(onScreen(*view), QRectF(100, 0, 80, 40));
}

TEST_F(AnimationTest, itBeginsAndEndsSlowly)
{
    animate(100ms, 0ms, [&] { view->setFrame({100, 0, 40, 40}); });
    time.step(10ms);
    EXPECT_GT(view->x(), 0);
    EXPECT_LT(view->x(), 5);
    time.step(80ms);
    EXPECT_GT(view->x(), 95);
    EXPECT_LT(view->x(), 100);
}

TEST_F(AnimationTest, alphaTransformAndColourMove)
{
    animate(200ms, 0ms, [&] {
        view->setAlpha(0);
        view->setTransform(ViewTransform::scale(2, 1));
        view->setBackgroundColor(Qt::blue);
    });
    EXPECT_EQ(view->alpha(), 0);
    EXPECT_EQ(view->transform(), ViewTransform::scale(2, 1));
    EXPECT_EQ(view->backgroundColor(), QColor(Qt::blue));
    EXPECT_EQ(view->opacity(), 1);
    time.step(100ms);
    EXPECT_NEAR(view->opacity(), 0.5, 1e-9);
    EXPECT_NEAR(view->mapToItem(root().get(), QPointF(0, 0)).x(), -10, 1e-5);
    view->setAlpha(1);
    const QColor color = colorAt({20, 20});
    EXPECT_NEAR(color.red(), 127, 1);
    EXPECT_NEAR(color.blue(), 127, 1);
    time.step(100ms);
    EXPECT_EQ(colorAt({20, 20}), QColor(Qt::blue));
}

TEST_F(AnimationTest, aColourFadesInAsItself)
{
    view->setBackgroundColor({});
    animate(200ms, 0ms, [&] { view->setBackgroundColor(Qt::red); });
    time.step(100ms);
    const QColor color = colorAt({20, 20});
    EXPECT_EQ(color.red(), 255);
    EXPECT_NEAR(color.green(), 127, 1);
}

TEST_F(AnimationTest, aDelayIsWaitedFor)
{
    animate(100ms, 50ms, [&] { view->setFrame({100, 0, 40, 40}); });
    time.step(50ms);
    EXPECT_EQ(view->x(), 0);
    time.step(50ms);
    EXPECT_NEAR(view->x(), 50, 1e-9);
    time.step(50ms);
    EXPECT_EQ(view->x(), 100);
}

TEST_F(AnimationTest, aSecondAnimationGoesOnFromWhatIsOnScreen)
{
    int first = 0;
    animate(
        200ms, 0ms,
        [&] {
            view->setFrame({100, 0, 40, 40});
        },
        [&] { ++first; });
    time.step(100ms);
    animate(200ms, 0ms, [&] { view->setFrame({0, 0, 40, 40}); });
    EXPECT_NEAR(view->x(), 50, 1e-9);
    drainMainQueue();
    EXPECT_EQ(first, 1);
    time.step(100ms);
    EXPECT_NEAR(view->x(), 25, 1e-9);
    time.step(100ms);
    EXPECT_EQ(view->x(), 0);
    EXPECT_EQ(first, 1);
}

TEST_F(AnimationTest, aChangeOutsideJumps)
{
    animate(200ms, 0ms, [&] {
        view->setFrame({100, 0, 40, 40});
        view->setAlpha(0);
    });
    time.step(100ms);
    view->setFrame({7, 0, 40, 40});
    EXPECT_EQ(view->x(), 7);
    time.step(50ms);
    EXPECT_EQ(view->x(), 7);
    EXPECT_LT(view->opacity(), 0.5);
}

TEST_F(AnimationTest, theSameValueAgainLeavesTheAnimationAlone)
{
    animate(200ms, 0ms, [&] { view->setFrame({100, 0, 40, 40}); });
    time.step(100ms);
    view->setFrame({100, 0, 40, 40});
    EXPECT_NEAR(view->x(), 50, 1e-9);
}

TEST_F(AnimationTest, aLayoutInItIsAnimated)
{
    class Row : public View {
    public:
        std::shared_ptr<View> part = makeView<View>();
        bool isAtEnd = false;

        Row() { addSubview(part); }
        void layoutSubviews() override { part->setFrame({isAtEnd ? 80.0 : 0.0, 0, 20, 20}); }
    };
    const auto row = makeView<Row>();
    row->setFrame({0, 0, 100, 20});
    root()->addSubview(row);
    grab();
    row->isAtEnd = true;
    animate(100ms, 0ms, [&] { row->layoutSubviews(); });
    time.step(50ms);
    EXPECT_NEAR(row->part->x(), 40, 1e-9);
    row->setNeedsLayout();
    grab();
    EXPECT_NEAR(row->part->x(), 40, 1e-9);
    time.step(50ms);
    EXPECT_EQ(row->part->x(), 80);
}

TEST_F(AnimationTest, aSpringSwingsAndArrives)
{
    animate(400ms, 0ms, 0.7, 0, [&] { view->setFrame({100, 0, 40, 40}); });
    double highest = 0;
    for (int step = 1; step <= 399; ++step) {
        time.step(1ms);
        EXPECT_NEAR(view->x(), 100 * Spring(0.7).progress(step / 400.0), 1e-6);
        highest = std::max(highest, view->x());
    }
    EXPECT_GT(highest, 103);
    time.step(1ms);
    EXPECT_EQ(view->x(), 100);
}

TEST_F(AnimationTest, aSpringNeverMakesANegativeSize)
{
    animate(400ms, 0ms, 0.1, 0, [&] {
        view->setFrame({0, 0, 1, 1});
        view->setAlpha(0);
    });
    for (int step = 0; step < 50; ++step) {
        time.step(8ms);
        EXPECT_GE(view->width(), 0);
        EXPECT_GE(view->opacity(), 0);
    }
}

TEST_F(AnimationTest, completionsAreCalledOnceInALaterTurn)
{
    int completions = 0;
    animate(
        100ms, 0ms, [&] { view->setAlpha(0); }, [&] { ++completions; });
    time.step(99ms);
    drainMainQueue();
    EXPECT_EQ(completions, 0);
    time.step(1ms);
    EXPECT_EQ(completions, 0);
    drainMainQueue();
    time.step(100ms);
    drainMainQueue();
    EXPECT_EQ(completions, 1);
}

TEST_F(AnimationTest, nothingToAnimateCompletesToo)
{
    int completions = 0;
    animate(
        100ms, 0ms, [] {}, [&] { ++completions; });
    animate(
        100ms, 0ms, [&] { view->setAlpha(1); }, [&] { ++completions; });
    EXPECT_EQ(completions, 0);
    drainMainQueue();
    EXPECT_EQ(completions, 2);
}

TEST_F(AnimationTest, reducedMotionJumpsAndCompletes)
{
    setReducedMotion(true);
    EXPECT_TRUE(isMotionReduced());
    int completions = 0;
    animate(
        100ms, 100ms,
        [&] {
            view->setFrame({100, 0, 40, 40});
        },
        [&] { ++completions; });
    animate(
        100ms, 0ms, 0.7, 0, [&] { view->setAlpha(0.5); }, [&] { ++completions; });
    EXPECT_EQ(view->x(), 100);
    EXPECT_EQ(view->opacity(), 0.5);
    drainMainQueue();
    EXPECT_EQ(completions, 2);
}

TEST_F(AnimationTest, aDurationOfNothingJumps)
{
    animate(0ms, 0ms, [&] { view->setAlpha(0.5); });
    EXPECT_EQ(view->opacity(), 0.5);
}

TEST_F(AnimationTest, whatIsWithoutAnimationJumpsWithinOne)
{
    animate(100ms, 0ms, [&] {
        view->setAlpha(0.5);
        withoutAnimation([&] { view->setFrame({100, 0, 40, 40}); });
    });
    EXPECT_EQ(view->x(), 100);
    EXPECT_EQ(view->opacity(), 1);
}

TEST_F(AnimationTest, anAnimationInOneCountsForItself)
{
    animate(100ms, 0ms, [&] {
        animate(200ms, 0ms, [&] { view->setFrame({100, 0, 40, 40}); });
        view->setAlpha(0);
    });
    time.step(100ms);
    EXPECT_EQ(view->opacity(), 0);
    EXPECT_NEAR(view->x(), 50, 1e-9);
}

TEST_F(AnimationTest, whatCantBeSeenJumps)
{
    const auto loose = makeView<View>();
    view->setHidden(true);
    int completions = 0;
    animate(
        100ms, 0ms,
        [&] {
            loose->setAlpha(0.5);
            view->setAlpha(0.5);
        },
        [&] { ++completions; });
    EXPECT_EQ(loose->opacity(), 0.5);
    EXPECT_EQ(view->opacity(), 0.5);
    drainMainQueue();
    EXPECT_EQ(completions, 1);
}

TEST_F(AnimationTest, hidingASuperviewOnTheWayJumps)
{
    int completions = 0;
    animate(
        100ms, 0ms,
        [&] {
            view->setFrame({100, 0, 40, 40});
        },
        [&] { ++completions; });
    time.step(50ms);
    root()->setHidden(true);
    EXPECT_EQ(view->x(), 100);
    drainMainQueue();
    EXPECT_EQ(completions, 1);
    EXPECT_TRUE(kovalin::test::waitFor([&] { return !time.isRunning(); }));
}

TEST_F(AnimationTest, leavingTheWindowOnTheWayJumps)
{
    int completions = 0;
    animate(
        100ms, 0ms,
        [&] {
            view->setFrame({100, 0, 40, 40});
        },
        [&] { ++completions; });
    time.step(50ms);
    view->removeFromSuperview();
    EXPECT_EQ(view->x(), 100);
    drainMainQueue();
    EXPECT_EQ(completions, 1);
}

TEST_F(AnimationTest, aWindowThatIsHiddenOnTheWayEndsItAtTheNextTick)
{
    int completions = 0;
    animate(
        100ms, 0ms,
        [&] {
            view->setFrame({100, 0, 40, 40});
        },
        [&] { ++completions; });
    time.step(50ms);
    window().hide();
    time.step(1ms);
    EXPECT_EQ(view->x(), 100);
    drainMainQueue();
    EXPECT_EQ(completions, 1);
}

TEST_F(AnimationTest, aViewWithoutContentToDissolveJustChanges)
{
    int completions = 0;
    transition(
        view, 100ms, [&] { view->setAlpha(0.5); }, [&] { ++completions; });
    transition(
        nullptr, 100ms, [] {}, [&] { ++completions; });
    EXPECT_EQ(view->opacity(), 0.5);
    drainMainQueue();
    EXPECT_EQ(completions, 2);
}

TEST_F(AnimationTest, aHostsResizeEndsTheAnimationOfTheFrame)
{
    animate(100ms, 0ms, [&] { view->setFrame({100, 0, 40, 40}); });
    time.step(50ms);
    view->setSize({10, 10});
    time.step(50ms);
    EXPECT_EQ(view->size(), QSizeF(10, 10));
    EXPECT_NEAR(view->frame().x(), 50, 1e-9);
}

} // namespace
