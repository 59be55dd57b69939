#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace kovalin::bench {

/// A time in nanoseconds.
using Nanoseconds = double;

/// What this thread has worked so far: the processor's time, where the system tells it, so that other programs in between
/// don't count, which would hit long work alone.
[[nodiscard]] Nanoseconds now();

/// Nanoseconds since some moment, by the clock: with what was waited for.
[[nodiscard]] Nanoseconds clockNow();

template <typename Work>
Nanoseconds timeOf(Work&& work)
{
    const Nanoseconds start = now();
    work();
    return now() - start;
}

/// The value that `share` of the values don't exceed, 0.5 giving the median. There must be values.
[[nodiscard]] double quantile(std::vector<double> values, double share);

/// What one run of `work` takes: the median of `repetitions`, each of as many runs as the clock needs.
template <typename Work>
Nanoseconds medianTimeOf(int repetitions, Work&& work)
{
    constexpr Nanoseconds leastTime = 50'000;
    const Nanoseconds once = std::max(timeOf(work), 1.0);
    const auto runs = static_cast<std::size_t>(std::clamp(leastTime / once, 1.0, 10'000.0));
    std::vector<double> times;
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        const Nanoseconds total = timeOf([&] {
            for (std::size_t run = 0; run < runs; ++run) {
                work();
            }
        });
        times.push_back(total / static_cast<double>(runs));
    }
    return quantile(std::move(times), 0.5);
}

/// The bytes that the program holds on the heap; nullopt where the C library doesn't tell.
[[nodiscard]] std::optional<std::size_t> heapInUse();

} // namespace kovalin::bench
