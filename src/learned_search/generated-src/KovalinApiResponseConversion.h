#pragma once

#include "learned_search/KovalinApiResponse.h"
#include "learned_search/generated-src/QXNativeKovalinApiResponse.h"

namespace djinni {

/// A record, field by field. A null record stops the program.
struct KovalinApiResponseConversion {
    using Cpp = vole::learned_search::KovalinApiResponse;
    using Platform = QXNativeKovalinApiResponsePtr;

    [[nodiscard]] static Cpp toCpp(const Platform& obj);
    /// Never null.
    [[nodiscard]] static Platform fromCpp(const Cpp& record);
};

} // namespace djinni
