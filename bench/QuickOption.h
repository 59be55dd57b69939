#pragma once

namespace kovalin::bench {

/// Whether a program's only argument is "--quick", which all benchmarks know. Ends the program at any other one.
[[nodiscard]] bool isQuick(int argc, char** argv);

} // namespace kovalin::bench
