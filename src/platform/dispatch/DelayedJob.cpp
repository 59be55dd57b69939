#include "platform/dispatch/DelayedJob.h"

#include "platform/dispatch/DelayedJobState.h"

namespace kovalin::platform {

DelayedJob::DelayedJob() = default;

DelayedJob::DelayedJob(std::shared_ptr<State> state)
    : _state(std::move(state))
{
}

DelayedJob::DelayedJob(DelayedJob&& other) noexcept = default;

DelayedJob& DelayedJob::operator=(DelayedJob&& other) noexcept
{
    if (this != &other) {
        cancel();
        _state = std::move(other._state);
    }
    return *this;
}

DelayedJob::~DelayedJob()
{
    cancel();
}

void DelayedJob::cancel()
{
    // Taken out first: what goes with the job may come back here.
    if (const auto state = std::exchange(_state, nullptr)) {
        const std::function<void()> job = state->take();
        state->clock->cancel(state->id);
    }
}

bool DelayedJob::isPending() const
{
    if (_state == nullptr) {
        return false;
    }
    const std::lock_guard lock(_state->mutex);
    return _state->job != nullptr;
}

} // namespace kovalin::platform
