#pragma once

#include "kovalin_learned_search/Export.h"

#include <string>

namespace vole {

/// Makes calls that are harmless but wrong fatal, in release builds too. Off at start; can't be taken back. Any thread.
KOVALIN_LEARNED_SEARCH_EXPORT void enableReleaseAsserts();

/// Whether `enableReleaseAsserts` has been called. Any thread.
[[nodiscard]] KOVALIN_LEARNED_SEARCH_EXPORT bool releaseAssertsEnabled();

namespace detail {

/// The text of an assertion: "<message>: condition <condition> failed", or "<condition> failed" where `message` is empty.
/// `condition` ends with a zero.
[[nodiscard]] KOVALIN_LEARNED_SEARCH_EXPORT std::string assertMessage(const std::string& message,
                                                                      const char* condition);

} // namespace detail

} // namespace vole
