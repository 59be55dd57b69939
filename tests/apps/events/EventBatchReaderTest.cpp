#include "apps/events/EncodedBatch.h"
#include "apps/events/ReadBatch.h"

#include <limits>
#include <string>
#include <thread>
#include <vector>

namespace kovalin::test {
namespace {

const QByteArray base = R"(kovalin_kit_event_base {
    kit_event_base { kit_type: 1 client_id: "tests" locale: "en-GB" os_name: "debian" os_version: "12"
                     kit_variant_version: "0.1.0" }
    sticker_picker_session_id: "s1" })";

const QByteArray baseJson = R"("kovalin_kit_event_base":{
    "kit_event_base":{"kit_type":1,"client_id":"tests","locale":"en-GB","os_name":"debian","os_version":"12",
                      "kit_variant_version":"0.1.0"},
    "sticker_picker_session_id":"s1"})";

struct EachEvent {
    const char* name;
    const char* text; // its fields beside the base
    const char* json;
};

class EventBatchReaderEach : public testing::TestWithParam<EachEvent> {};

TEST_P(EventBatchReaderEach, ReadsAllFields)
{
    const EachEvent& each = GetParam();
    const auto event = onlyEventIn(
        encodedBatch(batchText(eventText("e1", QByteArray(each.name) + " { " + base + ' ' + each.text + " }"))));
    EXPECT_EQ(event.batchId, QString::fromLatin1(kBatchId));
    EXPECT_EQ(event.id, QStringLiteral("e1"));
    EXPECT_EQ(event.timeMillis, 17);
    EXPECT_EQ(event.name, QString::fromLatin1(each.name));
    EXPECT_TRUE(event.unknown.isEmpty());
    ASSERT_TRUE(event.fields);
    EXPECT_EQ(textOf(*event.fields), textOf(json('{' + baseJson + each.json + '}')));
}

const EachEvent eachEvent[] = {
    {"kovalin_kit_sticker_picker_open",
     R"(sticker_picker_view: 1 search_bar_configuration: 1 tag_selector_configuration: 1
        preview_icon_sticker_id: "7")",
     R"(,"sticker_picker_view":1,"search_bar_configuration":1,"tag_selector_configuration":1,
        "preview_icon_sticker_id":"7")"},
    {"kovalin_kit_sticker_picker_close", "sticker_picker_session_duration_millis: 123456789012",
     R"(,"sticker_picker_session_duration_millis":123456789012)"},
    {"kovalin_kit_share", R"(sticker_id: "4711" share_category: 2 search_category: 3)",
     R"(,"sticker_id":"4711","share_category":2,"search_category":3)"},
    {"kovalin_kit_search", R"(search_terms { category: 1 value: "hey" } search_terms { category: 4 value: "hug" })",
     R"(,"search_terms":[{"category":1,"value":"hey"},{"category":4,"value":"hug"}])"},
    {"kovalin_kit_hearth_link_tap", "", ""},
    {"kovalin_kit_hearth_link_success", "", ""},
    {"kovalin_kit_create_avatar_tap", "", ""},
    {"kovalin_kit_permission_update", "status: -3", R"(,"status":-3)"},
    {"kovalin_kit_sticker_picker_mount", "", ""},
};

INSTANTIATE_TEST_SUITE_P(EventBatchReader, EventBatchReaderEach, testing::ValuesIn(eachEvent),
                         [](const auto& event) { return std::string(event.param.name); });

TEST(EventBatchReader, KeepsTheOrderOfEvents)
{
    const auto batch =
        batchIn(encodedBatch(batchText("dropped: 5 " + eventText("b", shareText("1")) +
                                       eventText("a", "kovalin_kit_search {}") + eventText("b", shareText("2")))));
    EXPECT_EQ(batch.id, QString::fromLatin1(kBatchId));
    EXPECT_EQ(batch.dropped, 5U);
    QStringList ids;
    for (const auto& event : batch.events) {
        ids.append(event.id);
    }
    EXPECT_EQ(ids, (QStringList{QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_EQ(textOf(batch.headToJson()),
              textOf(json(QByteArray(R"({"count":3,"dropped":5,"batch_id":")") + kBatchId + "\"}")));
}

TEST(EventBatchReader, TakesABatchWithoutEvents)
{
    const auto batch = batchIn(encodedBatch("batch_id: \"any\""));
    EXPECT_EQ(batch.id, QStringLiteral("any"));
    EXPECT_EQ(batch.dropped, 0U);
    EXPECT_TRUE(batch.events.isEmpty());
}

TEST(EventBatchReader, TellsAFieldThatIsZeroFromOneThatIsAbsent)
{
    const auto event = onlyEventIn(encodedLaterBatch(batchText(
        eventText("e", "kovalin_kit_sticker_picker_open { sticker_picker_view: 0 preview_icon_sticker_id: \"\" }"))));
    ASSERT_TRUE(event.fields);
    EXPECT_EQ(textOf(*event.fields), R"({"preview_icon_sticker_id":"","sticker_picker_view":0})");
}

TEST(EventBatchReader, TellsEmptyDataFromNone)
{
    const auto events = batchIn(encodedBatch(batchText(eventText("a", "") + "events { event_id: \"b\" }"))).events;
    ASSERT_EQ(events.size(), 2);
    EXPECT_EQ(events[0].name, QString());
    EXPECT_EQ(events[0].fields, QJsonObject());
    EXPECT_EQ(events[0].toText(), QStringLiteral("(none) {}"));
    EXPECT_EQ(events[1].name, QString());
    EXPECT_EQ(events[1].fields, std::nullopt);
    EXPECT_EQ(events[1].toText(), QStringLiteral("(none)"));
    EXPECT_TRUE(events[1].toJson().value(u"event").isNull());
    EXPECT_TRUE(events[1].toJson().value(u"fields").isNull());
}

TEST(EventBatchReader, NamesAllOfSeveralEventsThatAreSetAtOnce)
{
    const auto event = onlyEventIn(encodedBatch(
        batchText(eventText("e", "kovalin_kit_search { search_terms { category: 1 } } " + shareText("9")))));
    EXPECT_EQ(event.name, QStringLiteral("kovalin_kit_share+kovalin_kit_search"));
    ASSERT_TRUE(event.fields);
    EXPECT_EQ(textOf(*event.fields), R"({"kovalin_kit_search":{"search_terms":[{"category":1}]},)"
                                     R"("kovalin_kit_share":{"share_category":1,"sticker_id":"9"}})");
}

TEST(EventBatchReader, KeepsNumbersExact)
{
    const auto batch = batchIn(encodedBatch(
        R"(batch_id: "b" dropped: 18446744073709551615
           events { time_millis: -9223372036854775808 data { kovalin_kit_sticker_picker_close {
                    sticker_picker_session_duration_millis: 9223372036854775807 } } }
           events { data { kovalin_kit_share { share_category: 4294967295 } } }
           events { data { kovalin_kit_permission_update { status: -2147483648 } } })"));
    EXPECT_EQ(batch.dropped, std::numeric_limits<quint64>::max());
    EXPECT_EQ(batch.headToJson().value(u"dropped").toString(), QStringLiteral("18446744073709551615"));
    ASSERT_EQ(batch.events.size(), 3);
    EXPECT_EQ(batch.events[0].timeMillis, std::numeric_limits<qint64>::min());
    EXPECT_EQ(batch.events[0].fields->value(u"sticker_picker_session_duration_millis").toInteger(),
              std::numeric_limits<qint64>::max());
    EXPECT_EQ(batch.events[1].fields->value(u"share_category").toInteger(), 4294967295);
    EXPECT_EQ(batch.events[2].fields->value(u"status").toInteger(), -2147483648);
}

TEST(EventBatchReader, KeepsTextOfAnyKind)
{
    // Escapes of the text form: a byte order mark, a zero, a line end, a quotation mark, é, a pictograph.
    const auto event = onlyEventIn(encodedBatch(batchText(
        eventText("e", R"(kovalin_kit_share { sticker_id: "\xEF\xBB\xBF\x00\n\"\xC3\xA9\xF0\x9F\x98\x80" })"))));
    EXPECT_EQ(event.fields->value(u"sticker_id").toString(), QStringView(u"\uFEFF\0\n\"é😀", 7));
    EXPECT_FALSE(event.toText().contains(u'\n'));
}

TEST(EventBatchReader, ShowsAnEventAsJson)
{
    const auto event = onlyEventIn(encodedBatch(batchText(eventText("e", shareText("9")))));
    EXPECT_EQ(textOf(event.toJson()), textOf(json(QByteArray(R"({"batch_id":")") + kBatchId +
                                                  R"(","event_id":"e","time_millis":17,"event":"kovalin_kit_share",)"
                                                  R"("fields":{"sticker_id":"9","share_category":1}})")));
    EXPECT_EQ(event.toText(), QStringLiteral(R"(kovalin_kit_share {"share_category":1,"sticker_id":"9"})"));
    EXPECT_GT(event.size, 0);
}

TEST(EventBatchReader, ReadsOnManyThreadsAtOnce)
{
    const QByteArray bytes = encodedBatch(batchText(eventText("e", shareText("9")) + eventText("f", "")));
    constexpr int threadCount = 8;
    std::vector<std::thread> threads;
    std::vector<qsizetype> counts(threadCount);
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&bytes, &count = counts[static_cast<std::size_t>(i)]] {
            for (int round = 0; round < 20; ++round) {
                count += batchIn(bytes).events.size();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(counts, std::vector<qsizetype>(threadCount, 40));
}

} // namespace
} // namespace kovalin::test
