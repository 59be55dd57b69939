#include "platform/ui/ActivityIndicator.h"

#include "platform/ui/Animation.h"
#include "support/ManualAnimationDriver.h"
#include "support/ViewTest.h"

#include <gtest/gtest.h>

#include <chrono>

using namespace kovalin::platform;
using namespace std::chrono_literals;
using kovalin::test::waitFor;

namespace {

/// A black wheel at the window's top left.
class ActivityIndicatorTest : public kovalin::test::ViewTest {
protected:
    ActivityIndicatorTest()
    {
        wheel->setColor(Qt::black);
        root()->addSubview(wheel);
        resting = grab();
    }
    ~ActivityIndicatorTest() override { setReducedMotion(false); }

    QImage after(std::chrono::milliseconds time)
    {
        driver.step(time);
        return grab();
    }

    /// Nothing asks for time any more.
    [[nodiscard]] bool comesToRest()
    {
        return waitFor([this] { return !driver.isRunning(); });
    }

    kovalin::test::ManualAnimationDriver driver;
    std::shared_ptr<ActivityIndicator> wheel = makeView<ActivityIndicator>();
    QImage resting;
};

TEST_F(ActivityIndicatorTest, hasASizeOfItsOwn)
{
    EXPECT_EQ(wheel->frame(), QRectF(0, 0, 20, 20));
    EXPECT_EQ(wheel->sizeThatFits({5, 500}), QSizeF(20, 20));
    wheel->setCenter({100, 100});
    EXPECT_EQ(wheel->frame(), QRectF(90, 90, 20, 20));
}

TEST_F(ActivityIndicatorTest, isDrawnInItsColourAndStandsAtFirst)
{
    EXPECT_FALSE(wheel->isAnimating());
    EXPECT_LT(colorAt(resting, ratio(), {10, 3}).red(), 60) << "the spoke in front";
    EXPECT_EQ(colorAt(resting, ratio(), {10, 10}), QColor(Qt::white)) << "the hub is free";
    EXPECT_EQ(after(90ms), resting);
    wheel->setColor(Qt::red);
    EXPECT_GT(colorAt({10, 3}).red(), 200);
    EXPECT_LT(colorAt({10, 3}).green(), 60);
}

TEST_F(ActivityIndicatorTest, isWhiteBeforeItHasAnotherColour)
{
    EXPECT_EQ(makeView<ActivityIndicator>()->color(), QColor(Qt::white));
}

TEST_F(ActivityIndicatorTest, turnsOnceASecondInSteps)
{
    wheel->startAnimating();
    EXPECT_TRUE(wheel->isAnimating());
    EXPECT_EQ(after(0ms), resting);
    EXPECT_EQ(after(50ms), resting) << "a step takes a twelfth of a second";
    const QImage next = after(50ms);
    EXPECT_NE(next, resting);
    const QImage half = after(400ms);
    EXPECT_LT(colorAt(half, ratio(), {10, 17}).red(), 60) << "the spoke opposite is in front";
    EXPECT_EQ(after(500ms), resting);
    EXPECT_EQ(after(100ms), next);
}

TEST_F(ActivityIndicatorTest, standsAgainWhenItIsStopped)
{
    wheel->startAnimating();
    static_cast<void>(after(0ms));
    EXPECT_NE(after(300ms), resting);
    wheel->stopAnimating();
    EXPECT_FALSE(wheel->isAnimating());
    EXPECT_EQ(grab(), resting);
    EXPECT_EQ(after(300ms), resting);
    wheel->stopAnimating();
    EXPECT_EQ(grab(), resting);
}

TEST_F(ActivityIndicatorTest, turnsOnlyWhileItIsSeen)
{
    wheel->startAnimating();
    static_cast<void>(after(0ms));
    EXPECT_TRUE(driver.isRunning());

    root()->setHidden(true);
    EXPECT_TRUE(comesToRest());
    EXPECT_TRUE(wheel->isAnimating());
    root()->setHidden(false);
    static_cast<void>(after(0ms));
    EXPECT_TRUE(driver.isRunning());

    wheel->removeFromSuperview();
    EXPECT_TRUE(comesToRest());
    root()->addSubview(wheel);
    static_cast<void>(after(0ms));
    EXPECT_TRUE(driver.isRunning());

    window().hide();
    EXPECT_TRUE(comesToRest());
    window().show();
    ASSERT_TRUE(waitFor([this] { return window().isExposed(); }));
    static_cast<void>(after(0ms));
    EXPECT_TRUE(driver.isRunning());
    EXPECT_NE(after(300ms), resting);
}

TEST_F(ActivityIndicatorTest, startsToTurnWhenItIsFirstSeen)
{
    wheel->removeFromSuperview();
    wheel->startAnimating();
    static_cast<void>(after(0ms));
    EXPECT_FALSE(driver.isRunning());
    root()->addSubview(wheel);
    static_cast<void>(after(0ms));
    EXPECT_NE(after(300ms), resting);
}

TEST_F(ActivityIndicatorTest, standsWithReducedMotion)
{
    setReducedMotion(true);
    wheel->startAnimating();
    static_cast<void>(after(0ms));
    EXPECT_TRUE(wheel->isAnimating());
    EXPECT_EQ(after(300ms), resting);
}

TEST_F(ActivityIndicatorTest, mayGoWhileItTurns)
{
    const std::weak_ptr<ActivityIndicator> gone = wheel;
    wheel->startAnimating();
    static_cast<void>(after(100ms));
    wheel->removeFromSuperview();
    wheel.reset();
    EXPECT_TRUE(gone.expired());
    EXPECT_TRUE(comesToRest());
}

TEST_F(ActivityIndicatorTest, takesNoTaps)
{
    EXPECT_EQ(wheel->acceptedMouseButtons(), Qt::NoButton);
}

} // namespace
