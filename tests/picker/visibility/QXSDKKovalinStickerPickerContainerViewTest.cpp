#include "picker/visibility/QXSDKKovalinStickerPickerContainerView.h"

#include "picker/visibility/ContainerTest.h"
#include "platform/ui/Animation.h"
#include "support/LogLines.h"
#include "support/ManualAnimationDriver.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <random>

// What a container measures.

using namespace kovalin::platform;
using namespace std::chrono_literals;
using kovalin::test::ContainerTest;
using kovalin::test::HostItem;
using kovalin::test::LogLines;
using kovalin::test::ManualAnimationDriver;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using QXSDKKovalinStickerPickerContainerViewTest = ContainerTest;

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, beginsNotShownUnderItsIdentifier)
{
    EXPECT_FALSE(container->isShown());
    EXPECT_EQ(container->objectName(), QStringLiteral("qxsdk_kovalin_container"));
    EXPECT_THAT(delegate->told, IsEmpty());
}

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, isShownOnceItIsInAWindow)
{
    embed();
    EXPECT_TRUE(container->isShown());
    EXPECT_THAT(delegate->told, ElementsAre(true));
    container->setParentItem(nullptr);
    settle();
    EXPECT_FALSE(container->isShown());
    EXPECT_THAT(delegate->told, ElementsAre(true, false));
}

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, tellsAtOnceOfASuperviewOfTheLibrarys)
{
    root()->addSubview(container);
    EXPECT_THAT(delegate->told, ElementsAre(true));
    container->removeFromSuperview();
    EXPECT_THAT(delegate->told, ElementsAre(true, false));
}

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, isntShownOutsideOfAWindow)
{
    outer->setParentItem(nullptr);
    embed();
    EXPECT_FALSE(container->isShown());
    outer->setParentItem(window().contentItem());
    settle();
    EXPECT_TRUE(container->isShown());
}

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, is40PointsWideAndHighAtLeast)
{
    struct Case {
        QSizeF size;
        bool isShown;
    };
    embed();
    for (const auto& [size, isShown] :
         {Case{{39, 100}, false}, Case{{100, 39}, false}, Case{{40, 40}, true}, Case{{39.99, 40}, false},
          Case{{40, 39.99}, false}, Case{{0, 0}, false}, Case{{40, 0}, false}, Case{{1000, 1000}, true}}) {
        container->setSize(size);
        settle();
        EXPECT_EQ(container->isShown(), isShown) << size.width() << " x " << size.height();
    }
}

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, isMeasuredByWhatItsSuperviewsLeaveWhetherTheyClipOrNot)
{
    embed();
    for (const auto& [frame, isShown] : std::array<std::pair<QRectF, bool>, 9>{{
             {{0, 0, 39, 100}, false},      // too narrow
             {{0, 0, 40, 100}, true},       //
             {{0, 0, 100, 39}, false},      // too low
             {{-160, 0, 200, 200}, false},  // too far left: nothing of the 100 points is left
             {{-60, 0, 200, 200}, true},    // just 40 points of it
             {{-61, 0, 200, 200}, false},   //
             {{0, 160, 200, 200}, true},    //
             {{0, 161, 200, 200}, false},   // too far down
             {{500, 500, 200, 200}, false}, // beside the window
         }}) {
        inner->setPosition(frame.topLeft());
        inner->setSize(frame.size());
        settle();
        EXPECT_EQ(container->isShown(), isShown) << frame.x() << ", " << frame.y() << ", " << frame.width();
    }
}

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, whatTwoSuperviewsLeaveIsWhatBothLeave)
{
    embed();
    inner->setPosition({-30, 0}); // the container is at -30 … 70 of the outer one
    settle();
    EXPECT_TRUE(container->isShown());
    outer->setWidth(39);
    settle();
    EXPECT_FALSE(container->isShown());
    outer->setWidth(40);
    settle();
    EXPECT_TRUE(container->isShown());
    container->setPosition({31, 0}); // at 1 … 101, of which 39 points are left
    settle();
    EXPECT_FALSE(container->isShown());
}

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, isntShownInAnItemWithoutASize)
{
    inner->setSize({0, 0});
    embed();
    EXPECT_FALSE(container->isShown());
}

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, opacityAndWhatLiesAboveItDontCount)
{
    const HostItem above(window().contentItem());
    outer->setOpacity(0);
    container->setAlpha(0);
    embed();
    EXPECT_TRUE(container->isShown());
}

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, isMeasuredByModelValuesWhileTheyAreAnimated)
{
    ManualAnimationDriver driver;
    const auto superview = addView({0, 0, 200, 200});
    superview->addSubview(container);
    settle();
    ASSERT_TRUE(container->isShown());
    animate(1s, 0ms, [&] { superview->setFrame({0, 0, 10, 200}); });
    driver.step(0ms);
    driver.step(10ms);
    settle();
    EXPECT_GT(superview->width(), 100) << "on screen";
    EXPECT_FALSE(container->isShown());
}

// Hidden

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, isntShownWhileItOrAnItemAroundItIsHidden)
{
    embed();
    for (QQuickItem* const item : {static_cast<QQuickItem*>(container.get()), static_cast<QQuickItem*>(inner.get()),
                                   static_cast<QQuickItem*>(outer.get()), window().contentItem()}) {
        delegate->told.clear();
        item->setVisible(false);
        EXPECT_FALSE(container->isShown());
        EXPECT_THAT(delegate->told, ElementsAre(false)) << "at once";
        item->setVisible(true);
        EXPECT_TRUE(container->isShown());
        EXPECT_THAT(delegate->told, ElementsAre(false, true)) << "at once";
        settle();
        EXPECT_EQ(delegate->told.size(), 2);
    }
}

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, isntShownWhileItOrAViewAroundItIsHidden)
{
    const auto superview = addView({0, 0, 200, 200});
    superview->addSubview(container);
    for (const auto& view : {std::static_pointer_cast<View>(container), superview, root()}) {
        delegate->told.clear();
        view->setHidden(true);
        EXPECT_THAT(delegate->told, ElementsAre(false)) << "at once";
        view->setHidden(false);
        EXPECT_THAT(delegate->told, ElementsAre(false, true)) << "at once";
        settle();
        EXPECT_EQ(delegate->told.size(), 2);
    }
}

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, isShownWhenNothingAroundItIsHiddenAnyMore)
{
    embed();
    outer->setVisible(false);
    inner->setVisible(false);
    outer->setVisible(true);
    EXPECT_FALSE(container->isShown());
    inner->setVisible(true);
    EXPECT_TRUE(container->isShown());
    EXPECT_THAT(delegate->told, ElementsAre(true, false, true));
}

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, comesIntoAHiddenItemUnseen)
{
    outer->setVisible(false);
    embed();
    EXPECT_THAT(delegate->told, IsEmpty());
    outer->setVisible(true);
    EXPECT_THAT(delegate->told, ElementsAre(true));
}

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, isntShownWhileItsWindowIsHiddenOrMinimised)
{
    embed();
    window().hide();
    EXPECT_THAT(delegate->told, ElementsAre(true, false)) << "at once";
    window().show();
    EXPECT_THAT(delegate->told, ElementsAre(true, false, true)) << "at once";
    settle(); // what the system echoes
    window().showMinimized();
    EXPECT_FALSE(container->isShown());
    settle();
    EXPECT_FALSE(container->isShown());
    window().showNormal();
    EXPECT_TRUE(container->isShown());
    settle();
    EXPECT_THAT(delegate->told, ElementsAre(true, false, true, false, true));
}

// Layout

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, aLayoutTellsItsOwnerAndThenMeasures)
{
    QList<bool> shownInLayout;
    container->setOnLayout([&] { shownInLayout.append(container->isShown()); });
    root()->addSubview(container);
    container->setFrame({0, 0, 10, 10});
    container->layoutIfNeeded();
    EXPECT_THAT(shownInLayout, ElementsAre(true));
    EXPECT_THAT(delegate->told, ElementsAre(true, false));
    container->setFrame({0, 0, 50, 50});
    container->layoutIfNeeded();
    EXPECT_THAT(shownInLayout, ElementsAre(true, false));
    EXPECT_THAT(delegate->told, ElementsAre(true, false, true));
}

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, isntLaidOutBeforeItHasASize)
{
    int layouts = 0;
    const auto empty = makeView<Container>();
    empty->setOnLayout([&] { ++layouts; });
    root()->addSubview(empty);
    grab();
    EXPECT_EQ(layouts, 0);
    empty->setSize({50, 50});
    grab();
    EXPECT_EQ(layouts, 1);
}

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, logsItsEnd)
{
    embed();
    const LogLines lines;
    letGo();
    EXPECT_EQ(lines.count(QStringLiteral("Kovalin view deallocated")), 0);
    settle();
    EXPECT_EQ(lines.count(QStringLiteral("[DEBUG] Kovalin view deallocated")), 1);
}

// All at once

/// Plain: all rectangles in the window's coordinates, in whole points.
bool isShownPlainly(const std::array<QQuickItem*, 4>& chain, const QSize& window)
{
    QRect visible(QPoint(), window);
    QPoint origin;
    for (const QQuickItem* item : chain) {
        origin += item->position().toPoint();
        visible &= QRect(origin, item->size().toSize());
        if (!item->isVisible()) {
            return false;
        }
    }
    return visible.width() >= 40 && visible.height() >= 40;
}

TEST_F(QXSDKKovalinStickerPickerContainerViewTest, measuresAsAPlainCalculationDoesWhateverChanges)
{
    embed();
    HostItem middle(inner.get());
    container->setParentItem(&middle);
    settle();
    const std::array<QQuickItem*, 4> chain{outer.get(), inner.get(), &middle, container.get()};
    std::mt19937 random(20200913);
    const auto below = [&random](int limit) {
        return int(random() % unsigned(limit));
    };
    int shownRounds = 0;
    for (int round = 0; round < 600; ++round) {
        QQuickItem& item = *chain.at(std::size_t(below(4)));
        if (below(5) == 0) {
            item.setVisible(!item.isVisible());
        } else {
            item.setPosition(QPointF(below(60) - 20, below(60) - 20));
            item.setSize(QSizeF(60 + below(120), 60 + below(120)));
        }
        if (round % 4 == 0) {
            for (QQuickItem* const each : chain) {
                each->setVisible(true);
            }
        }
        settle();
        const bool isShown = isShownPlainly(chain, window().size());
        ASSERT_EQ(container->isShown(), isShown) << "round " << round;
        ASSERT_EQ(!delegate->told.isEmpty() && delegate->told.last(), isShown);
        shownRounds += isShown ? 1 : 0;
    }
    EXPECT_GT(shownRounds, 60);
    EXPECT_LT(shownRounds, 540);
    EXPECT_EQ(std::ranges::adjacent_find(delegate->told), delegate->told.end()) << "only changes are told";
}

} // namespace
