#include "picker/tags/QXSDKKovalinTagSelectorView.h"

#include "kits/core/QXSDKFont.h"
#include "picker/config/KovalinString.h"
#include "picker/config/QXSDKKovalinStickerPickerConfigBuilder.h"
#include "picker/grid/QXSDKKovalinFlowLayout.h"
#include "picker/tags/TagViews.h"
#include "support/ManualAnimationDriver.h"
#include "support/QtPrinting.h"
#include "support/ViewTest.h"

#include <QtGui/QGuiApplication>
#include <QtTest/QTest>

#include <gmock/gmock.h>

#include <functional>

using namespace kovalin::platform;
using namespace kovalin::test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Strip = QXSDKKovalinTagSelectorView;

namespace {

class RecordingDelegate final : public QXSDKKovalinTagSelectorViewDelegate {
public:
    void kovalinTagSelectorViewDidSelectTag(const QXSDKTagTilePtr& tagTile) override
    {
        selected.push_back(tagTile);
        if (then) {
            then();
        }
    }
    std::vector<QXSDKTagTilePtr> selected;
    std::function<void()> then;
};

class QXSDKKovalinTagSelectorViewTest : public ViewTest {
protected:
    static constexpr double width = 200;
    static constexpr double height = 40;

    QXSDKKovalinTagSelectorViewTest() { make(); }
    ~QXSDKKovalinTagSelectorViewTest() override { QGuiApplication::setLayoutDirection(Qt::LeftToRight); }

    void make()
    {
        if (strip) {
            strip->removeFromSuperview();
        }
        config->theme()->setBackgroundColor(Qt::cyan);
        config->theme()->setSubtextColor(Qt::darkGray);
        config->theme()->setBorderColor(Qt::magenta);
        config->theme()->setSearchPillTextColor(Qt::yellow);
        strip = Strip::create({0, 0, width, height}, config);
        strip->setDelegate(delegate);
        root()->addSubview(strip);
        grab();
    }
    void makeRightToLeft()
    {
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        make();
    }
    void show(const Strip::List& list)
    {
        strip->setTagTiles(list);
        settle();
    }
    void settle()
    {
        driver.step(0ms);
        driver.step(1s);
        drainMainQueue();
        grab();
    }
    /// Of the pill on screen, in the strip.
    [[nodiscard]] QRectF frameOf(qsizetype item) const
    {
        return pillsOf(*strip)->frameOfItem(item).translated(-pillsOf(*strip)->contentOffset());
    }
    [[nodiscard]] static double widthOf(const QString& text) { return QXSDKKovalinTagView::sizeForText(text).width(); }
    void key(Qt::Key key) { QTest::keyClick(&window(), key); }

    ManualAnimationDriver driver;
    QXSDKKovalinStickerPickerConfigPtr config = std::make_shared<QXSDKKovalinStickerPickerConfig>();
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    std::shared_ptr<Strip> strip;
};

TEST_F(QXSDKKovalinTagSelectorViewTest, hasItsTextBelowThePillsAndTheBorderAboveBoth)
{
    ASSERT_EQ(strip->subviews().size(), 3);
    EXPECT_EQ(strip->backgroundColor(), QColor(Qt::cyan));
    const auto label = noResultsOf(*strip);
    EXPECT_EQ(label->text(), kovalinStringWithKey(QStringLiteral("no_results")));
    EXPECT_EQ(label->font(), qxsdkRegularFontOfSize(14));
    EXPECT_EQ(label->textColor(), QColor(Qt::darkGray));
    EXPECT_EQ(label->textAlignment(), TextAlignment::Center);
    EXPECT_TRUE(label->isHidden()) << "nothing was searched yet";
    EXPECT_EQ(strip->subviews().at(2)->backgroundColor(), QColor(Qt::magenta));
    EXPECT_THAT(*strip->tagTiles(), IsEmpty());
}

TEST_F(QXSDKKovalinTagSelectorViewTest, scrollsItsPillsSidewaysInAFlow)
{
    const auto pills = pillsOf(*strip);
    const auto layout = pills->collectionViewLayout();
    EXPECT_TRUE(std::dynamic_pointer_cast<QXSDKKovalinFlowLayout>(layout));
    EXPECT_EQ(layout->scrollDirection(), ScrollDirection::Horizontal);
    EXPECT_EQ(layout->minimumInteritemSpacing(), 5);
    EXPECT_EQ(layout->minimumLineSpacing(), 10);
    EXPECT_EQ(pills->contentInset(), QMarginsF(10, 0, 10, 0));
    EXPECT_FALSE(pills->backgroundColor().isValid());
}

TEST_F(QXSDKKovalinTagSelectorViewTest, isFilledByItsPartsWithAHairlineAtTheFoot)
{
    for (const QSizeF& size : {QSizeF(200, 40), QSizeF(123.5, 30), QSizeF(0, 0)}) {
        strip->setFrame({QPointF(), size});
        strip->layoutIfNeeded();
        EXPECT_EQ(pillsOf(*strip)->frame(), QRectF(QPointF(), size));
        EXPECT_EQ(noResultsOf(*strip)->frame(), QRectF(QPointF(), size));
        EXPECT_EQ(strip->subviews().at(2)->frame(), QRectF(0, size.height() - 0.5, size.width(), 0.5));
    }
}

TEST_F(QXSDKKovalinTagSelectorViewTest, takesTheDefaultThemeWithoutAConfiguration)
{
    const auto made = Strip::create({0, 0, 100, 40}, nullptr);
    EXPECT_EQ(made->backgroundColor(), QXSDKKovalinStickerPickerTheme().backgroundColor());
}

TEST_F(QXSDKKovalinTagSelectorViewTest, saysThatThereIsNothingExactlyForAnEmptyList)
{
    strip->setTagTiles(tiles({}));
    EXPECT_FALSE(noResultsOf(*strip)->isHidden());
    strip->setTagTiles(tiles({QStringLiteral("one")}));
    EXPECT_TRUE(noResultsOf(*strip)->isHidden());
    strip->setTagTiles(nullptr);
    EXPECT_FALSE(noResultsOf(*strip)->isHidden());
    EXPECT_THAT(*strip->tagTiles(), IsEmpty());
}

TEST_F(QXSDKKovalinTagSelectorViewTest, keepsTheVeryListThatIsSet)
{
    const auto list = tiles({QStringLiteral("one"), QStringLiteral("two")});
    strip->setTagTiles(list);
    EXPECT_EQ(strip->tagTiles(), list);
}

TEST_F(QXSDKKovalinTagSelectorViewTest, showsATileAsAPillOfItsTextsSize)
{
    show(std::make_shared<const QXSDKTagTileList>(QXSDKTagTileList{tile(QStringLiteral("happy"), Qt::blue)}));
    const auto cell = cellOf(*strip, 0);
    ASSERT_TRUE(cell);
    EXPECT_EQ(cell->text(), QStringLiteral("happy"));
    EXPECT_EQ(cell->color(), QColor(Qt::blue));
    EXPECT_EQ(pillOf(*cell)->textColor(), QColor(Qt::yellow));
    EXPECT_EQ(cell->frame().size(), QXSDKKovalinTagView::sizeForText(QStringLiteral("happy")));
    EXPECT_EQ(pillOf(*cell)->frame(), cell->bounds());
}

TEST_F(QXSDKKovalinTagSelectorViewTest, putsPillsInARowFromTheLeft)
{
    show(tiles({QStringLiteral("one"), QStringLiteral("longer")}));
    EXPECT_EQ(frameOf(0), QRectF(10, 8, widthOf(QStringLiteral("one")), 24));
    EXPECT_EQ(frameOf(1).left(), frameOf(0).right() + 10);
    EXPECT_EQ(pillsOf(*strip)->contentOffset(), QPointF(-10, 0));
}

TEST_F(QXSDKKovalinTagSelectorViewTest, putsPillsInARowFromTheRightWhereReadingBeginsThere)
{
    makeRightToLeft();
    show(tiles({QStringLiteral("one"), QStringLiteral("longer")}));
    EXPECT_NEAR(frameOf(0).right(), width - 10, 1e-6);
    EXPECT_NEAR(frameOf(1).right(), frameOf(0).left() - 10, 1e-6);
}

TEST_F(QXSDKKovalinTagSelectorViewTest, goesBackToItsBeginningForEachList)
{
    show(manyTiles(QStringLiteral("first")));
    pillsOf(*strip)->setContentOffset({500, 0}, false);
    grab();
    strip->setTagTiles(manyTiles(QStringLiteral("second"), 25));
    EXPECT_EQ(pillsOf(*strip)->contentOffset(), QPointF(-10, 0));
    EXPECT_FALSE(pillsOf(*strip)->isMoving());
    settle();
    EXPECT_EQ(frameOf(0).left(), 10);
    EXPECT_EQ(cellOf(*strip, 0)->text(), QStringLiteral("second0"));
}

TEST_F(QXSDKKovalinTagSelectorViewTest, goesBackToItsBeginningAtTheRightForEachList)
{
    makeRightToLeft();
    show(manyTiles(QStringLiteral("first")));
    EXPECT_NEAR(frameOf(0).right(), width - 10, 1e-6) << "it begins there";
    pillsOf(*strip)->setContentOffset({100, 0}, false);
    grab();
    for (const int count : {25, 60, 1, 40}) {
        strip->setTagTiles(manyTiles(QStringLiteral("then"), count));
        EXPECT_NEAR(frameOf(0).right(), width - 10, 1e-6) << count;
        settle();
        EXPECT_NEAR(frameOf(0).right(), width - 10, 1e-6) << count;
        EXPECT_EQ(cellOf(*strip, 0)->text(), QStringLiteral("then0"));
    }
    show(tiles({}));
    EXPECT_FALSE(noResultsOf(*strip)->isHidden());
}

TEST_F(QXSDKKovalinTagSelectorViewTest, staysAtItsBeginningAtTheRightWhenItsWidthChanges)
{
    makeRightToLeft();
    show(manyTiles(QStringLiteral("tag")));
    for (const double other : {120.0, 180.0, 60.0}) {
        strip->setFrame({0, 0, other, height});
        grab();
        EXPECT_NEAR(frameOf(0).right(), other - 10, 1e-6) << other;
    }
}

TEST_F(QXSDKKovalinTagSelectorViewTest, letsAPillThatStaysGlideInBothDirections)
{
    for (const bool isRightToLeft : {false, true}) {
        if (isRightToLeft) {
            makeRightToLeft();
        }
        show(tiles({QStringLiteral("aa"), QStringLiteral("bb")}));
        const double before = frameOf(1).left();
        const auto moving = cellOf(*strip, 1);
        QStringList longer{QStringLiteral("bb")};
        for (int i = 0; i < 30; ++i) {
            longer.append(QStringLiteral("more%1").arg(i));
        }
        strip->setTagTiles(tiles(longer));
        EXPECT_EQ(cellOf(*strip, 0), moving) << isRightToLeft;
        EXPECT_NEAR(moving->x() - pillsOf(*strip)->contentOffset().x(), before, 1e-6)
            << "on screen it begins where it was, " << isRightToLeft;
        settle();
        EXPECT_NEAR(isRightToLeft ? width - frameOf(0).right() : frameOf(0).left(), 10, 1e-6);
    }
}

TEST_F(QXSDKKovalinTagSelectorViewTest, tellsWhichPillWasTapped)
{
    const auto list = tiles({QStringLiteral("one"), QStringLiteral("two")});
    show(list);
    tap(middleOfPill(*strip, 1));
    EXPECT_THAT(delegate->selected, ElementsAre(list->at(1)));
    tap({195, 20});
    EXPECT_EQ(delegate->selected.size(), 1U) << "beside the pills";
}

TEST_F(QXSDKKovalinTagSelectorViewTest, tellsWhichPillWasTappedFromRightToLeft)
{
    makeRightToLeft();
    const auto list = manyTiles(QStringLiteral("tag"));
    show(list);
    tap(middleOfPill(*strip, 1));
    EXPECT_THAT(delegate->selected, ElementsAre(list->at(1)));
}

TEST_F(QXSDKKovalinTagSelectorViewTest, shrinksAPressedPillAndLetsAScrollTakeThePressAway)
{
    show(manyTiles(QStringLiteral("tag")));
    const QPointF from = middleOfPill(*strip, 1);
    const auto pill = pillOf(*cellOf(*strip, 1));
    press(from);
    EXPECT_TRUE(pill->isTouched());
    for (int i = 1; i <= 10; ++i) {
        move(from - QPointF(8.0 * i, 0));
    }
    EXPECT_FALSE(pill->isTouched());
    EXPECT_GT(pillsOf(*strip)->contentOffset().x(), -10);
    release(from - QPointF(80, 0));
    EXPECT_THAT(delegate->selected, IsEmpty());
}

TEST_F(QXSDKKovalinTagSelectorViewTest, isWalkedAndChosenFromByKeys)
{
    const auto list = manyTiles(QStringLiteral("tag"));
    show(list);
    pillsOf(*strip)->forceActiveFocus(Qt::TabFocusReason);
    EXPECT_EQ(pillsOf(*strip)->focusedItem(), 0);
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    key(Qt::Key_Left);
    key(Qt::Key_Return);
    EXPECT_THAT(delegate->selected, ElementsAre(list->at(1)));
}

TEST_F(QXSDKKovalinTagSelectorViewTest, isWalkedTheOtherWayFromRightToLeft)
{
    makeRightToLeft();
    const auto list = manyTiles(QStringLiteral("tag"));
    show(list);
    pillsOf(*strip)->forceActiveFocus(Qt::TabFocusReason);
    EXPECT_EQ(pillsOf(*strip)->focusedItem(), 0);
    key(Qt::Key_Left);
    key(Qt::Key_Space);
    EXPECT_THAT(delegate->selected, ElementsAre(list->at(1)));
    for (int i = 0; i < 20; ++i) {
        key(Qt::Key_Left);
    }
    EXPECT_GE(frameOf(21).left(), 0);
}

TEST_F(QXSDKKovalinTagSelectorViewTest, callsPillsByTheirTexts)
{
    show(tiles({QStringLiteral("one"), QStringLiteral("two")}));
    auto& pills = *pillsOf(*strip);
    EXPECT_EQ(strip->collectionViewAccessibilityLabelForItemAtIndexPath(pills, 1), QStringLiteral("two"));
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(&pills);
    ASSERT_TRUE(list);
    ASSERT_EQ(list->childCount(), 2);
    EXPECT_EQ(list->child(1)->text(QAccessible::Name), QStringLiteral("two"));
}

TEST_F(QXSDKKovalinTagSelectorViewTest, leavesACellAsItIsWhereItsListIsShorterThanWhatIsDisplayed)
{
    show(tiles({QStringLiteral("one")}));
    auto& pills = *pillsOf(*strip);
    const auto cell = strip->collectionViewCellForItemAtIndexPath(pills, 7);
    ASSERT_TRUE(cell);
    EXPECT_EQ(static_cast<QXSDKKovalinTagViewCell&>(*cell).text(), QString());
    EXPECT_EQ(strip->collectionViewLayoutSizeForItemAtIndexPath(pills, 7), QSizeF());
    EXPECT_EQ(strip->collectionViewAccessibilityLabelForItemAtIndexPath(pills, 7), QString());
    strip->collectionViewDidSelectItemAtIndexPath(pills, 7);
    EXPECT_THAT(delegate->selected, IsEmpty());
}

TEST_F(QXSDKKovalinTagSelectorViewTest, mayGoWhenAPillIsTapped)
{
    show(tiles({QStringLiteral("one"), QStringLiteral("two")}));
    const std::weak_ptr<Strip> gone = strip;
    delegate->then = [this] {
        strip->removeFromSuperview();
        strip.reset();
    };
    tap(middleOfPill(*strip, 0));
    EXPECT_EQ(delegate->selected.size(), 1U);
    EXPECT_TRUE(gone.expired());
}

TEST_F(QXSDKKovalinTagSelectorViewTest, mayGoInTheMidstOfAChange)
{
    show(manyTiles(QStringLiteral("first")));
    strip->setTagTiles(manyTiles(QStringLiteral("second")));
    driver.step(0ms);
    driver.step(100ms);
    const std::weak_ptr<Strip> gone = strip;
    strip->removeFromSuperview();
    strip.reset();
    EXPECT_TRUE(gone.expired());
    settle();
}

TEST_F(QXSDKKovalinTagSelectorViewTest, tellsNobodyWhenItsDelegateIsGone)
{
    show(tiles({QStringLiteral("one")}));
    delegate.reset();
    tap(middleOfPill(*strip, 0));
}

} // namespace
