#include "kits/core/QXSDKDynamicConfigManager.h"

#include "platform/foundation/SharedSlot.h"

#include <utility>

namespace {

class NoConfigs final : public QXSDKDynamicConfigManager {
public:
    [[nodiscard]] std::shared_ptr<const QXSDKDynamicConfig> dynamicConfig(const QString&) const override
    {
        return nullptr;
    }
    void updateIfNecessary(UpdateCompletion completion) override { completion(false); }
};

struct Installed {
    kovalin::platform::SharedSlot<QXSDKDynamicConfigManager> manager;
    const std::shared_ptr<QXSDKDynamicConfigManager> none = std::make_shared<NoConfigs>();
};

Installed& installed()
{
    // Never destroyed: threads may still ask while the process ends.
    static auto& state = *new Installed;
    return state;
}

} // namespace

QXSDKDynamicConfigManager::~QXSDKDynamicConfigManager() = default;

std::shared_ptr<QXSDKDynamicConfigManager> QXSDKDynamicConfigManager::shared()
{
    auto manager = installed().manager.load();
    return manager ? manager : installed().none;
}

void QXSDKDynamicConfigManager::setShared(std::shared_ptr<QXSDKDynamicConfigManager> manager)
{
    static_cast<void>(installed().manager.exchange(std::move(manager)));
}
