#include "platform/ui/Button.h"
#include "support/QtPrinting.h"
#include "support/ScrollViewTest.h"

#include <QtTest/QTest>

#include <gmock/gmock.h>

using namespace kovalin::platform;
using namespace kovalin::test;
using std::chrono::milliseconds;
using testing::Each;
using testing::IsEmpty;

namespace {

TEST_F(ScrollViewTest, aMouseDragsTheContent)
{
    dragFrom({100, 140}, {100, 80});
    EXPECT_TRUE(scroll->isMoving());
    EXPECT_GT(offset(), 40);
    EXPECT_LE(offset(), 60);
    EXPECT_EQ(scroll->contentOffset().x(), 0);
    EXPECT_EQ(delegate->offsets.back(), scroll->contentOffset());
}

TEST_F(ScrollViewTest, aTouchDragsTheContent)
{
    const std::unique_ptr<QPointingDevice> device(QTest::createTouchDevice());
    QTest::touchEvent(&window(), device.get()).press(0, QPoint(100, 140));
    for (int y = 135; y >= 80; y -= 5) {
        QTest::touchEvent(&window(), device.get()).move(0, QPoint(100, y));
        waitForFrame(); // which a move waits for
    }
    EXPECT_GT(offset(), 30);
    EXPECT_TRUE(scroll->isMoving());
    EXPECT_LE(offset(), 60);
    QTest::touchEvent(&window(), device.get()).release(0, QPoint(100, 80));
    rest();
    EXPECT_FALSE(scroll->isMoving());
}

TEST_F(ScrollViewTest, aFlickGoesOnAndComesToRest)
{
    dragFrom({100, 140}, {100, 60});
    release({100, 60});
    const double released = offset();
    EXPECT_TRUE(scroll->isMoving());
    driver.step(milliseconds(50));
    driver.step(milliseconds(50));
    EXPECT_GT(offset(), released);
    rest();
    EXPECT_FALSE(scroll->isMoving());
    EXPECT_GT(offset(), released);
    EXPECT_LE(offset(), end);
}

TEST_F(ScrollViewTest, itBouncesAtItsEnds)
{
    dragFrom({100, 60}, {100, 140});
    EXPECT_LT(offset(), 0);
    release({100, 140});
    rest();
    EXPECT_EQ(offset(), 0);

    scroll->setContentInset({0, 25, 0, 0});
    dragFrom({100, 60}, {100, 140});
    EXPECT_LT(offset(), -25);
    release({100, 140});
    rest();
    EXPECT_EQ(offset(), -25);
}

TEST_F(ScrollViewTest, settingTheOffsetEndsAFlick)
{
    dragFrom({100, 140}, {100, 60});
    release({100, 60});
    driver.step(milliseconds(20));
    scroll->setContentOffset({0, 10}, false);
    EXPECT_FALSE(scroll->isMoving());
    rest();
    EXPECT_EQ(offset(), 10);
}

TEST_F(ScrollViewTest, hidingItOrTakingItAwayEndsItsMotion)
{
    dragFrom({100, 60}, {100, 140});
    scroll->setHidden(true);
    EXPECT_FALSE(scroll->isMoving());
    EXPECT_EQ(offset(), 0);
    release({100, 140});
    scroll->setHidden(false);
    dragFrom({100, 140}, {100, 60});
    release({100, 60});
    ASSERT_TRUE(scroll->isMoving());
    scroll->removeFromSuperview();
    EXPECT_FALSE(scroll->isMoving());
    rest();
}

TEST_F(ScrollViewTest, itScrollsOnlyWhereContentAndInsetsAreLarger)
{
    scroll->setContentSize({100, 100});
    grab();
    dragFrom({130, 140}, {70, 60});
    release({70, 60});
    rest();
    EXPECT_THAT(delegate->offsets, IsEmpty());

    scroll->setContentSize({100, 80});
    scroll->setContentInset({0, 20, 0, 20});
    delegate->offsets.clear();
    dragFrom({130, 140}, {70, 60});
    EXPECT_THAT(delegate->offsets, Each(testing::Property(&QPointF::x, 0)));
    EXPECT_GT(offset(), -20);
    release({70, 60});
    rest();
    EXPECT_EQ(offset(), 0);

    scroll->setContentInset({});
    scroll->setContentSize({500, 100});
    delegate->offsets.clear();
    dragFrom({130, 140}, {70, 60});
    EXPECT_THAT(delegate->offsets, Each(testing::Property(&QPointF::y, 0)));
    EXPECT_GT(scroll->contentOffset().x(), 40);
    release({70, 60});
}

TEST_F(ScrollViewTest, whatLiesInTheContentIsTappedAndLosesItsPressToADrag)
{
    const auto button = makeView<Button>();
    int taps = 0;
    int cancels = 0;
    button->setOnTouchUpInside([&] { ++taps; });
    button->setOnTouchCancel([&] { ++cancels; });
    button->setFrame({0, 300, 100, 100});
    scroll->contentView()->addSubview(button);
    scroll->setContentOffset({0, 300}, false);
    tap(middle);
    EXPECT_EQ(taps, 1);
    dragFrom({100, 140}, {100, 80});
    release({100, 80});
    EXPECT_EQ(taps, 1);
    EXPECT_EQ(cancels, 1);
    EXPECT_GT(offset(), 300);
}

TEST_F(ScrollViewTest, aPressMayWaitForTheFingerToRest)
{
    const auto button = makeView<Button>();
    button->setFrame({0, 0, 100, 100});
    int taps = 0;
    button->setOnTouchUpInside([&] { ++taps; });
    scroll->contentView()->addSubview(button);
    EXPECT_FALSE(scroll->delaysContentTouches());
    press(middle);
    EXPECT_TRUE(button->isHighlighted());
    release(middle);
    scroll->setDelaysContentTouches(true);
    EXPECT_TRUE(scroll->delaysContentTouches());
    press(middle);
    EXPECT_FALSE(button->isHighlighted());
    release(middle);
    EXPECT_TRUE(waitFor([&] { return taps == 2; }));
}

TEST_F(ScrollViewTest, aMouseWheelScrollsIt)
{
    wheel({}, {0, -120}, Qt::NoScrollPhase, Qt::MouseEventNotSynthesized);
    wheel({}, {0, -120}, Qt::NoScrollPhase, Qt::MouseEventNotSynthesized);
    rest();
    EXPECT_GT(offset(), 0);
    EXPECT_EQ(scroll->contentOffset().x(), 0);
    EXPECT_TRUE(waitFor([&] { return !scroll->isMoving(); }));
}

TEST_F(ScrollViewTest, aTouchpadScrollsItByPixels)
{
    const auto swipe = [this](double pixels, Qt::ScrollPhase phase) {
        const QPoint moved(0, int(pixels));
        wheel(moved, moved, phase, Qt::MouseEventSynthesizedBySystem);
    };
    swipe(0, Qt::ScrollBegin);
    for (int step = 0; step < 10; ++step) {
        swipe(-6, Qt::ScrollUpdate);
    }
    EXPECT_GT(offset(), 30);
    EXPECT_LE(offset(), 60);
    swipe(0, Qt::ScrollEnd);
    rest();
    EXPECT_TRUE(waitFor([&] { return !scroll->isMoving(); }));
}

} // namespace
