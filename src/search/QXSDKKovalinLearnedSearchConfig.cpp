#include "search/QXSDKKovalinLearnedSearchConfig.h"

#include "kits/core/QXSDKDynamicConfigManager.h"

QXSDKKovalinLearnedSearchConfig::~QXSDKKovalinLearnedSearchConfig() = default;

bool QXSDKKovalinLearnedSearchConfig::isLearnedSearchEnabled() const
{
    static const bool isEnabled = [] {
        const auto config = QXSDKDynamicConfigManager::shared()->dynamicConfig(QStringLiteral("kovalinLearnedSearch"));
        return config && config->boolValue({QStringLiteral("enabled")}, true);
    }();
    return isEnabled;
}
