// From a model on a server to fused answers, with the server and the host in one process and in two.
#include "end_to_end/SearchStart.h"
#include "end_to_end/ServedModels.h"
#include "end_to_end/ServingBackend.h"
#include "end_to_end/StartingHost.h"

#include <QtCore/QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using namespace kovalin::test;
using testing::ElementsAre;

namespace {

const QByteArray statusPath = "/content/models/LearnedSearch";
const QByteArray downloadPaths = statusPath + "/";

QByteArray downloadPath(int version)
{
    return downloadPaths + QByteArray::number(version);
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

enum class Processes { One, Two };

class ModelDelivery : public testing::TestWithParam<Processes> {
protected:
    ModelDelivery()
    {
        if (GetParam() == Processes::One) {
            backend = std::make_unique<BackendHere>(models.folder());
            host = std::make_unique<HostHere>();
        } else {
            backend = std::make_unique<BackendProgram>(models.folder());
            host = std::make_unique<HostProgram>();
        }
    }

    [[nodiscard]] SearchStart start(std::optional<int> fileSizeLimit = std::nullopt)
    {
        return host->start(backend->baseUrl(), fileSizeLimit);
    }
    [[nodiscard]] std::ptrdiff_t downloads()
    {
        return std::ranges::count_if(backend->requests(),
                                     [](const QByteArray& target) { return target.startsWith(downloadPaths); });
    }
    [[nodiscard]] QByteArray lastStatusRequest()
    {
        const auto requests = backend->requests();
        const auto last = std::find_if(requests.rbegin(), requests.rend(), [](const QByteArray& target) {
            return target.startsWith(QByteArray(statusPath + "?"));
        });
        return last == requests.rend() ? QByteArray() : *last;
    }

    /// The model of this version answers, behind what the tags alone find.
    void expectServed(const SearchStart& start, int version)
    {
        EXPECT_TRUE(start.isLearnedEngineReady);
        EXPECT_THAT(start.comicIds, ElementsAre(taggedComic, QString::number(version)));
        ASSERT_FALSE(start.tags.isEmpty());
        EXPECT_EQ(start.tags.last(), QChar(u'\u200E') + startQuery + QStringLiteral("..."));
    }
    /// No model answers; the tags do.
    static void expectPrefixAlone(const SearchStart& start)
    {
        EXPECT_FALSE(start.isLearnedEngineReady);
        EXPECT_THAT(start.comicIds, ElementsAre(taggedComic));
        EXPECT_THAT(start.tags, ElementsAre(startQuery));
    }

    ServedModels models;
    std::unique_ptr<ServingBackend> backend;
    std::unique_ptr<StartingHost> host;
};

TEST_P(ModelDelivery, DownloadsAtTheFirstStartAndReusesTheFileAtTheSecond)
{
    models.putUp(1, modelFor(1));
    expectServed(start(), 1);
    EXPECT_EQ(lastStatusRequest(), statusPath + "?client_cached_version=-1");
    EXPECT_EQ(downloads(), 1);
    EXPECT_EQ(contentOf(host->modelPath(1)), models.model(1)) << "as it came";

    expectServed(start(), 1);
    EXPECT_EQ(lastStatusRequest(), statusPath + "?client_cached_version=1");
    EXPECT_EQ(downloads(), 1);
}

TEST_P(ModelDelivery, ReplacesTheModelByANewerOneAndLeavesTheOldFile)
{
    models.putUp(1, modelFor(1));
    expectServed(start(), 1);
    models.putUp(2, modelFor(2));
    expectServed(start(), 2);
    EXPECT_EQ(contentOf(host->modelPath(1)), models.model(1));
    EXPECT_EQ(contentOf(host->modelPath(2)), models.model(2));
    expectServed(start(), 2);
    EXPECT_EQ(downloads(), 2);
}

TEST_P(ModelDelivery, GoesOnWithTheTagsWhereThereIsNoModel)
{
    expectPrefixAlone(start());
    EXPECT_EQ(downloads(), 0);
}

TEST_P(ModelDelivery, ServesTheOlderModelWhereTheStatusFails)
{
    models.putUp(1, modelFor(1));
    expectServed(start(), 1);
    models.putUp(2, modelFor(2));
    for (const char* const rule : {"404", "500", "503 retry-after 7", "garbage", "cut", "refuse"}) {
        backend->setAnswer(QByteArray(statusPath + " ") + rule);
        expectServed(start(), 1);
    }
    EXPECT_EQ(downloads(), 1);
    backend->setAnswer(statusPath + " ok");
    expectServed(start(), 2);
}

TEST_P(ModelDelivery, ServesTheOlderModelWhereTheDownloadFails)
{
    models.putUp(1, modelFor(1));
    expectServed(start(), 1);
    models.putUp(2, modelFor(2));
    for (const char* const rule : {"404", "500", "cut", "refuse"}) {
        backend->setAnswer(QByteArray(downloadPath(2) + " ") + rule);
        expectServed(start(), 1);
        EXPECT_FALSE(QFile::exists(host->modelPath(2))) << rule;
    }
    backend->setAnswer(downloadPath(2) + " ok");
    expectServed(start(), 2);
}

TEST_P(ModelDelivery, ServesTheOlderModelWhereTheDiskIsFull)
{
    constexpr int limit = 16 * 1024;
    models.putUp(1, modelFor(1));
    expectServed(start(limit), 1);
    models.putUp(2, modelFor(2, 2000));
    ASSERT_GT(models.model(2).size(), limit);
    expectServed(start(limit), 1);
    EXPECT_FALSE(QFile::exists(host->modelPath(2)));
    expectServed(start(), 2);
}

TEST_P(ModelDelivery, StoresAGarbageModelWhichTheClassifierRefusesAndTheNextVersionMends)
{
    models.putUp(1, modelFor(1));
    expectServed(start(), 1);
    models.putUp(2, modelFor(2));
    backend->setAnswer(downloadPath(2) + " garbage");
    expectPrefixAlone(start());
    EXPECT_FALSE(contentOf(host->modelPath(2)).isEmpty()) << "it arrived whole, so it is stored";
    EXPECT_NE(contentOf(host->modelPath(2)), models.model(2));
    backend->setAnswer(downloadPath(2) + " ok");
    expectPrefixAlone(start()); // the version is the same, so nothing is fetched
    models.putUp(3, modelFor(3));
    expectServed(start(), 3);
}

TEST_P(ModelDelivery, HealsARecordThatIsDamagedAtAnyByte)
{
    models.putUp(1, modelFor(1));
    expectServed(start(), 1);
    const QByteArray record = contentOf(host->recordPath());
    ASSERT_FALSE(record.isEmpty());
    // A process for each byte would take long; there it is every eleventh.
    const qsizetype step = GetParam() == Processes::One ? 1 : 11;
    for (qsizetype at = 0; at < record.size(); at += step) {
        QByteArray damaged = record;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x41);
        QFile file(host->recordPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(at % 2 == 0 ? damaged : record.left(at));
        file.close();
        expectServed(start(), 1);
        EXPECT_EQ(contentOf(host->recordPath()), record) << at;
        ASSERT_FALSE(HasFailure()) << "byte " << at;
    }
}

TEST_P(ModelDelivery, HealsAfterTheModelFileIsCleared)
{
    models.putUp(1, modelFor(1));
    expectServed(start(), 1);
    ASSERT_TRUE(QFile::remove(host->modelPath(1)));
    expectServed(start(), 1);
    EXPECT_EQ(downloads(), 2);
}

INSTANTIATE_TEST_SUITE_P(Processes, ModelDelivery, testing::Values(Processes::One, Processes::Two),
                         [](const auto& instance) {
                             return std::string(instance.param == Processes::One ? "InOneProcess" : "InTwoProcesses");
                         });

} // namespace
