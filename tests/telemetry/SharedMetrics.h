#pragma once

#include "QXSDKKovalinKit/Version.h"
#include "support/RecordingMetricsQueue.h"
#include "support/WaitFor.h"
#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace kovalin::test {

/// What the process's metrics logger passes on for as long as this lives, by names without the library's prefix. Main
/// thread only.
class SharedMetrics final {
public:
    SharedMetrics()
    {
        settle();
        _countsBefore = counts().size();
    }

    /// Flushes, and waits until all that was counted has arrived.
    void settle()
    {
        auto& logger = QXSDKKovalinOperationalMetricsLogger::shared();
        logger.pushToQueue(); // before the mark: a flush is in no order
        logger.addCount(1, markName());
        logger.pushToQueue();
        ++_marks;
        EXPECT_TRUE(waitFor([this] { return arrivedMarks() == _marks; }));
    }

    /// The sums that were flushed, a flush after the other; in no order within one.
    [[nodiscard]] std::vector<std::pair<std::string, qint64>> counts() const
    {
        std::vector<std::pair<std::string, qint64>> counts;
        for (const auto& [name, sum] : _queue->counts()) {
            if (!name.endsWith(markName())) {
                counts.emplace_back(shortName(name), sum);
            }
        }
        counts.erase(counts.begin(), counts.begin() + static_cast<std::ptrdiff_t>(_countsBefore));
        return counts;
    }

    /// The latencies' names and their starts, in order.
    [[nodiscard]] std::vector<std::pair<std::string, double>> latencies() const
    {
        std::vector<std::pair<std::string, double>> latencies;
        for (const auto& [name, start] : _queue->latencies()) {
            latencies.emplace_back(shortName(name), start);
        }
        return latencies;
    }

private:
    static QString markName() { return QStringLiteral("mark of a test"); }
    static std::string shortName(const QString& name)
    {
        const QString prefix =
            QString::fromLatin1(QXSDKKovalinKitVersionString).replace(u'.', u'_') + QStringLiteral(":kovalin:");
        EXPECT_TRUE(name.startsWith(prefix)) << name.toStdString();
        return name.mid(prefix.size()).toStdString();
    }
    [[nodiscard]] int arrivedMarks() const
    {
        int marks = 0;
        for (const auto& [name, sum] : _queue->counts()) {
            marks += name.endsWith(markName()) ? static_cast<int>(sum) : 0;
        }
        return marks;
    }

    InstalledMetricsQueue _queue;
    int _marks = 0;
    std::size_t _countsBefore = 0; // what others had counted
};

} // namespace kovalin::test
