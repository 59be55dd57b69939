#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

// The files that are built into the library, as `cmake/Resources.cmake` puts them there: "pictures/<name>.svg" and
// "translations/<language>.qm". Any thread; they are there also where the library is linked statically.

/// What the file of the folder holds; null for one that isn't there.
[[nodiscard]] QByteArray kovalinResource(const QString& folder, const QString& fileName);

/// The names of the files in a folder, sorted.
[[nodiscard]] QStringList kovalinResourceNames(const QString& folder);
