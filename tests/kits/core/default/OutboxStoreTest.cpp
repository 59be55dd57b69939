#include "kits/core/default/OutboxStore.h"

#include "kits/core/default/OutboxFile.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kovalin::kits {
namespace {

using test::runSqlAt;
using test::storedAt;
using testing::ElementsAre;
using testing::IsEmpty;
using Result = OutboxStore::Result;

OutboxEntry entry(const std::string& text)
{
    return {.id = QUuid::createUuid(), .time = 1'600'000'000'000, .bytes = QByteArray::fromStdString(text)};
}

class OutboxStoreTest : public testing::Test {
protected:
    [[nodiscard]] QString path() const { return folder.filePath(QStringLiteral("a/b/outbox.sqlite")); }
    [[nodiscard]] bool hasDamagedFile() const { return QFile::exists(path() + QStringLiteral(".damaged")); }

    QTemporaryDir folder;
};

TEST_F(OutboxStoreTest, GivesBackWhatItTook)
{
    const std::vector<OutboxEntry> entries = {entry("a"), entry(""), entry(std::string("\0\xff\"'", 4)),
                                              entry(std::string(100'000, 'x'))};
    {
        OutboxStore store(path());
        EXPECT_EQ(store.apply({.added = entries, .removed = {}, .dropped = 3}), Result::Done);
    }
    OutboxStore store(path());
    const auto content = store.load();
    ASSERT_TRUE(content.has_value());
    EXPECT_EQ(content->entries, entries);
    EXPECT_EQ(content->dropped, 3U);
}

TEST_F(OutboxStoreTest, IsEmptyAtFirst)
{
    OutboxStore store(path());
    const auto content = store.load();
    ASSERT_TRUE(content.has_value());
    EXPECT_THAT(content->entries, IsEmpty());
    EXPECT_EQ(content->dropped, 0U);
}

TEST_F(OutboxStoreTest, RemovesAndCounts)
{
    const std::vector<OutboxEntry> entries = {entry("a"), entry("b"), entry("c")};
    OutboxStore store(path());
    EXPECT_EQ(store.apply({.added = entries, .removed = {}, .dropped = 5}), Result::Done);
    EXPECT_EQ(store.apply({.added = {}, .removed = {entries[1].id, QUuid::createUuid()}, .dropped = -2}), Result::Done);
    EXPECT_THAT(storedAt(path()).entries, ElementsAre("a", "c"));
    EXPECT_EQ(storedAt(path()).dropped, 3);
    EXPECT_EQ(store.apply({.added = {entries[0]}, .removed = {}, .dropped = -9}), Result::Done);
    EXPECT_THAT(storedAt(path()).entries, ElementsAre("a", "c")); // no entry twice
    EXPECT_EQ(storedAt(path()).dropped, 0);
}

TEST_F(OutboxStoreTest, KeepsItsFileFromOthers)
{
    OutboxStore store(path());
    EXPECT_EQ(store.apply({.added = {entry("secret")}, .removed = {}, .dropped = 0}), Result::Done);
    for (const QString& file : {path(), QString(path() + QStringLiteral("-wal"))}) {
        EXPECT_FALSE(QFileInfo(file).permissions() & (QFile::ReadGroup | QFile::ReadOther)) << file.toStdString();
    }
}

TEST_F(OutboxStoreTest, IsSharedWithAnotherProcess)
{
    OutboxStore one(path());
    OutboxStore two(path());
    EXPECT_EQ(one.apply({.added = {entry("one")}, .removed = {}, .dropped = 1}), Result::Done);
    EXPECT_EQ(two.apply({.added = {entry("two")}, .removed = {}, .dropped = 1}), Result::Done);
    EXPECT_EQ(one.apply({.added = {entry("three")}, .removed = {}, .dropped = 0}), Result::Done);
    EXPECT_EQ(two.load()->entries.size(), 3U);
    EXPECT_EQ(one.load()->dropped, 2U);
}

TEST_F(OutboxStoreTest, FailsWithoutHarmWhileAnotherProcessHoldsTheFile)
{
    OutboxStore store(path());
    EXPECT_EQ(store.apply({.added = {entry("a")}, .removed = {}, .dropped = 0}), Result::Done);
    {
        const test::HeldFile held(path());
        EXPECT_EQ(store.apply({.added = {entry("b")}, .removed = {}, .dropped = 0}), Result::Failed);
        EXPECT_EQ(store.erase(), Result::Failed);
    }
    EXPECT_EQ(store.apply({.added = {entry("c")}, .removed = {}, .dropped = 0}), Result::Done);
    EXPECT_THAT(storedAt(path()).entries, ElementsAre("a", "c"));
    EXPECT_FALSE(hasDamagedFile());
}

TEST_F(OutboxStoreTest, ErasesEverythingFromTheFileToo)
{
    OutboxStore store(path());
    EXPECT_EQ(store.apply({.added = {entry("fingerprint")}, .removed = {}, .dropped = 4}), Result::Done);
    QFile damaged(path() + QStringLiteral(".damaged"));
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    EXPECT_EQ(store.erase(), Result::Done);
    EXPECT_FALSE(hasDamagedFile());
    EXPECT_THAT(storedAt(path()).entries, IsEmpty());
    EXPECT_EQ(storedAt(path()).dropped, 0);
    for (const QString& name : QFileInfo(path()).dir().entryList(QDir::Files)) {
        QFile file(QFileInfo(path()).dir().filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_FALSE(file.readAll().contains("fingerprint")) << name.toStdString();
    }
    EXPECT_EQ(store.apply({.added = {entry("later")}, .removed = {}, .dropped = 0}), Result::Done);
}

TEST_F(OutboxStoreTest, ErasesWhatLiesBesideAFileThatIsGone)
{
    QDir().mkpath(QFileInfo(path()).path());
    for (const auto& rest : {QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral(".damaged")}) {
        ASSERT_TRUE(QFile(path() + rest).open(QIODevice::WriteOnly));
    }
    OutboxStore store(path());
    EXPECT_EQ(store.erase(), Result::Done);
    EXPECT_TRUE(QDir(QFileInfo(path()).path()).isEmpty()) << "and makes no file";
    EXPECT_EQ(store.apply({.added = {entry("a")}, .removed = {}, .dropped = 0}), Result::Done);
    EXPECT_THAT(storedAt(path()).entries, ElementsAre("a"));
}

TEST_F(OutboxStoreTest, CannotBeReadWhereAFolderIsInItsPlace)
{
    QDir().mkpath(path());
    OutboxStore store(path());
    EXPECT_EQ(store.load(), std::nullopt);
    EXPECT_EQ(store.apply({.added = {entry("a")}, .removed = {}, .dropped = 0}), Result::Failed);
    ASSERT_TRUE(QDir(path()).removeRecursively());
    EXPECT_EQ(store.apply({.added = {entry("a")}, .removed = {}, .dropped = 0}), Result::Done);
}

TEST_F(OutboxStoreTest, IsMadeAnewWhereAStatementMeetsDamage)
{
    OutboxStore store(path());
    EXPECT_EQ(store.apply({.added = {entry("lost")}, .removed = {}, .dropped = 0}), Result::Done);
    runSqlAt(path(), "DROP TABLE entries");
    EXPECT_EQ(store.apply({.added = {entry("a")}, .removed = {}, .dropped = 0}), Result::MadeAnew);
    EXPECT_TRUE(hasDamagedFile());
    EXPECT_THAT(storedAt(path()).entries, IsEmpty());
    EXPECT_EQ(store.apply({.added = {entry("b")}, .removed = {}, .dropped = 0}), Result::Done);
    EXPECT_THAT(storedAt(path()).entries, ElementsAre("b"));
}

TEST_F(OutboxStoreTest, MovesAsideADatabaseOfSomebodyElse)
{
    QDir().mkpath(QFileInfo(path()).path());
    ASSERT_TRUE(QFile(path()).open(QIODevice::WriteOnly));
    runSqlAt(path(), "CREATE TABLE entries(id, bytes, seq); CREATE TABLE counters(name, value)");
    OutboxStore store(path());
    EXPECT_TRUE(store.load().has_value());
    EXPECT_TRUE(hasDamagedFile());
    EXPECT_EQ(store.apply({.added = {entry("a")}, .removed = {}, .dropped = 0}), Result::Done);
}

TEST_F(OutboxStoreTest, MovesAsideAFileOfALaterVersion)
{
    {
        OutboxStore store(path());
        EXPECT_EQ(store.apply({.added = {entry("a")}, .removed = {}, .dropped = 0}), Result::Done);
    }
    runSqlAt(path(), "PRAGMA user_version = 2");
    OutboxStore store(path());
    EXPECT_THAT(store.load()->entries, IsEmpty());
    EXPECT_TRUE(hasDamagedFile());
}

TEST_F(OutboxStoreTest, DropsAnEntryThatIsNotAsItWasWritten)
{
    {
        OutboxStore store(path());
        EXPECT_EQ(store.apply({.added = {entry("a"), entry("b"), entry("c"), entry("d")}, .removed = {}, .dropped = 1}),
                  Result::Done);
    }
    runSqlAt(path(), "UPDATE entries SET bytes = x'62ff' WHERE bytes = x'62';"
                     "UPDATE entries SET time = -1 WHERE bytes = x'63';"
                     "UPDATE entries SET id = x'00' WHERE bytes = x'64'");
    OutboxStore store(path());
    const auto content = store.load();
    ASSERT_TRUE(content.has_value());
    ASSERT_EQ(content->entries.size(), 1U);
    EXPECT_EQ(content->entries[0].bytes, "a");
    EXPECT_EQ(content->dropped, 4U);
    EXPECT_THAT(storedAt(path()).entries, ElementsAre("a"));
}

} // namespace
} // namespace kovalin::kits
