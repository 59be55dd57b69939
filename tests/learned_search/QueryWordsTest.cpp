#include "learned_search/LearnedSearchClassifierImpl.h"
#include "support/GeneratedModels.h"
#include "support/PlainClassifier.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <clocale>
#include <locale>

using namespace vole::learned_search;
using namespace vole::learned_search::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Words = std::vector<std::string>;

Words wordsOf(const std::string& query)
{
    return LearnedSearchClassifierImpl::queryToPreprocessedWords(query);
}

std::string ngramOf(const Words& words)
{
    return LearnedSearchClassifierImpl::wordsToNgramString(words.begin(), words.end());
}

/// Each byte alone, as one of several, inside of a word and between words.
std::vector<std::string> queriesOfEveryByte()
{
    std::vector<std::string> queries;
    for (int value = 0; value < 256; ++value) {
        const std::string byte(1, static_cast<char>(value));
        for (const std::string& query : {byte, byte + byte, "a" + byte + "b", "A" + byte + "B", byte + "a", "a" + byte,
                                         "a " + byte + " b", "a " + byte + "b" + byte}) {
            queries.push_back(query);
        }
    }
    return queries;
}

std::vector<Words> wordsOfAll(const std::vector<std::string>& queries)
{
    std::vector<Words> words;
    for (const std::string& query : queries) {
        words.push_back(wordsOf(query));
    }
    return words;
}

/// Puts the process's locales back, the C library's and the C++ one, when a test ends.
class LocaleGuard final {
public:
    LocaleGuard() = default;
    ~LocaleGuard()
    {
        std::locale::global(_locale);
        std::setlocale(LC_ALL, _name.c_str());
    }
    LocaleGuard(const LocaleGuard&) = delete;
    LocaleGuard& operator=(const LocaleGuard&) = delete;

private:
    std::string _name = std::setlocale(LC_ALL, nullptr);
    std::locale _locale;
};

/// A host's idea of characters in which all is otherwise: "e" is white space, blanks and all else are letters.
class OddCharacters final : public std::ctype<char> {
public:
    OddCharacters()
        : std::ctype<char>(table().data())
    {
    }

protected:
    char do_tolower(char) const override { return 'x'; }

private:
    static const std::array<mask, table_size>& table()
    {
        static const auto classes = [] {
            std::array<mask, table_size> all{};
            all.fill(alpha | digit | lower);
            all['e'] = space;
            return all;
        }();
        return classes;
    }
};

} // namespace

TEST(QueryWords, OfATextWithoutLettersOrDigitsAreNone)
{
    for (const char* query : {"", " ", " \t\n\v\f\r ", "?", "?!... --- ,", "é", "日本語", "❤️ 👍🏽", "| |"}) {
        EXPECT_THAT(wordsOf(query), IsEmpty()) << query;
    }
}

TEST(QueryWords, AreLowerCaseWithoutPunctuation)
{
    EXPECT_THAT(wordsOf("Hello, WORLD!"), ElementsAre("hello", "world"));
    EXPECT_THAT(wordsOf("abcdefghijklmnopqrstuvwxyz ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123456789"),
                ElementsAre("abcdefghijklmnopqrstuvwxyz", "abcdefghijklmnopqrstuvwxyz", "0123456789"));
}

TEST(QueryWords, ArentSplitByPunctuation)
{
    EXPECT_THAT(wordsOf("don't sun-set"), ElementsAre("dont", "sunset"));
    EXPECT_THAT(wordsOf("good|morning"), ElementsAre("goodmorning"));
}

TEST(QueryWords, LoseTheirCharactersBeyondAscii)
{
    EXPECT_THAT(wordsOf("café naïve"), ElementsAre("caf", "nave"));
    EXPECT_THAT(wordsOf("a\u00A0b \u0130stanbul"), ElementsAre("ab", "stanbul")) << "a no-break space is none here";
}

TEST(QueryWords, AreSeparatedByWhiteSpaceInAnyNumber)
{
    EXPECT_THAT(wordsOf("a b\tc\nd\ve\ff\rg"), ElementsAre("a", "b", "c", "d", "e", "f", "g"));
    EXPECT_THAT(wordsOf(" \t a \n\n b\r\n\v\f c \t"), ElementsAre("a", "b", "c"));
}

TEST(QueryWords, SkipTokensOfWhichNothingIsLeft)
{
    EXPECT_THAT(wordsOf("? a ... é b !"), ElementsAre("a", "b"));
}

TEST(QueryWords, KeepOrderAndRepetitions)
{
    EXPECT_THAT(wordsOf("dog cat Dog DOG!"), ElementsAre("dog", "cat", "dog", "dog"));
}

TEST(QueryWords, GoOnBehindAZero)
{
    EXPECT_THAT(wordsOf(std::string("a\0b \0 c\0", 8)), ElementsAre("ab", "c"));
}

TEST(QueryWords, OfEveryByteAreAsByTheBook)
{
    for (const std::string& query : queriesOfEveryByte()) {
        EXPECT_EQ(wordsOf(query), PlainClassifier::queryToPreprocessedWords(query)) << testing::PrintToString(query);
    }
}

TEST(QueryWords, OfAnyBytesAreAsByTheBook)
{
    Random random(41);
    for (int query = 0; query < 3000; ++query) {
        std::string bytes;
        for (std::size_t length = random.below(60); length > 0; --length) {
            // Half of them white space, letters and the like, so that words come about.
            bytes += random.chance(0.5) ? static_cast<char>(random.below(256)) : " \tAbz09-|"[random.below(9)];
        }
        ASSERT_EQ(wordsOf(bytes), PlainClassifier::queryToPreprocessedWords(bytes)) << testing::PrintToString(bytes);
    }
}

TEST(QueryWords, AreUnlimitedInNumberAndLength)
{
    Words wanted;
    std::string query;
    for (int word = 0; word < 10'000; ++word) {
        wanted.push_back(fmt::format("w{}", word));
        query += wanted.back() + (word % 3 == 0 ? " \t" : "\n");
    }
    EXPECT_EQ(wordsOf(query), wanted);

    EXPECT_THAT(wordsOf(std::string(1'000'000, 'Q')), ElementsAre(std::string(1'000'000, 'q')));
    std::string punctuation(1'000'000, '?');
    punctuation.back() = 'a';
    EXPECT_THAT(wordsOf(punctuation), ElementsAre("a"));
}

TEST(QueryWords, DontFollowTheHostsCLocale)
{
    const std::vector<std::string> queries = queriesOfEveryByte();
    const std::vector<Words> wanted = wordsOfAll(queries);
    const LocaleGuard guard;
    bool tried = false;
    // Locales of one byte a character, in which bytes beyond ASCII are letters. In the Turkish one "I" isn't that of "i".
    for (const char* name : {"tr_TR.ISO-8859-9", "tr_TR", "de_DE.ISO-8859-1", "de_DE", "en_US.ISO-8859-1",
                             "en_GB.ISO-8859-1", "fr_FR.ISO-8859-1", "C.UTF-8"}) {
        if (!std::setlocale(LC_ALL, name)) {
            continue;
        }
        tried = tried || std::isalnum(0xE9) != 0;
        EXPECT_EQ(wordsOfAll(queries), wanted) << name;
    }
    if (!tried) {
        GTEST_SKIP() << "the system has no locale with letters beyond ASCII in one byte";
    }
}

TEST(QueryWords, DontFollowTheHostsCppLocale)
{
    const std::vector<std::string> queries = queriesOfEveryByte();
    const std::vector<Words> wanted = wordsOfAll(queries);
    const LocaleGuard guard;
    std::locale::global(std::locale(std::locale::classic(), new OddCharacters));

    EXPECT_EQ(wordsOfAll(queries), wanted);
    EXPECT_THAT(wordsOf("Eels meet"), ElementsAre("eels", "meet"));
}

TEST(NgramString, JoinsWordsByTheDelimiter)
{
    EXPECT_EQ(ngramOf({"good", "morning", "world"}), "good|morning|world");
    EXPECT_EQ(ngramOf({"good"}), "good");
    EXPECT_EQ(ngramOf({"", "a|b", ""}), "|a|b|");
}

TEST(NgramString, OfAnEmptyRangeIsEmpty)
{
    const Words words{"good", "morning"};

    EXPECT_EQ(ngramOf({}), "");
    EXPECT_EQ(LearnedSearchClassifierImpl::wordsToNgramString(words.begin() + 1, words.begin() + 1), "");
    EXPECT_EQ(LearnedSearchClassifierImpl::wordsToNgramString(words.end(), words.begin()), "")
        << "of less than none too";
}

TEST(NgramString, TakesAPartOfTheWords)
{
    const Words words{"a", "b", "c", "d"};

    EXPECT_EQ(LearnedSearchClassifierImpl::wordsToNgramString(words.begin() + 1, words.begin() + 3), "b|c");
    EXPECT_EQ(LearnedSearchClassifierImpl::wordsToNgramString(words.begin() + 3, words.end()), "d");
}

TEST(NgramString, IsShownWithBlanksForDelimiters)
{
    EXPECT_EQ(LearnedSearchClassifierImpl::ngramToString("good|morning"), "good morning");
    EXPECT_EQ(LearnedSearchClassifierImpl::ngramToString("dog"), "dog");
    EXPECT_EQ(LearnedSearchClassifierImpl::ngramToString("|a||b|"), " a  b ");
    EXPECT_EQ(LearnedSearchClassifierImpl::ngramToString(""), "");
}
