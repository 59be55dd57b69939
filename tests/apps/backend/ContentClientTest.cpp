// The library's own login and content clients, against the example content.
#include "content/QXSDKKovalinClient.h"
#include "content/QXSDKKovalinClientRequiredScope.h"
#include "kits/core/QXSDKClientSetup.h"
#include "kits/login/default/QXSDKOAuthLoginClient.h"
#include "kovalin-backend/Backend.h"
#include "platform/net/Fetching.h"
#include "platform/net/UrlSession.h"
#include "platform/store/DecodeImage.h"
#include "support/ManualClock.h"
#include "support/QtPrinting.h"
#include "support/WaitFor.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <variant>

namespace kovalin::test {
namespace {

/// What a completion was given.
template <class Result>
struct Outcome {
    bool isThere = false;
    std::optional<Result> result;
    std::optional<QXSDKError> error;

    auto completion()
    {
        return [this](const std::optional<Result>& given, const std::optional<QXSDKError>& failure) {
            isThere = true;
            result = given;
            error = failure;
        };
    }
};

class ContentClient : public testing::Test {
protected:
    ContentClient()
    {
        QXSDKClientSetup::setShared({.clientId = QStringLiteral("tests"),
                                     .contentBaseUrl = server.baseUrl().toString(),
                                     .authenticationBaseUrl = server.url(QStringLiteral("/accounts")).toString(),
                                     .apiBaseUrl = server.url(QStringLiteral("/api")).toString()});
        QXSDKOAuthLoginOptions options;
        options.openUrl = [this](const QUrl& url) {
            session.dataTask({.url = QUrl(url.toString(QUrl::FullyEncoded) + choice)}, page.handler())->resume();
            return true;
        };
        options.tokenStore = QXSDKTokenStore::memory();
        login = std::make_shared<QXSDKOAuthLoginClient>(options);
        QXSDKLoginClient::setShared(login);
    }

    ~ContentClient() override
    {
        QXSDKLoginClient::setShared(nullptr);
        login.reset();
        drainMainQueue();
        QXSDKClientSetup::setShared({});
    }

    /// The login's error; absent where the account is linked.
    std::optional<QXSDKError> logIn(const QString& queryOfThePage)
    {
        choice = queryOfThePage;
        std::optional<std::optional<QXSDKError>> end;
        login->loginFromViewController(nullptr, [&end](const std::optional<QXSDKError>& error) { end = error; });
        EXPECT_TRUE(waitFor([&end] { return end.has_value(); }));
        return end.value_or(std::nullopt);
    }

    template <class Result, class Fetch>
    [[nodiscard]] static Outcome<Result> outcomeOf(Fetch fetch)
    {
        Outcome<Result> outcome;
        fetch(outcome);
        EXPECT_TRUE(waitFor([&outcome] { return outcome.isThere; }));
        return outcome;
    }

    [[nodiscard]] static Outcome<QString> avatar()
    {
        return outcomeOf<QString>(
            [](auto& outcome) { QXSDKKovalinClient::fetchAvatarURLWithCompletion(outcome.completion()); });
    }
    [[nodiscard]] static Outcome<KovalinPackList> packs()
    {
        return outcomeOf<KovalinPackList>(
            [](auto& outcome) { QXSDKKovalinClient::fetchStickersWithCompletion(outcome.completion()); });
    }
    [[nodiscard]] static Outcome<QXSDKKovalinAvatarIds> avatarIds(const QStringList& users)
    {
        return outcomeOf<QXSDKKovalinAvatarIds>(
            [&users](auto& outcome) { QXSDKKovalinClient::fetchAvatarIdsForUserIds(users, outcome.completion()); });
    }

    void rule(const QByteArray& text)
    {
        server.setAnswer(std::get<backend::PathRule>(backend::PathRule::fromText(text)));
    }

    [[nodiscard]] std::ptrdiff_t requestsAt(const QByteArray& path) const
    {
        const auto requests = server.requests();
        return std::ranges::count_if(requests, [&path](const auto& request) { return request.path == path; });
    }

    [[nodiscard]] QSize sizeAt(const QString& url)
    {
        return platform::decodeImage(fetch(session, {.url = QUrl(url)}).data).size();
    }

    const QString kApprove = QStringLiteral("&auto=approve");
    backend::Backend server{{.contentFolder = QStringLiteral(KOVALIN_EXAMPLE_CONTENT)}};
    platform::UrlSession session{withoutProxy()};
    TaskEndBox page;
    QString choice;
    std::shared_ptr<QXSDKOAuthLoginClient> login;
};

TEST_F(ContentClient, LinksAnAccountAndFindsItsAvatar)
{
    ASSERT_EQ(logIn(kApprove), std::nullopt);
    EXPECT_TRUE(login->isUserLoggedIn());
    EXPECT_TRUE(login->hasAccessToScope(kQXSDKKovalinClientRequiredScope()));
    const auto found = avatar();
    ASSERT_TRUE(found.result);
    EXPECT_EQ(*found.result, server.url(QStringLiteral("/avatars/alex-1.png")).toString());
    EXPECT_EQ(sizeAt(*found.result + QStringLiteral("?size=80")), QSize(80, 80));
}

TEST_F(ContentClient, GetsAllPacksWithStickersThatCanBeLoaded)
{
    QFile file(QStringLiteral(KOVALIN_EXAMPLE_CONTENT "/packs.json"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonArray expected = QJsonDocument::fromJson(file.readAll()).object().value(u"packs").toArray();
    ASSERT_EQ(logIn(kApprove + QStringLiteral("&account=robin")), std::nullopt);
    const auto found = packs();
    ASSERT_TRUE(found.result);
    ASSERT_EQ(found.result->size(), expected.size());
    QHash<bool, QString> urlOfKind;
    for (qsizetype i = 0; i < expected.size(); ++i) {
        const auto& pack = *found.result->at(i);
        EXPECT_EQ(pack.packId(), expected[i][u"id"].toString());
        ASSERT_EQ(pack.stickers().size(), expected[i][u"stickers"].toArray().size());
        for (const auto& sticker : pack.stickers()) {
            const QString url = sticker->imageURLWithFriendAvatarId(QStringLiteral("bea-2")).value_or(QString());
            EXPECT_TRUE(url.startsWith(server.baseUrl().toString() + QStringLiteral("/stickers/")))
                << url.toStdString();
            EXPECT_TRUE(url.contains(QStringLiteral("/robin-7"))) << url.toStdString();
            EXPECT_FALSE(url.contains(u'{') || url.contains(u'%')) << url.toStdString();
            urlOfKind.insert(sticker->isFriendvalin(), url);
        }
    }
    EXPECT_EQ(sizeAt(urlOfKind.value(false)), QSize(320, 320));
    EXPECT_EQ(sizeAt(urlOfKind.value(true) + QStringLiteral("?size=120")), QSize(120, 120));
}

TEST_F(ContentClient, GetsTheAvatarIdsOfUsers)
{
    ASSERT_EQ(logIn(kApprove), std::nullopt);
    const auto found = avatarIds(
        {QStringLiteral("user-1"), QStringLiteral("user-4"), QStringLiteral("nobody"), QStringLiteral("user-2")});
    ASSERT_TRUE(found.result);
    EXPECT_EQ(*found.result, (QXSDKKovalinAvatarIds{{QStringLiteral("user-1"), QStringLiteral("bea-2")},
                                                    {QStringLiteral("user-2"), QStringLiteral("chris-3")},
                                                    {QStringLiteral("user-4"), std::nullopt}}));
    const auto none = avatarIds({QStringLiteral("nobody")});
    ASSERT_TRUE(none.error);
    EXPECT_EQ(none.error->statusCode, 500);
}

TEST_F(ContentClient, GetsNothingAndNoErrorForAnAccountWithoutAnAvatar)
{
    ASSERT_EQ(logIn(kApprove + QStringLiteral("&account=newcomer")), std::nullopt);
    const auto noAvatar = avatar();
    EXPECT_EQ(noAvatar.result, std::nullopt);
    EXPECT_EQ(noAvatar.error, std::nullopt);
    const auto noPacks = packs();
    EXPECT_EQ(noPacks.result, std::nullopt);
    EXPECT_EQ(noPacks.error, std::nullopt);
}

TEST_F(ContentClient, KnowsThatTheScopeWasWithheld)
{
    ASSERT_EQ(logIn(QStringLiteral("&auto=approve-without-scope")), std::nullopt);
    EXPECT_TRUE(login->isUserLoggedIn());
    EXPECT_FALSE(login->hasAccessToScope(kQXSDKKovalinClientRequiredScope()));
    const auto refused = packs();
    ASSERT_TRUE(refused.error);
    EXPECT_EQ(refused.error->statusCode, 401);
    EXPECT_TRUE(avatarIds({QStringLiteral("user-1")}).result);
}

TEST_F(ContentClient, IsRefusedWhereTheUserSaysNo)
{
    const auto error = logIn(QStringLiteral("&auto=deny"));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->statusCode, 403);
    EXPECT_FALSE(login->isUserLoggedIn());
}

TEST_F(ContentClient, NeedsNoBrowserByARule)
{
    rule("/accounts/oauth2/authorize with auto=approve&account=robin");
    ASSERT_EQ(logIn({}), std::nullopt);
    EXPECT_EQ(avatar().result, server.url(QStringLiteral("/avatars/robin-7.png")).toString());
}

TEST_F(ContentClient, RefreshesATokenThatHasExpiredOnce)
{
    ASSERT_EQ(logIn(kApprove), std::nullopt);
    server.expireAccessTokens();
    Outcome<QString> first;
    Outcome<KovalinPackList> second;
    Outcome<QXSDKKovalinAvatarIds> third;
    QXSDKKovalinClient::fetchAvatarURLWithCompletion(first.completion());
    QXSDKKovalinClient::fetchStickersWithCompletion(second.completion());
    QXSDKKovalinClient::fetchAvatarIdsForUserIds({QStringLiteral("user-1")}, third.completion());
    ASSERT_TRUE(waitFor([&] { return first.isThere && second.isThere && third.isThere; }));
    EXPECT_TRUE(first.result && second.result && third.result);
    EXPECT_EQ(requestsAt("/accounts/oauth2/token"), 2); // the login's, and one for all
}

TEST_F(ContentClient, RefreshesATokenBeforeItsTimeIsOver)
{
    ManualClock clock;
    ASSERT_EQ(logIn(kApprove), std::nullopt);
    EXPECT_TRUE(avatar().result);
    EXPECT_EQ(requestsAt("/accounts/oauth2/token"), 1);
    clock.advance(std::chrono::hours(2));
    EXPECT_TRUE(avatar().result);
    EXPECT_TRUE(avatar().result);
    EXPECT_EQ(requestsAt("/accounts/oauth2/token"), 2);
    EXPECT_EQ(requestsAt("/api/graphql"), 3);
}

TEST_F(ContentClient, RevokesTheTokenWhenTheAccountIsUnlinked)
{
    ASSERT_EQ(logIn(kApprove), std::nullopt);
    login->unlink();
    ASSERT_TRUE(waitFor([this] { return requestsAt("/accounts/oauth2/revoke") == 1; }));
    EXPECT_FALSE(login->isUserLoggedIn());
}

TEST_F(ContentClient, MeetsWhatTheBackendIsToldToAnswer)
{
    ASSERT_EQ(logIn(kApprove), std::nullopt);
    const auto statusWith = [this](const QByteArray& ruleText) {
        rule("/api/graphql#packs " + ruleText);
        const auto outcome = packs();
        return outcome.error ? outcome.error->statusCode : 0;
    };
    EXPECT_EQ(statusWith(R"(body {"data":{"me":null}})"), 500);
    EXPECT_EQ(statusWith(R"(body {"data":{"me":{"kovalin":{"packs":"{}"}}}})"), 500);
    EXPECT_EQ(statusWith(R"(body {"data":{"me":{"kovalin":{"packs":null}}}})"), 0);
    EXPECT_EQ(statusWith(R"(body {"data":{"me":{"kovalin":{}}},"errors":[{"errorType":"ValidationError"}]})"), 401);
    EXPECT_EQ(statusWith("503"), 503);
    EXPECT_EQ(statusWith("garbage"), 500);
    EXPECT_TRUE(avatar().result); // by a rule for another query
    EXPECT_EQ(statusWith("ok"), 0);
}

} // namespace
} // namespace kovalin::test
