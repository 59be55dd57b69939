#include "platform/dispatch/ThreadQueues.h"

#include "platform/dispatch/ThreadQueueCore.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kovalin::platform {

// A core's mutex is taken before ours, so no core is called with ours held.

void ThreadQueues::add(std::shared_ptr<ThreadQueueCore> core)
{
    for (const auto& done : _takeDone()) {
        done->close();
    }
    const std::lock_guard lock(_mutex);
    _cores.push_back(std::move(core));
}

void ThreadQueues::open()
{
    std::vector<std::shared_ptr<ThreadQueueCore>> cores;
    {
        const std::lock_guard lock(_mutex);
        _phase = QueuePhase::Open;
        _isEnding = false;
        cores = _cores;
    }
    for (const auto& core : cores) {
        core->open();
    }
}

void ThreadQueues::announceEnd()
{
    std::vector<std::shared_ptr<ThreadQueueCore>> cores;
    {
        const std::lock_guard lock(_mutex);
        _isEnding = true;
        cores = _cores;
    }
    for (const auto& core : cores) {
        core->announceEnd();
    }
}

void ThreadQueues::close()
{
    std::vector<std::shared_ptr<ThreadQueueCore>> cores;
    {
        const std::lock_guard lock(_mutex);
        _phase = QueuePhase::Closed;
        cores = _cores;
    }
    for (const auto& core : cores) {
        core->close();
    }
    [[maybe_unused]] const auto done = _takeDone();
}

QueuePhase ThreadQueues::phase() const
{
    const std::lock_guard lock(_mutex);
    return _phase;
}

bool ThreadQueues::isEnding() const
{
    const std::lock_guard lock(_mutex);
    return _isEnding;
}

std::vector<std::shared_ptr<ThreadQueueCore>> ThreadQueues::_takeDone()
{
    std::vector<std::shared_ptr<ThreadQueueCore>> cores;
    {
        const std::lock_guard lock(_mutex);
        cores = _cores;
    }
    std::erase_if(cores, [](const auto& core) { return !core->isDone(); });
    const std::lock_guard lock(_mutex);
    // Another thread may be here for the same ones: only who takes a core out of the list has it.
    std::erase_if(cores, [this](const auto& core) { return std::erase(_cores, core) == 0; });
    return cores;
}

} // namespace kovalin::platform
