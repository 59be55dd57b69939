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
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace kovalin::test;
using namespace vole::learned_search;

namespace {

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

/// What people type for a sticker: a tag, or two, in the order that comes to their mind. How often follows the sticker's
/// popularity, which is as uneven as such things are, and chance.
std::vector<TypedPair> pairsOf(const Sticker& sticker)
{
    std::set<std::string> texts(sticker.tags.begin(), sticker.tags.end());
    for (std::size_t i = 0; i < sticker.tags.size(); ++i) {
        for (std::size_t j = i + 1; j < sticker.tags.size(); ++j) {
            const bool swapped = hashOf(sticker.tags[i] + '+' + sticker.tags[j], sticker.comic) % 2 == 1;
            texts.insert(sticker.tags[swapped ? j : i] + ' ' + sticker.tags[swapped ? i : j]);
        }
    }
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
    QByteArray training;
    std::vector<TypedPair> heldOut; // no text of these was typed for that comic in training
};

SplitPairs split(const std::vector<Sticker>& stickers)
{
    SplitPairs pairs;
    for (const Sticker& sticker : stickers) {
        for (const TypedPair& pair : pairsOf(sticker)) {
            if (hashOf("held out: " + pair.text, pair.comic) % 5 == 0) {
                pairs.heldOut.push_back(pair);
            } else {
                pairs.training += QByteArray::fromStdString(pair.text) + '\t' + QByteArray::number(pair.comic) + '\t' +
                                  QByteArray::number(pair.count) + '\n';
            }
        }
    }
    return pairs;
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

// Every fifth of what people type for the stickers of the example is held out. The floors lie some hundredths below what was
// measured, 0.75 and 0.85: they are for factors that have gone wrong, not for a tag more or less in the example.
//
// More isn't in reach. Of all queries a fifth fits more than ten stickers, up to hundreds ("nation", "country"). And of the
// identifying ones that miss, nearly all are n-grams that were typed in training, for other stickers alone: a key that covers a
// query answers for it alone.
TEST(KovalinModelRecall, FindsAmongTheFirstTenWhatWasNeverChosenAfterThatTextBefore)
{
    constexpr int topN = 10;
    const auto stickers = stickersOf(examplePacks());
    const auto [training, heldOut] = split(stickers);
    Files files;
    const QString model = files.path(QStringLiteral("model.bin"));
    ASSERT_EQ(buildModel(training, model).exitCode, 0);
    const auto classifier = classifierOn(model);

    Recall all;
    Recall identifying;
    for (const TypedPair& pair : heldOut) {
        const auto comics = classifier->predict(pair.text, topN);
        const bool isFound = std::ranges::find(comics, pair.comic) != comics.end();
        all.add(isFound);
        if (identifies(pair.text, stickers, topN)) {
            identifying.add(isFound);
        }
    }
    std::cout << "recall at 10 of all: " << all << "; of those that identify: " << identifying << '\n';
    EXPECT_GT(all.value(), 0.70);
    EXPECT_GT(identifying.value(), 0.80);
}

} // namespace
