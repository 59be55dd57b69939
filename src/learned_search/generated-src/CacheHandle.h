#pragma once

#include "learned_search/generated-src/IdentityCache.h"

#include <memory>
#include <utility>

namespace djinni {

/// What each wrapper and each proxy holds: the object on the other side, kept alive, and a place in a cache, kept alive too
/// and given up at the end. Fixed once made: any thread may read it.
template <class KeyType, class Object>
class CacheHandle final {
public:
    CacheHandle(const IdentityCache::Enrolment& enrolment, std::shared_ptr<Object> object) noexcept
        : _cache(enrolment.cache)
        , _object(std::move(object))
    {
    }
    ~CacheHandle() { _cache->remove({typeid(KeyType), _object.get()}); }
    CacheHandle(const CacheHandle&) = delete;
    CacheHandle& operator=(const CacheHandle&) = delete;

    /// Never null.
    [[nodiscard]] const std::shared_ptr<Object>& object() const { return _object; }
    [[nodiscard]] Object* operator->() const { return _object.get(); }

private:
    std::shared_ptr<IdentityCache> _cache;
    std::shared_ptr<Object> _object;
};

template <class Wrapper, class Native>
struct WrapperConversion;

/// A wrapper's handle. Whoever holds one lets WrapperConversion see it.
template <class Native>
using NativeHandle = CacheHandle<Native, Native>;

/// A proxy's handle.
template <class Proxy, class Platform>
using PlatformHandle = CacheHandle<Proxy, Platform>;

} // namespace djinni
