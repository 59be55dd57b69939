#pragma once

#include <memory>
#include <utility>

namespace kovalin::platform {

/// Holds one shared object that is replaced whole. Any thread may load and store at any time; a reader has the old object
/// or the new one, and keeps what it has for as long as it likes.
///
/// Not std::atomic<std::shared_ptr>: in libstdc++ 12 its load lets go of the pointer without a barrier, which the thread
/// sanitizer rightly reports. The free functions lock one of a few process-wide mutexes for the length of a copy.
template <class T>
class SharedSlot final {
public:
    SharedSlot() = default;
    explicit SharedSlot(std::shared_ptr<T> object)
        : _object(std::move(object))
    {
    }
    SharedSlot(const SharedSlot&) = delete;
    SharedSlot& operator=(const SharedSlot&) = delete;

    /// Null until something was stored.
    [[nodiscard]] std::shared_ptr<T> load() const { return std::atomic_load(&_object); }

    /// The object that was held before goes on the calling thread, if nobody else holds it.
    void store(std::shared_ptr<T> object) { std::atomic_store(&_object, std::move(object)); }

    /// Stores, and returns what was held before.
    std::shared_ptr<T> exchange(std::shared_ptr<T> object) { return std::atomic_exchange(&_object, std::move(object)); }

    /// Stores if `expected` is what is held, else writes that to `expected`. Tells whether it stored.
    bool compareExchange(std::shared_ptr<T>& expected, std::shared_ptr<T> object)
    {
        return std::atomic_compare_exchange_strong(&_object, &expected, std::move(object));
    }

private:
    std::shared_ptr<T> _object;
};

} // namespace kovalin::platform
