#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace kovalin::platform {

/// What the disk level knows a key by: its digest, which has the same few bytes for a key of any length, and doesn't tell the key
/// to who reads the file. Private to this folder.
using ImageKey = QByteArray;

/// The digest of `key`. Any thread.
[[nodiscard]] ImageKey imageKey(const QString& key);

} // namespace kovalin::platform
