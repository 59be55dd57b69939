#pragma once

#include "learned_search/StatusEnums.h"
#include "learned_search/generated-src/QXNativeStatusEnums.h"

namespace djinni {

/// The same number, whether or not it has a name. What doesn't fit into the native enum's 32 bits is cut off.
struct StatusEnumsConversion {
    using Cpp = vole::learned_search::StatusEnums;
    using Platform = QXNativeStatusEnums;

    [[nodiscard]] static Cpp toCpp(Platform status) { return static_cast<Cpp>(status); }
    [[nodiscard]] static Platform fromCpp(Cpp status) { return static_cast<Platform>(status); }
};

} // namespace djinni
