#pragma once

#include "platform/dispatch/Gate.h"
#include "platform/dispatch/SerialQueue.h"
#include "platform/store/PINCache.h"
#include "support/QtPrinting.h"
#include "support/SamplePictures.h"
#include "support/WaitFor.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

#include <QtCore/qlogging.h>
#include <gtest/gtest.h>

#include <cstring>
#include <mutex>
#include <stdexcept>

namespace kovalin::test {

/// Runs `work` on a background queue, where a store may be read from disk, and gives its result.
template <class Work>
auto inBackground(Work work)
{
    decltype(work()) result;
    platform::SerialQueue queue(QStringLiteral("reader"));
    Gate done;
    queue.async([&] {
        result = work();
        done.open();
    });
    done.wait();
    return result;
}

/// What `cache` has under `key`, on either level.
[[nodiscard]] inline QImage objectIn(platform::PINCache& cache, const QString& key)
{
    return inBackground([&] { return cache.objectForKey(key); });
}

[[nodiscard]] inline bool contains(platform::PINCache& cache, const QString& key)
{
    return !objectIn(cache, key).isNull();
}

inline void removeAll(platform::PINCache& cache)
{
    inBackground([&] {
        cache.removeAllObjects();
        return true;
    });
}

/// Returns once everything stored so far is on disk. For a store without a picture under this key.
inline void finishStoring(platform::PINCache& cache)
{
    static_cast<void>(contains(cache, QStringLiteral("there is nothing under this key")));
}

[[nodiscard]] inline platform::EncodedImage picture(quint32 seed, QSize size = QSize(20, 20))
{
    const QImage image = noise(seed, size);
    return {image, encoded(image)};
}

/// Whether the two show the same, whatever their formats.
[[nodiscard]] inline bool isSame(const QImage& a, const QImage& b)
{
    return a.convertToFormat(QImage::Format_ARGB32) == b.convertToFormat(QImage::Format_ARGB32);
}

/// A folder that goes at its end.
class Folder final {
public:
    [[nodiscard]] QString path() const { return _folder.path(); }
    [[nodiscard]] QString path(const QString& name) const { return _folder.filePath(name); }

    void write(const QString& name, const QByteArray& content) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            throw std::runtime_error("can't write a test's file");
        }
    }

    [[nodiscard]] QByteArray read(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    [[nodiscard]] QStringList names() const
    {
        return QDir(path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                      QDir::Name);
    }

private:
    QTemporaryDir _folder;
};

/// Returns once nobody has the database of this name open any more, after the store that had it open has gone: that ends with
/// its write-ahead log.
inline void waitUntilClosed(const Folder& folder, const QString& database)
{
    EXPECT_TRUE(waitFor([&] {
        return !QFile::exists(folder.path(database + QStringLiteral("-wal"))) &&
               !QFile::exists(folder.path(database + QStringLiteral("-shm")));
    }));
}

/// The lines that the store logs while this is in scope. Any thread; one at a time.
class StoreLines final {
public:
    StoreLines()
    {
        lines().clear();
        _previous = qInstallMessageHandler([](QtMsgType, const QMessageLogContext& context, const QString& text) {
            const std::lock_guard lock(mutex());
            if (context.category != nullptr && std::strcmp(context.category, "kovalin.platform.store") == 0) {
                lines().append(text);
            }
        });
    }
    ~StoreLines() { qInstallMessageHandler(_previous); }
    Q_DISABLE_COPY_MOVE(StoreLines)

    [[nodiscard]] QStringList all() const
    {
        const std::lock_guard lock(mutex());
        return lines();
    }

private:
    // Static, since a message handler is a plain function.
    static std::mutex& mutex()
    {
        static std::mutex mutex;
        return mutex;
    }
    static QStringList& lines()
    {
        static QStringList lines;
        return lines;
    }

    QtMessageHandler _previous = nullptr;
};

} // namespace kovalin::test
