#include "platform/foundation/KeyedUnarchiver.h"

#include "SampleRecords.h"
#include "platform/foundation/Color.h"
#include "platform/foundation/KeyedArchiveFormat.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace {

using namespace kovalin::platform;
using namespace kovalin::test;

/// A record whose reading a test writes on the spot.
struct Reader {
    explicit Reader(const KeyedUnarchiver& coder) { read(coder); }

    static inline std::function<void(const KeyedUnarchiver&)> read;
};

/// Calls `read` with an unarchiver of that record.
void reading(const QCborMap& record, const std::function<void(const KeyedUnarchiver&)>& read)
{
    Reader::read = read;
    (void)KeyedUnarchiver::unarchiveObjectWithData<Reader>(KeyedArchiveFormat::bytesOfArchive(record).value());
    Reader::read = nullptr;
}

/// The reason of the exception that `action` throws, empty when it throws none.
QString reasonOf(const std::function<void()>& action)
{
    try {
        action();
    } catch (const PlatformException& exception) {
        EXPECT_EQ(exception.name(), QStringLiteral("KeyedUnarchiveException"));
        return exception.reason();
    }
    return {};
}

QString key()
{
    return QStringLiteral("key");
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

void expectSamplePack(const SamplePack& pack)
{
    const SamplePack expected = samplePack();
    EXPECT_EQ(pack.name, expected.name);
    EXPECT_EQ(pack.tags, expected.tags);
    ASSERT_TRUE(pack.color.has_value());
    EXPECT_TRUE(colorsEqual(*pack.color, *expected.color));
    EXPECT_EQ(pack.isNew, expected.isNew);
    EXPECT_EQ(pack.size, expected.size);
    EXPECT_EQ(pack.weight, expected.weight);
    ASSERT_NE(pack.cover, nullptr);
    EXPECT_EQ(*pack.cover, *expected.cover);
    ASSERT_TRUE(pack.stickers.has_value());
    ASSERT_EQ(pack.stickers->size(), 2);
    EXPECT_EQ(*pack.stickers->at(0), *expected.stickers->at(0));
    EXPECT_EQ(*pack.stickers->at(1), *expected.stickers->at(1));
}

TEST(KeyedUnarchiver, ReadsBackEachKind)
{
    const auto pack = KeyedUnarchiver::unarchiveObjectWithData<SamplePack>(KeyedArchiver::archivedData(samplePack()));
    expectSamplePack(*pack);
}

TEST(KeyedUnarchiver, ReadsBackWhatIsAbsentAsAbsent)
{
    const auto pack = KeyedUnarchiver::unarchiveObjectWithData<SamplePack>(KeyedArchiver::archivedData(SamplePack()));
    EXPECT_EQ(pack->name, std::nullopt);
    EXPECT_EQ(pack->tags, std::nullopt);
    EXPECT_EQ(pack->color, std::nullopt);
    EXPECT_EQ(pack->cover, nullptr);
    EXPECT_EQ(pack->stickers, std::nullopt);
}

TEST(KeyedUnarchiver, ReadsBackWhatIsEmptyAsPresent)
{
    SamplePack empty;
    empty.name = QString();
    empty.tags = QStringList();
    empty.stickers.emplace();
    const auto pack = KeyedUnarchiver::unarchiveObjectWithData<SamplePack>(KeyedArchiver::archivedData(empty));
    EXPECT_EQ(pack->name, QString());
    EXPECT_EQ(pack->tags, QStringList());
    EXPECT_TRUE(pack->stickers.has_value());
}

TEST(KeyedUnarchiver, ReadsExtremeNumbers)
{
    for (const qint64 value : {std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::min() + 1, qint64(-1),
                               qint64(0), qint64(1) << 32, std::numeric_limits<qint64>::max()}) {
        reading({{key(), value}}, [&](const KeyedUnarchiver& coder) { EXPECT_EQ(coder.decodeInteger(key()), value); });
    }
    for (const double value : {-0.0, 0.1, 1e308, 5e-324, std::numeric_limits<double>::infinity()}) {
        reading({{key(), value}}, [&](const KeyedUnarchiver& coder) {
            EXPECT_EQ(coder.decodeDouble(key()), value);
            EXPECT_EQ(std::signbit(coder.decodeDouble(key()).value()), std::signbit(value));
        });
    }
    reading({{key(), std::nan("")}},
            [](const KeyedUnarchiver& coder) { EXPECT_TRUE(std::isnan(coder.decodeDouble(key()).value())); });
}

TEST(KeyedUnarchiver, ReadsAnyText)
{
    for (const QString& text :
         {QStringLiteral("\"\\%1"), QString(QStringLiteral("a") + QChar(u'\0') + QStringLiteral("b")),
          QStringLiteral("é\uFEFF\U0010FFFF\uFFFF"), QString(100'000, u'é')}) {
        reading({{key(), text}, {text, true}}, [&](const KeyedUnarchiver& coder) {
            EXPECT_EQ(coder.decodeString(key()), text);
            EXPECT_TRUE(coder.decodeBool(text));
        });
    }
}

TEST(KeyedUnarchiver, DropsAByteOrderMarkInFrontOfAText)
{
    reading({{key(), QStringLiteral("\uFEFFa")}},
            [](const KeyedUnarchiver& coder) { EXPECT_EQ(coder.decodeString(key()), QStringLiteral("a")); });
}

TEST(KeyedUnarchiver, KeepsAllBitsOfAColour)
{
    for (const QColor& color : {QColor::fromRgba64(1, 256, 0x8001, 0xFFFE), QColor(0, 0, 0, 0),
                                QColor::fromHsvF(0.3F, 0.5F, 0.7F, 0.2F), QColor(Qt::white)}) {
        SamplePack pack;
        pack.color = color;
        const auto read = KeyedUnarchiver::unarchiveObjectWithData<SamplePack>(KeyedArchiver::archivedData(pack));
        EXPECT_TRUE(colorsEqual(read->color.value(), color)) << color.name(QColor::HexArgb).toStdString();
    }
}

TEST(KeyedUnarchiver, TellsWhichKeysThereAre)
{
    reading({{key(), false}}, [](const KeyedUnarchiver& coder) {
        EXPECT_TRUE(coder.contains(key()));
        EXPECT_FALSE(coder.contains(QStringLiteral("other")));
    });
}

TEST(KeyedUnarchiver, CountsAMissingKeyAsAbsent)
{
    reading({}, [](const KeyedUnarchiver& coder) {
        EXPECT_EQ(coder.decodeString(key()), std::nullopt);
        EXPECT_EQ(coder.decodeStringList(key()), std::nullopt);
        EXPECT_EQ(coder.decodeColor(key()), std::nullopt);
        EXPECT_EQ(coder.decodeObject<SampleNode>(key()), nullptr);
        EXPECT_EQ(coder.decodeObjects<SampleNode>(key()), std::nullopt);
        EXPECT_FALSE(coder.decodeBool(key()));
        EXPECT_EQ(coder.decodeInteger(key()), std::nullopt);
        EXPECT_EQ(coder.decodeDouble(key()), std::nullopt);
    });
}

TEST(KeyedUnarchiver, RefusesAValueOfAnotherKind)
{
    struct Kind {
        QString wanted;
        std::function<void(const KeyedUnarchiver&)> read;
        QList<int> readable;
    };
    const QList<std::pair<QCborValue, QString>> values = {
        {QStringLiteral("t"), QStringLiteral("text")},
        {7, QStringLiteral("integer")},
        {7.0, QStringLiteral("double")},
        {true, QStringLiteral("boolean")},
        {QCborMap(), QStringLiteral("object")},
        {QCborArray{1, 2, 3, 4}, QStringLiteral("list")},
    };
    const QList<Kind> kinds = {
        {QStringLiteral("text"), [](const auto& coder) { (void)coder.decodeString(key()); }, {0}},
        {QStringLiteral("integer"), [](const auto& coder) { (void)coder.decodeInteger(key()); }, {1}},
        {QStringLiteral("double"), [](const auto& coder) { (void)coder.decodeDouble(key()); }, {2}},
        {QStringLiteral("boolean"), [](const auto& coder) { (void)coder.decodeBool(key()); }, {3}},
        {QStringLiteral("object"),
         [](const auto& coder) { (void)coder.template decodeObject<SampleNode>(key()); },
         {4}},
        {QStringLiteral("colour"), [](const auto& coder) { (void)coder.decodeColor(key()); }, {5}},
        {QStringLiteral("list"), [](const auto& coder) { (void)coder.decodeStringList(key()); }, {5}},
        {QStringLiteral("list"), [](const auto& coder) { (void)coder.template decodeObjects<SampleNode>(key()); }, {5}},
    };
    for (const Kind& kind : kinds) {
        for (int index = 0; index < values.size(); ++index) {
            if (kind.readable.contains(index)) {
                continue;
            }
            const QString reason = reasonOf([&] { reading({{key(), values[index].first}}, kind.read); });
            EXPECT_EQ(reason, QStringLiteral("key \"key\": ") + kind.wanted + QStringLiteral(" wanted, ") +
                                  values[index].second + QStringLiteral(" found"));
        }
    }
}

TEST(KeyedUnarchiver, RefusesListsWithAnElementOfAnotherKind)
{
    const QCborMap record = {{key(), QCborArray{QStringLiteral("a"), 1}}};
    EXPECT_EQ(reasonOf([&] { reading(record, [](const auto& coder) { (void)coder.decodeStringList(key()); }); }),
              QStringLiteral("key \"key\": list of texts wanted, list with integer found"));
    EXPECT_EQ(reasonOf([&] {
                  reading(record, [](const auto& coder) { (void)coder.template decodeObjects<SampleNode>(key()); });
              }),
              QStringLiteral("key \"key\": list of objects wanted, list with text found"));
}

TEST(KeyedUnarchiver, RefusesAListThatIsNoColour)
{
    for (const QCborArray& list : {QCborArray{}, QCborArray{1, 2, 3}, QCborArray{1, 2, 3, 4, 5},
                                   QCborArray{1, 2, 3, 65536}, QCborArray{1, 2, 3, -1}, QCborArray{1, 2, 3, 4.0}}) {
        const auto read = [&] {
            reading({{key(), list}}, [](const auto& coder) { (void)coder.decodeColor(key()); });
        };
        EXPECT_EQ(reasonOf(read), QStringLiteral("key \"key\": colour wanted, list found"));
    }
}

TEST(KeyedUnarchiver, ReadsListsAtTheRoot)
{
    const QList<SamplePack> packs = {samplePack(), SamplePack()};
    const auto read = KeyedUnarchiver::unarchiveObjectsWithData<const SamplePack>(KeyedArchiver::archivedData(packs));
    ASSERT_EQ(read.size(), 2);
    expectSamplePack(*read[0]);
    EXPECT_EQ(read[1]->name, std::nullopt);
    const QList<std::shared_ptr<SamplePack>> none;
    EXPECT_TRUE(KeyedUnarchiver::unarchiveObjectsWithData<SamplePack>(KeyedArchiver::archivedData(none)).isEmpty());
}

TEST(KeyedUnarchiver, RefusesARootOfTheOtherForm)
{
    const QByteArray object = KeyedArchiver::archivedData(SampleNode());
    const QByteArray list = KeyedArchiver::archivedData(QList<SampleNode>());
    EXPECT_EQ(reasonOf([&] { (void)KeyedUnarchiver::unarchiveObjectsWithData<SampleNode>(object); }),
              QStringLiteral("root: list wanted, object found"));
    EXPECT_EQ(reasonOf([&] { (void)KeyedUnarchiver::unarchiveObjectWithData<SampleNode>(list); }),
              QStringLiteral("root: object wanted, list found"));
    const QByteArray texts = KeyedArchiveFormat::bytesOfArchive(QCborArray{QStringLiteral("a")}).value();
    EXPECT_NE(reasonOf([&] { (void)KeyedUnarchiver::unarchiveObjectsWithData<SampleNode>(texts); }), QString());
}

TEST(KeyedUnarchiver, ReadsWhatTheArchiverWroteIntoAFile)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.archive"));
    ASSERT_TRUE(KeyedArchiver::archiveRootObject(samplePack(), path));
    const auto pack = KeyedUnarchiver::unarchiveObjectWithFile<SamplePack>(path);
    ASSERT_NE(pack, nullptr);
    expectSamplePack(*pack);

    ASSERT_TRUE(KeyedArchiver::archiveRootObject(QList{std::make_shared<SamplePack>(samplePack())}, path));
    const auto packs = KeyedUnarchiver::unarchiveObjectsWithFile<SamplePack>(path);
    ASSERT_TRUE(packs.has_value());
    ASSERT_EQ(packs->size(), 1);
    expectSamplePack(*packs->first());
}

TEST(KeyedUnarchiver, GivesNothingWhenThereIsNoFile)
{
    const QTemporaryDir folder;
    for (const QString& name : {QStringLiteral("none.archive"), QStringLiteral("none/none.archive")}) {
        EXPECT_EQ(KeyedUnarchiver::unarchiveObjectWithFile<SamplePack>(folder.filePath(name)), nullptr);
        EXPECT_EQ(KeyedUnarchiver::unarchiveObjectsWithFile<SamplePack>(folder.filePath(name)), std::nullopt);
    }
}

TEST(KeyedUnarchiver, NamesTheFileThatIsDamaged)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a%1.archive"));
    const QByteArray good = KeyedArchiver::archivedData(samplePack());
    const QList<std::pair<QByteArray, QString>> damaged = {
        {QByteArray(), QStringLiteral("damaged archive")},
        {good.left(good.size() / 2), QStringLiteral("damaged archive")},
        {good + '\0', QStringLiteral("more data behind the end")},
        {KeyedArchiveFormat::bytesOfArchive(QCborMap{{QStringLiteral("name"), 1}}).value(),
         QStringLiteral("key \"name\"")},
        {QByteArray(good).replace("version\x01", "version\x02"), QStringLiteral("version 1 wanted, 2 found")},
    };
    for (const auto& [bytes, complaint] : damaged) {
        writeFile(path, bytes);
        const QString reason = reasonOf([&] { (void)KeyedUnarchiver::unarchiveObjectWithFile<SamplePack>(path); });
        EXPECT_TRUE(reason.startsWith(path + QStringLiteral(": "))) << reason.toStdString();
        EXPECT_TRUE(reason.contains(complaint)) << reason.toStdString();
    }
    EXPECT_TRUE(reasonOf([&] { (void)KeyedUnarchiver::unarchiveObjectsWithFile<SamplePack>(path); }).startsWith(path));
}

TEST(KeyedUnarchiver, RefusesAFolder)
{
    const QTemporaryDir folder;
    const QString reason = reasonOf([&] { (void)KeyedUnarchiver::unarchiveObjectWithFile<SamplePack>(folder.path()); });
    EXPECT_EQ(reason, folder.path() + QStringLiteral(": no regular file"));
}

TEST(KeyedUnarchiver, RefusesATooLargeFileWithoutReadingIt)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.archive"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    // A hole: it takes no room on the disk.
    ASSERT_TRUE(file.resize(KeyedArchiveFormat::kMaximumBytes + 1));
    file.close();
    const QString reason = reasonOf([&] { (void)KeyedUnarchiver::unarchiveObjectWithFile<SamplePack>(path); });
    EXPECT_EQ(reason, path + QStringLiteral(": too large: 67108865 bytes"));
}

TEST(KeyedUnarchiver, PassesOnWhatARecordsConstructorThrows)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.archive"));
    ASSERT_TRUE(KeyedArchiver::archiveRootObject(SampleNode(), path));
    Reader::read = [](const KeyedUnarchiver&) {
        throw PlatformException(QStringLiteral("OtherException"), QStringLiteral("why"));
    };
    try {
        (void)KeyedUnarchiver::unarchiveObjectWithFile<Reader>(path);
        ADD_FAILURE() << "no exception";
    } catch (const PlatformException& exception) {
        EXPECT_EQ(exception.name(), QStringLiteral("OtherException"));
        EXPECT_EQ(exception.reason(), path + QStringLiteral(": why"));
    }
    Reader::read = nullptr;
}

} // namespace
