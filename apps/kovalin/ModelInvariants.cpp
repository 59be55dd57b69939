#include "kovalin/ModelInvariants.h"

#include "learned_search/search_model_generated.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <unordered_set>
#include <utility>

using namespace vole::learned_search;

namespace kovalin::cli {

namespace {

using Rows = flatbuffers::Vector<const probEntry*>;

constexpr char delimiter = '|';
constexpr std::ptrdiff_t mostWords = 5;

/// Counts what breaks a rule and keeps the first of it.
class Breaches final {
public:
    template <typename Example>
    void add(Example&& example)
    {
        if (_count++ == 0) {
            _example = example();
        }
    }

    [[nodiscard]] BrokenInvariant of(const char* name, const char* rule) &&
    {
        return {name, rule, _count, std::move(_example)};
    }

private:
    std::uint64_t _count = 0;
    std::string _example;
};

/// Calls with the number and the value of each element; not at all for an absent vector.
template <typename Vector, typename Visit>
void forEach(const Vector* vector, Visit&& visit)
{
    const flatbuffers::uoffset_t size = vector ? vector->size() : 0;
    for (flatbuffers::uoffset_t i = 0; i < size; ++i) {
        visit(i, *vector->Get(i));
    }
}

std::uint32_t rowCount(const SearchModel& model)
{
    return model.comicProbs() ? model.comicProbs()->size() : 0;
}

bool isInside(const entryInfoForWord& key, std::uint32_t rows)
{
    return key.entryStartIdx() >= 0 && key.numEntries() >= 0 &&
           std::int64_t{key.entryStartIdx()} + key.numEntries() <= std::int64_t{rows};
}

std::string quoted(std::string_view key)
{
    return fmt::format("\"{}\"", key);
}

/// Whether a normalised query can lead to the key.
bool isNormal(std::string_view key)
{
    const auto isOther = [](char c) {
        return !(c >= 'a' && c <= 'z') && !(c >= '0' && c <= '9') && c != delimiter;
    };
    return !key.empty() && key.front() != delimiter && key.back() != delimiter &&
           key.find("||") == std::string_view::npos && std::ranges::none_of(key, isOther) &&
           std::ranges::count(key, delimiter) < mostWords;
}

BrokenInvariant absentVectors(const SearchModel& model)
{
    Breaches breaches;
    const auto check = [&breaches](const void* vector, const char* name) {
        if (!vector) {
            breaches.add([name] { return name; });
        }
    };
    check(model.comicProbs(), "comicProbs");
    check(model.comicPriors(), "comicPriors");
    check(model.entryInfoForWords(), "entryInfoForWords");
    return std::move(breaches).of("vectors-present", "all vectors are there");
}

BrokenInvariant keysOutOfOrder(const SearchModel& model)
{
    Breaches breaches;
    const char* previous = "";
    forEach(model.entryInfoForWords(), [&](auto, const entryInfoForWord& key) {
        const char* const word = key.word()->c_str();
        if (std::strcmp(previous, word) > 0) {
            breaches.add([&] { return quoted(word) + " after " + quoted(previous); });
        }
        previous = word;
    });
    return std::move(breaches).of("keys-ascending", "keys ascend byte by byte");
}

BrokenInvariant keysListedAgain(const SearchModel& model)
{
    Breaches breaches;
    std::unordered_set<std::string_view> seen;
    forEach(model.entryInfoForWords(), [&](auto, const entryInfoForWord& key) {
        const std::string_view word = key.word()->c_str(); // lookup sees it only up to a zero
        if (!seen.insert(word).second) {
            breaches.add([word] { return quoted(word); });
        }
    });
    return std::move(breaches).of("keys-unique", "no key stands twice");
}

BrokenInvariant keysNotNormal(const SearchModel& model)
{
    Breaches breaches;
    forEach(model.entryInfoForWords(), [&breaches](auto, const entryInfoForWord& key) {
        const std::string_view word = key.word()->string_view();
        if (!isNormal(word)) {
            breaches.add([word] { return quoted(word); });
        }
    });
    return std::move(breaches).of("keys-normal", "keys are words as queries have them");
}

BrokenInvariant slicesOutside(const SearchModel& model)
{
    Breaches breaches;
    const std::uint32_t rows = rowCount(model);
    forEach(model.entryInfoForWords(), [&breaches, rows](auto, const entryInfoForWord& key) {
        if (!isInside(key, rows)) {
            breaches.add([&key, rows] {
                return fmt::format("{}: start {}, count {}, of {} rows", quoted(key.word()->string_view()),
                                   key.entryStartIdx(), key.numEntries(), rows);
            });
        }
    });
    return std::move(breaches).of("slices-inside", "slices lie inside the rows");
}

/// For each row the first one from which a slice that begins there would hold a comic twice; the number of rows where there is
/// none. Sorts instead of hashing: comics could be chosen so that their hashes collide.
std::vector<std::uint32_t> firstRepeats(const Rows& rows)
{
    constexpr unsigned rowBits = 32;
    const std::uint32_t size = rows.size();
    std::vector<std::uint64_t> rowsByComic;
    rowsByComic.reserve(size);
    forEach(&rows, [&rowsByComic](std::uint32_t row, const probEntry& entry) {
        rowsByComic.push_back(std::uint64_t{static_cast<std::uint32_t>(entry.comicId())} << rowBits | row);
    });
    std::ranges::sort(rowsByComic);

    std::vector<std::uint32_t> repeats(size, size);
    for (std::size_t i = 1; i < rowsByComic.size(); ++i) {
        if (rowsByComic[i - 1] >> rowBits == rowsByComic[i] >> rowBits) {
            repeats[static_cast<std::uint32_t>(rowsByComic[i - 1])] = static_cast<std::uint32_t>(rowsByComic[i]);
        }
    }
    for (std::size_t row = size; row-- > 1;) {
        repeats[row - 1] = std::min(repeats[row - 1], repeats[row]);
    }
    return repeats;
}

BrokenInvariant comicsRepeatedInSlices(const SearchModel& model)
{
    Breaches breaches;
    if (const Rows* rows = model.comicProbs()) {
        const auto repeats = firstRepeats(*rows);
        forEach(model.entryInfoForWords(), [&](auto, const entryInfoForWord& key) {
            if (key.numEntries() <= 0 || !isInside(key, rows->size())) {
                return;
            }
            const auto start = static_cast<std::uint32_t>(key.entryStartIdx());
            const std::uint32_t repeat = repeats[start];
            if (repeat < start + static_cast<std::uint32_t>(key.numEntries())) {
                breaches.add([&] {
                    return fmt::format("{}: comic {}", quoted(key.word()->string_view()), rows->Get(repeat)->comicId());
                });
            }
        });
    }
    return std::move(breaches).of("slice-comics-unique", "no slice holds a comic twice");
}

BrokenInvariant oddProbs(const SearchModel& model)
{
    Breaches breaches;
    forEach(model.comicProbs(), [&breaches](std::uint32_t row, const probEntry& entry) {
        if (!std::isfinite(entry.prob()) || entry.prob() <= 0.0F) {
            breaches.add(
                [&, row] { return fmt::format("row {}: comic {}, prob {}", row, entry.comicId(), entry.prob()); });
        }
    });
    return std::move(breaches).of("probs-positive", "probs are positive and finite");
}

BrokenInvariant comicsListedAgain(const SearchModel& model)
{
    Breaches breaches;
    std::unordered_set<std::int32_t> seen;
    forEach(model.comicPriors(), [&](auto, const priorEntry& comic) {
        if (!seen.insert(comic.comicId()).second) {
            breaches.add([&comic] { return fmt::format("comic {}", comic.comicId()); });
        }
    });
    return std::move(breaches).of("comics-unique", "no comic is listed twice");
}

BrokenInvariant rowsOfUnlistedComics(const SearchModel& model)
{
    std::vector<std::int32_t> listed;
    forEach(model.comicPriors(), [&listed](auto, const priorEntry& comic) { listed.push_back(comic.comicId()); });
    std::ranges::sort(listed);
    Breaches breaches;
    forEach(model.comicProbs(), [&](std::uint32_t row, const probEntry& entry) {
        if (!std::ranges::binary_search(listed, entry.comicId())) {
            breaches.add([&, row] { return fmt::format("row {}: comic {}", row, entry.comicId()); });
        }
    });
    return std::move(breaches).of("row-comics-listed", "rows are for listed comics");
}

} // namespace

std::vector<BrokenInvariant> brokenInvariants(const SearchModel& model)
{
    std::vector<BrokenInvariant> invariants{
        absentVectors(model), keysOutOfOrder(model),    keysListedAgain(model),
        keysNotNormal(model), slicesOutside(model),     comicsRepeatedInSlices(model),
        oddProbs(model),      comicsListedAgain(model), rowsOfUnlistedComics(model)};
    std::erase_if(invariants, [](const BrokenInvariant& invariant) { return invariant.count == 0; });
    return invariants;
}

} // namespace kovalin::cli
