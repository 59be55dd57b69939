#include "learned_search/generated-src/QXNativeModelMetaData.h"

#include "platform/foundation/KeyedArchiver.h"
#include "platform/foundation/KeyedUnarchiver.h"
#include "support/QtPrinting.h"

#include <QtCore/QCborMap>
#include <QtCore/QCborValue>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <limits>

using namespace Qt::StringLiterals;
using kovalin::platform::KeyedArchiver;
using kovalin::platform::KeyedUnarchiver;
using kovalin::platform::PlatformException;

namespace {

/// A record that writes any keys in a record's place.
struct HandWritten {
    std::function<void(KeyedArchiver&)> write;

    void encodeWithCoder(KeyedArchiver& coder) const { write(coder); }
};

std::shared_ptr<QXNativeModelMetaData> recordFrom(const std::function<void(KeyedArchiver&)>& write)
{
    return KeyedUnarchiver::unarchiveObjectWithData<QXNativeModelMetaData>(
        KeyedArchiver::archivedData(HandWritten{write}));
}

/// What a record becomes on its way through an archive.
std::shared_ptr<QXNativeModelMetaData> archivedAndBack(const QXNativeModelMetaData& record)
{
    return KeyedUnarchiver::unarchiveObjectWithData<QXNativeModelMetaData>(KeyedArchiver::archivedData(record));
}

void expectEqual(const QXNativeModelMetaData& record, const QXNativeModelMetaData& wanted)
{
    EXPECT_EQ(record.modelUrl(), wanted.modelUrl());
    EXPECT_EQ(record.modelVersion(), wanted.modelVersion());
    EXPECT_EQ(record.statusCode(), wanted.statusCode());
}

QString addressOf(const void* object)
{
    return QString::asprintf("0x%llx", static_cast<unsigned long long>(reinterpret_cast<quintptr>(object)));
}

} // namespace

TEST(QXNativeModelMetaData, HoldsItsFields)
{
    const auto record =
        QXNativeModelMetaData::ModelMetaDataWithModelUrl(u"/m"_s, 7, QXNativeStatusEnums::DOWNLOAD_FAILED);

    EXPECT_EQ(record->modelUrl(), u"/m"_s);
    EXPECT_EQ(record->modelVersion(), 7);
    EXPECT_EQ(record->statusCode(), QXNativeStatusEnums::DOWNLOAD_FAILED);
}

TEST(QXNativeModelMetaData, DescribesItself)
{
    const QXNativeModelMetaData record(u"/100%1/%2 %@"_s, -7, QXNativeStatusEnums::FILE_FAILED);

    EXPECT_EQ(record.description(), u"<QXNativeModelMetaData "_s + addressOf(&record) +
                                        u" modelUrl:/100%1/%2 %@ modelVersion:-7 statusCode:2>"_s);
}

TEST(QXNativeModelMetaData, DescribesAbsentFieldsAsNull)
{
    const QXNativeModelMetaData record(std::nullopt, std::nullopt, QXNativeStatusEnums(-1));

    EXPECT_EQ(record.description(), u"<QXNativeModelMetaData "_s + addressOf(&record) +
                                        u" modelUrl:(null) modelVersion:(null) statusCode:-1>"_s);
}

TEST(QXNativeModelMetaData, ComesBackFromAnArchive)
{
    constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    const QXNativeModelMetaData records[] = {
        {u"/m\u00FC"_s, 7, QXNativeStatusEnums::SUCCESS},
        {u""_s, -1, QXNativeStatusEnums::FILE_FAILED},
        {u"/m"_s, greatest, QXNativeStatusEnums::DOWNLOAD_FAILED},
        {std::nullopt, least, QXNativeStatusEnums(99)},
        {std::nullopt, std::nullopt, QXNativeStatusEnums(std::numeric_limits<std::int64_t>::min())},
    };
    for (const QXNativeModelMetaData& record : records) {
        expectEqual(*archivedAndBack(record), record);
    }
}

TEST(QXNativeModelMetaData, ComesBackFromAFile)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"metadata.plist"_s);
    const QXNativeModelMetaData record(u"/m"_s, 7, QXNativeStatusEnums::SUCCESS);
    ASSERT_TRUE(KeyedArchiver::archiveRootObject(record, path));

    expectEqual(*KeyedUnarchiver::unarchiveObjectWithFile<QXNativeModelMetaData>(path), record);
}

TEST(QXNativeModelMetaData, WritesItsKeysInOrder)
{
    const QByteArray bytes =
        KeyedArchiver::archivedData(QXNativeModelMetaData(u"/m"_s, 7, QXNativeStatusEnums::FILE_FAILED));

    const QCborMap root = QCborValue::fromCbor(bytes).toMap().value(u"root"_s).toMap();
    ASSERT_EQ(root.size(), 3);
    auto entry = root.begin();
    EXPECT_EQ(entry.key().toString(), u"modelUrl"_s);
    EXPECT_EQ(entry.value().toString(), u"/m"_s);
    ++entry;
    EXPECT_EQ(entry.key().toString(), u"modelVersion"_s);
    EXPECT_EQ(entry.value().toInteger(), 7);
    ++entry;
    EXPECT_EQ(entry.key().toString(), u"statusCode"_s);
    EXPECT_EQ(entry.value().toInteger(), 2);
}

TEST(QXNativeModelMetaData, WritesNothingForAbsentFields)
{
    const QByteArray bytes =
        KeyedArchiver::archivedData(QXNativeModelMetaData(std::nullopt, std::nullopt, QXNativeStatusEnums::SUCCESS));

    EXPECT_EQ(QCborValue::fromCbor(bytes).toMap().value(u"root"_s).toMap().keys(),
              QList<QCborValue>{QCborValue(u"statusCode"_s)});
}

TEST(QXNativeModelMetaData, ReadsAMissingStatusAsZero)
{
    const auto record = recordFrom([](KeyedArchiver& coder) {
        coder.encodeObject(u"modelUrl"_s, u"/m"_s);
        coder.encodeInteger(u"modelVersion"_s, 7);
    });

    expectEqual(*record, {u"/m"_s, 7, QXNativeStatusEnums::SUCCESS});
}

TEST(QXNativeModelMetaData, ReadsAnArchiveWithoutAnyKey)
{
    expectEqual(*recordFrom([](KeyedArchiver&) {}), {std::nullopt, std::nullopt, QXNativeStatusEnums::SUCCESS});
}

TEST(QXNativeModelMetaData, RefusesValuesOfAnotherKind)
{
    EXPECT_THROW(recordFrom([](KeyedArchiver& coder) { coder.encodeInteger(u"modelUrl"_s, 1); }), PlatformException);
    EXPECT_THROW(recordFrom([](KeyedArchiver& coder) { coder.encodeObject(u"modelVersion"_s, u"7"_s); }),
                 PlatformException);
    EXPECT_THROW(recordFrom([](KeyedArchiver& coder) { coder.encodeDouble(u"statusCode"_s, 0.5); }), PlatformException);
}

TEST(QXNativeModelMetaData, RefusesAVersionBeyond32Bits)
{
    for (const qint64 version : {qint64(2147483648), qint64(-2147483649), std::numeric_limits<qint64>::max()}) {
        try {
            recordFrom([&](KeyedArchiver& coder) { coder.encodeInteger(u"modelVersion"_s, version); });
            ADD_FAILURE() << version << " was read";
        } catch (const PlatformException& exception) {
            EXPECT_EQ(exception.name(), u"KeyedUnarchiveException"_s);
            EXPECT_EQ(exception.reason(),
                      u"key \"modelVersion\": integer of 32 bits wanted, "_s + QString::number(version) + u" found"_s);
        }
    }
}
