#include "picker/views/KovalinViewHelpers.h"

#include "support/ManualAnimationDriver.h"
#include "support/ViewTest.h"

#include <gtest/gtest.h>

using namespace kovalin::platform;
using namespace kovalin::test;
using namespace std::chrono_literals;

namespace {

class KovalinViewHelpersTest : public ViewTest {
protected:
    ManualAnimationDriver driver;
    std::shared_ptr<View> view = addView({0, 0, 100, 100}, Qt::red);
};

TEST_F(KovalinViewHelpersTest, ShrinksAPressedViewInAFifthOfASecond)
{
    grab();
    animateViewForPressedState(*view, true);
    EXPECT_EQ(view->transform().scaleX, double(0.85F));
    EXPECT_EQ(view->transform().scaleY, double(0.85F));
    EXPECT_EQ(view->transform().depth, 50);
    EXPECT_EQ(view->transform().translateX, 0);
    EXPECT_EQ(view->transform().translateY, 0);
    EXPECT_EQ(colorAt({2, 50}), QColor(Qt::red)) << "it has just begun";
    driver.step(0ms);
    driver.step(199ms);
    EXPECT_EQ(colorAt({10, 50}), QColor(Qt::red));
    driver.step(1ms);
    EXPECT_EQ(colorAt({5, 50}), QColor(Qt::white));
    EXPECT_EQ(colorAt({10, 50}), QColor(Qt::red));
}

TEST_F(KovalinViewHelpersTest, EndsInTheIdentityWhenAPressedViewIsReleased)
{
    grab();
    animateViewForPressedState(*view, true);
    driver.step(0ms);
    driver.step(100ms);
    animateViewForPressedState(*view, false);
    EXPECT_TRUE(view->transform().isIdentity());
    driver.step(0ms);
    driver.step(200ms);
    EXPECT_EQ(colorAt({1, 50}), QColor(Qt::red));
}

TEST_F(KovalinViewHelpersTest, TellsWhatTheDeviceCovers)
{
    EXPECT_EQ(obscuredAreaInsets(*view), QMarginsF());
    root()->setSafeAreaInsets({10, 20, 0, 30});
    EXPECT_EQ(obscuredAreaInsets(*view), QMarginsF(10, 20, 0, 0)) << "its lower and right edges lie inside";
}

} // namespace
