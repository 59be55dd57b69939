#pragma once

#include "platform/foundation/Guarded.h"

#include <cstddef>
#include <memory>
#include <typeindex>
#include <unordered_map>
#include <utility>

namespace djinni {

/// Which object stands on this side of the bridge for one on the other side, so that an object that crosses keeps its
/// identity. Holds nothing alive. Any thread; the mutex is held only in the operations below, and nothing of another's is
/// called under it but the constructor of what is entered.
///
/// What is entered holds a CacheHandle, which keeps the cache and takes the entry out again at its end.
class IdentityCache final : public std::enable_shared_from_this<IdentityCache> {
public:
    /// Of two objects of one address and different types, one may be a part of the other.
    struct Key {
        std::type_index type;
        const void* address;

        friend bool operator==(const Key&, const Key&) = default;
    };

    /// What the cache gives to those whom it makes, and without which nobody can make a CacheHandle.
    class Enrolment final {
    public:
        Enrolment(const Enrolment&) = delete;
        Enrolment& operator=(const Enrolment&) = delete;

    private:
        friend class IdentityCache;
        template <class KeyType, class Object>
        friend class CacheHandle;

        explicit Enrolment(std::shared_ptr<IdentityCache> theCache)
            : cache(std::move(theCache))
        {
        }

        std::shared_ptr<IdentityCache> cache;
    };

    IdentityCache() = default;
    IdentityCache(const IdentityCache&) = delete;
    IdentityCache& operator=(const IdentityCache&) = delete;

    /// The living object that stands for `other`; where there is none, a new `Object(const Enrolment&, other)`, entered.
    /// The key's type is `KeyType`, and each has objects of one class only. `other` is not null. The constructor runs under
    /// the mutex: it makes a CacheHandle, and throws nothing after that.
    template <class KeyType, class Object, class Other>
    [[nodiscard]] std::shared_ptr<Object> objectFor(const std::shared_ptr<Other>& other)
    {
        const Key key{typeid(KeyType), other.get()};
        const Enrolment enrolment(shared_from_this());
        // Declared out here so that it ends without the mutex, should entering it fail: its handle takes the mutex then.
        std::shared_ptr<Object> object;
        _entries.with([&](Entries& entries) {
            if (const auto found = entries.find(key); found != entries.end()) {
                object = std::static_pointer_cast<Object>(found->second.lock());
                if (object) {
                    return;
                }
                entries.erase(found);
            }
            object = std::make_shared<Object>(enrolment, other);
            entries.emplace(key, object);
        });
        return object;
    }

    /// Erases the entry if its object is dead. A fresh one under the same key stays.
    void remove(const Key& key);

    /// How many entries there are, dead ones included.
    [[nodiscard]] std::size_t count();

private:
    struct KeyHash {
        [[nodiscard]] std::size_t operator()(const Key& key) const noexcept;
    };
    using Entries = std::unordered_map<Key, std::weak_ptr<void>, KeyHash>;

    kovalin::platform::Guarded<Entries> _entries;
};

/// The wrappers of native objects, by the native type. One for the process, made on first use. Any thread.
[[nodiscard]] const std::shared_ptr<IdentityCache>& wrapperCache();

/// The native proxies of the platform's objects, by the proxy's type. One for the process, made on first use. Any thread.
[[nodiscard]] const std::shared_ptr<IdentityCache>& proxyCache();

} // namespace djinni
