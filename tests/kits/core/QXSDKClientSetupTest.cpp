#include "kits/core/QXSDKClientSetup.h"

#include <gtest/gtest.h>

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

} // namespace
