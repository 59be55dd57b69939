// Measures what one event costs its caller, with little and with much that waits to be posted, and prints the ratios.
//
// analytics_queue_bench [--quick]

#include "Measure.h"
#include "QuickOption.h"
#include "WatchedApplication.h"
#include "kits/core/QXSDKClientSetup.h"
#include "kits/core/default/OutboxFile.h"
#include "kits/core/default/QXSDKHttpAnalyticsEventsQueue.h"
#include "kits/core/default/ShareEvent.h"
#include "support/ManualDelayClock.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTemporaryDir>

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace kovalin::bench {

namespace {

using namespace std::chrono_literals;

constexpr Nanoseconds kPromised = 5'000;
constexpr std::chrono::milliseconds kWriteDelay{500}; // after which it writes

struct Options {
    std::vector<std::size_t> backlogs = {0, 1'000, 5'000};
    int rounds = 40;
    int eventsInARound = 50;
};

/// How events come.
enum class Manner {
    InABurst,     ///< one right after the other
    Alone,        ///< each while the queue sleeps, so that it has to be woken
    DuringAWrite, ///< one after the other, while the ones before are written
};

/// The files of queues: how much lies in them, and one for each queue.
class Files final {
public:
    explicit Files(std::size_t backlog)
        : _backlog(backlog)
    {
        if (backlog > 0) {
            test::ManualDelayClock delays;
            QXSDKHttpAnalyticsEventsQueue queue({.folder = _folder.path()});
            for (std::size_t i = 0; i < backlog; ++i) {
                queue.addEvent(test::shareEvent("template-" + std::to_string(i)));
            }
        }
        waitUntilItHas(_folder, backlog);
    }

    /// A folder whose file has as much as all.
    void copyTo(const QTemporaryDir& folder) const
    {
        if (_backlog > 0 && !QFile::copy(pathIn(_folder), pathIn(folder))) {
            fail("can't copy a file");
        }
    }

    /// Events that are there or were dropped.
    static std::size_t countIn(const QTemporaryDir& folder)
    {
        const test::StoredOutbox stored = test::storedAt(pathIn(folder));
        return stored.entries.size() + static_cast<std::size_t>(stored.dropped);
    }

    /// The file is complete: what is in it is no more in its log alone.
    static void waitUntilItHas(const QTemporaryDir& folder, std::size_t count)
    {
        while (countIn(folder) != count || QFile::exists(pathIn(folder) + QStringLiteral("-wal"))) {
            std::this_thread::yield();
        }
    }

    [[noreturn]] static void fail(const char* reason)
    {
        fmt::print(stderr, "analytics_queue_bench: {}\n", reason);
        std::exit(1);
    }

private:
    static QString pathIn(const QTemporaryDir& folder)
    {
        return folder.filePath(QStringLiteral("qxsdk-analytics-events.sqlite"));
    }

    const QTemporaryDir _folder;
    const std::size_t _backlog;
};

/// What adding each of a round's events took, by the clock.
std::vector<Nanoseconds> round(const Files& files, std::size_t backlog, Manner manner, int events)
{
    const QTemporaryDir folder;
    files.copyTo(folder);
    std::vector<Nanoseconds> times;
    {
        test::ManualDelayClock delays;
        QXSDKHttpAnalyticsEventsQueue queue({.folder = folder.path()});
        queue.addEvent(test::shareEvent("first"));
        // Once this one is on disk the queue has what the file had, and sleeps.
        while (Files::countIn(folder) != backlog + 1) {
            delays.advance(kWriteDelay);
            std::this_thread::yield();
        }
        std::vector<QXSDKServerEvent> added;
        for (int i = 0; i < events; ++i) {
            added.push_back(test::shareEvent("added-" + std::to_string(i)));
        }
        if (manner == Manner::DuringAWrite) {
            for (int i = 0; i < events; ++i) {
                queue.addEvent(test::shareEvent("before"));
            }
            delays.advance(kWriteDelay);
        }
        for (const QXSDKServerEvent& event : added) {
            if (manner == Manner::Alone) {
                std::this_thread::sleep_for(200us); // far more than the queue needs to fall asleep
            }
            const Nanoseconds start = clockNow();
            queue.addEvent(event);
            times.push_back(clockNow() - start);
        }
    }
    const int before = manner == Manner::DuringAWrite ? events : 0;
    Files::waitUntilItHas(folder, backlog + 1 + static_cast<std::size_t>(events + before)); // none got lost
    return times;
}

struct Times {
    Nanoseconds median;
    Nanoseconds tail; // 99th percentile
};

Times timesOf(const Files& files, std::size_t backlog, Manner manner, const Options& options)
{
    std::vector<Nanoseconds> times;
    for (int i = 0; i < options.rounds; ++i) {
        const auto more = round(files, backlog, manner, options.eventsInARound);
        times.insert(times.end(), more.begin(), more.end());
    }
    return {quantile(times, 0.5), quantile(times, 0.99)};
}

void measure(const Options& options)
{
    fmt::print("{} events of {} bytes each\n\n"
               "| An event | waiting | median | 99 % | median, times that with none | 99 %, times that with none |\n"
               "|---|---:|---:|---:|---:|---:|\n",
               options.rounds * options.eventsInARound, test::shareEvent("added-10").serverEventData.size());
    Times worst{0, 0};
    for (const auto& [manner, name] :
         {std::pair(Manner::InABurst, "in a burst"), std::pair(Manner::Alone, "that wakes the queue"),
          std::pair(Manner::DuringAWrite, "during a write")}) {
        Times none{};
        for (const std::size_t backlog : options.backlogs) {
            const Files files(backlog);
            const Times times = timesOf(files, backlog, manner, options);
            none = backlog == 0 ? times : none;
            worst = {std::max(worst.median, times.median), std::max(worst.tail, times.tail)};
            fmt::print("| {} | {} | {:.2f} µs | {:.2f} µs | {:.2f}× | {:.2f}× |\n", name, backlog, times.median / 1e3,
                       times.tail / 1e3, times.median / none.median, times.tail / none.tail);
            std::fflush(stdout);
        }
    }
    fmt::print("\nPromised: {:.0f} µs. Worst median {:.1f} µs, worst 99th percentile {:.1f} µs.\n", kPromised / 1e3,
               worst.median / 1e3, worst.tail / 1e3);
}

} // namespace

} // namespace kovalin::bench

int main(int argc, char** argv)
{
    using namespace kovalin;

    bench::Options options;
    if (bench::isQuick(argc, argv)) {
        options = {.backlogs = {0, 1'000}, .rounds = 2, .eventsInARound = 50};
    }
    const QCoreApplication application(argc, argv);
    // Without a server nothing leaves, and what was added stays: the queue waits for one, and would say so each time.
    QLoggingCategory::setFilterRules(QStringLiteral("*.warning=false"));
    QXSDKClientSetup::setShared({.clientId = QStringLiteral("6f0c1a52-9d1e-4c0e-9a52-5b0d7f3e8c11")});
    bench::measure(options);
    return 0;
}
