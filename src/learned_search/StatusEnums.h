#pragma once

#include <cstdint>

namespace vole::learned_search {

/// The outcome of the operation that made a record. The numbers are stored in cached metadata and must never change; a
/// stored number that stands for none of these is a failure too.
enum class StatusEnums : std::int32_t {
    SUCCESS = 0,
    MAIN_THREAD_REFUSED = 1, ///< the cache executor doesn't work on the main thread
    FILE_FAILED = 2,         ///< a file could not be read, written or validated
    DOWNLOAD_FAILED = 3,     ///< the download did not deliver
};

} // namespace vole::learned_search
