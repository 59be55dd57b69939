#pragma once

#include "learned_search/ModelMetaData.h"
#include "learned_search/generated-src/QXNativeModelMetaData.h"

namespace djinni {

/// A record, field by field. A null record stops the program.
struct ModelMetaDataConversion {
    using Cpp = vole::learned_search::ModelMetaData;
    using Platform = QXNativeModelMetaDataPtr;

    [[nodiscard]] static Cpp toCpp(const Platform& obj);
    /// Never null.
    [[nodiscard]] static Platform fromCpp(const Cpp& record);
};

} // namespace djinni
