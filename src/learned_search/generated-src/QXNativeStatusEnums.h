#pragma once

#include <cstdint>

/// The outcome of the operation that made a record. The numbers are stored in cached metadata and are those of the native
/// core; a number that stands for none of these crosses the bridge as it is.
enum class QXNativeStatusEnums : std::int64_t {
    SUCCESS = 0,
    MAIN_THREAD_REFUSED = 1, ///< the cache executor doesn't work on the main thread
    FILE_FAILED = 2,         ///< a file could not be read, written or validated
    DOWNLOAD_FAILED = 3,     ///< the download did not deliver
};
