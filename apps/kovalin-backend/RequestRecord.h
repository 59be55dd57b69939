#pragma once

#include "kovalin-backend/Request.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <vector>

namespace kovalin::backend {

/// What arrived, in order. Any thread.
class RequestRecord final {
public:
    /// So many of the latest requests are kept, and so many bytes of bodies: a server may run for weeks.
    static constexpr std::size_t kMostKept = 10'000;
    static constexpr qsizetype kMostBodyBytesKept = qsizetype(64) * 1024 * 1024;

    void add(Request request);

    [[nodiscard]] std::vector<Request> requests() const;

    /// Blocks until `count` requests or more have been added, those counted that aren't kept any more.
    void waitFor(std::size_t count) const;

private:
    mutable std::mutex _mutex;
    mutable std::condition_variable _changed;
    std::deque<Request> _requests; // guarded by _mutex
    qsizetype _bodyBytes = 0;      // guarded by _mutex; of all that are kept
    std::size_t _count = 0;        // guarded by _mutex; of all there ever were
};

} // namespace kovalin::backend
