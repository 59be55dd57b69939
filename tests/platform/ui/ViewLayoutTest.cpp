#include "support/ViewTest.h"

#include <gmock/gmock.h>

using namespace kovalin::platform;
using kovalin::test::waitFor;

namespace {

class ViewLayoutTest : public kovalin::test::ViewTest {};

class CountingView : public View {
public:
    int layouts = 0;
    std::function<void(CountingView&)> onLayout;

    void layoutSubviews() override
    {
        ++layouts;
        if (onLayout) {
            onLayout(*this);
        }
    }

    [[nodiscard]] QSizeF sizeThatFits(const QSizeF& size) const override { return QSizeF(12.2, 7).boundedTo(size); }
};

std::shared_ptr<CountingView> addCounting(const std::shared_ptr<View>& superview)
{
    auto view = makeView<CountingView>();
    view->setFrame({0, 0, 100, 100});
    superview->addSubview(view);
    return view;
}

TEST_F(ViewLayoutTest, aNewSizeAsksForOneLayout)
{
    const auto view = addCounting(root());
    view->setFrame({0, 0, 50, 50});
    view->setFrame({0, 0, 60, 60});
    EXPECT_EQ(view->layouts, 0);
    EXPECT_TRUE(waitFor([&] { return view->layouts > 0; }));
    grab();
    EXPECT_EQ(view->layouts, 1);
}

TEST_F(ViewLayoutTest, neitherTheSameFrameNorANewPlaceAsks)
{
    const auto view = addCounting(root());
    view->layoutIfNeeded();
    view->setFrame({10, 10, 100, 100});
    view->setFrame({10, 10, 100, 100});
    grab();
    EXPECT_EQ(view->layouts, 1);
}

TEST_F(ViewLayoutTest, aSizeThatAHostSetsAsks)
{
    const auto view = addCounting(root());
    view->layoutIfNeeded();
    view->setSize({33, 33});
    grab();
    EXPECT_EQ(view->layouts, 2);
}

TEST_F(ViewLayoutTest, aLayoutThatSetsFramesIsFollowedByItsSubviews)
{
    const auto outer = addCounting(root());
    const auto inner = addCounting(outer);
    inner->setFrame({});
    outer->onLayout = [&](CountingView& view) {
        inner->setFrame(view.bounds());
    };
    outer->setFrame({0, 0, 80, 90});
    grab();
    EXPECT_EQ(inner->frame(), QRectF(0, 0, 80, 90));
    EXPECT_EQ(inner->layouts, 1);
}

TEST_F(ViewLayoutTest, aLayoutThatAsksForItselfAgainEnds)
{
    const auto view = addCounting(root());
    view->onLayout = [](CountingView& self) {
        self.setNeedsLayout();
        self.setFrame(self.frame().adjusted(0, 0, 1, 1));
    };
    grab();
    EXPECT_EQ(view->layouts, 1);
    EXPECT_EQ(view->frame(), QRectF(0, 0, 101, 101));
    view->setNeedsLayout();
    grab();
    EXPECT_EQ(view->layouts, 2);
}

TEST_F(ViewLayoutTest, addingSubviewsInALayoutIsNoQuestionForAnother)
{
    const auto view = addCounting(root());
    view->onLayout = [](CountingView& self) {
        if (self.subviews().isEmpty()) {
            self.addSubview(makeView<View>());
        } else {
            self.subviews().first()->removeFromSuperview();
        }
    };
    grab();
    EXPECT_EQ(view->layouts, 1);
    EXPECT_EQ(view->subviews().size(), 1);
}

TEST_F(ViewLayoutTest, aHiddenViewIsLaidOutOnceShown)
{
    const auto view = addCounting(root());
    view->setHidden(true);
    grab();
    EXPECT_EQ(view->layouts, 0);
    view->setHidden(false);
    grab();
    EXPECT_EQ(view->layouts, 1);
}

TEST_F(ViewLayoutTest, aViewInAHiddenOneIsLaidOutOnceThatIsShown)
{
    root()->setHidden(true);
    const auto view = addCounting(root());
    grab();
    EXPECT_EQ(view->layouts, 0);
    root()->setHidden(false);
    grab();
    EXPECT_EQ(view->layouts, 1);
}

TEST_F(ViewLayoutTest, layoutIfNeededReachesTheWholeTreeAtOnce)
{
    const auto outer = makeView<CountingView>(); // in no window
    outer->setFrame({0, 0, 10, 10});
    const auto inner = addCounting(outer);
    inner->setHidden(true);
    outer->layoutIfNeeded();
    outer->layoutIfNeeded();
    EXPECT_EQ(outer->layouts, 1);
    EXPECT_EQ(inner->layouts, 1);
}

TEST_F(ViewLayoutTest, aViewWithoutASizeWaitsForOneAndIsToldOfItsLoss)
{
    const auto view = makeView<CountingView>();
    root()->addSubview(view);
    view->setNeedsLayout();
    grab();
    EXPECT_EQ(view->layouts, 0);
    view->setFrame({0, 0, 5, 5});
    grab();
    EXPECT_EQ(view->layouts, 1);
    view->setFrame({});
    grab();
    EXPECT_EQ(view->layouts, 2);
}

TEST_F(ViewLayoutTest, sizeToFitRoundsUpAndKeepsTheOrigin)
{
    const auto view = addCounting(root());
    view->setFrame({3, 4, 100, 100});
    view->sizeToFit();
    EXPECT_EQ(view->frame(), QRectF(3, 4, 13, 7));
}

TEST_F(ViewLayoutTest, aViewMayGoInItsOwnLayout)
{
    auto view = addCounting(root());
    const std::weak_ptr<View> seen = view;
    view->onLayout = [](CountingView& self) {
        self.removeFromSuperview();
    };
    view.reset();
    grab();
    kovalin::test::drainMainQueue();
    EXPECT_TRUE(seen.expired());
    EXPECT_TRUE(root()->subviews().isEmpty());
}

TEST_F(ViewLayoutTest, newSafeAreasAskTheWholeTree)
{
    const auto view = addCounting(root());
    grab();
    root()->setSafeAreaInsets({0, 10, 0, 0});
    grab();
    EXPECT_EQ(view->layouts, 2);
}

} // namespace
