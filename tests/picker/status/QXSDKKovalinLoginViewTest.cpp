#include "picker/status/QXSDKKovalinLoginView.h"

#include "picker/config/KovalinString.h"
#include "picker/status/StatusViewTest.h"
#include "support/RecordingLoginClient.h"

#include <QtTest/QTest>

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

using namespace kovalin::platform;
using kovalin::test::drainMainQueue;
using kovalin::test::partOf;
using testing::ElementsAre;

namespace {

class RecordingLoginViewDelegate final : public QXSDKKovalinLoginViewDelegate {
public:
    explicit RecordingLoginViewDelegate(std::vector<std::string>& told)
        : _told(told)
    {
    }
    void loginViewDidTapLoginButton() override
    {
        _told.emplace_back("tap");
        if (then) {
            then();
        }
    }

    std::function<void()> then;

private:
    std::vector<std::string>& _told;
};

class QXSDKKovalinLoginViewTest : public kovalin::test::StatusViewTest {
protected:
    QXSDKKovalinLoginViewTest()
    {
        login->onLogin = [this] {
            told.emplace_back("login");
        };
        make();
    }

    void make(const QXSDKKovalinStickerPickerThemePtr& theme = std::make_shared<QXSDKKovalinStickerPickerTheme>())
    {
        view = QXSDKKovalinLoginView::create(root()->bounds(), configOf(theme));
        view->setDelegate(delegate);
        place(view);
    }

    [[nodiscard]] std::shared_ptr<QXSDKLoginButton> button() const { return partOf<QXSDKLoginButton>(*view, 0); }
    [[nodiscard]] std::shared_ptr<ImageView> graphic() const { return partOf<ImageView>(*view, 1); }
    [[nodiscard]] std::shared_ptr<Label> title() const { return partOf<Label>(*view, 2); }
    [[nodiscard]] std::shared_ptr<Label> bottom() const { return partOf<Label>(*view, 3); }

    kovalin::test::InstalledRecordingLogin login;
    std::vector<std::string> told;
    std::shared_ptr<RecordingLoginViewDelegate> delegate = std::make_shared<RecordingLoginViewDelegate>(told);
    std::shared_ptr<QXSDKKovalinLoginView> view;
};

// Set-up

TEST_F(QXSDKKovalinLoginViewTest, isMadeOfItsPartsInOrder)
{
    ASSERT_EQ(view->subviews().size(), 4);
    EXPECT_TRUE(button() && graphic() && title() && bottom());
    EXPECT_EQ(view->type(), QXSDKKovalinViewTypeLogin);
    EXPECT_EQ(qint32(view->type()), 3);
    EXPECT_EQ(QXSDKKovalinLoginView::create({1, 2, 3, 4}, nullptr)->frame(), QRectF(1, 2, 3, 4));
}

TEST_F(QXSDKKovalinLoginViewTest, takesItsTextsByTheirKeysAndItsColoursFromTheTheme)
{
    for (const auto& theme :
         {QXSDKKovalinStickerPickerTheme::lightTheme(), QXSDKKovalinStickerPickerTheme::darkTheme()}) {
        make(theme);
        EXPECT_EQ(title()->text(), kovalinStringWithKey(QStringLiteral("login_title")));
        expectLook(*title(), {.fontSize = 14, .weight = QFont::Bold, .color = theme->titleTextColor(), .lines = 0});
        EXPECT_EQ(bottom()->text(), kovalinStringWithKey(QStringLiteral("login_bottom_text")));
        expectLook(*bottom(), {.fontSize = 12, .weight = QFont::Normal, .color = theme->subtextColor(), .lines = 1});
    }
}

TEST_F(QXSDKKovalinLoginViewTest, doesWithoutAConfiguration)
{
    place(QXSDKKovalinLoginView::create(root()->bounds(), nullptr));
    EXPECT_EQ(partOf<Label>(*root()->subviews().at(0), 2)->textColor(), QColor(Qt::black));
}

TEST_F(QXSDKKovalinLoginViewTest, thePictureIsSharp)
{
    EXPECT_EQ(graphic()->image().devicePixelRatio(), ratio());
    EXPECT_EQ(naturalSize(graphic()->image()), QSizeF(200, 110));
}

TEST_F(QXSDKKovalinLoginViewTest, theButtonSpeaksTheLanguageOfTheTexts)
{
    EXPECT_EQ(button()->title(), QStringLiteral("Log in"));
    QXSDKKovalinSetPreferredLanguages({QStringLiteral("de-AT")});
    make();
    EXPECT_EQ(button()->title(), QStringLiteral("Anmelden"));
}

// Layout

TEST_F(QXSDKKovalinLoginViewTest, theBlockIsInTheMiddleInBothDirections)
{
    for (const auto direction : directions) {
        QGuiApplication::setLayoutDirection(direction);
        make();
        const double titleHeight = title()->sizeThatFits({250, 220}).height();
        const double bottomHeight = bottom()->sizeThatFits({250, 220}).height();
        ASSERT_GT(titleHeight, 0);
        ASSERT_GT(bottomHeight, 0);
        EXPECT_EQ(title()->frame(), QRectF(75, 90, 250, titleHeight));
        EXPECT_EQ(bottom()->frame(), QRectF(75, 310 - bottomHeight, 250, bottomHeight));
        const double width = button()->sizeThatFits({1000, 1000}).width();
        EXPECT_EQ(button()->frame(), QRectF((400 - width) / 2, 310 - bottomHeight - 10 - 48, width, 48));
        EXPECT_EQ(graphic()->frame(), QRectF(100, button()->frame().top() + 7.5 - 110, 200, 110));
    }
}

TEST_F(QXSDKKovalinLoginViewTest, aNarrowViewHasABlockOfItsWidth)
{
    for (const auto direction : directions) {
        QGuiApplication::setLayoutDirection(direction);
        make();
        place(view, {200, 400});
        EXPECT_EQ(title()->frame().x(), 0);
        EXPECT_EQ(title()->frame().width(), 200);
        EXPECT_EQ(bottom()->frame().x(), 0);
        EXPECT_EQ(bottom()->frame().width(), 200);
        EXPECT_EQ(graphic()->frame().x(), 0);
        place(view, {250, 400});
        EXPECT_EQ(title()->frame().x(), 0);
        EXPECT_EQ(title()->frame().width(), 250);
    }
}

TEST_F(QXSDKKovalinLoginViewTest, whatIsCoveredAtTheBottomMovesTheBlockUpByHalfOfIt)
{
    const QList<std::shared_ptr<View>> parts = view->subviews();
    QList<QRectF> before;
    for (const auto& each : parts) {
        before.append(each->frame());
    }
    view->setSafeAreaInsets({5, 20, 5, 34});
    grab();
    for (qsizetype i = 0; i < parts.size(); ++i) {
        EXPECT_EQ(parts.at(i)->frame(), before.at(i).translated(0, -17)) << i;
    }
}

TEST_F(QXSDKKovalinLoginViewTest, aViewThatIsTooLowHasABlockThatStandsOver)
{
    place(view, {400, 100});
    EXPECT_EQ(title()->frame().y(), -60);
    EXPECT_EQ(bottom()->frame().bottom(), 160);
}

// The login

TEST_F(QXSDKKovalinLoginViewTest, aTapTellsTheDelegateAndLogsIn)
{
    tap(button()->frame().center());
    EXPECT_THAT(told, ElementsAre("tap", "login"));
    ASSERT_EQ(login->logins.size(), 1U);
    EXPECT_EQ(login->logins.front().viewController.data(), &window());
}

TEST_F(QXSDKKovalinLoginViewTest, keysTapToo)
{
    QTest::keyClick(&window(), Qt::Key_Tab);
    QTest::keyClick(&window(), Qt::Key_Return);
    EXPECT_THAT(told, ElementsAre("tap", "login"));
}

TEST_F(QXSDKKovalinLoginViewTest, doesWithoutADelegate)
{
    delegate.reset();
    tap(button()->frame().center());
    EXPECT_THAT(told, ElementsAre("login"));
}

TEST_F(QXSDKKovalinLoginViewTest, mayGoInItsDelegatesHands)
{
    const std::weak_ptr<QXSDKKovalinLoginView> gone = view;
    const QPointF there = button()->frame().center();
    delegate->then = [this] {
        view->removeFromSuperview();
        view.reset();
    };
    tap(there);
    EXPECT_THAT(told, ElementsAre("tap", "login"));
    drainMainQueue();
    EXPECT_TRUE(gone.expired());
}

TEST_F(QXSDKKovalinLoginViewTest, mayGoDuringALogin)
{
    tap(button()->frame().center());
    view->removeFromSuperview();
    view.reset();
    drainMainQueue();
    kovalin::test::RecordingLoginClient::tellLinkSucceeded();
    drainMainQueue();
    EXPECT_TRUE(root()->subviews().isEmpty());
}

TEST_F(QXSDKKovalinLoginViewTest, aButtonThatOutlivesTheViewTellsNobody)
{
    const auto kept = button();
    view->removeFromSuperview();
    view.reset();
    drainMainQueue();
    kept->press();
    EXPECT_THAT(told, ElementsAre("login"));
}

} // namespace
