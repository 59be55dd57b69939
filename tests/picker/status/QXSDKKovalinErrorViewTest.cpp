#include "picker/status/QXSDKKovalinErrorView.h"

#include "picker/config/KovalinColors.h"
#include "picker/status/StatusViewTest.h"
#include "platform/ui/ActivityIndicator.h"
#include "platform/ui/Button.h"

#include <QtTest/QTest>

#include <functional>

using namespace kovalin::platform;
using kovalin::test::drainMainQueue;
using kovalin::test::partOf;

namespace {

class QXSDKKovalinErrorViewTest : public kovalin::test::StatusViewTest {
protected:
    QXSDKKovalinErrorViewTest() { make(QStringLiteral("What a pity")); }

    void make(const QString& message,
              const QXSDKKovalinStickerPickerThemePtr& theme = std::make_shared<QXSDKKovalinStickerPickerTheme>())
    {
        view = makeView<QXSDKKovalinErrorView>(
            QStringLiteral("It failed"), message,
            [this] {
                ++retries;
                if (then) {
                    then();
                }
            },
            configOf(theme));
        place(view);
    }

    [[nodiscard]] std::shared_ptr<Label> title() const { return partOf<Label>(*view, 0); }
    [[nodiscard]] std::shared_ptr<Label> message() const { return partOf<Label>(*view, 1); }
    [[nodiscard]] std::shared_ptr<Button> button() const { return partOf<Button>(*view, 2); }
    [[nodiscard]] std::shared_ptr<ActivityIndicator> spinner() const { return partOf<ActivityIndicator>(*view, 3); }
    void tapButton() { tap(button()->frame().center()); }

    int retries = 0;
    std::function<void()> then;
    std::shared_ptr<QXSDKKovalinErrorView> view;
};

// Set-up

TEST_F(QXSDKKovalinErrorViewTest, isMadeOfItsPartsInOrder)
{
    ASSERT_EQ(view->subviews().size(), 4);
    EXPECT_TRUE(title() && message() && button() && spinner());
    EXPECT_EQ(view->type(), QXSDKKovalinViewTypeError);
    EXPECT_EQ(qint32(view->type()), 5);
    EXPECT_TRUE(spinner()->isHidden());
    EXPECT_FALSE(spinner()->isAnimating());
    EXPECT_EQ(spinner()->color(), QColor(Qt::white));
    EXPECT_TRUE(makeView<QXSDKKovalinErrorView>(QString(), QString(), nullptr, nullptr)->frame().isEmpty());
}

TEST_F(QXSDKKovalinErrorViewTest, showsItsTextsAsTheyAreAndTakesItsColoursFromTheTheme)
{
    const auto own = QXSDKKovalinStickerPickerTheme::darkTheme();
    own->setErrorRed(Qt::magenta);
    own->setSubtextColor(Qt::yellow);
    for (const auto& theme : {QXSDKKovalinStickerPickerTheme::lightTheme(), own}) {
        make(QStringLiteral("retry"), theme);
        EXPECT_EQ(title()->text(), QStringLiteral("It failed"));
        expectLook(*title(), {.fontSize = 18, .weight = QFont::Bold, .color = theme->titleTextColor(), .lines = 0});
        EXPECT_EQ(message()->text(), QStringLiteral("retry")) << "no key";
        expectLook(*message(), {.fontSize = 14, .weight = QFont::Normal, .color = kovalinGreyTextColor(), .lines = 0});
        EXPECT_TRUE(colorsEqual(button()->backgroundColor(), theme->errorRed()));
        EXPECT_EQ(button()->layerStyle().cornerRadius, 24);
        EXPECT_EQ(button()->title(), QStringLiteral("Try again"));
        expectLook(*partOf<Label>(*button(), 1),
                   {.fontSize = 17, .weight = QFont::Bold, .color = Qt::white, .lines = 1});
    }
}

// Layout

TEST_F(QXSDKKovalinErrorViewTest, theBlockIsInTheMiddleInBothDirections)
{
    for (const auto direction : directions) {
        QGuiApplication::setLayoutDirection(direction);
        make(QStringLiteral("What a pity"));
        const double titleHeight = title()->sizeThatFits({270, 400}).height();
        const double messageHeight = message()->sizeThatFits({270, 400}).height();
        ASSERT_GT(titleHeight, 0);
        ASSERT_GT(messageHeight, 0);
        const double y = (400 - (titleHeight + 5 + messageHeight + 42 + 48)) / 2;
        EXPECT_EQ(title()->frame(), QRectF(65, y, 270, titleHeight));
        EXPECT_EQ(message()->frame(), QRectF(65, y + titleHeight + 5, 270, messageHeight));
        EXPECT_EQ(button()->frame(), QRectF(89, y + titleHeight + 5 + messageHeight + 42, 222, 48));
        EXPECT_EQ(spinner()->center(), button()->center());
    }
}

TEST_F(QXSDKKovalinErrorViewTest, aNarrowViewHasTextsOfItsWidthAndAButtonThatStandsOver)
{
    place(view, {200, 400});
    EXPECT_EQ(title()->frame().x(), 0);
    EXPECT_EQ(title()->frame().width(), 200);
    EXPECT_EQ(message()->frame().width(), 200);
    EXPECT_EQ(button()->frame().x(), -11);
    EXPECT_EQ(button()->frame().width(), 222);
}

TEST_F(QXSDKKovalinErrorViewTest, whatTheDeviceCoversMovesNothing)
{
    const QRectF before = button()->frame();
    view->setSafeAreaInsets({10, 20, 10, 34});
    grab();
    EXPECT_EQ(button()->frame(), before);
}

TEST_F(QXSDKKovalinErrorViewTest, aLongMessageMovesTheTitleUp)
{
    const double before = title()->frame().y();
    make(QStringLiteral("What a pity that it failed. ").repeated(8));
    EXPECT_LT(title()->frame().y(), before - 10);
    EXPECT_GT(title()->frame().y(), 0);
}

TEST_F(QXSDKKovalinErrorViewTest, aVeryLongMessagePushesTheTitleAboveTheTop)
{
    make(QStringLiteral("What a pity that it failed. ").repeated(400));
    EXPECT_LT(title()->frame().y(), 0);
    EXPECT_LE(message()->frame().height(), 400) << "as much of it is shown as the view is high";
    EXPECT_GT(message()->frame().height(), 370);
    EXPECT_GT(button()->frame().y(), 400 - 48);
}

// Retrying

TEST_F(QXSDKKovalinErrorViewTest, aTapShowsTheSpinnerInPlaceOfTheTitleAndTriesAgain)
{
    then = [this] {
        EXPECT_TRUE(button()->title().isEmpty());
        EXPECT_FALSE(spinner()->isHidden());
        EXPECT_TRUE(spinner()->isAnimating());
    };
    tapButton();
    EXPECT_EQ(retries, 1);
    grab();
    EXPECT_EQ(spinner()->center(), button()->center());
}

TEST_F(QXSDKKovalinErrorViewTest, keepsRetryingAndTriesAgainAtEachTap)
{
    tapButton();
    tapButton();
    EXPECT_EQ(retries, 2);
    EXPECT_TRUE(button()->title().isEmpty());
    EXPECT_TRUE(spinner()->isAnimating());
}

TEST_F(QXSDKKovalinErrorViewTest, keysTapToo)
{
    QTest::keyClick(&window(), Qt::Key_Tab);
    QTest::keyClick(&window(), Qt::Key_Enter);
    EXPECT_EQ(retries, 1);
}

TEST_F(QXSDKKovalinErrorViewTest, aPressThatEndsElsewhereDoesNothing)
{
    press(button()->frame().center());
    move({5, 5});
    release({5, 5});
    EXPECT_EQ(retries, 0);
    EXPECT_FALSE(button()->title().isEmpty());
}

TEST_F(QXSDKKovalinErrorViewTest, theButtonIsStillCalledByItsTitleWhileItRetries)
{
    tapButton();
    QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(button().get());
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->text(QAccessible::Name), QStringLiteral("Try again"));
}

TEST_F(QXSDKKovalinErrorViewTest, doesWithoutABlockAndAConfiguration)
{
    view = makeView<QXSDKKovalinErrorView>(QStringLiteral("a"), QStringLiteral("b"), nullptr, nullptr);
    place(view);
    tapButton();
    EXPECT_TRUE(spinner()->isAnimating());
}

TEST_F(QXSDKKovalinErrorViewTest, mayGoInItsBlock)
{
    const std::weak_ptr<QXSDKKovalinErrorView> gone = view;
    const QPointF there = button()->frame().center();
    then = [this] {
        view->removeFromSuperview();
        view.reset();
    };
    tap(there);
    EXPECT_EQ(retries, 1);
    drainMainQueue();
    EXPECT_TRUE(gone.expired());
}

TEST_F(QXSDKKovalinErrorViewTest, aButtonThatOutlivesTheViewDoesNothing)
{
    const auto kept = button();
    view->removeFromSuperview();
    view.reset();
    drainMainQueue();
    kept->press();
    EXPECT_EQ(retries, 0);
}

} // namespace
