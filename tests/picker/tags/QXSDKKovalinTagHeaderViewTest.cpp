#include "picker/tags/QXSDKKovalinTagHeaderView.h"

#include "picker/tags/TagViews.h"
#include "platform/ui/Button.h"
#include "platform/ui/ImageView.h"
#include "support/ManualAnimationDriver.h"
#include "support/PartOf.h"
#include "support/QtPrinting.h"
#include "support/ViewTest.h"

#include <QtGui/QGuiApplication>

using namespace kovalin::platform;
using namespace kovalin::test;
using namespace std::chrono_literals;
using Header = QXSDKKovalinTagHeaderView;

namespace {

class QXSDKKovalinTagHeaderViewTest : public ViewTest {
protected:
    static constexpr double width = 200;

    QXSDKKovalinTagHeaderViewTest()
    {
        config->theme()->setBackgroundColor(Qt::cyan);
        config->theme()->setBorderColor(Qt::magenta);
        config->theme()->setSearchPillTextColor(Qt::yellow);
        make();
    }
    ~QXSDKKovalinTagHeaderViewTest() override { QGuiApplication::setLayoutDirection(Qt::LeftToRight); }

    void make(const QXSDKTagTilePtr& shown = tile(QStringLiteral("happy"), Qt::red))
    {
        if (header) {
            header->removeFromSuperview();
        }
        header = makeView<Header>(shown, config);
        header->setFrame({0, 0, width, 40});
        header->setOnTap([this] { ++taps; });
        root()->addSubview(header);
        grab();
    }
    void makeRightToLeft()
    {
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        make();
    }

    [[nodiscard]] std::shared_ptr<ImageView> icon() const { return partOf<ImageView>(*header, 0); }
    [[nodiscard]] std::shared_ptr<Button> back() const { return header->backButton(); }
    [[nodiscard]] std::shared_ptr<Button> cancel() const { return header->cancelButton(); }
    [[nodiscard]] std::shared_ptr<QXSDKKovalinTagView> pill() const { return partOf<QXSDKKovalinTagView>(*header, 3); }
    [[nodiscard]] std::shared_ptr<View> border() const { return partOf<View>(*header, 4); }

    ManualAnimationDriver driver;
    QXSDKKovalinStickerPickerConfigPtr config = std::make_shared<QXSDKKovalinStickerPickerConfig>();
    int taps = 0;
    std::shared_ptr<Header> header;
};

TEST_F(QXSDKKovalinTagHeaderViewTest, hasItsPartsInTheirOrder)
{
    ASSERT_EQ(header->subviews().size(), 5);
    EXPECT_TRUE(icon());
    EXPECT_EQ(header->subviews().at(1), back());
    EXPECT_EQ(header->subviews().at(2), cancel());
    EXPECT_TRUE(pill());
    EXPECT_EQ(header->backgroundColor(), QColor(Qt::cyan));
    EXPECT_EQ(border()->backgroundColor(), QColor(Qt::magenta));
    EXPECT_EQ(cancel()->alpha(), double(0.62F));
    EXPECT_EQ(icon()->contentMode(), ContentMode::Center);
    EXPECT_FALSE(icon()->image().isNull());
}

TEST_F(QXSDKKovalinTagHeaderViewTest, showsItsTileAsAPill)
{
    EXPECT_EQ(pill()->text(), QStringLiteral("happy"));
    EXPECT_EQ(pill()->backgroundColor(), QColor(Qt::red));
    EXPECT_EQ(pill()->textColor(), QColor(Qt::yellow));
}

TEST_F(QXSDKKovalinTagHeaderViewTest, takesTheDefaultThemeWithoutAConfiguration)
{
    const auto made = makeView<Header>(tile(QStringLiteral("happy")), nullptr);
    EXPECT_EQ(made->backgroundColor(), QXSDKKovalinStickerPickerTheme().backgroundColor());
}

TEST_F(QXSDKKovalinTagHeaderViewTest, isLaidOutFromTheLeft)
{
    const QSizeF size = QXSDKKovalinTagView::sizeForText(QStringLiteral("happy"));
    EXPECT_EQ(icon()->frame(), QRectF(20, 0, 40, 40));
    EXPECT_EQ(back()->center(), QPointF(15, 20));
    EXPECT_EQ(cancel()->center(), QPointF(width - 20, 20));
    EXPECT_EQ(pill()->frame(), QRectF(QPointF(55, 8), size));
    EXPECT_EQ(border()->frame(), QRectF(0, 39.5, width, 0.5));
    EXPECT_TRUE(back()->transform().isIdentity());
    EXPECT_FALSE(back()->frame().isEmpty());
    EXPECT_EQ(back()->frame().size(), back()->sizeThatFits({1000, 1000}));
}

TEST_F(QXSDKKovalinTagHeaderViewTest, isMirroredWhereReadingBeginsAtTheRight)
{
    makeRightToLeft();
    const QSizeF size = QXSDKKovalinTagView::sizeForText(QStringLiteral("happy"));
    EXPECT_EQ(icon()->frame(), QRectF(width - 60, 0, 40, 40));
    EXPECT_EQ(back()->center(), QPointF(width - 15, 20));
    EXPECT_EQ(cancel()->center(), QPointF(20, 20));
    EXPECT_EQ(pill()->frame(), QRectF(QPointF(width - 55 - size.width(), 8), size));
    EXPECT_EQ(border()->frame(), QRectF(0, 39.5, width, 0.5));
    EXPECT_EQ(back()->transform(), ViewTransform::scale(-1, 1)) << "the arrow points the other way";
}

TEST_F(QXSDKKovalinTagHeaderViewTest, isLaidOutAnewForAnotherWidth)
{
    header->setFrame({0, 0, 120, 40});
    grab();
    EXPECT_EQ(cancel()->center(), QPointF(100, 20));
    EXPECT_EQ(border()->frame().width(), 120);
    EXPECT_EQ(pill()->frame().x(), 55);
}

TEST_F(QXSDKKovalinTagHeaderViewTest, isTappedAnywhereBesideItsButtons)
{
    tap(pill()->frame().center());
    EXPECT_EQ(taps, 1);
    tap(icon()->frame().center());
    EXPECT_EQ(taps, 2);
    tap(cancel()->frame().center());
    tap(back()->frame().center());
    EXPECT_EQ(taps, 2) << "the buttons take their own";
}

TEST_F(QXSDKKovalinTagHeaderViewTest, isNotTappedByAFingerThatMovesAway)
{
    press({100, 20});
    move({100, 30});
    move({160, 35});
    release({100, 20});
    EXPECT_EQ(taps, 0);
    press({100, 20});
    release({100, 60});
    EXPECT_EQ(taps, 0);
}

TEST_F(QXSDKKovalinTagHeaderViewTest, shrinksItsPillWhileThatIsPressed)
{
    const QPointF middle = pill()->frame().center();
    press(middle);
    EXPECT_TRUE(pill()->isTouched());
    release(middle);
    EXPECT_FALSE(pill()->isTouched());
    EXPECT_EQ(taps, 1);
    press({150, 20});
    EXPECT_FALSE(pill()->isTouched()) << "beside it";
    header->ungrabMouse();
    release({150, 20});
    EXPECT_EQ(taps, 1) << "taken away";
}

TEST_F(QXSDKKovalinTagHeaderViewTest, mayGoWhenItIsTapped)
{
    const std::weak_ptr<Header> gone = header;
    header->setOnTap([this] {
        ++taps;
        header->setOnTap({});
        header->removeFromSuperview();
        header.reset();
    });
    tap({100, 20});
    EXPECT_EQ(taps, 1);
    EXPECT_TRUE(gone.expired());
    drainMainQueue();
}

TEST_F(QXSDKKovalinTagHeaderViewTest, namesItsButtonsForAssistiveTools)
{
    for (const auto& button : {back(), cancel()}) {
        QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(button.get());
        ASSERT_TRUE(interface);
        EXPECT_FALSE(interface->text(QAccessible::Name).isEmpty());
    }
}

} // namespace
