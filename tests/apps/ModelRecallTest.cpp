#include "apps/KovalinProgram.h"
#include "apps/ModelBuilding.h"
#include "learned_search/LearnedSearchClassifier.h"
#include "learned_search/QueryWords.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace kovalin::test;
using namespace vole::learned_search;

namespace {

/// Behind as many elements, or behind all.
template <class Container>
auto endOfFirst(const Container& container, std::size_t count)
{
    return std::next(container.begin(), static_cast<std::ptrdiff_t>(std::min(count, container.size())));
}

using Comic = std::int32_t;

/// FNV-1a: the same numbers with every standard library.
std::uint32_t hashOf(std::string_view text, Comic comic)
{
    std::uint32_t hash = 2'166'136'261U;
    for (const char c : std::string(text) + '#' + std::to_string(comic)) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 16'777'619U;
    }
    return hash ^ (hash >> 15U);
}

/// A sticker as somebody looks for it.
struct Sticker {
    Comic comic;
    std::vector<std::string> tags; // words with blanks between them, each tag once
    std::set<std::string> words;   // of all tags
};

std::vector<std::string> wordsOf(const std::string& text)
{
    const auto words = QueryWords::ofQuery(text);
    std::vector<std::string> list;
    for (std::size_t i = 0; i < words.size(); ++i) {
        list.emplace_back(words.ngram(i, 1));
    }
    return list;
}

std::vector<Sticker> stickersOf(const QString& packsFile)
{
    QFile file(packsFile);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    std::map<Comic, std::set<std::string>> tagsOfComic; // some stickers are in two packs
    const QJsonObject document = QJsonDocument::fromJson(file.readAll()).object();
    for (const QJsonValue pack : document[u"packs"].toArray()) {
        for (const QJsonValue sticker : pack[u"stickers"].toArray()) {
            auto& tags = tagsOfComic[sticker[u"comic_id"].toString().toInt()];
            for (const QJsonValue tag : sticker[u"tags"].toArray()) {
                std::string text;
                for (const std::string& word : wordsOf(tag.toString().toStdString())) {
                    text += (text.empty() ? "" : " ") + word;
                }
                if (!text.empty()) {
                    tags.insert(text);
                }
            }
        }
    }
    std::vector<Sticker> stickers;
    for (const auto& [comic, tags] : tagsOfComic) {
        Sticker& sticker = stickers.emplace_back(Sticker{comic, {tags.begin(), tags.end()}, {}});
        for (const std::string& tag : tags) {
            std::ranges::copy(wordsOf(tag), std::inserter(sticker.words, sticker.words.end()));
        }
    }
    return stickers;
}

struct TypedPair {
    std::string text;
    Comic comic;
    int count;
};

using Texts = std::set<std::string>;

/// Each pair of tags in the order that comes to somebody's mind.
Texts twoTagsOf(const Sticker& sticker)
{
    Texts texts;
    for (std::size_t i = 0; i < sticker.tags.size(); ++i) {
        for (std::size_t j = i + 1; j < sticker.tags.size(); ++j) {
            const bool swapped = hashOf(sticker.tags[i] + '+' + sticker.tags[j], sticker.comic) % 2 == 1;
            texts.insert(sticker.tags[swapped ? j : i] + ' ' + sticker.tags[swapped ? i : j]);
        }
    }
    return texts;
}

/// Some of the ways to type three tags.
Texts threeTagsOf(const Sticker& sticker)
{
    Texts texts;
    for (std::size_t way = 0; way < 3 * sticker.tags.size(); ++way) {
        std::multimap<std::uint32_t, std::string> mixed;
        for (const std::string& tag : sticker.tags) {
            mixed.emplace(hashOf("way " + std::to_string(way) + ' ' + tag, sticker.comic), tag);
        }
        std::string text;
        for (auto entry = mixed.begin(); entry != endOfFirst(mixed, 3); ++entry) {
            text += (text.empty() ? "" : " ") + entry->second;
        }
        texts.insert(text);
    }
    return texts;
}

/// How people search.
struct Habits {
    Texts (*longTextsOf)(const Sticker&); // what they type besides single tags
    std::string heldOut;                  // another text: another fifth is held out
    std::uint32_t wrongPercent = 0;       // of the choices in training
};

/// How often people type what follows the sticker's popularity, which is as uneven as such things are, and chance.
std::vector<TypedPair> pairsOf(const Sticker& sticker, const Habits& habits)
{
    Texts texts = habits.longTextsOf(sticker);
    texts.insert(sticker.tags.begin(), sticker.tags.end());
    const auto popularity = 1 + 200 / (1 + hashOf("popularity", sticker.comic) % 100);
    std::vector<TypedPair> pairs;
    for (const std::string& text : texts) {
        const auto chance = hashOf("chance of " + text, sticker.comic) % 100;
        pairs.push_back({text, sticker.comic, static_cast<int>(1 + popularity * chance / 100)});
    }
    return pairs;
}

/// What part of the queries found the comic among the first ten.
struct Recall {
    int queries = 0;
    int found = 0;

    void add(bool isFound)
    {
        ++queries;
        found += isFound ? 1 : 0;
    }
    [[nodiscard]] double value() const { return queries == 0 ? 0 : static_cast<double>(found) / queries; }
};

std::ostream& operator<<(std::ostream& stream, const Recall& recall)
{
    return stream << recall.value() << " of " << recall.queries << " queries";
}

struct SplitPairs {
    std::vector<TypedPair> training;
    std::vector<TypedPair> heldOut; // no text of these was typed for that comic in training, but by mistake
};

SplitPairs split(const std::vector<Sticker>& stickers, const Habits& habits)
{
    SplitPairs pairs;
    for (const Sticker& sticker : stickers) {
        for (TypedPair& pair : pairsOf(sticker, habits)) {
            if (hashOf(habits.heldOut + pair.text, pair.comic) % 5 == 0) {
                pairs.heldOut.push_back(pair);
                continue;
            }
            if (hashOf("wrong: " + pair.text, pair.comic) % 100 < habits.wrongPercent) {
                pair.comic = stickers[hashOf("instead: " + pair.text, pair.comic) % stickers.size()].comic;
            }
            pairs.training.push_back(pair);
        }
    }
    return pairs;
}

QByteArray asLines(const std::vector<TypedPair>& pairs)
{
    QByteArray lines;
    for (const TypedPair& pair : pairs) {
        lines += QByteArray::fromStdString(pair.text) + '\t' + QByteArray::number(pair.comic) + '\t' +
                 QByteArray::number(pair.count) + '\n';
    }
    return lines;
}

/// Whether the text has two or three words and at most so many stickers have all of them.
bool identifies(const std::string& text, const std::vector<Sticker>& stickers, std::ptrdiff_t most)
{
    const auto words = wordsOf(text);
    const auto fits = [&words](const Sticker& sticker) {
        return std::ranges::all_of(words, [&sticker](const auto& word) { return sticker.words.contains(word); });
    };
    return words.size() >= 2 && words.size() <= 3 && std::ranges::count_if(stickers, fits) <= most;
}

class KovalinModelRecall : public testing::Test {
protected:
    static constexpr int topN = 10;

    /// A classifier on the model that learned the pairs.
    std::shared_ptr<LearnedSearchClassifier> learned(const std::vector<TypedPair>& pairs) const
    {
        const QString model = files.path(QStringLiteral("model.bin"));
        EXPECT_EQ(buildModel(asLines(pairs), model).exitCode, 0);
        return classifierOn(model);
    }

    bool identifies(const std::string& text) const { return ::identifies(text, stickers, topN); }

    static bool isFound(const LearnedSearchClassifier& classifier, const std::string& text, Comic comic)
    {
        const auto comics = classifier.predict(text, topN);
        return std::ranges::find(comics, comic) != comics.end();
    }

    /// The words of all stickers, the more often the more stickers have them.
    std::vector<std::string> wordsOfAll() const
    {
        std::vector<std::string> words;
        for (const Sticker& sticker : stickers) {
            words.insert(words.end(), sticker.words.begin(), sticker.words.end());
        }
        return words;
    }

    void expectRecall(const Habits& habits, double ofAll, double ofIdentifying) const
    {
        const auto [training, heldOut] = split(stickers, habits);
        const auto classifier = learned(training);
        Recall all;
        Recall identifying;
        for (const TypedPair& pair : heldOut) {
            const bool found = isFound(*classifier, pair.text, pair.comic);
            all.add(found);
            if (identifies(pair.text)) {
                identifying.add(found);
            }
        }
        std::cout << "recall at 10 of all: " << all << "; of those that identify: " << identifying << '\n';
        EXPECT_GT(all.value(), ofAll);
        EXPECT_GT(identifying.value(), ofIdentifying);
    }

    Files files;
    const std::vector<Sticker> stickers = stickersOf(examplePacks());
    const Habits twoTags{twoTagsOf, "held out: "};
};

// Every fifth of what people type for the stickers of the example is held out. The floors lie some hundredths below what was
// measured, 0.86 and 0.99: they are for factors that have gone wrong, not for a tag more or less in the example.
//
// More isn't in reach: a fifth of all queries fits more than ten stickers, up to hundreds ("nation", "country").
TEST_F(KovalinModelRecall, FindsAmongTheFirstTenWhatWasNeverChosenAfterThatTextBefore)
{
    expectRecall(twoTags, 0.82, 0.95);
}

// Longer texts, another fifth and mistakes, by none of which the way of learning was chosen. Measured: 0.91 and 0.99.
TEST_F(KovalinModelRecall, HoldsForLongerTextsAndAmongWrongChoices)
{
    expectRecall({threeTagsOf, "also held out: ", 5}, 0.89, 0.97);
}

// Queries that one stray word is added to, then three. Measured: 0.96 both. A scale of words that is greater than that of runs
// would break the first: comics that the stray word indicates would come first.
TEST_F(KovalinModelRecall, FindsAmongStrayWordsWhatTheOthersIndicate)
{
    const auto training = split(stickers, twoTags).training;
    const auto classifier = learned(training);
    const std::vector<std::string> words = wordsOfAll();
    Recall first;
    Recall amongThree;
    for (const TypedPair& pair : training) {
        if (hashOf("asked: " + pair.text, pair.comic) % 8 != 0 || !identifies(pair.text)) {
            continue;
        }
        const auto stray = [&](const std::string& name) {
            return words[hashOf(name + pair.text, pair.comic) % words.size()];
        };
        const auto comics = classifier->predict(pair.text + ' ' + stray("1"), 3);
        first.add(std::ranges::find(comics, pair.comic) != comics.end());
        amongThree.add(
            isFound(*classifier, stray("1") + ' ' + pair.text + ' ' + stray("2") + ' ' + stray("3"), pair.comic));
    }
    std::cout << "with a stray word, among the first three: " << first << "; with three: " << amongThree << '\n';
    EXPECT_GT(first.value(), 0.92);
    EXPECT_GT(amongThree.value(), 0.92);
}

// Queries of three words of a sticker among three of others. Measured: 0.95. With a scale of 1 it is 0.11: nearly all
// scores sink to zero.
TEST_F(KovalinModelRecall, FindsWhatHalfOfTheWordsIndicate)
{
    const auto classifier = learned(split(stickers, twoTags).training);
    const std::vector<std::string> words = wordsOfAll();
    Recall recall;
    for (const Sticker& sticker : stickers) {
        std::string own;
        std::string mixed;
        for (auto word = sticker.words.begin(); word != endOfFirst(sticker.words, 3); ++word) {
            own += *word + ' ';
            mixed += *word + ' ' + words[hashOf("beside " + *word, sticker.comic) % words.size()] + ' ';
        }
        if (sticker.words.size() >= 3 && identifies(own)) {
            recall.add(isFound(*classifier, mixed, sticker.comic));
        }
    }
    std::cout << "recall at 10 of half of the words: " << recall << '\n';
    EXPECT_GT(recall.value(), 0.8);
}

} // namespace
