#include "content/QXSDKKovalinPacksArchive.h"

#include "content/ContentTest.h"
#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Application.h"
#include "platform/foundation/KeyedArchiver.h"
#include "platform/foundation/KeyedUnarchiver.h"
#include "support/ScriptedLoginClient.h"
#include "support/WaitFor.h"

#include <QtCore/QDir>
#include <QtCore/QFile>

#include <gtest/gtest.h>

#include <atomic>

using namespace kovalin::platform;
using namespace kovalin::test;

namespace {

const QString fileName = QStringLiteral("qxsdk-kovalin-packs.plist");

class QXSDKKovalinPacksArchiveTest : public testing::Test {
protected:
    ~QXSDKKovalinPacksArchiveTest() override { Application::setState(ApplicationState::Active); }

    /// What the archive gives.
    std::optional<KovalinPackList> unarchived()
    {
        std::atomic<bool> isThere = false;
        std::optional<KovalinPackList> given;
        archive->unarchivePacksWithCompletion([&](const std::optional<KovalinPackList>& packs) {
            EXPECT_FALSE(isMainThread());
            given = packs;
            isThere = true;
        });
        EXPECT_TRUE(waitFor([&isThere] { return isThere.load(); }));
        return given;
    }
    /// The archive's jobs so far have run: once it has been read, asking again touches no file.
    void drain() { static_cast<void>(unarchived()); }

    void resign()
    {
        Application::setState(ApplicationState::Inactive);
        Application::setState(ApplicationState::Active);
        drain();
    }
    void writeFile(const KovalinPackList& packs) { ASSERT_TRUE(KeyedArchiver::archiveRootObject(packs, path)); }
    [[nodiscard]] QStringList idsOnDisk() const
    {
        QStringList ids;
        const auto packs = KeyedUnarchiver::unarchiveObjectsWithFile<KovalinPack>(path);
        for (const auto& pack : packs.value()) {
            ids.append(pack->packId().value());
        }
        return ids;
    }
    [[nodiscard]] bool isOnDisk() const { return archive->hasPacksToUnarchiveOnDisk(); }

    OwnCachesDirectory caches;
    const QString path = caches.path(fileName);
    std::shared_ptr<QXSDKKovalinPacksArchive> archive = QXSDKKovalinPacksArchive::create();
    const KovalinPackPtr first = namedPack(QStringLiteral("one"), QStringLiteral("One"));
    const KovalinPackPtr second = namedPack(QStringLiteral("two"), QStringLiteral("Two"));
};

TEST_F(QXSDKKovalinPacksArchiveTest, GivesNothingWithoutAFile)
{
    EXPECT_FALSE(isOnDisk());
    EXPECT_FALSE(unarchived());
}

TEST_F(QXSDKKovalinPacksArchiveTest, DeletesTheFileByReadingAndRestoresItAtTheNextResignation)
{
    writeFile({first, second});
    EXPECT_TRUE(isOnDisk());
    const auto packs = unarchived();
    ASSERT_TRUE(packs);
    ASSERT_EQ(packs->size(), 2);
    EXPECT_TRUE(packs->at(0)->isEqual(*first));
    EXPECT_FALSE(isOnDisk());
    resign();
    EXPECT_TRUE(isOnDisk());
    EXPECT_EQ(idsOnDisk(), (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
}

TEST_F(QXSDKKovalinPacksArchiveTest, ReadsTheFileOnce)
{
    writeFile({first});
    const auto packs = unarchived();
    writeFile({second});
    const auto again = unarchived();
    ASSERT_TRUE(packs && again);
    EXPECT_EQ(again->at(0), packs->at(0)) << "the same pack, and not one read anew";
    EXPECT_TRUE(isOnDisk());
}

TEST_F(QXSDKKovalinPacksArchiveTest, WritesTheLastPacksOnceAtAResignation)
{
    drain();
    archive->archivePacks({first});
    archive->archivePacks({second});
    drain();
    EXPECT_FALSE(isOnDisk()) << "nothing is written before";
    resign();
    EXPECT_EQ(idsOnDisk(), QStringList{QStringLiteral("two")});
    ASSERT_TRUE(QFile::remove(path));
    resign();
    EXPECT_FALSE(isOnDisk()) << "nothing new, nothing written";
}

TEST_F(QXSDKKovalinPacksArchiveTest, WritesAnEmptyListToo)
{
    drain();
    archive->archivePacks({});
    resign();
    EXPECT_TRUE(isOnDisk());
    EXPECT_TRUE(idsOnDisk().isEmpty());
}

TEST_F(QXSDKKovalinPacksArchiveTest, WritesNothingWithoutPacks)
{
    drain();
    resign();
    EXPECT_FALSE(isOnDisk());
}

TEST_F(QXSDKKovalinPacksArchiveTest, WritesPendingPacksAlthoughItWasCleared)
{
    writeFile({first});
    drain();
    archive->archivePacks({second});
    archive->clear();
    drain();
    EXPECT_FALSE(isOnDisk());
    resign();
    EXPECT_EQ(idsOnDisk(), QStringList{QStringLiteral("two")});
}

TEST_F(QXSDKKovalinPacksArchiveTest, StaysEmptyWhereItIsClearedAfterTheWrite)
{
    drain();
    archive->archivePacks({first});
    resign();
    EXPECT_TRUE(isOnDisk());
    archive->clear();
    drain();
    EXPECT_FALSE(isOnDisk());
    resign();
    EXPECT_FALSE(isOnDisk());
}

TEST_F(QXSDKKovalinPacksArchiveTest, ClearsWhenTheAccountIsUnlinked)
{
    const InstalledLoginClient login;
    writeFile({first});
    login->unlink();
    ASSERT_TRUE(waitFor([this] { return !isOnDisk(); }));
}

TEST_F(QXSDKKovalinPacksArchiveTest, OverwritesPacksThatCameBeforeTheFirstRead)
{
    archive->archivePacks({second});
    EXPECT_FALSE(unarchived()) << "no file, so no packs";
    resign();
    EXPECT_FALSE(isOnDisk());
}

TEST_F(QXSDKKovalinPacksArchiveTest, KeepsWhatItHadWhereTheFileIsDamaged)
{
    archive->archivePacks({second});
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("no archive");
    file.close();
    const auto packs = unarchived();
    ASSERT_TRUE(packs);
    EXPECT_EQ(packs->at(0), second);
    EXPECT_FALSE(isOnDisk()) << "a damaged file is tried once";
}

TEST_F(QXSDKKovalinPacksArchiveTest, SurvivesAFileThatIsChangedAtAnyByteOrCutAnywhere)
{
    writeFile({first, second});
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray good = file.readAll();
    file.close();
    for (qsizetype at = 0; at < good.size(); ++at) {
        QByteArray changed = good;
        changed[at] = static_cast<char>(changed[at] ^ 0x10);
        for (const QByteArray& bytes : {changed, good.left(at)}) {
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(bytes);
            file.close();
            archive = QXSDKKovalinPacksArchive::create();
            const auto packs = unarchived();
            // A changed letter of a text goes unseen; a part of an archive never counts as one.
            EXPECT_TRUE(!packs || (bytes == changed && packs->size() <= 2)) << at;
            EXPECT_FALSE(isOnDisk()) << at;
        }
    }
}

TEST_F(QXSDKKovalinPacksArchiveTest, CountsAFailedWriteAsWritten)
{
    drain();
    ASSERT_TRUE(QDir().mkpath(path)); // a folder in the file's place
    archive->archivePacks({first});
    resign();
    ASSERT_TRUE(QDir().rmdir(path));
    resign();
    EXPECT_FALSE(isOnDisk());
}

TEST_F(QXSDKKovalinPacksArchiveTest, MakesTheCachesDirectoryIfItIsMissing)
{
    setCachesDirectory(caches.path(QStringLiteral("deep/folder")));
    archive = QXSDKKovalinPacksArchive::create();
    drain();
    archive->archivePacks({first});
    resign();
    EXPECT_TRUE(isOnDisk());
}

TEST_F(QXSDKKovalinPacksArchiveTest, CompletesThoughItIsGone)
{
    writeFile({first});
    std::atomic<bool> isThere = false;
    archive->unarchivePacksWithCompletion([&isThere](const auto& packs) { isThere = packs.has_value(); });
    archive.reset();
    EXPECT_TRUE(waitFor([&isThere] { return isThere.load(); }));
}

} // namespace
