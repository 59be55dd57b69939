#include "telemetry/QXSDKKovalinAnalyticsEventLogger.h"

#include "kits/core/picoproto.h"
#include "picker/config/QXSDKKovalinStickerPickerConfig.h"
#include "picker/config/QXSDKKovalinViewType.h"
#include "telemetry/PickerEvents.h"
#include "telemetry/WireFields.h"

#include <gmock/gmock.h>

#include <limits>

using namespace kovalin::test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::IsSupersetOf;
using Logger = QXSDKKovalinAnalyticsEventLogger;

namespace {

/// What the events arrive as is read by protoc; what stands in them though it is 0 or empty, on the wire.
class QXSDKKovalinAnalyticsEventLoggerTest : public PickerEvents {
protected:
    /// The fields of the last event's message on the wire, but for its base, which is its first.
    [[nodiscard]] std::vector<WireField> ownFields() const
    {
        auto fields = fieldsWithin(queue->events().back());
        EXPECT_EQ(fields.at(0).number, 1U);
        fields.erase(fields.begin());
        return fields;
    }

    Logger logger{sessions};
    QXSDKKovalinStickerPickerConfig config;
    const KovalinStickerPtr sticker = stickerWithComicId(QStringLiteral("10207747_1-s5"));
};

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, LogsEventsOfABaseAlone)
{
    span(1s);
    logger.logStickerPickerMount();
    logger.logHearthLinkTap();
    logger.logHearthLinkSuccess();
    logger.logCreateAvatarTap();
    EXPECT_THAT(decodedEvents(queue->events()),
                ElementsAre(expected("kovalin_kit_sticker_picker_mount"), expected("kovalin_kit_hearth_link_tap"),
                            expected("kovalin_kit_hearth_link_success"), expected("kovalin_kit_create_avatar_tap")));
    for (const QByteArray& event : queue->events()) {
        EXPECT_EQ(fieldsWithin(event).size(), 1U);
    }
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, HasNoSessionIdBeforeTheFirstSession)
{
    logger.logStickerPickerMount();
    const DecodedFields event = decodedEvent(queue->events().at(0));
    EXPECT_EQ(event, expected("kovalin_kit_sticker_picker_mount"));
    EXPECT_EQ(event.back().first, "kovalin_kit_sticker_picker_mount.kovalin_kit_event_base.kit_event_base."
                                  "kit_variant_version");
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, ReadsTheSessionIdAtEachEvent)
{
    std::vector<DecodedFields> expectedEvents;
    for (int session = 0; session < 3; ++session) {
        span(1s);
        logger.logHearthLinkTap();
        expectedEvents.push_back(expected("kovalin_kit_hearth_link_tap"));
        clock.advance(1h);
    }
    EXPECT_NE(expectedEvents[0], expectedEvents[1]);
    EXPECT_THAT(decodedEvents(queue->events()), ElementsAreArray(expectedEvents));
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, LogsAShareOfEachCategory)
{
    span(1s);
    std::vector<DecodedFields> expectedEvents;
    for (int category = -1; category <= 99; ++category) {
        logger.logShare(*sticker, static_cast<QXSDKKovalinCategory>(category));
        DecodedFields own{{"sticker_id", "10207747_1-s5"}};
        if (category == 0) {
            own.emplace_back("share_category", "1");
        } else if (category >= 1 && category <= 4) {
            own.emplace_back("share_category", "2");
            own.emplace_back("search_category", std::to_string(category));
        }
        expectedEvents.push_back(expected("kovalin_kit_share", own));
    }
    EXPECT_THAT(decodedEvents(queue->events()), ElementsAreArray(expectedEvents));
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, WritesAnUnknownShareCategoryAsZeroAndLeavesTheSearchCategoryOut)
{
    logger.logShare(*sticker, static_cast<QXSDKKovalinCategory>(5));
    EXPECT_THAT(ownFields(), ElementsAre(bytes(3, "10207747_1-s5"), varint(4, 0)));
    logger.logShare(*sticker, QXSDKKovalinCategoryNone);
    EXPECT_THAT(ownFields(), ElementsAre(bytes(3, "10207747_1-s5"), varint(4, 1)));
    logger.logShare(*sticker, QXSDKKovalinCategoryDefaultTag);
    EXPECT_THAT(ownFields(), ElementsAre(bytes(3, "10207747_1-s5"), varint(4, 2), varint(5, 3)));
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, LogsAShareOfAStickerWithoutAnId)
{
    logger.logShare(*stickerWithComicId(std::nullopt), QXSDKKovalinCategoryNone);
    EXPECT_THAT(ownFields(), ElementsAre(varint(4, 1)));
    logger.logShare(*stickerWithComicId(QString()), QXSDKKovalinCategoryNone);
    EXPECT_THAT(ownFields(), ElementsAre(bytes(3, ""), varint(4, 1)));
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, LogsSearchTermsInOrder)
{
    span(1s);
    QXSDKKovalinSearchTermList terms;
    DecodedFields own;
    for (int category = 4; category >= 1; --category) {
        const QString value = QStringLiteral("term %1").arg(category);
        terms.append(term(value, static_cast<QXSDKKovalinCategory>(category)));
        own.emplace_back("search_terms.category", std::to_string(category));
        own.emplace_back("search_terms.value", value.toStdString());
    }
    logger.logSearch(terms);
    EXPECT_EQ(decodedEvent(queue->events().at(0)), expected("kovalin_kit_search", own));
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, LogsSearchTermsOfEachCategory)
{
    QXSDKKovalinSearchTermList terms;
    std::vector<WireField> own;
    for (int category = -1; category <= 99; ++category) {
        terms.append(term(QStringLiteral("a"), static_cast<QXSDKKovalinCategory>(category)));
        const char number = category >= 1 && category <= 4 ? static_cast<char>(category) : '\0';
        own.push_back(bytes(2, {'\x08', number, '\x12', '\x01', 'a'}));
    }
    logger.logSearch(terms);
    EXPECT_THAT(ownFields(), ElementsAreArray(own));
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, LogsASearchWithoutTermsAsItsBase)
{
    logger.logSearch({});
    EXPECT_EQ(decodedEvent(queue->events().at(0)), expected("kovalin_kit_search"));
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, LogsTheOpeningOfEachTypeOfView)
{
    span(1s);
    std::vector<DecodedFields> expectedEvents;
    for (const QXSDKKovalinViewType type :
         {QXSDKKovalinViewTypeContent, QXSDKKovalinViewTypeCreateAvatar, QXSDKKovalinViewTypeLogin,
          QXSDKKovalinViewTypeNoPermission, QXSDKKovalinViewTypeError}) {
        logger.logStickerPickerOpen(type, sticker, config);
        expectedEvents.push_back(expected("kovalin_kit_sticker_picker_open",
                                          {{"sticker_picker_view", std::to_string(expectedEvents.size() + 1)},
                                           {"preview_icon_sticker_id", "10207747_1-s5"}}));
    }
    EXPECT_THAT(decodedEvents(queue->events()), ElementsAreArray(expectedEvents));
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, PassesAnyTypeOfViewOn)
{
    for (const qint32 type : {0, 6, -1, std::numeric_limits<qint32>::max(), std::numeric_limits<qint32>::min()}) {
        logger.logStickerPickerOpen(type, nullptr, config);
        EXPECT_THAT(ownFields(), ElementsAre(varint(2, static_cast<std::uint64_t>(type)), varint(3, 0), varint(4, 0)));
    }
    EXPECT_EQ(decodedEvents(queue->events()).size(), 5U);
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, TellsWhichBarsAreShown)
{
    for (const bool searchBar : {true, false}) {
        for (const bool searchPills : {true, false}) {
            config.setShowSearchBar(searchBar);
            config.setShowSearchPills(searchPills);
            logger.logStickerPickerOpen(1, nullptr, config);
            EXPECT_THAT(ownFields(),
                        ElementsAre(varint(2, 1), varint(3, searchBar ? 0 : 1), varint(4, searchPills ? 0 : 1)));
        }
    }
    EXPECT_EQ(decodedEvent(queue->events().back()),
              expected("kovalin_kit_sticker_picker_open", {{"sticker_picker_view", "1"},
                                                           {"search_bar_configuration", "1"},
                                                           {"tag_selector_configuration", "1"}}));
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, LeavesThePreviewStickerOutWhereThereIsNone)
{
    logger.logStickerPickerOpen(1, nullptr, config);
    EXPECT_THAT(ownFields(), ElementsAre(varint(2, 1), varint(3, 0), varint(4, 0)));
    logger.logStickerPickerOpen(1, stickerWithComicId(std::nullopt), config);
    EXPECT_THAT(ownFields(), ElementsAre(varint(2, 1), varint(3, 0), varint(4, 0)));
    logger.logStickerPickerOpen(1, sticker, config);
    EXPECT_THAT(ownFields(), ElementsAre(varint(2, 1), varint(3, 0), varint(4, 0), bytes(5, "10207747_1-s5")));
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, LogsTheTimeOfAllSpansOfAResumedSession)
{
    std::vector<DecodedFields> expectedEvents;
    const auto close = [&](const char* millis) {
        logger.logStickerPickerClose();
        expectedEvents.push_back(
            expected("kovalin_kit_sticker_picker_close", {{"sticker_picker_session_duration_millis", millis}}));
    };
    span(3s);
    close("3000");
    clock.advance(14'999ms);
    span(4001ms);
    close("7001");
    clock.advance(10s);
    span(2s);
    close("9001");
    clock.advance(15s);
    span(1s);
    close("1000");
    EXPECT_THAT(decodedEvents(queue->events()), ElementsAreArray(expectedEvents));
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, LogsWhateverTimeTheManagerTells)
{
    logger.logStickerPickerClose();
    EXPECT_THAT(ownFields(), ElementsAre(varint(2, 1'600'000'000'000))) << "before the first session";
    span(0ms);
    logger.logStickerPickerClose();
    EXPECT_THAT(ownFields(), ElementsAre(varint(2, 0)));
    clock.advance(1h);
    span(-5ms);
    logger.logStickerPickerClose();
    EXPECT_THAT(ownFields(), ElementsAre(varint(2, static_cast<std::uint64_t>(-5)))) << "the clock was set back";
    EXPECT_EQ(decodedEvent(queue->events().back()).back().second, "-5");
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, LogsPermissionUpdates)
{
    span(1s);
    std::vector<DecodedFields> expectedEvents;
    for (const qint32 status :
         {1, 2, 3, 4, -1, std::numeric_limits<qint32>::max(), std::numeric_limits<qint32>::min()}) {
        logger.logPermissionUpdateWithStatus(status);
        expectedEvents.push_back(expected("kovalin_kit_permission_update", {{"status", std::to_string(status)}}));
    }
    EXPECT_THAT(decodedEvents(queue->events()), ElementsAreArray(expectedEvents));
    logger.logPermissionUpdateWithStatus(0);
    EXPECT_THAT(ownFields(), ElementsAre(varint(2, 0)));
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, SendsNothingButTheIdOfAPreviewedSticker)
{
    span(1s);
    logger.logPreviewIconChange(sticker);
    ASSERT_EQ(queue->events().size(), 1U);
    EXPECT_THAT(wireFields(queue->events().at(0)), ElementsAre(bytes(2, "10207747_1-s5")));
    EXPECT_EQ(decodedEvent(queue->events().at(0)), (DecodedFields{{"2", "10207747_1-s5"}}))
        << "a field that the message doesn't have";
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, SendsAnEmptyMessageForAnIconWithoutASticker)
{
    logger.logPreviewIconChange(nullptr);
    logger.logPreviewIconChange(stickerWithComicId(std::nullopt));
    EXPECT_THAT(queue->events(), ElementsAre(QByteArray(), QByteArray()));
    EXPECT_EQ(decodedEvent(queue->events().at(0)), (DecodedFields{{"", "{}"}}));
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, MakesANewBaseAtEachCall)
{
    span(1s);
    picoproto_ctx_s* const first = logger.kovalinKitEventBase();
    picoproto_ctx_s* const second = logger.kovalinKitEventBase();
    EXPECT_NE(first, second);
    EXPECT_EQ(picoproto_bytes(first), picoproto_bytes(second));
    const auto fields = wireFields(picoproto_bytes(first));
    ASSERT_EQ(fields.size(), 2U);
    EXPECT_EQ(fields[0].number, 1U);
    EXPECT_EQ(fields[1], bytes(2, sessions->sessionId()->toStdString()));
    EXPECT_EQ(wireFields(std::get<std::string>(fields[0].value)).back(), bytes(7, QXSDKKovalinKitVersionString));
    picoproto_free(first);
    picoproto_free(second);
    EXPECT_THAT(queue->events(), IsEmpty());
}

TEST_F(QXSDKKovalinAnalyticsEventLoggerTest, TellsWhoTheHostIsAtTheMoment)
{
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("another")});
    logger.logStickerPickerMount();
    EXPECT_THAT(decodedEvent(queue->events().at(0)),
                IsSupersetOf(DecodedFields{
                    {"kovalin_kit_sticker_picker_mount.kovalin_kit_event_base.kit_event_base.client_id", "another"}}));
}

} // namespace
