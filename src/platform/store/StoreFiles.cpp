#include "platform/store/StoreFiles.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QStringList>

#include <algorithm>
#include <utility>

namespace kovalin::platform {

namespace {

QString asideOf(const QString& path)
{
    return path + QStringLiteral(".damaged");
}

QStringList filesOf(const QString& path)
{
    return {path, path + QStringLiteral("-wal"), path + QStringLiteral("-shm"), path + QStringLiteral("-journal")};
}

bool isThere(const QFileInfo& info)
{
    return info.exists() || info.isSymLink();
}

bool removeAny(const QString& path)
{
    const QFileInfo info(path);
    if (info.isDir() && !info.isSymLink()) {
        return QDir(path).removeRecursively();
    }
    return !isThere(info) || QFile::remove(path);
}

bool removeAllOf(const QStringList& paths)
{
    bool areGone = true;
    for (const QString& path : paths) {
        areGone = removeAny(path) && areGone;
    }
    return areGone;
}

} // namespace

StoreFiles::StoreFiles(QString path)
    : _path(std::move(path))
{
}

bool StoreFiles::makeFolder() const
{
    return QDir().mkpath(QFileInfo(_path).path());
}

bool StoreFiles::areObstructed() const
{
    return std::ranges::any_of(filesOf(_path), [](const QString& path) {
        const QFileInfo info(path);
        return info.exists() && !info.isFile();
    });
}

bool StoreFiles::moveAside() const
{
    removeAside();
    const QStringList paths = filesOf(_path);
    const QStringList asides = filesOf(asideOf(_path));
    bool isFree = true;
    for (qsizetype i = 0; i < paths.size(); ++i) {
        if (!isThere(QFileInfo(paths[i])) || QDir().rename(paths[i], asides[i])) {
            continue;
        }
        isFree = removeAny(paths[i]) && isFree;
    }
    return isFree;
}

bool StoreFiles::removeAside() const
{
    return removeAllOf(filesOf(asideOf(_path)));
}

bool StoreFiles::remove() const
{
    return removeAllOf(filesOf(_path));
}

} // namespace kovalin::platform
