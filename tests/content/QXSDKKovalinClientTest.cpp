#include "content/QXSDKKovalinClient.h"

#include "content/QXSDKKovalinClientRequiredScope.h"
#include "kits/core/QXSDKClientSetup.h"
#include "platform/dispatch/ThreadCheck.h"
#include "support/ManualClock.h"
#include "support/QtPrinting.h"
#include "support/RecordingMetricsQueue.h"
#include "support/ScriptedLoginClient.h"
#include "support/WaitFor.h"
#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

using namespace kovalin::test;

namespace {

QJsonObject json(const QByteArray& text)
{
    return QJsonDocument::fromJson(text).object();
}

/// An answer whose packs field is the text.
QJsonObject packsAnswer(const QString& packs)
{
    return {{QStringLiteral("data"),
             QJsonObject{{QStringLiteral("me"),
                          QJsonObject{{QStringLiteral("kovalin"), QJsonObject{{QStringLiteral("packs"), packs}}}}}}}};
}

/// What a completion was given.
template <class Result>
struct Outcome {
    int calls = 0;
    std::optional<Result> result;
    std::optional<QXSDKError> error;

    auto completion()
    {
        return [this](const std::optional<Result>& given, const std::optional<QXSDKError>& failure) {
            EXPECT_TRUE(kovalin::platform::isMainThread());
            ++calls;
            result = given;
            error = failure;
        };
    }
    [[nodiscard]] bool isThere() const
    {
        return waitFor([this] { return calls > 0; });
    }
};

class QXSDKKovalinClientTest : public testing::Test {
protected:
    QXSDKKovalinClientTest()
    {
        QXSDKClientSetup::setShared({.authenticationBaseUrl = QStringLiteral("https://accounts.example")});
    }
    ~QXSDKKovalinClientTest() override
    {
        drainMetrics();
        QXSDKClientSetup::setShared({});
    }

    /// All that was counted so far, in the order of the flush.
    std::vector<RecordingMetricsQueue::Count> flushedCounts()
    {
        drainMetrics();
        auto counts = metrics->counts();
        std::erase_if(counts, [](const auto& count) { return count.first.endsWith(QStringLiteral(":drained")); });
        return counts;
    }
    [[nodiscard]] bool isCounted(const QString& name)
    {
        for (const auto& [counted, count] : flushedCounts()) {
            if (counted.endsWith(QStringLiteral(":kovalin:") + name)) {
                return count == 1;
            }
        }
        return false;
    }
    [[nodiscard]] int latencies(const QString& name) const
    {
        int found = 0;
        for (const auto& [measured, start] : metrics->latencies()) {
            found += measured.endsWith(QStringLiteral(":kovalin:") + name) ? 1 : 0;
        }
        return found;
    }
    /// Flushes, and waits until the flush has come through.
    void drainMetrics() const
    {
        auto& logger = QXSDKKovalinOperationalMetricsLogger::shared();
        const auto marks = [this] {
            return std::ranges::count_if(
                metrics->counts(), [](const auto& count) { return count.first.endsWith(QStringLiteral(":drained")); });
        };
        const auto before = marks();
        logger.pushToQueue();
        logger.addCount(1, QStringLiteral("drained"));
        logger.pushToQueue();
        ASSERT_TRUE(waitFor([&] { return marks() > before; }));
    }

    InstalledLoginClient login;
    InstalledMetricsQueue metrics;
};

TEST_F(QXSDKKovalinClientTest, AsksForTheAvatarWordForWord)
{
    Outcome<QString> outcome;
    QXSDKKovalinClient::fetchAvatarURLWithCompletion(outcome.completion());
    ASSERT_EQ(login->requestCount(), 1U);
    EXPECT_EQ(login->request(0).query, QStringLiteral("{me{kovalin{avatar}}}"));
    EXPECT_FALSE(login->request(0).variables);
    EXPECT_EQ(login->lastScope(), QStringLiteral("https://accounts.example/oauth2/api/user.kovalin.avatar"));
    EXPECT_EQ(kQXSDKKovalinClientRequiredScope(), login->lastScope());

    login->request(0).success(json(R"({"data":{"me":{"kovalin":{"avatar":"https://a.example/1.png"}}}})"));
    EXPECT_EQ(outcome.calls, 0) << "it comes in a later turn";
    ASSERT_TRUE(outcome.isThere());
    EXPECT_EQ(outcome.result, QStringLiteral("https://a.example/1.png"));
    EXPECT_FALSE(outcome.error);
    EXPECT_TRUE(isCounted(QStringLiteral("request:avatar:success")));
    EXPECT_EQ(latencies(QStringLiteral("request:avatar")), 1);
}

TEST_F(QXSDKKovalinClientTest, GivesNoAvatarWhereTheAnswerTellsNone)
{
    Outcome<QString> outcome;
    QXSDKKovalinClient::fetchAvatarURLWithCompletion(outcome.completion());
    login->request(0).success(json(R"({"data":{"me":{"kovalin":{"avatar":null}}}})"));
    ASSERT_TRUE(outcome.isThere());
    EXPECT_FALSE(outcome.result);
    EXPECT_FALSE(outcome.error);
}

TEST_F(QXSDKKovalinClientTest, AsksForThePacksWordForWord)
{
    const ManualClock clock(std::chrono::seconds(1'600'000'000));
    Outcome<KovalinPackList> outcome;
    QXSDKKovalinClient::fetchStickersWithCompletion(outcome.completion());
    const auto request = login->request(0);
    EXPECT_EQ(request.query,
              QStringLiteral("query ($page: String!, $time: String, $locale: String){me{kovalin{packs(page: $page, "
                             "time: $time, locale: $locale)}}}"));
    ASSERT_TRUE(request.variables);
    EXPECT_EQ(request.variables->keys(),
              (QStringList{QStringLiteral("locale"), QStringLiteral("page"), QStringLiteral("time")}));
    EXPECT_EQ(request.variables->value(QStringLiteral("page")), QStringLiteral("kovalin-app"));
    EXPECT_FALSE(request.variables->value(QStringLiteral("locale")).toString().isEmpty());
    const QString time = request.variables->value(QStringLiteral("time")).toString();
    EXPECT_THAT(
        time.toStdString(),
        testing::MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}(Z|[+-][0-9]{2}:[0-9]{2})"));
    EXPECT_EQ(QDateTime::fromString(time, Qt::ISODate).toSecsSinceEpoch(), 1'600'000'000);
    login->request(0).failure({}, false);
    ASSERT_TRUE(outcome.isThere());
}

TEST_F(QXSDKKovalinClientTest, ReadsThePacksFromTheTextInTheAnswer)
{
    Outcome<KovalinPackList> outcome;
    QXSDKKovalinClient::fetchStickersWithCompletion(outcome.completion());
    login->request(0).success(
        packsAnswer(QStringLiteral(R"({"packs":[{"id":"popular","stickers":[{"comic_id":"1"}]},{"id":"b"}]})")));
    ASSERT_TRUE(outcome.isThere());
    ASSERT_TRUE(outcome.result);
    ASSERT_EQ(outcome.result->size(), 2);
    EXPECT_EQ(outcome.result->at(0)->packId(), QStringLiteral("popular"));
    EXPECT_EQ(outcome.result->at(0)->stickers().size(), 1);
    EXPECT_FALSE(outcome.error);
    EXPECT_TRUE(isCounted(QStringLiteral("request:packs:success")));
}

TEST_F(QXSDKKovalinClientTest, GivesNeitherPacksNorAnErrorWithoutThePacksText)
{
    for (const char* const kovalin : {"{}", R"({"packs":null})", R"({"packs":[]})", R"({"packs":7})"}) {
        const auto index = login->requestCount();
        Outcome<KovalinPackList> outcome;
        QXSDKKovalinClient::fetchStickersWithCompletion(outcome.completion());
        login->request(index).success(json(QByteArray(R"({"data":{"me":{"kovalin":)") + kovalin + "}}}"));
        ASSERT_TRUE(outcome.isThere());
        EXPECT_FALSE(outcome.result) << kovalin;
        EXPECT_FALSE(outcome.error) << kovalin;
    }
}

TEST_F(QXSDKKovalinClientTest, CountsASuccessForPacksThatCantBeRead)
{
    const QString halfSurrogate = QStringLiteral(R"({"packs":[]})") + QChar(0xD800);
    for (const QString& text :
         {QString(QStringLiteral("")), QStringLiteral("no json"), QStringLiteral("[]"), QStringLiteral("{}"),
          QStringLiteral(R"({"packs":null})"), QStringLiteral(R"({"packs":{}})"), halfSurrogate}) {
        const auto index = login->requestCount();
        Outcome<KovalinPackList> outcome;
        QXSDKKovalinClient::fetchStickersWithCompletion(outcome.completion());
        login->request(index).success(packsAnswer(text));
        ASSERT_TRUE(outcome.isThere());
        EXPECT_FALSE(outcome.result);
        EXPECT_EQ(outcome.error, errorWithStatusCode(500, QStringLiteral("Invalid Packs Response"),
                                                     QStringLiteral("Could not parse json")))
            << text.toStdString();
    }
    for (const auto& [name, count] : flushedCounts()) {
        EXPECT_TRUE(name.endsWith(QStringLiteral(":kovalin:request:packs:success"))) << name.toStdString();
        EXPECT_EQ(count, 7);
    }
}

TEST_F(QXSDKKovalinClientTest, FailsWithoutAnAccountAndSendsNothing)
{
    login->isLinked = false;
    Outcome<KovalinPackList> outcome;
    QXSDKKovalinClient::fetchStickersWithCompletion(outcome.completion());
    EXPECT_EQ(outcome.calls, 0) << "it comes in a later turn";
    ASSERT_TRUE(outcome.isThere());
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->reason, QStringLiteral("No user account linked"));
    EXPECT_EQ(login->requestCount(), 0U);
    EXPECT_THAT(flushedCounts(), testing::IsEmpty());
    EXPECT_THAT(metrics->latencies(), testing::IsEmpty());
}

TEST_F(QXSDKKovalinClientTest, FailsWithoutTheScopeAndSendsNothing)
{
    login->hasScope = false;
    Outcome<QString> outcome;
    QXSDKKovalinClient::fetchAvatarURLWithCompletion(outcome.completion());
    ASSERT_TRUE(outcome.isThere());
    EXPECT_EQ(outcome.error, errorWithStatusCode(401, QStringLiteral("User does not have access to Kovalin scope"),
                                                 QStringLiteral("ValidationError")));
    EXPECT_EQ(login->requestCount(), 0U);
    EXPECT_THAT(flushedCounts(), testing::IsEmpty());
    EXPECT_THAT(metrics->latencies(), testing::IsEmpty());
}

TEST_F(QXSDKKovalinClientTest, PassesOnTheLoginKitsFailure)
{
    Outcome<KovalinPackList> outcome;
    QXSDKKovalinClient::fetchStickersWithCompletion(outcome.completion());
    const auto error = errorWithStatusCode(503, QStringLiteral("down"), QStringLiteral("for now"));
    std::thread([&] { login->request(0).failure(error, false); }).join();
    ASSERT_TRUE(outcome.isThere());
    EXPECT_EQ(outcome.error, error);
    EXPECT_FALSE(outcome.result);
    EXPECT_TRUE(isCounted(QStringLiteral("request:packs:failure")));
    EXPECT_EQ(latencies(QStringLiteral("request:packs")), 1);
}

TEST_F(QXSDKKovalinClientTest, FailsWithErrorsBesideGoodData)
{
    Outcome<KovalinPackList> outcome;
    QXSDKKovalinClient::fetchStickersWithCompletion(outcome.completion());
    QJsonObject answer = packsAnswer(QStringLiteral(R"({"packs":[]})"));
    answer.insert(QStringLiteral("errors"), QJsonArray{json(R"({"errorType":"ValidationError"})")});
    login->request(0).success(answer);
    ASSERT_TRUE(outcome.isThere());
    EXPECT_FALSE(outcome.result);
    EXPECT_EQ(outcome.error, errorWithStatusCode(401, QStringLiteral("ValidationError"), QString()));
    EXPECT_TRUE(isCounted(QStringLiteral("request:packs:failure")));
}

TEST_F(QXSDKKovalinClientTest, FailsWithoutAnObjectWhereverThePathBreaks)
{
    for (const char* const answer :
         {"{}", R"({"data":null})", R"({"data":{"me":null}})", R"({"data":{"me":[]}})", R"({"data":{"me":{}}})",
          R"({"data":{"me":{"kovalin":null}}})", R"({"data":{"me":{"kovalin":"text"}},"errors":[]})"}) {
        const auto index = login->requestCount();
        Outcome<QString> outcome;
        QXSDKKovalinClient::fetchAvatarURLWithCompletion(outcome.completion());
        login->request(index).success(json(answer));
        ASSERT_TRUE(outcome.isThere());
        EXPECT_EQ(outcome.error, errorWithStatusCode(500, QString(), QString())) << answer;
    }
}

TEST_F(QXSDKKovalinClientTest, MapsUsersToTheirAvatarsAndMarksThoseWithoutOne)
{
    login->isLinked = false; // needs none
    Outcome<QXSDKKovalinAvatarIds> outcome;
    QXSDKKovalinClient::fetchAvatarIdsForUserIds({QStringLiteral("u1"), QStringLiteral("u2"), QStringLiteral("u2")},
                                                 outcome.completion());
    const auto request = login->request(0);
    EXPECT_EQ(request.query, QStringLiteral("query ($externalIds: [String!]!){users(externalIds: $externalIds) "
                                            "{externalId, kovalin{id}}}"));
    EXPECT_EQ(request.variables, json(R"({"externalIds":["u1","u2","u2"]})"));
    request.success(json(R"({"data":{"users":[{"externalId":"u1","kovalin":{"id":"a1"}},
        {"externalId":"u2","kovalin":{}},{"externalId":"u3"},{"externalId":"u4","kovalin":{"id":null}}]},
        "errors":[{"errorType":"ValidationError"}]})"));
    ASSERT_TRUE(outcome.isThere());
    EXPECT_FALSE(outcome.error) << "errors beside a user don't count";
    ASSERT_TRUE(outcome.result);
    EXPECT_EQ(*outcome.result, (QXSDKKovalinAvatarIds{{QStringLiteral("u1"), QStringLiteral("a1")},
                                                      {QStringLiteral("u2"), std::nullopt},
                                                      {QStringLiteral("u4"), std::nullopt}}));
    EXPECT_TRUE(isCounted(QStringLiteral("request:externalAvatars:success")));
}

TEST_F(QXSDKKovalinClientTest, FailsWithoutAnyUser)
{
    for (const auto& [answer, error] :
         {std::pair{R"({"data":{"users":[]}})", errorWithStatusCode(500, QString(), QString())},
          std::pair{R"({"data":{"users":null}})", errorWithStatusCode(500, QString(), QString())},
          std::pair{R"({"errors":[{"errorType":"ValidationError"}]})",
                    errorWithStatusCode(401, QStringLiteral("ValidationError"), QString())}}) {
        const auto index = login->requestCount();
        Outcome<QXSDKKovalinAvatarIds> outcome;
        QXSDKKovalinClient::fetchAvatarIdsForUserIds({QStringLiteral("u1")}, outcome.completion());
        login->request(index).success(json(answer));
        ASSERT_TRUE(outcome.isThere());
        EXPECT_EQ(outcome.error, error) << answer;
        EXPECT_FALSE(outcome.result);
    }
}

TEST_F(QXSDKKovalinClientTest, CountsAFailedRequestForUsersWithoutAnAccount)
{
    login->isLinked = false;
    login->hasScope = false;
    Outcome<QXSDKKovalinAvatarIds> outcome;
    QXSDKKovalinClient::fetchAvatarIdsForUserIds({QStringLiteral("u1")}, outcome.completion());
    login->request(0).failure(logoutErrorWithReason(QStringLiteral("gone")), true);
    ASSERT_TRUE(outcome.isThere());
    EXPECT_EQ(outcome.error, logoutErrorWithReason(QStringLiteral("gone")));
    EXPECT_TRUE(isCounted(QStringLiteral("request:externalAvatars:failure")));
    EXPECT_EQ(latencies(QStringLiteral("request:externalAvatars")), 1);
}

TEST_F(QXSDKKovalinClientTest, CanBeAskedAndAnsweredOnAnyThread)
{
    Outcome<QString> outcome;
    std::thread([&] {
        QXSDKKovalinClient::fetchAvatarURLWithCompletion(outcome.completion());
        login->request(0).success(json(R"({"data":{"me":{"kovalin":{"avatar":"a"}}}})"));
    }).join();
    ASSERT_TRUE(outcome.isThere());
    EXPECT_EQ(outcome.result, QStringLiteral("a"));
    EXPECT_EQ(outcome.calls, 1);
}

} // namespace
