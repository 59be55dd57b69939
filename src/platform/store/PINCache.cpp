#include "platform/store/PINCache.h"

namespace kovalin::platform {

PINDiskCache::~PINDiskCache() = default;
PINMemoryCache::~PINMemoryCache() = default;
PINCache::~PINCache() = default;

void PINCache::setObject(const EncodedImage& object, const QString& key, qsizetype)
{
    setObject(object, key);
}

} // namespace kovalin::platform
