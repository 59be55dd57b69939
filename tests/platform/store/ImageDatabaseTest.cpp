#include "platform/store/ImageDatabase.h"

#include "platform/store/StoreTesting.h"

#include <SQLiteCpp/Exception.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <limits>
#include <string>

namespace kovalin::platform {
namespace {

constexpr qint64 noLimit = std::numeric_limits<qint64>::max();

class ImageDatabaseTest : public testing::Test {
protected:
    static QByteArray bytes(int size, char fill = 'x') { return QByteArray(size, fill); }

    void store(int number, int size, qint64 limit = noLimit, const QList<ImageKey>& used = {})
    {
        database.store(key(number), bytes(size), limit, used);
    }

    static ImageKey key(int number) { return imageKey(QString::number(number)); }

    std::vector<int> stored(int upTo)
    {
        std::vector<int> numbers;
        for (int number = 0; number < upTo; ++number) {
            if (!database.read(key(number)).isNull()) {
                numbers.push_back(number);
            }
        }
        return numbers;
    }

    qint64 ask(const char* query)
    {
        const SQLite::Database other(path.toStdString(), SQLite::OPEN_READONLY);
        SQLite::Statement statement(other, query);
        return statement.executeStep() ? statement.getColumn(0).getInt64() : -1;
    }

    /// Of the pictures that are there, once by the totals and once counted.
    void expectTotal(qint64 total)
    {
        EXPECT_EQ(ask("SELECT total_bytes FROM store"), total);
        EXPECT_EQ(ask("SELECT coalesce(sum(length(bytes)), 0) FROM content"), total);
        EXPECT_EQ(ask("SELECT total_pictures FROM store"), ask("SELECT count(*) FROM picture"));
        EXPECT_EQ(ask("SELECT count(*) FROM content"), ask("SELECT count(*) FROM picture"));
    }

    const test::Folder folder{};
    const QString path = folder.path(QStringLiteral("pictures.sqlite"));
    ImageDatabase database{path};
};

TEST_F(ImageDatabaseTest, GivesTheBytesAsTheyCame)
{
    QByteArray all;
    for (int value = 0; value < 256; ++value) {
        all.append(static_cast<char>(value));
    }
    database.store(key(1), all, noLimit, {});
    EXPECT_EQ(database.read(key(1)), all);
    EXPECT_TRUE(database.read(key(2)).isNull());
    const ImageDatabase again(path);
    EXPECT_EQ(again.identity(), database.identity());
    EXPECT_EQ(ImageDatabase(path).read(key(1)), all);
}

TEST_F(ImageDatabaseTest, ReplacesWhatWasUnderAKey)
{
    store(1, 100);
    database.store(key(1), bytes(30, 'y'), noLimit, {});
    EXPECT_EQ(database.read(key(1)), bytes(30, 'y'));
    expectTotal(30);
}

TEST_F(ImageDatabaseTest, KeepsToItsLimitLeastRecentlyUsedFirst)
{
    for (int number = 0; number < 5; ++number) {
        store(number, 10, 50);
    }
    expectTotal(50);
    database.markUsed({key(1), key(0)});
    store(5, 25, 50);
    EXPECT_THAT(stored(6), testing::ElementsAre(0, 1, 5));
    expectTotal(45);
    store(6, 20, 50);
    EXPECT_THAT(stored(7), testing::ElementsAre(5, 6));
}

TEST_F(ImageDatabaseTest, WritesUsesDownBeforeItMakesRoom)
{
    store(0, 10, 30);
    store(1, 10, 30);
    store(2, 10, 30);
    store(3, 10, 30, {key(1), key(99), key(0)});
    EXPECT_THAT(stored(4), testing::ElementsAre(0, 1, 3));
}

TEST_F(ImageDatabaseTest, MakesNoRoomForWhatIsStoredInPlaceOfItself)
{
    store(0, 10, 30);
    store(1, 10, 30);
    store(2, 10, 30);
    store(0, 10, 30);
    EXPECT_THAT(stored(3), testing::ElementsAre(0, 1, 2));
}

TEST_F(ImageDatabaseTest, DoesNotStoreWhatDoesNotFitAlone)
{
    store(0, 10, 30);
    store(1, 30, 30);
    EXPECT_THAT(stored(2), testing::ElementsAre(1));
    store(2, 31, 30);
    EXPECT_THAT(stored(3), testing::ElementsAre(1));
    store(1, 31, 30); // what was there before is out of date
    EXPECT_THAT(stored(3), testing::IsEmpty());
    store(3, 1, 0);
    expectTotal(0);
}

TEST_F(ImageDatabaseTest, TrimsAndGivesTheSpaceBack)
{
    for (int number = 0; number < 50; ++number) {
        store(number, 20'000);
    }
    database.trim(60'000);
    EXPECT_THAT(stored(50), testing::ElementsAre(47, 48, 49));
    expectTotal(60'000);
    EXPECT_LT(QFileInfo(path).size(), 300'000);
    database.trim(noLimit);
    expectTotal(60'000);
    database.trim(0);
    expectTotal(0);
}

TEST_F(ImageDatabaseTest, RemovesOne)
{
    store(1, 10);
    store(2, 10);
    database.remove(key(1));
    database.remove(key(3));
    EXPECT_THAT(stored(4), testing::ElementsAre(2));
    expectTotal(10);
}

TEST_F(ImageDatabaseTest, LeavesNoByteOfWhatWasRemovedInAnyFile)
{
    const QByteArray marker = "a picture that must not be left";
    for (int number = 0; number < 40; ++number) {
        database.store(key(number), marker.repeated(500), 300'000, {});
        database.store(key(1000 + number), marker, 300'000, {});
    }
    database.removeAll();
    EXPECT_TRUE(database.cutLog());
    expectTotal(0);
    for (const QString& name : folder.names()) {
        EXPECT_FALSE(folder.read(name).contains(marker.first(12))) << name.toStdString();
    }
    EXPECT_LT(QFileInfo(path).size(), 200'000);
    store(1, 10);
    EXPECT_THAT(stored(2), testing::ElementsAre(1));
}

TEST_F(ImageDatabaseTest, KeepsTwoConnectionsOutOfEachOthersWay)
{
    ImageDatabase other(path);
    EXPECT_EQ(other.identity(), database.identity());
    store(1, 10);
    other.store(key(2), bytes(20), noLimit, {});
    EXPECT_EQ(other.read(key(1)), bytes(10));
    EXPECT_EQ(database.read(key(2)), bytes(20));
    other.removeAll();
    EXPECT_THAT(stored(3), testing::IsEmpty());
    store(3, 30);
    EXPECT_EQ(other.read(key(3)), bytes(30));
}

TEST_F(ImageDatabaseTest, DoesNotGiveBytesThatChangedOnDisk)
{
    store(1, 10);
    store(2, 10);
    {
        SQLite::Database other(path.toStdString(), SQLite::OPEN_READWRITE);
        other.exec("UPDATE content SET bytes = CAST('yyyyyyyyyy' AS BLOB) WHERE id = 1");
    }
    const test::StoreLines lines;
    EXPECT_TRUE(database.read(key(1)).isNull());
    EXPECT_EQ(lines.all().size(), 1);
    EXPECT_EQ(database.read(key(2)), bytes(10));
    expectTotal(10);
}

TEST_F(ImageDatabaseTest, DoesNotGiveThePictureOfAnotherKey)
{
    store(1, 10);
    store(2, 20);
    {
        SQLite::Database other(path.toStdString(), SQLite::OPEN_READWRITE);
        other.exec("UPDATE content SET id = 3 WHERE id = 1; UPDATE content SET id = 1 WHERE id = 2; "
                   "UPDATE content SET id = 2 WHERE id = 3");
    }
    EXPECT_TRUE(database.read(key(1)).isNull());
    EXPECT_TRUE(database.read(key(2)).isNull());
}

TEST_F(ImageDatabaseTest, TakesTotalsThatCanNotBeRightForDamage)
{
    store(1, 100'000);
    for (const char* change :
         {"total_bytes = -1", "total_bytes = 1 << 40", "total_pictures = -1", "total_pictures = 1 << 40"}) {
        SQLite::Database other(path.toStdString(), SQLite::OPEN_READWRITE);
        other.exec("BEGIN");
        other.exec(std::string("UPDATE store SET ") + change);
        other.exec("COMMIT");
        try {
            const ImageDatabase opened(path);
            ADD_FAILURE() << change;
        } catch (const SQLite::Exception& exception) {
            EXPECT_TRUE(ImageDatabase::isDamage(exception)) << change;
        }
        other.exec("UPDATE store SET total_bytes = 100000, total_pictures = 1");
        EXPECT_NO_THROW(ImageDatabase{path});
    }
}

TEST_F(ImageDatabaseTest, RefusesADatabaseOfAnotherKind)
{
    const QString other = folder.path(QStringLiteral("other.sqlite"));
    SQLite::Database(other.toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
        .exec("CREATE TABLE picture (id INTEGER)");
    try {
        const ImageDatabase opened(other);
        ADD_FAILURE();
    } catch (const SQLite::Exception& exception) {
        EXPECT_TRUE(ImageDatabase::isDamage(exception));
    }
}

TEST(ImageDatabase, TellsDamageFromTrouble)
{
    const auto exception = [](int code) {
        return SQLite::Exception("", code);
    };
    for (const int code : {SQLITE_CORRUPT, SQLITE_NOTADB, SQLITE_ERROR, SQLITE_CONSTRAINT}) {
        EXPECT_TRUE(ImageDatabase::isDamage(exception(code))) << code;
        EXPECT_FALSE(ImageDatabase::isPassing(exception(code))) << code;
    }
    for (const int code : {SQLITE_BUSY, SQLITE_FULL, SQLITE_LOCKED}) {
        EXPECT_FALSE(ImageDatabase::isDamage(exception(code))) << code;
        EXPECT_TRUE(ImageDatabase::isPassing(exception(code))) << code;
    }
    for (const int code : {SQLITE_IOERR, SQLITE_READONLY, SQLITE_CANTOPEN, SQLITE_NOMEM, SQLITE_PERM}) {
        EXPECT_FALSE(ImageDatabase::isDamage(exception(code))) << code;
        EXPECT_FALSE(ImageDatabase::isPassing(exception(code))) << code;
    }
}

} // namespace
} // namespace kovalin::platform
