#pragma once

#include "kits/core/QXSDKDynamicConfigManager.h"

#include <atomic>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <utility>

namespace kovalin::test {

/// Dynamic configurations of which nothing is known, and whose updates end at once, or when a test says. Any thread.
class ScriptedConfigs final : public QXSDKDynamicConfigManager {
public:
    /// Whether updates wait for `answer`.
    std::atomic<bool> holds = false;

    [[nodiscard]] std::shared_ptr<const QXSDKDynamicConfig> dynamicConfig(const QString&) const override
    {
        return nullptr;
    }
    void updateIfNecessary(UpdateCompletion completion) override
    {
        if (!holds) {
            completion(true);
            return;
        }
        const std::scoped_lock lock(_mutex);
        _waiting.push_back(std::move(completion));
    }

    /// Ends the oldest update that waits, and forgets it, on the caller's thread.
    void answer(bool success)
    {
        UpdateCompletion completion;
        {
            const std::scoped_lock lock(_mutex);
            completion = std::move(_waiting.front());
            _waiting.pop_front();
        }
        completion(success);
    }
    [[nodiscard]] std::size_t waitingCount() const
    {
        const std::scoped_lock lock(_mutex);
        return _waiting.size();
    }

private:
    mutable std::mutex _mutex;
    std::deque<UpdateCompletion> _waiting;
};

/// The process's source of configurations is a scripted one for as long as this lives, and none after it.
class InstalledConfigs final {
public:
    InstalledConfigs() { QXSDKDynamicConfigManager::setShared(_configs); }
    ~InstalledConfigs() { QXSDKDynamicConfigManager::setShared(nullptr); }
    InstalledConfigs(const InstalledConfigs&) = delete;
    InstalledConfigs& operator=(const InstalledConfigs&) = delete;

    [[nodiscard]] ScriptedConfigs* operator->() const { return _configs.get(); }

private:
    std::shared_ptr<ScriptedConfigs> _configs = std::make_shared<ScriptedConfigs>();
};

} // namespace kovalin::test
