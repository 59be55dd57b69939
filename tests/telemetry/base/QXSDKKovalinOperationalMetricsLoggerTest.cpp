#include "telemetry/base/QXSDKKovalinOperationalMetricsLogger.h"

#include "QXSDKKovalinKit/Version.h"
#include "support/RecordingMetricsQueue.h"
#include "support/ScriptedRandom.h"
#include "support/WaitFor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <thread>
#include <vector>

using kovalin::test::InstalledMetricsQueue;
using kovalin::test::ScriptedRandom;
using kovalin::test::waitFor;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;
using Logger = QXSDKKovalinOperationalMetricsLogger;

namespace {

/// A metrics queue under a logger, whose work a test can wait for.
class QXSDKKovalinOperationalMetricsLoggerTest : public testing::Test {
protected:
    /// Flushes, and waits until all that was added before has arrived.
    void flush()
    {
        logger.pushToQueue();
        logger.addCount(1, QStringLiteral("last"));
        logger.pushToQueue();
        ++flushes;
        ASSERT_TRUE(waitFor([this] { return lastCounts() == flushes; }));
    }

    /// What arrived, without the marks of the flushes.
    [[nodiscard]] std::vector<std::pair<QString, qint64>> counts() const
    {
        auto counts = queue->counts();
        std::erase_if(counts, [](const auto& count) { return count.first == lastName(); });
        return counts;
    }

    const InstalledMetricsQueue queue;
    Logger logger{QStringLiteral("1.2.3")};

private:
    static QString lastName() { return QStringLiteral("1_2_3:kovalin:last"); }
    [[nodiscard]] int lastCounts() const
    {
        int count = 0;
        for (const auto& [name, value] : queue->counts()) {
            count += name == lastName();
        }
        return count;
    }

    int flushes = 0;
};

TEST_F(QXSDKKovalinOperationalMetricsLoggerTest, SumsUpTheCountsOfAName)
{
    for (int count = 0; count < 5; ++count) {
        logger.addCount(1, QStringLiteral("picker:open"));
    }
    flush();
    EXPECT_THAT(counts(), ElementsAre(Pair(QStringLiteral("1_2_3:kovalin:picker:open"), 5)));
}

TEST_F(QXSDKKovalinOperationalMetricsLoggerTest, SendsNothingBeforeAFlush)
{
    logger.addCount(1, QStringLiteral("a"));
    EXPECT_THAT(queue->counts(), IsEmpty());
}

TEST_F(QXSDKKovalinOperationalMetricsLoggerTest, SendsNothingAtASecondFlush)
{
    logger.addCount(5, QStringLiteral("a"));
    flush();
    flush();
    EXPECT_THAT(counts(), ElementsAre(Pair(QStringLiteral("1_2_3:kovalin:a"), 5)));
}

TEST_F(QXSDKKovalinOperationalMetricsLoggerTest, BeginsAnewAfterAFlush)
{
    logger.addCount(5, QStringLiteral("a"));
    flush();
    logger.addCount(2, QStringLiteral("a"));
    flush();
    EXPECT_THAT(counts(),
                ElementsAre(Pair(QStringLiteral("1_2_3:kovalin:a"), 5), Pair(QStringLiteral("1_2_3:kovalin:a"), 2)));
}

TEST_F(QXSDKKovalinOperationalMetricsLoggerTest, DropsSumsThatArentPositive)
{
    logger.addCount(2, QStringLiteral("zero"));
    logger.addCount(-2, QStringLiteral("zero"));
    logger.addCount(-1, QStringLiteral("negative"));
    logger.addCount(0, QStringLiteral("nothing"));
    logger.addCount(3, QStringLiteral("positive"));
    logger.addCount(-2, QStringLiteral("positive"));
    flush();
    EXPECT_THAT(counts(), ElementsAre(Pair(QStringLiteral("1_2_3:kovalin:positive"), 1)));
    logger.addCount(2, QStringLiteral("negative"));
    flush();
    EXPECT_THAT(counts().back(), Pair(QStringLiteral("1_2_3:kovalin:negative"), 2)) << "what was dropped is gone";
}

TEST_F(QXSDKKovalinOperationalMetricsLoggerTest, KeepsNamesApart)
{
    logger.addCount(1, QStringLiteral("request:packs:success"));
    logger.addCount(2, QStringLiteral("request:packs"));
    logger.addCount(4, QString());
    logger.addCount(8, QStringLiteral("request:packs:success"));
    flush();
    EXPECT_THAT(counts(), UnorderedElementsAre(Pair(QStringLiteral("1_2_3:kovalin:request:packs:success"), 9),
                                               Pair(QStringLiteral("1_2_3:kovalin:request:packs"), 2),
                                               Pair(QStringLiteral("1_2_3:kovalin:"), 4)));
}

TEST_F(QXSDKKovalinOperationalMetricsLoggerTest, TakesTheGreatestCounts)
{
    logger.addCount(std::numeric_limits<qint64>::max(), QStringLiteral("a"));
    logger.addCount(std::numeric_limits<qint64>::max(), QStringLiteral("b"));
    logger.addCount(1, QStringLiteral("b")); // wraps around to a negative sum
    flush();
    EXPECT_THAT(counts(), ElementsAre(Pair(QStringLiteral("1_2_3:kovalin:a"), std::numeric_limits<qint64>::max())));
}

TEST_F(QXSDKKovalinOperationalMetricsLoggerTest, PassesALatencyOnAtOnceUnderThePrefix)
{
    logger.addLatencyFromTime(12.25, QStringLiteral("model:status"));
    EXPECT_THAT(queue->latencies(), ElementsAre(Pair(QStringLiteral("1_2_3:kovalin:model:status"), 12.25)));
}

TEST_F(QXSDKKovalinOperationalMetricsLoggerTest, SamplesLatenciesInHundredths)
{
    const struct {
        float rate;
        int passing; // of the numbers from 0 to 99
    } samples[] = {{0.0F, 0}, {0.01F, 1}, {0.05F, 5}, {0.5F, 50}, {0.99F, 99}, {1.0F, 100}, {-1.0F, 0}, {2.0F, 100}};
    for (const auto& sample : samples) {
        quint32 next =
            4'294'967'200U; // the next multiple of 100 below the greatest number, and so 0 to 95, then 0 to 3
        const ScriptedRandom random([&next] { return next++; });
        const std::size_t before = queue->latencies().size();
        int passing = 0;
        for (quint32 drawn = 0; drawn < 96; ++drawn) {
            logger.addLatencyFromTime(1, QStringLiteral("a"), sample.rate);
        }
        next = 96;
        for (quint32 drawn = 96; drawn < 100; ++drawn) {
            logger.addLatencyFromTime(1, QStringLiteral("a"), sample.rate);
        }
        passing = static_cast<int>(queue->latencies().size() - before);
        EXPECT_EQ(passing, sample.passing) << sample.rate;
    }
}

TEST_F(QXSDKKovalinOperationalMetricsLoggerTest, LetsJustTheLowestNumbersPassAtFivePercent)
{
    quint32 drawn = 0;
    const ScriptedRandom random([&drawn] { return drawn; });
    for (const quint32 number : {4U, 5U, 104U, 105U, 99U}) {
        drawn = number;
        logger.addLatencyFromTime(number, QStringLiteral("request:solovalin"), 0.05F);
    }
    EXPECT_THAT(queue->latencies(), ElementsAre(Pair(QStringLiteral("1_2_3:kovalin:request:solovalin"), 4.0),
                                                Pair(QStringLiteral("1_2_3:kovalin:request:solovalin"), 104.0)));
}

TEST_F(QXSDKKovalinOperationalMetricsLoggerTest, LosesNoCountFromManyThreads)
{
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 8; ++thread) {
        threads.emplace_back([this] {
            for (int count = 0; count < 500; ++count) {
                logger.addCount(1, QStringLiteral("a"));
                logger.addLatencyFromTime(1, QStringLiteral("b"));
                if (count % 100 == 0) {
                    logger.pushToQueue();
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    flush();
    qint64 sum = 0;
    for (const auto& [name, count] : counts()) {
        sum += count;
    }
    EXPECT_EQ(sum, 8 * 500);
    EXPECT_EQ(queue->latencies().size(), 8U * 500U);
}

TEST(QXSDKKovalinOperationalMetricsLogger, FlushesEvenIfItIsGoneByThen)
{
    const InstalledMetricsQueue queue;
    {
        Logger logger(QStringLiteral("9"));
        logger.addCount(3, QStringLiteral("a"));
        logger.pushToQueue();
    }
    EXPECT_TRUE(waitFor([&queue] { return !queue->counts().empty(); }));
    EXPECT_THAT(queue->counts(), ElementsAre(Pair(QStringLiteral("9:kovalin:a"), 3)));
}

TEST(QXSDKKovalinOperationalMetricsLogger, IsSharedUnderTheLibrarysVersion)
{
    EXPECT_EQ(&Logger::shared(), &Logger::shared());
    const InstalledMetricsQueue queue;
    Logger::shared().addLatencyFromTime(1, QStringLiteral("a"));
    const QString version = QString::fromLatin1(QXSDKKovalinKitVersionString).replace(u'.', u'_');
    EXPECT_THAT(queue->latencies(), ElementsAre(Pair(version + QStringLiteral(":kovalin:a"), 1.0)));
}

} // namespace
