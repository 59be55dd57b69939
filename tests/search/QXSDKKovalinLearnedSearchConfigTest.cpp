// The value is worked out once for a process, so each test asks in processes of its own.
#include "search/QXSDKKovalinLearnedSearchConfig.h"

#include "kits/core/QXSDKDynamicConfigManager.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <optional>

namespace {

using testing::ExitedWithCode;

enum ExitCode { Disabled = 10, Enabled = 11 };

/// Knows one configuration, "kovalinLearnedSearch".
class OneConfig final : public QXSDKDynamicConfigManager {
public:
    explicit OneConfig(const char* values)
        : _values(QJsonDocument::fromJson(values).object())
    {
    }

    [[nodiscard]] std::shared_ptr<const QXSDKDynamicConfig> dynamicConfig(const QString& name) const override
    {
        return name == QStringLiteral("kovalinLearnedSearch") ? std::make_shared<const QXSDKDynamicConfig>(_values)
                                                              : nullptr;
    }
    void updateIfNecessary(UpdateCompletion completion) override { completion(true); }

private:
    QJsonObject _values;
};

/// Installs a configuration of these values.
void install(const char* values)
{
    QXSDKDynamicConfigManager::setShared(std::make_shared<OneConfig>(values));
}

/// Ends the process, whose exit code tells the value.
[[noreturn]] void tell()
{
    // Nothing is destroyed: the application object belongs to the process that this one is a copy of.
    std::_Exit(QXSDKKovalinLearnedSearchConfig().isLearnedSearchEnabled() ? Enabled : Disabled);
}

[[noreturn]] void tellWith(const char* values)
{
    install(values);
    tell();
}

class QXSDKKovalinLearnedSearchConfigDeathTest : public testing::Test {
protected:
    // A fresh process, not a copy of one in which somebody may have asked already.
    QXSDKKovalinLearnedSearchConfigDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(QXSDKKovalinLearnedSearchConfigDeathTest, IsDisabledWithoutAConfiguration)
{
    EXPECT_EXIT(tell(), ExitedWithCode(Disabled), "");
}

TEST_F(QXSDKKovalinLearnedSearchConfigDeathTest, IsEnabledByAConfigurationThatDoesntSaySo)
{
    EXPECT_EXIT(tellWith("{}"), ExitedWithCode(Enabled), "");
    EXPECT_EXIT(tellWith(R"({"disabled": true})"), ExitedWithCode(Enabled), "");
    EXPECT_EXIT(tellWith(R"({"enabled": null})"), ExitedWithCode(Enabled), "");
}

TEST_F(QXSDKKovalinLearnedSearchConfigDeathTest, IsWhatTheConfigurationSays)
{
    EXPECT_EXIT(tellWith(R"({"enabled": true})"), ExitedWithCode(Enabled), "");
    EXPECT_EXIT(tellWith(R"({"enabled": false})"), ExitedWithCode(Disabled), "");
}

TEST_F(QXSDKKovalinLearnedSearchConfigDeathTest, StaysAsItWasAtTheFirstCall)
{
    const auto tellAfterAChange = [](const char* first, const char* later) {
        install(first);
        static_cast<void>(QXSDKKovalinLearnedSearchConfig().isLearnedSearchEnabled());
        tellWith(later);
    };
    EXPECT_EXIT(tellAfterAChange(R"({"enabled": true})", R"({"enabled": false})"), ExitedWithCode(Enabled), "");
    EXPECT_EXIT(tellAfterAChange(R"({"enabled": false})", R"({"enabled": true})"), ExitedWithCode(Disabled), "");
}

TEST_F(QXSDKKovalinLearnedSearchConfigDeathTest, StaysDisabledWhenTheConfigurationComesTooLate)
{
    const auto tellAfterTheFirstCall = [] {
        static_cast<void>(QXSDKKovalinLearnedSearchConfig().isLearnedSearchEnabled());
        tellWith("{}");
    };
    EXPECT_EXIT(tellAfterTheFirstCall(), ExitedWithCode(Disabled), "");
}

TEST_F(QXSDKKovalinLearnedSearchConfigDeathTest, IsNotDecidedByBeingMade)
{
    const auto tellOneMadeBefore = [] {
        const QXSDKKovalinLearnedSearchConfig config;
        install("{}");
        std::_Exit(config.isLearnedSearchEnabled() ? Enabled : Disabled);
    };
    EXPECT_EXIT(tellOneMadeBefore(), ExitedWithCode(Enabled), "");
}

} // namespace
