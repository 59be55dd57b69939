#include "support/GeneratedModels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <set>

namespace vole::learned_search::test {

namespace {

std::string generateWord(Random& random)
{
    // Few letters, so that words are often pieces and beginnings of each other.
    static constexpr std::string_view letters = "aaabbcde1";
    std::string word;
    const std::size_t length = 1 + random.below(random.chance(0.2) ? 14 : 5);
    for (std::size_t at = 0; at < length; ++at) {
        word += letters[random.below(letters.size())];
    }
    return word;
}

std::string generateKey(Random& random, const std::vector<std::string>& words)
{
    std::string key = words[random.below(words.size())];
    for (int more = 0; more < 4 && random.chance(0.45); ++more) {
        key += '|' + words[random.below(words.size())];
    }
    return key;
}

float oddProb(Random& random)
{
    using Limits = std::numeric_limits<float>;
    static constexpr std::array odd{
        Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(), 0.0F, -0.0F, -0.5F, Limits::max(), 1e34F, 1e-44F};
    return odd[random.below(odd.size())];
}

float generateProb(Random& random, const ModelShape& shape)
{
    if (random.chance(shape.oddProbs)) {
        return oddProb(random);
    }
    double share = random.share();
    if (shape.distinctProbs > 0) {
        const auto steps = static_cast<double>(shape.distinctProbs);
        share = (std::floor(share * steps) + 1) / steps;
    }
    return static_cast<float>(share * share) * shape.greatestProb + 1e-6F;
}

std::size_t generateRowCount(Random& random, const ModelShape& shape)
{
    // Many keys with few rows and a few with many, the mean being what was asked for.
    const double mean = static_cast<double>(shape.rowsPerKey);
    const double count = mean * 0.5 / std::sqrt(1.0 - random.share() * 0.9999);
    return static_cast<std::size_t>(count + random.share());
}

std::vector<ModelContent::Row> generateRows(Random& random, const ModelShape& shape, const ModelContent& model)
{
    std::vector<ModelContent::Row> rows;
    std::set<std::int32_t> present;
    const std::size_t count = std::min(generateRowCount(random, shape), shape.comics);
    while (rows.size() < count) {
        std::int32_t comic = (*model.comics)[random.below(model.comics->size())];
        if (random.chance(shape.unlistedComics)) {
            comic = random.chance(0.2) ? 0 : comic + 1;
        }
        if (!rows.empty() && random.chance(shape.repeatedRows)) {
            comic = rows[random.below(rows.size())].comic;
        } else if (!present.insert(comic).second) {
            continue;
        }
        rows.push_back({comic, generateProb(random, shape)});
    }
    if (shape.bestFirst) {
        std::sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.prob > b.prob; });
    }
    return rows;
}

} // namespace

ModelContent generateModel(Random& random, const ModelShape& shape)
{
    ModelContent model;
    std::set<std::int32_t> comics;
    while (comics.size() < shape.comics) {
        const auto comic = static_cast<std::int32_t>(random.below(1'000'000'000)) * 2; // odd ids stay unlisted
        if (comics.insert(comic).second) {
            model.comics->push_back(comic);
        }
    }
    const std::size_t different = model.comics->size();
    for (std::size_t at = 0; at < different; ++at) {
        if (random.chance(shape.repeatedComics)) {
            model.comics->insert(model.comics->begin() + static_cast<std::ptrdiff_t>(random.below(different)),
                                 (*model.comics)[at]);
        }
    }

    std::vector<std::string> words;
    for (std::size_t word = 0; word < shape.words; ++word) {
        words.push_back(generateWord(random));
    }
    std::set<std::string> keys;
    for (std::size_t key = 0; key < shape.keys; ++key) {
        keys.insert(generateKey(random, words));
    }
    for (const std::string& key : keys) {
        // One after the other, since the order of arguments is each compiler's own.
        const float endWordScore = random.chance(0.4) ? 0.0F : static_cast<float>(random.share() - 0.2);
        const auto wordPrior = static_cast<float>(random.share());
        const auto rows = generateRows(random, shape, model);
        model.add(key, rows, wordPrior, endWordScore);
        if (random.chance(shape.oddSlices)) {
            auto& made = model.keys->back();
            switch (random.below(3)) {
            case 0:
                made.count = 0;
                break;
            case 1:
                made.start = -1 - static_cast<std::int32_t>(random.below(5));
                break;
            default:
                made.count = -static_cast<std::int32_t>(random.below(1000));
            }
        }
    }
    if (!shape.sorted) {
        for (std::size_t at = model.keys->size(); at > 1; --at) {
            std::swap((*model.keys)[at - 1], (*model.keys)[random.below(at)]);
        }
    }
    return model;
}

std::string generateQuery(Random& random, const ModelContent& model, std::size_t mostWords)
{
    static constexpr std::array<std::string_view, 7> gaps{" ", " ", " ", "  ", "\t", "! ", ", "};
    std::string query;
    std::size_t words = 0;
    const std::size_t wanted = 1 + random.below(mostWords);
    while (words < wanted) {
        std::string piece = model.keys->empty() || random.chance(0.1)
                                ? generateWord(random)
                                : model.keys->at(random.below(model.keys->size())).word.value_or("");
        words += 1 + static_cast<std::size_t>(std::count(piece.begin(), piece.end(), '|'));
        std::replace(piece.begin(), piece.end(), '|', ' ');
        if (random.chance(0.1)) {
            piece.resize(1 + random.below(std::max<std::size_t>(piece.size(), 1)));
        }
        if (random.chance(0.1)) {
            piece = "\xC3\xA9" + piece + "'S";
        }
        query.append(piece).append(gaps[random.below(gaps.size())]);
    }
    return query;
}

} // namespace vole::learned_search::test
