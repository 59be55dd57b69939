#include "platform/store/ImageDisk.h"

#include "platform/dispatch/SerialQueue.h"
#include "platform/store/ImageDiskWorker.h"
#include "platform/store/OwedAnswer.h"
#include "platform/store/RecentUses.h"

#include <future>
#include <utility>

namespace kovalin::platform {

ImageDisk::ImageDisk(const QString& path)
    : _uses(std::make_shared<RecentUses>())
    , _worker(std::make_shared<ImageDiskWorker>(path, _uses))
    , _queue(std::make_unique<SerialQueue>(QStringLiteral("ImageDisk")))
{
    _queue->async([worker = _worker] { worker->open(); });
}

ImageDisk::~ImageDisk()
{
    // Closed there and not by the last reference, which may go on a thread that must not wait for a disk.
    _queue->async([worker = std::move(_worker)] { worker->close(); });
}

void ImageDisk::setByteLimit(qint64 bytes)
{
    _queue->async([worker = _worker, bytes] { worker->setByteLimit(bytes); });
}

QByteArray ImageDisk::read(const ImageKey& key)
{
    auto answer = std::make_shared<OwedAnswer<QByteArray>>();
    std::future<QByteArray> bytes = answer->future();
    _queue->async([worker = _worker, key, answer = std::move(answer)] { answer->give(worker->read(key)); });
    return bytes.get();
}

void ImageDisk::store(const ImageKey& key, const QByteArray& bytes)
{
    // The uses up to now, whose pictures may be among those that are still to be written.
    _queue->async([worker = _worker, key, bytes, used = _uses->take()] { worker->store(key, bytes, used); });
}

void ImageDisk::remove(const ImageKey& key)
{
    _queue->async([worker = _worker, key] { worker->remove(key); });
}

void ImageDisk::noteUse(const ImageKey& key)
{
    if (_uses->note(key)) {
        _queue->async([worker = _worker] { worker->writeUses(); });
    }
}

void ImageDisk::removeAll(Wait wait)
{
    auto answer = std::make_shared<OwedAnswer<bool>>();
    std::future<bool> isDone = answer->future();
    _queue->async([worker = _worker, answer = std::move(answer)] {
        worker->removeAll();
        answer->give(true);
    });
    if (wait == Wait::Yes) {
        isDone.wait();
    }
}

} // namespace kovalin::platform
