// The kit's own ways to a server, against the development server.
#include "end_to_end/ServedModels.h"
#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/default/QXSDKHttpDynamicConfigManager.h"
#include "kits/core/default/QXSDKHttpOperationalMetricsQueue.h"
#include "kovalin-backend/Backend.h"
#include "platform/foundation/Clock.h"
#include "support/WaitFor.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>

using namespace kovalin::test;
using kovalin::backend::AnswerRule;
using kovalin::backend::Backend;

namespace {

class Kits : public testing::Test {
protected:
    Kits()
    {
        QXSDKClientSetup::setShared({.clientId = QStringLiteral("end-to-end"),
                                     .apiBaseUrl = backend.baseUrl().toString() + QStringLiteral("/api")});
    }
    ~Kits() override { QXSDKClientSetup::setShared({}); }

    static bool update(QXSDKDynamicConfigManager& configs)
    {
        std::atomic<int> outcome = -1;
        configs.updateIfNecessary([&outcome](bool success) { outcome = success ? 1 : 0; });
        EXPECT_TRUE(waitFor([&outcome] { return outcome >= 0; }));
        return outcome == 1;
    }

    const ServedModels content;
    const QTemporaryDir folder;
    Backend backend{{.contentFolder = content.folder()}};
};

TEST_F(Kits, FetchTheConfigurationAndKnowItAtTheNextStartWithoutAServer)
{
    QFile file(content.folder() + QStringLiteral("/configs.json"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"ttlSeconds":60,"configs":{"kovalinLearnedSearch":{"enabled":false}}})");
    file.close();
    {
        QXSDKHttpDynamicConfigManager configs({.folder = folder.path()});
        EXPECT_EQ(configs.dynamicConfig(QStringLiteral("kovalinLearnedSearch")), nullptr);
        ASSERT_TRUE(update(configs));
        ASSERT_NE(configs.dynamicConfig(QStringLiteral("kovalinLearnedSearch")), nullptr);
    }
    const QString stored = folder.filePath(QStringLiteral("qxsdk-dynamic-configs.json"));
    ASSERT_TRUE(waitFor([&stored] { return QFile::exists(stored); })); // in the background
    backend.setAnswer({"*", AnswerRule::withStatus(503)});
    QXSDKHttpDynamicConfigManager configs({.folder = folder.path()});
    const auto config = configs.dynamicConfig(QStringLiteral("kovalinLearnedSearch"));
    ASSERT_NE(config, nullptr);
    EXPECT_FALSE(config->boolValue({QStringLiteral("enabled")}, true));
}

TEST_F(Kits, BringMetricsToTheServerOnceEach)
{
    QXSDKHttpOperationalMetricsQueue metrics({.folder = folder.path()});
    constexpr int batch = 100; // as many leave at once
    for (int i = 0; i < batch; ++i) {
        if (i % 2 == 0) {
            metrics.addCount(i + 1, QStringLiteral("counted:%1").arg(i));
        } else {
            metrics.addLatencyFromTime(kovalin::platform::currentTimeSeconds(), QStringLiteral("measured:%1").arg(i));
        }
    }
    ASSERT_TRUE(waitFor([this] { return backend.metrics().entries.size() >= batch; }));
    const auto taken = backend.metrics();
    EXPECT_EQ(taken.entries.size(), batch);
    EXPECT_EQ(taken.repeats, 0);
    EXPECT_EQ(taken.entries.front().name, QStringLiteral("counted:0"));
    EXPECT_EQ(taken.entries.back().name, QStringLiteral("measured:99"));
}

} // namespace
