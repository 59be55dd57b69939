#pragma once

#include <mutex>
#include <utility>

namespace kovalin::platform {

/// A value behind a mutex, out of reach but through `with`. Any thread.
template <class Value>
class Guarded final {
public:
    Guarded() = default;
    Guarded(const Guarded&) = delete;
    Guarded& operator=(const Guarded&) = delete;

    /// Calls `use` with a reference to the value, under the mutex, which `use` must not ask for again; what it returns.
    template <class Use>
    auto with(Use&& use)
    {
        const std::lock_guard lock(_mutex);
        return std::forward<Use>(use)(_value);
    }

private:
    std::mutex _mutex;
    Value _value;
};

} // namespace kovalin::platform
