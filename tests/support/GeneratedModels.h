#pragma once

#include "support/ModelContent.h"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace vole::learned_search::test {

/// Numbers that are the same on every machine for the same seed, which the standard distributions don't promise.
class Random final {
public:
    explicit Random(std::uint64_t seed)
        : _engine(seed)
    {
    }

    /// From 0 up to but without `end`, which is positive.
    [[nodiscard]] std::size_t below(std::size_t end) { return static_cast<std::size_t>(_engine() % end); }
    /// From 0 up to but without 1.
    [[nodiscard]] double share() { return static_cast<double>(_engine() >> 11) * 0x1p-53; }
    [[nodiscard]] bool chance(double probability) { return share() < probability; }

private:
    std::mt19937_64 _engine;
};

/// What a generated model is like.
struct ModelShape {
    std::size_t comics = 40;
    std::size_t words = 12;        // different words, from which all keys are made
    std::size_t keys = 40;         // at most so many
    std::size_t rowsPerKey = 8;    // on average; some have far more
    std::size_t distinctProbs = 0; // so few values of `prob`, which makes ties; 0: any
    float greatestProb = 1;        // the smallest is a thousandth of the bound under which a comic goes
    double repeatedRows = 0;       // share of rows whose comic stands in the slice already
    double unlistedComics = 0;     // share of rows whose comic isn't listed
    double repeatedComics = 0;     // share of comics that are listed twice
    double oddProbs = 0;           // share of probs that are infinite, no number, zero, negative, huge or denormal
    double oddSlices = 0;          // share of keys with no rows, or with a negative start or count
    bool sorted = true;
    bool bestFirst = false; // each slice by falling prob
};

[[nodiscard]] ModelContent generateModel(Random& random, const ModelShape& shape);

/// What somebody might ask such a model: words and runs of words that are keys, beginnings of words, unknown ones, with odd
/// spacing, capitals and punctuation, of up to `mostWords` words.
[[nodiscard]] std::string generateQuery(Random& random, const ModelContent& model, std::size_t mostWords);

} // namespace vole::learned_search::test
