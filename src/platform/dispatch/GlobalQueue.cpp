#include "platform/dispatch/GlobalQueue.h"

#include "platform/dispatch/DispatchState.h"

#include <utility>

namespace kovalin::platform {

void dispatchGlobal(std::function<void()> job)
{
    DispatchState::shared().global.post(std::move(job));
}

} // namespace kovalin::platform
