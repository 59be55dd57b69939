#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

#include <stdexcept>

namespace kovalin::test {

/// A content folder of a test's own, empty at first, which goes with it.
class ContentFiles final {
public:
    [[nodiscard]] QString path() const { return _folder.path(); }

    /// Writes a file, and makes the folders on the way to it.
    void write(const QString& name, const QByteArray& bytes) const
    {
        const QString path = _folder.filePath(name);
        QFile file(path);
        if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly) ||
            file.write(bytes) != bytes.size()) {
            throw std::runtime_error("can't write a test's file");
        }
    }

    /// Makes a folder, and those on the way to it.
    void makeFolder(const QString& name) const { QDir(_folder.path()).mkpath(name); }

private:
    const QTemporaryDir _folder;
};

} // namespace kovalin::test
