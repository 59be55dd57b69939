#pragma once

#include <QtCore/QtGlobal>

#include <chrono>
#include <cstddef>

namespace kovalin::kits {

/// What an outbox keeps at the most. What comes beyond that pushes out the oldest; what is too large alone is dropped itself.
struct OutboxLimits {
    qsizetype maxBytes; ///< all entries' bytes together
    std::size_t maxEntries;
    std::chrono::milliseconds maxAge; ///< by the time of day
};

/// What a batch is made of.
struct BatchLimits {
    /// With so many entries, or bytes, a batch leaves at once, and has no more of them; one entry it always has.
    std::size_t maxEntries;
    qsizetype maxBytes;
    /// How long the first entry waits for others.
    std::chrono::milliseconds longestWait;
};

} // namespace kovalin::kits
