#include "Measure.h"

#include <chrono>
#include <cmath>
#include <ctime>

#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 33)
#include <malloc.h>
#endif

namespace kovalin::bench {

Nanoseconds now()
{
#ifdef CLOCK_THREAD_CPUTIME_ID
    timespec time{};
    if (clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time) == 0) {
        return static_cast<Nanoseconds>(time.tv_sec) * 1e9 + static_cast<Nanoseconds>(time.tv_nsec);
    }
#endif
    return clockNow();
}

Nanoseconds clockNow()
{
    using Time = std::chrono::duration<Nanoseconds, std::nano>;
    return Time(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double quantile(std::vector<double> values, double share)
{
    const auto rank = static_cast<std::ptrdiff_t>(std::ceil(share * static_cast<double>(values.size()))) - 1;
    const auto place = values.begin() + std::max<std::ptrdiff_t>(rank, 0);
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

std::optional<std::size_t> heapInUse()
{
#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 33)
    const auto info = mallinfo2();
    const std::size_t bytes = info.uordblks + info.hblkhd;  // in the arenas, and in mappings of their own
    return bytes > 0 ? std::optional(bytes) : std::nullopt; // a sanitizer's heap isn't counted
#else
    return std::nullopt;
#endif
}

} // namespace kovalin::bench
