#include "platform/store/ImageStore.h"
#include "platform/store/StoreTesting.h"

#include <QtCore/QRandomGenerator>

#include <SQLiteCpp/Database.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace kovalin::platform {
namespace {

using test::contains;
using test::finishStoring;
using test::isSame;
using test::noise;
using test::objectIn;
using test::picture;

constexpr int pictures = 30;

class DamagedStore : public testing::Test {
protected:
    DamagedStore() { fill(); }

    std::unique_ptr<ImageStore> open()
    {
        return std::make_unique<ImageStore>(QStringLiteral("pictures"), folder.path());
    }

    void fill()
    {
        const auto store = open();
        for (int i = 0; i < pictures; ++i) {
            store->setObject(picture(static_cast<quint32>(i)), QString::number(i));
        }
        finishStoring(*store);
    }

    void SetUp() override
    {
        test::waitUntilClosed(folder, file);
        good = folder.read(file);
    }

    /// Stores and finds again; whatever is found is right.
    void expectServing()
    {
        serve();
        test::waitUntilClosed(folder, file);
    }

    void serve()
    {
        const auto store = open();
        for (int i = 0; i < pictures; ++i) {
            const QImage found = objectIn(*store, QString::number(i));
            EXPECT_TRUE(found.isNull() || isSame(found, noise(static_cast<quint32>(i)))) << i;
        }
        store->memoryCache().setCostLimit(0);
        for (int i = pictures; i < pictures + 3; ++i) {
            store->setObject(picture(static_cast<quint32>(i)), QString::number(i));
        }
        for (int i = pictures; i < pictures + 3; ++i) {
            EXPECT_TRUE(isSame(objectIn(*store, QString::number(i)), noise(static_cast<quint32>(i)))) << i;
        }
    }

    void expectMovedAside(const QByteArray& damaged)
    {
        const test::StoreLines lines;
        expectServing();
        EXPECT_EQ(folder.read(file + QStringLiteral(".damaged")), damaged);
        EXPECT_EQ(lines.all().size(), 1) << lines.all().join(u'\n').toStdString();
        EXPECT_TRUE(lines.all().join(u'\n').contains(QStringLiteral("is damaged")));
        EXPECT_TRUE(contains(*open(), QString::number(pictures)));
        test::waitUntilClosed(folder, file);
    }

    const test::Folder folder{};
    const QString file = QStringLiteral("pictures.sqlite");
    QByteArray good;
};

TEST_F(DamagedStore, IsMovedAsideWhereItIsNoDatabase)
{
    const QByteArray bytes =
        "this is not a database, and long enough to be looked at as one, header and all, which takes 100";
    folder.write(file, bytes);
    expectMovedAside(bytes);
}

TEST_F(DamagedStore, IsMovedAsideWhereItIsCutOff)
{
    const QByteArray bytes = good.first(good.size() / 2);
    folder.write(file, bytes);
    expectMovedAside(bytes);
}

TEST_F(DamagedStore, IsMovedAsideInPlaceOfTheOneBefore)
{
    for (const char fill : {'a', 'b'}) {
        const QByteArray bytes(5000, fill);
        folder.write(file, bytes);
        expectMovedAside(bytes);
    }
    EXPECT_THAT(folder.names(), testing::ElementsAre(file, file + QStringLiteral(".damaged")));
}

TEST_F(DamagedStore, IsMovedAsideWhereItIsAFolder)
{
    QFile::remove(folder.path(file));
    ASSERT_TRUE(QDir(folder.path()).mkpath(file + QStringLiteral("/inside")));
    const test::StoreLines lines;
    expectServing();
    EXPECT_TRUE(QFileInfo(folder.path(file + QStringLiteral(".damaged"))).isDir());
    EXPECT_EQ(lines.all().size(), 1);
    // And again, which has to remove a folder.
    QFile::remove(folder.path(file));
    ASSERT_TRUE(QDir(folder.path()).mkpath(file));
    expectServing();
    EXPECT_FALSE(QFileInfo::exists(folder.path(file + QStringLiteral(".damaged/inside"))));
}

TEST_F(DamagedStore, IsMovedAsideWhereAFolderHasTheNameOfItsLog)
{
    ASSERT_TRUE(QDir(folder.path()).mkpath(file + QStringLiteral("-wal")));
    expectServing();
}

TEST_F(DamagedStore, IsMovedAsideWhereItIsAnotherProgramsDatabase)
{
    QFile::remove(folder.path(file));
    SQLite::Database(folder.path(file).toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
        .exec("CREATE TABLE something (id INTEGER); PRAGMA user_version = 1");
    const test::StoreLines lines;
    expectServing();
    EXPECT_EQ(lines.all().size(), 1);
}

TEST_F(DamagedStore, IsMovedAsideWhereItIsOfAnotherFormat)
{
    SQLite::Database(folder.path(file).toStdString(), SQLite::OPEN_READWRITE, 60'000).exec("PRAGMA user_version = 77");
    const test::StoreLines lines;
    expectServing();
    EXPECT_EQ(lines.all().size(), 1);
}

TEST_F(DamagedStore, IsMadeAnewWhereATableIsMissing)
{
    for (const char* table : {"picture", "content", "store"}) {
        SQLite::Database(folder.path(file).toStdString(), SQLite::OPEN_READWRITE, 60'000)
            .exec(std::string("DROP TABLE ") + table);
        expectServing();
    }
}

TEST_F(DamagedStore, IsMadeAnewWhereItsHeaderAllowsReadingAlone)
{
    QByteArray bytes = good;
    bytes[18] = '\x09'; // written by a later SQLite
    folder.write(file, bytes);
    expectMovedAside(bytes);
}

TEST_F(DamagedStore, StartsAnewInAnEmptyFile)
{
    folder.write(file, {});
    const test::StoreLines lines;
    expectServing();
    EXPECT_TRUE(lines.all().isEmpty());
}

TEST_F(DamagedStore, IsServedWithGarbageBesideIt)
{
    folder.write(file + QStringLiteral("-wal"), QByteArray(10'000, 'w'));
    folder.write(file + QStringLiteral("-shm"), QByteArray(10'000, 's'));
    const auto store = open();
    EXPECT_TRUE(isSame(objectIn(*store, QStringLiteral("1")), noise(1)));
}

TEST_F(DamagedStore, IsServedWhereverItIsCutOff)
{
    for (qsizetype size = 1; size < good.size(); size += good.size() / 40) {
        folder.write(file, good.first(size));
        expectServing();
    }
}

TEST_F(DamagedStore, IsServedWithAnyBytesChanged)
{
    QRandomGenerator random(1);
    for (int round = 0; round < 150; ++round) {
        QByteArray bytes = good;
        const int changes = 1 << (round % 10);
        for (int i = 0; i < changes; ++i) {
            // Every other round within the first pages, where the tables are told.
            const qsizetype within = round % 2 == 0 ? bytes.size() : 8192;
            bytes[random.generate() % within] = static_cast<char>(random.bounded(256));
        }
        folder.write(file, bytes);
        expectServing();
    }
}

TEST_F(DamagedStore, IsReplacedWhileItIsOpen)
{
    const auto store = open();
    EXPECT_TRUE(contains(*store, QStringLiteral("1")));
    store->memoryCache().setCostLimit(0);
    {
        QFile raw(folder.path(file));
        ASSERT_TRUE(raw.open(QIODevice::ReadWrite));
        ASSERT_TRUE(raw.resize(3000));
    }
    for (int i = 0; i < pictures; ++i) {
        const QImage found = objectIn(*store, QString::number(i));
        EXPECT_TRUE(found.isNull() || isSame(found, noise(static_cast<quint32>(i)))) << i;
    }
    store->setObject(picture(7), QStringLiteral("new"));
    store->setObject(picture(8), QStringLiteral("newer"));
    EXPECT_TRUE(contains(*store, QStringLiteral("newer")));
}

TEST_F(DamagedStore, IsReplacedOnceByTwoThatHaveItOpen)
{
    const auto first = open();
    const auto second = open();
    EXPECT_TRUE(contains(*first, QStringLiteral("1")));
    EXPECT_TRUE(contains(*second, QStringLiteral("1")));
    {
        QFile raw(folder.path(file));
        ASSERT_TRUE(raw.open(QIODevice::ReadWrite));
        ASSERT_TRUE(raw.resize(3000));
    }
    for (ImageStore* store : {first.get(), second.get()}) {
        store->memoryCache().setCostLimit(0);
        for (int i = 0; i < pictures; ++i) {
            static_cast<void>(contains(*store, QString::number(i)));
        }
        store->setObject(picture(7), QStringLiteral("new"));
        EXPECT_TRUE(contains(*store, QStringLiteral("new")));
    }
    EXPECT_TRUE(contains(*first, QStringLiteral("new")));
    EXPECT_EQ(folder.read(file + QStringLiteral(".damaged")).size(), 3000);
}

TEST_F(DamagedStore, IsEmptiedWithWhatWasMovedAside)
{
    folder.write(file, good.first(good.size() / 2));
    const auto store = open();
    static_cast<void>(contains(*store, QStringLiteral("1")));
    test::removeAll(*store);
    EXPECT_FALSE(QFileInfo::exists(folder.path(file + QStringLiteral(".damaged"))));
    store->setObject(picture(7), QStringLiteral("new"));
    store->memoryCache().setCostLimit(0);
    EXPECT_TRUE(contains(*store, QStringLiteral("new")));
}

} // namespace
} // namespace kovalin::platform
