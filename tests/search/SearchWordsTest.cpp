#include "search/SearchWords.h"

#include "support/PlainPrefixSearch.h"
#include "support/QtPrinting.h"

#include <QtCore/QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace kovalin::test;

namespace {

QStringList words(const QString& text)
{
    return SearchWords(text).toStringList();
}

} // namespace

TEST(SearchWords, SplitsAtPunctuationSpacesAndTabs)
{
    EXPECT_EQ(words(u"a-b_c.d,e;f(g)h\"i!j?k/l\\m*n&o#p%q@r:s[t]u{v}w"_s).size(), 23);
    EXPECT_EQ(words(u"one two\tthree\u00A0four\u2003five\u3000six"_s),
              QStringList({u"one"_s, u"two"_s, u"three"_s, u"four"_s, u"five"_s, u"six"_s}));
}

TEST(SearchWords, KeepsSymbolsAndLineBreaksInWords)
{
    EXPECT_EQ(words(u"a+b"_s), QStringList{u"a+b"_s});
    EXPECT_EQ(words(u"a\nb"_s), QStringList{u"a\nb"_s});
    EXPECT_EQ(words(u"a\rb"_s), QStringList{u"a\rb"_s});
    EXPECT_EQ(words(u"$1 = ^x^ `y` ~z|"_s), QStringList({u"$1"_s, u"="_s, u"^x^"_s, u"`y`"_s, u"~z|"_s}));
    EXPECT_EQ(words(u"a\u200Bb\u2028c"_s), QStringList{u"a\u200Bb\u2028c"_s});
    EXPECT_EQ(words(u"♥ 🙂"_s), QStringList({u"♥"_s, u"🙂"_s}));
}

TEST(SearchWords, TakesOutStraightApostrophesOnly)
{
    EXPECT_EQ(words(u"Don't"_s), QStringList{u"dont"_s});
    EXPECT_EQ(words(u"'tis rock 'n' roll"_s), QStringList({u"tis"_s, u"rock"_s, u"n"_s, u"roll"_s}));
    EXPECT_EQ(words(u"don’t"_s), QStringList({u"don"_s, u"t"_s}));
    EXPECT_EQ(words(u"'"_s), QStringList());
}

TEST(SearchWords, LowersLettersOfEveryScript)
{
    EXPECT_EQ(words(u"ÀÉÎ ПРИВЕТ ΑΒΓ Ǆ ẞ"_s), QStringList({u"àéî"_s, u"привет"_s, u"αβγ"_s, u"ǆ"_s, u"ß"_s}));
    EXPECT_EQ(words(u"I İ"_s), QStringList({u"i"_s, u"i̇"_s}));
    EXPECT_EQ(words(u"𐐀"_s), QStringList{u"𐐨"_s});
}

TEST(SearchWords, GivesACapitalSigmaItsFormByPlace)
{
    EXPECT_EQ(words(u"ΟΔΟΣ"_s), QStringList{u"οδος"_s});
    EXPECT_EQ(words(u"ΟΔΟΣ ΣΟΣ"_s), QStringList({u"οδος"_s, u"σος"_s}));
    EXPECT_EQ(words(u"ΣΑΣ'Α Σ"_s), QStringList({u"σασα"_s, u"σ"_s}));
    EXPECT_EQ(words(u"οδοσ"_s), QStringList{u"οδοσ"_s});
}

TEST(SearchWords, AreNoneInATextWithoutWords)
{
    for (const auto& text : {u""_s, u" "_s, u"\t \u00A0"_s, u"?!… — “”"_s, u"'''"_s}) {
        EXPECT_TRUE(SearchWords(text).isEmpty());
        EXPECT_EQ(SearchWords(text).size(), 0);
        EXPECT_EQ(words(text), QStringList());
    }
}

TEST(SearchWords, SplitBeyondTheFirstPlane)
{
    EXPECT_EQ(words(u"a\U00010100b"_s), QStringList({u"a"_s, u"b"_s})); // a word separator of Linear B
    EXPECT_EQ(words(u"a\U0001F600b"_s), QStringList{u"a\U0001F600b"_s});
}

TEST(SearchWords, TakeASurrogateWithoutItsPartnerForALetter)
{
    const QString lone = QString(QChar(0xD83D)) + u"a "_s + QChar(0xDE00);
    EXPECT_EQ(words(lone), QStringList({QString(QChar(0xD83D)) + u'a', QString(QChar(0xDE00))}));
}

TEST(SearchWords, OutliveTheTextAndTheObjectTheyWereCopiedFrom)
{
    auto original = std::make_unique<SearchWords>(u"Happy Birthday"_s);
    const SearchWords copy = *original;
    original.reset();
    EXPECT_EQ(copy.toStringList(), QStringList({u"happy"_s, u"birthday"_s}));
}

// The regular expression engine knows the categories from tables of its own.
TEST(SearchWords, SplitAtTheSameCharactersAsTheRegularExpressionEngine)
{
    static const QRegularExpression separator(u"^[\\p{P}\\p{Zs}\\t]$"_s,
                                              QRegularExpression::UseUnicodePropertiesOption);
    for (char32_t character = 1; character <= 0x10FFFF; ++character) {
        if (character == 0x20000) {
            character = 0xE0000; // ideographs only, and unassigned planes
        }
        // Unassigned to us may be assigned to the other, if its Unicode is younger.
        if (character == U'\'' || QChar::isSurrogate(character) ||
            QChar::category(character) == QChar::Other_NotAssigned) {
            continue;
        }
        const QString text = QString::fromUcs4(&character, 1);
        const bool splits = SearchWords(u"a"_s + text + u"b"_s).size() == 2;
        ASSERT_EQ(splits, separator.match(text).hasMatch()) << std::hex << static_cast<quint32>(character);
    }
}
