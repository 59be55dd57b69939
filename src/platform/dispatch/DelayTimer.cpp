#include "platform/dispatch/DelayTimer.h"

#include <algorithm>

namespace kovalin::platform {

// A due time further off would overflow the steady clock.
constexpr std::chrono::nanoseconds kLongestDelay = std::chrono::days(365);

void DelayTimer::open()
{
    const std::lock_guard lock(_mutex);
    _phase = QueuePhase::Open;
    if (!_pending.empty()) {
        _startThread();
    }
}

void DelayTimer::close()
{
    decltype(_pending) dropped;
    std::thread thread;
    {
        const std::lock_guard lock(_mutex);
        _phase = QueuePhase::Closed;
        dropped.swap(_pending);
        thread = std::move(_thread);
        _changed.notify_all();
    }
    if (thread.joinable()) {
        thread.join();
    }
    // What was dropped goes unlocked, since its captures may use any queue as they go.
}

DelayTimer::Id DelayTimer::schedule(std::chrono::nanoseconds delay, std::function<void()> due)
{
    const auto clamped = std::clamp(delay, std::chrono::nanoseconds::zero(), kLongestDelay);
    const Time time =
        std::chrono::steady_clock::now() + std::chrono::duration_cast<std::chrono::steady_clock::duration>(clamped);
    const std::lock_guard lock(_mutex);
    const Id id = ++_lastId;
    if (_phase == QueuePhase::Closed) {
        return id; // `due` goes after the lock, so that its captures may come back here.
    }
    const auto place = _pending.emplace(std::pair(time, id), std::move(due)).first;
    if (_phase == QueuePhase::Open) {
        if (!_thread.joinable()) {
            _startThread();
        } else if (place == _pending.begin()) {
            _changed.notify_all();
        }
    }
    return id;
}

void DelayTimer::cancel(Id id)
{
    std::function<void()> cancelled; // goes after the lock
    const std::lock_guard lock(_mutex);
    const auto found = std::ranges::find(_pending, id, [](const auto& entry) { return entry.first.second; });
    if (found == _pending.end()) {
        return;
    }
    cancelled = std::move(found->second);
    _pending.erase(found);
    if (_pending.empty()) {
        // So that the thread doesn't wake up at a time at which nothing is due any more.
        _changed.notify_all();
    }
}

void DelayTimer::_startThread()
{
    _thread = std::thread([this] { _run(); });
}

void DelayTimer::_run() noexcept
{
    std::unique_lock lock(_mutex);
    while (_phase == QueuePhase::Open) {
        if (_pending.empty()) {
            _changed.wait(lock);
            continue;
        }
        // A copy: while this waits the entry may go.
        const Time next = _pending.begin()->first.first;
        if (next > std::chrono::steady_clock::now()) {
            _changed.wait_until(lock, next);
            continue;
        }
        std::function<void()> due = std::move(_pending.begin()->second);
        _pending.erase(_pending.begin());
        lock.unlock();
        due();
        due = nullptr;
        lock.lock();
    }
}

} // namespace kovalin::platform
