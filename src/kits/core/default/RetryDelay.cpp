#include "kits/core/default/RetryDelay.h"

#include <algorithm>

namespace kovalin::kits {

namespace {

/// Doubles up to the limit, in steps, since many failures would overflow a power of two.
std::chrono::milliseconds fullDelay(const RetryRules& rules, int failures)
{
    std::chrono::milliseconds delay = std::min(rules.first, rules.longest);
    for (int i = 1; i < failures && delay < rules.longest; ++i) {
        delay = std::min(delay * 2, rules.longest);
    }
    return delay;
}

} // namespace

std::chrono::milliseconds retryDelay(const RetryRules& rules, int failures,
                                     std::optional<std::chrono::milliseconds> retryAfter, quint32 random)
{
    constexpr double randomNumbers = 4'294'967'296.0;
    const std::chrono::milliseconds full = fullDelay(rules, failures);
    const auto takenOff = std::chrono::milliseconds(
        static_cast<std::chrono::milliseconds::rep>(static_cast<double>(full.count()) / 2 * (random / randomNumbers)));
    const std::chrono::milliseconds asked =
        std::min(retryAfter.value_or(std::chrono::milliseconds::zero()), rules.longestRetryAfter);
    return std::max(full - takenOff, asked);
}

} // namespace kovalin::kits
