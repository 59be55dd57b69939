#pragma once

#include "platform/dispatch/GlobalQueue.h"
#include "platform/dispatch/ThreadCheck.h"

#include <memory>
#include <utility>

namespace kovalin::platform {

/// Shares an object that is so large that its end takes milliseconds, and spares the main thread these: if the last reference
/// goes there, the object ends on the global queue, and right where that reference goes otherwise. Any thread.
///
/// While the application object dies, and without one, it ends on the main thread too.
template <class T>
[[nodiscard]] std::shared_ptr<T> endingOffTheMainThread(std::unique_ptr<T> object)
{
    return {object.release(), [](T* last) {
                std::shared_ptr<T> owner(last);
                if (isMainThread()) {
                    dispatchGlobal([owner = std::move(owner)] {});
                }
            }};
}

} // namespace kovalin::platform
