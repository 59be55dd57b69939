#pragma once

#include <cstdint>

namespace kovalin::cli {

/// What part of the choices after a key is to be expected for a comic. `count` is how often the comic was chosen after a text
/// with the key, `keyCount` how often any was, and `imaginedShare` the comic's share of the choice that is imagined besides.
/// Positive when the count or the share is.
[[nodiscard]] double smoothedShare(std::int64_t count, std::int64_t keyCount, double imaginedShare);

/// How strongly a key indicates a comic, as a model tells it, from the smoothed share.
[[nodiscard]] float factorOf(double share);

} // namespace kovalin::cli
