#pragma once

#include "search/KovalinPack.h"

#include <string>

namespace kovalin::cli {

/// Reads a packs document: an object whose "packs" is a list of packs as KovalinPack takes them.
///
/// The file is read as a stream and never stands in memory, neither as text nor as a whole document: each sticker and each
/// pack becomes its record as soon as it ends, and equal tags share their text. What is no pack, no sticker or no field
/// of one is passed over, nested however deep; of equal keys the last counts.
///
/// `path` is in the encoding of the file system. Throws BadInput, naming the file, when it can't be read, isn't JSON in
/// valid UTF-8 to its end, or has no such list.
[[nodiscard]] KovalinPackList readPacksFile(const std::string& path);

} // namespace kovalin::cli
