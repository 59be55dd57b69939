#pragma once

#include <cstdint>

namespace kovalin::cli {

/// How strongly a key indicates a comic, as a model tells it. `count` is how often the comic was chosen after a text with the
/// key, `keyCount` how often any was, and `comicShare` the comic's share of all choices. Positive and finite for positive
/// counts.
[[nodiscard]] float factorOf(std::int64_t count, std::int64_t keyCount, double comicShare);

} // namespace kovalin::cli
