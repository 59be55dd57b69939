#include "FusionWorkload.h"

#include "LearnedSearchWorkload.h"
#include "search/SearchWords.h"
#include "support/PackGenerator.h"

#include <QtCore/QHash>

#include <algorithm>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace kovalin::bench {

namespace {

using vole::learned_search::test::ModelContent;

/// The words of all tags, the most used first.
std::vector<std::string> wordsByUse(const KovalinPackList& packs)
{
    QHash<QString, int> uses;
    for (const auto& pack : packs) {
        for (const auto& sticker : pack->stickers()) {
            sticker->visitTags([&uses](QAnyStringView tag) {
                for (const QStringView word : SearchWords(tag.toString())) {
                    ++uses[word.toString()];
                }
            });
        }
    }
    std::vector<std::pair<int, QString>> counted;
    for (auto use = uses.cbegin(); use != uses.cend(); ++use) {
        counted.emplace_back(-use.value(), use.key());
    }
    std::ranges::sort(counted);
    std::vector<std::string> words;
    for (const auto& [negativeCount, word] : counted) {
        words.push_back(word.toStdString());
    }
    return words;
}

/// What each word of the model becomes.
std::unordered_map<std::string, std::string> newWords(const ModelContent& model, const std::vector<std::string>& wanted)
{
    std::vector<const ModelContent::Key*> keys;
    for (const auto& key : *model.keys) {
        if (key.word->find('|') == std::string::npos) {
            keys.push_back(&key);
        }
    }
    std::ranges::stable_sort(keys, [](const auto* a, const auto* b) { return a->wordPrior > b->wordPrior; });
    std::unordered_map<std::string, std::string> words;
    for (std::size_t rank = 0; rank < keys.size(); ++rank) {
        // No tag has a word that ends in this letter, so the rest stay different from all that are wanted.
        words[*keys[rank]->word] = rank < wanted.size() ? wanted[rank] : *keys[rank]->word + 'q';
    }
    return words;
}

void replaceWords(ModelContent& model, const std::vector<std::string>& wanted)
{
    const auto words = newWords(model, wanted);
    for (auto& key : *model.keys) {
        std::string replaced;
        for (std::size_t start = 0; start <= key.word->size();) {
            const std::size_t end = std::min(key.word->find('|', start), key.word->size());
            replaced.append(start == 0 ? "" : "|").append(words.at(key.word->substr(start, end - start)));
            start = end + 1;
        }
        key.word = replaced;
    }
    model.sortKeys();
}

/// The ids of as many different comics of the packs, from all over them.
std::vector<std::int32_t> comicsIn(const KovalinPackList& packs, std::size_t count)
{
    std::vector<std::int32_t> all;
    std::unordered_set<std::int32_t> known;
    for (const auto& pack : packs) {
        for (const auto& sticker : pack->stickers()) {
            if (const auto comic = sticker->comicId()->toInt(); known.insert(comic).second) {
                all.push_back(comic);
            }
        }
    }
    std::vector<std::int32_t> comics;
    for (std::size_t place = 0; place < count; ++place) {
        comics.push_back(all[place * all.size() / count]);
    }
    return comics;
}

void replaceComics(ModelContent& model, const std::vector<std::int32_t>& wanted)
{
    std::unordered_map<std::int32_t, std::int32_t> comics;
    for (std::size_t place = 0; place < wanted.size(); ++place) {
        comics[std::exchange((*model.comics)[place], wanted[place])] = wanted[place];
    }
    for (auto& row : *model.rows) {
        row.comic = comics.at(row.comic);
    }
}

QList<QStringList> typedTextsOf(const KovalinPackList& packs, int count)
{
    QList<QStringList> texts;
    const QStringList beginnings = test::typedQueries(packs, count, 7);
    for (const QString& beginning : beginnings) {
        const bool goesOn = !texts.isEmpty() && beginning.size() == texts.last().last().size() + 1;
        if (!goesOn) {
            texts.append(QStringList());
        }
        texts.last().append(beginning);
    }
    return texts;
}

} // namespace

FusionWorkload::FusionWorkload(const Size& size)
    : packs(test::generatePacks({.stickers = size.tags * 5 / 2, .tags = size.tags, .seed = 2024}))
    , model(generateLargeModel({size.keys, size.comics, size.rows}, SliceOrder::AnyOrder, Probs::AllDifferent))
    , typedTexts(typedTextsOf(packs, size.texts))
{
    replaceWords(model, wordsByUse(packs));
    replaceComics(model, comicsIn(packs, size.comics));
}

} // namespace kovalin::bench
