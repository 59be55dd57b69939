#include "kits/core/QXSDKDynamicConfigManager.h"

#include <gtest/gtest.h>

namespace {

class FixedConfigs final : public QXSDKDynamicConfigManager {
public:
    [[nodiscard]] std::shared_ptr<const QXSDKDynamicConfig> dynamicConfig(const QString& name) const override
    {
        return name == QStringLiteral("known") ? std::make_shared<const QXSDKDynamicConfig>(QJsonObject()) : nullptr;
    }
    void updateIfNecessary(UpdateCompletion completion) override { completion(true); }
};

TEST(QXSDKDynamicConfigManager, KnowsNothingWhileNoneIsInstalled)
{
    const auto manager = QXSDKDynamicConfigManager::shared();
    ASSERT_NE(manager, nullptr);
    EXPECT_EQ(manager->dynamicConfig(QStringLiteral("known")), nullptr);
    int calls = 0;
    manager->updateIfNecessary([&calls](bool success) {
        ++calls;
        EXPECT_FALSE(success);
    });
    EXPECT_EQ(calls, 1);
}

TEST(QXSDKDynamicConfigManager, IsTheOneThatAHostInstalled)
{
    const auto configs = std::make_shared<FixedConfigs>();
    QXSDKDynamicConfigManager::setShared(configs);
    EXPECT_EQ(QXSDKDynamicConfigManager::shared(), configs);
    EXPECT_NE(QXSDKDynamicConfigManager::shared()->dynamicConfig(QStringLiteral("known")), nullptr);
    QXSDKDynamicConfigManager::setShared(nullptr);
    EXPECT_EQ(QXSDKDynamicConfigManager::shared()->dynamicConfig(QStringLiteral("known")), nullptr);
}

} // namespace
