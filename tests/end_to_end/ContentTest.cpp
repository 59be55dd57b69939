// From a login to pictures on the screen's side of the network, with the example content.
#include "end_to_end/ContentHost.h"
#include "support/WaitFor.h"

namespace kovalin::test {
namespace {

using backend::AnswerRule;

class Content : public ContentHost {};

TEST_F(Content, ComesFromALoginToPacksAndPictures)
{
    logIn();
    load();
    EXPECT_EQ(told->loads, 1);
    EXPECT_GE(provider->packs()->size(), 10);
    ASSERT_TRUE(provider->popularKovalins());
    EXPECT_FALSE(provider->popularKovalins()->isEmpty());
    EXPECT_GE(provider->defaultTags()->size(), 9);
    const QImage image = picture(firstSticker(false)->url().value());
    EXPECT_EQ(image.size(), QSize(320, 320));
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
}

TEST_F(Content, DrawsAFriendBesideTheUser)
{
    logIn();
    load();
    friends->setFriendUserIds({QStringLiteral("user-1")}, 0);
    ASSERT_TRUE(waitFor([&] { return toldFriend->friendAvatar.has_value(); }));
    QString url = firstSticker(true)->url().value();
    ASSERT_TRUE(url.contains(QStringLiteral("%s")));
    EXPECT_EQ(picture(url.replace(QStringLiteral("%s"), *toldFriend->friendAvatar)).size(), QSize(320, 320));
}

TEST_F(Content, ShowsTheArchiveAndStoredPicturesAtAStartWithoutABackend)
{
    logIn();
    load();
    const QString url = firstSticker(false)->url().value();
    const QImage before = picture(url);
    const auto packs = provider->packs()->size();
    resign();

    answer("*", AnswerRule{.kind = AnswerRule::Kind::Refuse});
    start();
    ASSERT_TRUE(waitFor([this] { return login->isUserLoggedIn(); })) << "the kept link";
    provider->loadContentFromArchivedPacks();
    ASSERT_TRUE(waitFor([this] { return provider->state() == State::ArchivedContent; }));
    EXPECT_EQ(provider->packs()->size(), packs);
    const auto downloads = requestsFor("/stickers/");
    EXPECT_EQ(picture(url), before);
    EXPECT_EQ(requestsFor("/stickers/"), downloads);
    load(State::ArchivedContent); // fails, and leaves what is there
    ASSERT_TRUE(waitFor([this] { return told->lastStatus >= 0; }));
    EXPECT_EQ(told->lastStatus, 0);
    EXPECT_EQ(provider->packs()->size(), packs);
}

TEST_F(Content, ClearsAllThreeStoresAtAnUnlinkAndLoadsAgainAfterALogin)
{
    logIn();
    load();
    const QString url = firstSticker(false)->url().value();
    static_cast<void>(picture(url));
    resign();
    const auto downloads = requestsFor("/stickers/");

    login->unlink();
    ASSERT_TRUE(waitFor([this] { return provider->state() == State::LoggedOut; }));
    EXPECT_FALSE(provider->packs());
    ASSERT_TRUE(waitFor([this] { return !archive->hasPacksToUnarchiveOnDisk(); }));
    EXPECT_FALSE(picture(url).isNull());
    EXPECT_EQ(requestsFor("/stickers/"), downloads + 1) << "the store was empty";

    start();
    std::atomic<bool> isRead = false;
    tokens->read(QStringLiteral("any"), [&isRead](const auto&) { isRead = true; }); // behind the start's own
    ASSERT_TRUE(waitFor([&isRead] { return isRead.load(); }));
    std::atomic<bool> isTold = false;
    login->fetchUserDataWithQuery(
        QStringLiteral("{me{kovalin{avatar}}}"), std::nullopt, [](const auto&) { ADD_FAILURE() << "a link was kept"; },
        [&isTold](const auto&, bool isLoggedOut) {
            EXPECT_TRUE(isLoggedOut);
            isTold = true;
        });
    ASSERT_TRUE(waitFor([&isTold] { return isTold.load(); }));

    logIn();
    load();
    EXPECT_GE(provider->packs()->size(), 10);
}

} // namespace
} // namespace kovalin::test
