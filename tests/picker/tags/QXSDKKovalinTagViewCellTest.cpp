#include "picker/tags/QXSDKKovalinTagViewCell.h"

#include "picker/config/QXSDKKovalinStickerPickerTheme.h"
#include "picker/tags/TagViews.h"
#include "support/QtPrinting.h"
#include "support/ViewTest.h"

using namespace kovalin::platform;
using namespace kovalin::test;
using Cell = QXSDKKovalinTagViewCell;

namespace {

class QXSDKKovalinTagViewCellTest : public ViewTest {
protected:
    QXSDKKovalinTagViewCellTest()
    {
        cell->setFrame({20, 20, 100, 24});
        root()->addSubview(cell);
        grab();
    }

    std::shared_ptr<Cell> cell = makeView<Cell>();
};

TEST_F(QXSDKKovalinTagViewCellTest, readsAndWritesThePillsTextAndColour)
{
    cell->setText(QStringLiteral("happy"));
    cell->setColor(Qt::green);
    EXPECT_EQ(cell->text(), QStringLiteral("happy"));
    EXPECT_EQ(cell->color(), QColor(Qt::green));
    EXPECT_EQ(pillOf(*cell)->text(), QStringLiteral("happy"));
    EXPECT_EQ(pillOf(*cell)->backgroundColor(), QColor(Qt::green));
    EXPECT_EQ(Cell::sizeForText(QStringLiteral("happy")), QXSDKKovalinTagView::sizeForText(QStringLiteral("happy")));
    QXSDKKovalinStickerPickerTheme theme;
    theme.setSearchPillTextColor(Qt::blue);
    cell->applyTheme(theme);
    EXPECT_EQ(pillOf(*cell)->textColor(), QColor(Qt::blue));
}

TEST_F(QXSDKKovalinTagViewCellTest, isFilledByItsPill)
{
    EXPECT_EQ(pillOf(*cell)->frame(), QRectF(0, 0, 100, 24));
    EXPECT_EQ(pillOf(*cell)->layerStyle().cornerRadius, 12);
}

TEST_F(QXSDKKovalinTagViewCellTest, showsAPressUntilItEndsAnywhere)
{
    press({70, 32});
    EXPECT_TRUE(pillOf(*cell)->isTouched());
    move({70, 150});
    EXPECT_TRUE(pillOf(*cell)->isTouched()) << "the finger is still down";
    release({70, 150});
    EXPECT_FALSE(pillOf(*cell)->isTouched());
}

TEST_F(QXSDKKovalinTagViewCellTest, showsNoPressThatIsTakenAway)
{
    press({70, 32});
    cell->ungrabMouse();
    EXPECT_FALSE(pillOf(*cell)->isTouched());
    release({70, 32});
}

TEST_F(QXSDKKovalinTagViewCellTest, showsNoPressWhenItIsUsedAgain)
{
    press({70, 32});
    cell->prepareForReuse();
    EXPECT_FALSE(pillOf(*cell)->isTouched());
    release({70, 32});
}

} // namespace
