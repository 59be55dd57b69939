#pragma once

#include "learned_search/generated-src/IdentityCache.h"
#include "utils/HardAssert.h"

#include <memory>

namespace djinni {

/// An interface that the platform implements: a proxy on the native side. Null is null on both sides.
template <class Proxy, class Native, class Protocol>
struct ProxyConversion {
    using Cpp = std::shared_ptr<Native>;
    using Platform = std::shared_ptr<Protocol>;

    /// The same proxy for the same object, while it lives.
    [[nodiscard]] static Cpp toCpp(const Platform& object)
    {
        return object ? proxyCache()->template objectFor<Proxy, Proxy>(object) : nullptr;
    }
    /// The proxy's own object. Nothing native implements such an interface but proxies; anything else stops the program.
    [[nodiscard]] static Platform fromCpp(const Cpp& native)
    {
        if (!native) {
            return nullptr;
        }
        const auto* proxy = dynamic_cast<const Proxy*>(native.get());
        KOVALIN_HARD_ASSERT(proxy);
        return proxy->platformObject();
    }
};

} // namespace djinni
