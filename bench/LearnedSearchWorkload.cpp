#include "LearnedSearchWorkload.h"

#include "support/GeneratedModels.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <string_view>

namespace kovalin::bench {

namespace {

using vole::learned_search::test::ModelContent;
using vole::learned_search::test::Random;

// A word's rows fall with its rank by this power, about as word counts do in a language.
constexpr double rankPower = 0.8;
constexpr double rankOffset = 20;     // the most frequent words are less extreme than the rest would have it
constexpr double shareOfWords = 0.25; // of all keys; the rest are n-grams

std::string generateWord(Random& random)
{
    static constexpr std::string_view starts = "bcdfghjklmnprstvw";
    static constexpr std::string_view vowels = "aeiou";
    std::string word;
    const std::size_t syllables = 2 + random.below(3);
    for (std::size_t syllable = 0; syllable < syllables; ++syllable) {
        word += starts[random.below(starts.size())];
        word += vowels[random.below(vowels.size())];
        if (random.chance(0.3)) {
            word += starts[random.below(starts.size())];
        }
    }
    return word;
}

/// From 0 up to but without `end`, small numbers more often.
std::size_t frequentRank(Random& random, std::size_t end)
{
    // The integral of (rank + offset)^-power, turned round.
    const double power = 1 - rankPower;
    const double low = std::pow(rankOffset, power);
    const double high = std::pow(static_cast<double>(end) + rankOffset, power);
    const double rank = std::pow(low + random.share() * (high - low), 1 / power) - rankOffset;
    return std::min(static_cast<std::size_t>(std::max(rank, 0.0)), end - 1);
}

std::vector<std::string> generateWords(Random& random, std::size_t count)
{
    std::set<std::string> present;
    std::vector<std::string> words;
    while (words.size() < count) {
        const std::string word = generateWord(random);
        if (present.insert(word).second) {
            words.push_back(word);
        }
    }
    return words;
}

std::string generateNgram(Random& random, const std::vector<std::string>& words)
{
    std::string ngram = words[frequentRank(random, words.size())];
    const std::size_t more = 1 + (random.chance(0.4) ? 1 + random.below(3) : 0);
    for (std::size_t word = 0; word < more; ++word) {
        ngram += '|' + words[frequentRank(random, words.size())];
    }
    return ngram;
}

std::vector<ModelContent::Row> generateRows(Random& random, const std::vector<std::int32_t>& comics, std::size_t count,
                                            SliceOrder order, Probs probs)
{
    std::vector<ModelContent::Row> rows;
    std::set<std::int32_t> present;
    while (rows.size() < std::min(count, comics.size())) {
        const std::int32_t comic = comics[random.below(comics.size())];
        if (present.insert(comic).second) {
            const double share = random.share();
            const double prob = probs == Probs::AsCounted ? std::ceil(20 * share * share * share) / 40 : share;
            rows.push_back({comic, static_cast<float>(prob) + 0.002F});
        }
    }
    if (order == SliceOrder::BestFirst) {
        std::stable_sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.prob > b.prob; });
    }
    return rows;
}

/// The words of the dictionary, the most popular first.
std::vector<std::string> wordsByPopularity(const ModelContent& model)
{
    std::vector<const ModelContent::Key*> keys;
    for (const auto& key : *model.keys) {
        if (key.word->find('|') == std::string::npos) {
            keys.push_back(&key);
        }
    }
    std::stable_sort(keys.begin(), keys.end(),
                     [](const auto* a, const auto* b) { return a->wordPrior > b->wordPrior; });
    std::vector<std::string> words;
    for (const auto* key : keys) {
        words.push_back(*key->word);
    }
    return words;
}

} // namespace

ModelContent generateLargeModel(const ModelSize& size, SliceOrder order, Probs probs)
{
    Random random(2024);
    ModelContent model;
    std::set<std::int32_t> present;
    while (model.comics->size() < size.comics) {
        const auto comic = static_cast<std::int32_t>(random.below(1'000'000'000));
        if (present.insert(comic).second) {
            model.comics->push_back(comic);
        }
    }

    const auto wordCount = static_cast<std::size_t>(static_cast<double>(size.keys) * shareOfWords);
    const auto words = generateWords(random, wordCount);
    struct Key {
        std::size_t rows;
        float popularity;
    };
    std::map<std::string, Key> keys;
    double frequencies = 0;
    for (std::size_t rank = 0; rank < wordCount; ++rank) {
        frequencies += std::pow(static_cast<double>(rank) + rankOffset, -rankPower);
    }
    std::size_t ngramRows = 0;
    while (keys.size() < size.keys - wordCount) {
        const std::size_t rows = 1 + random.below(12);
        if (keys.try_emplace(generateNgram(random, words), Key{rows, static_cast<float>(random.share() * 1e-4)})
                .second) {
            ngramRows += rows;
        }
    }
    const double wordRows = static_cast<double>(size.rows) - static_cast<double>(ngramRows);
    for (std::size_t rank = 0; rank < wordCount; ++rank) {
        const double share = std::pow(static_cast<double>(rank) + rankOffset, -rankPower) / frequencies;
        keys[words[rank]] = {static_cast<std::size_t>(wordRows * share + random.share()), static_cast<float>(share)};
    }
    for (const auto& [key, made] : keys) {
        model.add(key, generateRows(random, *model.comics, made.rows, order, probs), made.popularity,
                  random.chance(0.3) ? 0.0F : 1.0F);
    }
    return model;
}

std::vector<std::string> typedTexts(const ModelContent& model, std::size_t count)
{
    Random random(7);
    const auto words = wordsByPopularity(model);
    std::vector<std::string> texts;
    while (texts.size() < count) {
        std::string text;
        if (random.chance(0.3)) {
            text = *model.keys->at(random.below(model.keys->size())).word;
            std::replace(text.begin(), text.end(), '|', ' ');
        } else {
            const std::size_t length = 1 + random.below(4);
            for (std::size_t word = 0; word < length; ++word) {
                text.append(word == 0 ? "" : " ").append(words[frequentRank(random, words.size())]);
            }
        }
        texts.push_back(text);
    }
    return texts;
}

std::vector<std::string> typedWords(const ModelContent& model, std::size_t count)
{
    Random random(8);
    const auto words = wordsByPopularity(model);
    std::vector<std::string> texts;
    while (texts.size() < count) {
        texts.push_back(words[frequentRank(random, words.size())]);
    }
    return texts;
}

std::vector<std::string> typedBeginnings(const ModelContent& model, std::size_t count)
{
    Random random(9);
    const auto words = wordsByPopularity(model);
    std::vector<std::string> texts;
    while (texts.size() < count) {
        std::string text = words[frequentRank(random, words.size())];
        if (random.chance(0.3)) {
            text.append(" ").append(words[frequentRank(random, words.size())]);
        }
        texts.push_back(text.substr(0, 2 + random.below(text.size() - 1)));
    }
    return texts;
}

} // namespace kovalin::bench
