#include "kits/core/default/AnalyticsFixture.h"
#include "support/ChildProcess.h"

#include <QtCore/QFile>

namespace kovalin::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

/// A process that logs events, and is killed; another that comes after it, here.
class KilledAnalytics : public AnalyticsFixture {
protected:
    /// Runs a process that posts some events and leaves others, and kills it when these are on disk.
    void runAndKill(int posted, int left)
    {
        ChildProcess child(QStringLiteral(KOVALIN_ANALYTICS_CHILD),
                           {folder.path(), server.url(QStringLiteral("/api")).toString(), QString::number(posted),
                            QString::number(left)});
        if (posted > 0) {
            server.waitForRequests(1);
            ASSERT_TRUE(QFile(folder.filePath(QStringLiteral("posted"))).open(QIODevice::WriteOnly));
        }
        ASSERT_TRUE(child.readLine().has_value());
        child.kill();
    }
    void openAndWaitForABatch()
    {
        open();
        ASSERT_TRUE(waitsFor({30s}));
        delays.advance(30s);
    }
};

TEST_F(KilledAnalytics, LeavesWhatWasWrittenToTheNextOneWithItsIds)
{
    runAndKill(0, 5);
    const QStringList ids = storedAt(path()).ids;
    ASSERT_EQ(ids.size(), 5);
    openAndWaitForABatch();
    const DecodedBatch posted = batch(1);
    EXPECT_THAT(posted.stickers(), ElementsAre("0", "1", "2", "3", "4"));
    for (std::size_t i = 0; i < posted.events.size(); ++i) {
        EXPECT_EQ(posted.events[i].id, ids[static_cast<qsizetype>(i)].toStdString());
    }
    EXPECT_TRUE(hasStored(0));
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(KilledAnalytics, LeavesNothingThatWasPosted)
{
    runAndKill(kBatch, 3);
    ASSERT_EQ(server.requests().size(), 1U);
    EXPECT_EQ(batch(1).events.size(), static_cast<std::size_t>(kBatch));
    openAndWaitForABatch();
    EXPECT_THAT(batch(2).stickers(), ElementsAre("100", "101", "102"));
    EXPECT_TRUE(hasStored(0));
    EXPECT_EQ(server.requests().size(), 2U);
}

} // namespace
} // namespace kovalin::test
