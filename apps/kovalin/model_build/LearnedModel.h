#pragma once

#include "kovalin/model_build/CountSums.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <string_view>
#include <vector>

namespace kovalin::cli {

class Backoff;
class PairCounts;

/// What a model tells, from counted pairs. Everything is in the order of the file, whatever the order of the pairs was.
class LearnedModel final {
public:
    struct Comic {
        std::int32_t id;
        double share; // of all choices
    };
    struct Key {
        std::string_view text;
        std::int64_t count;
        std::int64_t endCount; // of that, how often a text ended with it
        std::size_t firstSum;
        std::size_t sumCount;
        std::size_t rowCount; // 0 until rows are made
    };
    struct Row {
        std::uint32_t comic; // its place in comics()
        float factor;
    };

    /// Keys that were counted less than `minCount` times are left out, and comics that no key is left for. Takes the sums out of
    /// the counts, which must outlive this object.
    LearnedModel(PairCounts& counts, std::int64_t minCount);

    /// To be called once. Takes the most time and memory, so it is worth looking at the numbers of keys and comics before.
    void makeRows();

    /// The most chosen first, equally chosen ones by id.
    [[nodiscard]] const std::vector<Comic>& comics() const { return _comics; }

    /// Ascending, byte by byte.
    [[nodiscard]] const std::deque<Key>& keys() const { return _keys; }

    /// How often any comic was chosen.
    [[nodiscard]] std::int64_t total() const { return _total; }

    /// The comics of the keys with their factors, one key's after another's. Those of a key have the greatest factor first,
    /// equal ones are in the order of comics().
    [[nodiscard]] const std::deque<Row>& rows() const { return _rows; }

private:
    void keepKeys(const PairCounts& counts, std::int64_t minCount);
    void keepComics();
    [[nodiscard]] std::span<ComicCount> sumsOf(const Key& key);
    [[nodiscard]] Backoff backoff();
    void addRows(Key& key, std::vector<Row>& rows);

    std::int64_t _total;
    std::vector<ComicCount>
        _sums; // until rows are made; those of a key that is kept: with the comic's place for its id
    // There may be many more than a model can hold, and a deque grows without a copy of all.
    std::deque<Key> _keys;
    std::deque<Row> _rows;
    std::vector<Comic> _comics;
};

} // namespace kovalin::cli
