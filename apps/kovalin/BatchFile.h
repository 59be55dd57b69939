#pragma once

#include "events/EventBatch.h"

#include <string>

namespace kovalin::cli {

/// Reads a stored batch of analytics events: what a client posts, byte by byte.
///
/// `path` is in the encoding of the file system; "-" is standard input. Throws BadInput, naming the file, when it can't
/// be read, is empty, or is no batch.
[[nodiscard]] analytics::EventBatch readBatchFile(const std::string& path);

} // namespace kovalin::cli
