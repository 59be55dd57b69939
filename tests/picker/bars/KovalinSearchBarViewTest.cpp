#include "picker/bars/KovalinSearchBarViewTesting.h"
#include "picker/config/KovalinString.h"
#include "platform/ui/ImageView.h"

#include <QtCore/QPointer>

using namespace kovalin::platform;
using kovalin::test::drainMainQueue;
using kovalin::test::KovalinSearchBarViewTest;
using testing::IsEmpty;
using namespace std::chrono_literals;

namespace {

// Set-up

TEST_F(KovalinSearchBarViewTest, isMadeOfItsPartsInOrder)
{
    ASSERT_EQ(bar->subviews().size(), 4);
    EXPECT_TRUE(field() && back() && clear() && border());
    EXPECT_EQ(bar->frame(), frame);
    EXPECT_EQ(bar->text(), QString());
    EXPECT_FALSE(bar->isFirstResponder());
    EXPECT_EQ(shown(), "");
    EXPECT_THAT(delegate->told, IsEmpty());
}

TEST_F(KovalinSearchBarViewTest, takesItsColoursFromTheTheme)
{
    for (const auto& theme :
         {std::make_shared<QXSDKKovalinStickerPickerTheme>(), QXSDKKovalinStickerPickerTheme::lightTheme(),
          QXSDKKovalinStickerPickerTheme::darkTheme()}) {
        make(theme);
        EXPECT_EQ(bar->backgroundColor(), theme->backgroundColor());
        EXPECT_EQ(border()->backgroundColor(), theme->borderColor());
        EXPECT_EQ(colorAt({100, 3}), theme->backgroundColor());
    }
}

TEST_F(KovalinSearchBarViewTest, doesWithoutAConfiguration)
{
    bar->removeFromSuperview();
    bar = makeView<KovalinSearchBarView>(frame, nullptr);
    root()->addSubview(bar);
    EXPECT_EQ(colorAt({100, 3}), QColor(Qt::white));
}

TEST_F(KovalinSearchBarViewTest, theFieldAsksForSearchTermsAsTheyAreTyped)
{
    EXPECT_EQ(field()->placeholder(), kovalinStringWithKey(QStringLiteral("search_kovalin")));
    EXPECT_EQ(field()->objectName(), QStringLiteral("qxsdk_kovalin_content_search"));
    focus();
    QInputMethodQueryEvent query(Qt::ImHints | Qt::ImEnterKeyType | Qt::ImFont);
    QCoreApplication::sendEvent(QGuiApplication::focusObject(), &query);
    const auto hints = Qt::InputMethodHints(query.value(Qt::ImHints).toInt());
    EXPECT_TRUE(hints.testFlag(Qt::ImhNoPredictiveText));
    EXPECT_TRUE(hints.testFlag(Qt::ImhNoAutoUppercase));
    EXPECT_EQ(query.value(Qt::ImEnterKeyType).toInt(), int(Qt::EnterKeySearch));
    EXPECT_EQ(query.value(Qt::ImFont).value<QFont>().pixelSize(), 16);
}

TEST_F(KovalinSearchBarViewTest, thePicturesAreShownInTheirTints)
{
    const auto theme = QXSDKKovalinStickerPickerTheme::darkTheme();
    theme->setSearchColor(Qt::red);
    theme->setNavIconColor(Qt::blue);
    make(theme);
    const auto icon = std::dynamic_pointer_cast<ImageView>(field()->subviews().at(0));
    ASSERT_TRUE(icon);
    EXPECT_EQ(icon->frame(), QRectF(0, 0, 40, 40));
    EXPECT_EQ(icon->contentMode(), ContentMode::Center);
    EXPECT_EQ(icon->image().devicePixelRatio(), ratio()) << "sharp";
    EXPECT_EQ(naturalSize(icon->image()), QSizeF(24, 24));
    // The top of the magnifier's ring.
    EXPECT_EQ(colorAt({19, 13}), QColor(Qt::red));
    bar->setText(QStringLiteral("a"));
    settle();
    EXPECT_EQ(colorAt({15, 20}), QColor(Qt::blue)) << "the arrow's shaft";
    EXPECT_EQ(clear()->alpha(), double(0.62F));
}

TEST_F(KovalinSearchBarViewTest, theBackArrowPointsToWhereReadingBegan)
{
    EXPECT_TRUE(back()->transform().isIdentity());
    makeRightToLeft();
    EXPECT_EQ(back()->transform().scaleX, -1);
    EXPECT_EQ(back()->transform().scaleY, 1);
}

// Layout

TEST_F(KovalinSearchBarViewTest, withoutTheBackButtonTheFieldIsAtTheEdge)
{
    EXPECT_EQ(field()->frame(), QRectF(0, 0, 180, 40));
    EXPECT_EQ(back()->frame(), QRectF(-30, 0, 30, 40));
    EXPECT_EQ(clear()->center(), QPointF(180, 20));
    EXPECT_EQ(clear()->frame().size(), QSizeF(24, 24));
    EXPECT_EQ(border()->frame(), QRectF(0, 39.5, 200, 0.5));
}

TEST_F(KovalinSearchBarViewTest, withTheBackButtonTheFieldMovesOver)
{
    bar->setText(QStringLiteral("a"));
    EXPECT_EQ(field()->frame(), QRectF(20, 0, 180, 40));
    EXPECT_EQ(back()->frame(), QRectF(0, 0, 30, 40));
    EXPECT_EQ(clear()->center(), QPointF(180, 20));
    EXPECT_EQ(border()->frame(), QRectF(0, 39.5, 200, 0.5));
}

TEST_F(KovalinSearchBarViewTest, fromRightToLeftAllIsMirroredWithoutTheBackButton)
{
    makeRightToLeft();
    EXPECT_EQ(field()->frame(), QRectF(20, 0, 180, 40));
    EXPECT_EQ(back()->frame(), QRectF(200, 0, 30, 40));
    EXPECT_EQ(clear()->center(), QPointF(20, 20));
    EXPECT_EQ(border()->frame(), QRectF(0, 39.5, 200, 0.5));
}

TEST_F(KovalinSearchBarViewTest, fromRightToLeftAllIsMirroredWithTheBackButton)
{
    makeRightToLeft();
    bar->setText(QStringLiteral("a"));
    EXPECT_EQ(field()->frame(), QRectF(0, 0, 180, 40));
    EXPECT_EQ(back()->frame(), QRectF(170, 0, 30, 40));
    EXPECT_EQ(clear()->center(), QPointF(20, 20));
}

TEST_F(KovalinSearchBarViewTest, theClearButtonIsAtTheHeightOfTheBarsOwnCentre)
{
    bar->setFrame({0, 10, 200, 60});
    grab();
    EXPECT_EQ(clear()->center(), QPointF(180, 40));
}

TEST_F(KovalinSearchBarViewTest, aBarWithoutASizeHasNoFieldEither)
{
    bar->setFrame({0, 0, 0, 0});
    bar->setText(QStringLiteral("a"));
    EXPECT_EQ(field()->frame(), QRectF(20, 0, 0, 0));
}

TEST_F(KovalinSearchBarViewTest, aLongTextEndsBeforeTheClearButton)
{
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        QGuiApplication::setLayoutDirection(direction);
        make();
        const QImage empty = grab();
        bar->setText(QString(60, direction == Qt::LeftToRight ? u'M' : u'ש'));
        clear()->setAlpha(0);
        settle();
        const QImage picture = grab();
        const double edge = direction == Qt::LeftToRight ? 168 : 32;
        for (int x = int((edge - 12) * ratio()); x < int((edge + 12) * ratio()); ++x) {
            const bool isBeyond = (x >= edge * ratio()) == (direction == Qt::LeftToRight);
            for (int y = 0; isBeyond && y < int(39 * ratio()); ++y) {
                ASSERT_EQ(picture.pixelColor(x, y), QColor(Qt::white)) << x << " " << y;
            }
        }
    }
}

TEST_F(KovalinSearchBarViewTest, theHairlineIsSeen)
{
    const auto theme = QXSDKKovalinStickerPickerTheme::lightTheme();
    theme->setBorderColor(Qt::red);
    make(theme);
    EXPECT_NE(grab().pixelColor(100, int(height * ratio()) - 1), QColor(Qt::white));
}

TEST_F(KovalinSearchBarViewTest, theBackButtonSlidesInAFifthOfASecond)
{
    const auto position = [this] {
        return std::pair(back()->x(), field()->x());
    };
    bar->setText(QStringLiteral("a"));
    EXPECT_EQ(back()->frame().x(), 0) << "the layout is there at once";
    EXPECT_EQ(position(), std::pair(-30.0, 0.0)) << "and on screen it has just begun";
    driver.step(0ms);
    driver.step(100ms);
    EXPECT_GT(back()->x(), -30);
    EXPECT_LT(back()->x(), 0);
    EXPECT_EQ(field()->width(), 180);
    driver.step(99ms);
    EXPECT_NE(position(), std::pair(0.0, 20.0));
    driver.step(1ms);
    EXPECT_EQ(position(), std::pair(0.0, 20.0));

    bar->setText({});
    EXPECT_EQ(position(), std::pair(0.0, 20.0));
    EXPECT_FALSE(back()->isHidden()) << "it is seen on its way out";
    driver.step(0ms);
    driver.step(200ms);
    EXPECT_EQ(position(), std::pair(-30.0, 0.0));
    drainMainQueue();
    EXPECT_TRUE(back()->isHidden()) << "neither keyboard nor assistive tools find it";
}

TEST_F(KovalinSearchBarViewTest, onItsWayTheBackButtonIsNotSeenBesideTheBar)
{
    bar->setFrame({50, 0, 150, 40});
    grab();
    bar->setText(QStringLiteral("a"));
    const QImage picture = grab();
    for (int x = 0; x < int(50 * ratio()); ++x) {
        for (int y = 0; y < int(40 * ratio()); ++y) {
            ASSERT_EQ(picture.pixelColor(x, y), QColor(Qt::white)) << x << " " << y;
        }
    }
}

TEST_F(KovalinSearchBarViewTest, aBackButtonThatTurnsRoundStaysWhereItIsWanted)
{
    bar->setText(QStringLiteral("a"));
    driver.step(0ms);
    driver.step(100ms);
    bar->setText({});
    bar->setText(QStringLiteral("a"));
    settle();
    EXPECT_FALSE(back()->isHidden());
    EXPECT_EQ(shown(), "back clear");
    bar->setText({});
    settle();
    EXPECT_TRUE(back()->isHidden());
}

// Surroundings

TEST_F(KovalinSearchBarViewTest, assistiveToolsFindItsParts)
{
    focus();
    type('a');
    const auto nameOf = [](QObject* object) {
        return QAccessible::queryAccessibleInterface(object)->text(QAccessible::Name);
    };
    EXPECT_EQ(nameOf(QGuiApplication::focusObject()), kovalinStringWithKey(QStringLiteral("search_kovalin")));
    EXPECT_EQ(QGuiApplication::focusObject()->objectName(), QStringLiteral("qxsdk_kovalin_content_search"));
    EXPECT_EQ(nameOf(back().get()), QStringLiteral("Back"));
    EXPECT_EQ(nameOf(clear().get()), QStringLiteral("Clear"));
}

TEST_F(KovalinSearchBarViewTest, doesWithoutADelegate)
{
    bar->setDelegate({});
    focus();
    type('a');
    settle();
    tapBack();
    EXPECT_EQ(bar->text(), QString());
    EXPECT_EQ(shown(), "");
}

TEST_F(KovalinSearchBarViewTest, holdsItsDelegateWeakly)
{
    delegate.reset();
    focus();
    type('a');
    EXPECT_EQ(shown(), "back clear");
}

TEST_F(KovalinSearchBarViewTest, mayGoInItsDelegatesOperations)
{
    for (const std::string occasion : {"focus", "text", "back", "resign"}) {
        delegate->then = {};
        make();
        if (occasion != "focus") {
            focus();
            type('a');
            settle();
        }
        const QPointer<KovalinSearchBarView> item = bar.get();
        const QRectF backFrame = back()->frame();
        delegate->then = [this] {
            if (bar) {
                bar->removeFromSuperview();
                bar.reset();
            }
        };
        if (occasion == "focus") {
            focus();
        } else if (occasion == "text") {
            type('b');
        } else if (occasion == "back") {
            tap(backFrame.center());
        } else {
            key(Qt::Key_Return);
        }
        EXPECT_EQ(bar, nullptr) << occasion;
        driver.step(0ms);
        driver.step(1000ms);
        drainMainQueue();
        EXPECT_TRUE(item.isNull()) << occasion;
    }
}

TEST_F(KovalinSearchBarViewTest, itsPartsDoNothingOnceItIsGone)
{
    const auto kept = field();
    bar->removeFromSuperview();
    bar.reset();
    drainMainQueue();
    root()->addSubview(kept);
    kept->becomeFirstResponder();
    type('a');
    key(Qt::Key_Return);
    EXPECT_EQ(kept->text(), QStringLiteral("a"));
    EXPECT_THAT(delegate->told, IsEmpty());
}

} // namespace
