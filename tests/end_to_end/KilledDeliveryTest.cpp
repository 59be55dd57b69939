// A host that is killed at any moment of a delivery: the next start serves a whole model.
#include "end_to_end/SearchStart.h"
#include "end_to_end/ServedModels.h"
#include "end_to_end/StartingHost.h"
#include "kovalin-backend/Backend.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <random>

using namespace kovalin::test;
using kovalin::backend::AnswerRule;
using kovalin::backend::Backend;

namespace {

#ifdef KOVALIN_SANITIZED
constexpr int kills = 20; // each start takes many times as long
#else
constexpr int kills = 100;
#endif

/// Enough for a file of some hundred kilobytes, which isn't written in one moment.
constexpr int otherKeys = 8000;

const QByteArray statusPath = "/content/models/LearnedSearch";
const QByteArray downloadPaths = statusPath + "/";

using Microseconds = std::chrono::microseconds;

/// Returns when a model is being downloaded, the first `known` requests apart.
void waitForDownload(const Backend& backend, std::size_t known)
{
    do {
        backend.waitForRequests(++known);
    } while (!backend.requests().at(known - 1).path.startsWith(downloadPaths));
}

/// How long a start takes that nobody disturbs: all of it, and from the download on.
struct Durations {
    Microseconds whole;
    Microseconds fromDownload;
};
Durations measureStart(const Backend& backend, HostProgram& host)
{
    const std::size_t known = backend.requests().size();
    QElapsedTimer clock;
    clock.start();
    const auto process = host.beginStart(backend.baseUrl().toString());
    waitForDownload(backend, known);
    const Microseconds untilDownload(clock.nsecsElapsed() / 1000);
    static_cast<void>(process->readAll());
    const Microseconds whole(clock.nsecsElapsed() / 1000);
    return {whole, whole - untilDownload};
}

/// One that begins at once or with the download, and is killed somewhere until a bit behind its end.
void startAndKill(const Backend& backend, HostProgram& host, const Durations& durations, std::mt19937& random)
{
    const std::size_t known = backend.requests().size();
    const bool isFromDownload = random() % 4 != 0;
    const auto process = host.beginStart(backend.baseUrl().toString());
    if (isFromDownload) {
        waitForDownload(backend, known);
    }
    const Microseconds longest = isFromDownload ? durations.fromDownload : durations.whole;
    // Where that is later than its end, there is nothing to end.
    process->waitForOutputsEnd(longest * (random() % 1200) / 1000);
    process->kill();
}

TEST(KilledDelivery, LeavesAWholeModelForTheNextStart)
{
    const ServedModels models;
    Backend backend({.contentFolder = models.folder()});
    HostProgram host;
    models.putUp(1, modelFor(1, otherKeys));
    const Durations durations = measureStart(backend, host);
    std::mt19937 random(4711);
    int served = 1;
    int taken = 0;
    for (int version = 2; version < 2 + kills; ++version) {
        models.putUp(version, modelFor(version, otherKeys));
        startAndKill(backend, host, durations, random);

        // A start that gets nothing new shows what was left.
        backend.setAnswer({statusPath, AnswerRule::withStatus(503)});
        const auto start = host.start(backend.baseUrl().toString(), std::nullopt);
        backend.setAnswer({statusPath, {}});
        ASSERT_TRUE(start.isLearnedEngineReady) << "version " << version;
        ASSERT_EQ(start.comicIds.size(), 2) << "version " << version;
        const int left = start.comicIds.at(1).toInt();
        ASSERT_TRUE(left == served || left == version) << left << " after " << served << " and " << version;
        QFile file(host.modelPath(left));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        ASSERT_EQ(file.readAll(), models.model(left));
        taken += left == version ? 1 : 0;
        served = left;
    }
    std::printf("%d kills, %d of them after the delivery\n", kills, taken);
}

} // namespace
