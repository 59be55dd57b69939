#include "apps/events/EncodedBatch.h"
#include "apps/events/ReadBatch.h"

#include <QtCore/QJsonArray>

namespace kovalin::test {
namespace {

using analytics::UnknownField;

UnknownField unknown(const char* in, int number, int wireType, const QJsonValue& value)
{
    return {.in = QString::fromLatin1(in), .number = number, .wireType = wireType, .value = value};
}

TEST(UnknownFields, OfAPreviewIconChangeAreItsSticker)
{
    // What the library sends for one: the id in a field of the data that the format doesn't declare, and no event.
    const auto event = onlyEventIn(encodedLaterBatch(batchText(eventText("e", "preview_sticker_id: \"4711\""))));
    EXPECT_EQ(event.name, QString());
    EXPECT_EQ(event.fields, QJsonObject());
    EXPECT_EQ(event.unknown, QList{unknown("data", 2, 2, QStringLiteral("4711"))});
    EXPECT_EQ(event.toText(),
              QStringLiteral(R"((none) {} unknown [{"in":"data","number":2,"value":"4711","wire_type":2}])"));
}

TEST(UnknownFields, AreFoundAtEachLevel)
{
    const auto batch = batchIn(encodedLaterBatch(batchText(
        "region: \"eu\" events { event_id: \"e\" trace: 3 data { later_event: \"x\" "
        "kovalin_kit_search { search_terms { value: \"a\" } search_terms { value: \"b\" typed: true } } } }")));
    EXPECT_EQ(batch.unknown, QList{unknown("", 9, 2, QStringLiteral("eu"))});
    EXPECT_EQ(batch.headToJson().value(u"unknown").toArray().size(), 1);
    ASSERT_EQ(batch.events.size(), 1);
    const auto& event = batch.events.front();
    EXPECT_EQ(event.unknown, (QList{unknown("", 4, 1, 3), unknown("data", 90, 2, QStringLiteral("x")),
                                    unknown("data.kovalin_kit_search.search_terms#2", 3, 0, 1)}));
    EXPECT_EQ(event.name, QStringLiteral("kovalin_kit_search"));
    EXPECT_EQ(textOf(*event.fields), R"({"search_terms":[{"value":"a"},{"value":"b"}]})");
    EXPECT_EQ(event.toJson().value(u"unknown").toArray().size(), 3);
}

TEST(UnknownFields, OfEachWireTypeHaveTheirValues)
{
    const auto event = onlyEventIn(encodedLaterBatch(
        batchText(eventText("e", R"(kovalin_kit_share { sticker_id: "9" picture: "\xFF\x00" colour: 4294967295
                Position { x: -1 place { name: "here" } } largest: 18446744073709551615 })"))));
    const QJsonArray position{QJsonObject{{QStringLiteral("in"), QStringLiteral("data.kovalin_kit_share")},
                                          {QStringLiteral("number"), 1},
                                          {QStringLiteral("wire_type"), 0},
                                          {QStringLiteral("value"), 1}},
                              QJsonObject{{QStringLiteral("in"), QStringLiteral("data.kovalin_kit_share")},
                                          {QStringLiteral("number"), 2},
                                          {QStringLiteral("wire_type"), 2},
                                          {QStringLiteral("value"), QStringLiteral("\n\x04here")}}};
    const char* const in = "data.kovalin_kit_share";
    EXPECT_EQ(event.unknown, (QList{unknown(in, 10, 2, QJsonObject{{QStringLiteral("hex"), QStringLiteral("ff00")}}),
                                    unknown(in, 11, 5, qint64(4294967295)), unknown(in, 12, 3, position),
                                    unknown(in, 13, 0, QStringLiteral("18446744073709551615"))}));
    EXPECT_EQ(textOf(*event.fields), R"({"sticker_id":"9"})");
}

TEST(UnknownFields, AreThoseWithAnotherWireTypeThanDeclared)
{
    const auto event = onlyEventIn(encodedLaterBatch(
        batchText(eventText("e", "kovalin_kit_share { sticker_id: \"9\" share_category: \"two\" }"))));
    EXPECT_EQ(event.unknown, QList{unknown("data.kovalin_kit_share", 4, 2, QStringLiteral("two"))});
    EXPECT_EQ(event.name, QStringLiteral("kovalin_kit_share"));
    EXPECT_EQ(textOf(*event.fields), R"({"sticker_id":"9"})");
}

} // namespace
} // namespace kovalin::test
