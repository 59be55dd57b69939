#include "learned_search/DictionaryIndex.h"

#include "learned_search/search_model_generated.h"
#include "support/GeneratedModels.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

using namespace vole::learned_search;
using namespace vole::learned_search::test;

namespace {

/// An index over a dictionary of just these keys, in this order.
class Dictionary final {
public:
    explicit Dictionary(const std::vector<std::string>& keys)
        : _file([&keys] {
            ModelContent content;
            for (const std::string& key : keys) {
                content.keys->push_back({key});
            }
            return content.toFile();
        }())
        , _model(*GetSearchModel(_file.data()))
        , index(_model)
    {
    }

    [[nodiscard]] std::string find(const std::string& key) const
    {
        const auto* entry = index.find(key);
        return entry ? entry->word()->str() : "none";
    }

    /// How often the format's own lookup and the index disagree on a key.
    [[nodiscard]] int disagreements(const std::vector<std::string>& keys) const
    {
        int count = 0;
        for (const std::string& key : keys) {
            count += index.find(key) != _model.entryInfoForWords()->LookupByKey(key.c_str());
        }
        return count;
    }

    /// The keys that begin with the prefix, by the index.
    [[nodiscard]] std::vector<std::string> keysWith(const std::string& prefix) const
    {
        std::vector<std::string> keys;
        const auto [first, last] = index.rowsThatMayBeginWith(prefix);
        for (std::size_t row = first; row < last; ++row) {
            keys.push_back(_model.entryInfoForWords()->Get(static_cast<flatbuffers::uoffset_t>(row))->word()->str());
        }
        return keys;
    }

private:
    Bytes _file;
    const SearchModel& _model;

public:
    DictionaryIndex index;
};

TEST(DictionaryIndex, FindsKeysOfAllLengthsAroundTheEightBytesThatItCopies)
{
    const std::vector<std::string> keys{"a",         "abcdefg",    "abcdefgh", "abcdefgh1", "abcdefgh2",
                                        "abcdefghi", "abcdefgh|i", "b",        "zzzzzzzz",  "zzzzzzzzzzzzzzzzz"};
    const Dictionary dictionary(keys);
    ASSERT_TRUE(dictionary.index.isSorted());
    for (const std::string& key : keys) {
        EXPECT_EQ(dictionary.find(key), key);
    }
    for (const std::string missing : {"", "A", "ab", "abcdef", "abcdefghj", "abcdefgh0", "abcdefgh|", "zzzzzzz", "~"}) {
        EXPECT_EQ(dictionary.find(missing), "none") << missing;
    }
}

TEST(DictionaryIndex, TellsTheRowsOfAPrefix)
{
    const Dictionary dictionary({"good", "goodness", "good|mor", "good|morning", "good|morrow", "great"});
    EXPECT_EQ(dictionary.keysWith("good|mor"), (std::vector<std::string>{"good|mor", "good|morning", "good|morrow"}));
    EXPECT_EQ(dictionary.keysWith("good").size(), 5U);
    EXPECT_EQ(dictionary.keysWith("good|morn"), std::vector<std::string>{"good|morning"});
    EXPECT_EQ(dictionary.keysWith("g").size(), 6U);
    EXPECT_TRUE(dictionary.keysWith("goof").empty());
    EXPECT_TRUE(dictionary.keysWith("h").empty());
    EXPECT_TRUE(dictionary.keysWith("a").empty());
}

TEST(DictionaryIndex, ComparesBytesAsUnsigned)
{
    const Dictionary dictionary({"a", "z", "\xC3\xA9", "\xFF"});
    ASSERT_TRUE(dictionary.index.isSorted());
    EXPECT_EQ(dictionary.find("\xC3\xA9"), "\xC3\xA9");
    EXPECT_EQ(dictionary.keysWith("\xFF"), std::vector<std::string>{"\xFF"});
}

TEST(DictionaryIndex, SearchesAnUnsortedDictionaryLikeTheFormat)
{
    const std::vector<std::string> keys{"c", "a", "d", "b", "f", "e"};
    const Dictionary dictionary(keys);
    EXPECT_FALSE(dictionary.index.isSorted());
    EXPECT_EQ(dictionary.disagreements(keys), 0);
    EXPECT_EQ(dictionary.keysWith("a").size(), keys.size()) << "any row may have the prefix";
}

TEST(DictionaryIndex, SearchesADictionaryWithAKeyTwiceLikeTheFormat)
{
    const std::vector<std::string> keys{"a", "b", "b", "b", "c", "d"};
    const Dictionary dictionary(keys);
    EXPECT_FALSE(dictionary.index.isSorted());
    EXPECT_EQ(dictionary.disagreements(keys), 0);
}

TEST(DictionaryIndex, TakesAKeyToEndAtItsFirstZero)
{
    const std::string withZero("a\0b", 3);
    EXPECT_EQ(Dictionary({"a", "b"}).find(withZero), "a");
    EXPECT_EQ(Dictionary({"b", "a", "c"}).disagreements({withZero}), 0);
}

TEST(DictionaryIndex, FindsNothingWhereThereIsNothing)
{
    EXPECT_EQ(Dictionary(std::vector<std::string>()).find("a"), "none");
    ModelContent without;
    without.keys.reset();
    const Bytes file = without.toFile();
    const DictionaryIndex index(*GetSearchModel(file.data()));
    EXPECT_EQ(index.find("a"), nullptr);
    EXPECT_EQ(index.rowsThatMayBeginWith("a").last, 0U);
}

std::string numberedKey(std::size_t number)
{
    char text[32];
    std::snprintf(text, sizeof text, "common|%06zu", number);
    return text;
}

/// Sizes below and beyond what the index copies every key's beginning of.
class DictionaryIndexOfSize : public testing::TestWithParam<std::size_t> {};

TEST_P(DictionaryIndexOfSize, FindsEachKeyAndNothingElse)
{
    std::vector<std::string> keys;
    std::vector<std::string> asked;
    for (std::size_t number = 0; number < GetParam(); ++number) {
        keys.push_back(numberedKey(2 * number + 1));
        asked.push_back(numberedKey(2 * number));
    }
    asked.insert(asked.end(), keys.begin(), keys.end());
    asked.push_back(numberedKey(2 * GetParam()));
    const Dictionary dictionary(keys);
    ASSERT_TRUE(dictionary.index.isSorted());
    EXPECT_EQ(dictionary.disagreements(asked), 0);
    EXPECT_EQ(dictionary.keysWith("common|").size(), keys.size());
    EXPECT_EQ(dictionary.keysWith(keys[GetParam() / 2]).size(), 1U);
    EXPECT_EQ(dictionary.keysWith("common|00000").size(), std::min<std::size_t>(GetParam(), 5));
}

INSTANTIATE_TEST_SUITE_P(Sizes, DictionaryIndexOfSize,
                         testing::Values(1, 2, 3, 1000, 131'071, 131'072, 150'000, 300'000));

} // namespace
