#include "telemetry/QXSDKKovalinViewControllerLogger.h"

#include "kits/login/QXSDKLoginClient.h"
#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "picker/config/QXSDKKovalinViewType.h"
#include "platform/foundation/NotificationCenter.h"
#include "support/LogLines.h"
#include "support/ScriptedLoginClient.h"
#include "telemetry/PickerEvents.h"
#include "telemetry/SharedMetrics.h"
#include "telemetry/WireFields.h"

#include <gmock/gmock.h>

using namespace kovalin::test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace {

constexpr double coldStart = 1'599'999'999.5;

class QXSDKKovalinViewControllerLoggerTest : public PickerEvents {
protected:
    void becomeVisible(qint32 viewType) { logger->firstViewBecameVisible(viewType, nullptr, config); }

    /// The numbers of the events that have arrived, as the outermost message has them.
    [[nodiscard]] std::vector<std::uint32_t> eventNumbers() const
    {
        std::vector<std::uint32_t> numbers;
        for (const QByteArray& event : queue->events()) {
            numbers.push_back(wireFields(event).at(0).number);
        }
        return numbers;
    }

    SharedMetrics metrics;
    InstalledLoginClient login;
    QXSDKKovalinStickerPickerConfig config;
    std::shared_ptr<QXSDKKovalinViewControllerLogger> logger = QXSDKKovalinViewControllerLogger::create(sessions);
    const KovalinStickerPtr sticker = stickerWithComicId(QStringLiteral("10207747_1-s5"));
};

constexpr std::uint32_t open = 30;
constexpr std::uint32_t close = 31;
constexpr std::uint32_t share = 32;
constexpr std::uint32_t search = 33;
constexpr std::uint32_t linkTap = 34;
constexpr std::uint32_t linkSuccess = 35;
constexpr std::uint32_t createAvatarTap = 36;
constexpr std::uint32_t permissionUpdate = 39;
constexpr std::uint32_t mount = 73;

TEST_F(QXSDKKovalinViewControllerLoggerTest, BeginsWithoutAColdStartTime)
{
    EXPECT_EQ(logger->coldStartTime(), 0.0);
    logger->setColdStartTime(coldStart);
    EXPECT_EQ(logger->coldStartTime(), coldStart);
    EXPECT_THAT(queue->events(), IsEmpty());
    EXPECT_THAT(metrics.latencies(), IsEmpty());
}

TEST_F(QXSDKKovalinViewControllerLoggerTest, PassesEventsOnAndCountsNothingForThem)
{
    logger->logStickerPickerMount();
    logger->logHearthLinkTap();
    logger->logCreateAvatarTap();
    logger->logPermissionUpdateWithStatus(3);
    logger->logSearch({term(QStringLiteral("hi"), QXSDKKovalinCategoryTypedText)});
    EXPECT_THAT(
        decodedEvents(queue->events()),
        ElementsAre(expected("kovalin_kit_sticker_picker_mount"), expected("kovalin_kit_hearth_link_tap"),
                    expected("kovalin_kit_create_avatar_tap"),
                    expected("kovalin_kit_permission_update", {{"status", "3"}}),
                    expected("kovalin_kit_search", {{"search_terms.category", "1"}, {"search_terms.value", "hi"}})));
    EXPECT_THAT(eventNumbers(), ElementsAre(mount, linkTap, createAvatarTap, permissionUpdate, search));
    metrics.settle();
    EXPECT_THAT(metrics.counts(), IsEmpty());
    EXPECT_THAT(metrics.latencies(), IsEmpty());
}

TEST_F(QXSDKKovalinViewControllerLoggerTest, PassesAnIconsChangeOn)
{
    logger->logPreviewIconChange(sticker);
    logger->logPreviewIconChange(nullptr);
    EXPECT_THAT(wireFields(queue->events().at(0)), ElementsAre(bytes(2, "10207747_1-s5")));
    EXPECT_EQ(queue->events().at(1), QByteArray());
}

TEST_F(QXSDKKovalinViewControllerLoggerTest, LogsAndCountsAFirstVisibleContentView)
{
    logger->setColdStartTime(coldStart);
    sessions->didBecomeActive();
    config.setShowSearchBar(false);
    logger->firstViewBecameVisible(QXSDKKovalinViewTypeContent, sticker, config);
    EXPECT_EQ(decodedEvent(queue->events().at(0)),
              expected("kovalin_kit_sticker_picker_open", {{"sticker_picker_view", "1"},
                                                           {"search_bar_configuration", "1"},
                                                           {"preview_icon_sticker_id", "10207747_1-s5"}}));
    EXPECT_THAT(metrics.latencies(), ElementsAre(Pair("perceived:open", coldStart)));
    metrics.settle();
    EXPECT_THAT(metrics.counts(), ElementsAre(Pair("picker:open", 1)));
}

TEST_F(QXSDKKovalinViewControllerLoggerTest, MeasuresTheOpeningOfAnyViewAndCountsTheContentViewAlone)
{
    for (const qint32 type : {0, 2, 3, 4, 5, 6, -1}) {
        logger = QXSDKKovalinViewControllerLogger::create(sessions);
        logger->setColdStartTime(100 + type);
        becomeVisible(type);
        EXPECT_THAT(metrics.latencies().back(), Pair("perceived:open", 100 + type)) << type;
        logger->logFirstRender(7);
        EXPECT_THAT(metrics.latencies().back(), Pair("perceived:first_render_grid", 7));
    }
    EXPECT_EQ(metrics.latencies().size(), 2U * 7U) << "no first render of a picker that began with another view";
    metrics.settle();
    EXPECT_THAT(metrics.counts(), IsEmpty());
}

TEST_F(QXSDKKovalinViewControllerLoggerTest, WritesALineAboutTheViewThatIsShown)
{
    const LogLines lines;
    becomeVisible(QXSDKKovalinViewTypeLogin);
    becomeVisible(-2'147'483'647);
    EXPECT_EQ(lines.count(QStringLiteral("[DEBUG] Showed view of type 3")), 1);
    EXPECT_EQ(lines.count(QStringLiteral("[DEBUG] Showed view of type -2147483647")), 1);
}

TEST_F(QXSDKKovalinViewControllerLoggerTest, LogsAResumedSessionsOpeningAgainAndMeasuresItOnce)
{
    logger->setColdStartTime(coldStart);
    for (int resumption = 0; resumption < 3; ++resumption) {
        sessions->didBecomeActive();
        becomeVisible(QXSDKKovalinViewTypeContent);
        logger->logFirstRender(5);
        clock.advance(1s);
        sessions->willResignActive();
        clock.advance(5s);
    }
    EXPECT_THAT(eventNumbers(), ElementsAre(open, close, open, close, open, close));
    EXPECT_THAT(metrics.latencies(),
                ElementsAre(Pair("perceived:open", coldStart), Pair("perceived:first_render", coldStart),
                            Pair("perceived:first_render_grid", 5), Pair("perceived:first_render_grid", 5),
                            Pair("perceived:first_render_grid", 5)));
    metrics.settle();
    EXPECT_THAT(metrics.counts(), ElementsAre(Pair("picker:open", 1), Pair("picker:open", 1), Pair("picker:open", 1)));
}

TEST_F(QXSDKKovalinViewControllerLoggerTest, MeasuresAFirstRenderOnceAndAfterTheOpening)
{
    logger->setColdStartTime(coldStart);
    logger->logFirstRender(1);
    EXPECT_THAT(metrics.latencies(), ElementsAre(Pair("perceived:first_render_grid", 1)));
    becomeVisible(QXSDKKovalinViewTypeContent);
    logger->logFirstRender(2);
    logger->logFirstRender(3);
    EXPECT_THAT(metrics.latencies(),
                ElementsAre(Pair("perceived:first_render_grid", 1), Pair("perceived:open", coldStart),
                            Pair("perceived:first_render", coldStart), Pair("perceived:first_render_grid", 2),
                            Pair("perceived:first_render_grid", 3)));
}

TEST_F(QXSDKKovalinViewControllerLoggerTest, CountsAFailureAtEachSessionsEndUntilAnOpening)
{
    becomeVisible(QXSDKKovalinViewTypeContent);
    span(1s);
    span(1s);
    logger->setColdStartTime(coldStart);
    span(1s);
    becomeVisible(QXSDKKovalinViewTypeLogin);
    span(1s);
    metrics.settle();
    EXPECT_THAT(metrics.counts(), ElementsAre(Pair("picker:open", 1), Pair("perceived:open:failure", 1),
                                              Pair("perceived:open:failure", 1), Pair("perceived:open:failure", 1)));
    EXPECT_THAT(metrics.latencies(), ElementsAre(Pair("perceived:open", coldStart)));
}

TEST_F(QXSDKKovalinViewControllerLoggerTest, FlushesAtASessionsStartAndEnd)
{
    logger->logSearchAndShare(*sticker, QXSDKKovalinCategoryNone, {});
    logger->logSearchAndShare(*sticker, QXSDKKovalinCategoryNone, {});
    sessions->didBecomeActive();
    EXPECT_TRUE(waitFor([this] { return metrics.counts().size() == 1; }));
    EXPECT_THAT(metrics.counts(), ElementsAre(Pair("picker:share", 2))) << "one flush for both";

    logger->logSearchAndShare(*sticker, QXSDKKovalinCategoryNone, {});
    sessions->willResignActive();
    EXPECT_TRUE(waitFor([this] { return metrics.counts().size() == 3; }));
    EXPECT_THAT(metrics.counts(), UnorderedElementsAre(Pair("picker:share", 2), Pair("picker:share", 1),
                                                       Pair("perceived:open:failure", 1)))
        << "the failure leaves with the session that had it";
}

TEST_F(QXSDKKovalinViewControllerLoggerTest, LogsTheSearchesBeforeTheShare)
{
    sessions->didBecomeActive();
    logger->logSearchAndShare(*sticker, QXSDKKovalinCategorySuggestedTag,
                              {term(QStringLiteral("hi"), QXSDKKovalinCategoryTypedText),
                               term(QStringLiteral("hug"), QXSDKKovalinCategorySuggestedTag)});
    EXPECT_THAT(
        decodedEvents(queue->events()),
        ElementsAre(expected("kovalin_kit_search", {{"search_terms.category", "1"},
                                                    {"search_terms.value", "hi"},
                                                    {"search_terms.category", "2"},
                                                    {"search_terms.value", "hug"}}),
                    expected("kovalin_kit_share",
                             {{"sticker_id", "10207747_1-s5"}, {"share_category", "2"}, {"search_category", "2"}})));
    metrics.settle();
    EXPECT_THAT(metrics.counts(), ElementsAre(Pair("picker:share", 1)));
}

TEST_F(QXSDKKovalinViewControllerLoggerTest, LogsNoSearchForAnEmptySequence)
{
    logger->logSearchAndShare(*sticker, QXSDKKovalinCategoryNone, {});
    EXPECT_EQ(queue->events().size(), 1U);
    EXPECT_EQ(decodedEvent(queue->events().at(0)),
              expected("kovalin_kit_share", {{"sticker_id", "10207747_1-s5"}, {"share_category", "1"}}));
}

TEST_F(QXSDKKovalinViewControllerLoggerTest, LogsTheTimeOfAllSpansAtEachSessionsEnd)
{
    std::vector<DecodedFields> expectedEvents;
    const auto closed = [&](const char* millis) {
        expectedEvents.push_back(
            expected("kovalin_kit_sticker_picker_close", {{"sticker_picker_session_duration_millis", millis}}));
    };
    span(3s);
    closed("3000");
    clock.advance(14'999ms);
    span(4s);
    closed("7000");
    clock.advance(15s);
    span(500ms);
    closed("500");
    EXPECT_THAT(decodedEvents(queue->events()), testing::ElementsAreArray(expectedEvents));
}

TEST_F(QXSDKKovalinViewControllerLoggerTest, LogsALinkAtEachChangeThatLeavesAnAccountLinked)
{
    login->link();
    drainMainQueue();
    EXPECT_EQ(decodedEvent(queue->events().at(0)), expected("kovalin_kit_hearth_link_success"));
    login->link();
    drainMainQueue();
    EXPECT_THAT(eventNumbers(), ElementsAre(linkSuccess, linkSuccess)) << "whether anything was new or not";

    login->unlink();
    login->failLink();
    drainMainQueue();
    login->isLinked = true;
    login->failLink(); // a failure is no change of state
    drainMainQueue();
    EXPECT_EQ(queue->events().size(), 2U);
}

TEST_F(QXSDKKovalinViewControllerLoggerTest, AsksWhetherAnAccountIsLinkedWhenTheChangeIsTold)
{
    login->link();
    login->isLinked = false; // unlinked meanwhile
    drainMainQueue();
    EXPECT_THAT(queue->events(), IsEmpty());
}

TEST_F(QXSDKKovalinViewControllerLoggerTest, ListensToTheKitsCentreAlone)
{
    using kovalin::platform::NotificationCenter;
    NotificationCenter::defaultCenter().postNotificationName(kQXSDKLoginClientStateChangeNotification);
    NotificationCenter::qxsdkCenter().postNotificationName(kQXSDKLoginClientLoginStartNotification);
    EXPECT_THAT(queue->events(), IsEmpty());
    NotificationCenter::qxsdkCenter().postNotificationName(kQXSDKLoginClientStateChangeNotification);
    EXPECT_THAT(eventNumbers(), ElementsAre(linkSuccess));
}

TEST_F(QXSDKKovalinViewControllerLoggerTest, LogsASessionInOrder)
{
    login->isLinked = false;
    logger->setColdStartTime(coldStart);
    logger->logStickerPickerMount();
    sessions->didBecomeActive();
    becomeVisible(QXSDKKovalinViewTypeLogin);
    logger->logHearthLinkTap();
    login->link();
    drainMainQueue();
    logger->logFirstRender(coldStart + 4);
    logger->logSearchAndShare(*sticker, QXSDKKovalinCategoryTypedText,
                              {term(QStringLiteral("hi"), QXSDKKovalinCategoryTypedText)});
    sessions->willResignActive();
    EXPECT_THAT(eventNumbers(), ElementsAre(mount, open, linkTap, linkSuccess, search, share, close));
    EXPECT_THAT(metrics.latencies(),
                ElementsAre(Pair("perceived:open", coldStart), Pair("perceived:first_render_grid", coldStart + 4)));
    metrics.settle();
    EXPECT_THAT(metrics.counts(), ElementsAre(Pair("picker:share", 1)));
}

} // namespace
