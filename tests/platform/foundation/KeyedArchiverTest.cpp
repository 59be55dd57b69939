#include "platform/foundation/KeyedArchiver.h"

#include "SampleRecords.h"
#include "platform/foundation/KeyedArchiveFormat.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace kovalin::platform;
using namespace kovalin::test;

/// A record whose coding a test writes on the spot.
struct Scribble {
    std::function<void(KeyedArchiver&)> write;

    void encodeWithCoder(KeyedArchiver& coder) const { write(coder); }
};

/// What `write` puts into a record, as plain CBOR.
QCborMap written(const std::function<void(KeyedArchiver&)>& write)
{
    return KeyedArchiveFormat::rootOfArchive(KeyedArchiver::archivedData(Scribble{write})).toMap();
}

QString key()
{
    return QStringLiteral("key");
}

std::shared_ptr<SampleNode> chain(int length)
{
    std::shared_ptr<SampleNode> node;
    for (int index = 0; index < length; ++index) {
        auto parent = std::make_shared<SampleNode>();
        parent->child = node;
        node = parent;
    }
    return node;
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

TEST(KeyedArchiver, WritesEachKindAsTheFormatSays)
{
    EXPECT_EQ(written([](KeyedArchiver& coder) { coder.encodeObject(key(), QStringLiteral("é")); }),
              QCborMap({{key(), QStringLiteral("é")}}));
    EXPECT_EQ(written([](KeyedArchiver& coder) { coder.encodeObject(key(), QStringList{QStringLiteral("a")}); }),
              QCborMap({{key(), QCborArray{QStringLiteral("a")}}}));
    EXPECT_EQ(written([](KeyedArchiver& coder) { coder.encodeObject(key(), QColor::fromRgba64(1, 2, 3, 65535)); }),
              QCborMap({{key(), QCborArray{1, 2, 3, 65535}}}));
    EXPECT_EQ(written([](KeyedArchiver& coder) { coder.encodeBool(key(), false); }), QCborMap({{key(), false}}));
    EXPECT_EQ(written([](KeyedArchiver& coder) { coder.encodeInteger(key(), 7); }), QCborMap({{key(), 7}}));
    EXPECT_EQ(written([](KeyedArchiver& coder) { coder.encodeDouble(key(), 7); }), QCborMap({{key(), 7.0}}));
    EXPECT_TRUE(written([](KeyedArchiver& coder) { coder.encodeDouble(key(), 7); }).value(key()).isDouble());
}

TEST(KeyedArchiver, WritesObjectsHeldInAnyWay)
{
    const SampleSticker sticker(QStringLiteral("u"), std::nullopt);
    const auto shared = std::make_shared<SampleSticker>(sticker);
    const std::shared_ptr<const SampleSticker> sharedConst = shared;
    const QCborMap map = {{QStringLiteral("url"), QStringLiteral("u")}};

    EXPECT_EQ(written([&](KeyedArchiver& coder) { coder.encodeObject(key(), sticker); }), QCborMap({{key(), map}}));
    EXPECT_EQ(written([&](KeyedArchiver& coder) { coder.encodeObject(key(), shared); }), QCborMap({{key(), map}}));
    EXPECT_EQ(written([&](KeyedArchiver& coder) { coder.encodeObject(key(), sharedConst); }), QCborMap({{key(), map}}));
    EXPECT_EQ(written([&](KeyedArchiver& coder) {
                  coder.encodeObject(key(), QList<SampleSticker>{sticker, sticker});
              }),
              QCborMap({{key(), QCborArray{map, map}}}));
    EXPECT_EQ(written([&](KeyedArchiver& coder) { coder.encodeObject(key(), QList{sharedConst}); }),
              QCborMap({{key(), QCborArray{map}}}));
}

TEST(KeyedArchiver, WritesNothingForWhatIsAbsent)
{
    const QCborMap map = written([](KeyedArchiver& coder) {
        coder.encodeObject(key(), std::optional<QString>());
        coder.encodeObject(key(), std::optional<QStringList>());
        coder.encodeObject(key(), std::optional<QColor>());
        coder.encodeObject(key(), QColor());
        coder.encodeObject(key(), std::shared_ptr<SampleSticker>());
        coder.encodeObject(key(), std::optional<SampleSticker>());
        coder.encodeObject(key(), std::optional<QList<std::shared_ptr<SampleSticker>>>());
    });
    EXPECT_TRUE(map.isEmpty());
}

TEST(KeyedArchiver, WritesWhatIsPresentAndEmpty)
{
    EXPECT_EQ(written([](KeyedArchiver& coder) { coder.encodeObject(key(), QString()); }),
              QCborMap({{key(), QString()}}));
    EXPECT_EQ(written([](KeyedArchiver& coder) { coder.encodeObject(key(), std::optional<QString>(QString())); }),
              QCborMap({{key(), QString()}}));
    EXPECT_EQ(written([](KeyedArchiver& coder) { coder.encodeObject(key(), QStringList()); }),
              QCborMap({{key(), QCborArray()}}));
    EXPECT_EQ(written([](KeyedArchiver& coder) { coder.encodeObject(key(), QList<std::shared_ptr<SampleSticker>>()); }),
              QCborMap({{key(), QCborArray()}}));
}

TEST(KeyedArchiver, LeavesNullsOutOfLists)
{
    const auto sticker = std::make_shared<SampleSticker>(QStringLiteral("u"), std::nullopt);
    const QList<std::shared_ptr<SampleSticker>> stickers = {nullptr, sticker, nullptr};
    const QCborMap map = written([&](KeyedArchiver& coder) { coder.encodeObject(key(), stickers); });
    EXPECT_EQ(map.value(key()).toArray().size(), 1);
    EXPECT_EQ(KeyedUnarchiver::unarchiveObjectsWithData<SampleSticker>(KeyedArchiver::archivedData(stickers)).size(),
              1);
}

TEST(KeyedArchiver, KeepsTheKeysInTheirOrder)
{
    const auto write = [](KeyedArchiver& coder) {
        coder.encodeBool(QStringLiteral("zz"), true);
        coder.encodeBool(QStringLiteral("a"), true);
        coder.encodeBool(QStringLiteral("m"), true);
    };
    const QByteArray bytes = KeyedArchiver::archivedData(Scribble{write});
    EXPECT_TRUE(bytes.endsWith(QByteArray("\xA3\x62zz\xF5\x61"
                                          "a\xF5\x61m\xF5")));
}

TEST(KeyedArchiver, LetsASecondValueTakeThePlaceOfTheFirst)
{
    const QCborMap map = written([](KeyedArchiver& coder) {
        coder.encodeInteger(key(), 1);
        coder.encodeBool(QStringLiteral("other"), true);
        coder.encodeInteger(key(), 2);
    });
    EXPECT_EQ(map.keys(), QList<QCborValue>({key(), QStringLiteral("other")}));
    EXPECT_EQ(map.value(key()), QCborValue(2));
}

TEST(KeyedArchiver, BeginsWithTheNameAndVersionOfTheFormat)
{
    const QByteArray expected = QByteArray("\xA4\x66"
                                           "format\x75kovalin.keyed-archive\x67version\x01\x68"
                                           "checksum\x78\x20"
                                           "12ace5e359d0840b2cd8a3a99b16f3f8\x64root\xA0");
    EXPECT_EQ(KeyedArchiver::archivedData(SampleNode()), expected);
}

TEST(KeyedArchiver, GivesEqualBytesForEqualObjects)
{
    EXPECT_EQ(KeyedArchiver::archivedData(samplePack()), KeyedArchiver::archivedData(samplePack()));
}

TEST(KeyedArchiver, ReplacesALoneSurrogate)
{
    const QString text = QStringLiteral("a") + QChar(0xD83D) + QStringLiteral("b") + QChar(0xDE00);
    const QByteArray bytes = KeyedArchiver::archivedData(Scribble{[&](KeyedArchiver& coder) {
        coder.encodeObject(QStringLiteral("url"), text);
    }});
    EXPECT_EQ(KeyedUnarchiver::unarchiveObjectWithData<SampleSticker>(bytes)->url, QStringLiteral("a?b?"));
}

TEST(KeyedArchiver, RefusesObjectsThatLieInEachOtherTooDeeply)
{
    const int most = KeyedArchiveFormat::kMaximumObjectDepth;
    EXPECT_NO_THROW((void)KeyedArchiver::archivedData(*chain(most)));
    try {
        (void)KeyedArchiver::archivedData(*chain(most + 1));
        FAIL() << "no exception";
    } catch (const PlatformException& exception) {
        EXPECT_EQ(exception.name(), QStringLiteral("KeyedArchiveException"));
    }
}

TEST(KeyedArchiver, RefusesAnObjectThatHoldsItself)
{
    const auto node = std::make_shared<SampleNode>();
    node->child = node;
    EXPECT_THROW((void)KeyedArchiver::archivedData(*node), PlatformException);
    node->child = nullptr;
}

TEST(KeyedArchiver, RefusesMoreThanTheFormatAllows)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.archive"));
    ASSERT_TRUE(KeyedArchiver::archiveRootObject(SampleNode(), path));
    const SampleSticker large(QString(KeyedArchiveFormat::kMaximumBytes, u'a'), std::nullopt);
    EXPECT_FALSE(KeyedArchiver::archiveRootObject(large, path));
    EXPECT_EQ(contentOf(path), KeyedArchiver::archivedData(SampleNode()));
    EXPECT_THROW((void)KeyedArchiver::archivedData(large), PlatformException);
}

TEST(KeyedArchiver, WritesAFileWithTheSameBytes)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.archive"));
    EXPECT_TRUE(KeyedArchiver::archiveRootObject(samplePack(), path));
    EXPECT_EQ(contentOf(path), KeyedArchiver::archivedData(samplePack()));
}

TEST(KeyedArchiver, ReplacesAFileAndLeavesNothingElseBehind)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.archive"));
    ASSERT_TRUE(KeyedArchiver::archiveRootObject(samplePack(), path));
    ASSERT_TRUE(KeyedArchiver::archiveRootObject(SampleNode(), path));
    EXPECT_EQ(contentOf(path), KeyedArchiver::archivedData(SampleNode()));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
              QStringList(QStringLiteral("a.archive")));
}

TEST(KeyedArchiver, MakesNoFolders)
{
    const QTemporaryDir folder;
    EXPECT_FALSE(KeyedArchiver::archiveRootObject(SampleNode(), folder.filePath(QStringLiteral("none/a.archive"))));
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

TEST(KeyedArchiver, IsFalseWhenAFolderIsInTheWay)
{
    const QTemporaryDir folder;
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("a.archive")));
    EXPECT_FALSE(KeyedArchiver::archiveRootObject(SampleNode(), folder.filePath(QStringLiteral("a.archive"))));
    EXPECT_TRUE(QFileInfo(folder.filePath(QStringLiteral("a.archive"))).isDir());
}

TEST(KeyedArchiver, LeavesTheFileAloneWhenARecordThrows)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.archive"));
    ASSERT_TRUE(KeyedArchiver::archiveRootObject(SampleNode(), path));
    const QByteArray before = contentOf(path);
    const Scribble throwing{[](KeyedArchiver&) {
        throw PlatformException(QStringLiteral("Test"), QString());
    }};
    EXPECT_THROW((void)KeyedArchiver::archiveRootObject(throwing, path), PlatformException);
    EXPECT_EQ(contentOf(path), before);
}

} // namespace
