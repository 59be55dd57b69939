#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <sys/types.h>

#include <chrono>
#include <optional>

namespace kovalin::test {

/// A program that runs beside the test, its standard input and output at the test's ends of two pipes. One thread.
///
/// Instead of QProcess in programs with threads: Qt starts a program in a way after which the thread sanitizer loses track of
/// the starting thread's locks.
class ChildProcess final {
public:
    /// Throws std::runtime_error when the program can't be started.
    ChildProcess(const QString& program, const QStringList& arguments);

    /// Kills it if it still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void write(const QByteArray& bytes) const;
    void closeInput();

    /// The next line of its output, without the line's end; absent once there is no more. Blocks.
    [[nodiscard]] std::optional<QByteArray> readLine();

    /// What is left of its output, until it closes it. Blocks.
    [[nodiscard]] QByteArray readAll();

    /// Blocks until it has closed its output, as at its end, or so much time has passed. Drops the output.
    void waitForOutputsEnd(std::chrono::microseconds longest);

    /// Ends it hard, and returns when it has ended.
    void kill();

    /// Blocks until it has ended. Its exit code; absent when a signal ended it.
    std::optional<int> waitForExit();

private:
    /// Reads what is there into the buffer, and blocks until there is something. False at the output's end.
    bool readMore();

    pid_t _process = 0; // 0 once it has been waited for
    int _input = -1;
    int _output = -1;
    QByteArray _buffer;
    std::optional<int> _exitCode;
};

} // namespace kovalin::test
