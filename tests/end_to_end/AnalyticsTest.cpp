// Analytics events from the loggers to the development server, which reads them by the format's own description.
#include "events/EventBatch.h"
#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/default/QXSDKHttpAnalyticsEventsQueue.h"
#include "kovalin-backend/Backend.h"
#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "support/ChildProcess.h"
#include "support/ManualDelayClock.h"
#include "support/WaitFor.h"
#include "telemetry/QXSDKKovalinAnalyticsEventLogger.h"
#include "telemetry/base/QXSDKKovalinStickerPickerSessionManager.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QSet>
#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <vector>

namespace kovalin::test {
namespace {

using backend::AnswerRule;
using backend::TakenEvents;

/// As many events leave at once.
constexpr int kBatch = 100;
/// As many are kept at the most.
constexpr int kMostKept = 5000;

KovalinStickerPtr stickerWithId(const QString& comicId)
{
    return std::make_shared<KovalinSticker>(QJsonObject{{QStringLiteral("comic_id"), comicId}});
}

class Analytics : public testing::Test {
protected:
    Analytics()
    {
        QXSDKClientSetup::setShared({.clientId = QStringLiteral("end-to-end"), .apiBaseUrl = apiBaseUrl()});
        open();
    }
    ~Analytics() override
    {
        close();
        QXSDKClientSetup::setShared({});
    }

    void open()
    {
        QXSDKAnalyticsEventsQueue::setSharedInstance(
            std::make_shared<QXSDKHttpAnalyticsEventsQueue>(QXSDKHttpAnalyticsEventsOptions{.folder = folder.path()}));
    }
    static void close() { QXSDKAnalyticsEventsQueue::setSharedInstance(nullptr); }

    [[nodiscard]] QString apiBaseUrl() const { return server.baseUrl().toString() + QStringLiteral("/api"); }
    void answer(const AnswerRule& rule) { server.setAnswer({"/api/events", rule}); }

    void share(int count)
    {
        for (int i = 0; i < count; ++i) {
            events.logShare(*stickerWithId(QString::number(sent++)), QXSDKKovalinCategoryTypedText);
        }
    }

    /// Lets time pass until the server has had so many requests.
    void waitForRequests(std::size_t count)
    {
        ASSERT_TRUE(waitFor([&] {
            delays.advance(std::chrono::seconds(30));
            return server.requests().size() >= count;
        }));
    }
    /// Lets time pass until the server knows what became of all that was sent.
    TakenEvents takenWhenAllIsTold()
    {
        EXPECT_TRUE(waitFor([this] {
            delays.advance(std::chrono::minutes(15));
            const TakenEvents taken = server.events();
            return taken.received + static_cast<qint64>(taken.dropped) == sent;
        }));
        return server.events();
    }

    QTemporaryDir folder;
    backend::Backend server{{.contentFolder = folder.path()}};
    ManualDelayClock delays;
    const std::shared_ptr<QXSDKKovalinStickerPickerSessionManager> sessions =
        std::make_shared<QXSDKKovalinStickerPickerSessionManager>();
    const QXSDKKovalinAnalyticsEventLogger events{sessions};
    int sent = 0;
};

TEST_F(Analytics, ArriveAsTheyWereLogged)
{
    events.logStickerPickerMount();
    sessions->didBecomeActive();
    const auto sticker = stickerWithId(QStringLiteral("hello-wave"));
    events.logStickerPickerOpen(1, sticker, QXSDKKovalinStickerPickerConfig());
    const auto typed =
        std::make_shared<QXSDKKovalinSearchTerm>(QStringLiteral("grüße 👋"), QXSDKKovalinCategoryTypedText);
    const auto tapped = std::make_shared<QXSDKKovalinSearchTerm>(QStringLiteral("hi"), QXSDKKovalinCategoryDefaultTag);
    events.logSearch({typed, tapped});
    events.logShare(*sticker, QXSDKKovalinCategoryNone);
    events.logPreviewIconChange(sticker);
    events.logHearthLinkTap();
    events.logHearthLinkSuccess();
    events.logCreateAvatarTap();
    events.logPermissionUpdateWithStatus(3);
    sessions->willResignActive();
    events.logStickerPickerClose();
    ASSERT_TRUE(waitFor([this] {
        delays.advance(std::chrono::seconds(30));
        return server.events().received == 10;
    }));

    const auto taken = server.events().events;
    QStringList names;
    for (const auto& event : taken) {
        names.append(event.name);
    }
    EXPECT_EQ(
        names,
        QStringList({QStringLiteral("kovalin_kit_sticker_picker_mount"),
                     QStringLiteral("kovalin_kit_sticker_picker_open"), QStringLiteral("kovalin_kit_search"),
                     QStringLiteral("kovalin_kit_share"), QString(), QStringLiteral("kovalin_kit_hearth_link_tap"),
                     QStringLiteral("kovalin_kit_hearth_link_success"), QStringLiteral("kovalin_kit_create_avatar_tap"),
                     QStringLiteral("kovalin_kit_permission_update"),
                     QStringLiteral("kovalin_kit_sticker_picker_close")}));
    const auto baseOf = [](const analytics::Event& event) {
        return event.fields.value_or(QJsonObject())[QStringLiteral("kovalin_kit_event_base")].toObject();
    };
    const QString session = QStringLiteral("sticker_picker_session_id");
    EXPECT_FALSE(baseOf(taken.at(0)).contains(session)) << "before the first session";
    EXPECT_EQ(baseOf(taken.at(1))[session].toString(), *sessions->sessionId());
    EXPECT_EQ(baseOf(taken.at(1))[QStringLiteral("kit_event_base")][QStringLiteral("client_id")].toString(),
              QStringLiteral("end-to-end"));
    EXPECT_EQ((*taken.at(1).fields)[QStringLiteral("preview_icon_sticker_id")].toString(),
              QStringLiteral("hello-wave"));
    const QJsonArray terms = (*taken.at(2).fields)[QStringLiteral("search_terms")].toArray();
    ASSERT_EQ(terms.size(), 2);
    EXPECT_EQ(terms.at(0)[QStringLiteral("value")].toString(), QStringLiteral("grüße 👋"));
    EXPECT_EQ(terms.at(1)[QStringLiteral("category")].toInt(), 3);
    ASSERT_EQ(taken.at(4).unknown.size(), 1);
    EXPECT_EQ(taken.at(4).unknown.at(0).value.toString(), QStringLiteral("hello-wave"));
}

TEST_F(Analytics, ArriveOnceWhateverTheServerDidBefore)
{
    const std::vector<std::pair<const char*, AnswerRule>> failings{
        {"refused", AnswerRule{.kind = AnswerRule::Kind::Refuse}},
        {"500", AnswerRule::withStatus(500)},
        {"503 with a time", AnswerRule::withStatus(503, 7)},
        {"429", AnswerRule::withStatus(429)},
        {"slow", AnswerRule::delayed(std::chrono::milliseconds(30))},
        {"cut", AnswerRule{.kind = AnswerRule::Kind::Cut}}};
    for (const auto& [name, rule] : failings) {
        SCOPED_TRACE(name);
        const auto requests = server.requests().size();
        answer(rule);
        share(kBatch);
        waitForRequests(requests + 1);
        answer({});
        EXPECT_EQ(takenWhenAllIsTold().received, sent);
        EXPECT_EQ(server.events().dropped, 0U);
    }
    // What was cut off had arrived; the server knows its repetition by the ids.
    QSet<QString> ids;
    for (const auto& event : server.events().events) {
        ids.insert(event.id);
    }
    EXPECT_EQ(ids.size(), sent);
}

TEST_F(Analytics, AreToldAsDroppedWhereTheServerRefusesThem)
{
    for (const int status : {400, 401, 403, 404, 413}) {
        SCOPED_TRACE(status);
        const auto requests = server.requests().size();
        answer(AnswerRule::withStatus(status));
        share(kBatch);
        waitForRequests(requests + 1);
        answer({});
        share(kBatch);
        static_cast<void>(takenWhenAllIsTold());
    }
    EXPECT_EQ(server.events().received, sent / 2);
    EXPECT_EQ(server.events().dropped, static_cast<quint64>(sent / 2));
}

TEST_F(Analytics, AreDroppedOldestFirstWhereThereAreTooMany)
{
    answer(AnswerRule{.kind = AnswerRule::Kind::Refuse});
    share(kMostKept + kMostKept / 2);
    waitForRequests(1);
    answer({});
    const TakenEvents taken = takenWhenAllIsTold();
    EXPECT_GE(taken.dropped, 1U);
    EXPECT_LE(taken.received, kMostKept + kBatch); // those on their way come on top
    ASSERT_FALSE(taken.events.isEmpty());
    EXPECT_EQ((*taken.events.last().fields)[QStringLiteral("sticker_id")].toString(), QString::number(sent - 1));
}

TEST_F(Analytics, SurviveTheQueueAndAServerThatIsAway)
{
    answer(AnswerRule{.kind = AnswerRule::Kind::Refuse});
    share(kBatch + 7);
    waitForRequests(1);
    close();
    answer({});
    open();
    const TakenEvents taken = takenWhenAllIsTold();
    EXPECT_EQ(taken.received, sent);
    EXPECT_EQ(taken.dropped, 0U);
}

TEST_F(Analytics, SurviveAProcessThatIsKilled)
{
    close();
    constexpr int posted = kBatch;
    constexpr int left = 37;
    {
        ChildProcess child(QStringLiteral(KOVALIN_ANALYTICS_CHILD),
                           {folder.path(), apiBaseUrl(), QString::number(posted), QString::number(left)});
        ASSERT_TRUE(waitFor([this] { return server.events().received == posted; }));
        ASSERT_TRUE(QFile(folder.filePath(QStringLiteral("posted"))).open(QIODevice::WriteOnly));
        ASSERT_TRUE(child.readLine().has_value());
        child.kill();
    }
    EXPECT_EQ(server.events().received, posted);
    sent = posted + left;
    open();
    const TakenEvents taken = takenWhenAllIsTold();
    EXPECT_EQ(taken.received, sent);
    EXPECT_EQ(taken.dropped, 0U);
    EXPECT_EQ(taken.repeats, 0);
}

TEST_F(Analytics, EndWithAnOptOut)
{
    answer(AnswerRule{.kind = AnswerRule::Kind::Refuse});
    share(kBatch);
    waitForRequests(1);
    QXSDKClientSetup::setShared(
        {.clientId = QStringLiteral("end-to-end"), .apiBaseUrl = apiBaseUrl(), .isAnalyticsEnabled = false});
    share(kBatch);
    answer({});
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("end-to-end"), .apiBaseUrl = apiBaseUrl()});
    const int before = sent;
    share(kBatch);
    ASSERT_TRUE(waitFor([this] {
        delays.advance(std::chrono::minutes(15));
        return server.events().received >= kBatch;
    }));
    const TakenEvents taken = server.events();
    EXPECT_EQ(taken.received, kBatch);
    EXPECT_EQ((*taken.events.first().fields)[QStringLiteral("sticker_id")].toString(), QString::number(before));
}

} // namespace
} // namespace kovalin::test
