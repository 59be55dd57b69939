#pragma once

#include <future>
#include <utility>

namespace kovalin::platform {

/// An answer that a job owes to a thread that waits for it. Held by the job alone: where the job is dropped without having run,
/// the waiting thread gets `T()`. Private to this folder.
template <class T>
class OwedAnswer final {
public:
    OwedAnswer() = default;
    OwedAnswer(const OwedAnswer&) = delete;
    OwedAnswer& operator=(const OwedAnswer&) = delete;

    ~OwedAnswer()
    {
        if (!_isGiven) {
            _promise.set_value(T());
        }
    }

    /// To be called once, before the job is added.
    [[nodiscard]] std::future<T> future() { return _promise.get_future(); }

    void give(T answer)
    {
        _isGiven = true;
        _promise.set_value(std::move(answer));
    }

private:
    std::promise<T> _promise;
    bool _isGiven = false;
};

} // namespace kovalin::platform
