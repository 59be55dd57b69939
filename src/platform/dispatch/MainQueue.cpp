#include "platform/dispatch/MainQueue.h"

#include "platform/dispatch/DispatchState.h"

#include <utility>

namespace kovalin::platform {

void dispatchMain(std::function<void()> job)
{
    DispatchState::shared().main.post(std::move(job));
}

} // namespace kovalin::platform
