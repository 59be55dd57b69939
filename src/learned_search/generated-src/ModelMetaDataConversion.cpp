#include "learned_search/generated-src/ModelMetaDataConversion.h"

#include "learned_search/generated-src/NumberConversion.h"
#include "learned_search/generated-src/OptionalConversion.h"
#include "learned_search/generated-src/StatusEnumsConversion.h"
#include "learned_search/generated-src/StringConversion.h"
#include "utils/HardAssert.h"

namespace djinni {

ModelMetaDataConversion::Cpp ModelMetaDataConversion::toCpp(const Platform& obj)
{
    KOVALIN_HARD_ASSERT(obj);
    return {OptionalConversion<StringConversion>::toCpp(obj->modelUrl()),
            OptionalConversion<Int32Conversion>::toCpp(obj->modelVersion()),
            StatusEnumsConversion::toCpp(obj->statusCode())};
}

ModelMetaDataConversion::Platform ModelMetaDataConversion::fromCpp(const Cpp& record)
{
    return QXNativeModelMetaData::ModelMetaDataWithModelUrl(
        OptionalConversion<StringConversion>::fromCpp(record.modelUrl),
        OptionalConversion<Int32Conversion>::fromCpp(record.modelVersion),
        StatusEnumsConversion::fromCpp(record.statusCode));
}

} // namespace djinni
