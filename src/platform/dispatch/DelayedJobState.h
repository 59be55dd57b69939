#pragma once

#include "platform/dispatch/DelayClock.h"
#include "platform/dispatch/DelayedJob.h"

#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace kovalin::platform {

/// A delayed job, shared by its holder and by what carries it to the queue. Private to this folder; any thread.
struct DelayedJob::State final {
    /// The job, for who comes first; empty for all others.
    [[nodiscard]] std::function<void()> take()
    {
        const std::lock_guard lock(mutex);
        return std::exchange(job, nullptr);
    }

    std::mutex mutex;
    std::function<void()> job; // guarded by mutex

    // The holder's alone.
    std::shared_ptr<DelayClock> clock;
    DelayClock::Id id = 0;
};

} // namespace kovalin::platform
