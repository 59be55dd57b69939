#include "picker/bars/QXSDKHideableNavbarView.h"

#include "platform/ui/ScrollView.h"
#include "support/ManualAnimationDriver.h"
#include "support/ViewTest.h"

#include <QtCore/QPointer>

using namespace kovalin::platform;
using kovalin::test::drainMainQueue;
using kovalin::test::waitFor;
using namespace std::chrono_literals;

namespace {

/// The delay that is under way; the page destroys it to cancel it.
struct Delay {
    std::chrono::milliseconds length;
    std::function<void()> block;
};

class Page final : public QXSDKHideableNavbarView {
public:
    using QXSDKHideableNavbarView::_currentScrollTop;

    void layoutSubviews() override
    {
        ++layouts;
        header->setFrame({0, -navbarOffset(), bounds().width(), 80});
    }

    /// The delay's time has come.
    void elapse()
    {
        const auto running = std::exchange(delay.lock()->block, nullptr);
        running();
    }

    std::shared_ptr<View> header = makeView<View>();
    std::weak_ptr<Delay> delay;
    int delays = 0;
    int layouts = 0;

protected:
    std::shared_ptr<void> _startDelay(std::chrono::milliseconds length, std::function<void()> block) override
    {
        auto started = std::make_shared<Delay>(Delay{length, std::move(block)});
        delay = started;
        ++delays;
        return started;
    }
};

class QXSDKHideableNavbarViewTest : public kovalin::test::ViewTest {
protected:
    QXSDKHideableNavbarViewTest()
    {
        page->setFrame({0, 0, side, side});
        root()->addSubview(page);
        list->setFrame({0, 0, side, side});
        list->setContentSize({side, 1000});
        list->setContentInset({0, 80, 0, 0});
        page->addSubview(list);
        page->header->setBackgroundColor(Qt::red);
        page->addSubview(page->header);
        scrollTo(0);
        page->setScrollView(list);
        page->setMaxNavbarOffset(80);
        grab();
    }

    /// A pending return holds the page.
    ~QXSDKHideableNavbarViewTest() override
    {
        if (page) {
            page->setNavbarOffset(0);
        }
    }

    /// So that the list has scrolled by `top` points from its rest at the top.
    void scrollTo(double top) { list->setContentOffset({0, top - list->contentInset().top()}, false); }

    [[nodiscard]] bool isReturnPending() const { return !page->delay.expired(); }

    kovalin::test::ManualAnimationDriver driver;
    std::shared_ptr<Page> page = makeView<Page>();
    std::shared_ptr<ScrollView> list = makeView<ScrollView>();
};

// The scroll position

TEST_F(QXSDKHideableNavbarViewTest, atRestAtTheTopTheListHasScrolledByNothing)
{
    EXPECT_EQ(page->_currentScrollTop(), 0);
    scrollTo(30);
    EXPECT_EQ(page->_currentScrollTop(), 30);
}

TEST_F(QXSDKHideableNavbarViewTest, bouncingAtTheEndDoesNotCount)
{
    scrollTo(1000 - side + 80);
    const double end = page->_currentScrollTop();
    EXPECT_EQ(end, 1000 - side + 80);
    press({100, 190});
    for (int y = 185; y >= 100; y -= 5) {
        move({100, double(y)});
    }
    EXPECT_GT(list->contentOffset().y(), 1000 - side);
    EXPECT_EQ(page->_currentScrollTop(), end);
    release({100, 100});
}

TEST_F(QXSDKHideableNavbarViewTest, bouncingAtTheTopIsNegative)
{
    press({100, 100});
    for (int y = 105; y <= 190; y += 5) {
        move({100, double(y)});
    }
    EXPECT_LT(page->_currentScrollTop(), 0);
    release({100, 190});
}

TEST_F(QXSDKHideableNavbarViewTest, withoutAListNothingHasScrolled)
{
    page->setScrollView({});
    EXPECT_EQ(page->_currentScrollTop(), 0);
    page->setNavbarOffset(60);
    EXPECT_EQ(page->navbarOffset(), 0);
}

TEST_F(QXSDKHideableNavbarViewTest, holdsItsListWeakly)
{
    scrollTo(100);
    list->removeFromSuperview();
    list.reset();
    EXPECT_EQ(page->scrollView(), nullptr);
    page->updateNavbarOffset();
    EXPECT_EQ(page->navbarOffset(), 0);
}

// The offset

TEST_F(QXSDKHideableNavbarViewTest, beginsWithAllAtNothing)
{
    const auto fresh = makeView<Page>();
    EXPECT_EQ(fresh->navbarOffset(), 0);
    EXPECT_EQ(fresh->maxNavbarOffset(), 0);
    EXPECT_EQ(fresh->scrollView(), nullptr);
}

TEST_F(QXSDKHideableNavbarViewTest, scrollingMovesTheBarsByTheSameDistance)
{
    for (const double top : {10.0, 35.0, 20.0, 79.0}) {
        scrollTo(top);
        page->updateNavbarOffset();
        EXPECT_EQ(page->navbarOffset(), top);
    }
    scrollTo(300);
    page->updateNavbarOffset();
    EXPECT_EQ(page->navbarOffset(), 80) << "wholly hidden";
    scrollTo(275);
    page->updateNavbarOffset();
    EXPECT_EQ(page->navbarOffset(), 55) << "they come back wherever the list is";
    scrollTo(100);
    page->updateNavbarOffset();
    EXPECT_EQ(page->navbarOffset(), 0);
}

TEST_F(QXSDKHideableNavbarViewTest, theListsPositionWhenItIsSetIsWhereScrollingCountsFrom)
{
    scrollTo(300);
    page->setScrollView(list);
    page->updateNavbarOffset();
    EXPECT_EQ(page->navbarOffset(), 0);
    scrollTo(310);
    page->updateNavbarOffset();
    EXPECT_EQ(page->navbarOffset(), 10);
}

TEST_F(QXSDKHideableNavbarViewTest, theBarsCannotHideFurtherThanTheListHasScrolled)
{
    scrollTo(30);
    page->setNavbarOffset(60);
    EXPECT_EQ(page->navbarOffset(), 30);
}

TEST_F(QXSDKHideableNavbarViewTest, theOffsetStaysBetweenNothingAndItsMaximum)
{
    scrollTo(300);
    page->setNavbarOffset(100);
    EXPECT_EQ(page->navbarOffset(), 80);
    page->setNavbarOffset(-5);
    EXPECT_EQ(page->navbarOffset(), 0);
}

TEST_F(QXSDKHideableNavbarViewTest, aListThatIsShorterThanItsFrameKeepsTheBars)
{
    list->setContentInset({});
    list->setContentSize({side, 50});
    EXPECT_LT(page->_currentScrollTop(), 0);
    page->setNavbarOffset(60);
    EXPECT_EQ(page->navbarOffset(), 0);
    EXPECT_FALSE(isReturnPending());
}

TEST_F(QXSDKHideableNavbarViewTest, eachChangeAsksForALayout)
{
    scrollTo(300);
    const int before = page->layouts;
    page->setNavbarOffset(40);
    EXPECT_EQ(page->layouts, before);
    grab();
    EXPECT_EQ(page->layouts, before + 1);
    EXPECT_EQ(page->header->frame().y(), -40);
}

TEST_F(QXSDKHideableNavbarViewTest, anOffsetOfNothingShowsTheBarsAtOnce)
{
    scrollTo(300);
    page->setNavbarOffset(80);
    grab();
    page->setNavbarOffset(0);
    grab();
    EXPECT_EQ(page->header->y(), 0) << "with no animation of its own";
    EXPECT_FALSE(isReturnPending());
}

// The return

TEST_F(QXSDKHideableNavbarViewTest, barsThatAreHalfHiddenComeBackAfterThreeSeconds)
{
    scrollTo(300);
    page->setNavbarOffset(40);
    grab();
    ASSERT_TRUE(isReturnPending());
    EXPECT_EQ(page->delay.lock()->length, 3s);
    page->elapse();
    EXPECT_EQ(page->navbarOffset(), 0);
    EXPECT_EQ(page->header->frame().y(), 0) << "laid out at once";
    EXPECT_EQ(page->header->y(), -40) << "and on screen it has just begun";
    driver.step(0ms);
    driver.step(299ms);
    EXPECT_LT(page->header->y(), 0);
    driver.step(1ms);
    EXPECT_EQ(page->header->y(), 0);
}

TEST_F(QXSDKHideableNavbarViewTest, whollyShownOrHiddenBarsStay)
{
    scrollTo(300);
    page->setNavbarOffset(0);
    EXPECT_FALSE(isReturnPending());
    page->setNavbarOffset(80);
    EXPECT_FALSE(isReturnPending());
}

TEST_F(QXSDKHideableNavbarViewTest, anyNewOffsetCancelsAPendingReturn)
{
    scrollTo(300);
    page->setNavbarOffset(40);
    const auto first = page->delay;
    page->setNavbarOffset(40);
    EXPECT_TRUE(first.expired()) << "also one that leaves the offset unchanged";
    EXPECT_EQ(page->delays, 2);
    EXPECT_TRUE(isReturnPending());
    page->setNavbarOffset(80);
    EXPECT_FALSE(isReturnPending());
}

TEST_F(QXSDKHideableNavbarViewTest, aReturnDoesNotCountAsScrolling)
{
    scrollTo(300);
    page->setNavbarOffset(40);
    scrollTo(320); // of which the page isn't told
    page->elapse();
    page->updateNavbarOffset();
    EXPECT_EQ(page->navbarOffset(), 20);
}

TEST_F(QXSDKHideableNavbarViewTest, aPendingReturnKeepsThePageAlive)
{
    scrollTo(300);
    page->setNavbarOffset(40);
    const QPointer<Page> item = page.get();
    page->removeFromSuperview();
    page.reset();
    drainMainQueue();
    ASSERT_FALSE(item.isNull());
    item->elapse();
    drainMainQueue();
    EXPECT_TRUE(item.isNull());
}

TEST_F(QXSDKHideableNavbarViewTest, aCancelledReturnLetsThePageGo)
{
    scrollTo(300);
    page->setNavbarOffset(40);
    page->setNavbarOffset(0);
    const QPointer<Page> item = page.get();
    page->removeFromSuperview();
    page.reset();
    drainMainQueue();
    EXPECT_TRUE(item.isNull());
}

/// With the delay of the platform's.
class WaitingPage final : public QXSDKHideableNavbarView {
public:
    using QXSDKHideableNavbarView::_startDelay;
};

TEST_F(QXSDKHideableNavbarViewTest, aDelayRunsItsBlockUnlessItIsDestroyed)
{
    const auto waiting = makeView<WaitingPage>();
    bool didRun = false;
    bool didDestroyedRun = false;
    auto destroyed = waiting->_startDelay(0ms, [&] { didDestroyedRun = true; });
    destroyed.reset();
    const auto delay = waiting->_startDelay(1ms, [&] { didRun = true; });
    EXPECT_TRUE(waitFor([&] { return didRun; }));
    EXPECT_FALSE(didDestroyedRun);
}

} // namespace
