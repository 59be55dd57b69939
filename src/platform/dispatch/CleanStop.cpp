#include "platform/dispatch/CleanStop.h"

#include <cstdio>
#include <cstdlib>

namespace kovalin::platform {

void cleanStop(std::string_view reason, const SourceLocation& where) noexcept
{
    // Not through Qt's message handler: a host's own handler may hold the line back, or hang on a lock that the broken
    // caller holds.
    std::fprintf(stderr, "%s [Line %u] [ERROR] %.*s\n", where.function_name(), static_cast<unsigned>(where.line()),
                 static_cast<int>(reason.size()), reason.data());
    std::fflush(stderr);
    std::abort();
}

} // namespace kovalin::platform
