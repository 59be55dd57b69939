#pragma once

#include <QtCore/QString>

namespace kovalin::platform {

/// The files of one database: that of its name, and those that SQLite keeps beside it. Private to this folder; one thread at a
/// time.
class StoreFiles final {
public:
    explicit StoreFiles(QString path);

    [[nodiscard]] const QString& path() const { return _path; }

    /// Makes the folder that the files lie in. False if it can't be made.
    [[nodiscard]] bool makeFolder() const;

    /// Whether something that isn't a file, such as a folder, has one of the names.
    [[nodiscard]] bool areObstructed() const;

    /// Moves what has one of the names aside, to the same name with ".damaged" at its end, in place of what was moved aside before.
    /// Nobody may have the database open. False if something is still in the way.
    bool moveAside() const;

    /// Removes what was moved aside. False if something is left.
    bool removeAside() const;

    /// Removes the files themselves. Nobody may have the database open. False if something is left.
    bool remove() const;

private:
    const QString _path;
};

} // namespace kovalin::platform
