#include "kits/core/picoproto.h"

#include "support/DecodedMessage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>

namespace kovalin::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// A message that is freed at its end.
using Owned = std::unique_ptr<picoproto_ctx_s, void (*)(picoproto_ctx_s*)>;

Owned newMessage()
{
    return {picoproto_new("Message"), picoproto_free};
}

DecodedMessage decoded(const Owned& message)
{
    const auto read = decodedRaw(QByteArray::fromStdString(picoproto_bytes(message.get())));
    EXPECT_TRUE(read.has_value());
    return read.value_or(DecodedMessage());
}

/// A message that belongs to the caller, with one number in field 1.
picoproto_ctx_s* messageOf(std::uint64_t value)
{
    picoproto_ctx_s* const message = picoproto_new("Inner");
    picoproto_write_varint_field(message, 1, value);
    return message;
}

TEST(Picoproto, BeginsWithAnEmptyMessage)
{
    EXPECT_EQ(picoproto_bytes(newMessage().get()), "");
}

TEST(Picoproto, FreesNullAsNothing)
{
    picoproto_free(nullptr);
}

TEST(Picoproto, WritesNumbersOfAnySize)
{
    const Owned message = newMessage();
    constexpr std::array<std::uint64_t, 8> numbers = {
        0,
        1,
        127,
        128,
        std::numeric_limits<std::uint32_t>::max(),
        std::uint64_t(1) << 63,
        static_cast<std::uint64_t>(std::int64_t(-1)), // as a negative number goes, in ten bytes
        std::numeric_limits<std::uint64_t>::max() - 1};
    for (const std::uint64_t number : numbers) {
        picoproto_write_varint_field(message.get(), 3, number);
    }
    EXPECT_THAT(decoded(message).values,
                ElementsAre(Pair("3", "0"), Pair("3", "1"), Pair("3", "127"), Pair("3", "128"), Pair("3", "4294967295"),
                            Pair("3", "9223372036854775808"), Pair("3", "18446744073709551615"),
                            Pair("3", "18446744073709551614")));
}

TEST(Picoproto, WritesNumbersInTheFewestBytes)
{
    const Owned message = newMessage();
    picoproto_write_varint_field(message.get(), 1, 300);
    EXPECT_EQ(picoproto_bytes(message.get()), "\x08\xac\x02");
}

TEST(Picoproto, WritesFieldsOfAnyNumber)
{
    const Owned message = newMessage();
    picoproto_write_varint_field(message.get(), 1, 5);
    picoproto_write_varint_field(message.get(), 15, 6);
    picoproto_write_varint_field(message.get(), 16, 7);           // from here on a field's number takes two bytes
    picoproto_write_varint_field(message.get(), 536'870'911U, 8); // the largest there is
    EXPECT_THAT(decoded(message).values,
                ElementsAre(Pair("1", "5"), Pair("15", "6"), Pair("16", "7"), Pair("536870911", "8")));
}

TEST(Picoproto, WritesTexts)
{
    const Owned message = newMessage();
    picoproto_write_string_field(message.get(), 1, "hello");
    picoproto_write_string_field(message.get(), 2, "");
    picoproto_write_string_field(message.get(), 3, "h\xc3\xa4\n\"");
    EXPECT_THAT(decoded(message).values,
                ElementsAre(Pair("1", "\"hello\""), Pair("2", "\"\""), Pair("3", R"("h\303\244\n\"")")));
    EXPECT_EQ(picoproto_bytes(message.get()), "\x0a\x05hello\x12" + std::string(1, '\0') + "\x1a\x05h\xc3\xa4\n\"");
}

TEST(Picoproto, WritesLongTexts)
{
    const Owned message = newMessage();
    const std::string text(100'000, '~');
    picoproto_write_string_field(message.get(), 1, text.c_str());
    EXPECT_EQ(decoded(message).value("1"), text);
}

TEST(Picoproto, LeavesANullTextOut)
{
    const Owned message = newMessage();
    picoproto_write_varint_field(message.get(), 1, 1);
    picoproto_write_string_field(message.get(), 2, nullptr);
    picoproto_write_varint_field(message.get(), 3, 3);
    EXPECT_THAT(decoded(message).values, ElementsAre(Pair("1", "1"), Pair("3", "3")));
}

// Whether what is taken is freed, and what isn't taken is left, is seen by the address sanitizer.

TEST(Picoproto, TakesAnEmbeddedMessage)
{
    const Owned message = newMessage();
    picoproto_write_embedded_message_field(message.get(), 2, messageOf(7), 1);
    EXPECT_EQ(decoded(message).one("2").value("1"), "7");
}

TEST(Picoproto, LeavesAnEmbeddedMessageToItsOwnerWhereItIsNotToTakeIt)
{
    const Owned message = newMessage();
    const Owned inner(messageOf(7), picoproto_free);
    picoproto_write_embedded_message_field(message.get(), 2, inner.get(), 0);
    picoproto_write_varint_field(inner.get(), 1, 8); // Goes on, and into its next copy alone.
    picoproto_write_embedded_message_field(message.get(), 2, inner.get(), 0);
    const auto copies = decoded(message).all("2");
    ASSERT_EQ(copies.size(), 2U);
    EXPECT_THAT(copies[0].values, ElementsAre(Pair("1", "7")));
    EXPECT_THAT(copies[1].values, ElementsAre(Pair("1", "7"), Pair("1", "8")));
}

TEST(Picoproto, EmbedsAnEmptyMessage)
{
    const Owned message = newMessage();
    picoproto_write_embedded_message_field(message.get(), 2, picoproto_new("Empty"), 1);
    EXPECT_EQ(picoproto_bytes(message.get()), std::string("\x12\0", 2));
}

TEST(Picoproto, EmbedsMessagesInMessages)
{
    picoproto_ctx_s* message = messageOf(9);
    constexpr int levels = 8; // the reader goes no deeper than 10
    for (int level = 0; level < levels; ++level) {
        picoproto_ctx_s* const outer = picoproto_new("Outer");
        picoproto_write_embedded_message_field(outer, 2, message, 1);
        message = outer;
    }
    const Owned outermost(message, picoproto_free);
    DecodedMessage read = decoded(outermost);
    for (int level = 0; level < levels; ++level) {
        EXPECT_THAT(read.values, IsEmpty());
        read = DecodedMessage(read.one("2"));
    }
    EXPECT_EQ(read.value("1"), "9");
}

TEST(Picoproto, WritesRepeatedMessagesInTheirOrder)
{
    const Owned message = newMessage();
    const std::array<picoproto_ctx_s*, 3> inners = {messageOf(1), messageOf(2), messageOf(3)};
    picoproto_write_repeated_embedded_message_field(message.get(), 5, inners.data(), inners.size(), 1);
    const auto read = decoded(message).all("5");
    ASSERT_EQ(read.size(), 3U);
    EXPECT_EQ(read[0].value("1"), "1");
    EXPECT_EQ(read[1].value("1"), "2");
    EXPECT_EQ(read[2].value("1"), "3");
}

TEST(Picoproto, LeavesRepeatedMessagesToTheirOwnerWhereItIsNotToTakeThem)
{
    const Owned message = newMessage();
    const Owned inner(messageOf(1), picoproto_free);
    const std::array<picoproto_ctx_s*, 2> twice = {inner.get(), inner.get()};
    picoproto_write_repeated_embedded_message_field(message.get(), 5, twice.data(), twice.size(), 0);
    EXPECT_EQ(decoded(message).all("5").size(), 2U);
    EXPECT_EQ(picoproto_bytes(inner.get()), "\x08\x01");
}

TEST(Picoproto, WritesNothingForNoRepeatedMessages)
{
    const Owned message = newMessage();
    picoproto_write_repeated_embedded_message_field(message.get(), 5, nullptr, 0, 1);
    EXPECT_EQ(picoproto_bytes(message.get()), "");
}

} // namespace
} // namespace kovalin::test
