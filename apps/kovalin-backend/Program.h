#pragma once

#include "kovalin-backend/Backend.h"

#include <chrono>
#include <string>
#include <vector>

namespace kovalin::backend {

/// What the program is asked for on its command line.
struct ProgramOptions {
    std::string contentFolder; // in the encoding of the file system
    quint16 port = 0;
    QList<PathRule> answers;
    std::chrono::seconds accessTokenLife = BackendOptions().accessTokenLife;
    bool isUntilEof = false;
};

/// Runs a backend as a program: tells on standard output where it listens and what arrives, obeys standard input, and
/// ends on SIGTERM or SIGINT. Main thread, under an application object whose event loop doesn't run yet.
///
/// Gives the program's exit code. Throws BackendError when the backend can't start, and what `cli::writeOutput`
/// throws when its first line can't be written.
[[nodiscard]] int runProgram(const ProgramOptions& options);

} // namespace kovalin::backend
