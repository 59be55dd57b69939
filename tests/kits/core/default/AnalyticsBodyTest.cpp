#include "kits/core/default/AnalyticsBody.h"

#include "kits/core/VoleKitEvents.h"
#include "kits/core/default/AnalyticsFixture.h"
#include "kits/core/picoproto.h"

#include <limits>

namespace kovalin::kits {
namespace {

using test::DecodedBatch;
using test::decodedBatch;
using testing::ElementsAre;
using testing::IsEmpty;

const QUuid first(QStringLiteral("{11111111-2222-3333-4444-555555555555}"));
const QUuid second(QStringLiteral("{aaaaaaaa-bbbb-cccc-dddd-eeeeeeeeeeee}"));

TEST(AnalyticsBody, IsWhatAServerExpects)
{
    const DecodedBatch read = decodedBatch(
        analyticsBody({.id = second,
                       .entries = {{.id = first, .time = 5, .bytes = test::shareEvent("a").serverEventData},
                                   {.id = second, .time = 7, .bytes = test::shareEvent("b").serverEventData}},
                       .dropped = 4}));
    EXPECT_EQ(read.id, "aaaaaaaa-bbbb-cccc-dddd-eeeeeeeeeeee");
    EXPECT_EQ(read.dropped, "4");
    EXPECT_THAT(read.ids(),
                ElementsAre("11111111-2222-3333-4444-555555555555", "aaaaaaaa-bbbb-cccc-dddd-eeeeeeeeeeee"));
    EXPECT_THAT(read.stickers(), ElementsAre("a", "b"));
    EXPECT_EQ(read.events[0].timeMillis, "5");
    EXPECT_EQ(read.events[1].timeMillis, "7");
}

TEST(AnalyticsBody, KeepsNumbersOfAnySize)
{
    const DecodedBatch read =
        decodedBatch(analyticsBody({.id = first,
                                    .entries = {{.id = first, .time = std::numeric_limits<qint64>::max(), .bytes = {}},
                                                {.id = first, .time = -1, .bytes = {}},
                                                {.id = first, .time = 0, .bytes = {}}},
                                    .dropped = std::numeric_limits<quint64>::max()}));
    EXPECT_EQ(read.dropped, "18446744073709551615");
    ASSERT_EQ(read.events.size(), 3U);
    EXPECT_EQ(read.events[0].timeMillis, "9223372036854775807");
    EXPECT_EQ(read.events[1].timeMillis, "-1");
    EXPECT_EQ(read.events[2].timeMillis, "0");
}

TEST(AnalyticsBody, HasEmptyEventsToo)
{
    const auto read = test::decodedEvents(
        QStringLiteral("EventBatch"),
        analyticsBody({.id = first, .entries = {{.id = second, .time = 1, .bytes = QByteArray()}}, .dropped = 0}));
    ASSERT_TRUE(read.has_value());
    const test::DecodedMessage event = read->one("events");
    ASSERT_EQ(event.all("data").size(), 1U); // It is there, with nothing in it.
    EXPECT_THAT(event.one("data").values, IsEmpty());
}

TEST(AnalyticsBody, TakesAnEventsBytesAsTheyAre)
{
    // A field that the format doesn't know, and a text of all bytes that there are.
    std::string text;
    for (int byte = 1; byte < 128; ++byte) {
        text += static_cast<char>(byte);
    }
    picoproto_ctx_s* const data = picoproto_new("ServerEventData");
    picoproto_write_string_field(data, 2, text.c_str());
    picoproto_write_varint_field(data, 500, 1);
    const QByteArray bytes = VoleKitEvents::serverEventWithServerEventData(data).serverEventData;
    const QByteArray body =
        analyticsBody({.id = first, .entries = {{.id = second, .time = 1, .bytes = bytes}}, .dropped = 0});
    EXPECT_TRUE(body.endsWith(bytes));
    const auto read = test::decodedEvents(QStringLiteral("EventBatch"), body);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->one("events").one("data").value("500"), "1");
}

} // namespace
} // namespace kovalin::kits
