#include "events/WireFault.h"

#include "support/QtPrinting.h"

#include <gtest/gtest.h>

#include <string>

namespace kovalin::test {
namespace {

using analytics::kDeepestLevel;
using analytics::kMostFields;
using analytics::MessageShape;

/// message { string text = 1; uint32 number = 2; repeated Inner inner = 3; } with Inner { string name = 1; }
class WireFault : public testing::Test {
protected:
    /// Empty where there is none.
    [[nodiscard]] QString faultOf(const QByteArray& bytes) const
    {
        return analytics::wireFault(bytes, shape).value_or(QString());
    }

    const MessageShape inner{{{1, {.name = QStringLiteral("name"), .isText = true}}}};
    const MessageShape shape{{{1, {.name = QStringLiteral("text"), .isText = true}},
                              {2, {.name = QStringLiteral("number")}},
                              {3, {.name = QStringLiteral("inner"), .isRepeated = true, .message = &inner}}}};
};

/// `count` groups, each in the one before.
QByteArray groups(int count)
{
    return QByteArray(count, '\x4b') + QByteArray(count, '\x4c'); // field 9 begins, field 9 ends
}

TEST_F(WireFault, IsNoneInWhatIsWellFormed)
{
    const QByteArray good[] = {
        {},
        {"\x0a\x02hi\x10\x96\x01\x1a\x03\x0a\x01n\x1a\x00", 14},
        {"\x10\xff\xff\xff\xff\xff\xff\xff\xff\xff\x01", 11}, // the longest number
        {"\x29"
         "12345678"
         "\x25"
         "1234",
         14},                    // undeclared: 64 and 32 bits
        {"\x22\x02\xff\xfe", 4}, // undeclared bytes needn't be a text
        {"\x08\x05\x1d"
         "1234",
         7},                             // declared with other wire types
        {"\xfa\xff\xff\xff\x0f\x00", 6}, // the greatest field number
    };
    for (const QByteArray& bytes : good) {
        EXPECT_EQ(faultOf(bytes), QString()) << bytes.toHex().toStdString();
    }
}

struct Damage {
    const char* name;
    QByteArray bytes;
    const char* fault;
};

class WireFaultIn : public WireFault, public testing::WithParamInterface<Damage> {};

TEST_P(WireFaultIn, IsNamedWithItsPlace)
{
    EXPECT_EQ(faultOf(GetParam().bytes), QString::fromUtf8(GetParam().fault));
}

const Damage damages[] = {
    {"CutTag", "\x80", "ends within a number, at byte 0"},
    {"NoValue", "\x10", "number: ends within a number, at byte 1"},
    {"CutValue", "\x10\x80", "number: ends within a number, at byte 1"},
    {"CutFixed64",
     "\x29"
     "1234567",
     "field 5: ends within a number, at byte 1"},
    {"CutFixed32",
     "\x25"
     "123",
     "field 4: ends within a number, at byte 1"},
    {"NoLength", "\x0a", "text: ends within a number, at byte 1"},
    {"CutText", "\x0a\x03hi", "text: a length of 3 goes beyond the end, at byte 2"},
    {"HugeLength", "\x0a\xff\xff\xff\xff\x0f", "text: a length of 4294967295 goes beyond the end, at byte 6"},
    {"LongLength", "\x0a\xff\xff\xff\xff\xff\xff\xff\xff\xff\x01", "text: a number of more than 5 bytes, at byte 1"},
    {"LongValue", "\x10\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\x01",
     "number: a number of more than 10 bytes, at byte 1"},
    {"LongTag", "\xff\xff\xff\xff\xff\x01", "a number of more than 5 bytes, at byte 0"},
    {"WideTag", "\xff\xff\xff\xff\x7f", "a field number of more than 29 bits, at byte 5"},
    {"NumberZero", "\x02", "a field number of 0, at byte 1"},
    {"WireTypeSix", "\x0e", "text: wire type 6, which there isn't, at byte 1"},
    {"WireTypeSeven", "\x27", "field 4: wire type 7, which there isn't, at byte 1"},
    {"NoUtf8", "\x0a\x02\xc3(", "text: no valid UTF-8, at byte 2"},
    {"CutUtf8", "\x0a\x01\xc3", "text: no valid UTF-8, at byte 2"},
    {"Surrogate", "\x0a\x03\xed\xa0\x80", "text: no valid UTF-8, at byte 2"},
    {"NoUtf8Inside", QByteArray("\x1a\x00\x1a\x03\x0a\x01\xff", 7), "inner#2.name: no valid UTF-8, at byte 6"},
    {"CutInside", "\x1a\x02\x0a\x03ok!", "inner#1.name: a length of 3 goes beyond the end, at byte 4"},
    {"CutTagInside", "\x1a\x01\x80\x10\x01", "inner#1: ends within a number, at byte 2"},
    {"OpenGroup", "\x4b\x10\x01", "field 9: ends within a group, at byte 3"},
    {"OtherGroup", "\x4b\x5c", "field 9: another group ends than has begun, at byte 2"},
    {"ClosedGroup", "\x4c", "a group ends that hasn't begun, at byte 1"},
    {"ClosedGroupInside", "\x1a\x01\x4c", "inner#1: a group ends that hasn't begun, at byte 3"},
};

INSTANTIATE_TEST_SUITE_P(WireFault, WireFaultIn, testing::ValuesIn(damages),
                         [](const auto& damage) { return std::string(damage.param.name); });

TEST_F(WireFault, IsAGroupBelowTheDeepestLevel)
{
    EXPECT_EQ(faultOf(groups(kDeepestLevel)), QString());
    EXPECT_TRUE(faultOf(groups(kDeepestLevel + 1)).endsWith(QStringLiteral("more than 64 levels, at byte 65")));
    EXPECT_TRUE(faultOf(groups(1'000'000)).endsWith(QStringLiteral("more than 64 levels, at byte 65")));
}

TEST_F(WireFault, IsAFieldBeyondTheMost)
{
    const QByteArray field = "\x10\x01";
    EXPECT_EQ(faultOf(field.repeated(kMostFields)), QString());
    EXPECT_EQ(faultOf(field.repeated(kMostFields + 1)),
              QStringLiteral("number: more than 100000 fields, at byte 200001"));
}

} // namespace
} // namespace kovalin::test
