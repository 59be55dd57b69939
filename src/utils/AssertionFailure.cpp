#include "utils/AssertionFailure.h"

// The header declares the platform's routine only where assertions are on.
#undef NDEBUG
#include <cassert>
#include <cstdio>
#include <cstdlib>

namespace vole::detail {

void failAssertion(const char* assertion, const char* file, int line, const char* function) noexcept
{
#if defined(__GLIBC__)
    __assert_fail(assertion, file, static_cast<unsigned>(line), function);
#elif defined(__APPLE__)
    __assert_rtn(function, file, line, assertion);
#elif defined(__ANDROID__)
    __assert2(file, line, function, assertion);
#else
    std::fprintf(stderr, "%s:%d: %s: Assertion `%s' failed.\n", file, line, function, assertion);
    std::fflush(stderr);
    std::abort();
#endif
}

} // namespace vole::detail
