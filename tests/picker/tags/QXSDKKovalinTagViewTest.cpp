#include "picker/tags/QXSDKKovalinTagView.h"

#include "kits/core/QXSDKFont.h"
#include "picker/config/QXSDKKovalinStickerPickerTheme.h"
#include "support/ManualAnimationDriver.h"
#include "support/QtPrinting.h"
#include "support/ViewTest.h"

#include <QtGui/QAccessible>
#include <QtGui/QFontMetricsF>

using namespace kovalin::platform;
using namespace kovalin::test;
using namespace std::chrono_literals;
using Pill = QXSDKKovalinTagView;

namespace {

class QXSDKKovalinTagViewTest : public ViewTest {
protected:
    QXSDKKovalinTagViewTest() { root()->addSubview(pill); }

    ManualAnimationDriver driver;
    std::shared_ptr<Pill> pill = makeView<Pill>();
};

TEST_F(QXSDKKovalinTagViewTest, beginsClearAndUntouched)
{
    EXPECT_EQ(pill->backgroundColor(), QColor(Qt::transparent));
    EXPECT_FALSE(pill->isTouched());
    EXPECT_EQ(pill->font(), qxsdkRegularFontOfSize(13));
    EXPECT_EQ(pill->textAlignment(), TextAlignment::Center);
}

TEST_F(QXSDKKovalinTagViewTest, isTwentyPointsWiderThanItsTextWhateverThatIs)
{
    const QFontMetricsF metrics(qxsdkRegularFontOfSize(13));
    for (const QString& text : {QString(), QStringLiteral("i"), QStringLiteral("happy birthday"),
                                QStringLiteral("\u0635\u0628\u0627\u062d"), QString(2000, u'w')}) {
        EXPECT_EQ(Pill::sizeForText(text), QSizeF(metrics.horizontalAdvance(text) + 20, 24)) << text.toStdString();
    }
}

TEST_F(QXSDKKovalinTagViewTest, fitsItsOwnTextAndStaysWhereItIs)
{
    pill->setFrame({7, 9, 1, 1});
    pill->setText(QStringLiteral("happy"));
    pill->sizeToFit();
    EXPECT_EQ(pill->frame(), QRectF(QPointF(7, 9), Pill::sizeForText(QStringLiteral("happy"))));
    EXPECT_EQ(pill->layerStyle().cornerRadius, 12);
    EXPECT_EQ(pill->sizeThatFits({1, 1}), Pill::sizeForText(QStringLiteral("happy")));
}

TEST_F(QXSDKKovalinTagViewTest, hasRoundEndsAndARimThatIsHeavierAtTheFoot)
{
    pill->setFrame({0, 0, 80, 30});
    pill->layoutIfNeeded();
    const LayerStyle style = pill->layerStyle();
    EXPECT_EQ(style.cornerRadius, 15);
    EXPECT_EQ(style.shadow.path, QRectF(-1, -1, 82, 33));
    EXPECT_EQ(style.shadow.pathCornerRadius, 16);
    EXPECT_EQ(style.shadow.radius, 0);
    EXPECT_EQ(style.shadow.offset, QPointF());
}

TEST_F(QXSDKKovalinTagViewTest, takesTheColoursOfTextsAndShadowsFromTheTheme)
{
    QXSDKKovalinStickerPickerTheme theme;
    theme.setSearchPillTextColor(Qt::green);
    theme.setSearchPillShadowColor(Qt::blue);
    pill->setFrame({10, 10, 60, 24});
    pill->layoutIfNeeded();
    pill->applyTheme(theme);
    EXPECT_EQ(pill->textColor(), QColor(Qt::green));
    EXPECT_EQ(pill->layerStyle().shadow.color, QColor(Qt::blue));
    EXPECT_EQ(pill->layerStyle().shadow.path, QRectF(-1, -1, 62, 27)) << "the rim stays";
}

TEST_F(QXSDKKovalinTagViewTest, isDrawnInItsColourWithARimAroundIt)
{
    QXSDKKovalinStickerPickerTheme theme;
    theme.setSearchPillShadowColor(Qt::blue);
    pill->setFrame({10, 10, 60, 24});
    pill->applyTheme(theme);
    pill->setBackgroundColor(Qt::red);
    EXPECT_EQ(pill->backgroundColor(), QColor(Qt::red));
    const QImage picture = grab();
    EXPECT_EQ(colorAt(picture, ratio(), {40, 12}), QColor(Qt::red));
    EXPECT_EQ(colorAt(picture, ratio(), {10.25, 10.25}), QColor(Qt::white)) << "a corner";
    EXPECT_EQ(colorAt(picture, ratio(), {40, 9}), QColor(Qt::blue));
    EXPECT_EQ(colorAt(picture, ratio(), {40, 8}), QColor(Qt::white));
    EXPECT_EQ(colorAt(picture, ratio(), {40, 35}), QColor(Qt::blue)) << "two points at the foot";
    EXPECT_EQ(colorAt(picture, ratio(), {40, 36}), QColor(Qt::white));
}

TEST_F(QXSDKKovalinTagViewTest, shrinksWhileItIsTouched)
{
    pill->setIsTouched(true);
    EXPECT_TRUE(pill->isTouched());
    EXPECT_EQ(pill->transform().scaleX, double(0.85F));
    pill->setIsTouched(false);
    EXPECT_FALSE(pill->isTouched());
    EXPECT_TRUE(pill->transform().isIdentity());
}

TEST_F(QXSDKKovalinTagViewTest, animatesAPressOnceHoweverOftenItIsToldOfIt)
{
    pill->setFrame({0, 0, 100, 100});
    pill->setBackgroundColor(Qt::red);
    grab();
    pill->setIsTouched(true);
    driver.step(0ms);
    driver.step(200ms);
    // A second animation would bring the pill back to this.
    pill->setTransform({});
    pill->setIsTouched(true);
    EXPECT_TRUE(pill->transform().isIdentity());
}

TEST_F(QXSDKKovalinTagViewTest, isCalledByItsText)
{
    pill->setText(QStringLiteral("happy"));
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(pill.get());
    ASSERT_TRUE(interface);
    EXPECT_EQ(interface->text(QAccessible::Name), QStringLiteral("happy"));
}

TEST_F(QXSDKKovalinTagViewTest, mayGoWhileItIsBeingPressed)
{
    grab();
    pill->setIsTouched(true);
    driver.step(0ms);
    driver.step(50ms);
    const std::weak_ptr<Pill> gone = pill;
    pill->removeFromSuperview();
    pill.reset();
    EXPECT_TRUE(gone.expired());
    driver.step(1s);
    drainMainQueue();
}

} // namespace
