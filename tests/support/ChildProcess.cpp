#include "support/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>
#include <utility>
#include <vector>

namespace kovalin::test {

namespace {

/// Both ends are closed in programs that are started later: a pipe ends with its last writer.
struct Pipe {
    int readEnd = -1;
    int writeEnd = -1;
};
Pipe makePipe()
{
    int ends[2] = {};
    if (pipe2(ends, O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    return {ends[0], ends[1]};
}

} // namespace

ChildProcess::ChildProcess(const QString& program, const QStringList& arguments)
{
    std::vector<QByteArray> texts{program.toLocal8Bit()};
    for (const QString& argument : arguments) {
        texts.push_back(argument.toLocal8Bit());
    }
    std::vector<char*> pointers;
    for (QByteArray& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);

    const Pipe input = makePipe();
    const Pipe output = makePipe();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input.readEnd, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output.writeEnd, STDOUT_FILENO);
    const int failure = posix_spawn(&_process, pointers.front(), &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(input.readEnd);
    close(output.writeEnd);
    _input = input.writeEnd;
    _output = output.readEnd;
    if (failure != 0) {
        close(_input);
        close(_output);
        throw std::runtime_error("can't start " + program.toStdString());
    }
}

ChildProcess::~ChildProcess()
{
    kill();
    closeInput();
    close(_output);
}

void ChildProcess::write(const QByteArray& bytes) const
{
    if (::write(_input, bytes.constData(), static_cast<std::size_t>(bytes.size())) != bytes.size()) {
        throw std::runtime_error("the program doesn't read");
    }
}

void ChildProcess::closeInput()
{
    if (_input >= 0) {
        close(_input);
        _input = -1;
    }
}

std::optional<QByteArray> ChildProcess::readLine()
{
    while (!_buffer.contains('\n')) {
        if (!readMore()) {
            return std::nullopt;
        }
    }
    const qsizetype end = _buffer.indexOf('\n');
    const QByteArray line = _buffer.left(end);
    _buffer.remove(0, end + 1);
    return line;
}

QByteArray ChildProcess::readAll()
{
    while (readMore()) {
    }
    return std::exchange(_buffer, {});
}

void ChildProcess::waitForOutputsEnd(std::chrono::microseconds longest)
{
    const auto deadline = std::chrono::steady_clock::now() + longest;
    while (true) {
        const auto left = deadline - std::chrono::steady_clock::now();
        if (left <= std::chrono::nanoseconds::zero()) {
            return;
        }
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
        const timespec time{seconds.count(), (left - seconds).count()};
        pollfd end{_output, POLLIN, 0};
        if (ppoll(&end, 1, &time, nullptr) != 1 || !readMore()) {
            return;
        }
        _buffer.clear();
    }
}

void ChildProcess::kill()
{
    if (_process != 0) {
        ::kill(_process, SIGKILL);
        waitForExit();
    }
}

std::optional<int> ChildProcess::waitForExit()
{
    if (_process != 0) {
        int status = 0;
        waitpid(_process, &status, 0);
        _process = 0;
        if (WIFEXITED(status)) {
            _exitCode = WEXITSTATUS(status);
        }
    }
    return _exitCode;
}

bool ChildProcess::readMore()
{
    char bytes[4096];
    const ssize_t count = read(_output, bytes, sizeof bytes);
    if (count > 0) {
        _buffer.append(bytes, count);
    }
    return count > 0;
}

} // namespace kovalin::test
