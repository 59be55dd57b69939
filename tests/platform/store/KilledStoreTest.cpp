#include "platform/store/ImageStore.h"
#include "platform/store/StoreTesting.h"

#include <QtCore/QProcess>
#include <QtCore/QRandomGenerator>

#include <SQLiteCpp/Database.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kovalin::platform {
namespace {

constexpr int capMillis = 300'000; // against a hang alone

/// A process that stores pictures in a folder until it is killed. Not by QProcess: the thread sanitizer loses track of the thread
/// that starts one.
class StoringProcess final {
public:
    StoringProcess(const QString& folder, quint32 seed)
    {
        int ends[2] = {};
        EXPECT_EQ(pipe(ends), 0);
        for (const int end : ends) {
            fcntl(end, F_SETFD, FD_CLOEXEC); // Later processes must not hold it.
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        std::string program = KOVALIN_STORE_PICTURES;
        std::string path = folder.toStdString();
        std::string number = std::to_string(seed);
        char* arguments[] = {program.data(), path.data(), number.data(), nullptr};
        EXPECT_EQ(posix_spawn(&_process, program.c_str(), &actions, nullptr, arguments, environ), 0);
        posix_spawn_file_actions_destroy(&actions);
        close(ends[1]);
        _output = fdopen(ends[0], "r");
    }
    ~StoringProcess()
    {
        kill();
        std::fclose(_output);
    }
    Q_DISABLE_COPY_MOVE(StoringProcess)

    /// Waits for a report of pictures stored. False if the process ends by itself.
    [[nodiscard]] bool waitForReport()
    {
        char line[16] = {};
        return std::fgets(line, sizeof line, _output) != nullptr && std::string_view(line) == "stored\n";
    }

    void kill()
    {
        if (_process > 0) {
            ::kill(_process, SIGKILL);
            waitpid(_process, nullptr, 0);
            _process = 0;
        }
    }

private:
    pid_t _process = 0;
    std::FILE* _output = nullptr;
};

class KilledStore : public testing::Test {
protected:
    std::unique_ptr<ImageStore> open()
    {
        return std::make_unique<ImageStore>(QStringLiteral("pictures"), folder.path());
    }

    void expectGoodFile()
    {
        EXPECT_FALSE(QFileInfo::exists(folder.path(QStringLiteral("pictures.sqlite.damaged"))));
        const SQLite::Database database(folder.path(QStringLiteral("pictures.sqlite")).toStdString(),
                                        SQLite::OPEN_READWRITE, capMillis);
        const auto ask = [&database](const char* query) {
            SQLite::Statement statement(database, query);
            return statement.executeStep() ? statement.getColumn(0).getString() : std::string("nothing");
        };
        EXPECT_EQ(ask("PRAGMA integrity_check"), "ok");
        EXPECT_EQ(ask("SELECT total_bytes FROM store"), ask("SELECT coalesce(sum(length(bytes)), 0) FROM content"));
        EXPECT_EQ(ask("SELECT total_bytes <= 200000 FROM store"), "1");
        EXPECT_EQ(ask("SELECT count(*) FROM picture"), ask("SELECT count(*) FROM content"));
    }

    void expectGoodPictures(int step)
    {
        const auto store = open();
        int found = 0;
        for (int i = 0; i < 200; i += step) {
            const QImage image = test::objectIn(*store, QString::number(i));
            found += image.isNull() ? 0 : 1;
            EXPECT_TRUE(image.isNull() || test::isSame(image, test::noise(static_cast<quint32>(i)))) << i;
        }
        if (step == 1) {
            EXPECT_GT(found, 0);
        }
    }

    const test::Folder folder{};
};

TEST_F(KilledStore, OpensAgainWheneverItWasKilled)
{
    QRandomGenerator random(1);
    const test::StoreLines lines;
    for (quint32 round = 0; round < 100; ++round) {
        StoringProcess process(folder.path(), round);
        const quint32 reports = 1 + random.generate() % 8;
        for (quint32 i = 0; i < reports; ++i) {
            ASSERT_TRUE(process.waitForReport());
        }
        process.kill();
        expectGoodFile();
        expectGoodPictures(20);
    }
    const auto store = open();
    store->setObject(test::picture(1), QStringLiteral("1"));
    test::finishStoring(*store);
    expectGoodPictures(1);
    EXPECT_TRUE(lines.all().isEmpty()) << lines.all().join(u'\n').toStdString();
}

TEST_F(KilledStore, IsSharedByProcesses)
{
    std::vector<std::unique_ptr<StoringProcess>> processes;
    for (quint32 seed = 0; seed < 3; ++seed) {
        processes.push_back(std::make_unique<StoringProcess>(folder.path(), seed));
    }
    const auto store = open();
    store->diskCache().setByteLimit(200'000);
    for (int round = 0; round < 10; ++round) {
        for (const auto& process : processes) {
            ASSERT_TRUE(process->waitForReport());
        }
        for (quint32 i = 0; i < 10; ++i) {
            store->setObject(test::picture(i), QString::number(i));
        }
        test::finishStoring(*store);
    }
    processes.clear();
    store->setObject(test::picture(1), QStringLiteral("1"));
    test::finishStoring(*store);
    expectGoodFile();
    expectGoodPictures(1);
}

} // namespace
} // namespace kovalin::platform
