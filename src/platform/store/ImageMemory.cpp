#include "platform/store/ImageMemory.h"

#include <algorithm>
#include <utility>

namespace kovalin::platform {

// Until a limit is set. A picker shows some 50 stickers at a time.
constexpr qsizetype kFirstCostLimit = 50;

ImageMemory::ImageMemory()
    : _entries(kFirstCostLimit)
{
}

ImageMemory::~ImageMemory() = default;

void ImageMemory::setCostLimit(qsizetype cost)
{
    const std::lock_guard lock(_mutex);
    _entries.setMaxCost(std::max<qsizetype>(cost, 0));
}

std::optional<ImageMemory::Entry> ImageMemory::find(const QString& key)
{
    const std::lock_guard lock(_mutex);
    const Entry* const entry = _entries.object(key);
    return entry ? std::optional(*entry) : std::nullopt;
}

void ImageMemory::store(const QString& key, Entry entry, qsizetype cost)
{
    auto* const stored = new Entry(std::move(entry)); // taken over by the cache, also when it doesn't keep it
    const std::lock_guard lock(_mutex);
    _entries.insert(key, stored, std::max<qsizetype>(cost, 1));
}

void ImageMemory::removeAll()
{
    const std::lock_guard lock(_mutex);
    _entries.clear();
    ++_removals;
}

quint64 ImageMemory::removals() const
{
    const std::lock_guard lock(_mutex);
    return _removals;
}

void ImageMemory::storeRead(const QString& key, Entry entry, quint64 removals)
{
    const std::lock_guard lock(_mutex);
    if (_removals == removals && !_entries.contains(key)) {
        _entries.insert(key, new Entry(std::move(entry)), 1);
    }
}

} // namespace kovalin::platform
