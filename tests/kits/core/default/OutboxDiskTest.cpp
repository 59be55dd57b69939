#include "kits/core/default/OutboxFixture.h"
#include "support/LogLines.h"

#include <QtCore/QFileInfo>

#include <sys/resource.h>

#include <csignal>

namespace kovalin::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// What an outbox has on disk.
class OutboxDisk : public OutboxFixture {
protected:
    OutboxDisk() { answer(ScriptedAnswer::withStatus(200)); }
};

/// No file of this process can grow any more, as on a disk that is full.
class FullDisk final {
public:
    FullDisk()
    {
        _handler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &_limit);
        rlimit none = _limit;
        none.rlim_cur = 0;
        setrlimit(RLIMIT_FSIZE, &none);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &_limit);
        std::signal(SIGXFSZ, _handler);
    }
    Q_DISABLE_COPY_MOVE(FullDisk)

private:
    rlimit _limit{};
    void (*_handler)(int) = nullptr;
};

TEST_F(OutboxDisk, HasAnEntryHalfASecondAfterItWasAdded)
{
    open();
    add({"a"});
    settle();
    advance(499ms);
    EXPECT_THAT(onDisk(), IsEmpty());
    advance(1ms);
    EXPECT_THAT(onDisk(), ElementsAre("a"));
}

TEST_F(OutboxDisk, WritesManyEntriesAtOnce)
{
    open();
    add({"a"});
    settle();
    delays.advance(200ms);
    add({"b", "c"});
    settle();
    EXPECT_THAT(delays.pending(), ElementsAre(300ms, 29800ms)); // one write for all, and the batch
    advance(300ms);
    EXPECT_THAT(onDisk(), ElementsAre("a", "b", "c"));
    EXPECT_THAT(delays.pending(), ElementsAre(29500ms));
}

TEST_F(OutboxDisk, HasWhatWasAddedWhenTheOutboxGoes)
{
    open();
    add({"a", "b"});
    close();
    EXPECT_THAT(onDisk(), ElementsAre("a", "b"));
    EXPECT_THAT(delays.pending(), IsEmpty());
}

TEST_F(OutboxDisk, HasWhatIsOnTheWayWhenTheOutboxGoes)
{
    answer(ScriptedAnswer::never());
    open();
    add({"a", "b", "c", "d", "e"});
    server.waitForRequests(1);
    add({"f"});
    close();
    EXPECT_THAT(onDisk(), ElementsAre("a", "b", "c", "d", "e", "f"));
}

TEST_F(OutboxDisk, HasWhatWaitsForARepetitionWhenTheOutboxGoes)
{
    answer(ScriptedAnswer::withStatus(500));
    open();
    add({"a", "b", "c", "d", "e"});
    server.waitForRequests(1);
    delays.waitForPending(1);
    close();
    EXPECT_THAT(onDisk(), ElementsAre("a", "b", "c", "d", "e"));
    EXPECT_THAT(delays.pending(), IsEmpty());
}

TEST_F(OutboxDisk, IsDoneWithoutWhileItsFolderCannotBeWritten)
{
    // A folder below a file can't even be made by the superuser.
    const LogLines log;
    QFile file(folder.filePath(QStringLiteral("file")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    auto unwritable = options();
    unwritable.path = file.fileName() + QStringLiteral("/outbox.sqlite");
    outbox.emplace(unwritable);
    add({"a", "b", "c", "d", "e", "f"});
    EXPECT_THAT(batch(1).entries, ElementsAre("a", "b", "c", "d", "e"));
    ASSERT_TRUE(waitFor([&] { return delays.pending() == std::vector<std::chrono::nanoseconds>{30s, 30s}; }));
    EXPECT_EQ(log.count(QStringLiteral("Can't store in")), 1);
    ASSERT_TRUE(file.remove()); // and the folder can be made
    advance(30s);
    EXPECT_THAT(batch(2).entries, ElementsAre("f"));
    EXPECT_TRUE(waitFor([&] { return QFileInfo::exists(unwritable.path); }));
}

TEST_F(OutboxDisk, IsDoneWithoutWithinTheSameLimits)
{
    answer(ScriptedAnswer::withStatus(500));
    auto unwritable = options();
    unwritable.path = QStringLiteral("/dev/null/outbox.sqlite");
    outbox.emplace(unwritable);
    for (int i = 0; i < 100; ++i) {
        add({std::to_string(i)});
        settle();
    }
    server.waitForRequests(1);
    ASSERT_TRUE(waitFor([&] { return delays.pending() == std::vector<std::chrono::nanoseconds>{8s, 30s}; }));
    answer(ScriptedAnswer::withStatus(200));
    advance(8s);
    // Of those that were out first, none is dropped until their answer is there.
    EXPECT_EQ(batch(2).dropped, 80);
    EXPECT_THAT(batch(5).entries, ElementsAre("95", "96", "97", "98", "99"));
    EXPECT_EQ(batch(5).dropped, 0);
}

TEST_F(OutboxDisk, GoesOnFromMemoryWhileItIsFull)
{
    open();
    add({"a"});
    write();
    {
        const FullDisk full;
        add({"b", "c", "d", "e"});
        EXPECT_THAT(batch(1).entries, ElementsAre("a", "b", "c", "d", "e"));
        add({"f"});
        // One for the disk, and one for what "f" waits for.
        ASSERT_TRUE(waitFor([&] { return delays.pending() == std::vector<std::chrono::nanoseconds>{30s, 30s}; }));
    }
    advance(30s);
    EXPECT_THAT(batch(2).entries, ElementsAre("f")); // by then the disk is well again
    EXPECT_TRUE(isOnDisk({}));
    EXPECT_FALSE(QFile::exists(path() + QStringLiteral(".damaged")));
}

TEST_F(OutboxDisk, IsTriedAgainWhenAnotherProcessHoldsIt)
{
    open();
    add({"a"});
    write();
    {
        const HeldFile held(path());
        add({"b"});
        write();
        ASSERT_THAT(delays.pending(), ElementsAre(29s, 30s));
    }
    EXPECT_THAT(onDisk(), ElementsAre("a"));
    answer(ScriptedAnswer::never());
    advance(30s);
    EXPECT_TRUE(isOnDisk({"a", "b"}));
}

TEST_F(OutboxDisk, HasEverythingAgainAfterItWasDamaged)
{
    const LogLines log;
    open();
    add({"a", "b"});
    write();
    runSqlAt(path(), "DROP TABLE entries");
    add({"c"});
    write();
    EXPECT_THAT(onDisk(), ElementsAre("a", "b", "c"));
    EXPECT_TRUE(QFile::exists(path() + QStringLiteral(".damaged")));
    EXPECT_EQ(log.count(QStringLiteral("is damaged, moving it aside")), 1);
}

TEST_F(OutboxDisk, BeginsAnewWithAFileThatIsNoDatabase)
{
    const QByteArray garbage(5000, 'x');
    for (const qsizetype size : {2, 100, 5000}) {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(garbage.first(size));
        file.close();
        open();
        add({"a"});
        close();
        EXPECT_THAT(onDisk(), ElementsAre("a"));
        QFile damaged(path() + QStringLiteral(".damaged")); // the last one is kept
        ASSERT_TRUE(damaged.open(QIODevice::ReadOnly));
        EXPECT_EQ(damaged.size(), size);
    }
}

TEST_F(OutboxDisk, IsSharedByTwo)
{
    answer(ScriptedAnswer::withStatus(500));
    open();
    kits::Outbox other(options());
    for (int i = 0; i < 4; ++i) {
        add({"one"});
        other.add("two");
    }
    finish(*other.queue()); // its write waits for the time that passes
    write();
    finish(*other.queue());
    // Where one found the file held by the other, it tries again after half a minute.
    for (int i = 0; i < 10 && onDisk().size() < 8; ++i) {
        advance(std::chrono::seconds(30));
        finish(*other.queue());
    }
    EXPECT_EQ(onDisk().size(), 8U);
    EXPECT_FALSE(QFile::exists(path() + QStringLiteral(".damaged")));
}

} // namespace
} // namespace kovalin::test
