#include "kovalin/model_build/Factors.h"

namespace kovalin::cli {

namespace {

// In imagined choices for each key, made the way people choose on the whole. One puts the more popular of two equally chosen
// comics first, and trusts a key that was seen once less than one that was seen often. Up to ten nothing changes that recall
// could tell; from a hundred on popularity pushes back what was chosen.
constexpr double smoothing = 1;

// A prediction drops what a single word indicates by less than 0.001. As a plain share that would hit even the most chosen
// comic of a word with some thousand comics. The most chosen of at most a million, the most that a model holds, has a share of
// about 0.000001 or more; ten thousand times that is above the bound. It is the same for all keys, so that what a rare word
// indicates still counts for more than what a common one does, and small enough for the product of a dozen words.
constexpr double scale = 10'000;

} // namespace

float factorOf(std::int64_t count, std::int64_t keyCount, double comicShare)
{
    const double share =
        (static_cast<double>(count) + smoothing * comicShare) / (static_cast<double>(keyCount) + smoothing);
    return static_cast<float>(scale * share);
}

} // namespace kovalin::cli
