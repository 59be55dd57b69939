#pragma once

#include "kovalin_learned_search/Export.h"

namespace vole::detail {

/// Stops the program the way the platform's own assertions do: writes the assertion's text and where it stands to standard
/// error, and aborts. All arguments end with a zero.
[[noreturn]] KOVALIN_LEARNED_SEARCH_EXPORT void failAssertion(const char* assertion, const char* file, int line,
                                                              const char* function) noexcept;

} // namespace vole::detail
