#include "support/ViewTest.h"

#include <QtCore/QPointer>
#include <QtGui/QMouseEvent>

#include <gmock/gmock.h>

#include <thread>

using namespace kovalin::platform;
using kovalin::test::drainMainQueue;
using kovalin::test::waitFor;

namespace {

class ViewLifetimeTest : public kovalin::test::ViewTest {};

TEST_F(ViewLifetimeTest, aSuperviewKeepsItsSubviews)
{
    auto view = addView({0, 0, 10, 10});
    const std::weak_ptr<View> seen = view;
    view.reset();
    EXPECT_FALSE(seen.expired());
    seen.lock()->removeFromSuperview();
    EXPECT_TRUE(seen.expired());
}

TEST_F(ViewLifetimeTest, theLastReferenceTakesItOutOfTheTreeAtOnce)
{
    auto view = makeView<View>();
    view->setParentItem(window().contentItem());
    const QPointer<View> item = view.get();
    view.reset();
    EXPECT_EQ(item->parentItem(), nullptr);
    EXPECT_EQ(item->window(), nullptr);
    drainMainQueue();
    EXPECT_TRUE(item.isNull());
}

TEST_F(ViewLifetimeTest, theLastReferenceMayGoOnAnotherThread)
{
    auto view = makeView<View>();
    const QPointer<View> item = view.get();
    const auto inner = makeView<View>();
    view->addSubview(inner);
    std::thread([view = std::move(view)]() mutable { view.reset(); }).join();
    EXPECT_TRUE(waitFor([&] { return item.isNull(); }));
    EXPECT_EQ(inner->superview(), nullptr);
    EXPECT_EQ(inner->parentItem(), nullptr);
}

TEST_F(ViewLifetimeTest, aSuperviewThatGoesFirstLeavesItsSubviewsWhole)
{
    auto outer = addView({0, 0, 100, 100});
    const auto inner = makeView<View>();
    auto innermost = makeView<View>();
    inner->addSubview(innermost);
    outer->addSubview(inner);
    const std::weak_ptr<View> unheld = innermost;
    innermost.reset();

    outer->removeFromSuperview();
    outer.reset();
    EXPECT_EQ(inner->superview(), nullptr);
    EXPECT_EQ(inner->window(), nullptr);
    drainMainQueue();
    EXPECT_EQ(inner->parentItem(), nullptr);
    EXPECT_FALSE(unheld.expired());

    root()->addSubview(inner);
    EXPECT_EQ(inner->superview(), root());
}

TEST_F(ViewLifetimeTest, aHostsItemThatGoesFirstLeavesTheViewWhole)
{
    const auto view = makeView<View>();
    {
        QQuickItem item(window().contentItem());
        view->setParentItem(&item);
    }
    EXPECT_EQ(view->parentItem(), nullptr);
    root()->addSubview(view);
    EXPECT_EQ(view->superview(), root());
}

TEST_F(ViewLifetimeTest, aWindowThatGoesFirstLeavesTheViewWhole)
{
    const auto view = makeView<View>();
    {
        QQuickWindow other;
        view->setParentItem(other.contentItem());
    }
    EXPECT_EQ(view->window(), nullptr);
    EXPECT_EQ(view->parentItem(), nullptr);
}

TEST_F(ViewLifetimeTest, aViewMayGoInItsOwnEventHandler)
{
    class Leaving : public View {
    public:
        Leaving() { setAcceptedMouseButtons(Qt::LeftButton); }

    protected:
        void mousePressEvent(QMouseEvent* event) override { event->accept(); }
        void mouseReleaseEvent(QMouseEvent* /*event*/) override { removeFromSuperview(); }
    };
    auto view = makeView<Leaving>();
    view->setFrame({0, 0, 100, 100});
    root()->addSubview(view);
    const QPointer<View> item = view.get();
    view.reset();
    tap({50, 50});
    drainMainQueue();
    EXPECT_TRUE(item.isNull());
}

TEST_F(ViewLifetimeTest, aDyingTreeTellsNothingToTheDead)
{
    class Told : public View {
    public:
        explicit Told(int& count)
            : _count(count)
        {
        }

    protected:
        void didMoveToWindow() override { ++_count; }

    private:
        int& _count;
    };
    int told = 0;
    auto outer = makeView<View>();
    outer->addSubview(makeView<Told>(told));
    root()->addSubview(outer);
    EXPECT_EQ(told, 1);
    const QPointer<View> item = outer.get();
    outer->removeFromSuperview();
    outer.reset();
    drainMainQueue();
    EXPECT_TRUE(item.isNull());
    EXPECT_EQ(told, 2);
}

} // namespace
