// The content with a backend that fails path by path, in each way in which a server can.
#include "content/QXSDKKovalinClient.h"
#include "content/QXSDKKovalinClientRequiredScope.h"
#include "end_to_end/ContentHost.h"
#include "support/WaitFor.h"

#include <gmock/gmock.h>

#include <chrono>
#include <vector>

namespace kovalin::test {
namespace {

using backend::AnswerRule;

/// A way in which a path fails, and the status that whoever asked is told.
struct Failing {
    const char* name;
    AnswerRule rule;
    int status;
};

const AnswerRule slow = AnswerRule::delayed(std::chrono::milliseconds(30));

AnswerRule huge(qsizetype mebibytes)
{
    return AnswerRule::withBody(QByteArray(mebibytes * 1024 * 1024, ' ') + "{}");
}

/// What fails alike wherever it happens, but for the size that is too much.
std::vector<Failing> failings(qsizetype tooManyMebibytes)
{
    return {{"refused", AnswerRule{.kind = AnswerRule::Kind::Refuse}, 0},
            {"cut", AnswerRule{.kind = AnswerRule::Kind::Cut}, 0},
            {"401", AnswerRule::withStatus(401), 401},
            {"403", AnswerRule::withStatus(403), 403},
            {"500", AnswerRule::withStatus(500), 500},
            {"garbage", AnswerRule{.kind = AnswerRule::Kind::Garbage}, 500},
            {"huge", huge(tooManyMebibytes), 0}};
}

/// The queries fail in ways of their own too.
std::vector<Failing> failingQueries(std::vector<Failing> own)
{
    constexpr qsizetype tooManyMebibytes = 33;
    auto all = failings(tooManyMebibytes);
    all.insert(all.end(), own.begin(), own.end());
    return all;
}

std::vector<Failing> failingPacks()
{
    return failingQueries(
        {{"no data", AnswerRule::withBody(R"({"data":null})"), 500},
         {"no user", AnswerRule::withBody(R"({"data":{"me":null}})"), 500},
         {"no content", AnswerRule::withBody(R"({"data":{"me":{"kovalin":null}}})"), 500},
         {"a list instead of an object", AnswerRule::withBody(R"({"data":{"me":{"kovalin":[]}}})"), 500},
         {"packs that are no JSON", AnswerRule::withBody(R"({"data":{"me":{"kovalin":{"packs":"no json"}}}})"), 500},
         {"null for the packs in the text",
          AnswerRule::withBody(R"({"data":{"me":{"kovalin":{"packs":"{\"packs\":null}"}}}})"), 500},
         {"a refusal beside data",
          AnswerRule::withBody(
              R"({"data":{"me":{"kovalin":{"packs":"{\"packs\":[]}"}}},"errors":[{"errorType":"ValidationError"}]})"),
          401},
         {"an error beside data",
          AnswerRule::withBody(R"({"data":{"me":{"kovalin":{"packs":"{\"packs\":[]}"}}},"errors":[{}]})"), 500}});
}

class FailingPaths : public ContentHost {
protected:
    /// The status of the error that asking for a user's avatar id ends with.
    int failToFetchAvatarIds()
    {
        std::optional<int> status;
        QXSDKKovalinClient::fetchAvatarIdsForUserIds({QStringLiteral("user-1")},
                                                     [&status](const auto&, const std::optional<QXSDKError>& error) {
                                                         status = error ? error->statusCode : -1;
                                                     });
        EXPECT_TRUE(waitFor([&status] { return status.has_value(); }));
        return status.value_or(-1);
    }
    [[nodiscard]] QString stickerUrl() const { return firstSticker(false)->url().value(); }
};

TEST_F(FailingPaths, OfTheLoginLinkNothingAndTellTheStatus)
{
    constexpr int tooManyMebibytes = 2;
    auto all = failings(tooManyMebibytes);
    all.push_back({"no token", AnswerRule::withBody(R"({"access_token":null,"token_type":"Bearer"})"), 500});
    for (const Failing& failing : all) {
        SCOPED_TRACE(failing.name);
        answer("/accounts/oauth2/token", failing.rule);
        EXPECT_EQ(tryToLogIn(), failing.status);
        EXPECT_FALSE(login->isUserLoggedIn());
        EXPECT_FALSE(login->hasAccessToScope(kQXSDKKovalinClientRequiredScope()));
    }
    answer("/accounts/oauth2/token", slow);
    logIn();
}

TEST_F(FailingPaths, OfThePacksTellTheStatusAndLeaveTheStateUntilTheyAreThere)
{
    logIn();
    for (const Failing& failing : failingPacks()) {
        SCOPED_TRACE(failing.name);
        answer("/api/graphql#packs", failing.rule);
        EXPECT_EQ(failToLoad(), failing.status);
        EXPECT_EQ(provider->state(), State::Uninitialized);
        EXPECT_TRUE(login->isUserLoggedIn());
    }
    answer("/api/graphql#packs", slow);
    load();
    EXPECT_GE(provider->packs()->size(), 10);
}

TEST_F(FailingPaths, OfThePacksLeaveWhatTheArchiveHadAtEachStart)
{
    logIn();
    load();
    const auto packs = provider->packs()->size();
    resign();
    for (const Failing& failing : failingPacks()) {
        SCOPED_TRACE(failing.name);
        answer("/api/graphql#packs", failing.rule);
        start();
        ASSERT_TRUE(waitFor([this] { return login->isUserLoggedIn(); }));
        provider->loadContentFromArchivedPacks();
        ASSERT_TRUE(waitFor([this] { return provider->state() == State::ArchivedContent; }));
        EXPECT_EQ(failToLoad(), failing.status);
        EXPECT_EQ(provider->state(), State::ArchivedContent);
        EXPECT_EQ(provider->packs()->size(), packs);
        resign();
    }
}

TEST_F(FailingPaths, OfPicturesGiveNoneAndTheNextFetchIsAnew)
{
    logIn();
    load();
    constexpr int tooManyMebibytes = 17;
    for (const Failing& failing : failings(tooManyMebibytes)) {
        SCOPED_TRACE(failing.name);
        answer("/stickers/*", failing.rule);
        EXPECT_TRUE(picture(stickerUrl()).isNull());
    }
    answer("/stickers/*", AnswerRule::withStatus(404));
    EXPECT_TRUE(picture(stickerUrl()).isNull());
    answer("/stickers/*", slow);
    EXPECT_FALSE(picture(stickerUrl()).isNull());
}

TEST_F(FailingPaths, OfFriendsLeaveTheUserAloneUntilTheNextSession)
{
    logIn();
    const std::vector<Failing> own{
        {"no data", AnswerRule::withBody(R"({"data":null})"), 500},
        {"no list", AnswerRule::withBody(R"({"data":{"users":{}}})"), 500},
        {"nobody", AnswerRule::withBody(R"({"data":{"users":[null,{"externalId":"user-1","kovalin":null}]}})"), 500},
        {"a refusal", AnswerRule::withBody(R"({"data":{"users":[]},"errors":[{"errorType":"ValidationError"}]})"),
         401}};
    for (const Failing& failing : failingQueries(own)) {
        SCOPED_TRACE(failing.name);
        answer("/api/graphql#users", failing.rule);
        sessions.didBecomeActive();
        friends->setFriendUserIds({QStringLiteral("user-2")}, 0);
        EXPECT_EQ(failToFetchAvatarIds(), failing.status);
        EXPECT_FALSE(toldFriend->friendAvatar);
        sessions.willResignActive();
    }
    answer("/api/graphql#users", slow);
    friends->setFriendUserIds({QStringLiteral("user-2")}, 0);
    EXPECT_TRUE(waitFor([this] { return toldFriend->friendAvatar.has_value(); }));
}

TEST_F(FailingPaths, OfFriendsDontMatterWhereErrorsStandBesideUsers)
{
    logIn();
    answer("/api/graphql#users",
           AnswerRule::withBody(R"({"data":{"users":[{"externalId":"user-3","kovalin":{"id":"avatar-3"}}]},)"
                                R"("errors":[{"errorType":"ValidationError"}]})"));
    friends->setFriendUserIds({QStringLiteral("user-3")}, 0);
    ASSERT_TRUE(waitFor([this] { return toldFriend->friendAvatar.has_value(); }));
    EXPECT_EQ(toldFriend->friendAvatar, QStringLiteral("avatar-3"));
}

TEST_F(FailingPaths, OfTheUnlinkClearAllThreeStoresAllTheSame)
{
    constexpr int tooManyMebibytes = 2;
    auto all = failings(tooManyMebibytes);
    all.push_back({"slow", slow, 0});
    for (const Failing& failing : all) {
        SCOPED_TRACE(failing.name);
        logIn();
        load();
        const QString url = stickerUrl();
        EXPECT_FALSE(picture(url).isNull());
        resign();
        const auto downloads = requestsFor("/stickers/");
        answer("/accounts/oauth2/revoke", failing.rule);
        login->unlink();
        ASSERT_TRUE(waitFor([this] { return provider->state() == State::LoggedOut; }));
        EXPECT_FALSE(provider->packs());
        ASSERT_TRUE(waitFor([this] { return !archive->hasPacksToUnarchiveOnDisk(); }));
        EXPECT_FALSE(picture(url).isNull());
        EXPECT_EQ(requestsFor("/stickers/"), downloads + 1) << "the store was empty";
    }
}

TEST_F(FailingPaths, OfTheTokenFailTheQueryAndLeaveTheLink)
{
    logIn();
    constexpr qsizetype tooManyMebibytes = 2;
    for (const Failing& failing : failings(tooManyMebibytes)) {
        if (failing.rule.kind == AnswerRule::Kind::Cut) {
            continue; // the server has replaced the tokens then
        }
        SCOPED_TRACE(failing.name);
        server.expireAccessTokens();
        answer("/accounts/oauth2/token", failing.rule);
        EXPECT_EQ(failToLoad(), failing.status);
        EXPECT_TRUE(login->isUserLoggedIn());
    }
    answer("/accounts/oauth2/token", slow);
    load();
    EXPECT_GE(provider->packs()->size(), 10);
}

TEST_F(FailingPaths, OfATokenThatGotLostEndTheLinkWhenTheServerDoesntKnowTheOldOneAnyMore)
{
    logIn();
    load();
    resign();
    server.expireAccessTokens();
    answer("/accounts/oauth2/token", AnswerRule{.kind = AnswerRule::Kind::Cut});
    EXPECT_EQ(failToLoad(), 0);
    EXPECT_TRUE(login->isUserLoggedIn());
    EXPECT_EQ(provider->state(), State::ArchivedContent);

    answer("/accounts/oauth2/token", {});
    provider->loadContentForLoggedInState();
    ASSERT_TRUE(waitFor([this] { return provider->state() == State::LoggedOut; }));
    EXPECT_FALSE(login->isUserLoggedIn());
    EXPECT_FALSE(provider->packs());
    ASSERT_TRUE(waitFor([this] { return !archive->hasPacksToUnarchiveOnDisk(); }));

    logIn();
    load();
    EXPECT_GE(provider->packs()->size(), 10);
}

} // namespace
} // namespace kovalin::test
