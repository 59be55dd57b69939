#include "platform/foundation/PackedStrings.h"

#include <gtest/gtest.h>

#include <utility>

using namespace Qt::StringLiterals;
using kovalin::platform::PackedStrings;

namespace {

const QString latin = u"a\u00E9\u00FF"_s;
const QString greek = u"αβγ"_s;
const QString emoji = u"🙂"_s;

} // namespace

TEST(PackedStrings, GiveBackWhatWentIn)
{
    const QString loneSurrogate = u"x"_s + QChar(0xD83D);
    const QString withNull = u"a"_s + QChar(0) + u"b"_s;
    const PackedStrings strings{latin, std::nullopt, greek, QString(), u"x"_s, emoji, loneSurrogate, withNull};

    EXPECT_EQ(strings.at(0), latin);
    EXPECT_EQ(strings.at(1), std::nullopt);
    EXPECT_EQ(strings.at(2), greek);
    ASSERT_TRUE(strings.at(3));
    EXPECT_TRUE(strings.at(3)->isEmpty());
    EXPECT_EQ(strings.at(4), u"x"_s);
    EXPECT_EQ(strings.at(5), emoji);
    EXPECT_EQ(strings.at(6), loneSurrogate);
    EXPECT_EQ(strings.at(7), withNull);
    EXPECT_EQ(strings.at(8), std::nullopt);
}

TEST(PackedStrings, AreAllAbsentAtFirst)
{
    const PackedStrings strings;
    EXPECT_EQ(strings.at(0), std::nullopt);
    EXPECT_EQ(strings.viewAt(0), std::nullopt);
    EXPECT_EQ(strings.hashAt(0), 0U);
    EXPECT_FALSE(strings.hasSameAt(0, strings));
}

TEST(PackedStrings, ShowTheirTextWithoutACopy)
{
    const PackedStrings strings{u"odd"_s, greek, std::nullopt};
    EXPECT_EQ(strings.viewAt(0)->toString(), u"odd"_s);
    EXPECT_EQ(strings.viewAt(1)->toString(), greek);
    EXPECT_EQ(strings.viewAt(2), std::nullopt);
    EXPECT_EQ(strings.viewAt(1)->data(), strings.viewAt(1)->data());
}

TEST(PackedStrings, CompareByTextWhateverStandsBeside)
{
    const PackedStrings one{u"same"_s, greek, u"a"_s, std::nullopt, QString()};
    const PackedStrings other{u"same"_s, greek, u"b"_s, std::nullopt, QString()};
    const PackedStrings wide{u"same"_s, emoji, greek};

    EXPECT_TRUE(one.hasSameAt(0, other));
    EXPECT_TRUE(one.hasSameAt(1, other));
    EXPECT_FALSE(one.hasSameAt(2, other));
    EXPECT_FALSE(one.hasSameAt(3, other)) << "absence equals nothing";
    EXPECT_TRUE(one.hasSameAt(4, other));
    EXPECT_TRUE(one.hasSameAt(0, wide));
    EXPECT_FALSE(one.hasSameAt(1, wide));
    EXPECT_FALSE(one.hasSameAt(0, PackedStrings{u"Same"_s}));
    EXPECT_FALSE(one.hasSameAt(0, PackedStrings{u"sam"_s}));

    EXPECT_EQ(one.hashAt(0), wide.hashAt(0));
    EXPECT_EQ(one.hashAt(1), other.hashAt(1));
    EXPECT_NE(one.hashAt(0), one.hashAt(1));
    EXPECT_EQ(one.hashAt(3), 0U);
}

TEST(PackedStrings, DoNotTakeAWideTextForANarrowOneOfTheSameBytes)
{
    // "\u4161" has the bytes of "aA".
    const PackedStrings wide{QString(QChar(0x4161))};
    const PackedStrings narrow{u"aA"_s};
    EXPECT_FALSE(wide.hasSameAt(0, narrow));
}

TEST(PackedStrings, AreCopiedAndMovedLikeValues)
{
    const PackedStrings original{latin, greek};
    PackedStrings copy = original;
    EXPECT_EQ(copy.at(1), greek);
    EXPECT_NE(copy.viewAt(0)->data(), original.viewAt(0)->data());

    const PackedStrings moved = std::move(copy);
    EXPECT_EQ(moved.at(0), latin);

    PackedStrings assigned{u"old"_s};
    assigned = original;
    assigned = *&assigned;
    EXPECT_EQ(assigned.at(0), latin);
    assigned = PackedStrings();
    EXPECT_EQ(assigned.at(0), std::nullopt);
    EXPECT_EQ(original.at(0), latin);

    const PackedStrings copyOfNone = PackedStrings();
    EXPECT_EQ(copyOfNone.at(0), std::nullopt);
}
