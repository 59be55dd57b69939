#include "apps/KovalinProgram.h"

#include <QtCore/QProcess>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>

using namespace kovalin::test;
using testing::MatchesRegex;

namespace {

/// A terminal for a program's standard error, and what the program has written there.
class Terminal final {
public:
    Terminal()
        : _ours(::posix_openpt(O_RDWR | O_NOCTTY))
    {
        if (_ours >= 0 && ::grantpt(_ours) == 0 && ::unlockpt(_ours) == 0) {
            _programs = ::open(::ptsname(_ours), O_RDWR | O_NOCTTY);
        }
    }
    ~Terminal()
    {
        ::close(_programs);
        ::close(_ours);
    }
    Q_DISABLE_COPY_MOVE(Terminal)

    /// False on a system that has no terminals to give, as a bare container.
    [[nodiscard]] bool isThere() const { return _programs >= 0; }

    void attachTo(QProcess& process)
    {
        process.setChildProcessModifier([this] { ::dup2(_programs, STDERR_FILENO); });
    }

    /// Something must have been written.
    std::string written() const
    {
        std::array<char, 4096> buffer{};
        const auto count = ::read(_ours, buffer.data(), buffer.size());
        return {buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
    }

private:
    int _ours;
    int _programs = -1;
};

std::string writtenTo(Terminal& terminal, const QByteArray& pairs, const QString& out)
{
    QProcess process;
    terminal.attachTo(process);
    process.start(QStringLiteral(KOVALIN_PROGRAM),
                  {QStringLiteral("model"), QStringLiteral("build"), QStringLiteral("--pairs"), QStringLiteral("-"),
                   QStringLiteral("--out"), out});
    process.write(pairs);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(-1));
    return terminal.written();
}

TEST(KovalinModelBuildProgress, IsDrawnInOneLineOfATerminalAndWiped)
{
    Terminal terminal;
    if (!terminal.isThere()) {
        GTEST_SKIP() << "the system gives no terminal";
    }
    Files files;
    EXPECT_THAT(writtenTo(terminal, "hi\t7\t1\nho\t7\t1\n", files.path(QStringLiteral("model.bin"))),
                MatchesRegex("(\rlines read: [0-9]+)+\r +\r"));
}

TEST(KovalinModelBuildProgress, IsWipedBeforeAComplaint)
{
    Terminal terminal;
    if (!terminal.isThere()) {
        GTEST_SKIP() << "the system gives no terminal";
    }
    Files files;
    EXPECT_THAT(writtenTo(terminal, "hi\t7\t1\nho\n", files.path(QStringLiteral("model.bin"))),
                MatchesRegex("(\rlines read: [0-9]+)+\r +\rkovalin: standard input: line 2: .*"));
}

} // namespace
