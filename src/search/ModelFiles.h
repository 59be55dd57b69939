#pragma once

#include <QtCore/QString>

/// The path of a file of this name in the caches directory, which is looked up once for the process.
[[nodiscard]] QString pathInCachesDirectory(const QString& fileName);
