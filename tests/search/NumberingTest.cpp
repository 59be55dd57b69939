#include "search/Numbering.h"

#include <QtCore/QString>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(NumberTable, TellsThingsOfOneHashApart)
{
    NumberTable table;
    const QStringList things{u"a"_s, u"b"_s, u"c"_s};
    quint32 next = 0;
    const auto numberOf = [&](const QString& thing) {
        const quint32 number = table.numberOf(7, next, [&](quint32 known) { return things[known] == thing; });
        next = std::max(next, number + 1);
        return number;
    };
    EXPECT_EQ(numberOf(u"a"_s), 0U);
    EXPECT_EQ(numberOf(u"b"_s), 1U);
    EXPECT_EQ(numberOf(u"a"_s), 0U);
    EXPECT_EQ(numberOf(u"c"_s), 2U);
    EXPECT_EQ(numberOf(u"b"_s), 1U);
}

TEST(NumberTable, AsksOnlyAboutNumbersThatItGave)
{
    NumberTable table;
    table.reserve(3);
    for (quint32 thing = 0; thing < 1000; ++thing) {
        EXPECT_EQ(table.numberOf(thing % 10, thing,
                                 [thing](quint32 known) {
                                     EXPECT_LT(known, thing);
                                     EXPECT_EQ(known % 10, thing % 10);
                                     return false;
                                 }),
                  thing);
    }
}

TEST(TextNumbering, NumbersTextsInTheOrderOfTheirFirstMeeting)
{
    TextNumbering numbering;
    EXPECT_EQ(numbering.count(), 0U);
    EXPECT_EQ(numbering.numberOf(u"b"), 0U);
    EXPECT_EQ(numbering.numberOf(u""), 1U);
    EXPECT_EQ(numbering.numberOf(u"🙂"), 2U);
    EXPECT_EQ(numbering.numberOf(u"b"), 0U);
    EXPECT_EQ(numbering.numberOf(u""), 1U);
    EXPECT_EQ(numbering.count(), 3U);
    EXPECT_EQ(numbering.text(0).toString(), u"b"_s);
    EXPECT_EQ(numbering.text(1).toString(), u""_s);
    EXPECT_EQ(numbering.text(2).toString(), u"🙂"_s);
    EXPECT_EQ(numbering.totalLength(), 3U);
}

TEST(TextNumbering, KeepsItsNumbersWhileItGrows)
{
    TextNumbering numbering;
    for (int round = 0; round < 2; ++round) {
        for (quint32 i = 0; i < 5000; ++i) {
            ASSERT_EQ(numbering.numberOf(QString::number(i)), i);
        }
    }
    EXPECT_EQ(numbering.count(), 5000U);
    EXPECT_EQ(numbering.text(4999).toString(), u"4999"_s);
}
