#include "platform/ui/Button.h"
#include "support/QtPrinting.h"
#include "support/ScrollViewTest.h"

#include <gmock/gmock.h>

using namespace kovalin::platform;
using namespace kovalin::test;
using std::chrono::milliseconds;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

TEST_F(ScrollViewTest, anIndicatorTellsTheShareAndThePlaceWhileItMoves)
{
    scroll->setContentSize({100, 400});
    scroll->setScrollIndicatorInsets({0, 8, 0, 28});
    EXPECT_EQ(scroll->scrollIndicatorInsets(), QMarginsF(0, 8, 0, 28));
    scroll->setContentOffset({0, 150}, true);
    rest();
    scroll->setContentOffset({0, 151}, true);
    driver.step(milliseconds(0));
    ASSERT_THAT(indicators(), SizeIs(1));
    const QRectF bar = indicators().first()->frame();
    // On a track of 60 points from 10 to 70, with its least length.
    EXPECT_EQ(bar.height(), 24);
    EXPECT_NEAR(bar.center().y(), 40, 0.2);
    EXPECT_EQ(bar.width(), 3);
    EXPECT_EQ(bar.right(), 98);
    scroll->setContentSize({100, 200});
    EXPECT_EQ(indicators().first()->frame().height(), 30);
}

TEST_F(ScrollViewTest, anIndicatorFadesOutAfterTheMotion)
{
    scroll->setContentOffset({0, 500}, true);
    driver.step(milliseconds(0));
    driver.step(milliseconds(300));
    ASSERT_FALSE(scroll->isMoving());
    driver.step(milliseconds(0));
    driver.step(milliseconds(500));
    ASSERT_THAT(indicators(), SizeIs(1));
    EXPECT_EQ(indicators().first()->opacity(), 1);
    rest();
    EXPECT_THAT(indicators(), IsEmpty());
    scroll->setContentOffset({0, 100}, false);
    EXPECT_THAT(indicators(), IsEmpty());
}

TEST_F(ScrollViewTest, anIndicatorCanBeSeenOnLightAndDark)
{
    for (const QColor& background : {QColor(Qt::white), QColor(Qt::black)}) {
        scroll->setBackgroundColor(background);
        scroll->setContentOffset({0, scroll->contentOffset().y() > 0 ? 0.0 : 500.0}, true);
        driver.step(milliseconds(0));
        const QRectF bar = indicators().first()->frame();
        const QColor color = colorAt(scroll->position() + bar.center());
        const auto luminance = [](const QColor& of) {
            return std::pow(of.redF(), 2.2);
        };
        const double one = luminance(color) + 0.05;
        const double other = luminance(background) + 0.05;
        EXPECT_GE(std::max(one, other) / std::min(one, other), 3) << color.red();
        rest();
    }
}

TEST_F(ScrollViewTest, theVerticalIndicatorIsOnTheOtherSideWhereTextRunsFromTheRight)
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    scroll->setContentOffset({0, 500}, true);
    driver.step(milliseconds(20));
    driver.step(milliseconds(20));
    ASSERT_THAT(indicators(), SizeIs(1));
    EXPECT_EQ(indicators().first()->frame().left(), 2);
}

TEST_F(ScrollViewTest, thereIsAnIndicatorForEachDirectionThatScrolls)
{
    scroll->setContentSize({1000, 1000});
    scroll->setContentOffset({500, 500}, true);
    driver.step(milliseconds(0));
    EXPECT_THAT(indicators(), SizeIs(2));
    EXPECT_FALSE(indicators().first()->frame().intersects(indicators().last()->frame()));
    scroll->setShowsVerticalScrollIndicator(false);
    EXPECT_THAT(indicators(), SizeIs(1));
    scroll->setShowsHorizontalScrollIndicator(false);
    EXPECT_THAT(indicators(), IsEmpty());
    scroll->setShowsVerticalScrollIndicator(true);
    EXPECT_THAT(indicators(), SizeIs(1));
    scroll->setContentSize({1000, 50});
    EXPECT_THAT(indicators(), IsEmpty());
}

TEST_F(ScrollViewTest, anIndicatorIsPushedTogetherByABounceAndTakesNoTouch)
{
    dragFrom({100, 60}, {100, 140});
    ASSERT_THAT(indicators(), SizeIs(1));
    const QRectF bar = indicators().first()->frame();
    EXPECT_EQ(bar.top(), 2);
    EXPECT_LT(bar.height(), 24);
    EXPECT_GE(bar.height(), 6);
    release({100, 140});
    scroll->setContentOffset({0, 0}, false);

    const auto button = makeView<Button>();
    int taps = 0;
    button->setOnTouchUpInside([&] { ++taps; });
    button->setFrame({0, 0, 100, 100});
    scroll->contentView()->addSubview(button);
    ASSERT_THAT(indicators(), SizeIs(1));
    tap(scroll->position() + indicators().first()->frame().center());
    EXPECT_EQ(taps, 1);
}

} // namespace
