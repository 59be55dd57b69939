#include "search/QXSDKKovalinModelCacheExecutor.h"

#include "platform/foundation/KeyedArchiver.h"
#include "search/ModelDelivery.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <gtest/gtest.h>

using namespace kovalin::test;
using Executor = QXSDKKovalinModelCacheExecutor;
using Status = QXNativeStatusEnums;

namespace {

const QString name = QStringLiteral("CacheTest");

/// A model file, and a record of it in the cache.
class QXSDKKovalinModelCacheExecutorTest : public testing::Test {
protected:
    QXSDKKovalinModelCacheExecutorTest()
    {
        cachesFolder();
        QFile::remove(Executor::_metadataArchivePath(name));
        writeFile(modelPath, "model");
    }

    bool store(const std::optional<QString>& url, std::optional<std::int32_t> version, Status status = Status::SUCCESS)
    {
        const auto record = QXNativeModelMetaData::ModelMetaDataWithModelUrl(url, version, status);
        return offTheMainThread([&] { return executor.setCachedModelMetaData(name, record); });
    }
    QXNativeModelMetaDataPtr load()
    {
        return offTheMainThread([this] { return executor.getCachedModelMetaData(name); });
    }
    void expectFailure(Status status)
    {
        const auto record = load();
        ASSERT_NE(record, nullptr);
        EXPECT_EQ(record->modelUrl(), QString(QLatin1String("")));
        EXPECT_EQ(record->modelVersion(), -1);
        EXPECT_EQ(record->statusCode(), status);
    }

    Executor executor;
    const QString modelPath = cachesFolder() + QStringLiteral("/some-model");
};

TEST_F(QXSDKKovalinModelCacheExecutorTest, ReadsWhatItStored)
{
    ASSERT_TRUE(store(modelPath, 7));
    const auto record = load();
    EXPECT_EQ(record->modelUrl(), modelPath);
    EXPECT_EQ(record->modelVersion(), 7);
    EXPECT_EQ(record->statusCode(), Status::SUCCESS);
}

TEST_F(QXSDKKovalinModelCacheExecutorTest, NamesItsFileAfterTheModel)
{
    EXPECT_EQ(QFileInfo(Executor::_metadataArchivePath(QStringLiteral("LearnedSearch"))).fileName(),
              QStringLiteral("qxsdk-kovalin-model-metadata-LearnedSearch.plist"));
}

TEST_F(QXSDKKovalinModelCacheExecutorTest, FailsWithoutAFile)
{
    expectFailure(Status::FILE_FAILED);
}

TEST_F(QXSDKKovalinModelCacheExecutorTest, RejectsAVersionThatIsntPositiveAndKeepsTheFile)
{
    for (const std::optional<std::int32_t> version : {std::optional<std::int32_t>(0), {-1}, {}}) {
        ASSERT_TRUE(store(modelPath, version));
        expectFailure(Status::FILE_FAILED);
        EXPECT_TRUE(QFile::exists(Executor::_metadataArchivePath(name)));
    }
}

TEST_F(QXSDKKovalinModelCacheExecutorTest, RejectsAModelThatIsGoneAndKeepsTheFile)
{
    ASSERT_TRUE(store(modelPath, 7));
    QFile::remove(modelPath);
    expectFailure(Status::FILE_FAILED);
    EXPECT_TRUE(QFile::exists(Executor::_metadataArchivePath(name)));
    ASSERT_TRUE(store(std::nullopt, 7));
    expectFailure(Status::FILE_FAILED);
}

TEST_F(QXSDKKovalinModelCacheExecutorTest, DeletesADamagedFileWhicheverByteIsChanged)
{
    const QString path = Executor::_metadataArchivePath(name);
    ASSERT_TRUE(store(modelPath, 7));
    const QByteArray good = readFile(path);
    for (qsizetype place = 0; place < good.size(); ++place) {
        QByteArray damaged = good;
        damaged[place] = static_cast<char>(damaged[place] ^ 0x55);
        for (const QByteArray& bytes : {damaged, good.left(place)}) {
            writeFile(path, bytes);
            expectFailure(Status::FILE_FAILED);
            EXPECT_FALSE(QFile::exists(path)) << place;
        }
        ASSERT_TRUE(store(modelPath, 8)) << "the next download mends it";
        EXPECT_EQ(load()->modelVersion(), 8) << place;
    }
}

TEST_F(QXSDKKovalinModelCacheExecutorTest, RefusesTheMainThread)
{
    ASSERT_TRUE(store(modelPath, 7));
    EXPECT_EQ(executor.getCachedModelMetaData(name)->statusCode(), Status::MAIN_THREAD_REFUSED);
    EXPECT_EQ(executor.getCachedModelMetaData(name)->modelVersion(), -1);
    EXPECT_FALSE(executor.setCachedModelMetaData(
        name, QXNativeModelMetaData::ModelMetaDataWithModelUrl(modelPath, 8, Status::SUCCESS)));
    EXPECT_EQ(load()->modelVersion(), 7) << "nothing was stored";
}

TEST_F(QXSDKKovalinModelCacheExecutorTest, TellsWhenItCantStore)
{
    EXPECT_FALSE(offTheMainThread([this] {
        return executor.setCachedModelMetaData(
            QStringLiteral("no/such/folder"),
            QXNativeModelMetaData::ModelMetaDataWithModelUrl(modelPath, 8, Status::SUCCESS));
    }));
}

} // namespace
