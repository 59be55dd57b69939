#include "QuickOption.h"

#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace kovalin::bench {

bool isQuick(int argc, char** argv)
{
    constexpr int wrongUsage = 2;
    for (int at = 1; at < argc; ++at) {
        if (std::string_view(argv[at]) != "--quick") {
            fmt::print(stderr, "usage: {} [--quick]\n", std::filesystem::path(argv[0]).filename().string());
            std::exit(wrongUsage);
        }
    }
    return argc > 1;
}

} // namespace kovalin::bench
