#include "content/ContentTest.h"
#include "content/QXSDKKovalinPacksArchive.h"
#include "platform/foundation/Application.h"
#include "platform/foundation/KeyedUnarchiver.h"
#include "support/WaitFor.h"

#include <QtCore/QCoreApplication>

#include <gtest/gtest.h>

#include <atomic>

// What is there when the application object dies.

using namespace kovalin::platform;
using namespace kovalin::test;

namespace {

int argumentCount = 1;
char programName[] = "content_shutdown_tests";
char* arguments[] = {programName, nullptr};

/// Waits until the archive has done what it was given.
void drain(QXSDKKovalinPacksArchive& archive)
{
    std::atomic<bool> isDone = false;
    archive.unarchivePacksWithCompletion([&isDone](const auto&) { isDone = true; });
    ASSERT_TRUE(waitFor([&isDone] { return isDone.load(); }));
}

TEST(ContentShutdown, WritesThePacksAtTheApplicationsEnd)
{
    const OwnCachesDirectory caches;
    std::shared_ptr<QXSDKKovalinPacksArchive> archive;
    {
        const QCoreApplication application(argumentCount, arguments);
        archive = QXSDKKovalinPacksArchive::create();
        drain(*archive);
        archive->archivePacks({namedPack(QStringLiteral("a"), QStringLiteral("A"))});
        drain(*archive);
        // Told at the last moment, and gone right afterwards.
        Application::setState(ApplicationState::Background);
    }
    ASSERT_TRUE(archive->hasPacksToUnarchiveOnDisk());
    const auto packs = KeyedUnarchiver::unarchiveObjectsWithFile<KovalinPack>(
        caches.path(QStringLiteral("qxsdk-kovalin-packs.plist")));
    ASSERT_TRUE(packs);
    ASSERT_EQ(packs->size(), 1);
}

TEST(ContentShutdown, WritesNothingWithoutPacks)
{
    const OwnCachesDirectory caches;
    std::shared_ptr<QXSDKKovalinPacksArchive> archive;
    {
        const QCoreApplication application(argumentCount, arguments);
        archive = QXSDKKovalinPacksArchive::create();
        Application::setState(ApplicationState::Background);
    }
    EXPECT_FALSE(archive->hasPacksToUnarchiveOnDisk());
}

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
