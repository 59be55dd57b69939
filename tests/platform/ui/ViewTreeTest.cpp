#include "support/ViewTest.h"

#include <gmock/gmock.h>

#include <thread>

using namespace kovalin::platform;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ViewTreeTest : public kovalin::test::ViewTest {};

/// Writes down what it is told.
class ToldView : public View {
public:
    std::vector<std::string> told;

protected:
    void didMoveToSuperview() override { told.emplace_back(superview() ? "superview" : "no superview"); }
    void didMoveToWindow() override { told.emplace_back(window() ? "window" : "no window"); }
    void visibilityDidChange() override { told.emplace_back(isVisible() ? "visible" : "invisible"); }
};

TEST_F(ViewTreeTest, subviewsStandInTheirStackingOrder)
{
    const auto bottom = addView({0, 0, 100, 100}, Qt::red);
    const auto top = addView({0, 0, 100, 100}, Qt::blue);
    EXPECT_THAT(root()->subviews(), ElementsAre(bottom, top));
    EXPECT_EQ(colorAt({50, 50}), QColor(Qt::blue));

    const auto between = makeView<View>();
    between->setFrame({0, 0, 100, 100});
    between->setBackgroundColor(Qt::green);
    root()->insertSubview(between, 1);
    EXPECT_THAT(root()->subviews(), ElementsAre(bottom, between, top));
    top->removeFromSuperview();
    EXPECT_EQ(colorAt({50, 50}), QColor(Qt::green));
    EXPECT_EQ(top->superview(), nullptr);
    EXPECT_EQ(between->superview(), root());
}

TEST_F(ViewTreeTest, addingASubviewAgainMovesItToTheTop)
{
    const auto first = addView({0, 0, 100, 100}, Qt::red);
    const auto second = addView({0, 0, 100, 100}, Qt::blue);
    root()->addSubview(first);
    EXPECT_THAT(root()->subviews(), ElementsAre(second, first));
    EXPECT_EQ(colorAt({50, 50}), QColor(Qt::red));
    root()->insertSubview(first, -7);
    EXPECT_THAT(root()->subviews(), ElementsAre(first, second));
    EXPECT_EQ(colorAt({50, 50}), QColor(Qt::blue));
}

TEST_F(ViewTreeTest, aHigherZPositionLiesAboveLaterSiblings)
{
    addView({0, 0, 100, 100}, Qt::red)->setZPosition(100);
    addView({0, 0, 100, 100}, Qt::blue);
    EXPECT_EQ(colorAt({50, 50}), QColor(Qt::red));
}

TEST_F(ViewTreeTest, aViewMovesFromOneSuperviewToAnother)
{
    const auto first = addView({0, 0, 100, 100});
    const auto second = addView({100, 0, 100, 100});
    const auto moved = makeView<View>();
    first->addSubview(moved);
    second->addSubview(moved);
    EXPECT_THAT(first->subviews(), IsEmpty());
    EXPECT_THAT(second->subviews(), ElementsAre(moved));
}

TEST_F(ViewTreeTest, aTreeNeverHasItselfInIt)
{
    const auto parent = addView({0, 0, 100, 100});
    const auto child = makeView<View>();
    parent->addSubview(child);
    child->addSubview(parent);
    child->addSubview(child);
    child->addSubview(nullptr);
    EXPECT_THAT(child->subviews(), IsEmpty());
    EXPECT_EQ(parent->superview(), root());
}

TEST_F(ViewTreeTest, tellsOfTheTreeBeforeTheCallReturns)
{
    const auto view = makeView<ToldView>();
    root()->addSubview(view);
    EXPECT_THAT(view->told, ElementsAre("window", "superview"));

    view->told.clear();
    root()->setHidden(true);
    EXPECT_THAT(view->told, ElementsAre("invisible"));
    root()->setHidden(false);
    EXPECT_THAT(view->told, ElementsAre("invisible", "visible"));

    view->told.clear();
    view->removeFromSuperview();
    EXPECT_THAT(view->told, ElementsAre("no window", "no superview"));
}

TEST_F(ViewTreeTest, hidingWhatIsHiddenByItsSuperviewTellsNothing)
{
    const auto view = makeView<ToldView>();
    root()->addSubview(view);
    root()->setHidden(true);
    view->told.clear();
    view->setHidden(true);
    root()->setHidden(false);
    EXPECT_THAT(view->told, IsEmpty());
    EXPECT_TRUE(view->isHidden());
    EXPECT_FALSE(root()->isHidden());
}

TEST_F(ViewTreeTest, tellsOfAHostsChangeInALaterTurn)
{
    const auto view = makeView<ToldView>();
    view->setParentItem(window().contentItem());
    EXPECT_THAT(view->told, IsEmpty());
    kovalin::test::drainMainQueue();
    EXPECT_THAT(view->told, ElementsAre("window", "no superview"));
    view->removeFromSuperview();
    EXPECT_EQ(view->parentItem(), nullptr);
}

TEST_F(ViewTreeTest, whatIsToldMayChangeTheTree)
{
    class Leaving : public View {
    protected:
        void didMoveToWindow() override
        {
            if (window()) {
                removeFromSuperview();
            }
        }
    };
    root()->addSubview(makeView<Leaving>());
    EXPECT_THAT(root()->subviews(), IsEmpty());
    kovalin::test::drainMainQueue();
}

TEST_F(ViewTreeTest, identifiersAreObjectNames)
{
    const auto view = addView({0, 0, 10, 10});
    view->setAccessibilityIdentifier(QStringLiteral("an_identifier"));
    EXPECT_EQ(root()->findChild<QQuickItem*>(QStringLiteral("an_identifier")), nullptr); // no child object
    EXPECT_EQ(view->objectName(), QStringLiteral("an_identifier"));
}

TEST(ViewTreeDeathTest, anotherThreadIsACleanStop)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto view = makeView<View>();
    EXPECT_DEATH(std::thread([&] { view->setHidden(true); }).join(), "setHidden");
}

} // namespace
