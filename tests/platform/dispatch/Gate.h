#pragma once

#include "platform/dispatch/SerialQueue.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace kovalin::test {

/// Any thread. Closed until it is opened once and for all; may be destroyed as soon as `wait` has returned.
class Gate final {
public:
    void open()
    {
        const std::lock_guard lock(_mutex);
        _isOpen = true;
        _opened.notify_all();
    }

    void wait()
    {
        std::unique_lock lock(_mutex);
        _opened.wait(lock, [this] { return _isOpen; });
    }

    [[nodiscard]] bool isOpen()
    {
        const std::lock_guard lock(_mutex);
        return _isOpen;
    }

private:
    std::mutex _mutex;
    std::condition_variable _opened;
    bool _isOpen = false;
};

/// To be captured by a job: calls `told` on the thread on which the last copy of the job is destroyed.
[[nodiscard]] inline std::shared_ptr<void> whenDestroyed(std::function<void()> told)
{
    return std::shared_ptr<void>(nullptr, [told = std::move(told)](void*) { told(); });
}

/// Returns once every job that `queue` holds by now has run and is destroyed. Not from a job of it.
inline void finish(platform::SerialQueue& queue)
{
    Gate done;
    queue.async([&done] { done.open(); });
    done.wait();
}

} // namespace kovalin::test
