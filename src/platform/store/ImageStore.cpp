#include "platform/store/ImageStore.h"

#include "platform/dispatch/ThreadCheck.h"
#include "platform/foundation/Log.h"
#include "platform/store/DecodeImage.h"
#include "platform/store/StoreLog.h"

#include <QtCore/QDir>

#include <utility>

namespace kovalin::platform {

ImageStore::ImageStore(const QString& name, const QString& folder)
    : _disk(QDir(folder).absoluteFilePath(name + QStringLiteral(".sqlite")))
{
}

ImageStore::~ImageStore() = default;

PINDiskCache& ImageStore::diskCache()
{
    return _disk;
}

PINMemoryCache& ImageStore::memoryCache()
{
    return _memory;
}

QImage ImageStore::objectForKey(const QString& key)
{
    if (const auto entry = _memory.find(key)) {
        _disk.noteUse(entry->diskKey);
        return entry->image;
    }
    if (isMainThread()) {
        return {};
    }
    const quint64 removals = _memory.removals();
    const ImageKey diskKey = imageKey(key);
    const QByteArray bytes = _disk.read(diskKey);
    if (bytes.isEmpty()) {
        return {};
    }
    QString problem;
    QImage image = decodeImage(bytes, &problem);
    if (image.isNull()) {
        KOVALIN_LOG_WARNING(storeLog, QStringLiteral("Removing a stored picture: %1").arg(problem));
        _disk.remove(diskKey);
        return {};
    }
    _memory.storeRead(key, {image, diskKey}, removals);
    return image;
}

void ImageStore::setObject(const EncodedImage& object, const QString& key, qsizetype cost)
{
    if (object.image.isNull()) {
        return;
    }
    const ImageKey diskKey = imageKey(key);
    _memory.store(key, {object.image, diskKey}, cost);
    if (object.bytes.isEmpty()) {
        _disk.remove(diskKey); // Older bytes would come back as soon as the picture leaves memory.
    } else {
        _disk.store(diskKey, object.bytes);
    }
}

void ImageStore::setObject(const EncodedImage& object, const QString& key)
{
    setObject(object, key, 1);
}

void ImageStore::removeAllObjects()
{
    // In this order, a thread that reads meanwhile can't bring back into memory what it has still found on disk.
    _disk.removeAll(isMainThread() ? ImageDisk::Wait::No : ImageDisk::Wait::Yes);
    _memory.removeAll();
}

} // namespace kovalin::platform
