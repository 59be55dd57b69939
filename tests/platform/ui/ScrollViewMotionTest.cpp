#include "platform/ui/Button.h"
#include "support/QtPrinting.h"
#include "support/ScrollViewTest.h"

#include <QtTest/QTest>

#include <gmock/gmock.h>

using namespace kovalin::platform;
using namespace kovalin::test;
using std::chrono::milliseconds;

namespace {

TEST_F(ScrollViewTest, anAnimatedOffsetTakesAMomentAndTellsOnTheWay)
{
    scroll->setContentOffset({0, 500}, true);
    EXPECT_TRUE(scroll->isMoving());
    EXPECT_EQ(offset(), 0);
    driver.step(milliseconds(0));
    driver.step(milliseconds(150));
    EXPECT_NEAR(offset(), 250, 1);
    driver.step(milliseconds(150));
    EXPECT_EQ(offset(), 500);
    EXPECT_FALSE(scroll->isMoving());
    EXPECT_EQ(delegate->offsets.back(), QPointF(0, 500));
}

TEST_F(ScrollViewTest, aTouchEndsAnAnimatedOffset)
{
    scroll->setContentOffset({0, 500}, true);
    driver.step(milliseconds(0));
    driver.step(milliseconds(150));
    press(middle);
    const double held = offset();
    EXPECT_FALSE(scroll->isMoving());
    driver.step(milliseconds(150));
    EXPECT_EQ(offset(), held);
    release(middle);

    const std::unique_ptr<QPointingDevice> device(QTest::createTouchDevice());
    scroll->setContentOffset({0, 500}, true);
    driver.step(milliseconds(20));
    QTest::touchEvent(&window(), device.get()).press(0, QPoint(100, 100));
    EXPECT_FALSE(scroll->isMoving());
    QTest::touchEvent(&window(), device.get()).release(0, QPoint(100, 100));
}

TEST_F(ScrollViewTest, theWheelEndsAnAnimatedOffset)
{
    scroll->setContentOffset({0, 500}, true);
    driver.step(milliseconds(0));
    driver.step(milliseconds(50));
    wheel({}, {0, 120}, Qt::NoScrollPhase, Qt::MouseEventNotSynthesized);
    wheel({}, {0, 120}, Qt::NoScrollPhase, Qt::MouseEventNotSynthesized);
    rest();
    EXPECT_LT(offset(), 100);
}

TEST_F(ScrollViewTest, anotherOffsetTakesOver)
{
    scroll->setContentOffset({0, 500}, true);
    driver.step(milliseconds(0));
    driver.step(milliseconds(150));
    scroll->setContentOffset({0, 0}, true);
    EXPECT_NEAR(offset(), 250, 1);
    rest();
    EXPECT_EQ(offset(), 0);
    scroll->setContentOffset({0, 500}, true);
    scroll->setContentOffset({0, 20}, false);
    EXPECT_FALSE(scroll->isMoving());
    rest();
    EXPECT_EQ(offset(), 20);
}

TEST_F(ScrollViewTest, anAnimationStaysInRangeAndFollowsTheStart)
{
    scroll->setContentOffset({0, 500}, true);
    driver.step(milliseconds(0));
    scroll->setContentSize({100, 300});
    rest();
    EXPECT_EQ(offset(), 200);
    scroll->setContentOffset({0, 0}, true);
    driver.step(milliseconds(0));
    scroll->setContentInset({0, 30, 0, 0});
    rest();
    EXPECT_EQ(offset(), -30);
}

TEST_F(ScrollViewTest, reducedMotionAndAViewThatCantBeSeenJump)
{
    setReducedMotion(true);
    scroll->setContentOffset({0, 500}, true);
    EXPECT_EQ(offset(), 500);
    setReducedMotion(false);
    scroll->setHidden(true);
    scroll->setContentOffset({0, 100}, true);
    EXPECT_EQ(offset(), 100);
}

TEST_F(ScrollViewTest, keysScrollIt)
{
    const auto button = makeView<Button>();
    button->setFrame({0, 0, 10, 10});
    scroll->contentView()->addSubview(button);
    button->forceActiveFocus();
    scroll->setContentInset({0, 10, 0, 10});
    QTest::keyClick(&window(), Qt::Key_PageDown);
    QTest::keyClick(&window(), Qt::Key_PageDown);
    rest();
    EXPECT_EQ(offset(), -10 + 2 * 72);
    QTest::keyClick(&window(), Qt::Key_PageUp);
    rest();
    EXPECT_EQ(offset(), -10 + 72);
    QTest::keyClick(&window(), Qt::Key_End);
    rest();
    EXPECT_EQ(offset(), end + 10);
    QTest::keyClick(&window(), Qt::Key_Home);
    rest();
    EXPECT_EQ(offset(), -10);
}

TEST_F(ScrollViewTest, otherKeysAndThoseOfAViewThatCantScrollGoOn)
{
    const auto inner = makeView<ScrollView>();
    inner->setFrame({0, 0, 50, 50});
    inner->setContentSize({50, 50});
    scroll->contentView()->addSubview(inner);
    inner->forceActiveFocus();
    QTest::keyClick(&window(), Qt::Key_End);
    rest();
    EXPECT_EQ(offset(), end);

    class Listener : public View {
    public:
        void keyPressEvent(QKeyEvent* event) override { keys.push_back(event->key()); }
        std::vector<int> keys;
    };
    const auto outer = makeView<Listener>();
    outer->setFrame({0, 0, 200, 200});
    root()->addSubview(outer);
    outer->addSubview(scroll);
    scroll->forceActiveFocus();
    QTest::keyClick(&window(), Qt::Key_Down);
    QTest::keyClick(&window(), Qt::Key_Home, Qt::ControlModifier);
    QTest::keyClick(&window(), Qt::Key_Home);
    EXPECT_THAT(outer->keys, testing::ElementsAre(Qt::Key_Down, Qt::Key_Control, Qt::Key_Home));
}

TEST_F(ScrollViewTest, keysMoveAViewThatScrollsOnlySideways)
{
    scroll->setContentSize({500, 100});
    scroll->forceActiveFocus();
    QTest::keyClick(&window(), Qt::Key_PageDown);
    rest();
    EXPECT_EQ(scroll->contentOffset(), QPointF(90, 0));
    QTest::keyClick(&window(), Qt::Key_End);
    rest();
    EXPECT_EQ(scroll->contentOffset(), QPointF(400, 0));
}

} // namespace
