#include "picker/status/QXSDKKovalinCreateAvatarView.h"

#include "kits/core/QXSDKClientSetup.h"
#include "picker/config/KovalinString.h"
#include "picker/status/QXSDKKovalinRoundedButton.h"
#include "picker/status/StatusViewTest.h"
#include "support/LogLines.h"
#include "support/RecordingURLOpener.h"

#include <QtTest/QTest>

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

using namespace kovalin::platform;
using kovalin::test::drainMainQueue;
using kovalin::test::partOf;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class RecordingCreateAvatarViewDelegate final : public QXSDKKovalinCreateAvatarViewDelegate {
public:
    explicit RecordingCreateAvatarViewDelegate(std::vector<std::string>& told)
        : _told(told)
    {
    }
    void createAvatarViewDidTapCreateAvatarButton() override
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

class QXSDKKovalinCreateAvatarViewTest : public kovalin::test::StatusViewTest {
protected:
    QXSDKKovalinCreateAvatarViewTest()
    {
        QXSDKClientSetup::setShared({.clientId = QStringLiteral("host-1"),
                                     .avatarAppStoreUrl = QStringLiteral("itms-apps://store.example/app/id1")});
        make();
    }
    ~QXSDKKovalinCreateAvatarViewTest() override { QXSDKClientSetup::setShared({}); }

    void make(const QXSDKKovalinStickerPickerThemePtr& theme = std::make_shared<QXSDKKovalinStickerPickerTheme>())
    {
        view = makeView<QXSDKKovalinCreateAvatarView>(root()->bounds(), configOf(theme));
        view->setDelegate(delegate);
        place(view);
    }

    [[nodiscard]] std::shared_ptr<Label> title() const { return partOf<Label>(*view, 0); }
    [[nodiscard]] std::shared_ptr<Label> bottom() const { return partOf<Label>(*view, 1); }
    [[nodiscard]] std::shared_ptr<QXSDKKovalinRoundedButton> button() const
    {
        return partOf<QXSDKKovalinRoundedButton>(*view, 2);
    }
    [[nodiscard]] std::shared_ptr<ImageView> graphic() const { return partOf<ImageView>(*view, 3); }
    void tapButton() { tap(button()->frame().center()); }

    kovalin::test::InstalledURLOpener opener;
    std::vector<std::string>& told = opener->told;
    std::shared_ptr<RecordingCreateAvatarViewDelegate> delegate =
        std::make_shared<RecordingCreateAvatarViewDelegate>(told);
    std::shared_ptr<QXSDKKovalinCreateAvatarView> view;
};

// Set-up

TEST_F(QXSDKKovalinCreateAvatarViewTest, isMadeOfItsPartsInOrder)
{
    ASSERT_EQ(view->subviews().size(), 4);
    EXPECT_TRUE(title() && bottom() && button() && graphic());
    EXPECT_EQ(view->type(), QXSDKKovalinViewTypeCreateAvatar);
    EXPECT_EQ(qint32(view->type()), 2);
}

TEST_F(QXSDKKovalinCreateAvatarViewTest, takesItsTextsByTheirKeysAndItsColoursFromTheTheme)
{
    for (const auto& theme :
         {QXSDKKovalinStickerPickerTheme::lightTheme(), QXSDKKovalinStickerPickerTheme::darkTheme()}) {
        make(theme);
        EXPECT_EQ(title()->text(), kovalinStringWithKey(QStringLiteral("create_avatar_title")));
        expectLook(*title(), {.fontSize = 14, .weight = QFont::Bold, .color = theme->titleTextColor(), .lines = 0});
        EXPECT_EQ(bottom()->text(), kovalinStringWithKey(QStringLiteral("create_avatar_bottom_text")));
        expectLook(*bottom(), {.fontSize = 12, .weight = QFont::Normal, .color = theme->subtextColor(), .lines = 1});
        EXPECT_EQ(button()->title(), kovalinStringWithKey(QStringLiteral("create_avatar")));
    }
}

TEST_F(QXSDKKovalinCreateAvatarViewTest, doesWithoutAConfiguration)
{
    place(makeView<QXSDKKovalinCreateAvatarView>(root()->bounds(), nullptr));
    EXPECT_EQ(partOf<Label>(*root()->subviews().at(0), 0)->textColor(), QColor(Qt::black));
}

// Layout

TEST_F(QXSDKKovalinCreateAvatarViewTest, theBlockIsInTheMiddleInBothDirections)
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
        EXPECT_EQ(button()->frame(), QRectF(75, 310 - bottomHeight - 10 - 48, 250, 48));
        EXPECT_EQ(graphic()->frame(), QRectF(100, button()->frame().top() + 7.5 - 110, 200, 110));
        EXPECT_EQ(button()->layerStyle().cornerRadius, 24);
    }
}

TEST_F(QXSDKKovalinCreateAvatarViewTest, aNarrowViewHasABlockOfItsWidth)
{
    for (const auto direction : directions) {
        QGuiApplication::setLayoutDirection(direction);
        make();
        place(view, {200, 400});
        for (const auto& each : {title()->frame(), bottom()->frame(), button()->frame(), graphic()->frame()}) {
            EXPECT_EQ(each.x(), 0);
            EXPECT_EQ(each.width(), 200);
        }
    }
}

TEST_F(QXSDKKovalinCreateAvatarViewTest, whatIsCoveredAtTheBottomMovesTheBlockUpByHalfOfIt)
{
    const QRectF before = button()->frame();
    view->setSafeAreaInsets({0, 0, 0, 34});
    grab();
    EXPECT_EQ(button()->frame(), before.translated(0, -17));
    EXPECT_EQ(title()->frame().y(), 73);
}

// The tap

TEST_F(QXSDKKovalinCreateAvatarViewTest, aTapOpensTheAvatarAppWhereItIs)
{
    opener->openableSchemes = {QStringLiteral("kovalin-sdk")};
    tapButton();
    EXPECT_THAT(told, ElementsAre("tap", "open kovalin-sdk://login?client_id=host-1"));
}

TEST_F(QXSDKKovalinCreateAvatarViewTest, aTapOpensTheStoreWhereTheAvatarAppIsNot)
{
    opener->openableSchemes = {QStringLiteral("https")};
    tapButton();
    EXPECT_THAT(told, ElementsAre("tap", "open itms-apps://store.example/app/id1"));
}

TEST_F(QXSDKKovalinCreateAvatarViewTest, withoutAStoreATapIsALogLine)
{
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("host-1")});
    const kovalin::test::LogLines lines;
    tapButton();
    EXPECT_THAT(told, ElementsAre("tap"));
    EXPECT_EQ(lines.count(QStringLiteral("The client setup doesn't tell where the avatar app can be had")), 1);
}

TEST_F(QXSDKKovalinCreateAvatarViewTest, theDelegateIsToldBeforeAnythingIsAskedOrOpened)
{
    delegate->then = [this] {
        opener->openableSchemes = {QStringLiteral("kovalin-sdk")};
    };
    tapButton();
    EXPECT_THAT(told, ElementsAre("tap", "open kovalin-sdk://login?client_id=host-1"));
}

TEST_F(QXSDKKovalinCreateAvatarViewTest, keysTapToo)
{
    QTest::keyClick(&window(), Qt::Key_Tab);
    QTest::keyClick(&window(), Qt::Key_Space);
    EXPECT_THAT(told, ElementsAre("tap", "open itms-apps://store.example/app/id1"));
}

TEST_F(QXSDKKovalinCreateAvatarViewTest, thePictureOnTheButtonTakesNoTaps)
{
    const QRectF frame = button()->frame();
    tap({frame.center().x(), frame.top() + 3});
    EXPECT_EQ(told.size(), 2U);
}

TEST_F(QXSDKKovalinCreateAvatarViewTest, aPressThatEndsElsewhereOpensNothing)
{
    press(button()->frame().center());
    move({5, 5});
    release({5, 5});
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(QXSDKKovalinCreateAvatarViewTest, doesWithoutADelegate)
{
    delegate.reset();
    tapButton();
    EXPECT_THAT(told, ElementsAre("open itms-apps://store.example/app/id1"));
}

TEST_F(QXSDKKovalinCreateAvatarViewTest, mayGoInItsDelegatesHandsAndOpensAllTheSame)
{
    const std::weak_ptr<QXSDKKovalinCreateAvatarView> gone = view;
    const QPointF there = button()->frame().center();
    delegate->then = [this] {
        view->removeFromSuperview();
        view.reset();
    };
    tap(there);
    EXPECT_THAT(told, ElementsAre("tap", "open itms-apps://store.example/app/id1"));
    drainMainQueue();
    EXPECT_TRUE(gone.expired());
}

TEST_F(QXSDKKovalinCreateAvatarViewTest, aButtonThatOutlivesTheViewDoesNothing)
{
    const auto kept = button();
    view->removeFromSuperview();
    view.reset();
    drainMainQueue();
    kept->press();
    EXPECT_THAT(told, IsEmpty());
}

} // namespace
