#include "support/ScrollViewTest.h"

#include "support/QtPrinting.h"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QPointer>

#include <gmock/gmock.h>

using namespace kovalin::platform;
using namespace kovalin::test;
using std::chrono::milliseconds;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

TEST_F(ScrollViewTest, itRestsAtItsStart)
{
    EXPECT_EQ(scroll->contentOffset(), QPointF(0, 0));
    EXPECT_EQ(scroll->contentSize(), QSizeF(100, 1000));
    EXPECT_EQ(scroll->contentView()->bounds(), QRectF(0, 0, 100, 1000));
    EXPECT_FALSE(scroll->isMoving());
    EXPECT_THAT(delegate->offsets, IsEmpty());
    EXPECT_THAT(indicators(), IsEmpty());
}

TEST_F(ScrollViewTest, theContentMovesUnderTheViewAndIsCutOff)
{
    const auto row = makeView<View>();
    row->setFrame({0, 300, 100, 20});
    row->setBackgroundColor(Qt::blue);
    scroll->contentView()->addSubview(row);
    scroll->setContentOffset({0, 290}, false);
    EXPECT_EQ(colorAt({100, 65}), QColor(Qt::blue));
    EXPECT_EQ(colorAt({100, 85}), QColor(Qt::white));
    scroll->setContentOffset({0, 310}, false);
    EXPECT_EQ(colorAt({100, 55}), QColor(Qt::blue));
    EXPECT_EQ(colorAt({100, 45}), QColor(Qt::white));
}

TEST_F(ScrollViewTest, anOffsetIsClampedToWhereTheViewCanRest)
{
    scroll->setContentOffset({50, 2000}, false);
    EXPECT_EQ(scroll->contentOffset(), QPointF(0, end));
    scroll->setContentOffset({-50, -1}, false);
    EXPECT_EQ(scroll->contentOffset(), QPointF(0, 0));
    scroll->setContentInset({1, 20, 3, 40});
    scroll->setContentOffset({1000, 2000}, false);
    EXPECT_EQ(scroll->contentOffset(), QPointF(3, end + 40));
    scroll->setContentOffset({-1000, -2000}, false);
    EXPECT_EQ(scroll->contentOffset(), QPointF(-1, -20));
    scroll->setContentOffset({qQNaN(), qInf()}, false);
    EXPECT_EQ(scroll->contentOffset(), QPointF(-1, -20));
}

TEST_F(ScrollViewTest, theDelegateHearsOfEachOffsetOnceAndBeforeTheCallReturns)
{
    scroll->setContentSize({1000, 1000});
    scroll->setContentOffset({10, 20}, false);
    EXPECT_THAT(delegate->offsets, testing::ElementsAre(QPointF(10, 20)));
    scroll->setContentOffset({10, 20}, false);
    EXPECT_THAT(delegate->offsets, SizeIs(1));
    delegate.reset();
    scroll->setContentOffset({20, 20}, false);
    EXPECT_EQ(scroll->contentOffset(), QPointF(20, 20));
}

TEST_F(ScrollViewTest, aViewAtItsStartStaysThereWhenTheInsetChanges)
{
    scroll->setContentInset({0, 30, 0, 40});
    EXPECT_EQ(offset(), -30);
    EXPECT_THAT(delegate->offsets, SizeIs(1));
    scroll->setContentInset({0, 10, 0, 40});
    EXPECT_EQ(offset(), -10);
    scroll->setContentOffset({0, 100}, false);
    scroll->setContentInset({0, 70, 0, 0});
    EXPECT_EQ(offset(), 100);
    rest();
    EXPECT_EQ(offset(), 100);
}

TEST_F(ScrollViewTest, aViewThatIsResizedOrLosesContentStaysInRange)
{
    scroll->setContentOffset({0, end}, false);
    scroll->setFrame({50, 50, 100, 150});
    grab();
    EXPECT_EQ(offset(), 850);
    scroll->setContentSize({100, 500});
    EXPECT_EQ(offset(), 350);
    scroll->setContentSize({100, 50});
    EXPECT_EQ(offset(), 0);
    scroll->setContentSize({100, 1000});
    EXPECT_EQ(offset(), 0);
    rest();
    EXPECT_EQ(offset(), 0);
}

TEST_F(ScrollViewTest, noLaterFrameCorrectsAnOffset)
{
    scroll->setContentOffset({0, 10.5}, false);
    scroll->setContentSize({100, 1001});
    const double kept = offset();
    EXPECT_NEAR(kept, 10.5, 0.5);
    rest();
    EXPECT_EQ(offset(), kept);
    scroll->setContentOffset({0, 901}, false);
    delegate->offsets.clear();
    scroll->setFrame({50, 50, 100, 150});
    EXPECT_THAT(delegate->offsets, IsEmpty()) << "not in the midst of the change";
    scroll->setContentSize({100, 2000});
    const double inRange = offset();
    EXPECT_THAT(delegate->offsets, testing::ElementsAre(QPointF(0, inRange)));
    rest();
    grab();
    EXPECT_EQ(offset(), inRange);
}

TEST_F(ScrollViewTest, aViewInAnotherOneLeavesItTheOtherDirection)
{
    const auto inner = makeView<ScrollView>();
    inner->setFrame({0, 0, 100, 500});
    inner->setContentSize({500, 500});
    scroll->contentView()->addSubview(inner);
    grab();
    dragFrom({100, 140}, {100, 70});
    release({100, 70});
    rest();
    EXPECT_GT(offset(), 40);
    EXPECT_EQ(inner->contentOffset(), QPointF(0, 0));
    scroll->setContentOffset({0, 100}, false);
    dragFrom({140, 100}, {70, 100});
    release({70, 100});
    rest();
    EXPECT_EQ(offset(), 100);
    EXPECT_GT(inner->contentOffset().x(), 40);
}

TEST_F(ScrollViewTest, lessContentWhileItFlicksOrBouncesEndsInRange)
{
    dragFrom({100, 140}, {100, 60});
    release({100, 60});
    driver.step(milliseconds(100));
    ASSERT_TRUE(scroll->isMoving());
    scroll->setContentSize({100, 120});
    EXPECT_EQ(offset(), 20);
    rest();
    EXPECT_EQ(offset(), 20);

    scroll->setContentSize({100, 1000});
    scroll->setContentOffset({0, end}, false);
    dragFrom({100, 140}, {100, 60});
    ASSERT_GT(offset(), end);
    scroll->setContentSize({100, 500});
    release({100, 60});
    rest();
    EXPECT_EQ(offset(), 400);
}

TEST_F(ScrollViewTest, aStillViewRunsNothingAndDrawsNothing)
{
    dragFrom({100, 140}, {100, 60});
    release({100, 60});
    rest();
    EXPECT_TRUE(waitFor([&] { return !scroll->isMoving(); }));
    rest();
    grab();
    drainMainQueue();

    int frames = 0;
    QObject::connect(
        &window(), &QQuickWindow::afterRendering, &window(), [&] { ++frames; }, Qt::DirectConnection);
    for (int step = 0; step < 10; ++step) {
        driver.step(milliseconds(100));
    }
    EXPECT_EQ(frames, 0);
    EXPECT_FALSE(driver.isRunning());
    const auto* const dispatcher = QAbstractEventDispatcher::instance();
    QList<QObject*> all = scroll->findChildren<QObject*>();
    QList<QQuickItem*> items{scroll.get()};
    while (!items.isEmpty()) {
        QQuickItem* const item = items.takeLast();
        items += item->childItems();
        all += item;
        all += item->findChildren<QObject*>();
    }
    EXPECT_GE(all.size(), 5);
    for (QObject* const object : all) {
        EXPECT_THAT(dispatcher->registeredTimers(object), IsEmpty()) << object->metaObject()->className();
    }
    // The counter does count.
    scroll->setContentOffset({0, 10}, false);
    scroll->setBackgroundColor(Qt::red);
    EXPECT_TRUE(waitFor([&] { return frames > 0; }));
}

TEST_F(ScrollViewTest, theViewMayGoWhenItsDelegateIsTold)
{
    const auto go = [this] {
        delegate->onScroll = [this] {
            scroll->removeFromSuperview();
            scroll.reset();
        };
    };
    const auto again = [this] {
        scroll = makeView<ScrollView>();
        scroll->setFrame({50, 50, side, side});
        scroll->setContentSize({100, 1000});
        scroll->setScrollDelegate(delegate);
        root()->addSubview(scroll);
        grab();
    };
    go();
    const QPointer<ScrollView> item = scroll.get();
    item->setContentOffset({0, 10}, false);
    EXPECT_EQ(scroll, nullptr);
    drainMainQueue();
    EXPECT_TRUE(item.isNull());

    delegate->onScroll = {};
    again();
    go();
    scroll->setContentOffset({0, 500}, true);
    rest();
    EXPECT_EQ(scroll, nullptr);

    delegate->onScroll = {};
    again();
    go();
    dragFrom({100, 140}, {100, 60});
    EXPECT_EQ(scroll, nullptr);
    release({100, 60});
    rest();

    delegate->onScroll = {};
    again();
    dragFrom({100, 140}, {100, 60});
    release({100, 60});
    go();
    rest();
    EXPECT_EQ(scroll, nullptr);

    delegate->onScroll = {};
    again();
    scroll->setContentOffset({0, 900}, false);
    go();
    const QPointer<ScrollView> shrunk = scroll.get();
    shrunk->setContentSize({100, 200});
    EXPECT_EQ(scroll, nullptr);
}

TEST_F(ScrollViewTest, theDelegateMayScrollAgain)
{
    delegate->onScroll = [this] {
        scroll->setContentOffset({0, 100}, false);
    };
    scroll->setContentOffset({0, 10}, false);
    EXPECT_THAT(delegate->offsets, testing::ElementsAre(QPointF(0, 10), QPointF(0, 100)));
    delegate->onScroll = {};
    bool isOnce = true;
    delegate->onScroll = [&] {
        if (std::exchange(isOnce, false)) {
            scroll->setContentOffset({0, 300}, true);
        }
    };
    scroll->setContentOffset({0, 200}, true);
    rest();
    EXPECT_EQ(offset(), 300);
}

TEST_F(ScrollViewTest, theContentGoesWithTheView)
{
    const std::weak_ptr<View> content = scroll->contentView();
    EXPECT_EQ(content.lock()->superview(), scroll);
    dragFrom({100, 140}, {100, 60});
    release({100, 60});
    scroll->removeFromSuperview();
    scroll.reset();
    rest();
    EXPECT_TRUE(content.expired());
}

TEST_F(ScrollViewTest, theContentIsLaidOutWithTheView)
{
    class Counting : public View {
    public:
        void layoutSubviews() override { ++layouts; }
        int layouts = 0;
    };
    const auto inner = makeView<Counting>();
    inner->setFrame({0, 0, 10, 10});
    scroll->contentView()->addSubview(inner);
    root()->layoutIfNeeded();
    EXPECT_EQ(inner->layouts, 1);
}

} // namespace
