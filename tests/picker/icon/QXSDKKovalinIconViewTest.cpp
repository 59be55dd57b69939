#include "picker/icon/QXSDKKovalinIconView.h"

#include "content/QXSDKKovalinFriendCache.h"
#include "content/QXSDKKovalinFriendState.h"
#include "picker/icon/IconTesting.h"
#include "platform/foundation/Application.h"
#include "support/LogLines.h"
#include "support/ViewTest.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <QtCore/QList>
#include <QtCore/QUuid>

#include <gtest/gtest.h>

using namespace kovalin::platform;
using namespace kovalin::test;

namespace {

/// An icon of 40 points in a window, whose pictures come from a server.
class QXSDKKovalinIconViewTest : protected WithLoopbackPictures, public ViewTest {
protected:
    QXSDKKovalinIconViewTest()
    {
        pictures.script("/red", Qt::red);
        pictures.script("/blue", Qt::blue);
        pictures.hold("/held", Qt::green);
        pictures.server.script("/fails", ScriptedAnswer::withStatus(500, "no picture"));
    }

    void make(bool isLinked)
    {
        login->isLinked = isLinked;
        icon = QXSDKKovalinIconView::create(pictures.cache);
        icon->setFrame({10, 10, 40, 40});
        root()->addSubview(icon);
        grab();
        drainMainQueue();
    }
    /// An icon of a user whose avatar's picture is on show.
    void makeWithSelfie(const char* path)
    {
        make(true);
        answer(0, path);
        answer(1, path);
        ASSERT_TRUE(comesToShow(Qt::red));
    }
    void answer(std::size_t request, const char* path) { answerAvatar(*login, request, pictures.url(path)); }

    [[nodiscard]] KovalinStickerPtr sticker(const char* path) const
    {
        return stickerWithUrl(pictures.url(path).toString());
    }
    [[nodiscard]] static KovalinStickerPtr stickerWithUrl(const std::optional<QString>& url)
    {
        auto made = std::make_shared<KovalinSticker>();
        made->setUrl(url);
        return made;
    }
    void update(const KovalinStickerPtr& shown)
    {
        const auto before = told.size();
        icon->updateWithKovalinSticker(shown, *friends, [this](bool isChanged) { told.append(isChanged); });
        EXPECT_EQ(told.size(), before + 1) << "at once";
    }

    [[nodiscard]] QImage shown() const { return imageViewOf(*icon)->image(); }
    [[nodiscard]] bool showsDefault() const
    {
        return !shown().isNull() && shown().cacheKey() == icon->defaultImage().cacheKey();
    }
    /// Whether a picture of the server's is on show.
    [[nodiscard]] bool shows(const QColor& color) const
    {
        return shown().size() == QSize(16, 16) && shown().pixelColor(8, 8) == color;
    }
    [[nodiscard]] bool comesToShow(const QColor& color) const
    {
        return waitFor([this, color] { return shows(color); });
    }

    InstalledLoginClient login;
    QXSDKKovalinStickerPickerSessionManager sessions;
    std::shared_ptr<QXSDKKovalinFriendState> friends = QXSDKKovalinFriendState::create(sessions);
    std::shared_ptr<QXSDKKovalinIconView> icon;
    QList<bool> told;
};

// Set-up

TEST_F(QXSDKKovalinIconViewTest, withoutAnAccountItShowsTheDefaultPictureAndAsksForNothing)
{
    make(false);
    EXPECT_FALSE(icon->linked());
    EXPECT_TRUE(showsDefault());
    EXPECT_EQ(login->requestCount(), 0U);
    EXPECT_EQ(icon->sticker(), nullptr);
    EXPECT_EQ(icon->objectName(), QStringLiteral("qxsdk_kovalin_icon"));
}

TEST_F(QXSDKKovalinIconViewTest, onePictureFillsIt)
{
    make(false);
    ASSERT_EQ(icon->subviews().size(), 1);
    EXPECT_EQ(imageViewOf(*icon)->frame(), QRectF(0, 0, 40, 40));
    icon->setFrame({0, 0, 64, 48});
    grab();
    EXPECT_EQ(imageViewOf(*icon)->frame(), QRectF(0, 0, 64, 48));
}

TEST_F(QXSDKKovalinIconViewTest, theDefaultPictureIsDrawnForTheIconsSize)
{
    make(false);
    EXPECT_EQ(shown().devicePixelRatio(), ratio());
    EXPECT_EQ(naturalSize(shown()), QSizeF(40, 40));
    icon->setFrame({0, 0, 120, 96});
    grab();
    EXPECT_EQ(naturalSize(shown()), QSizeF(96, 96));
    EXPECT_TRUE(showsDefault());
}

TEST_F(QXSDKKovalinIconViewTest, withAnAccountItAsksForTheAvatarTwiceAtStart)
{
    make(true);
    EXPECT_TRUE(icon->linked());
    EXPECT_EQ(login->requestCount(), 2U);
    EXPECT_TRUE(showsDefault()) << "until there is an answer";
}

// The avatar

TEST_F(QXSDKKovalinIconViewTest, showsTheAvatarOnceItIsThere)
{
    make(true);
    answer(0, "/red");
    EXPECT_TRUE(comesToShow(Qt::red));
    EXPECT_TRUE(waitFor([this] { return colorAt(QPointF(30, 30)) == QColor(Qt::red); })) << "scaled in the background";
}

TEST_F(QXSDKKovalinIconViewTest, theSecondAnswerIsDroppedAsEqual)
{
    makeWithSelfie("/red");
    pictures.drain();
    EXPECT_EQ(pictures.requestsOf("/red"), 1);
    EXPECT_TRUE(shows(Qt::red));
}

TEST_F(QXSDKKovalinIconViewTest, aUserWithoutAnAvatarSeesTheDefaultPicture)
{
    makeWithSelfie("/red");
    icon->setLinked(true);
    answerAvatar(*login, 2, std::nullopt);
    drainMainQueue();
    EXPECT_TRUE(showsDefault());
}

TEST_F(QXSDKKovalinIconViewTest, anAddressThatIsNoneIsNoAvatar)
{
    make(true);
    login->request(0).success(
        {{QStringLiteral("data"),
          QJsonObject{{QStringLiteral("me"),
                       QJsonObject{{QStringLiteral("kovalin"),
                                    QJsonObject{{QStringLiteral("avatar"), QStringLiteral("http://[")}}}}}}}});
    pictures.drain();
    EXPECT_TRUE(showsDefault());
}

TEST_F(QXSDKKovalinIconViewTest, aFailedRequestIsLoggedAndChangesNothing)
{
    makeWithSelfie("/red");
    icon->applicationDidBecomeActive();
    ASSERT_EQ(login->requestCount(), 3U);
    const LogLines lines;
    login->request(2).failure(errorWithStatusCode(500, {}, {}), false);
    ASSERT_TRUE(waitFor([&] { return lines.count(QStringLiteral("[ERROR] Failed to load kovalin avatar")) == 1; }));
    pictures.drain();
    EXPECT_TRUE(shows(Qt::red));
}

TEST_F(QXSDKKovalinIconViewTest, aPictureThatCannotBeHadChangesNothing)
{
    make(true);
    answer(0, "/fails");
    pictures.drain();
    EXPECT_TRUE(showsDefault());
    EXPECT_EQ(pictures.requestsOf("/fails"), 1);
}

TEST_F(QXSDKKovalinIconViewTest, asksAgainWhenItIsToldOfALinkAlsoIfNothingHasChanged)
{
    make(true);
    icon->setLinked(true);
    EXPECT_EQ(login->requestCount(), 3U);
}

TEST_F(QXSDKKovalinIconViewTest, aLoginBringsTheAvatar)
{
    make(false);
    login->link();
    ASSERT_TRUE(waitFor([this] { return icon->linked(); }));
    EXPECT_EQ(login->requestCount(), 1U);
    answer(0, "/red");
    EXPECT_TRUE(comesToShow(Qt::red));
}

TEST_F(QXSDKKovalinIconViewTest, aReturnOfTheApplicationAsksForTheAvatarAnew)
{
    make(true);
    Application::setState(ApplicationState::Background);
    EXPECT_EQ(login->requestCount(), 2U);
    Application::setState(ApplicationState::Active);
    EXPECT_EQ(login->requestCount(), 3U);

    login->isLinked = false;
    Application::setState(ApplicationState::Background);
    Application::setState(ApplicationState::Active);
    EXPECT_FALSE(icon->linked());
    EXPECT_EQ(login->requestCount(), 3U);
}

TEST_F(QXSDKKovalinIconViewTest, aLogoutShowsTheDefaultPictureAndKeepsTheSelfie)
{
    makeWithSelfie("/red");
    login->unlink();
    ASSERT_TRUE(waitFor([this] { return showsDefault(); }));
    EXPECT_FALSE(icon->linked());
    update(nullptr);
    EXPECT_TRUE(comesToShow(Qt::red));
}

// Stickers

TEST_F(QXSDKKovalinIconViewTest, showsAStickerAndTellsThatItIsAnother)
{
    make(false);
    const auto red = sticker("/red");
    update(red);
    EXPECT_EQ(icon->sticker(), red);
    EXPECT_TRUE(comesToShow(Qt::red));
    const auto blue = sticker("/blue");
    update(blue);
    EXPECT_TRUE(shows(Qt::red)) << "until the other is there";
    EXPECT_TRUE(comesToShow(Qt::blue));
    update(nullptr);
    EXPECT_EQ(icon->sticker(), nullptr);
    EXPECT_EQ(told, QList<bool>({true, true, true}));
}

TEST_F(QXSDKKovalinIconViewTest, theSameStickerIsNoChangeAndIsNotFetchedAgain)
{
    make(false);
    const auto red = sticker("/red");
    update(red);
    ASSERT_TRUE(comesToShow(Qt::red));
    update(red);
    update(red->copy());
    pictures.drain();
    EXPECT_EQ(told, QList<bool>({true, false, true})) << "objects are compared";
    EXPECT_EQ(pictures.requestsOf("/red"), 1);
    EXPECT_TRUE(shows(Qt::red));
}

TEST_F(QXSDKKovalinIconViewTest, noStickerIsTheSelfie)
{
    makeWithSelfie("/red");
    update(sticker("/blue"));
    ASSERT_TRUE(comesToShow(Qt::blue));
    update(nullptr);
    EXPECT_TRUE(comesToShow(Qt::red));
}

TEST_F(QXSDKKovalinIconViewTest, noStickerAndNoSelfieIsTheDefaultPicture)
{
    make(true);
    update(sticker("/blue"));
    ASSERT_TRUE(comesToShow(Qt::blue));
    update(nullptr);
    EXPECT_TRUE(shows(Qt::blue)) << "it comes in a later turn";
    drainMainQueue();
    EXPECT_TRUE(showsDefault());
}

TEST_F(QXSDKKovalinIconViewTest, ofTwoQuickUpdatesTheLaterIsShown)
{
    make(false);
    update(sticker("/held"));
    pictures.server.waitForHeld(1);
    update(sticker("/red"));
    ASSERT_TRUE(comesToShow(Qt::red));
    pictures.server.release("/held");
    pictures.drain();
    pictures.drain();
    EXPECT_TRUE(shows(Qt::red));
}

TEST_F(QXSDKKovalinIconViewTest, aStickerThatComesAfterItWasTakenAwayIsNotShown)
{
    make(false);
    update(sticker("/held"));
    pictures.server.waitForHeld(1);
    update(nullptr);
    LoopbackPictures::Joined joined(pictures, "/held");
    pictures.server.release("/held");
    joined.wait();
    drainMainQueue();
    EXPECT_TRUE(showsDefault());
}

TEST_F(QXSDKKovalinIconViewTest, aStickerThatCannotBeHadChangesNothing)
{
    makeWithSelfie("/red");
    update(sticker("/fails"));
    pictures.drain();
    pictures.drain();
    EXPECT_TRUE(shows(Qt::red));
}

TEST_F(QXSDKKovalinIconViewTest, aStickerWithoutAnAddressIsTheDefaultPicture)
{
    makeWithSelfie("/red");
    update(stickerWithUrl(std::nullopt));
    drainMainQueue();
    EXPECT_TRUE(showsDefault());
    update(stickerWithUrl(QStringLiteral("http://[")));
    drainMainQueue();
    EXPECT_TRUE(showsDefault());
}

TEST_F(QXSDKKovalinIconViewTest, aStickerIsDrawnWithTheFriendsAvatar)
{
    pictures.script("/pair/A", Qt::red);
    const QString user = QUuid::createUuid().toString();
    QXSDKKovalinFriendCache::shared()->updateWithData({{user, QStringLiteral("A")}});
    make(true);
    friends->setFriendUserIds({user}, 0);
    const auto pair = sticker("/pair")->copy();
    pair->setUrl(*pair->url() + QStringLiteral("/%s"));
    pair->setFriendvalin(true);
    update(pair);
    EXPECT_TRUE(comesToShow(Qt::red));
}

TEST_F(QXSDKKovalinIconViewTest, whatAnAddressCannotHaveIsEscaped)
{
    pictures.script("/a%20b%25s%C3%A9%23", Qt::red);
    make(false);
    update(stickerWithUrl(pictures.url("/").toString() + QStringLiteral("a b%sé#")));
    EXPECT_TRUE(comesToShow(Qt::red));
}

TEST_F(QXSDKKovalinIconViewTest, anAvatarTakesTheStickersPlaceAndTheSameStickerComesBackWithoutAChange)
{
    make(true);
    const auto blue = sticker("/blue");
    update(blue);
    ASSERT_TRUE(comesToShow(Qt::blue));
    answer(0, "/red");
    ASSERT_TRUE(comesToShow(Qt::red));
    EXPECT_EQ(icon->sticker(), blue);
    update(blue);
    EXPECT_TRUE(comesToShow(Qt::blue));
    EXPECT_EQ(told, QList<bool>({true, false}));
}

TEST_F(QXSDKKovalinIconViewTest, anAnswerForAnAddressThatWasSetAnewDoesNotCount)
{
    make(true);
    answer(0, "/held");
    pictures.server.waitForHeld(1);
    answer(1, "/held"); // equal, and another object
    update(nullptr);
    LoopbackPictures::Joined joined(pictures, "/held");
    pictures.server.release("/held");
    joined.wait();
    drainMainQueue();
    EXPECT_TRUE(showsDefault());
}

TEST_F(QXSDKKovalinIconViewTest, aStickerThatIsSetIsTakenForTheOneOnShow)
{
    make(false);
    const auto red = sticker("/red");
    icon->setSticker(red);
    EXPECT_TRUE(showsDefault());
    update(red);
    EXPECT_EQ(told, QList<bool>({false}));
    EXPECT_TRUE(comesToShow(Qt::red));
}

// The host's default picture

TEST_F(QXSDKKovalinIconViewTest, aHostsDefaultPictureIsShownFromTheNextTimeOn)
{
    make(false);
    const QImage own = plain(Qt::cyan);
    icon->setDefaultImage(own);
    EXPECT_EQ(icon->defaultImage(), own);
    EXPECT_FALSE(showsDefault());
    icon->setFrame({10, 10, 60, 60});
    grab();
    EXPECT_FALSE(showsDefault());
    icon->setLinked(false);
    drainMainQueue();
    EXPECT_TRUE(shows(Qt::cyan));
    icon->setFrame({10, 10, 40, 40});
    grab();
    EXPECT_TRUE(shows(Qt::cyan)) << "whatever the size";
}

TEST_F(QXSDKKovalinIconViewTest, aHostsDefaultPictureThatIsSetAtOnceIsTheFirst)
{
    login->isLinked = false;
    icon = QXSDKKovalinIconView::create(pictures.cache);
    icon->setDefaultImage(plain(Qt::cyan));
    drainMainQueue();
    EXPECT_TRUE(shows(Qt::cyan));
}

// Lifetime

TEST_F(QXSDKKovalinIconViewTest, mayGoWhileItWaitsForTheAvatarsAddress)
{
    make(true);
    const std::weak_ptr<QXSDKKovalinIconView> gone = icon;
    icon->removeFromSuperview();
    icon.reset();
    EXPECT_TRUE(gone.expired());
    answer(0, "/red");
    pictures.drain();
    EXPECT_EQ(pictures.requestsOf("/red"), 0);
}

TEST_F(QXSDKKovalinIconViewTest, mayGoDuringADownload)
{
    make(false);
    update(sticker("/held"));
    pictures.server.waitForHeld(1);
    icon->removeFromSuperview();
    icon.reset();
    LoopbackPictures::Joined joined(pictures, "/held");
    pictures.server.release("/held");
    joined.wait();
    drainMainQueue();
    EXPECT_TRUE(root()->subviews().isEmpty());
}

TEST_F(QXSDKKovalinIconViewTest, mayGoWhileItsDefaultPictureOrALoginIsToldOf)
{
    make(false);
    update(nullptr);
    login->link();
    login->unlink();
    icon->removeFromSuperview();
    icon.reset();
    drainMainQueue();
    Application::setState(ApplicationState::Background);
    Application::setState(ApplicationState::Active);
    EXPECT_EQ(login->requestCount(), 0U);
}

TEST_F(QXSDKKovalinIconViewTest, mayGoInItsCompletion)
{
    make(false);
    const std::weak_ptr<QXSDKKovalinIconView> gone = icon;
    icon->updateWithKovalinSticker(sticker("/red"), *friends, [this](bool) {
        icon->removeFromSuperview();
        icon.reset();
    });
    EXPECT_TRUE(gone.expired());
    pictures.drain();
}

} // namespace
