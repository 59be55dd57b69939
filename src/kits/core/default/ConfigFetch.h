#pragma once

#include <QtCore/QtGlobal>

#include <functional>
#include <mutex>
#include <vector>

namespace kovalin::kits {

/// Those who wait for one fetch of the configurations. Any thread. Each completion is called exactly once: with the outcome, or
/// with false where this is destroyed without one.
class ConfigFetch final {
public:
    using Completion = std::function<void(bool success)>;

    ConfigFetch() = default;
    ~ConfigFetch();
    Q_DISABLE_COPY_MOVE(ConfigFetch)

    /// Takes the completion, and true; or leaves it, and false, since there is an outcome already.
    [[nodiscard]] bool join(Completion& completion);

    /// Calls those who joined, in their order, on this thread. Later outcomes do nothing.
    void finish(bool success);

private:
    std::mutex _mutex;
    bool _isOver = false;             // guarded by _mutex
    std::vector<Completion> _waiting; // guarded by _mutex
};

} // namespace kovalin::kits
