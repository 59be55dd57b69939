#include "platform/store/ImageStore.h"

#include "platform/store/StoreTesting.h"

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
using test::removeAll;

class ImageStoreTest : public testing::Test {
protected:
    std::unique_ptr<ImageStore> open()
    {
        return std::make_unique<ImageStore>(QStringLiteral("pictures"), folder.path());
    }

    void TearDown() override { close(); }

    void close()
    {
        finishStoring(*store);
        store.reset();
        test::waitUntilClosed(folder, QStringLiteral("pictures.sqlite"));
    }

    /// Without anything in memory.
    void reopen()
    {
        close();
        store = open();
    }

    static QString key(int number) { return QStringLiteral("https://example.com/%1.png").arg(number); }

    const test::Folder folder{};
    std::unique_ptr<ImageStore> store = open();
};

TEST_F(ImageStoreTest, GivesFromMemoryWhatWasStored)
{
    const EncodedImage stored = picture(1);
    store->setObject(stored, key(1), 1);
    EXPECT_EQ(store->objectForKey(key(1)).cacheKey(), stored.image.cacheKey());
    EXPECT_FALSE(contains(*store, key(2)));
}

TEST_F(ImageStoreTest, GivesFromDiskWhatMemoryHasDropped)
{
    store->memoryCache().setCostLimit(1);
    for (int i = 0; i < 20; ++i) {
        store->setObject(picture(static_cast<quint32>(i)), key(i), 1);
    }
    for (int i = 0; i < 20; ++i) {
        EXPECT_TRUE(isSame(objectIn(*store, key(i)), noise(static_cast<quint32>(i)))) << i;
    }
}

TEST_F(ImageStoreTest, GivesFromDiskWhatAnEarlierOneStored)
{
    store->setObject(picture(1), key(1));
    reopen();
    EXPECT_TRUE(store->objectForKey(key(1)).isNull()) << "the main thread must not wait for the disk";
    EXPECT_TRUE(isSame(objectIn(*store, key(1)), noise(1)));
    EXPECT_FALSE(store->objectForKey(key(1)).isNull()) << "by now it is in memory";
}

TEST_F(ImageStoreTest, KeepsBytesAsTheyCame)
{
    const QImage image = noise(1, QSize(40, 30));
    const QByteArray jpeg = test::encoded(image, "jpeg");
    store->setObject({QImage::fromData(jpeg), jpeg}, key(1));
    reopen();
    EXPECT_TRUE(isSame(objectIn(*store, key(1)), QImage::fromData(jpeg)));
    reopen();
    finishStoring(*store);
    EXPECT_TRUE(folder.read(QStringLiteral("pictures.sqlite")).contains(jpeg.first(100)));
}

TEST_F(ImageStoreTest, ReplacesOnBothLevels)
{
    store->setObject(picture(1), key(1), 1);
    store->setObject(picture(2), key(1), 1);
    EXPECT_TRUE(isSame(store->objectForKey(key(1)), noise(2)));
    reopen();
    EXPECT_TRUE(isSame(objectIn(*store, key(1)), noise(2)));
}

TEST_F(ImageStoreTest, DoesNotStoreANullPicture)
{
    store->setObject(picture(1), key(1), 1);
    store->setObject({QImage(), "bytes"}, key(1), 1);
    store->setObject({QImage(), "bytes"}, key(2), 1);
    EXPECT_TRUE(isSame(store->objectForKey(key(1)), noise(1)));
    reopen();
    EXPECT_TRUE(isSame(objectIn(*store, key(1)), noise(1)));
    EXPECT_FALSE(contains(*store, key(2)));
}

TEST_F(ImageStoreTest, KeepsAPictureWithoutBytesInMemoryAlone)
{
    store->setObject(picture(1), key(1), 1);
    store->setObject({noise(2), {}}, key(1), 1);
    EXPECT_TRUE(isSame(store->objectForKey(key(1)), noise(2)));
    reopen();
    EXPECT_FALSE(contains(*store, key(1)));
}

TEST_F(ImageStoreTest, TakesKeysOfAnyText)
{
    QStringList keys = {
        QString(),
        QStringLiteral(" "),
        QStringLiteral("a"),
        QStringLiteral("A"),
        QStringLiteral("'; DROP TABLE picture; --"),
        QStringLiteral("ä\U0001F600"),
        QString(QChar(0xD800)),
        QString(QChar(0xD801)),
        QStringLiteral("nul") + QChar(u'\0') + QStringLiteral("a"),
        QStringLiteral("nul") + QChar(u'\0') + QStringLiteral("b"),
        QStringLiteral("https://example.com/") + QString(65'536, u'x'),
        QStringLiteral("https://example.com/") + QString(65'536, u'x') + u'y',
    };
    for (int i = 0; i < keys.size(); ++i) {
        store->setObject(picture(static_cast<quint32>(i)), keys[i]);
    }
    reopen();
    for (int i = 0; i < keys.size(); ++i) {
        EXPECT_TRUE(isSame(objectIn(*store, keys[i]), noise(static_cast<quint32>(i)))) << i;
    }
}

TEST_F(ImageStoreTest, EmptiesBothLevels)
{
    store->setObject(picture(1), key(1), 1);
    store->setObject(picture(2), key(2), 1);
    removeAll(*store);
    EXPECT_FALSE(contains(*store, key(1)));
    store->setObject(picture(3), key(3), 1);
    reopen();
    EXPECT_FALSE(contains(*store, key(1)));
    EXPECT_FALSE(contains(*store, key(2)));
    EXPECT_TRUE(contains(*store, key(3)));
}

TEST_F(ImageStoreTest, EmptiesBothLevelsFromTheMainThreadWithoutWaiting)
{
    store->setObject(picture(1), key(1), 1);
    store->removeAllObjects();
    EXPECT_FALSE(contains(*store, key(1)));
    EXPECT_TRUE(store->objectForKey(key(1)).isNull());
}

TEST_F(ImageStoreTest, HasNoByteLeftInAnyFileWhenItIsEmptied)
{
    const QByteArray marker = "a picture that must not be left";
    for (int i = 0; i < 30; ++i) {
        store->setObject({noise(1), marker.repeated(300)}, key(i), 1);
    }
    finishStoring(*store);
    folder.write(QStringLiteral("pictures.sqlite.damaged"), marker);
    folder.write(QStringLiteral("pictures.sqlite.damaged-wal"), marker);
    removeAll(*store);
    for (const QString& name : folder.names()) {
        EXPECT_FALSE(folder.read(name).contains(marker.first(10))) << name.toStdString();
    }
}

TEST_F(ImageStoreTest, KeepsTheDiskToItsLimitLeastRecentlyUsedFirst)
{
    const auto size = picture(1).bytes.size();
    store->diskCache().setByteLimit(3 * size + 200);
    store->setObject(picture(1), key(1), 1);
    store->setObject(picture(2), key(2), 1);
    store->setObject(picture(3), key(3), 1);
    reopen();
    store->diskCache().setByteLimit(3 * size + 200);
    EXPECT_TRUE(contains(*store, key(1)));
    store->setObject(picture(4), key(4), 1);
    reopen();
    EXPECT_TRUE(contains(*store, key(1)));
    EXPECT_FALSE(contains(*store, key(2)));
    EXPECT_TRUE(contains(*store, key(3)));
    EXPECT_TRUE(contains(*store, key(4)));
}

TEST_F(ImageStoreTest, CountsAHitInMemoryAsAUseOnDisk)
{
    const auto size = picture(1).bytes.size();
    store->diskCache().setByteLimit(3 * size + 200);
    for (int i = 1; i <= 3; ++i) {
        store->setObject(picture(static_cast<quint32>(i)), key(i), 1);
    }
    EXPECT_FALSE(store->objectForKey(key(1)).isNull());
    store->setObject(picture(4), key(4), 1);
    reopen();
    EXPECT_TRUE(contains(*store, key(1)));
    EXPECT_FALSE(contains(*store, key(2)));
}

TEST_F(ImageStoreTest, WritesUsesDownAtItsEnd)
{
    const auto size = picture(1).bytes.size();
    for (int i = 1; i <= 3; ++i) {
        store->setObject(picture(static_cast<quint32>(i)), key(i), 1);
    }
    EXPECT_FALSE(store->objectForKey(key(1)).isNull());
    reopen();
    store->diskCache().setByteLimit(2 * size + 200);
    EXPECT_TRUE(contains(*store, key(1)));
    EXPECT_FALSE(contains(*store, key(2)));
    EXPECT_TRUE(contains(*store, key(3)));
}

TEST_F(ImageStoreTest, KeepsNothingOnDiskWithALimitOfZero)
{
    for (const qint64 limit : {qint64(0), qint64(-1)}) {
        store->diskCache().setByteLimit(limit);
        store->setObject(picture(1), key(1), 1);
        EXPECT_TRUE(contains(*store, key(1)));
        reopen();
        EXPECT_FALSE(contains(*store, key(1)));
    }
}

TEST_F(ImageStoreTest, KeepsPicturesLargerThanTheDiskLimitInMemory)
{
    store->diskCache().setByteLimit(10);
    store->setObject(picture(1), key(1), 1);
    EXPECT_TRUE(contains(*store, key(1)));
}

TEST_F(ImageStoreTest, RemovesAStoredPictureThatDoesNotDecode)
{
    store->setObject({noise(1), "no picture at all"}, key(1), 1);
    reopen();
    const test::StoreLines lines;
    EXPECT_FALSE(contains(*store, key(1)));
    EXPECT_FALSE(contains(*store, key(1)));
    ASSERT_EQ(lines.all().size(), 1);
    EXPECT_TRUE(lines.all()[0].contains(QStringLiteral("it is of no known format")));
}

TEST_F(ImageStoreTest, SharesItsFileWithAnotherOne)
{
    auto other = open();
    store->setObject(picture(1), key(1), 1);
    finishStoring(*store);
    EXPECT_TRUE(contains(*other, key(1)));
    other->setObject(picture(2), key(2), 1);
    finishStoring(*other);
    EXPECT_TRUE(contains(*store, key(2)));
    EXPECT_THAT(folder.names(), testing::Not(testing::Contains(QStringLiteral("pictures.sqlite.damaged"))));
    other.reset();
}

TEST_F(ImageStoreTest, MakesItsFolder)
{
    const QString deep = folder.path(QStringLiteral("not/there/yet"));
    ImageStore made(QStringLiteral("name"), deep);
    made.setObject(picture(1), key(1), 1);
    made.memoryCache().setCostLimit(0);
    EXPECT_TRUE(contains(made, key(1)));
}

TEST_F(ImageStoreTest, SaysNothingWhenAllIsWell)
{
    const test::StoreLines lines;
    for (int i = 0; i < 10; ++i) {
        store->setObject(picture(static_cast<quint32>(i)), key(i), 1);
    }
    store->memoryCache().setCostLimit(2);
    store->diskCache().setByteLimit(5'000);
    finishStoring(*store);
    removeAll(*store);
    reopen();
    finishStoring(*store);
    EXPECT_TRUE(lines.all().isEmpty()) << lines.all().join(u'\n').toStdString();
}

} // namespace
} // namespace kovalin::platform
