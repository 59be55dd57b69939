#pragma once

#include "kits/core/QXSDKDynamicConfigManager.h"

#include <memory>
#include <mutex>
#include <vector>

namespace kovalin::test {

/// What completions were called with. Any thread; copies share it.
class UpdateOutcomes final {
public:
    [[nodiscard]] QXSDKDynamicConfigManager::UpdateCompletion add() const
    {
        return [shared = _shared](bool success) {
            const std::lock_guard lock(shared->mutex);
            shared->all.push_back(success);
        };
    }
    [[nodiscard]] std::vector<bool> all() const
    {
        const std::lock_guard lock(_shared->mutex);
        return _shared->all;
    }

private:
    struct Shared {
        std::mutex mutex;
        std::vector<bool> all;
    };
    std::shared_ptr<Shared> _shared = std::make_shared<Shared>();
};

} // namespace kovalin::test
