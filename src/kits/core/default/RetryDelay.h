#pragma once

#include <QtCore/QtGlobal>

#include <chrono>
#include <optional>

namespace kovalin::kits {

/// How long to wait before a server that failed is asked again.
struct RetryRules {
    std::chrono::milliseconds first;             ///< after the first failure, at the most
    std::chrono::milliseconds longest;           ///< however many have failed
    std::chrono::milliseconds longestRetryAfter; ///< what a server may ask for at the most
};

/// The delay after that many failures in a row, 1 or more: it doubles with each, up to the longest, and of that chance takes
/// off up to a half, so that clients which failed together don't come back together. A server that asks for more, through
/// `retryAfter`, gets it up to the longest that it may ask for. `random` is any number from 0 to 2^32 - 1. Any thread.
[[nodiscard]] std::chrono::milliseconds retryDelay(const RetryRules& rules, int failures,
                                                   std::optional<std::chrono::milliseconds> retryAfter, quint32 random);

} // namespace kovalin::kits
