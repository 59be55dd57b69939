#pragma once

#include "learned_search/generated-src/IdentityCache.h"

#include <memory>

namespace djinni {

/// An interface that the native core implements: a wrapper on the platform's side. Null is null on both sides.
template <class Wrapper, class Native>
struct WrapperConversion {
    using Cpp = std::shared_ptr<Native>;
    using Platform = std::shared_ptr<Wrapper>;

    [[nodiscard]] static Cpp toCpp(const Platform& wrapper) { return wrapper ? wrapper->_handle.object() : nullptr; }
    /// The same wrapper for the same native object, while it lives.
    [[nodiscard]] static Platform fromCpp(const Cpp& native)
    {
        return native ? wrapperCache()->template objectFor<Native, Wrapper>(native) : nullptr;
    }
};

} // namespace djinni
