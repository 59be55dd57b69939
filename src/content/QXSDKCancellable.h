#pragma once

#include <atomic>

/// A flag that tells whoever holds it that nobody wants the outcome any more. Any thread; once set, it stays.
class QXSDKCancellable final {
public:
    void cancel() { _isCancelled = true; }
    [[nodiscard]] bool isCancelled() const { return _isCancelled; }

private:
    std::atomic<bool> _isCancelled = false;
};
