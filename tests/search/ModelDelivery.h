#pragma once

#include "platform/foundation/CachesDirectory.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

#include <stdexcept>
#include <thread>
#include <utility>

namespace kovalin::test {

/// The caches directory of this program: one folder, which goes with it. To be called before anything is delivered.
inline QString cachesFolder()
{
    static const QTemporaryDir folder;
    static const bool isSet = [] {
        platform::setCachesDirectory(folder.path());
        return true;
    }();
    static_cast<void>(isSet);
    return folder.path();
}

inline void writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        throw std::runtime_error("can't write a test's file");
    }
}

[[nodiscard]] inline QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// What `work` gives on a thread of its own.
template <typename Work>
auto offTheMainThread(Work&& work)
{
    decltype(work()) result{};
    std::thread([&] { result = work(); }).join();
    return result;
}

} // namespace kovalin::test
