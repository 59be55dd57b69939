#include "platform/foundation/KeyedArchiveFormat.h"

#include "SampleRecords.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QtEndian>

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace kovalin::platform;
using namespace kovalin::test;

/// CBOR by hand, to write what our own archiver never would.
QByteArray head(int majorType, quint64 number)
{
    QByteArray bytes(9, char((majorType << 5) | 27));
    qToBigEndian(number, bytes.data() + 1);
    return bytes;
}

QByteArray hex(const char* digits)
{
    return QByteArray::fromHex(digits);
}

QByteArray text(const QByteArray& utf8)
{
    return head(3, quint64(utf8.size())) + utf8;
}

QByteArray archiveWith(const QByteArray& root, const QByteArray& version = hex("01"),
                       const QByteArray& format = "kovalin.keyed-archive")
{
    const QByteArray checksum = QCryptographicHash::hash(root, QCryptographicHash::Blake2s_128).toHex();
    return hex("A4") + text("format") + text(format) + text("version") + version + text("checksum") + text(checksum) +
           text("root") + root;
}

/// A record with one key whose value is these bytes.
QByteArray recordWith(const QByteArray& value)
{
    return archiveWith(hex("A1") + text("key") + value);
}

/// The reason for refusing these bytes, empty when they are read.
QString refusal(const QByteArray& bytes)
{
    try {
        (void)KeyedArchiveFormat::rootOfArchive(bytes);
    } catch (const PlatformException& exception) {
        EXPECT_EQ(exception.name(), QStringLiteral("KeyedUnarchiveException"));
        EXPECT_FALSE(exception.reason().isEmpty());
        return exception.reason();
    }
    return {};
}

bool isRefusedFor(const QByteArray& bytes, const QString& what)
{
    const QString reason = refusal(bytes);
    EXPECT_TRUE(reason.contains(what)) << reason.toStdString();
    return reason.contains(what);
}

TEST(KeyedArchiveFormat, ReadsEachKindItKnows)
{
    for (const QByteArray& value :
         {hex("00"), hex("20"), hex("F4"), hex("F5"), hex("60"), hex("80"), hex("A0"), hex("FB3FF0000000000000"),
          head(0, 0x7FFFFFFFFFFFFFFF), head(1, 0x7FFFFFFFFFFFFFFF)}) {
        EXPECT_EQ(refusal(recordWith(value)), QString()) << value.toHex().toStdString();
    }
}

TEST(KeyedArchiveFormat, RefusesAKindItDoesNotKnow)
{
    const QString unknown = QStringLiteral("unknown kind");
    EXPECT_TRUE(isRefusedFor(recordWith(hex("F6")), unknown)) << "null";
    EXPECT_TRUE(isRefusedFor(recordWith(hex("F7")), unknown)) << "undefined";
    EXPECT_TRUE(isRefusedFor(recordWith(hex("F0")), unknown)) << "simple value";
    EXPECT_TRUE(isRefusedFor(recordWith(hex("F93C00")), unknown)) << "half";
    EXPECT_TRUE(isRefusedFor(recordWith(hex("FA3F800000")), unknown)) << "float";
    EXPECT_TRUE(isRefusedFor(recordWith(hex("4161")), unknown)) << "bytes";
    EXPECT_TRUE(isRefusedFor(recordWith(hex("C100")), unknown)) << "tag";
}

TEST(KeyedArchiveFormat, RefusesIntegersBeyond64BitsWithSign)
{
    const QString range = QStringLiteral("integer out of range");
    EXPECT_TRUE(isRefusedFor(recordWith(head(0, 0x8000000000000000)), range));
    EXPECT_TRUE(isRefusedFor(recordWith(head(0, 0xFFFFFFFFFFFFFFFF)), range));
    EXPECT_TRUE(isRefusedFor(recordWith(head(1, 0x8000000000000000)), range));
    EXPECT_TRUE(isRefusedFor(recordWith(head(1, 0xFFFFFFFFFFFFFFFF)), range));
}

TEST(KeyedArchiveFormat, RefusesOpenLengths)
{
    const QString open = QStringLiteral("length left open");
    EXPECT_TRUE(isRefusedFor(recordWith(hex("9FFF")), open));
    EXPECT_TRUE(isRefusedFor(recordWith(hex("BFFF")), open));
    EXPECT_TRUE(isRefusedFor(recordWith(hex("7F6161FF")), open));
    EXPECT_TRUE(isRefusedFor(archiveWith(hex("BF7F6161FF00FF")), open));
}

TEST(KeyedArchiveFormat, RefusesKeysThatAreNoTextsOrComeTwice)
{
    EXPECT_TRUE(isRefusedFor(archiveWith(hex("A10000")), QStringLiteral("key that is no text")));
    EXPECT_TRUE(isRefusedFor(archiveWith(hex("A1416100")), QStringLiteral("key that is no text")));
    EXPECT_TRUE(isRefusedFor(archiveWith(hex("A2616100616200")), QString()));
    EXPECT_TRUE(isRefusedFor(archiveWith(hex("A2616100616101")), QStringLiteral("key \"a\" twice")));
    EXPECT_TRUE(isRefusedFor(recordWith(hex("A2616100616101")), QStringLiteral("key \"a\" twice")));
}

TEST(KeyedArchiveFormat, RefusesTextThatIsNoUtf8)
{
    for (const char* const utf8 : {"61FF", "61C0", "62C080", "63EDA080", "64F4908080", "62C3C3"}) {
        EXPECT_NE(refusal(recordWith(hex(utf8))), QString()) << utf8;
        EXPECT_NE(refusal(archiveWith(hex("A1") + hex(utf8) + hex("00"))), QString()) << utf8;
    }
}

TEST(KeyedArchiveFormat, RefusesHugeDeclaredLengthsWithoutTakingMemory)
{
    for (const quint64 length : {quint64(1) << 24, quint64(1) << 31, (quint64(1) << 32) - 1, quint64(1) << 40,
                                 (quint64(1) << 62) - 1, (quint64(1) << 63) - 1, quint64(1) << 63, ~quint64(0)}) {
        for (const int majorType : {2, 3, 4, 5}) {
            EXPECT_NE(refusal(recordWith(head(majorType, length) + "abc")), QString()) << majorType << ' ' << length;
            EXPECT_NE(refusal(head(majorType, length)), QString()) << majorType << ' ' << length;
        }
        EXPECT_NE(refusal(archiveWith(hex("A1") + head(3, length) + "abc")), QString()) << length;
    }
}

TEST(KeyedArchiveFormat, RefusesTooManyValues)
{
    // The envelope, its format, version and checksum, and the list are values too.
    const qsizetype most = KeyedArchiveFormat::kMaximumValues - 5;
    const auto emptyTexts = [](qsizetype count) {
        return archiveWith(head(4, quint64(count)) + QByteArray(count, '\x60'));
    };
    EXPECT_EQ(refusal(emptyTexts(most)), QString());
    EXPECT_TRUE(isRefusedFor(emptyTexts(most + 1), QStringLiteral("too many values")));
}

TEST(KeyedArchiveFormat, RefusesTooManyBytes)
{
    const QByteArray bytes = recordWith(text(QByteArray(KeyedArchiveFormat::kMaximumBytes, 'a')));
    EXPECT_TRUE(isRefusedFor(bytes, QStringLiteral("too large")));
}

TEST(KeyedArchiveFormat, WritesNothingThatItWouldNotRead)
{
    const QStringList texts(KeyedArchiveFormat::kMaximumValues);
    EXPECT_EQ(KeyedArchiveFormat::bytesOfArchive(QCborArray::fromStringList(texts)), std::nullopt);
    const QString large(KeyedArchiveFormat::kMaximumBytes, u'a');
    EXPECT_EQ(KeyedArchiveFormat::bytesOfArchive(QCborArray{large}), std::nullopt);
    const QCborMap clashing = {{QString(QChar(0xD83D)), 1}, {QStringLiteral("?"), 2}};
    EXPECT_EQ(KeyedArchiveFormat::bytesOfArchive(clashing), std::nullopt);
}

TEST(KeyedArchiveFormat, RefusesWhatIsNestedTooDeeply)
{
    const QString deep = QStringLiteral("nested too deeply");
    EXPECT_TRUE(isRefusedFor(archiveWith(QByteArray(1'000'000, '\x81')), deep));
    EXPECT_TRUE(isRefusedFor(QByteArray(1'000'000, '\x81'), QString()));
    EXPECT_TRUE(isRefusedFor(archiveWith(QByteArray("\xA1\x61k").repeated(1'000'000)), deep));
    EXPECT_NE(refusal(QByteArray(1'000'000, '\xC1')), QString());
}

TEST(KeyedArchiveFormat, ReadsTheDeepestThatTheArchiverWrites)
{
    QList<std::shared_ptr<SampleNode>> nodes;
    for (int depth = 0; depth < KeyedArchiveFormat::kMaximumObjectDepth; ++depth) {
        auto parent = std::make_shared<SampleNode>();
        parent->children = nodes;
        nodes = {parent};
    }
    const auto read = KeyedUnarchiver::unarchiveObjectsWithData<SampleNode>(KeyedArchiver::archivedData(nodes));
    int depth = 0;
    for (auto node = read.first(); node; node = node->children->value(0)) {
        ++depth;
    }
    EXPECT_EQ(depth, KeyedArchiveFormat::kMaximumObjectDepth);
}

TEST(KeyedArchiveFormat, RefusesAnotherFormatOrVersion)
{
    EXPECT_TRUE(isRefusedFor(archiveWith(hex("A0"), hex("02")), QStringLiteral("version 1 wanted, 2 found")));
    EXPECT_TRUE(isRefusedFor(archiveWith(hex("A0"), hex("00")), QStringLiteral("version 1 wanted, 0 found")));
    EXPECT_TRUE(isRefusedFor(archiveWith(hex("A0"), hex("F5")), QStringLiteral("version 1 wanted, boolean found")));
    EXPECT_TRUE(isRefusedFor(archiveWith(hex("A0"), hex("01"), "other"), QStringLiteral("its format isn't")));
    EXPECT_TRUE(isRefusedFor(hex("A0"), QStringLiteral("its format isn't")));
}

TEST(KeyedArchiveFormat, RefusesARootThatIsNeitherObjectNorList)
{
    EXPECT_TRUE(isRefusedFor(archiveWith(hex("00")), QStringLiteral("root: object or list wanted, integer found")));
    EXPECT_TRUE(isRefusedFor(archiveWith(text("x")), QStringLiteral("root: object or list wanted, text found")));
    const QByteArray rootless =
        hex("A2") + text("format") + text("kovalin.keyed-archive") + text("version") + hex("01");
    EXPECT_TRUE(isRefusedFor(rootless, QStringLiteral("root: object or list wanted, nothing found")));
}

TEST(KeyedArchiveFormat, RefusesAMissingOrWrongChecksum)
{
    const QString damaged = QStringLiteral("its checksum isn't that of its root");
    QByteArray wrong = archiveWith(hex("A0"));
    const qsizetype digit = wrong.indexOf("checksum") + 8 + 9; // behind the key and the head of the text
    wrong[digit] = wrong[digit] == '0' ? '1' : '0';
    EXPECT_TRUE(isRefusedFor(wrong, damaged));
    const QByteArray without = hex("A3") + text("format") + text("kovalin.keyed-archive") + text("version") +
                               hex("01") + text("root") + hex("A0");
    EXPECT_TRUE(isRefusedFor(without, damaged));
}

TEST(KeyedArchiveFormat, RefusesBytesThatAreNoArchive)
{
    for (const QByteArray& bytes : {QByteArray(), QByteArray("\0", 1), QByteArray("{\"format\": 1}"), hex("FF"),
                                    hex("80"), QByteArray(1000, '\0'), QByteArray(1000, '\xFF')}) {
        EXPECT_NE(refusal(bytes), QString()) << bytes.left(20).toHex().toStdString();
    }
}

TEST(KeyedArchiveFormat, RefusesMoreDataBehindTheEnd)
{
    const QByteArray good = KeyedArchiver::archivedData(samplePack());
    for (const QByteArray& more :
         {QByteArray("\0", 1), hex("FF"), hex("F6"), hex("C1"), hex("5B"), QByteArray("\n"), good}) {
        EXPECT_TRUE(isRefusedFor(good + more, QStringLiteral("damaged archive"))) << more.toHex().toStdString();
    }
}

TEST(KeyedArchiveFormat, RefusesEveryTruncation)
{
    const QByteArray good = KeyedArchiver::archivedData(samplePack());
    ASSERT_EQ(refusal(good), QString());
    for (qsizetype size = 0; size < good.size(); ++size) {
        // A copy of just that size, so that a read beyond it is one beyond the memory.
        EXPECT_NE(refusal(QByteArray(good.constData(), size)), QString()) << size;
    }
}

TEST(KeyedArchiveFormat, RefusesEveryChangeOfOneByte)
{
    const QByteArray good = KeyedArchiver::archivedData(QList<SamplePack>{samplePack(), SamplePack()});
    QList<std::function<char(char)>> changes = {[](char) { return '\0'; },
                                                [](char) { return '\xFF'; },
                                                [](char) { return '\x1B'; },
                                                [](char) { return '\x9B'; },
                                                [](char) { return '\xBF'; },
                                                [](char byte) {
                                                    return char(byte + 1);
                                                }};
    for (int bit = 0; bit < 8; ++bit) {
        changes.append([bit](char byte) { return char(byte ^ (1 << bit)); });
    }
    for (qsizetype index = 0; index < good.size(); ++index) {
        for (const auto& change : changes) {
            QByteArray bytes(good.constData(), good.size());
            bytes[index] = change(good[index]);
            if (bytes != good) {
                EXPECT_NE(refusal(bytes), QString()) << index;
            }
        }
    }
}

TEST(KeyedArchiveFormat, ReadsOrRefusesEveryChangeOfOneByteUnderARightChecksum)
{
    const QCborValue root =
        KeyedArchiveFormat::rootOfArchive(KeyedArchiver::archivedData(QList<SamplePack>{samplePack(), SamplePack()}));
    const QByteArray good = root.toCbor();
    int readable = 0;
    int refused = 0;
    for (qsizetype index = 0; index < good.size(); ++index) {
        for (int bit = 0; bit < 8; ++bit) {
            QByteArray changed(good.constData(), good.size());
            changed[index] = char(changed[index] ^ (1 << bit));
            try {
                const auto packs = KeyedUnarchiver::unarchiveObjectsWithData<SamplePack>(archiveWith(changed));
                EXPECT_EQ(packs.size(), 2) << index;
                // What was read can be written and read again.
                EXPECT_EQ(refusal(KeyedArchiver::archivedData(packs)), QString()) << index;
                ++readable;
            } catch (const PlatformException& exception) {
                EXPECT_EQ(exception.name(), QStringLiteral("KeyedUnarchiveException"));
                ++refused;
            }
        }
    }
    EXPECT_GT(readable, 500);
    EXPECT_GT(refused, 500);
}

} // namespace
