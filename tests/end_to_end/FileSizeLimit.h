#pragma once

#include <sys/resource.h>

#include <csignal>

namespace kovalin::test {

/// A disk that is as good as full: while this lives, no file of the process may grow beyond a size, and writing more fails.
class FileSizeLimit final {
public:
    explicit FileSizeLimit(rlim_t bytes)
        : _oldHandler(std::signal(SIGXFSZ, SIG_IGN)) // it would end the process
    {
        getrlimit(RLIMIT_FSIZE, &_oldLimit);
        const rlimit limit{bytes, _oldLimit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &_oldLimit);
        std::signal(SIGXFSZ, _oldHandler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*_oldHandler)(int);
    rlimit _oldLimit{};
};

} // namespace kovalin::test
