#pragma once

#include "platform/dispatch/SourceLocation.h"

#include <string_view>

namespace kovalin::platform {

/// Any thread. Ends the program by `std::abort`, in every build type, after one line on standard error: the function
/// and line of `where`, then `reason` (UTF-8). For a broken promise of the calling code, which it would be worse to
/// carry on with; what comes from outside never ends here.
[[noreturn]] void cleanStop(std::string_view reason, const SourceLocation& where) noexcept;

} // namespace kovalin::platform
