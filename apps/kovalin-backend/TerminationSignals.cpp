#include "kovalin-backend/TerminationSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

namespace kovalin::backend {

namespace {

// A handler may do next to nothing: it writes a byte into a pipe, whose other end the event loop looks at.
std::array<int, 2> pipeEnds{-1, -1};

extern "C" void noteSignal(int)
{
    const int error = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], &byte, 1);
    errno = error;
}

void setHandler(void (*handler)(int))
{
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGTERM, SIGINT}) {
        ::sigaction(number, &action, nullptr);
    }
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> came)
{
    if (::pipe(pipeEnds.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    for (const int end : pipeEnds) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    _notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    QObject::connect(_notifier.get(), &QSocketNotifier::activated, _notifier.get(), [came = std::move(came)] {
        char byte = 0;
        while (::read(pipeEnds[0], &byte, 1) > 0) {
        }
        came();
    });
    setHandler(noteSignal);
}

TerminationSignals::~TerminationSignals()
{
    setHandler(SIG_DFL);
    _notifier.reset();
    for (int& end : pipeEnds) {
        ::close(std::exchange(end, -1));
    }
}

} // namespace kovalin::backend
