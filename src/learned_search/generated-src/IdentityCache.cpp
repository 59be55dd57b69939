#include "learned_search/generated-src/IdentityCache.h"

#include <QtCore/QHashFunctions>

namespace djinni {

void IdentityCache::remove(const Key& key)
{
    _entries.with([&key](Entries& entries) {
        if (const auto found = entries.find(key); found != entries.end() && found->second.expired()) {
            entries.erase(found);
        }
    });
}

std::size_t IdentityCache::count()
{
    return _entries.with([](const Entries& entries) { return entries.size(); });
}

std::size_t IdentityCache::KeyHash::operator()(const Key& key) const noexcept
{
    return qHashMulti(0, key.type.hash_code(), key.address);
}

// Never destroyed: objects may cross, and wrappers and proxies die, when statics are gone.

const std::shared_ptr<IdentityCache>& wrapperCache()
{
    static const auto& cache = *new const auto(std::make_shared<IdentityCache>());
    return cache;
}

const std::shared_ptr<IdentityCache>& proxyCache()
{
    static const auto& cache = *new const auto(std::make_shared<IdentityCache>());
    return cache;
}

} // namespace djinni
