#include "picker/status/QXSDKKovalinNoPermissionView.h"

#include "picker/config/KovalinString.h"
#include "picker/status/QXSDKKovalinRoundedButton.h"
#include "picker/status/StatusViewTest.h"
#include "platform/ui/ActivityIndicator.h"
#include "support/ManualAnimationDriver.h"
#include "support/RecordingLoginClient.h"

#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <chrono>
#include <string>

using namespace kovalin::platform;
using namespace std::chrono_literals;
using kovalin::test::drainMainQueue;
using kovalin::test::partOf;
using kovalin::test::RecordingLoginClient;
using kovalin::test::waitFor;

namespace {

/// As "plain <bold> plain".
std::string marked(const std::optional<QList<TextRun>>& runs)
{
    if (!runs) {
        return "nothing";
    }
    std::string text;
    for (const TextRun& run : *runs) {
        const std::string piece = run.text.toStdString();
        text += run.isBold ? "<" + piece + ">" : piece;
    }
    return text;
}

class QXSDKKovalinNoPermissionViewTest : public kovalin::test::StatusViewTest {
protected:
    QXSDKKovalinNoPermissionViewTest() { make(); }

    void make(const QXSDKKovalinStickerPickerThemePtr& theme = std::make_shared<QXSDKKovalinStickerPickerTheme>())
    {
        view = QXSDKKovalinNoPermissionView::create(root()->bounds(), configOf(theme));
        place(view);
    }

    [[nodiscard]] std::shared_ptr<Label> label() const { return partOf<Label>(*view, 0); }
    [[nodiscard]] std::shared_ptr<QXSDKKovalinRoundedButton> button() const
    {
        return partOf<QXSDKKovalinRoundedButton>(*view, 1);
    }
    [[nodiscard]] std::shared_ptr<ActivityIndicator> spinner() const { return partOf<ActivityIndicator>(*view, 2); }
    [[nodiscard]] QString shownTitle() const { return partOf<Label>(*button(), 1)->text(); }
    void tapButton() { tap(button()->frame().center()); }

    [[nodiscard]] bool showsIdle() const
    {
        return button()->isEnabled() && spinner()->isHidden() && !spinner()->isAnimating() &&
               shownTitle() == kovalinStringWithKey(QStringLiteral("turn_on"));
    }
    [[nodiscard]] bool showsLogin() const
    {
        return !button()->isEnabled() && !spinner()->isHidden() && spinner()->isAnimating() && shownTitle().isEmpty();
    }
    [[nodiscard]] bool comesToShowLogin() const
    {
        RecordingLoginClient::tellLoginStarted();
        return waitFor([this] { return showsLogin(); });
    }

    kovalin::test::InstalledRecordingLogin login;
    std::shared_ptr<QXSDKKovalinNoPermissionView> view;
};

// The text

TEST(QXSDKKovalinLabelText, putsTheActionInBoldWhereItsPlaceIs)
{
    EXPECT_EQ(marked(QXSDKKovalinLabelText(QStringLiteral("To do it, %@ now."), QStringLiteral("turn it on"))),
              "To do it, <turn it on> now.");
    EXPECT_EQ(marked(QXSDKKovalinLabelText(QStringLiteral("%@!"), QStringLiteral("on"))), "<on>!");
    EXPECT_EQ(marked(QXSDKKovalinLabelText(QStringLiteral("%@ and %@"), QStringLiteral("on"))), "<on> and %@");
    EXPECT_EQ(marked(QXSDKKovalinLabelText(QStringLiteral("%@"), QStringLiteral("%@"))), "<%@>");
}

TEST(QXSDKKovalinLabelText, isNothingWithoutAPlaceForTheAction)
{
    EXPECT_EQ(marked(QXSDKKovalinLabelText(QStringLiteral("turn_on_permission_title_format"), QStringLiteral("on"))),
              "nothing");
    EXPECT_EQ(marked(QXSDKKovalinLabelText(QString(), QStringLiteral("on"))), "nothing");
}

TEST(QXSDKKovalinLabelText, isThereInEachLanguage)
{
    for (const QString& language : QXSDKKovalinAvailableLanguages()) {
        QXSDKKovalinSetPreferredLanguages({language});
        const std::string text = marked(QXSDKKovalinLabelText());
        const QString action = kovalinStringWithKey(QStringLiteral("turn_on_permission_action"));
        EXPECT_NE(text.find("<" + action.toStdString() + ">"), std::string::npos) << text;
    }
    QXSDKKovalinSetPreferredLanguages({});
}

// Set-up

TEST_F(QXSDKKovalinNoPermissionViewTest, isMadeOfItsPartsInOrder)
{
    ASSERT_EQ(view->subviews().size(), 3);
    EXPECT_TRUE(label() && button() && spinner());
    EXPECT_EQ(view->type(), QXSDKKovalinViewTypeNoPermission);
    EXPECT_EQ(qint32(view->type()), 4);
    EXPECT_TRUE(showsIdle());
    EXPECT_EQ(spinner()->color(), QColor(Qt::white));
}

TEST_F(QXSDKKovalinNoPermissionViewTest, takesItsTextsByTheirKeysAndItsColourFromTheTheme)
{
    for (const auto& theme :
         {QXSDKKovalinStickerPickerTheme::lightTheme(), QXSDKKovalinStickerPickerTheme::darkTheme()}) {
        make(theme);
        EXPECT_EQ(label()->text(), QStringLiteral("To use your avatar stickers here, turn on access to your avatar."));
        expectLook(*label(), {.fontSize = 14, .weight = QFont::Normal, .color = theme->titleTextColor(), .lines = 0});
        EXPECT_EQ(button()->title(), QStringLiteral("Turn on"));
    }
}

TEST_F(QXSDKKovalinNoPermissionViewTest, doesWithoutAConfiguration)
{
    place(QXSDKKovalinNoPermissionView::create(root()->bounds(), nullptr));
    EXPECT_EQ(partOf<Label>(*root()->subviews().at(0), 0)->textColor(), QColor(Qt::black));
}

// Layout

TEST_F(QXSDKKovalinNoPermissionViewTest, textAndButtonAreInTheMiddleInBothDirections)
{
    for (const auto direction : directions) {
        QGuiApplication::setLayoutDirection(direction);
        make();
        const double height = label()->sizeThatFits({250, 400}).height();
        ASSERT_GT(height, 0);
        const double y = (400 - (height + 24 + 48)) / 2;
        EXPECT_EQ(label()->frame(), QRectF(75, y, 250, height));
        EXPECT_EQ(button()->frame(), QRectF(75, y + height + 24, 250, 48));
        EXPECT_EQ(spinner()->center(), button()->center());
        EXPECT_EQ(spinner()->frame().size(), QSizeF(20, 20));
    }
}

TEST_F(QXSDKKovalinNoPermissionViewTest, aNarrowViewIsFilledFromSideToSide)
{
    place(view, {200, 400});
    EXPECT_EQ(label()->frame().x(), 0);
    EXPECT_EQ(label()->frame().width(), 200);
    EXPECT_EQ(button()->frame().x(), 0);
    EXPECT_EQ(button()->frame().width(), 200);
}

TEST_F(QXSDKKovalinNoPermissionViewTest, whatIsCoveredAtTheBottomIsLeftFree)
{
    const QRectF before = button()->frame();
    view->setSafeAreaInsets({0, 10, 0, 34});
    grab();
    EXPECT_EQ(button()->frame(), before.translated(0, -17));
    EXPECT_EQ(spinner()->center(), button()->center());
}

TEST_F(QXSDKKovalinNoPermissionViewTest, withoutATextThereIsTheButton)
{
    label()->setText({});
    place(view, {400, 390});
    EXPECT_EQ(label()->frame(), QRectF(75, 159, 250, 0));
    EXPECT_EQ(button()->frame(), QRectF(75, 183, 250, 48));
    tapButton();
    EXPECT_EQ(login->logins.size(), 1U);
}

// The login

TEST_F(QXSDKKovalinNoPermissionViewTest, aTapStartsTheLogin)
{
    tapButton();
    ASSERT_EQ(login->logins.size(), 1U);
    EXPECT_EQ(login->logins.front().viewController.data(), &window());
    EXPECT_FALSE(login->logins.front().completion);
    EXPECT_TRUE(showsIdle()) << "until the login says that it has begun";
}

TEST_F(QXSDKKovalinNoPermissionViewTest, keysTapToo)
{
    QTest::keyClick(&window(), Qt::Key_Tab);
    QTest::keyClick(&window(), Qt::Key_Space);
    EXPECT_EQ(login->logins.size(), 1U);
}

TEST_F(QXSDKKovalinNoPermissionViewTest, aSpinnerStandsAloneOnTheButtonWhileALoginIsUnderWay)
{
    ASSERT_TRUE(comesToShowLogin());
    grab();
    EXPECT_EQ(spinner()->center(), button()->center());
    tapButton();
    tap(spinner()->frame().center());
    EXPECT_EQ(login->logins.size(), 0U) << "disabled";
}

TEST_F(QXSDKKovalinNoPermissionViewTest, theButtonIsStillCalledByItsTitleThen)
{
    ASSERT_TRUE(comesToShowLogin());
    QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(button().get());
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->text(QAccessible::Name), QStringLiteral("Turn on"));
}

TEST_F(QXSDKKovalinNoPermissionViewTest, afterAFailureTheButtonIsBack)
{
    for (int round = 0; round < 2; ++round) {
        tapButton();
        ASSERT_TRUE(comesToShowLogin());
        RecordingLoginClient::tellLinkFailed();
        ASSERT_TRUE(waitFor([this] { return showsIdle(); }));
    }
    EXPECT_EQ(login->logins.size(), 2U);
}

TEST_F(QXSDKKovalinNoPermissionViewTest, afterSuccessTheSpinnerStays)
{
    ASSERT_TRUE(comesToShowLogin());
    bool isTold = false;
    RecordingLoginClient::tellLinkSucceeded([&] { isTold = true; });
    ASSERT_TRUE(waitFor([&] { return isTold; }));
    EXPECT_TRUE(showsLogin());
}

TEST_F(QXSDKKovalinNoPermissionViewTest, aFailureWithoutALoginChangesNothing)
{
    bool isTold = false;
    RecordingLoginClient::tellLinkFailed([&] { isTold = true; });
    ASSERT_TRUE(waitFor([&] { return isTold; }));
    EXPECT_TRUE(showsIdle());
}

TEST_F(QXSDKKovalinNoPermissionViewTest, mayGoWhileItsSpinnerTurns)
{
    kovalin::test::ManualAnimationDriver driver;
    ASSERT_TRUE(comesToShowLogin());
    driver.step(0ms);
    driver.step(100ms);
    const std::weak_ptr<QXSDKKovalinNoPermissionView> gone = view;
    view->removeFromSuperview();
    view.reset();
    EXPECT_TRUE(gone.expired());
    RecordingLoginClient::tellLinkFailed();
    RecordingLoginClient::tellLoginStarted();
    drainMainQueue();
    driver.step(100ms);
    EXPECT_TRUE(root()->subviews().isEmpty());
}

TEST_F(QXSDKKovalinNoPermissionViewTest, aButtonThatOutlivesTheViewDoesNothing)
{
    const auto kept = button();
    view->removeFromSuperview();
    view.reset();
    drainMainQueue();
    kept->press();
    EXPECT_EQ(login->logins.size(), 0U);
}

} // namespace
