#include "kits/core/QXSDKClientSetup.h"

#include "kits/core/InstalledClientSetup.h"
#include "platform/foundation/NotificationCenter.h"

#include <QtCore/QStringList>

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace {

TEST(QXSDKClientSetup, IsEmptyBeforeItIsSet)
{
    QXSDKClientSetup::setShared({});
    const auto setup = QXSDKClientSetup::shared();
    ASSERT_NE(setup, nullptr);
    EXPECT_EQ(setup->clientId, QString());
    EXPECT_EQ(setup->contentBaseUrl, QString());
    EXPECT_EQ(setup->authenticationBaseUrl, QString());
    EXPECT_EQ(setup->apiBaseUrl, QString());
    EXPECT_TRUE(setup->isAnalyticsEnabled);
    EXPECT_EQ(setup->avatarAppStoreUrl, QString());
}

TEST(QXSDKClientSetup, IsReplacedAsAWhole)
{
    QXSDKClientSetup::setShared(
        {QStringLiteral("id"), QStringLiteral("content"), QStringLiteral("login"), QStringLiteral("api")});
    const auto before = QXSDKClientSetup::shared();
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("other")});
    EXPECT_EQ(before->apiBaseUrl, QStringLiteral("api")) << "what is held stays as it was";
    EXPECT_EQ(QXSDKClientSetup::shared()->clientId, QStringLiteral("other"));
    EXPECT_EQ(QXSDKClientSetup::shared()->apiBaseUrl, QString());
    QXSDKClientSetup::setShared({});
}

TEST(QXSDKClientSetup, CanBeReplacedWhileOthersRead)
{
    std::thread reading([] {
        for (int turn = 0; turn < 1000; ++turn) {
            const auto setup = QXSDKClientSetup::shared();
            EXPECT_EQ(setup->clientId, setup->apiBaseUrl);
        }
    });
    for (int turn = 0; turn < 1000; ++turn) {
        const QString text = QString::number(turn);
        QXSDKClientSetup::setShared({.clientId = text, .apiBaseUrl = text});
    }
    reading.join();
    QXSDKClientSetup::setShared({});
}

/// Asks, whenever it is told of a change, for what is installed.
class Listener final {
public:
    void setupDidChange() { heard.push_back(QXSDKClientSetup::shared()->clientId); }

    QStringList heard;
};

TEST(QXSDKClientSetup, TellsOfEachReplacementBeforeItReturns)
{
    const auto listener = std::make_shared<Listener>();
    kovalin::platform::NotificationCenter::qxsdkCenter().addObserver(listener, &Listener::setupDidChange,
                                                                     kQXSDKClientSetupDidChangeNotification);
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("a")});
    EXPECT_EQ(listener->heard, QStringList({QStringLiteral("a")}));
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("a")});
    EXPECT_EQ(listener->heard, QStringList({QStringLiteral("a"), QStringLiteral("a")}));
    QXSDKClientSetup::setShared({});
}

TEST(QXSDKClientSetup, CountsHowOftenAnalyticsWasSwitchedOff)
{
    const auto optOuts = [] {
        return kovalin::kits::installedClientSetup()->optOuts;
    };
    const quint64 before = optOuts();
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("a")});
    EXPECT_EQ(optOuts(), before);
    QXSDKClientSetup::setShared({.isAnalyticsEnabled = false});
    EXPECT_EQ(optOuts(), before + 1);
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("b"), .isAnalyticsEnabled = false});
    EXPECT_EQ(optOuts(), before + 1) << "it was off already";
    QXSDKClientSetup::setShared({});
    EXPECT_EQ(optOuts(), before + 1);
    QXSDKClientSetup::setShared({.isAnalyticsEnabled = false});
    EXPECT_EQ(optOuts(), before + 2);
    QXSDKClientSetup::setShared({});
}

TEST(QXSDKClientSetup, CountsEachSwitchingOffOnceHoweverManyThreadsReplaceIt)
{
    const quint64 before = kovalin::kits::installedClientSetup()->optOuts;
    constexpr int turns = 500;
    const auto switchOffAndOn = [] {
        for (int turn = 0; turn < turns; ++turn) {
            QXSDKClientSetup::setShared({.isAnalyticsEnabled = false});
            QXSDKClientSetup::setShared({});
        }
    };
    std::thread other(switchOffAndOn);
    switchOffAndOn();
    other.join();
    const quint64 optOuts = kovalin::kits::installedClientSetup()->optOuts - before;
    EXPECT_GE(optOuts, 1U);
    EXPECT_LE(optOuts, 2U * turns);
    EXPECT_TRUE(QXSDKClientSetup::shared()->isAnalyticsEnabled);
}

} // namespace
