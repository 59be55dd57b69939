// Whatever arrives, it is a batch or one line on what is wrong with it.
#include "apps/events/EncodedBatch.h"
#include "apps/events/ReadBatch.h"

#include <random>
#include <string>

namespace kovalin::test {
namespace {

using analytics::kMostBatchBytes;

QByteArray goodBatch()
{
    return encodedLaterBatch(batchText(
        eventText("a", R"(kovalin_kit_share { sticker_id: "9é" picture: "\xFF" colour: 7 Position { x: 1 } })") +
        eventText("b", "kovalin_kit_search { search_terms { category: 1 value: \"hey\" } }") +
        eventText("c", "preview_sticker_id: \"4711\"") + "events { trace: 3 }"));
}

/// A length-delimited field with a number below 16, of less than 2^28 bytes.
QByteArray field(int number, const QByteArray& bytes)
{
    QByteArray encoded(1, static_cast<char>((number << 3) | 2));
    auto length = static_cast<unsigned>(bytes.size());
    for (; length >= 0x80; length >>= 7) {
        encoded.append(static_cast<char>((length & 0x7F) | 0x80));
    }
    return encoded + static_cast<char>(length) + bytes;
}

/// Reads the bytes; true when they are a batch, all of which can be shown.
bool isBatch(const QByteArray& bytes)
{
    const auto read = analytics::readEventBatch(bytes);
    if (const auto* fault = std::get_if<QString>(&read)) {
        EXPECT_FALSE(fault->isEmpty());
        EXPECT_FALSE(fault->contains(u'\n'));
        // Bytes that look well formed are a message to the library that reads them too.
        EXPECT_NE(*fault, QStringLiteral("no message of protobuf"));
        return false;
    }
    for (const auto& event : std::get<analytics::EventBatch>(read).events) {
        EXPECT_FALSE(event.toText().isEmpty());
        EXPECT_FALSE(event.toText().contains(u'\n'));
    }
    return true;
}

TEST(DamagedBatch, IsRefusedWhereverItIsCut)
{
    const QByteArray good = goodBatch();
    ASSERT_TRUE(isBatch(good));
    int batches = 0;
    for (qsizetype size = 0; size < good.size(); ++size) {
        batches += isBatch(good.first(size)) ? 1 : 0;
    }
    EXPECT_EQ(batches, 4); // cut between two of its five fields
}

TEST(DamagedBatch, IsABatchOrRefusedWhicheverBitIsWrong)
{
    const QByteArray good = goodBatch();
    int refused = 0;
    for (qsizetype i = 0; i < good.size(); ++i) {
        for (int bit = 0; bit < 8; ++bit) {
            QByteArray damaged = good;
            damaged[i] = static_cast<char>(damaged[i] ^ (1 << bit));
            refused += isBatch(damaged) ? 0 : 1;
        }
    }
    EXPECT_GT(refused, 0);
}

TEST(DamagedBatch, IsABatchOrRefusedWithAnyBytesInIt)
{
    const QByteArray good = goodBatch();
    std::mt19937 random(1);
    for (int round = 0; round < 5000; ++round) {
        QByteArray damaged = good;
        for (int i = 0; i < 4; ++i) {
            damaged[static_cast<qsizetype>(random() % static_cast<unsigned>(good.size()))] =
                static_cast<char>(random() & 0xFFU);
        }
        isBatch(damaged);
    }
}

TEST(DamagedBatch, MayBeGarbage)
{
    std::mt19937 random(2);
    for (int round = 0; round < 2000; ++round) {
        QByteArray bytes(static_cast<qsizetype>(random() % 200), '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random() & 0xFFU);
        }
        isBatch(bytes);
        isBatch(field(1, "id") + field(3, field(3, bytes)));
    }
}

TEST(DamagedBatch, IsNamedForItsFault)
{
    EXPECT_EQ(faultOf(""), QStringLiteral("no \"batch_id\""));
    EXPECT_EQ(faultOf(field(3, "")), QStringLiteral("no \"batch_id\""));
    EXPECT_EQ(faultOf(R"({"client_id":"c"})"),
              QStringLiteral("field 15.field 4: a length of 99 goes beyond the end, at byte 3"));
    EXPECT_EQ(faultOf(field(1, "id") + field(3, field(1, "e") + field(3, field(5, "x") + "\x12\x05no"))),
              QStringLiteral("events#1.data.field 2: a length of 5 goes beyond the end, at byte 16"));
    EXPECT_EQ(faultOf(field(1, "id") + field(3, "") + field(3, field(1, "\xC3("))),
              QStringLiteral("events#2.event_id: no valid UTF-8, at byte 10"));
}

TEST(DamagedBatch, MayBeLong)
{
    constexpr qsizetype longText = qsizetype(10) * 1024 * 1024;
    const QByteArray text(longText, 'x');
    const auto inText = batchIn(field(1, "id") + field(3, field(1, text)));
    ASSERT_EQ(inText.events.size(), 1);
    EXPECT_EQ(inText.events.front().id.size(), longText);
    const auto unknown = batchIn(field(1, "id") + field(7, QByteArray(longText, '\xFF'))).unknown;
    ASSERT_EQ(unknown.size(), 1);
    EXPECT_EQ(unknown.front().value.toObject().value(u"hex").toString().size(), 2 * longText);
}

TEST(DamagedBatch, MayHaveManyFieldsButNotTooMany)
{
    const QByteArray manyEvents = field(3, "").repeated(99'999);
    EXPECT_EQ(batchIn(field(1, "id") + manyEvents).events.size(), 99'999);
    EXPECT_EQ(faultOf(field(1, "id") + manyEvents + field(3, "")),
              QStringLiteral("events#100000: more than 100000 fields, at byte 200003"));
    EXPECT_EQ(faultOf(QByteArray("\x38\x01").repeated(5'000'000)),
              QStringLiteral("field 7: more than 100000 fields, at byte 200001"));
}

TEST(DamagedBatch, IsRefusedWhereItIsTooLong)
{
    const QByteArray longest = field(1, "id") + field(7, QByteArray(kMostBatchBytes - 9, 'x'));
    ASSERT_EQ(longest.size(), kMostBatchBytes);
    EXPECT_EQ(faultOf(longest), QString());
    EXPECT_EQ(faultOf(longest + 'x'), QStringLiteral("longer than 67108864 bytes"));
}

} // namespace
} // namespace kovalin::test
