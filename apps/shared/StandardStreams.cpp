#include "shared/StandardStreams.h"

#include "shared/BadInput.h"

#include <QtCore/QtGlobal>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <system_error>
#include <utility>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace kovalin::cli {

namespace {

std::string& programName()
{
    static std::string name;
    return name;
}

[[noreturn]] void throwOutputFailure(int error)
{
    if (error == EPIPE) {
        throw OutputClosed();
    }
    throw BadInput("standard output: " + std::generic_category().message(error));
}

} // namespace

void prepareStandardStreams(std::string program)
{
    programName() = std::move(program);
#ifdef Q_OS_UNIX
    std::signal(SIGPIPE, SIG_IGN);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) == -1 && errno == EBADF) {
            // The lowest free number is given, so this is `stream`. Opened the wrong way round: its use stays an error.
            static_cast<void>(open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
        }
    }
#endif
}

std::optional<std::string> readInputLine()
{
    std::string line;
    errno = 0;
    if (!std::getline(std::cin, line)) {
        if (std::ferror(stdin) != 0) {
            throw BadInput("standard input: " + std::generic_category().message(errno));
        }
        return std::nullopt;
    }
    if (line.ends_with('\r')) {
        line.pop_back();
    }
    return line;
}

void writeOutput(QByteArrayView text)
{
    const auto size = static_cast<std::size_t>(text.size());
    if (std::fwrite(text.data(), 1, size, stdout) != size) {
        throwOutputFailure(errno);
    }
}

void flushOutput()
{
    if (std::fflush(stdout) != 0) {
        throwOutputFailure(errno);
    }
}

void writeError(std::string message)
{
    const std::string line = programName() + ": " + onOneLine(std::move(message)) + '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

std::string onOneLine(std::string text)
{
    for (char& character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F) {
            character = '?';
        }
    }
    return text;
}

} // namespace kovalin::cli
