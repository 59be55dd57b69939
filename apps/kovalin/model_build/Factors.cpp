#include "kovalin/model_build/Factors.h"

namespace kovalin::cli {

namespace {

// In imagined choices for each key. After a word they are made the way people choose on the whole, which puts the more popular
// of two equally chosen comics first; after a run of words as its words suggest, which tells of comics that were never chosen
// after it. A key that was seen once is trusted less than one that was seen often. With no more than one, nothing imagined
// outweighs what was chosen.
constexpr double smoothing = 1;

// A prediction drops what a single word indicates by less than 0.001. As a plain share that would hit even the most chosen
// comic of a word with some thousand comics. The most chosen of at most a million, the most that a model holds, has a share of
// about 0.000001 or more; a thousand times that reaches the bound.
//
// It is the same for all keys: runs of words are lifted over the bound by their weight, but with less than a word's scale, a
// comic that only one stray word of a query indicates would beat those that a run indicates. And it is what decides how long a
// query may be. It lifts long queries, of which a comic lacks some words, above the least number: with a scale of 1 three
// lacking words leave nothing. On the other side are the queries that repeat long texts: each run weighs at least 10 001, and
// with a scale of 10 000 seven of them can exceed the greatest number, here eight.
constexpr double scale = 1000;

} // namespace

double smoothedShare(std::int64_t count, std::int64_t keyCount, double imaginedShare)
{
    return (static_cast<double>(count) + smoothing * imaginedShare) / (static_cast<double>(keyCount) + smoothing);
}

float factorOf(double share)
{
    return static_cast<float>(scale * share);
}

} // namespace kovalin::cli
